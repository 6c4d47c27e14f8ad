#include "cli/content.h"

#include "alidade/vellumlib/kinds.h"

#include <algorithm>
#include <fmt/format.h>

namespace {

using namespace Cli;

constexpr const char* kNothing = "nothing";

void Widen(std::optional<TRange>& range, double dValue)
{
    if (range)
        range = {std::min(range->m_dLeast, dValue), std::max(range->m_dMost, dValue)};
    else
        range = {dValue, dValue};
}

int& CountOf(TContent& content, EIEObjectsType eType)
{
    switch (GetObjectKind(eType).m_eGroup) {
    case EIEObjectsType::PolyLine:
        return content.m_nLines;
    case EIEObjectsType::Polygon:
        return content.m_nPolygons;
    case EIEObjectsType::Arc:
        return content.m_nArcs;
    case EIEObjectsType::Composite:
        return content.m_nComposites;
    default:
        return content.m_nPoints;
    }
}

void Append(std::string& text, int nCount, const char* pOne)
{
    if (nCount > 0)
        text += fmt::format("{}{} {}{}", text.empty() ? "" : ", ", nCount, pOne, nCount == 1 ? "" : "s");
}

} // namespace

namespace Cli {

TContent LookInto(const CIEDataset& dataset)
{
    TContent content;
    content.m_nElements = dataset.GetNumberOfElements(-1, 2, false, false);
    content.m_nSurfaces = dataset.GetNumberOfSurfaces();
    content.m_nAlignments = dataset.GetNumberOfAlignments();
    if (dataset.GetJobHistory())
        content.m_nHistoryTables = static_cast<int>(dataset.GetJobHistory()->GetJHTables().size());
    for (int i = 0; const CIEObject* const pObject = dataset.GetObjectAt(i); ++i) {
        if (pObject->GetStateType() == CIEObject::InBlock) {
            ++content.m_nInBlocks;
            continue;
        }
        ++CountOf(content, pObject->GetType());
        content.m_nStations += pObject->GetNumberOfStations();
        for (int j = 0; const CIEStation* const pStation = pObject->GetStation(j); ++j) {
            Widen(content.m_North, pStation->m_dNorth);
            Widen(content.m_East, pStation->m_dEast);
            if (pStation->IsHeightDefined())
                Widen(content.m_Height, pStation->GetHeight());
        }
    }
    return content;
}

bool HasContent(const CIEData& job)
{
    return DescribeContent(job) != kNothing;
}

std::string DescribeContent(const CIEData& job)
{
    TContent all;
    for (int i = 0; const CIEDataset* const pDataset = job.GetDatasetAt(i); ++i) {
        const TContent content = LookInto(*pDataset);
        for (int TContent::*pCount : {&TContent::m_nPoints, &TContent::m_nLines, &TContent::m_nPolygons,
                                      &TContent::m_nArcs, &TContent::m_nComposites, &TContent::m_nSurfaces,
                                      &TContent::m_nAlignments, &TContent::m_nHistoryTables, &TContent::m_nInBlocks})
            all.*pCount += content.*pCount;
    }
    std::string text;
    Append(text, all.m_nPoints, "point");
    Append(text, all.m_nLines, "line");
    Append(text, all.m_nPolygons, "polygon");
    Append(text, all.m_nArcs, "arc");
    Append(text, all.m_nComposites, "composite object");
    Append(text, all.m_nSurfaces, "surface");
    Append(text, all.m_nAlignments, "alignment");
    Append(text, all.m_nHistoryTables, "job history table");
    if (all.m_nInBlocks > 0)
        text += fmt::format("{}{} within blocks", text.empty() ? "" : ", ", all.m_nInBlocks);
    return text.empty() ? kNothing : text;
}

} // namespace Cli
