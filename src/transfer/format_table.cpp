#include "alidade/transfer/format_table.h"

#include "alidade/platform/file.h"
#include "alidade/vellumlib/data.h"
#include "formats/dwg/formats.h"
#include "formats/dxf/formats.h"
#include "formats/gis/formats.h"
#include "formats/landxml/formats.h"
#include "formats/points/formats.h"
#include "formats/raw/formats.h"
#include "formats/reports/formats.h"
#include "formats/road/formats.h"
#include "formats/side/formats.h"
#include "frame/file_head.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace {

constexpr std::size_t kDirections = 2;
constexpr std::size_t kCodes = 67; ///< the highest code is an export's

struct TTable {
    std::vector<TIEFormatRow> m_Rows;
    std::array<std::array<const TIEFormatRow*, kCodes>, kDirections> m_ByCode{};

    TTable()
    {
        for (const TIEFormatRows rows :
             {GetPointFormats(), GetDxfFormats(), GetLandXmlFormats(), GetSideFormats(), GetGisFormats(),
              GetRoadFormats(), GetRawFormats(), GetReportFormats(), GetDwgFormats()})
            m_Rows.insert(m_Rows.end(), rows.begin(), rows.end());
        std::sort(m_Rows.begin(), m_Rows.end(), [](const TIEFormatRow& a, const TIEFormatRow& b) {
            return a.m_eDirection != b.m_eDirection ? a.m_eDirection < b.m_eDirection : a.m_nCode < b.m_nCode;
        });
        for (const TIEFormatRow& row : m_Rows)
            m_ByCode.at(static_cast<std::size_t>(row.m_eDirection)).at(static_cast<std::size_t>(row.m_nCode)) = &row;
    }
};

const TTable& GetTable()
{
    static const TTable table;
    return table;
}

char ToLower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool HasExtension(const TIEFormatRow& row, std::string_view extension)
{
    std::string_view words = row.m_pExtensions;
    while (!words.empty()) {
        const std::size_t end = std::min(words.find(' '), words.size());
        const std::string_view word = words.substr(0, end);
        if (!word.empty() && std::equal(word.begin(), word.end(), extension.begin(), extension.end(),
                                        [](char a, char b) { return a == ToLower(b); }))
            return true;
        words.remove_prefix(std::min(end + 1, words.size()));
    }
    return false;
}

std::string_view ExtensionOf(std::string_view path)
{
    const std::size_t point = path.find_last_of("./\\");
    return point == path.npos || path[point] != '.' ? std::string_view() : path.substr(point + 1);
}

CString GetExtension(int nCode)
{
    const TIEFormatRow* pRow = CIEFormatTable::Find(EIEDirection::Export, nCode);
    if (!pRow || !*pRow->m_pExtensions)
        return {};
    const std::string_view words = pRow->m_pExtensions;
    return "." + CString(words.substr(0, words.find(' ')));
}

// The job model asks this table for extensions and may not know it, so the table introduces itself. Such an object can
// vanish from a static library, but not this one: the entries make their importers and exporters through this file, and
// a program without them runs no export that could ask.
[[maybe_unused]] const bool g_bIntroduced = (CIEData::SetExtensionSource(&GetExtension), true);

} // namespace

const std::vector<TIEFormatRow>& CIEFormatTable::GetRows()
{
    return GetTable().m_Rows;
}

const TIEFormatRow* CIEFormatTable::Find(EIEDirection eDirection, int nCode)
{
    const auto direction = static_cast<std::size_t>(eDirection);
    const auto code = static_cast<std::size_t>(nCode); // below 0 becomes huge
    return direction < kDirections && code < kCodes ? GetTable().m_ByCode[direction][code] : nullptr;
}

const TIEFormatRow* CIEFormatTable::FindByKey(EIEDirection eDirection, std::string_view keyOrNumber)
{
    if (!keyOrNumber.empty() && keyOrNumber.find_first_not_of("0123456789") == keyOrNumber.npos) {
        int code = 0;
        const auto result = std::from_chars(keyOrNumber.data(), keyOrNumber.data() + keyOrNumber.size(), code);
        return result.ec == std::errc() ? Find(eDirection, code) : nullptr;
    }
    for (const TIEFormatRow& row : GetRows())
        if (row.m_eDirection == eDirection && keyOrNumber == row.m_pKey)
            return &row;
    return nullptr;
}

std::vector<const TIEFormatRow*> CIEFormatTable::FindByExtension(EIEDirection eDirection, std::string_view extension)
{
    if (extension.starts_with('.'))
        extension.remove_prefix(1);
    std::vector<const TIEFormatRow*> found;
    for (const TIEFormatRow& row : GetRows())
        if (row.m_eDirection == eDirection && HasExtension(row, extension))
            found.push_back(&row);
    return found;
}

std::vector<TIEFormatGuess> CIEFormatTable::Guess(const CString& strFileName)
{
    CIEFileReader file;
    const bool bRead = file.Open(strFileName);
    const std::string_view head =
        bRead ? file.Peek(FileHead::kMaxBytes).substr(0, FileHead::kMaxBytes) : std::string_view();
    const std::string_view extension = ExtensionOf(strFileName);

    std::vector<TIEFormatGuess> sure, others;
    for (const TIEFormatRow& row : GetRows()) {
        if (row.m_eDirection != EIEDirection::Import)
            continue;
        const bool bTells = bRead && row.m_pRecognize;
        const TIEFormatGuess guess{&row, bTells ? row.m_pRecognize(head) : EIERecognition::Perhaps,
                                   HasExtension(row, extension)};
        if (guess.m_eByContent == EIERecognition::Surely)
            sure.push_back(guess);
        else if (guess.m_eByContent == EIERecognition::Perhaps && (bTells || guess.m_bByExtension))
            others.push_back(guess);
    }

    // the extension first, then a content that was looked at; rows stay in their order otherwise
    const auto weight = [](const TIEFormatGuess& guess) {
        return (guess.m_bByExtension ? 2 : 0) + (guess.m_pRow->m_pRecognize ? 1 : 0);
    };
    std::vector<TIEFormatGuess>& guesses = sure.empty() ? others : sure;
    std::stable_sort(guesses.begin(), guesses.end(),
                     [&](const TIEFormatGuess& a, const TIEFormatGuess& b) { return weight(a) > weight(b); });
    return guesses;
}
