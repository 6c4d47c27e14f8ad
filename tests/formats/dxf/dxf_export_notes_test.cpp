#include "formats/dxf/dxf_jobs.h"

namespace {

class DxfExportNotesTest : public CDrawingTest {};

/// One thing that a drawing doesn't hold as the job does, and all the notes that it makes.
struct TCase {
    const char* m_pNotes;
    void (*m_pAdd)(CIEData& job, CIEDataset& dataset);
};

/// The dataset has codes, so that names come back.
template <class TPoint = CIEDesignPoint>
CIEObject& AddCoded(CIEData& job, CIEDataset& dataset, const CString& name = "A")
{
    TPoint& point = AddPoint<TPoint>(dataset, name);
    GiveCode(point, AddCode(job, "T"));
    return point;
}

void GiveAttributes(CIEData& job, CIEDataset& dataset, std::initializer_list<CIEAttrDescription> attributes,
                    std::initializer_list<CString> values)
{
    GiveCode(AddPoint(dataset, "A"), AddCode(job, "T", attributes), values);
}

// clang-format off
using TAttr = CIEAttrDescription;
const TCase kCases[] = {
    {"", [](CIEData& job, CIEDataset& set) { AddCoded(job, set, "A-1_:"); }},
    {"", [](CIEData& job, CIEDataset& set) {
        CIELayer& layer = AddLayer(job, "ROADS", MakeDrawnLine({0xFF0000, CIEDrawLineProperties::Dotted}));
        AddCoded(job, set).SetLayer(&layer); }},
    // the run
    {"job.name, ", [](CIEData&, CIEDataset& set) { AddPoint(set, "A"); AddPoint(set, "B"); }},
    {"", [](CIEData&, CIEDataset& set) { AddPoint(set, ""); }},
    {"job.geographic, ", [](CIEData& job, CIEDataset&) { job.GetJobInfo()->SetCSType(TIEJobInfo::Geographic); }},
    {"job.miles, ", [](CIEData& job, CIEDataset&) { job.GetJobInfo()->SetDistUnits(EDIST_UNITS::USMiles); }},
    {"job.geographic, job.miles, ", [](CIEData& job, CIEDataset&) {
        job.GetJobInfo()->SetCSType(TIEJobInfo::Geographic); job.GetJobInfo()->SetDistUnits(EDIST_UNITS::USMiles); }},
    {"job.flat-lines, ", [](CIEData&, CIEDataset& set) {
        AddLine<CIEPolyLine>(set, "", {{0, 0, 5}, {0, 1, 5}}); // at one height
        AddLine<CIEPolyLine>(set, "", {{0, 0, 5}, {0, 1, 5}, {0, 2, 5.001}});
        AddLine<CIEPolyLine>(set, "", {{0, 0, 0}, {0, 1, 9}}); }},
    {"job.flat-lines, object.ring, ", [](CIEData&, CIEDataset& set) { AddLine<CIEPolygon>(set, "", {{0, 0, 0}, {0, 1, 9}}); }},
    // what the settings don't ask for
    {"object.kind ground, object.kind A, object.kind B, ", [](CIEData& job, CIEDataset& set) {
        AddCoded(job, set, "A").SetStateType(CIEObject::InBlock);
        AddLine<CIEPolyLine>(set, "B", {{0, 0, 0}, {0, 1, 9}});
        AddSurface(set, {{0, 0, 0}, {0, 1, 0}, {1, 0, 1e30}}, {{0, 1, 2}});
        ChangeSettings(job, [](TIESettings& settings) { settings.SetNoDataTypes(); }); }},
    {"object.kind ground, ", [](CIEData& job, CIEDataset& set) {
        AddCoded(job, set);
        AddSurface(set, {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}}, {{0, 1, 2}});
        ChangeSettings(job, [](TIESettings& settings) { settings.SetDataType(EIEDataType::Surfaces, false); }); }},
    {"job.surfaces, object.kind A, ", [](CIEData& job, CIEDataset& set) {
        AddPoint(set, "A");
        AddSurface(set, {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}}, {{0, 1, 2}});
        ChangeSettings(job, [](TIESettings& settings) {
            settings.SetNoDataTypes();
            settings.SetDataType(EIEDataType::Surfaces, true); }); }},
    {"job.datasets, dataset.unreached B, ", [](CIEData& job, CIEDataset&) {
        AddPoint(*job.AddDataset(std::make_unique<CIEDataset>("Second")), "B"); job.SetCurDataset(0); }},
    {"job.block-patterns, ", [](CIEData& job, CIEDataset& set) { AddCoded(job, set).SetStateType(CIEObject::InBlock); }},
    {"job.upper-case, ", [](CIEData& job, CIEDataset& set) { AddCoded(job, set, "a"); AddCoded(job, set, "b"); }},
    {"job.upper-case, ", [](CIEData& job, CIEDataset& set) { GiveAttributes(job, set, {TAttr("W")}, {"oak"}); }},
    // names
    {"object.name A B, ", [](CIEData& job, CIEDataset& set) { AddCoded(job, set, "A B"); }},
    {"object.name, ", [](CIEData& job, CIEDataset& set) { AddCoded(job, set, ""); }},
    {"object.word LINE, ", [](CIEData& job, CIEDataset& set) { AddCoded(job, set, "LINE"); }},
    {"job.name, object.word endsec, ", [](CIEData&, CIEDataset& set) { AddPoint(set, "endsec"); }},
    {"object.block-name A_B, object.name A B, object.block-name A B, ", [](CIEData& job, CIEDataset& set) {
        AddCoded(job, set, "A_B"); AddCoded(job, set, "A B"); }},
    // objects
    {"object.no-station, ", [](CIEData&, CIEDataset& set) { set.Add(std::make_unique<CIEPolyLine>()); }},
    {"object.kind, ", [](CIEData&, CIEDataset& set) {
        CIESheetPoint& sheet = static_cast<CIESheetPoint&>(*set.Add(std::make_unique<CIESheetPoint>()));
        sheet.SetDesignStation({1, 2, 3}); }},
    {"object.ring, ", [](CIEData&, CIEDataset& set) { AddLine<CIEPolygon>(set, "", {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}}); }},
    {"object.ring, ", [](CIEData&, CIEDataset& set) { AddLine<CIEPolygon>(set, "", {{0, 0, 0}, {0, 1, 0}}); }},
    {"object.ring, ", [](CIEData&, CIEDataset& set) { AddLine<CIEPolyLine>(set, "", {{0, 0, 0}, {0, 1, 0}, {0, 0, 0}}); }},
    {"object.ring, ", [](CIEData&, CIEDataset& set) { AddLine<CIEPolyLine>(set, "", {{0, 0, 0}}); }},
    {"", [](CIEData&, CIEDataset& set) { AddLine<CIEPolyLine>(set, "", {{0, 0, 0}, {0, 1, 0}}); }},
    // what is one place with six decimals
    {"object.ring, ", [](CIEData&, CIEDataset& set) { AddLine<CIEPolyLine>(set, "", {{1, 0, 0}, {0, 1, 0}, {1.0000004, 0, 0}}); }},
    {"", [](CIEData&, CIEDataset& set) { AddLine<CIEPolyLine>(set, "", {{1, 0, 0}, {0, 1, 0}, {1.0000006, 0, 0}}); }},
    {"", [](CIEData& job, CIEDataset& set) {
        job.GetJobInfo()->SetDistUnits(EDIST_UNITS::InternationalInches);
        AddLine<CIEPolyLine>(set, "", {{1, 0, 0}, {0, 1, 0}, {1.0000004, 0, 0}}); }},
    {"object.ring L, ", [](CIEData& job, CIEDataset& set) {
        AddCoded(job, set); AddLine<CIEPolyLine>(set, "L", {{1.0000004, 0, 0}, {0, 1, 0}, {1.0000008, 0, 0}}); }},
    // lengths among degrees
    {"job.geographic, job.surfaces, job.geographic-surfaces, job.geographic-arcs, ", [](CIEData& job, CIEDataset& set) {
        job.GetJobInfo()->SetCSType(TIEJobInfo::Geographic);
        job.GetJobInfo()->SetDistUnits(EDIST_UNITS::InternationalFeet);
        AddArc(set, "", {1, 2, 3}, 1, 0, 90);
        AddSurface(set, {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}}, {{0, 1, 2}}); }},
    {"job.geographic, job.surfaces, ", [](CIEData& job, CIEDataset& set) {
        job.GetJobInfo()->SetCSType(TIEJobInfo::Geographic);
        AddSurface(set, {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}}, {{0, 1, 2}}); }},
    {"object.coordinates, ", [](CIEData&, CIEDataset& set) { AddPoint(set, "", 1, -1e30, 2); }},
    {"object.coordinates, ", [](CIEData& job, CIEDataset& set) {
        job.GetJobInfo()->SetDistUnits(EDIST_UNITS::InternationalFeet); AddPoint(set, "", 1, 2, 4e29); }},
    {"object.coordinates, ", [](CIEData& job, CIEDataset& set) {
        job.GetJobInfo()->SetDistUnits(EDIST_UNITS::InternationalFeet); AddArc(set, "", {1, 2, 3}, 4e29, 0, 90); }},
    {"object.coordinates, ", [](CIEData&, CIEDataset& set) { AddArc(set, "", {1, 2, 3}, 4, -1e30, 90); }},
    {"object.coordinates, ", [](CIEData&, CIEDataset& set) { AddArc(set, "", {1, 2, 3}, 4, 0, 1e30); }},
    // a block holds the way from the first station to the others
    {"object.coordinates L, ", [](CIEData& job, CIEDataset& set) {
        AddCoded(job, set); AddLine<CIEPolyLine>(set, "L", {{6e29, 0, 0}, {-6e29, 1, 0}}); }},
    {"", [](CIEData& job, CIEDataset& set) {
        AddCoded(job, set); AddLine<CIEPolyLine>(set, "L", {{6e29, 0, 0}, {1.2e30, 1, 0}}); }},
    {"surface.coordinates ground, job.surfaces, ", [](CIEData& job, CIEDataset& set) {
        job.GetJobInfo()->SetDistUnits(EDIST_UNITS::InternationalFeet);
        AddSurface(set, {{0, 0, 0}, {0, 1, 0}, {4e29, 0, 0}, {0, 0, 1e30}}, {{0, 1, 2}}); }},
    {"job.surfaces, ", [](CIEData&, CIEDataset& set) {
        AddSurface(set, {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {0, 0, 1e30}}, {{0, 1, 2}}); }},
    {"surface.triangles ground, ", [](CIEData&, CIEDataset& set) { AddSurface(set, {{0, 0, 0}}, {}); }},
    {"surface.standing ground, job.surfaces, ", [](CIEData&, CIEDataset& set) {
        AddSurface(set, {{0, 0, 0}, {0, 0.0000001, 5}, {9, 0, 0}}, {{0, 1, 2}, {2, 1, 0}}); }},
    {"job.surfaces, ", [](CIEData&, CIEDataset& set) {
        AddSurface(set, {{9, 0, 0}, {0, 0, 0}, {0, 0, 5}}, {{0, 1, 2}, {0, 0, 1}}); }},
    // a tag of two names, each of which is short enough
    {"job.attributes T, ", [](CIEData& job, CIEDataset& set) { GiveAttributes(job, set, {TAttr(CString(2040, 'W'))}, {"X"}); }},
    {"surface.triangles ground, ", [](CIEData&, CIEDataset& set) { AddSurface(set, {{0, 0, 0}}, {{0, 0, 1}}); }},
    // drawing
    {"job.color #FF0001, ", [](CIEData&, CIEDataset& set) {
        for (int i = 0; i < 2; ++i)
            AddPoint(set, "").SetDrawProperties(MakeDrawn(0xFF0001)); }},
    {"job.color #000000, ", [](CIEData&, CIEDataset& set) { AddPoint(set, "").SetDrawProperties(MakeDrawn(0)); }},
    {"object.drawing, ", [](CIEData&, CIEDataset& set) {
        AddArc(set, "", {1, 2, 3}, 1, 0, 90).SetDrawProperties(MakeDrawnLine({{}, CIEDrawLineProperties::Solid, 2})); }},
    {"", [](CIEData&, CIEDataset& set) {
        AddLine<CIEPolyLine>(set, "", {{0, 0, 0}, {0, 1, 0}}).SetDrawProperties(MakeDrawnLine({{}, CIEDrawLineProperties::Solid, 2})); }},
    {"surface.triangles ground, job.surfaces, ", [](CIEData&, CIEDataset& set) { AddSurface(set, {{0, 0, 0}}, {{0, 0, 1}, {0, 0, 0}}); }},
    {"job.code-drawing T, ", [](CIEData& job, CIEDataset& set) {
        AddCoded(job, set); AddCoded(job, set, "B");
        auto pPoints = std::make_unique<CIEDrawPointProperties>();
        pPoints->SetMarkStyle(3);
        AddCode(job, "T")->SetDrawProperties(CIEDrawProperties::Points, std::move(pPoints)); }},
    {"job.code-drawing WIDE, job.code-drawing AREA, ", [](CIEData& job, CIEDataset& set) {
        CIECodeDescription* const pWide = AddCode(job, "WIDE");
        pWide->SetDrawProperties(CIEDrawProperties::Lines, MakeDrawnLine({{}, CIEDrawLineProperties::Solid, 2}));
        CIECodeDescription* const pArea = AddCode(job, "AREA");
        pArea->SetDrawProperties(CIEDrawProperties::Areas, MakeDrawn<CIEDrawAreaProperties>(0xFF0000));
        GiveCode(AddArc(set, "A", {1, 2, 3}, 1, 0, 90), pWide);
        GiveCode(AddArc(set, "B", {1, 2, 3}, 1, 0, 90), pWide);
        GiveCode(AddLine<CIEPolygon>(set, "C", {{0, 0, 0}, {0, 0, 0}}), pArea); }},
    // a line has its code's width, and a point that says itself how it is drawn needs no code for that
    {"", [](CIEData& job, CIEDataset& set) {
        CIECodeDescription* const pCode = AddCode(job, "T");
        pCode->SetDrawProperties(CIEDrawProperties::Lines, MakeDrawnLine({{}, CIEDrawLineProperties::Solid, 2}));
        pCode->SetDrawProperties(CIEDrawProperties::Areas, MakeDrawn<CIEDrawAreaProperties>(0xFF0000));
        auto pPoints = std::make_unique<CIEDrawPointProperties>();
        pPoints->SetMarkStyle(3);
        pCode->SetDrawProperties(CIEDrawProperties::Points, std::move(pPoints));
        GiveCode(AddLine<CIEPolyLine>(set, "L", {{0, 0, 0}, {0, 1, 0}}), pCode);
        AddCoded(job, set).SetDrawProperties(MakeDrawn(0xFF0000)); }},
    // layers
    {"job.layer BARE, object.layer A, ", [](CIEData& job, CIEDataset& set) { AddCoded(job, set).SetLayer(&AddLayer(job, "BARE", nullptr)); }},
    {"job.layer OFF, job.layer DRAFT, job.layer BOTH, ", [](CIEData& job, CIEDataset&) {
        AddLayer(job, "OFF", MakeDrawn(0xFF0000), false, true);
        AddLayer(job, "DRAFT", MakeDrawn(0xFF0000), true, false);
        AddLayer(job, "BOTH", MakeDrawn(0xFF0000), false, false); }},
    {"job.upper-case, job.layer roads, ", [](CIEData& job, CIEDataset&) {
        AddLayer(job, "ROADS", MakeDrawn(0xFF0000)); AddLayer(job, "roads", MakeDrawn(0xFF0000)); }},
    {"job.layer POINT, job.layer, ", [](CIEData& job, CIEDataset&) {
        AddLayer(job, "POINT", MakeDrawn(0xFF0000)); AddLayer(job, "", MakeDrawn(0xFF0000)); }},
    {"job.layer A*B, ", [](CIEData& job, CIEDataset&) { AddLayer(job, "A*B", MakeDrawn(0xFF0000)); AddLayer(job, "A B", MakeDrawn(0xFF0000)); }},
    {"job.layer WIDE, job.layer NOTED, ", [](CIEData& job, CIEDataset&) {
        AddLayer(job, "WIDE", MakeDrawnLine({0xFF0000, CIEDrawLineProperties::Solid, 2}));
        AddLayer(job, "NOTED", MakeDrawn(0xFF0000)).SetNotes("X"); }},
    {"job.default-layer, ", [](CIEData& job, CIEDataset& set) {
        AddLayer(job, "ROADS", MakeDrawn(0xFF0000)); AddCoded(job, set); AddCoded(job, set, "B"); }},
    // codes
    {"", [](CIEData& job, CIEDataset& set) { GiveAttributes(job, set, {TAttr("W", TAttr::REAL), TAttr("N", TAttr::INT)}, {"1.5", "2"}); }},
    {"object.attributes A, ", [](CIEData& job, CIEDataset& set) { GiveAttributes(job, set, {TAttr("W"), TAttr("N")}, {"1.5"}); }},
    {"object.attributes A, ", [](CIEData& job, CIEDataset& set) { GiveAttributes(job, set, {TAttr("W")}, {"1.5", "2"}); }},
    {"object.attributes A, ", [](CIEData& job, CIEDataset& set) { GiveAttributes(job, set, {TAttr("W"), TAttr("N")}, {"1\n2", "3\n4"}); }},
    {"object.attributes A, ", [](CIEData& job, CIEDataset& set) { GiveAttributes(job, set, {TAttr("W")}, {CString(2048, 'X')}); }},
    {"object.word A, ", [](CIEData& job, CIEDataset& set) { GiveAttributes(job, set, {TAttr("W")}, {"ARC"}); }},
    {"job.attribute-types, ", [](CIEData& job, CIEDataset& set) { GiveAttributes(job, set, {TAttr("W", TAttr::LIST)}, {"1"}); }},
    {"job.attributes T, ", [](CIEData& job, CIEDataset& set) { GiveAttributes(job, set, {TAttr("1.W"), TAttr("W")}, {"1", "2"}); }},
    {"job.codes T, ", [](CIEData& job, CIEDataset& set) { GiveAttributes(job, set, {TAttr("W:X")}, {"1"}); }},
    {"job.codes T, ", [](CIEData& job, CIEDataset& set) { GiveAttributes(job, set, {TAttr("CODENAME")}, {"1"}); }},
    {"job.attributes T, ", [](CIEData& job, CIEDataset& set) { GiveAttributes(job, set, {TAttr("")}, {"1"}); }},
    {"job.codes, ", [](CIEData& job, CIEDataset& set) { GiveCode(AddPoint(set, "A"), AddCode(job, "")); }},
    {"object.word A, ", [](CIEData& job, CIEDataset& set) { GiveCode(AddPoint(set, "A"), AddCode(job, "LINE")); }},
    {"object.codes A, ", [](CIEData& job, CIEDataset& set) { GiveCode(AddPoint(set, "A"), AddCode(job, "A\nB")); }},
    {"object.codes A, ", [](CIEData& job, CIEDataset& set) { CIEObject& object = AddCoded(job, set); GiveCode(object, AddCode(job, "T")); }},
    {"job.dataset-extras, ", [](CIEData& job, CIEDataset& set) {
        for (const char* pName : {"A", "B"})
            GiveCode(AddPoint(set, pName), AddCode(job, "JP.DATASETEXTRAS", {TAttr("x")})); }},
    {"", [](CIEData& job, CIEDataset& set) { AddCoded(job, set).GetCode(0)->AddCodeString("S"); }},
    {"job.attributes T, ", [](CIEData& job, CIEDataset& set) {
        CIECodeValues& code = *AddCoded(job, set).GetCode(0); code.AddCodeString("S"); code.AddCodeString("S2"); }},
    {"object.attributes A, ", [](CIEData& job, CIEDataset& set) { AddCoded(job, set).GetCode(0)->SetControlCode(0, "C"); }},
};
// clang-format on

