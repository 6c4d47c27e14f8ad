// One delimited line as an object, one code text as a code.

#include "alidade/vellumlib/utils.h"
#include "frame/delimited_text.h"
#include "frame/point_importer.h"

#include <algorithm>

using namespace DelimitedText;

namespace {

constexpr auto npos = std::string_view::npos;

bool IsListWord(std::string_view word)
{
    return word.size() > kList.size() && word.starts_with(kList);
}

/// Place of the point between an attribute's name and its type word: the first one with a word that is a type behind
/// it, or else the first one. npos without a point.
std::size_t FindTypeMark(std::string_view name)
{
    for (std::size_t n = name.find(kTypeMark); n != npos; n = name.find(kTypeMark, n + 1)) {
        const std::string_view word = name.substr(n + 1);
        if (word == kText || word == kInt || word == kReal || (IsListWord(word) && word.ends_with(')')))
            return n;
    }
    return name.find(kTypeMark);
}

/// What stands behind a mark, which is taken off `text` with it; nothing if the mark isn't there.
std::string_view CutBehind(std::string_view& text, char cMark)
{
    const std::size_t n = text.find(cMark);
    if (n == npos)
        return {};
    const std::string_view behind = text.substr(n + 1);
    text = text.substr(0, n);
    return behind;
}

/// Parts between marks without the quotes at their ends.
CStringArray SplitQuoted(std::string_view text, char cMark)
{
    CStringArray parts;
    IEUtils::ParseValues(text, parts, static_cast<char16_t>(cMark), "\"");
    for (CString& part : parts)
        part = IEUtils::RemoveBorderQuotes(part);
    return parts;
}

/// Takes a value in double quotes off the text, and with it whatever stands ahead of the next pair. A "$" within the
/// quotes is where the next pair begins all the same.
/// `bMark` tells whether the text holds a "$" at all: a long row of values without any would be searched for it each
/// time.
std::string_view TakeQuoted(std::string_view& text, bool bMark)
{
    text.remove_prefix(1);
    const std::size_t nQuote = text.find('"');
    const std::string_view value = text.substr(0, nQuote);
    std::size_t nCut = nQuote;
    if (bMark)
        nCut = text.find(kAttributeMark);
    text = nCut == npos ? std::string_view() : text.substr(nCut + 1);
    return value;
}

/// A field takes more memory than the characters between two delimiters, so a line of delimiters alone is not split.
bool HasTooManyFields(std::string_view line, char16_t cDelimiter)
{
    constexpr std::size_t kShortLine = 4096;
    constexpr std::ptrdiff_t kMostFields = 10000;
    if (line.size() < kShortLine)
        return false;
    // the last byte of the delimiter; one of a longer character may count too often, but never too seldom
    const char cLast = IEUtils::CharToString(cDelimiter).back();
    return std::count(line.begin(), line.end(), cLast) > kMostFields;
}

std::string_view TakePlain(std::string_view& text)
{
    const std::size_t nNext = text.find(kAttributeMark);
    const std::string_view value = text.substr(0, nNext);
    text = nNext == npos ? std::string_view() : text.substr(nNext + 1);
    return value;
}

} // namespace

