// Writes the groups of a drawing file, in text or binary form.
#pragma once

#include "alidade/platform/file.h"
#include "alidade/vellumlib/types.h"

#include <cstddef>
#include <string_view>

/// A group is a code and a value. In text form each is a line; in binary form a code and a whole number take four
/// bytes, a number eight, and a text ends with a zero. Every operation gives false once a write has failed.
///
/// Texts go out in ASCII, because a drawing without a version is read in whatever code page the reader has: any other
/// character is written as \U+XXXX, in two units where one isn't enough, and so is a backslash that would begin such an
/// escape. A control character, which could end the line or the text, becomes a blank, and a text is cut where its line
/// would be longer than readers take one.
class TDXFOutput {
public:
    static constexpr std::size_t kLongestText = 2047; ///< bytes; with CR LF a line of 2049, the most that readers take
    static constexpr int kDecimals = 6;               ///< of numbers in text form
    /// A number whose magnitude isn't below this goes out in text form as one that reads as 0.
    static constexpr double kNumberLimit = 1e30;

    /// Whether a file of that name is written in binary form: its extension is "dxb" in any case.
    [[nodiscard]] static bool IsBinaryName(std::string_view fileName);
    /// What a reader gets of a text: mended and cut as above.
    [[nodiscard]] static CString AsRead(std::string_view text);

    /// False if the file can't be created.
    [[nodiscard]] bool Create(const CString& strFileName);
    bool WriteCode(int nCode);
    bool WriteInt(int nCode, int nValue);
    /// With six decimals in text form.
    bool WriteDouble(int nCode, double dValue);
    bool WriteString(int nCode, std::string_view text);
    /// Sends all to the disk. False if any write failed.
    bool Close();

private:
    void AppendCode(int nCode);
    bool Send();

    CIEFileWriter m_File;
    CString m_strBuffer;
    bool m_bBinary = false;
    bool m_bFailed = false;
};
