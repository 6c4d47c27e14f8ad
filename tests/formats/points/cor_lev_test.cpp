#include "formats/points/points_fixture.h"
#include "support/places.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

constexpr int kRead = 33, kWrite = 41;

class CorLevTest : public CPointsTest {
protected:
    TImported ImportPair(CIEData& job, std::string_view coordinates, std::string_view levels,
                         const CString& strName = "in.cor")
    {
        WriteFile(m_Folder / "in.cor", coordinates);
        WriteFile(m_Folder / "in.lev", levels);
        return ImportFile(job, strName);
    }

    /// Notes begin with the extension of their file.
    TImported ImportFile(CIEData& job, const CString& strName)
    {
        CIELedger ledger;
        job.SetObserver(&ledger);
        TImported imported{ImportInTheSameThread(&job, m_Folder / strName, kRead), Describe(job), {}};
        job.SetObserver(nullptr);
        for (const TIENote& note : ledger.GetNotes())
            imported.m_strNotes += IEUtils::GetExtension(note.m_strFile) + std::to_string(note.m_Place.m_nLine) + ":" +
                                   note.GetWord() + " ";
        EXPECT_EQ(FindFault(job), "");
        return imported;
    }

    EIEResult ExportPair(std::unique_ptr<CIEData> pJob)
    {
        m_Ledger.Clear();
        pJob->SetObserver(&m_Ledger);
        ChangeSettings(*pJob, [](TIESettings& settings) { settings.m_bSingleFile = true; });
        return ExportInTheSameThread(pJob.release(), m_Folder / "out.x", EExportType(kWrite));
    }
};

std::unique_ptr<CIEData> MakeJob()
{
    auto pJob = std::make_unique<CIEData>();
    CIEDataset& dataset = *pJob->AddDataset(std::make_unique<CIEDataset>("Site"));
    AddPoint(dataset, "P1", 1200, -2400.25, 12.5);
    AddPoint(dataset, "ABCDEFGHIJKLMNO", 0, 0, 0);
    AddLine<CIEPolyLine>(dataset, "line", {MakeStation("line", 1, 2, 3), MakeStation("line", 4, 5, 6)});
    AddPoint(dataset, "ABCDEFGHIJKLMNOP", -0.00004, 0.00006, -0.00006);
    AddPoint(dataset, "ABCDEFGHIJKLMNOPQ", 123456789.12345, -12345678.12345, 99999999.99999);
    AddPoint(dataset, "M\u00FCller", 1.00005, 2.5, 3);
    AddPoint(dataset, "a\r\nb", 1, 2, 3);
    return pJob;
}

TEST_F(CorLevTest, WritesWhatItsRulesSay)
{
    EXPECT_EQ(ExportPair(MakeJob()), IE_OK);
    ExpectGolden("cor-lev/pair.cor", ReadFile(m_Folder / "out.x.cor"));
    ExpectGolden("cor-lev/pair.lev", ReadFile(m_Folder / "out.x.lev"));
    EXPECT_EQ(m_Folder.List(), "out.x.cor out.x.lev ");
    EXPECT_THAT(Notes(), ElementsAre("object.kind line", "object.name ABCDEFGHIJKLMNOPQ", "object.name a\r\nb"));

    // metres and degrees go out as they are, whatever the job's units
    for (const auto& [eUnits, eType, eNote] :
         {std::tuple(EDIST_UNITS::USSurveyFeet, TIEJobInfo::Plane, EIENote::JobUnits),
          std::tuple(EDIST_UNITS::Meters, TIEJobInfo::Geographic, EIENote::JobGeographic)}) {
        auto pJob = MakeJob();
        pJob->GetJobInfo()->SetDistUnits(eUnits);
        pJob->GetJobInfo()->SetCSType(eType);
        EXPECT_EQ(ExportPair(std::move(pJob)), IE_OK);
        EXPECT_EQ(ReadFile(m_Folder / "out.x.cor"), ReadFile(DataPath("cor-lev/pair.cor")));
        EXPECT_EQ(m_Ledger.GetCount(eNote), 1);
    }

    EXPECT_EQ(ExportPair(std::make_unique<CIEData>()), IE_OK);
    EXPECT_EQ(ReadFile(m_Folder / "out.x.cor") + ReadFile(m_Folder / "out.x.lev"), "");
}