EIEResult CIEPointImporter::ParseLine(std::string_view line, std::unique_ptr<CIEObject>& pObject)
{
    const TIEAsciiFormat& format = m_pData->GetSettings().GetAsciiFormat();
    const IEAsciiFields::TFields& layout = format.m_Fields;
    std::vector<std::string_view>& fields = m_FieldTexts;
    if (layout.empty())
        return Refuse(EIENote::LayoutEmpty, "the layout has no field");
    if (HasTooManyFields(line, format.m_cDelimiter))
        return Refuse(EIENote::LineTooLong, "it has more fields than any record can have");
    IEUtils::ParseValuesInQuotes(line, fields, format.m_cDelimiter);
    // the empty field behind a last delimiter is there already, unless blanks separate, which end a line as often as
    // not
    if (format.m_cDelimiter == u' ' && fields.size() < layout.size() && line.ends_with(' '))
        fields.emplace_back();

    const int nExpected = static_cast<int>(layout.size());
    const int nCodes = IEAsciiFields::FindCodesInArray(layout);
    int nImplied = 0; // a line may end ahead of the codes
    if (static_cast<int>(fields.size()) < nExpected) {
        if (nCodes < 0 || nCodes != nExpected - 1)
            return Refuse(EIENote::LineFieldCount,
                          "it has " + IEUtils::IntToString(static_cast<std::int64_t>(fields.size())) +
                              " fields where the layout has " + IEUtils::IntToString(nExpected));
        fields.emplace_back();
        nImplied = 1;
    }

    int nName = IEAsciiFields::FindTypeInArray(IEAsciiFields::Name, layout);
    if (nCodes >= 0 && nCodes < nName) // codes ahead of the name may have spread over several fields
        nName += static_cast<int>(fields.size()) - nExpected;
    std::unique_ptr<CIEDesignPoint> pPoint;
    int nReferences = 0;
    if (nName >= 0 && nName < static_cast<int>(fields.size())) {
        std::string_view& name = fields[static_cast<std::size_t>(nName)];
        std::size_t nMark = name.find('<') == npos ? npos : name.find(kPointToLine);
        const bool bToLine = nMark != npos;
        if (!bToLine && name.find('<') != npos)
            nMark = name.find(kRegular);
        if (nMark != npos) {
            name = name.substr(0, nMark);
            nReferences = 2;
            auto pRelative = std::make_unique<CIEPTLPoint>();
            if (fields.size() >= 2)
                pRelative->SetPTLParams(CString(fields[fields.size() - 2]), CString(fields.back()),
                                        bToLine ? CIEPTLPoint::PointToLine : CIEPTLPoint::Regular);
            pPoint = std::move(pRelative);
        }
    }
    if (!pPoint)
        pPoint = std::make_unique<CIEDesignPoint>();

    m_CodeTexts.clear();
    const int nSpread = static_cast<int>(fields.size()) - nReferences - nExpected;
    if (nCodes >= 0 && nSpread >= 0) {
        const auto first = fields.begin() + nCodes;
        m_CodeTexts.assign(first, first + nSpread + 1);
        fields.erase(first + 1, first + 1 + nSpread);
    }
    if (static_cast<int>(fields.size()) - nReferences != nExpected)
        return Refuse(EIENote::LineFieldCount,
                      "it has " +
                          IEUtils::IntToString(static_cast<std::int64_t>(fields.size()) - nReferences - nImplied) +
                          " fields where the layout has " + IEUtils::IntToString(nExpected));

    CIEStation station;
    for (int i = 0; i < nExpected; ++i) {
        if (!SetField(layout[static_cast<std::size_t>(i)], fields[static_cast<std::size_t>(i)], station))
            return IE_PARTIAL;
    }
    pPoint->SetStation(std::move(station));
    for (const std::string_view code : m_CodeTexts)
        ParseCode(code, *pPoint);
    pObject = std::move(pPoint);
    return IE_OK;
}

bool CIEPointImporter::SetField(int nField, std::string_view text, CIEStation& station)
{
    const TIEJobInfo& info = *m_pData->GetJobInfo();
    const auto distance = [&](bool& bOk) { return IEUtils::StringByStyleToDist(info.GetDistUnits(), text, bOk); };
    const auto coordinate = [&](bool& bOk) {
        return info.GetCSType() != TIEJobInfo::Geographic
                   ? distance(bOk)
                   : IEUtils::StringByStyleToCoords(m_pData->GetSettings().m_eCoordsStyle, text, bOk);
    };
    bool bOk = true;
    const char* pWhat = "";
    switch (nField) {
    case IEAsciiFields::Name:
        station.SetName(CString(text));
        break;
    case IEAsciiFields::North:
        pWhat = "north";
        station.m_dNorth = coordinate(bOk);
        break;
    case IEAsciiFields::East:
        pWhat = "east";
        station.m_dEast = coordinate(bOk);
        break;
    case IEAsciiFields::Height:
        pWhat = "height";
        station.SetHeight(distance(bOk));
        break;
    case IEAsciiFields::GeoidHeight:
        pWhat = "geoid height";
        station.SetGeoidHeight(distance(bOk));
        break;
    case IEAsciiFields::Notes:
        station.SetNotes(CString(text));
        break;
    default:
        if (nField > IEAsciiFields::LastDelimited) {
            Refuse(EIENote::LayoutField, "the layout has a field that a delimited line can't hold");
            return false;
        }
        break; // codes come later; a GPS field tells nothing here
    }
    if (!bOk)
        Refuse(EIENote::LineNumber, CString("its ") + pWhat + " \"" + Excerpt(text) + "\" can't be read");
    return bOk;
}

