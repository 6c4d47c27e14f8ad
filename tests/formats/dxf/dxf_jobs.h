// Jobs for the tests of drawings, and their export.
#pragma once

#include "alidade/transfer/entries.h"
#include "support/files.h"
#include "support/jobs.h"

#include <optional>

struct TDrawn {
    std::optional<std::uint32_t> m_RGB = {};
    CIEDrawLineProperties::EDashStyleType m_eDash = CIEDrawLineProperties::ByLayer;
    int m_nWidth = -1;
};

inline std::unique_ptr<CIEDrawProperties> MakeDrawnLine(const TDrawn& drawn)
{
    auto pLine = std::make_unique<CIEDrawLineProperties>();
    pLine->SetDashStyle(drawn.m_eDash);
    if (drawn.m_RGB)
        pLine->SetColor(ColorFromRGB(*drawn.m_RGB));
    if (drawn.m_nWidth >= 0)
        pLine->SetWidth(drawn.m_nWidth);
    return pLine;
}

template <class TProperties = CIEDrawPointProperties>
std::unique_ptr<CIEDrawProperties> MakeDrawn(std::uint32_t nRGB)
{
    auto pProperties = std::make_unique<TProperties>();
    pProperties->SetColor(ColorFromRGB(nRGB));
    return pProperties;
}

inline CIEArc& AddArc(CIEDataset& dataset, const CString& name, const CIEStation& center, double dRadius, double dStart,
                      double dEnd)
{
    auto pArc = std::make_unique<CIEArc>();
    pArc->SetStation(center);
    pArc->SetName(name);
    pArc->SetData(CIEArc::Radius, dRadius);
    pArc->SetData(CIEArc::StartAngle, dStart);
    pArc->SetData(CIEArc::EndAngle, dEnd);
    return static_cast<CIEArc&>(*dataset.Add(std::move(pArc)));
}

inline void AddSurface(CIEDataset& dataset, std::initializer_list<CIEStation> positions,
                       std::initializer_list<std::array<int, CIETriangle::kCorners>> triangles)
{
    auto pSurface = std::make_unique<CIESurface>();
    pSurface->SetName("ground");
    for (const CIEStation& position : positions)
        pSurface->AddPosition(position);
    for (const auto& corners : triangles) {
        CIETriangle triangle;
        for (int k = 0; k < CIETriangle::kCorners; ++k)
            triangle.SetPosition(k, corners[static_cast<std::size_t>(k)]);
        pSurface->AddTriangle(triangle);
    }
    dataset.Add(std::move(pSurface));
}

inline CIELayer& AddLayer(CIEData& job, const CString& name, std::unique_ptr<CIEDrawProperties> pProperties,
                          bool bActive = true, bool bPlot = true)
{
    auto pLayer = std::make_unique<CIELayer>(name);
    pLayer->SetDrawProperties(std::move(pProperties));
    pLayer->SetActiveStatus(bActive);
    pLayer->SetPlotStatus(bPlot);
    return *job.GetIEDrawDictionary()->AddLayer(std::move(pLayer));
}

/// A job with an empty dataset, written to one file.
inline std::unique_ptr<CIEData> MakeDrawingJob()
{
    auto pJob = std::make_unique<CIEData>();
    pJob->AddDataset(std::make_unique<CIEDataset>("Site"));
    ChangeSettings(*pJob, [](TIESettings& settings) { settings.m_bSingleFile = true; });
    return pJob;
}

/// Every kind of object without a code, and a surface with a triangle that has no third corner.
inline std::unique_ptr<CIEData> MakePlainDrawing(EDIST_UNITS units = EDIST_UNITS::Meters,
                                                 TIEJobInfo::ECSType type = TIEJobInfo::Plane)
{
    using TLine = CIEDrawLineProperties;
    auto pJob = MakeDrawingJob();
    pJob->GetJobInfo()->SetDistUnits(units);
    pJob->GetJobInfo()->SetCSType(type);
    CIEDataset& dataset = *pJob->GetDatasetAt(0);
    AddPoint(dataset, "P1", 1200, -2400.25, 12.5).SetDrawProperties(MakeDrawn(0xFF0000));
    AddPoint<CIEGPSPosition>(dataset, "G", 10, 20, 30);
    CIEStation flat = MakeStation("K", 5, 6, 0);
    flat.SetHeightUndefined();
    dataset.Add(std::make_unique<CIEPTLPoint>(flat));
    AddLine<CIEPolyLine>(dataset, "L", {{1, 2, 3}, {4, 5, 6.5}})
        .SetDrawProperties(MakeDrawnLine({0x0000FF, TLine::Dashed, 3}));
    AddLine<CIEPolygon>(dataset, "R", {{0, 0, 0}, {10, 0, 1}, {10, 10, 2}}).SetDrawProperties(MakeDrawnLine({}));
    AddLine<CIEPolygon>(dataset, "D", {{1, 1, 1}, {2, 2, 2}}).SetDrawProperties(MakeDrawn<CIEDrawAreaProperties>(0));
    AddArc(dataset, "A", {100, 200, 5}, 25.5, 10, 190.25).SetDrawProperties(MakeDrawnLine({{}, TLine::DashDotted, 4}));
    auto pComposite = std::make_unique<CIECompositeObject>();
    pComposite->SetName("C");
    pComposite->AddPart(std::make_unique<CIEDesignPoint>(CIEStation(7, 8, 9)));
    dataset.Add(std::move(pComposite));
    auto pSheet = std::make_unique<CIESheetPoint>();
    pSheet->SetName("S");
    pSheet->SetDesignStation({3, 4, 5});
    dataset.Add(std::move(pSheet));
    dataset.Add(std::make_unique<CIEPolyLine>())->SetName("E");
    AddSurface(dataset, {{0, 0, 0}, {0, 10, 1}, {10, 0, 2}, {10, 10, 3}}, {{0, 1, 2}, {0, 1, 4}, {1, 3, 2}});
    return pJob;
}