TEST_F(CorLevTest, ReadsWhatItWrote)
{
    ASSERT_EQ(ExportPair(MakeJob()), IE_OK);
    const CString strPoints = "point P1 1200 -2400.25 12.5\npoint ABCDEFGHIJKLMNO 0 0 0\n"
                              "point ABCDEFGHIJKLMNOP 0 0.0001 -0.0001\n"
                              "point BCDEFGHIJKLMNOPQ 123456789.1234 -12345678.1234 100000000\n"
                              "point M\u00FCller 1.0001 2.5 3\npoint a  b 1 2 3\n";
    for (const char* const pName : {"out.x.cor", "out.x.LEV", "out.x.Def", "out.x"}) {
        CIEData job;
        EXPECT_EQ(ImportFile(job, pName), (TImported{IE_OK, strPoints, ""})) << pName;
        EXPECT_EQ(job.GetDatasetAt(0)->GetName(), "Import dataset");
    }
    std::filesystem::rename(m_Folder / "out.x.cor", m_Folder / "OUT.COR");
    std::filesystem::rename(m_Folder / "out.x.lev", m_Folder / "OUT.LEV");
    CIEData job;
    EXPECT_EQ(ImportFile(job, "OUT.COR").m_strObjects, strPoints);
}

// clang-format off
#define COR(name) " " name "              2.0000        1.0000\r\n"
#define LEV(name, level) name "              " level "\r\n"
const struct {
    const char* m_pCoordinates;
    const char* m_pLevels;
    const char* m_pObjects;
    EIEResult m_eResult = IE_OK;
    const char* m_eNotes = "";
} kCases[] = {
    {COR("A  ") COR("B  "), LEV("A  ", "3.5") LEV("B  ", "4"), "point A 1 2 3.5\npoint B 1 2 4\n"},
    // out of order, and the line behind is looked for behind that point
    {COR("A  ") COR("B  ") COR("B  ") COR("C  "), LEV("b  ", "1") LEV("B  ", "2") LEV("a  ", "3") LEV("b  ", "4") LEV("c  ", "5"),
     "point A 1 2 3\npoint B 1 2 4\npoint B 1 2 2\npoint C 1 2 5\n", IE_OK, "lev4:line.second-level "},
    // behind the last point no line is good
    {COR("A  ") COR("B  "), LEV("B  ", "4") LEV("A  ", "3"), "point A 1 2 0\npoint B 1 2 4\n", IE_BAD_CONTENT, "lev2:line.behind-last lev0:record.no-level "},
    {COR("A  "), LEV("A  ", "3") LEV("A  ", "3"), "point A 1 2 3\n", IE_BAD_CONTENT, "lev2:line.behind-last "},
    {COR("A  "), LEV("C  ", "3"), "point A 1 2 0\n", IE_BAD_CONTENT, "lev1:line.name lev0:record.no-level "},
    {COR("A  "), LEV("A  ", "x"), "point A 1 2 0\n", IE_BAD_CONTENT, "lev1:line.number lev0:record.no-level "},
    {COR("A  "), "", "point A 1 2 0\n", IE_OK, "lev0:record.no-level "},
    {"", "", ""},
    {"", LEV("A  ", "3"), "", IE_BAD_CONTENT, "lev1:line.behind-last "},
    // a bad line in the first file, behind which the second isn't read
    {COR("A  ") " B  no numbers\r\n", LEV("A  ", "3"), "point A 1 2 0\n", IE_BAD_CONTENT, "cor2:line.number lev0:record.no-level "},
    {" A                   2.0000\r\n", "", "", IE_BAD_CONTENT, "cor1:line.number "},
    {" A                   2.00.0 1\r\n", "", "", IE_BAD_CONTENT, "cor1:line.number "},
    // four decimals part the numbers, and columns part them from the name
    {" A                2.00001.0000", LEV("A  ", "3"), "point A 1 2 3\n"},
    {" A.B 5            -2.0000-1", "A.B 5            3", "point A.B 5 -1 -2 3\n"},
    {"\xC3\xA4                 2.0000 1.0000\n", "\xC3\xA4                 3\n", "point \u00E4 1 2 3\n"},
    {"\xE4                 2.0000 1.0000\n", "\xE4                 3\n", "point \u00E4 1 2 3\n"},
    // a blank line ends each
    {COR("A  ") "\r\n" COR("B  "), LEV("A  ", "3") "\n" LEV("B  ", "3"), "point A 1 2 3\n", IE_OK, "cor3:line.behind-end lev3:line.behind-end "},
};
#undef COR
#undef LEV
// clang-format on

TEST_F(CorLevTest, Reads)
{
    for (const auto& row : kCases) {
        SCOPED_TRACE(CString(row.m_pCoordinates) + row.m_pLevels);
        CIEData job;
        EXPECT_EQ(ImportPair(job, row.m_pCoordinates, row.m_pLevels),
                  (TImported{row.m_eResult, row.m_pObjects, row.m_eNotes}));
    }
    CIEData feet;
    feet.GetJobInfo()->SetDistUnits(EDIST_UNITS::InternationalFeet);
    EXPECT_EQ(ImportPair(feet, " A                   20.0000 10.0000", "A                30").m_strObjects,
              "point A 3.048 6.096 30\n")
        << "heights are metres";
}

