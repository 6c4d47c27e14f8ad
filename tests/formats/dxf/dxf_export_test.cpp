#include "alidade/formats/dxf/export/dxf_exporter.h"
#include "formats/dxf/dxf_jobs.h"

namespace {

class DxfExportTest : public CDrawingTest {};

/// Names, layers and values that a drawing can't take as they stand.
std::unique_ptr<CIEData> MakeOddNames()
{
    auto pJob = MakeDrawingJob();
    CIEDataset& dataset = *pJob->GetDatasetAt(0);
    CIELayer& odd = AddLayer(*pJob, "\u00FCber\nall \\U+0041", MakeDrawnLine({0x123456}));
    CIELayer& empty = AddLayer(*pJob, "", MakeDrawn(0));
    CIECodeDescription* const pCode = AddCode(*pJob, "a.b", {CIEAttrDescription("top width")});
    CIEDesignPoint& first = AddPoint(dataset, "a b.c/\u00E4\U0001F333", 1, 2, 3);
    first.SetLayer(&odd);
    GiveCode(first, pCode, {"two\r\nlines \u20AC"}).AddCodeString(CString(300, 'x'));
    AddPoint(dataset, "tab\tin\x01", 4, 5, 6).SetLayer(&empty);
    return pJob;
}

std::unique_ptr<CIEData> MakeFarAway(double dNorth)
{
    auto pJob = MakeDrawingJob();
    AddPoint(*pJob->GetDatasetAt(0), "near", 0, 0, 0);
    AddPoint(*pJob->GetDatasetAt(0), "far", dNorth, 5, 6);
    return pJob;
}

TEST_F(DxfExportTest, WritesWhatItsRulesSay)
{
    const auto check = [this](const CString& strGolden, std::unique_ptr<CIEData> pJob,
                              const CString& strName = "out.dxf") {
        ExpectGolden("dxf/" + strGolden, Export(std::move(pJob), strName));
        EXPECT_EQ(m_eResult, IE_OK);
    };
    check("plain.dxf", MakePlainDrawing());
    check("plain.dxb", MakePlainDrawing(), "out.Dxb");
    check("us_feet.dxf", MakePlainDrawing(EDIST_UNITS::USSurveyFeet));
    check("geographic.dxf", MakePlainDrawing(EDIST_UNITS::InternationalFeet, TIEJobInfo::Geographic));
    check("codes.dxf", MakeCodedDrawing());
    check("codes.dxb", MakeCodedDrawing(), "out.dxb");
    check("codes_geographic.dxf", MakeCodedDrawing(EDIST_UNITS::InternationalFeet, TIEJobInfo::Geographic));
    auto pFeet = MakeCodedDrawing(EDIST_UNITS::USSurveyFeet);
    pFeet->GetIEDrawDictionary()->SetDefaultLayer(1);
    pFeet->GetDatasetAt(0)->GetHeaderInfo()->SetTextHeight(1.5);
    pFeet->GetDatasetAt(0)->GetHeaderInfo()->SetTextWidthFactor(0.75);
    check("codes_us_feet.dxf", std::move(pFeet));
    check("names.dxf", MakeOddNames());
    check("far.dxf", MakeFarAway(1e10));
    check("farthest.dxf", MakeFarAway(1e30));
    check("empty.dxf", MakeDrawingJob());
    check("no_dataset.dxf", std::make_unique<CIEData>());

    auto pSurfaces = MakePlainDrawing();
    pSurfaces->GetJobInfo()->SetAngleUnits(EANGLE_UNITS::Grads);
    pSurfaces->GetDatasetAt(0)->RemoveObjectsIf([](const CIEObject&) { return true; });
    CHeaderInfo& header = *pSurfaces->GetDatasetAt(0)->GetHeaderInfo();
    header.SetPointMode(34);
    header.SetSymbolSize(2.25);
    header.SetTextHeight(1.5);
    header.SetTextWidthFactor(0.75);
    AddPoint(*pSurfaces->GetDatasetAt(0), "P");
    check("sizes.dxf", std::move(pSurfaces));
}

TEST_F(DxfExportTest, AFileForEachDatasetHasNoCodesInItsTags)
{
    auto pJob = MakeCodedDrawing();
    ChangeSettings(*pJob, [](TIESettings& settings) { settings.m_bSingleFile = false; });
    AddPoint(*pJob->AddDataset(std::make_unique<CIEDataset>("Second")), "P", 1, 2, 3);
    Export(std::move(pJob));
    EXPECT_EQ(m_eResult, IE_OK);
    EXPECT_EQ(m_Folder.List(), "Second.dxf Site.dxf ");
    ExpectGolden("dxf/per_dataset.dxf", ReadFile(m_Folder / "Site.dxf"));
    EXPECT_EQ(m_Ledger.GetCount(EIENote::JobAttributeCodes), 1);
}

TEST_F(DxfExportTest, AnglesOfTheHeader)
{
    const std::pair<EANGLE_UNITS, const char*> rows[] = {{EANGLE_UNITS::Radians, "3"},
                                                         {EANGLE_UNITS::Grads, "2"},
                                                         {EANGLE_UNITS::Mils, "0"},
                                                         {EANGLE_UNITS::DecimalDegrees, "0"},
                                                         {EANGLE_UNITS::DegreesMinutesSeconds, "1"}};
    for (const auto& [eUnits, pValue] : rows) {
        auto pJob = MakeDrawingJob();
        pJob->GetJobInfo()->SetAngleUnits(eUnits);
        EXPECT_NE(Export(std::move(pJob)).find("9\r\n$AUNITS\r\n70\r\n" + CString(pValue) + "\r\n"), CString::npos);
    }
}

/// "SECTION BLOCKS POINT ..." of the groups 0 in the sections of objects; section names with them.
CString Order(std::string_view bytes)
{
    CString order;
    CString strCode, strLast;
    bool bCode = true;
    while (!bytes.empty()) {
        const std::size_t nEnd = bytes.find("\r\n");
        const CString strLine(bytes.substr(0, nEnd));
        bytes.remove_prefix(nEnd + 2);
        if (bCode) {
            strCode = strLine;
        } else {
            if (strCode == "0" && strLine != "SECTION" && strLine != "TEXT" && strLine != "VERTEX")
                order += strLine + " ";
            else if (strCode == "2" && strLast == "SECTION")
                order += strLine + ": ";
            strLast = strLine;
        }
        bCode = !bCode;
    }
    return order.substr(std::min(order.find("ENDTAB ENDSEC ") + 14, order.size()));
}

struct TSteps {
    std::vector<EIEDataType> m_Types;
    bool m_bCodes;
    int m_nTold;  ///< steps that the exporter tells
    int m_nCalls; ///< of SingleStep, the last one of which gives false
    const char* m_pOrder;
    std::vector<int> m_Triangles = {1}; ///< of each surface
};

TEST_F(DxfExportTest, StepsAndOrder)
{
    using enum EIEDataType;
    const TSteps rows[] = {
        {{Points, Surfaces}, false, 5, 5, "ENTITIES: 3DFACE POINT POLYLINE SEQEND ENDSEC EOF "},
        {{Lines}, false, 4, 4, "ENTITIES: POINT POLYLINE SEQEND ENDSEC EOF "},
        {{Polygons}, false, 4, 4, "ENTITIES: POINT POLYLINE SEQEND ENDSEC EOF "},
        {{Surfaces}, false, 3, 3, "ENTITIES: 3DFACE ENDSEC EOF "},
        {{Alignments}, false, 2, 2, "ENTITIES: ENDSEC EOF "},
        {{Points, Surfaces},
         true,
         8,
         7,
         "BLOCKS: BLOCK POINT ATTDEF ENDBLK BLOCK POLYLINE SEQEND ENDBLK ENDSEC ENTITIES: "
         "INSERT ATTRIB SEQEND INSERT SEQEND 3DFACE ENDSEC EOF "},
        {{Points},
         true,
         6,
         6,
         "BLOCKS: BLOCK POINT ATTDEF ENDBLK BLOCK POLYLINE SEQEND ENDBLK ENDSEC ENTITIES: "
         "INSERT ATTRIB SEQEND INSERT SEQEND ENDSEC EOF "},
        {{Surfaces}, true, 4, 7, "BLOCKS: ENDSEC ENTITIES: 3DFACE ENDSEC EOF "},
        {{Alignments}, true, 2, 6, "BLOCKS: ENDSEC ENTITIES: ENDSEC EOF "},
        {{Points, Surfaces},
         false,
         7,
         7,
         "ENTITIES: 3DFACE 3DFACE 3DFACE POINT POLYLINE SEQEND ENDSEC EOF ",
         {1, 0, 2}},
        {{Surfaces}, true, 8, 9, "BLOCKS: ENDSEC ENTITIES: 3DFACE 3DFACE 3DFACE ENDSEC EOF ", {2, 0, 1}},
    };
    for (const TSteps& row : rows) {
        auto pJob = MakeDrawingJob();
        CIEDataset& dataset = *pJob->GetDatasetAt(0);
        CIEDesignPoint& point = AddPoint(dataset, "P");
        if (row.m_bCodes)
            GiveCode(point, AddCode(*pJob, "TREE"));
        AddLine<CIEPolyLine>(dataset, "L", {{1, 2, 3}, {4, 5, 6}});
        for (const int nTriangles : row.m_Triangles) {
            auto pSurface = std::make_unique<CIESurface>();
            CIETriangle triangle;
            for (int k = 0; k < CIETriangle::kCorners; ++k) {
                pSurface->AddPosition({k * 10.0, k * k * 10.0, 1});
                triangle.SetPosition(k, k);
            }
            for (int i = 0; i < nTriangles; ++i)
                pSurface->AddTriangle(triangle);
            dataset.Add(std::move(pSurface));
        }
        ChangeSettings(*pJob, [&](TIESettings& settings) {
            settings.SetNoDataTypes();
            for (const EIEDataType eType : row.m_Types)
                settings.SetDataType(eType, true);
        });
        CDXFExporter exporter(pJob.get(), m_Folder / "out.dxf");
        EXPECT_EQ(exporter.GetNumberOfSteps(), row.m_nTold) << row.m_pOrder;
        int nCalls = 1;
        while (exporter.SingleStep())
            ++nCalls;
        EXPECT_EQ(nCalls, row.m_nCalls) << row.m_pOrder;
        EXPECT_EQ(exporter.GetNumberOfSteps(), row.m_nTold) << row.m_pOrder;
        EXPECT_EQ(Order(ReadFile(m_Folder / "out.dxf")), row.m_pOrder);
        EXPECT_FALSE(exporter.SingleStep()); // and nothing is written any more
        EXPECT_EQ(exporter.GetResult(), IE_OK);
    }
}

TEST_F(DxfExportTest, AStopAtAnyStepOfADatasetWithCodesLeavesNoFile)
{
    for (int nStep = 0;; ++nStep) {
        const auto pJob = MakeCodedDrawing();
        const CString strFile = m_Folder / "out.dxf";
        {
            CDXFExporter exporter(pJob.get(), strFile);
            bool bMore = true;
            for (int i = 0; i < nStep && bMore; ++i)
                bMore = exporter.SingleStep();
            if (!bMore)
                break;
            CIEData::m_bStopProcess = true;
            EXPECT_EQ(exporter.Export(), IE_STOPPED) << nStep;
            CIEData::m_bStopProcess = false;
        }
        ASSERT_EQ(pJob->GetCreatedFileNames(), CStringArray{strFile}) << nStep;
        EXPECT_TRUE(Platform::RemoveFile(strFile));
    }
    EXPECT_GE(ReadFile(m_Folder / "out.dxf").size(), 1U); // the last run was whole
}

TEST_F(DxfExportTest, AFullDiskAtAnyByte)
{
    const std::size_t nWhole = Export(MakeCodedDrawing()).size();
    std::vector<std::size_t> spaces = {nWhole - 1, nWhole};
    for (std::size_t n = 0; n < nWhole; n += 97)
        spaces.push_back(n);
    CFileFaults faults;
    for (const std::size_t n : spaces) {
        faults.m_nDiskSpace = n;
        EXPECT_EQ(Export(MakeCodedDrawing()).size(), n);
        EXPECT_EQ(m_eResult, IE_OK);
        EXPECT_EQ(m_Ledger.GetCount(EIENote::FileWriteFailed), n < nWhole) << n;
    }
}

/// The file came into being, and yet not what stands ahead of the objects.
TEST_F(DxfExportTest, ADiskThatFillsAheadOfTheObjects)
{
    auto pJob = MakeDrawingJob();
    for (int i = 0; i < 5000; ++i)
        AddLayer(*pJob, "layer" + std::to_string(i), MakeDrawn(0xFF0000));
    CFileFaults faults;
    faults.m_nDiskSpace = 50000;
    Export(std::move(pJob));
    EXPECT_EQ(m_eResult, IE_CANNOT_OPEN_FILE);
    EXPECT_EQ(m_Ledger.GetCount(EIENote::FileWriteFailed), 1);
}

} // namespace
