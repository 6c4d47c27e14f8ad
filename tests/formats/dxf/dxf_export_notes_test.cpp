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
    {"object.coordinates, ", [](CIEData&, CIEDataset& set) { AddPoint(set, "", 1, -1e30, 2); }},
    {"object.coordinates, ", [](CIEData& job, CIEDataset& set) {
        job.GetJobInfo()->SetDistUnits(EDIST_UNITS::InternationalFeet); AddPoint(set, "", 1, 2, 4e29); }},
    // drawing
    {"job.color #FF0001, ", [](CIEData&, CIEDataset& set) {
        for (int i = 0; i < 2; ++i)
            AddPoint(set, "").SetDrawProperties(MakeDrawn(0xFF0001)); }},
    {"job.color #000000, ", [](CIEData&, CIEDataset& set) { AddPoint(set, "").SetDrawProperties(MakeDrawn(0)); }},
    {"object.drawing, ", [](CIEData&, CIEDataset& set) {
        AddArc(set, "", {1, 2, 3}, 1, 0, 90).SetDrawProperties(MakeDrawnLine({{}, CIEDrawLineProperties::Solid, 2})); }},
    {"", [](CIEData&, CIEDataset& set) {
        AddLine<CIEPolyLine>(set, "", {{0, 0, 0}, {0, 1, 0}}).SetDrawProperties(MakeDrawnLine({{}, CIEDrawLineProperties::Solid, 2})); }},
    {"job.surfaces, surface.triangles ground, ", [](CIEData&, CIEDataset& set) { AddSurface(set, {{0, 0, 0}}, {{0, 0, 1}, {0, 0, 0}}); }},
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
    {"object.attributes A, ", [](CIEData& job, CIEDataset& set) { GiveAttributes(job, set, {TAttr("W")}, {CString(254, 'X')}); }},
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
    auto pJob = MakeDrawingJob();
    Export(std::move(pJob), "out.dxb");
    EXPECT_EQ(Notes(), "job.binary-form, ");
}

} // namespace