void CIEPointImporter::ParseCode(std::string_view text, CIEObject& object)
{
    if (text.empty())
        return;
    const IEAsciiFields::TFields& layout = m_pData->GetSettings().GetAsciiFormat().m_Fields;
    const auto asksFor = [&layout](IEAsciiFields::EType type) {
        return IEAsciiFields::FindTypeInArray(type, layout) >= 0;
    };
    const bool bAll = asksFor(IEAsciiFields::CodesWithAll);
    const bool bAttributes = bAll || asksFor(IEAsciiFields::CodesWithAttributes);
    if (!m_bCodeStrings)
        m_bCodeStrings = bAll || asksFor(IEAsciiFields::CodesWithStrings);

    std::size_t nNameEnd = text.find(kAttributesMark);
    const bool bHasAttributes = nNameEnd != npos;
    if (nNameEnd == npos)
        nNameEnd = text.find(kCodeStringMark);
    if (nNameEnd == npos)
        nNameEnd = text.find(kControlCodeMark);
    const std::string_view name = text.substr(0, nNameEnd);
    std::string_view rest = nNameEnd == npos ? std::string_view() : text.substr(nNameEnd + (bHasAttributes ? 1 : 0));

    TAttributes attributes;
    if (bAttributes && !rest.empty()) {
        std::size_t nEnd = rest.find(kCodeStringMark);
        if (nEnd == npos)
            nEnd = rest.find(kControlCodeMark);
        attributes = ReadAttributes(rest.substr(0, nEnd));
    }

    CIECodeDescription* pDescription = m_pData->GetIEDataDictionary()->FindCodeDiscription(name);
    if (!pDescription)
        pDescription = m_pData->AddCodeToIEDataDictionary(MakeDescription(CString(name), attributes));
    else if (m_pData->GetObserver())
        NoteOtherNames(*pDescription, attributes, object);
    CIECodeValues values(pDescription);
    for (TAttribute& attribute : attributes)
        values.AddAttr(std::move(attribute.m_strValue));

    const std::string_view controls = CutBehind(rest, kControlCodeMark);
    if (bAll && !controls.empty()) {
        const CStringArray parts = SplitQuoted(controls, kControlCodeMark);
        for (std::size_t i = 0; i < parts.size(); ++i)
            values.SetControlCode(i == 0 ? 0 : 1, parts[i]);
    }
    const std::string_view strings = CutBehind(rest, kCodeStringMark);
    if (m_bCodeStrings && !strings.empty()) {
        for (CString& part : SplitQuoted(strings, kCodeStringMark)) {
            if (!part.empty())
                values.AddCodeString(std::move(part));
        }
    }
    object.AddCode(std::move(values));
}

/// Values go to the dictionary's attributes in order, whatever names stand beside them in the file.
void CIEPointImporter::NoteOtherNames(const CIECodeDescription& description, const TAttributes& attributes,
                                      const CIEObject& object) const
{
    for (int i = 0; static_cast<std::size_t>(i) < attributes.size(); ++i) {
        const std::string_view name = attributes[static_cast<std::size_t>(i)].m_strName;
        const CIEAttrDescription* const pKnown = description.GetAttrDescriptionAt(i);
        if (pKnown && (name == pKnown->GetName() || name.substr(0, FindTypeMark(name)) == pKnown->GetName()))
            continue;
        Note(TIENote::Changed, EIENote::CodeAttributes, m_nLine, object.GetName(),
             "the attributes of its code \"" + description.GetName() +
                 "\" aren't those that the job knows; their values were taken in order");
        return;
    }
}

CIEPointImporter::TAttributes CIEPointImporter::ReadAttributes(std::string_view text) const
{
    const bool bQuotes = m_pData->GetSettings().m_bAttrQuotes;
    TAttributes attributes;
    text = IEUtils::Trim(text);
    const std::size_t nLastMark = text.rfind(kAttributeMark);
    const std::size_t nFromLastMark = nLastMark == npos ? npos : text.size() - nLastMark; // bytes, the mark among them
    for (std::size_t nValue = text.find(kValueMark); nValue != npos; nValue = text.find(kValueMark)) {
        const std::string_view name = IEUtils::Trim(text.substr(0, nValue));
        text = IEUtils::Trim(text.substr(nValue + 1));
        const std::size_t nType = FindTypeMark(name);
        const std::string_view type = nType == npos ? std::string_view() : name.substr(nType + 1);
        // A text without its quote comes from a file that was written without them, and reads as any other value.
        const bool bQuoted = (type == kText || (bQuotes && IsListWord(type))) && text.starts_with('"');
        const std::string_view value = bQuoted ? TakeQuoted(text, text.size() >= nFromLastMark) : TakePlain(text);
        attributes.push_back({CString(name), CString(IEUtils::Trim(value))});
    }
    return attributes;
}

std::unique_ptr<CIECodeDescription> CIEPointImporter::MakeDescription(CString strName,
                                                                      const TAttributes& attributes) const
{
    auto pDescription = std::make_unique<CIECodeDescription>(std::move(strName));
    for (const TAttribute& attribute : attributes) {
        const std::string_view name = attribute.m_strName;
        const std::size_t nType = m_pData->GetSettings().m_bAttrTypes ? FindTypeMark(name) : npos;
        CIEAttrDescription description{CString(name.substr(0, nType))};
        const std::string_view type = nType == npos ? std::string_view() : name.substr(nType + 1);
        if (type == kReal) {
            description.SetType(CIEAttrDescription::REAL);
        } else if (type == kInt) {
            description.SetType(CIEAttrDescription::INT);
        } else if (IsListWord(type) && type[kList.size()] == '(' && type.ends_with(')')) {
            CStringArray items;
            IEUtils::ParseValues(type.substr(kList.size() + 1, type.size() - kList.size() - 2), items,
                                 static_cast<char16_t>(kItemMark), {});
            description.SetType(CIEAttrDescription::LIST);
            description.SetListItems(std::move(items));
        }
        pDescription->AddAttrDescription(std::move(description));
    }
    return pDescription;
}
