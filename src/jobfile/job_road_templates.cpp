// Road templates of a job.
#include "jobfile/job_fields.h"
#include "jobfile/job_parts.h"

#include <unordered_set>

template <>
const CIERoadTemplate& JobFields::DefaultOf<CIERoadTemplate>()
{
    static const CIERoadTemplate shape{CString()};
    return shape;
}

namespace {

using JobFields::Keyed;
using JobFields::Word;

void WriteSegmentCode(CIEJobWriting& out, const char* pKey, const CIETemplateSegment& segment)
{
    if (!segment.GetCodeDescription())
        return;
    out.m_Text.Key(pKey);
    out.m_Text.Text(segment.GetCodeDescription()->GetName());
}

bool ReadSegmentCode(CIEJobReading& in, const CIEJsonValue& value, CIETemplateSegment& segment)
{
    CString name;
    if (!in.Read(value, name))
        return false;
    segment.SetCodeDescription(in.NeedCode(name));
    return true;
}

constexpr TIEJobField<CIETemplateSegment> kSegmentFields[] = {
    Keyed<CIETemplateSegment, ETSDataType::Offset>("offset"),
    Keyed<CIETemplateSegment, ETSDataType::Height>("height"),
    {"code", WriteSegmentCode, ReadSegmentCode},
};

void WriteSegments(CIEJobWriting& out, const char* pKey, const CIERoadTemplate& shape)
{
    if (shape.GetNumberOfSegments() == 0)
        return;
    out.m_Text.Key(pKey);
    out.m_Text.BeginArray();
    for (int i = 0; i < shape.GetNumberOfSegments(); ++i) {
        out.m_Text.BeginObject();
        JobFields::Write(out, *shape.GetSegmentAt(i), kSegmentFields);
        out.m_Text.EndObject();
    }
    out.m_Text.EndArray();
}

bool ReadSegments(CIEJobReading& in, const CIEJsonValue& value, CIERoadTemplate& shape)
{
    return JobFields::ReadList(in, value, [&](const CIEJsonValue& element) {
        CIETemplateSegment segment;
        if (!JobFields::ReadObject(in, element, segment, kSegmentFields))
            return false;
        shape.AddSegment(segment);
        return true;
    });
}

/// Open values of a template that a job holds are central.
constexpr TIEJobWord kForms[] = {{"central", CIERoadTemplate::Central}, {"sequential", CIERoadTemplate::Sequential}};

CIERoadTemplate::EForm GetOffsetsForm(const CIERoadTemplate& shape)
{
    return shape.GetOffsetsForm() == CIERoadTemplate::Sequential ? CIERoadTemplate::Sequential
                                                                 : CIERoadTemplate::Central;
}

CIERoadTemplate::EForm GetHeightsForm(const CIERoadTemplate& shape)
{
    return shape.GetHeightsForm() == CIERoadTemplate::Sequential ? CIERoadTemplate::Sequential
                                                                 : CIERoadTemplate::Central;
}

void SetOffsetsForm(CIERoadTemplate& shape, CIERoadTemplate::EForm eForm)
{
    shape.SetForms(eForm, shape.GetHeightsForm());
}

void SetHeightsForm(CIERoadTemplate& shape, CIERoadTemplate::EForm eForm)
{
    shape.SetForms(shape.GetOffsetsForm(), eForm);
}

constexpr TIEJobField<CIERoadTemplate> kTemplateFields[] = {
    Keyed<CIERoadTemplate, ECSDataType::CutSlope>("cutSlope"),
    Keyed<CIERoadTemplate, ECSDataType::FillSlope>("fillSlope"),
    Word<CIERoadTemplate, kForms, &GetOffsetsForm, &SetOffsetsForm>("offsets"),
    Word<CIERoadTemplate, kForms, &GetHeightsForm, &SetHeightsForm>("heights"),
    {"segments", WriteSegments, ReadSegments},
};

void WriteTemplate(CIEJobWriting& out, const CIERoadTemplate& shape)
{
    out.m_Text.BeginObject();
    out.m_Text.Key("name");
    out.m_Text.Text(shape.GetName());
    JobFields::Write(out, shape, kTemplateFields);
    out.m_Text.EndObject();
}

bool ReadTemplate(CIEJobReading& in, const CIEJsonValue& value, CIERoadTemplatesDictionary& templates)
{
    CString name;
    if (!JobFields::ReadEntryName(in, value, name,
                                  [&](const CString& text) { return templates.FindRoadTemplate(text); }))
        return false;
    auto pTemplate = std::make_unique<CIERoadTemplate>(std::move(name));
    if (!JobFields::ReadOtherMembers(in, value, "name", *pTemplate, kTemplateFields))
        return false;
    templates.AddRoadTemplate(std::move(pTemplate));
    return true;
}

/// Calls `visit` for each template that the job's cross sections refer to.
template <class TVisit>
void VisitUsedTemplates(const CIEData& job, TVisit visit)
{
    for (int nDataset = 0; const CIEDataset* const pDataset = job.GetDatasetAt(nDataset); ++nDataset) {
        for (int i = 0; const CIEAlignment* const pAlignment = pDataset->GetAlignmentAt(i); ++i) {
            for (int j = 0; const CIECrossSection* const pSection = pAlignment->GetCrossSectionAt(j); ++j) {
                for (int k = 0; const CIERoadTemplate* const pTemplate = pSection->GetRoadTemplateAt(k); ++k)
                    visit(*pTemplate);
            }
        }
    }
}

} // namespace

void JobParts::WriteRoadTemplates(CIEJobWriting& out, const char* pKey)
{
    const CIERoadTemplatesDictionary* const pTemplates = out.GetJob().GetIERoadTemplatesDictionary();
    // cross sections may refer to templates that the job's dictionary no longer has
    std::vector<const CIERoadTemplate*> others;
    std::unordered_set<std::string_view> names;
    VisitUsedTemplates(out.GetJob(), [&](const CIERoadTemplate& shape) {
        const bool bHeld = pTemplates && pTemplates->FindRoadTemplate(shape.GetName());
        if (!bHeld && names.insert(shape.GetName()).second)
            others.push_back(&shape);
    });
    if (!pTemplates && others.empty())
        return;

    out.m_Text.Key(pKey);
    out.m_Text.BeginArray(CIEJsonText::Lines);
    CIERoadTemplatesDictionary::TPosition position = pTemplates ? pTemplates->GetStartPosition() : 0;
    while (position != 0)
        WriteTemplate(out, *pTemplates->GetNextRoadTemplate(position));
    for (const CIERoadTemplate* const pTemplate : others)
        WriteTemplate(out, *pTemplate);
    out.m_Text.EndArray();
}

bool JobParts::ReadRoadTemplates(CIEJobReading& in, const CIEJsonValue& value)
{
    auto pTemplates = std::make_unique<CIERoadTemplatesDictionary>();
    if (!JobFields::ReadList(in, value,
                             [&](const CIEJsonValue& element) { return ReadTemplate(in, element, *pTemplates); }))
        return false;
    in.GetJob().AttachIERoadTemplatesDictionary(std::move(pTemplates));
    return true;
}
