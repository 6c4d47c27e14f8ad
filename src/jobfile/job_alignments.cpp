// Alignments with their profile and cross sections.
#include "jobfile/job_fields.h"
#include "jobfile/job_parts.h"
#include "jobfile/job_road_elements.h"

#include "alidade/vellumlib/alignment.h"

template <>
const CIECrossSection& JobFields::DefaultOf<CIECrossSection>()
{
    static const CIECrossSection section(nullptr);
    return section;
}

template <>
const CIEVerticalElement& JobFields::DefaultOf<CIEVerticalElement>()
{
    static const CIEVerticalElement element(CIEVerticalElement::Straight);
    return element;
}

namespace {

using JobFields::Keyed;
using JobFields::Value;
using JobFields::Word;

// ---- profile

constexpr TIEJobWord kVerticalTypes[] = {
    {"straight", CIEVerticalElement::Straight},
    {"parabola", CIEVerticalElement::Parabola},
};

template <EVEDataType key>
constexpr TIEJobField<CIEVerticalElement> Vertical(const char* pKey)
{
    return Keyed<CIEVerticalElement, key>(pKey);
}

constexpr TIEJobField<CIEVerticalElement> kVerticalFields[] = {
    Vertical<EVEDataType::StartStation>("startStation"),
    Vertical<EVEDataType::EndStation>("endStation"),
    Vertical<EVEDataType::Length>("length"),
    Vertical<EVEDataType::Grade>("grade"),
    Vertical<EVEDataType::StartElevation>("startElevation"),
    Vertical<EVEDataType::EndElevation>("endElevation"),
    Vertical<EVEDataType::Station>("station"),
    Vertical<EVEDataType::Elevation>("elevation"),
    Vertical<EVEDataType::EndGrade>("endGrade"),
    Vertical<EVEDataType::ParabolaCoefficient>("parabolaCoefficient"),
};

void WriteVertical(CIEJobWriting& out, const CIEVerticalElement& element)
{
    out.m_Text.BeginObject();
    out.m_Text.Key("type");
    out.WriteWord(kVerticalTypes, std::size(kVerticalTypes), element.GetElementType());
    JobFields::Write(out, element, kVerticalFields);
    out.m_Text.EndObject();
}

std::unique_ptr<CIEVerticalElement> ReadVertical(CIEJobReading& in, const CIEJsonValue& value)
{
    int nType = CIEVerticalElement::Straight;
    if (!in.WantObject(value))
        return nullptr;
    const auto itType = value.Find("type");
    if (itType != value.end() && !in.ReadWord(*itType, kVerticalTypes, std::size(kVerticalTypes), nType))
        return nullptr;
    auto pElement = std::make_unique<CIEVerticalElement>(static_cast<CIEVerticalElement::EElementType>(nType));
    if (!JobFields::ReadOtherMembers(in, value, "type", *pElement, kVerticalFields))
        return nullptr;
    return pElement;
}

void WriteParabola(CIEJobWriting& out, const char* pKey, const CIELongSection& section)
{
    if (!section.GetOwnParabola())
        return;
    out.m_Text.Key(pKey);
    WriteVertical(out, *section.GetOwnParabola());
}

bool ReadParabola(CIEJobReading& in, const CIEJsonValue& value, CIELongSection& section)
{
    section.SetParabola(ReadVertical(in, value));
    return section.GetOwnParabola() != nullptr;
}

constexpr TIEJobField<CIELongSection> kLongSectionFields[] = {
    Keyed<CIELongSection, ELSDataType::Station>("station"),
    Keyed<CIELongSection, ELSDataType::Elevation>("elevation"),
    Keyed<CIELongSection, ELSDataType::ParabolaLength>("parabolaLength"),
    Keyed<CIELongSection, ELSDataType::Grade>("grade"),
    Keyed<CIELongSection, ELSDataType::Further>("further"),
    {"parabola", WriteParabola, ReadParabola},
};

// ---- cross sections

void WriteLevel(CIEJobWriting& out, const char* pKey, const CIECrossSection& section)
{
    if (!section.IsLevelAtCLCalculated())
        return;
    out.m_Text.Key(pKey);
    out.m_Text.Number(section.GetLevelAtCL());
}

bool ReadLevel(CIEJobReading& in, const CIEJsonValue& value, CIECrossSection& section)
{
    double dLevel = 0.0;
    if (!in.Read(value, dLevel))
        return false;
    section.SetLevelAtCL(dLevel);
    return true;
}

void WriteTemplateNames(CIEJobWriting& out, const char* pKey, const CIECrossSection& section)
{
    if (section.GetNumberOfRoadTemplates() == 0)
        return;
    out.m_Text.Key(pKey);
    out.m_Text.BeginArray();
    for (int i = 0; i < section.GetNumberOfRoadTemplates(); ++i)
        out.m_Text.Text(section.GetRoadTemplateAt(i)->GetName());
    out.m_Text.EndArray();
}

bool ReadTemplateNames(CIEJobReading& in, const CIEJsonValue& value, CIECrossSection& section)
{
    return JobFields::ReadList(in, value, [&](const CIEJsonValue& element) {
        CString name;
        if (!in.Read(element, name))
            return false;
        const CIERoadTemplatesDictionary* const pTemplates = in.GetJob().GetIERoadTemplatesDictionary();
        const CIERoadTemplate* const pTemplate = pTemplates ? pTemplates->FindRoadTemplate(name) : nullptr;
        section.AddRoadTemplate(pTemplate);
        return pTemplate || in.Fail(element, "The job has no road template of this name.");
    });
}

constexpr TIEJobWord kSides[] = {{"left", 0}, {"right", 1}};

constexpr TIEJobField<CIECrossSection> kCrossSectionFields[] = {
    Value<CIECrossSection, &CIECrossSection::GetSta, &CIECrossSection::SetSta>("station"),
    Word<CIECrossSection, kSides, &CIECrossSection::GetTurn, &CIECrossSection::SetTurn>("side"),
    {"levelAtCentreLine", WriteLevel, ReadLevel},
    {"templates", WriteTemplateNames, ReadTemplateNames},
};

// ---- the alignment and its lists

/// Writes a list one element a line; nothing for an empty one.
template <class TWrite>
void WriteLines(CIEJobWriting& out, const char* pKey, int nCount, TWrite write)
{
    if (nCount == 0)
        return;
    out.m_Text.Key(pKey);
    out.m_Text.BeginArray(CIEJsonText::Lines);
    for (int i = 0; i < nCount; ++i)
        write(i);
    out.m_Text.EndArray();
}

template <class T, std::size_t n>
void WriteCompact(CIEJobWriting& out, const T& object, const TIEJobField<T> (&fields)[n])
{
    out.m_Text.BeginObject();
    JobFields::Write(out, object, fields);
    out.m_Text.EndObject();
}

void WriteObjects(CIEJobWriting& out, const char* pKey, const CIEAlignment& alignment)
{
    WriteLines(out, pKey, alignment.GetNumberOfObjects(),
               [&](int i) { JobParts::WriteRoadElement(out, *alignment.GetObjectAt(i)); });
}

bool ReadObjects(CIEJobReading& in, const CIEJsonValue& value, CIEAlignment& alignment)
{
    return JobFields::ReadList(in, value, [&](const CIEJsonValue& element) {
        return alignment.AddObject(JobParts::ReadRoadElement(in, element)) != nullptr;
    });
}

void WriteLongSections(CIEJobWriting& out, const char* pKey, const CIEAlignment& alignment)
{
    WriteLines(out, pKey, alignment.GetNumberOfLongSections(),
               [&](int i) { WriteCompact(out, *alignment.GetLongSectionAt(i), kLongSectionFields); });
}

bool ReadLongSections(CIEJobReading& in, const CIEJsonValue& value, CIEAlignment& alignment)
{
    return JobFields::ReadList(in, value, [&](const CIEJsonValue& element) {
        CIELongSection& section = *alignment.AddLongSection(std::make_unique<CIELongSection>());
        return JobFields::ReadObject(in, element, section, kLongSectionFields);
    });
}

void WriteVerticalElements(CIEJobWriting& out, const char* pKey, const CIEAlignment& alignment)
{
    WriteLines(out, pKey, alignment.GetNumberOfVerticalElements(),
               [&](int i) { WriteVertical(out, *alignment.GetVerticalElementAt(i)); });
}

bool ReadVerticalElements(CIEJobReading& in, const CIEJsonValue& value, CIEAlignment& alignment)
{
    return JobFields::ReadList(in, value, [&](const CIEJsonValue& element) {
        return alignment.AddVerticalElement(ReadVertical(in, element)) != nullptr;
    });
}

void WriteCrossSections(CIEJobWriting& out, const char* pKey, const CIEAlignment& alignment)
{
    WriteLines(out, pKey, alignment.GetNumberOfCrossSections(),
               [&](int i) { WriteCompact(out, *alignment.GetCrossSectionAt(i), kCrossSectionFields); });
}

bool ReadCrossSections(CIEJobReading& in, const CIEJsonValue& value, CIEAlignment& alignment)
{
    return JobFields::ReadList(in, value, [&](const CIEJsonValue& element) {
        CIECrossSection& section = *alignment.AddCrossSection(std::make_unique<CIECrossSection>(nullptr));
        return JobFields::ReadObject(in, element, section, kCrossSectionFields);
    });
}

void WriteLength(CIEJobWriting& out, const char* pKey, const CIEAlignment& alignment)
{
    if (!alignment.IsLengthSet())
        return;
    out.m_Text.Key(pKey);
    out.m_Text.Number(alignment.GetLength());
}

bool ReadLength(CIEJobReading& in, const CIEJsonValue& value, CIEAlignment& alignment)
{
    double dLength = 0.0;
    if (!in.Read(value, dLength))
        return false;
    alignment.SetLength(dLength);
    return true;
}

constexpr TIEJobField<CIEAlignment> kAlignmentFields[] = {
    Value<CIEAlignment, &CIEAlignment::GetName, &CIEAlignment::SetName>("name"),
    Value<CIEAlignment, &CIEAlignment::GetStaStart, &CIEAlignment::SetStaStart>("startStation"),
    {"length", WriteLength, ReadLength},
    {"objects", WriteObjects, ReadObjects},
    {"longSections", WriteLongSections, ReadLongSections},
    {"verticalElements", WriteVerticalElements, ReadVerticalElements},
    {"crossSections", WriteCrossSections, ReadCrossSections},
};

} // namespace

void JobParts::WriteAlignment(CIEJobWriting& out, const CIEAlignment& alignment, int nStartPoint)
{
    out.m_Text.BeginObject(CIEJsonText::Lines);
    if (nStartPoint >= 0) {
        out.m_Text.Key("startPoint");
        out.m_Text.Whole(nStartPoint);
    }
    JobFields::Write(out, alignment, kAlignmentFields);
    out.m_Text.EndObject();
}

std::unique_ptr<CIEAlignment> JobParts::ReadAlignment(CIEJobReading& in, const CIEJsonValue& value, int& nStartPoint)
{
    auto pAlignment = std::make_unique<CIEAlignment>();
    nStartPoint = -1;
    if (!in.WantObject(value))
        return nullptr;
    const auto itPoint = value.Find("startPoint");
    if (itPoint != value.end() && !in.Read(*itPoint, nStartPoint))
        return nullptr;
    if (!JobFields::ReadOtherMembers(in, value, "startPoint", *pAlignment, kAlignmentFields))
        return nullptr;
    return pAlignment;
}