/// Objects with codes of every kind, on layers in every state, and a surface.
inline std::unique_ptr<CIEData> MakeCodedDrawing(EDIST_UNITS units = EDIST_UNITS::Meters,
                                                 TIEJobInfo::ECSType type = TIEJobInfo::Plane)
{
    using TAttr = CIEAttrDescription;
    using TLine = CIEDrawLineProperties;
    auto pJob = MakeDrawingJob();
    pJob->GetJobInfo()->SetDistUnits(units);
    pJob->GetJobInfo()->SetCSType(type);
    CIEDataset& dataset = *pJob->GetDatasetAt(0);
    CIELayer& roads = AddLayer(*pJob, "Roads", MakeDrawnLine({0x00FF00, TLine::Dashed}));
    AddLayer(*pJob, "Off", MakeDrawn(0xFF0000), false);
    CIELayer& draft = AddLayer(*pJob, "Draft", MakeDrawnLine({{}, TLine::Dotted}), true, false);
    CIELayer& bare = AddLayer(*pJob, "Bare", nullptr);
    pJob->GetIEDrawDictionary()->SetDefaultLayer(0);
    CIECodeDescription* const pRoad = AddCode(*pJob, "ROAD",
                                              {TAttr("1.width", TAttr::REAL), TAttr("lanes", TAttr::INT),
                                               TAttr("kind", TAttr::TEXT), TAttr("side", TAttr::LIST, {"left"})});
    CIECodeDescription* const pTree = AddCode(*pJob, "TREE");
    pTree->SetDrawProperties(CIEDrawProperties::Points, MakeDrawn(0xFF00FF));
    CIECodeDescription* const pWall = AddCode(*pJob, "WALL");
    pWall->SetDrawProperties(CIEDrawProperties::Lines, MakeDrawnLine({0x0000FF, TLine::DashDotDotted}));
    CIECodeDescription* const pExtras = AddCode(*pJob, "JP.DATASETEXTRAS", {TAttr("x")});

    CIEDesignPoint& point = AddPoint(dataset, "P1", 100, 200, 10);
    point.SetLayer(&roads);
    CIECodeValues& road = GiveCode(point, pRoad, {"3.5", "2", " asphalt", "left"});
    road.AddCodeString("s1");
    road.AddCodeString("s2");
    GiveCode(point, pTree);
    GiveCode(AddPoint(dataset, "P1", 101, 202, 11), pTree);
    AddPoint(dataset, "", 1, 2, 3).SetLayer(&bare);
    GiveCode(AddLine<CIEPolyLine>(dataset, "L", {{10, 20, 1}, {13, 24, 2.5}}), pWall);
    CIEPolygon& ring = AddLine<CIEPolygon>(dataset, "R", {{1, 1, 0}, {1, 6, 0}, {6, 6, 1}});
    ring.SetLayer(&draft);
    GiveCode(ring, pExtras, {"hidden"});
    GiveCode(ring, pTree);
    GiveCode(AddArc(dataset, "A", {50, 60, 7}, 5, 0, 90), pWall);
    AddSurface(dataset, {{0, 0, 0}, {0, 10, 1}, {10, 0, 2}}, {{0, 1, 2}});
    return pJob;
}

class CDrawingTest : public testing::Test {
protected:
    /// The bytes of an export; m_Ledger keeps its notes.
    CString Export(std::unique_ptr<CIEData> pJob, const CString& strName = "out.dxf")
    {
        m_Ledger.Clear();
        pJob->SetObserver(&m_Ledger);
        m_eResult = ExportInTheSameThread(pJob.release(), m_Folder / strName, EExportType(4));
        return ReadFile(m_Folder / strName);
    }

    /// "code record, " for each note of the last export.
    [[nodiscard]] CString Notes() const
    {
        CString notes;
        for (const TIENote& note : m_Ledger.GetNotes())
            notes += CString(note.GetWord()) + (note.m_strRecord.empty() ? "" : " " + note.m_strRecord) + ", ";
        return notes;
    }

    TStopGuard m_Guard;
    CTempFolder m_Folder;
    CIELedger m_Ledger;
    EIEResult m_eResult = IE_OK;
};
