// Output that appears whole or not at all.
#pragma once

#include <string>
#include <vector>

namespace Cli {

/// A hidden folder beside the target, in which the output is made. Being on the same disk, its files move to their
/// place by renaming. The folder goes away with this object, and with it whatever wasn't delivered.
class CStaging {
public:
    CStaging() = default;
    ~CStaging();
    CStaging(const CStaging&) = delete;
    CStaging& operator=(const CStaging&) = delete;

    /// Makes the folder in `strTargetFolder` ("" is the current one). False, with the reason in `strError`, if it
    /// can't.
    [[nodiscard]] bool Make(const std::string& strTargetFolder, std::string& strError);

    /// Path of a file of that name while it is being made.
    [[nodiscard]] std::string PathOf(const std::string& strName) const { return m_strFolder + "/" + strName; }
    /// Path of a file of that name in its place.
    [[nodiscard]] std::string TargetOf(const std::string& strName) const;
    /// The path with the staging folder, where it begins with that, replaced by the target folder.
    [[nodiscard]] std::string ToTarget(const std::string& strPath) const;

    /// Names of the files that were made so far, in order.
    [[nodiscard]] std::vector<std::string> ListNames() const;
    /// Moves all files to their place, or none: what was replaced already comes back if a later one fails. Without
    /// `bOverwrite` an existing file is a failure; with it the new file takes over mode and owner of the one that it
    /// replaces. Gives the paths of the files in `delivered`.
    [[nodiscard]] bool Deliver(bool bOverwrite, std::vector<std::string>& delivered, std::string& strError);

private:
    [[nodiscard]] bool Move(const std::string& strName, bool bOverwrite, bool bKeepOld, std::string& strError);
    void TakeBack(const std::vector<std::string>& names, std::string& strError);
    void PutBack(const std::string& strName, std::string& strError);

    std::string m_strFolder;       ///< empty until made
    std::string m_strTargetPrefix; ///< target folder with its slash; empty for the current folder
    bool m_bKeepFolder = false;    ///< it holds a replaced file that couldn't be put back
};

/// What keeps a file from being written at `strPath`: a folder that is missing or may not be written, or something
/// there that is in the way. Empty if nothing does.
std::string FindObstacle(const std::string& strPath, bool bOverwrite);

/// The path itself, or where a symbolic link there leads, so that the file behind it is replaced and not the link.
std::string FollowLink(const std::string& strPath);

/// Whether two paths name one file, by links or otherwise.
bool IsSameFile(const std::string& left, const std::string& right);

/// The folder of a path with its slash; empty if it has none.
std::string FolderOf(const std::string& strPath);

} // namespace Cli
