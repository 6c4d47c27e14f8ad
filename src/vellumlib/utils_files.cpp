#include "alidade/platform/file.h"
#include "alidade/platform/system.h"
#include "alidade/vellumlib/utils.h"

#include <algorithm>

namespace {

constexpr int kMostNameCharacters = 64;
constexpr std::size_t kMostFileNameBytes = 200;

/// True for the control characters of ASCII, and for U+0080 to U+009F, which in UTF-8 are two bytes.
bool HasControlCharacter(std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x20 || byte == 0x7F)
            return true;
        if (byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0)
            return true;
    }
    return false;
}

/// True for a name that stands for a device on some systems, whatever its extension.
bool IsDeviceName(std::string_view fileName)
{
    const CString name = IEUtils::ToLower(IEUtils::TrimRight(fileName.substr(0, fileName.find('.'))));
    if (name == "con" || name == "prn" || name == "aux" || name == "nul" || name == "conin$" || name == "conout$")
        return true;
    if (!name.starts_with("com") && !name.starts_with("lpt"))
        return false;
    const std::string_view port = std::string_view(name).substr(3);
    const bool bDigit = port.size() == 1 && port[0] >= '0' && port[0] <= '9';
    return bDigit || port == "\u00B9" || port == "\u00B2" || port == "\u00B3";
}

/// Index at which the last part of a path begins.
std::size_t FileNameBegin(std::string_view path)
{
    const std::size_t slash = path.find_last_of("/\\");
    return slash == std::string_view::npos ? 0 : slash + 1;
}

/// Index of the point of the extension, or the size of the path. Points at the front of a file name begin no extension:
/// ".hidden" and ".." are whole names.
std::size_t ExtensionBegin(std::string_view path)
{
    const std::size_t nNameBegin = FileNameBegin(path);
    const std::size_t nFirst = path.find_first_not_of('.', nNameBegin);
    const std::size_t nPoint = path.rfind('.');
    const bool bHasExtension = nFirst != std::string_view::npos && nPoint != std::string_view::npos && nPoint > nFirst;
    return bHasExtension ? nPoint : path.size();
}

} // namespace

namespace IEUtils {

bool ReadLine(CIETextFile& file, CString& line, bool, bool)
{
    std::string_view text;
    const bool bRead = file.ReadLine(text);
    line.assign(text);
    return bRead;
}

bool Read1Line(CIETextFile& file, CString& line)
{
    return ReadLine(file, line, false, false);
}

bool IsUnicodeFile(const CIETextFile& file)
{
    return file.IsUnicode();
}

bool WriteString(CIETextWriter& file, std::string_view text)
{
    return file.Write(text);
}

bool IsValidName(std::string_view text)
{
    return !text.empty() && IsValidUtf8(text) && Length(text) <= kMostNameCharacters && !HasControlCharacter(text);
}

bool IsValidCodeName(std::string_view text)
{
    return IsValidName(text);
}

bool IsValidFileName(std::string_view text)
{
    // what ends in a point is refused, "." and ".." among it
    return IsValidName(text) && text.size() <= kMostFileNameBytes &&
           text.find_first_of("/\\:*?\"<>|") == std::string_view::npos && text.front() != ' ' && text.back() != ' ' &&
           text.back() != '.' && !IsDeviceName(text);
}

CString CreateFileName(std::string_view base, std::string_view name, bool bUseName)
{
    if (!bUseName)
        return CString(base.substr(0, ExtensionBegin(base)));
    return CString(base.substr(0, FileNameBegin(base))).append(name);
}

bool IsExportFileWithSameName(const CString& strFileName, IIEMessageBox* pMessageBox, HWND hWnd)
{
    if (!Platform::FileExists(strFileName))
        return true;
    return pMessageBox && pMessageBox->AskOverwrite(strFileName, hWnd);
}

CString ExtractFileNameWithoutExtFromPathName(std::string_view path)
{
    const std::size_t nBegin = FileNameBegin(path);
    return CString(path.substr(nBegin, ExtensionBegin(path) - nBegin));
}

CString GetExtension(std::string_view path)
{
    const std::size_t nPoint = ExtensionBegin(path);
    return ToLower(path.substr(std::min(nPoint + 1, path.size())));
}

std::uint64_t GetFreeVirtMemory()
{
    return Platform::FreeVirtualMemory();
}

} // namespace IEUtils