TEST_F(DxfExportNotesTest, WhatADrawingDoesNotHoldIsTold)
{
    for (const TCase& row : kCases) {
        auto pJob = MakeDrawingJob();
        row.m_pAdd(*pJob, *pJob->GetDatasetAt(0));
        Export(std::move(pJob));
        EXPECT_EQ(m_eResult, IE_OK);
        EXPECT_EQ(Notes(), row.m_pNotes) << "row " << &row - kCases;
    }
    // in binary form a number keeps all its digits, however large it is
    auto pJob = MakeDrawingJob();
    pJob->GetJobInfo()->SetCSType(TIEJobInfo::Geographic);
    pJob->GetJobInfo()->SetDistUnits(EDIST_UNITS::USMiles);
    AddPoint(*pJob->GetDatasetAt(0), "", 1e30, 2, 3);
    Export(std::move(pJob), "out.dxb");
    EXPECT_EQ(Notes(), "job.binary-form, ");
}

/// A file for each dataset has no names of codes in its tags, by which values of two codes can't be told apart.
TEST_F(DxfExportNotesTest, AValueThatAnotherCodeTakesTheTagOfIsTold)
{
    const struct {
        const char* m_pFirst;
        const char* m_pSecond;
        CString m_strValue; ///< of the second code; the first has "3"
        const char* m_pReason;
    } rows[] = {
        {"WIDTH", "WIDTH", "4",
         "the value \"3\" of \"WIDTH\" of its code \"ROAD\" is lost, because its code \"WALL\" has an attribute of "
         "that "
         "name too"},
        {"1.Width", "WIDTH", "",
         "the value \"3\" of \"WIDTH\" of its code \"ROAD\" is lost, because its code \"WALL\" has an attribute of "
         "that "
         "name too"},
        {"WIDTH", "WIDTH", "3", ""},
        {"WIDTH", "HEIGHT", "4", ""},
    };
    for (const auto& row : rows) {
        auto pJob = MakeDrawingJob();
        ChangeSettings(*pJob, [](TIESettings& settings) { settings.m_bSingleFile = false; });
        CIEDesignPoint& point = AddPoint(*pJob->GetDatasetAt(0), "A");
        GiveCode(point, AddCode(*pJob, "ROAD", {TAttr(row.m_pFirst)}), {"3"});
        GiveCode(point, AddCode(*pJob, "WALL", {TAttr(row.m_pSecond)}), {row.m_strValue});
        Export(std::move(pJob), "Site.dxf");
        CString strReason;
        for (const TIENote& note : m_Ledger.GetNotes()) {
            if (CString(note.GetWord()) == "object.attributes")
                strReason += note.m_strReason;
        }
        EXPECT_EQ(strReason, row.m_pReason);
        CIEData back;
        EXPECT_EQ(ImportInTheSameThread(&back, m_Folder / "Site.dxf", 4), IE_OK);
        const CIEObject& copy = *back.GetDatasetAt(0)->GetObjectAt(1); // behind the block's own
        EXPECT_EQ(copy.GetCode(0)->GetAttrAt(0) != "3", *row.m_pReason != '\0');
    }
}

TEST_F(DxfExportNotesTest, ValuesAlongALineStandAsCoordinates)
{
    for (const int nType : {CIEPTLPoint::Regular, CIEPTLPoint::PointToLine}) {
        auto pJob = MakeDrawingJob();
        AddPoint<CIEPTLPoint>(*pJob->GetDatasetAt(0), "").SetPTLParams("A", "B", nType);
        Export(std::move(pJob));
        ASSERT_EQ(Notes(), "object.point-kind, ");
        EXPECT_EQ(m_Ledger.GetNotes()[0].m_strReason.find("along and off the line") != CString::npos,
                  nType == CIEPTLPoint::PointToLine);
    }
}

} // namespace
