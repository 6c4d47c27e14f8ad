#include "cli/staging.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr const char* kOldFolder = ".old"; ///< within the staging folder: replaced files until all are delivered

bool Exists(const std::string& path)
{
    struct stat status = {};
    return lstat(path.c_str(), &status) == 0;
}

bool IsPlainFile(const std::string& path)
{
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

/// Renames without replacing. Where the file system can't tell atomically, it is looked first.
bool RenameToNew(const std::string& from, const std::string& to)
{
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    if (Exists(to)) {
        errno = EEXIST;
        return false;
    }
    return std::rename(from.c_str(), to.c_str()) == 0;
}

/// A file that replaces another may be read and written by the same people. What the system doesn't allow stays as it
/// is: only root gives files away.
void TakeOverModeAndOwner(const std::string& from, const std::string& to)
{
    struct stat status = {};
    if (stat(from.c_str(), &status) != 0)
        return;
    constexpr mode_t kBits = S_IRWXU | S_IRWXG | S_IRWXO; // none that lends the owner's rights to whoever runs it
    // the owner first: giving a file away takes bits from it
    (void)!chown(to.c_str(), status.st_uid, status.st_gid);
    (void)chmod(to.c_str(), status.st_mode & kBits);
}

/// Root may write whatever it likes, so the file is asked and not the system alone.
bool IsReadOnly(const std::string& path)
{
    struct stat status = {};
    return access(path.c_str(), W_OK) != 0 ||
           (stat(path.c_str(), &status) == 0 && (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0);
}

std::string Because(const std::string& path, const char* pWhat)
{
    return path + ": " + pWhat + ": " + std::strerror(errno);
}

} // namespace

namespace Cli {

CStaging::~CStaging()
{
    if (m_strFolder.empty() || m_bKeepFolder)
        return;
    std::error_code ignored;
    fs::remove_all(m_strFolder, ignored);
}

bool CStaging::Make(const std::string& strTargetFolder, std::string& strError)
{
    m_strTargetPrefix = strTargetFolder;
    if (!m_strTargetPrefix.empty() && m_strTargetPrefix.back() != '/')
        m_strTargetPrefix += '/';
    std::string pattern = m_strTargetPrefix + ".alidade-XXXXXX";
    if (!mkdtemp(pattern.data())) {
        strError = Because(strTargetFolder.empty() ? "." : strTargetFolder, "no file can be made in this folder");
        return false;
    }
    m_strFolder = std::move(pattern);
    return true;
}

std::string CStaging::TargetOf(const std::string& strName) const
{
    return m_strTargetPrefix + strName;
}

std::string CStaging::ToTarget(const std::string& strPath) const
{
    const std::string prefix = m_strFolder + "/";
    return !m_strFolder.empty() && strPath.starts_with(prefix) ? TargetOf(strPath.substr(prefix.size())) : strPath;
}

std::vector<std::string> CStaging::ListNames() const
{
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator it(m_strFolder, error), end; !error && it != end; it.increment(error))
        names.push_back(it->path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

bool CStaging::Deliver(bool bOverwrite, std::vector<std::string>& delivered, std::string& strError)
{
    std::vector<std::string> names = ListNames();
    if (names.empty()) {
        strError = "no file was made";
        return false;
    }
    for (const std::string& name : names) {
        strError = FindObstacle(TargetOf(name), bOverwrite);
        if (!strError.empty())
            return false;
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        // after the last one nothing can fail any more
        const bool bKeepOld = i + 1 < names.size();
        if (!Move(names[i], bOverwrite, bKeepOld, strError)) {
            names.resize(i);
            TakeBack(names, strError);
            return false;
        }
    }
    for (const std::string& name : names)
        delivered.push_back(TargetOf(name));
    return true;
}

bool CStaging::Move(const std::string& strName, bool bOverwrite, bool bKeepOld, std::string& strError)
{
    const std::string target = TargetOf(strName);
    const std::string staged = PathOf(strName);
    const std::string oldFolder = PathOf(kOldFolder);
    const std::string old = oldFolder + "/" + strName;
    if (bOverwrite)
        TakeOverModeAndOwner(target, staged);
    bool bPutAside = false;
    if (bOverwrite && bKeepOld && Exists(target)) {
        (void)mkdir(oldFolder.c_str(), S_IRWXU);
        if (std::rename(target.c_str(), old.c_str()) != 0) {
            strError = Because(target, "the existing file can't be replaced");
            return false;
        }
        bPutAside = true;
    }
    if (bOverwrite ? std::rename(staged.c_str(), target.c_str()) == 0 : RenameToNew(staged, target))
        return true;
    strError =
        errno == EEXIST ? target + ": the file exists already" : Because(target, "the file can't be put in its place");
    if (bPutAside)
        PutBack(strName, strError);
    return false;
}

void CStaging::TakeBack(const std::vector<std::string>& names, std::string& strError)
{
    for (const std::string& name : names) {
        if (Exists(PathOf(kOldFolder) + "/" + name))
            PutBack(name, strError); // which takes the new file away in the same moment
        else
            (void)unlink(TargetOf(name).c_str());
    }
}

void CStaging::PutBack(const std::string& strName, std::string& strError)
{
    const std::string old = PathOf(kOldFolder) + "/" + strName;
    if (std::rename(old.c_str(), TargetOf(strName).c_str()) == 0)
        return;
    strError += "; the former file is kept as " + old;
    m_bKeepFolder = true;
}

std::string FindObstacle(const std::string& strPath, bool bOverwrite)
{
    const std::string folder = FolderOf(strPath);
    const std::string place = folder.empty() ? "." : folder;
    struct stat status = {};
    if (stat(place.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
        return folder + ": there is no such folder";
    if (access(place.c_str(), W_OK | X_OK) != 0)
        return place + ": no file can be made in this folder: " + std::strerror(errno);
    if (!Exists(strPath))
        return {};
    if (!IsPlainFile(strPath))
        return strPath + ": it exists and isn't a plain file";
    if (bOverwrite && IsReadOnly(strPath))
        return strPath + ": the file is read-only, and isn't replaced";
    return bOverwrite ? std::string() : strPath + ": the file exists already; --overwrite replaces it";
}

std::string FollowLink(const std::string& strPath)
{
    std::error_code error;
    if (!fs::is_symlink(strPath, error))
        return strPath;
    const fs::path real = fs::weakly_canonical(strPath, error);
    return error ? strPath : real.string();
}

bool IsSameFile(const std::string& left, const std::string& right)
{
    std::error_code first, second;
    if (fs::equivalent(left, right, first) && !first)
        return true; // two names of one file
    first.clear();
    const auto a = fs::weakly_canonical(fs::absolute(left, first), first);
    const auto b = fs::weakly_canonical(fs::absolute(right, second), second);
    return first || second ? left == right : a == b;
}

std::string FolderOf(const std::string& strPath)
{
    return strPath.substr(0, strPath.rfind('/') + 1); // npos + 1 is 0
}

} // namespace Cli