TEST_F(CorLevTest, BothFilesAreNeeded)
{
    CIEData job;
    EXPECT_EQ(ImportFile(job, "in.cor"),
              (TImported{IE_CANNOT_OPEN_FILE, "", "cor0:file.cannot-open lev0:file.cannot-open "}));
    WriteFile(m_Folder / "in.cor", " A                   20.0000 10.0000");
    EXPECT_EQ(ImportFile(job, "in.cor"), (TImported{IE_CANNOT_OPEN_FILE, "", "lev0:file.cannot-open "}));
    std::filesystem::rename(m_Folder / "in.cor", m_Folder / "in.lev");
    EXPECT_EQ(ImportFile(job, "in.lev"), (TImported{IE_CANNOT_OPEN_FILE, "", "cor0:file.cannot-open "}));
    EXPECT_EQ(job.GetNumberOfDatasets(), 0);
}

TEST_F(CorLevTest, CoordinatesGoOutWithoutAFileForHeights)
{
    CFileFaults faults;
    faults.m_AllowOpen = [](const std::string& path, bool) { return !path.ends_with(".lev"); };
    EXPECT_EQ(ExportPair(MakeJob()), IE_OK);
    EXPECT_EQ(ReadFile(m_Folder / "out.x.cor"), ReadFile(DataPath("cor-lev/pair.cor")));
    EXPECT_EQ(m_Folder.List(), "out.x.cor ");
    EXPECT_EQ(m_Ledger.GetCount(EIENote::FileWriteFailed), 1);

    faults.m_AllowOpen = [](const std::string& path, bool) { return !path.ends_with(".cor"); };
    Platform::RemoveFile(m_Folder / "out.x.cor");
    EXPECT_EQ(ExportPair(MakeJob()), IE_CANNOT_OPEN_FILE);
    EXPECT_EQ(m_Folder.List(), "") << "heights alone are of no use";
}

/// Each byte of either file is where it may end. Points whose lines are whole come in; nothing tells a number that was
/// cut from a short one.
TEST_F(CorLevTest, WholeLinesAheadOfACutComeIn)
{
    ASSERT_EQ(ExportPair(MakeJob()), IE_OK);
    const CString strCor = ReadFile(m_Folder / "out.x.cor"), strLev = ReadFile(m_Folder / "out.x.lev");
    const auto countLines = [](std::string_view text) { return std::count(text.begin(), text.end(), '\n'); };
    for (std::size_t n = 0; n <= strCor.size(); ++n) {
        const CString strCut = strCor.substr(0, n);
        CIEData job;
        const TImported cut = ImportPair(job, strCut, strLev);
        EXPECT_GE(countLines(cut.m_strObjects), countLines(strCut)) << n;
        // a level of a point that isn't there
        EXPECT_EQ(cut.m_eResult == IE_OK, countLines(cut.m_strObjects) == countLines(strCor)) << n;
    }
    for (std::size_t n = 0; n <= strLev.size(); ++n) {
        CIEData job;
        const TImported cut = ImportPair(job, strCor, strLev.substr(0, n));
        EXPECT_EQ(countLines(cut.m_strObjects), countLines(strCor)) << n;
        const auto nLacking = countLines(strCor) - countLines(strLev.substr(0, n));
        EXPECT_TRUE(nLacking <= 1 || cut.m_strNotes.find("record.no-level") != CString::npos) << n;
    }
}

/// Levels in the opposite order search for each point.
TEST_F(CorLevTest, ManyLevelsOutOfOrder)
{
    constexpr int kPoints = 100000;
    CString strCor, strLev;
    for (int i = 0; i < kPoints; ++i) {
        strCor += " " + IEUtils::GetReportString(' ', 16, false, "P" + std::to_string(i)) + " 2.0000 1.0000\n";
        // the last point ends the levels
        const int nLevel = i + 1 < kPoints ? kPoints - 2 - i : kPoints - 1;
        strLev += IEUtils::GetReportString(' ', 16, false, "p" + std::to_string(nLevel)) + " " +
                  std::to_string(nLevel) + "\n";
    }
    CIEData job;
    WriteFile(m_Folder / "in.cor", strCor);
    WriteFile(m_Folder / "in.lev", strLev);
    EXPECT_EQ(ImportInTheSameThread(&job, m_Folder / "in.cor", kRead), IE_OK);
    for (int i = 0; i < kPoints; ++i)
        ASSERT_EQ(job.GetDatasetAt(0)->GetObjectAt(i)->GetStation(0)->GetHeight(), i);
}

} // namespace
