#include "alidade/vellumlib/road_templates.h"

#include <algorithm>
#include <cmath>

bool CIERoadTemplate::SetName(CString name)
{
    if (m_pOwner)
        return m_pOwner->Rename(*this, std::move(name));
    m_strName = std::move(name);
    return true;
}

const CIETemplateSegment* CIERoadTemplate::GetSegmentAt(int i) const
{
    return i >= 0 && i < GetNumberOfSegments() ? &m_Segments[static_cast<std::size_t>(i)] : nullptr;
}

CIETemplateSegment* CIERoadTemplate::GetSegmentAt(int i)
{
    return i >= 0 && i < GetNumberOfSegments() ? &m_Segments[static_cast<std::size_t>(i)] : nullptr;
}

void CIERoadTemplate::SetForms(EForm eOffsets, EForm eHeights)
{
    m_eOffsets = eOffsets;
    m_eHeights = eHeights;
}

void CIERoadTemplate::Convert(ETSDataType key, EForm& eForm, EForm eWanted)
{
    if (eForm == eWanted)
        return;
    eForm = eWanted;
    double dPrevious = 0.0; // the segment before, from the centre line
    for (CIETemplateSegment& segment : m_Segments) {
        const double dValue = segment.GetData(key);
        if (eWanted == Sequential) {
            segment.SetData(key, dValue - dPrevious);
            dPrevious = dValue;
        } else {
            dPrevious += dValue;
            segment.SetData(key, dPrevious);
        }
    }
}

void CIERoadTemplate::MakeOffsetsPositive()
{
    if (m_eOffsets == Sequential)
        return;
    bool bChanged = false;
    for (CIETemplateSegment& segment : m_Segments) {
        const double dOffset = segment.GetData(ETSDataType::Offset);
        bChanged = bChanged || dOffset < 0.0;
        segment.SetData(ETSDataType::Offset, std::fabs(dOffset));
    }
    const auto offset = [](const CIETemplateSegment& segment) { return segment.GetData(ETSDataType::Offset); };
    if (bChanged && m_eHeights != Sequential && offset(m_Segments.front()) > offset(m_Segments.back()))
        std::reverse(m_Segments.begin(), m_Segments.end());
}

CIERoadTemplatesDictionary::TPosition CIERoadTemplatesDictionary::NextTaken(std::size_t i) const
{
    while (i < m_Templates.size() && !m_Templates[i])
        ++i;
    return i < m_Templates.size() ? i + 1 : 0;
}

CIERoadTemplate* CIERoadTemplatesDictionary::GetNextRoadTemplate(TPosition& position) const
{
    if (position == 0 || position > m_Templates.size()) {
        position = 0;
        return nullptr;
    }
    CIERoadTemplate* pTemplate = m_Templates[position - 1].get();
    position = NextTaken(position);
    return pTemplate;
}

CIERoadTemplate* CIERoadTemplatesDictionary::FindRoadTemplate(std::string_view name) const
{
    const auto it = m_ByName.find(name);
    return it == m_ByName.end() ? nullptr : m_Templates[it->second].get();
}

CIERoadTemplate* CIERoadTemplatesDictionary::AddRoadTemplate(std::unique_ptr<CIERoadTemplate> pTemplate)
{
    if (!pTemplate)
        return nullptr;
    if (CIERoadTemplate* pThere = FindRoadTemplate(pTemplate->GetName()))
        return pThere;
    pTemplate->m_pOwner = this;
    m_ByName.emplace(pTemplate->GetName(), m_Templates.size());
    m_Templates.push_back(std::move(pTemplate));
    return m_Templates.back().get();
}

bool CIERoadTemplatesDictionary::RemoveRoadTemplate(std::string_view name)
{
    const auto it = m_ByName.find(name);
    if (it == m_ByName.end())
        return false;
    const std::size_t i = it->second;
    m_ByName.erase(it); // before its key goes
    m_Templates[i].reset();
    if (m_Templates.size() > 2 * m_ByName.size())
        CloseGaps();
    return true;
}

void CIERoadTemplatesDictionary::CloseGaps()
{
    std::erase(m_Templates, nullptr);
    for (std::size_t i = 0; i < m_Templates.size(); ++i)
        m_ByName[m_Templates[i]->GetName()] = i;
}

bool CIERoadTemplatesDictionary::Rename(CIERoadTemplate& renamed, CString name)
{
    if (name == renamed.m_strName)
        return true;
    if (FindRoadTemplate(name))
        return false;
    const auto it = m_ByName.find(renamed.m_strName);
    const std::size_t i = it->second;
    m_ByName.erase(it);
    renamed.m_strName = std::move(name);
    m_ByName.emplace(renamed.m_strName, i);
    return true;
}

void CIERoadTemplatesDictionary::ConvertOffsetsCentralToSeq(bool bOffsets, bool bHeights)
{
    for (TPosition position = GetStartPosition(); position != 0;) {
        CIERoadTemplate& converted = *GetNextRoadTemplate(position);
        if (bOffsets)
            converted.Convert(ETSDataType::Offset, converted.m_eOffsets, CIERoadTemplate::Sequential);
        if (bHeights)
            converted.Convert(ETSDataType::Height, converted.m_eHeights, CIERoadTemplate::Sequential);
    }
}

void CIERoadTemplatesDictionary::ConvertOffsetsSeqToCentral(bool bOffsets, bool bHeights)
{
    for (TPosition position = GetStartPosition(); position != 0;) {
        CIERoadTemplate& converted = *GetNextRoadTemplate(position);
        if (bOffsets)
            converted.Convert(ETSDataType::Offset, converted.m_eOffsets, CIERoadTemplate::Central);
        if (bHeights)
            converted.Convert(ETSDataType::Height, converted.m_eHeights, CIERoadTemplate::Central);
    }
}

void CIERoadTemplatesDictionary::MakeOffsetsPositive()
{
    for (TPosition position = GetStartPosition(); position != 0;)
        GetNextRoadTemplate(position)->MakeOffsetsPositive();
}

void CIERoadTemplatesDictionary::SettleAsCentral()
{
    for (TPosition position = GetStartPosition(); position != 0;) {
        CIERoadTemplate& settled = *GetNextRoadTemplate(position);
        if (settled.m_eOffsets == CIERoadTemplate::Open)
            settled.m_eOffsets = CIERoadTemplate::Central;
        if (settled.m_eHeights == CIERoadTemplate::Open)
            settled.m_eHeights = CIERoadTemplate::Central;
    }
}
