#include "alidade/vellumlib/ascii_fields.h"

#include "alidade/vellumlib/utils.h"

#include <algorithm>

namespace {

struct TWord {
    std::string_view m_Word;
    IEAsciiFields::EType m_eType;
};

/// The first word of a type is the one that is written. A word holds no comma, blank or bracket: the list stands in
/// brackets in the header line of a file.
constexpr TWord kWords[] = {
    {"name", IEAsciiFields::Name},
    {"point", IEAsciiFields::Name},
    {"id", IEAsciiFields::Name},
    {"number", IEAsciiFields::Name},
    {"north", IEAsciiFields::North},
    {"northing", IEAsciiFields::North},
    {"lat", IEAsciiFields::North},
    {"latitude", IEAsciiFields::North},
    {"east", IEAsciiFields::East},
    {"easting", IEAsciiFields::East},
    {"lon", IEAsciiFields::East},
    {"lng", IEAsciiFields::East},
    {"longitude", IEAsciiFields::East},
    {"height", IEAsciiFields::Height},
    {"elevation", IEAsciiFields::Height},
    {"elev", IEAsciiFields::Height},
    {"geoid", IEAsciiFields::GeoidHeight},
    {"notes", IEAsciiFields::Notes},
    {"note", IEAsciiFields::Notes},
    {"code", IEAsciiFields::Codes},
    {"code+strings", IEAsciiFields::CodesWithStrings},
    {"code+attributes", IEAsciiFields::CodesWithAttributes},
    {"codes", IEAsciiFields::CodesWithAll},
    {"description", IEAsciiFields::CodesWithAll},
    {"desc", IEAsciiFields::CodesWithAll},
    {"hrms", IEAsciiFields::HorizontalRMS},
    {"vrms", IEAsciiFields::VerticalRMS},
    {"date", IEAsciiFields::Date},
    {"time", IEAsciiFields::Time},
    {"pdop", IEAsciiFields::PositionDOP},
    {"hdop", IEAsciiFields::HorizontalDOP},
    {"vdop", IEAsciiFields::VerticalDOP},
    {"solution", IEAsciiFields::Solution},
    {"gps", IEAsciiFields::GpsSatellites},
    {"glonass", IEAsciiFields::GlonassSatellites},
    {"sheet-name", IEAsciiFields::SheetName},
    {"sheet-codes", IEAsciiFields::SheetCodes},
    {"measured-name", IEAsciiFields::MeasuredName},
    {"cut", IEAsciiFields::Cut},
    {"fill", IEAsciiFields::Fill},
    {"to-grade", IEAsciiFields::ToGrade},
    {"measured-time", IEAsciiFields::MeasuredTime},
    {"measurement", IEAsciiFields::MeasurementNumber},
    {"line-station", IEAsciiFields::LineStation},
    {"line-offset", IEAsciiFields::LineOffset},
    {"design-north", IEAsciiFields::DesignNorth},
    {"design-east", IEAsciiFields::DesignEast},
    {"design-height", IEAsciiFields::DesignHeight},
    {"measured-north", IEAsciiFields::MeasuredNorth},
    {"measured-east", IEAsciiFields::MeasuredEast},
    {"measured-height", IEAsciiFields::MeasuredHeight},
    {"delta-north", IEAsciiFields::DeltaNorth},
    {"delta-east", IEAsciiFields::DeltaEast},
    {"delta-height", IEAsciiFields::DeltaHeight},
    {"delta-station", IEAsciiFields::DeltaStation},
    {"delta-offset", IEAsciiFields::DeltaOffset},
    {"distance", IEAsciiFields::Distance},
};

constexpr TWord kLetters[] = {
    {"p", IEAsciiFields::Name},        {"n", IEAsciiFields::North},        {"e", IEAsciiFields::East},
    {"z", IEAsciiFields::Height},      {"h", IEAsciiFields::Height},       {"u", IEAsciiFields::Height},
    {"g", IEAsciiFields::GeoidHeight}, {"t", IEAsciiFields::Notes},        {"d", IEAsciiFields::Codes},
    {"c", IEAsciiFields::Codes},       {"a", IEAsciiFields::CodesWithAll},
};

template <std::size_t N>
bool Find(const TWord (&words)[N], std::string_view word, IEAsciiFields::EType& type)
{
    const auto found = std::find_if(words, words + N, [word](const TWord& known) { return known.m_Word == word; });
    if (found == words + N)
        return false;
    type = found->m_eType;
    return true;
}

/// Reads one word in lower case: a word, a letter or a number.
bool ReadWord(std::string_view word, IEAsciiFields::EType& type)
{
    if (Find(kWords, word, type) || Find(kLetters, word, type))
        return true;
    int nType = 0;
    if (!IEUtils::StringToInt(word, nType) || nType < 0 || nType > IEAsciiFields::LastField)
        return false;
    type = static_cast<IEAsciiFields::EType>(nType);
    return true;
}

/// Reads a word whose letters are a field each.
bool ReadLetters(std::string_view word, IEAsciiFields::TFields& fields)
{
    for (std::size_t i = 0; i < word.size(); ++i) {
        IEAsciiFields::EType type{};
        if (!Find(kLetters, word.substr(i, 1), type))
            return false;
        fields.push_back(type);
    }
    return true;
}

/// Takes the words apart. False if nothing stands between two commas: the field it was meant for would be lost, and all
/// behind it would shift.
bool SplitWords(const CString& text, CStringArray& words)
{
    CStringArray items, parts;
    IEUtils::ParseValues(text, items, u',', {});
    for (const CString& item : items) {
        IEUtils::ParseValuesInQuotes(item, parts, u' ');
        if (parts.empty())
            return false;
        words.insert(words.end(), parts.begin(), parts.end());
    }
    return !words.empty();
}

bool ReadFields(std::string_view text, IEAsciiFields::TFields& fields)
{
    CString plain = IEUtils::ToLower(text);
    std::replace(plain.begin(), plain.end(), ';', ',');
    std::replace(plain.begin(), plain.end(), '\t', ' ');
    CStringArray words;
    if (!SplitWords(plain, words))
        return false;
    for (const CString& word : words) {
        IEAsciiFields::EType type{};
        if (ReadWord(word, type))
            fields.push_back(type);
        else
            return words.size() == 1 && ReadLetters(word, fields);
    }
    return true;
}

} // namespace

CString IEAsciiFields::FieldsToString(const TFields& fields)
{
    CString text;
    for (EType type : fields) {
        if (!text.empty())
            text += ',';
        const auto word = std::find_if(std::begin(kWords), std::end(kWords),
                                       [type](const TWord& known) { return known.m_eType == type; });
        text += word != std::end(kWords) ? CString(word->m_Word) : IEUtils::IntToString(type);
    }
    return text;
}

bool IEAsciiFields::StringToFields(std::string_view text, TFields& fields)
{
    fields.clear();
    if (ReadFields(text, fields))
        return true;
    fields.clear();
    return false;
}

int IEAsciiFields::FindTypeInArray(EType type, const TFields& fields)
{
    const auto found = std::find(fields.begin(), fields.end(), type);
    return found == fields.end() ? -1 : static_cast<int>(found - fields.begin());
}

int IEAsciiFields::FindCodesInArray(const TFields& fields)
{
    const auto found = std::find_if(fields.rbegin(), fields.rend(), IsCodes);
    return static_cast<int>(fields.rend() - found) - 1;
}
