// The forms in framed blocks.

#include "formats/points/points_fixture.h"

#include <cmath>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

constexpr int kReadNarrow = 11, kReadWide = 37;
constexpr int kWriteFgh = 9, kWriteXyz = 10, kWriteWide = 48;

class BlockPointsTest : public CPointsTest {
protected:
    /// The file that an export writes, and its result.
    EIEResult ExportTo(std::unique_ptr<CIEData> pJob, int nCode, CString& bytes)
    {
        const CString strFile = m_Folder / "out.txt";
        m_Ledger.Clear();
        pJob->SetObserver(&m_Ledger);
        ChangeSettings(*pJob, [](TIESettings& settings) { settings.m_bSingleFile = true; });
        const EIEResult eResult = ExportInTheSameThread(pJob.release(), strFile, EExportType(nCode));
        bytes = ReadFile(strFile);
        return eResult;
    }
};

std::unique_ptr<CIEData> MakeEmptyJob(EDIST_UNITS units = EDIST_UNITS::Meters)
{
    auto pJob = std::make_unique<CIEData>();
    pJob->GetJobInfo()->SetDistUnits(units);
    pJob->AddDataset(std::make_unique<CIEDataset>("Site"));
    return pJob;
}

std::unique_ptr<CIEData> MakePoint(const CIEStation& station, const CString& strCode = {},
                                   EDIST_UNITS units = EDIST_UNITS::Meters)
{
    auto pJob = MakeEmptyJob(units);
    auto pPoint = std::make_unique<CIEDesignPoint>(station);
    if (!strCode.empty())
        GiveCode(*pPoint, AddCode(*pJob, strCode));
    pJob->GetDatasetAt(0)->Add(std::move(pPoint));
    return pJob;
}

std::unique_ptr<CIEData> MakeJob(EDIST_UNITS units)
{
    auto pJob = MakeEmptyJob(units);
    CIEDataset& dataset = *pJob->GetDatasetAt(0);
    const auto add = [&](const char* pName, double dNorth, double dEast, double dHeight,
                         std::initializer_list<CString> codes = {}) {
        CIEObject& point = AddPoint(dataset, pName, dNorth, dEast, dHeight);
        for (const CString& strCode : codes)
            GiveCode(point, AddCode(*pJob, strCode));
    };
    add("P1", 1200, -2400.25, 12.5, {"ROAD"});
    add("ABCDEFGHIJ", 0, 0, 0);
    AddLine<CIEPolyLine>(dataset, "line", {MakeStation("line", 1, 2, 3), MakeStation("line", 4, 5, 6)});
    add("ABCDEFGHIJK", 1.0004, 1.0006, -1.0004, {"T_1"});
    add("ABCDEFGHIJKLMNO", -0.0004, -0.0005, 0.0005);
    add("ABCDEFGHIJKLMNOP", 0.25, 0.5, 0.75);
    add("ABCDEFGHIJKLMNOPQ", 3, 4, 5, {"A", "B"});
    add("A_B", 6, 7, 8, {"x"});
    add("M\u00FCller \u20AC", 9.125, 10.0625, 11, {"Stra\u00DFe"});
    add("two\r\nlines", 1, 2, 3, {"a\tb"});
    add("L", 30000.999, -30000.9995, 9999.9994, {CString(150, 'C')});
    for (int i = 1; i <= 20; ++i)
        add(("N" + std::to_string(i)).c_str(), i * 1.5, i * -2.25, i);
    return pJob;
}

std::unique_ptr<CIEData> MakeGeographicJob(EDIST_UNITS units)
{
    auto pJob = MakeEmptyJob(units);
    pJob->GetJobInfo()->SetCSType(TIEJobInfo::Geographic);
    AddPoint(*pJob->GetDatasetAt(0), "G1", 47.5234567, -122.3456789, 12.5);
    AddPoint(*pJob->GetDatasetAt(0), "G2", -33.9, 151.2, -4);
    return pJob;
}

TEST_F(BlockPointsTest, WritesWhatItsRulesSay)
{
    const auto kMeters = EDIST_UNITS::Meters, kFeet = EDIST_UNITS::USSurveyFeet;
    ExpectGolden("blocks/fgh_metres.txt", Export(MakeJob(kMeters), kWriteFgh));
    EXPECT_THAT(Notes(),
                ElementsAre("object.kind line", "object.name ABCDEFGHIJK", "object.codes ABCDEFGHIJK",
                            "object.name ABCDEFGHIJKLMNO", "object.name ABCDEFGHIJKLMNOP",
                            "object.name ABCDEFGHIJKLMNOPQ", "object.name A_B", "object.name M\u00FCller \u20AC",
                            "object.name two\r\nlines", "object.codes two\r\nlines"));
    ExpectGolden("blocks/xyz_metres.txt", Export(MakeJob(kMeters), kWriteXyz));
    EXPECT_EQ(m_Ledger.GetCount(EIENote::ObjectCodes), 7) << "it holds no codes";
    ExpectGolden("blocks/wide_metres.txt", Export(MakeJob(kMeters), kWriteWide));
    EXPECT_EQ(m_Ledger.GetCount(EIENote::ObjectCodes), 7) << "a reader takes none";
    EXPECT_EQ(m_Ledger.GetCount(EIENote::ObjectHeight), 7) << "it stumbles over the codes";
    EXPECT_EQ(m_Ledger.GetCount(EIENote::ObjectName), 4) << "17 characters, a field mark, a blank, a line end";

    ExpectGolden("blocks/fgh_us_feet.txt", Export(MakeJob(kFeet), kWriteFgh));
    EXPECT_EQ(m_Ledger.GetCount(EIENote::JobUnits), 0) << "a letter tells them";
    ExpectGolden("blocks/fgh_us_feet.txt", Export(MakeJob(EDIST_UNITS::InternationalInches), kWriteFgh));
    ExpectGolden("blocks/xyz_us_feet.txt", Export(MakeJob(kFeet), kWriteXyz));
    EXPECT_EQ(m_Ledger.GetCount(EIENote::JobUnits), 1);
    ExpectGolden("blocks/wide_us_feet.txt", Export(MakeJob(kFeet), kWriteWide));
    EXPECT_EQ(m_Ledger.GetCount(EIENote::JobUnits), 1);

    ExpectGolden("blocks/fgh_geographic.txt", Export(MakeGeographicJob(kMeters), kWriteFgh));
    EXPECT_EQ(m_Ledger.GetCount(EIENote::JobGeographic), 1);
    ExpectGolden("blocks/xyz_geographic.txt", Export(MakeGeographicJob(kFeet), kWriteXyz));
    ExpectGolden("blocks/wide_geographic.txt", Export(MakeGeographicJob(kMeters), kWriteWide));
}

TEST_F(BlockPointsTest, AJobWithoutPointsIsABlockOfBlanks)
{
    const CString blanks(128, ' ');
    EXPECT_EQ(Export(MakeEmptyJob(), kWriteFgh), "\x02" + blanks + "0048\x03\r\n");
    EXPECT_EQ(Export(MakeEmptyJob(), kWriteWide), "\x02_" + blanks.substr(1) + "0079\x03\r\n\x04\r\n");
    for (const int nCode : {kReadNarrow, kReadWide}) {
        CIEData job;
        EXPECT_EQ(Import(job, nCode, Export(MakeEmptyJob(), nCode == kReadWide ? kWriteWide : kWriteFgh)),
                  (TImported{IE_OK, "", ""}));
        EXPECT_EQ(job.GetNumberOfDatasets(), 1);
    }
}

TEST_F(BlockPointsTest, BlocksAreCutWhereTheTextFillsThem)
{
    struct {
        int m_nCode;
        std::size_t m_nText; ///< characters of the one record
        std::size_t m_nBlocks;
    } const rows[] = {
        {kWriteFgh, 127, 1},
        {kWriteFgh, 128, 2},
        {kWriteFgh, 129, 2},
        {kWriteFgh, 255, 2},
        {kWriteFgh, 256, 2}, // a full block waits behind the one that was written
        {kWriteFgh, 257, 3},
        // with the mark that ends the stream
        {kWriteWide, 126, 1},
        {kWriteWide, 127, 1},
        {kWriteWide, 128, 2},
        {kWriteWide, 129, 2},
        {kWriteWide, 255, 2},
        {kWriteWide, 256, 3},
    };
    for (const auto& row : rows) {
        const bool bWide = row.m_nCode == kWriteWide;
        const CString strCode(row.m_nText - (bWide ? 59 : 57), 'c');
        const CString bytes = Export(MakePoint(MakeStation("P", 1, 2, 3), strCode), row.m_nCode);
        EXPECT_EQ(bytes.size(), row.m_nBlocks * 136 + (bWide ? 3 : 0)) << row.m_nCode << " " << row.m_nText;
        CString strText;
        for (std::size_t n = 1; n + 128 < bytes.size(); n += 136)
            strText += bytes.substr(n, 128);
        EXPECT_EQ(strText.find_last_not_of(' ') + 1, row.m_nText + (bWide ? 1 : 0));
        EXPECT_EQ(m_Ledger.GetCount(EIENote::LineUnreadable), row.m_nText > 256 ? 1 : 0) << row.m_nText;
    }
}

TEST_F(BlockPointsTest, DigitsBeyondAFieldAreTold)
{
    struct {
        int m_nCode;
        double m_dNorth;
        const char* m_pField;
        EIEResult m_eResult;
        std::vector<CString> m_Notes;
        EDIST_UNITS m_eUnits = EDIST_UNITS::Meters;
    } const rows[] = {
        {kWriteFgh, 999999.999, "_ f+999999999m_", IE_OK, {}},
        {kWriteFgh, 999999.9995, "_ f+000000000m_", IE_OK, {"object.coordinates P"}},
        {kWriteFgh, 1000000.0, "_ f+000000000m_", IE_VALUE_TOO_WIDE, {"object.coordinates P"}},
        {kWriteFgh, -1234567.891, "_ f-234567891m_", IE_VALUE_TOO_WIDE, {"object.coordinates P"}},
        {kWriteFgh, 304800.0, "_ f+999998000f_", IE_OK, {}, EDIST_UNITS::InternationalFeet},
        {kWriteFgh,
         304801.0,
         "_ f+000001281f_",
         IE_VALUE_TOO_WIDE,
         {"object.coordinates P"},
         EDIST_UNITS::USSurveyFeet},
        {kWriteXyz, 99999999.999, "_ x+99999999999_", IE_OK, {}},
        {kWriteXyz, 100000000.25, "_ x+00000000250_", IE_OK, {"object.coordinates P"}},
        {kWriteWide, 2147483.647, "_ x+2147483647_", IE_OK, {}},
        {kWriteWide, 2147483.648, "_ x+-2147483648_", IE_OK, {"line.unreadable P"}}, // as 32 bits have it
        {kWriteWide, 4294967.297, "_ x+000000001_", IE_OK, {"object.coordinates P"}},
        {kWriteWide, HUGE_VAL, "_ x+000000000_", IE_OK, {"object.coordinates P"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.m_dNorth);
        CString bytes;
        EXPECT_EQ(ExportTo(MakePoint(MakeStation("P", row.m_dNorth, 2, 3), {}, row.m_eUnits), row.m_nCode, bytes),
                  row.m_eResult);
        EXPECT_NE(bytes.find(row.m_pField), CString::npos) << bytes;
        EXPECT_EQ(Notes(), row.m_Notes);
    }
}

TEST_F(BlockPointsTest, NamesThatAReaderTakesOtherwiseAreTold)
{
    struct {
        const char* m_pName;
        std::vector<CString> m_Fgh;
        std::vector<CString> m_Wide;
    } const rows[] = {
        {"P+1.a", {}, {}},
        {"", {"line.unreadable "}, {"line.unreadable "}},
        {" A", {"object.name  A"}, {"object.name  A"}},
        {"A B", {"object.name A B"}, {"object.name A B"}},
        {"_0.5", {"object.name _0.5"}, {"line.unreadable _0.5"}},
        {"A_x7", {"object.name A_x7"}, {"object.name A_x7"}},
        {"A_z", {"object.name A_z"}, {"object.name A_z", "object.coordinates A_z", "object.height A_z"}},
        {"A\x02", {"object.name A\x02"}, {"object.name A\x02"}},
        {"\u70B9", {}, {"object.name \u70B9"}},             // not in the code page
        {"\u00C3\u00BC", {}, {"object.name \u00C3\u00BC"}}, // whose bytes are the UTF-8 of another
    };
    for (const auto& row : rows) {
        Export(MakePoint(MakeStation(row.m_pName, 1, 2, 3)), kWriteFgh);
        EXPECT_EQ(Notes(), row.m_Fgh) << row.m_pName;
        Export(MakePoint(MakeStation(row.m_pName, 1, 2, 3)), kWriteWide);
        EXPECT_EQ(Notes(), row.m_Wide) << row.m_pName;
    }
    auto pJob = MakeEmptyJob();
    for (const char* const pName : {"1234567890A", "x1234567890", "1234567890", "other", "y1234567890"})
        AddPoint(*pJob->GetDatasetAt(0), pName);
    Export(std::move(pJob), kWriteFgh);
    EXPECT_EQ(m_Ledger.GetCount(EIENote::ObjectJoined), 2) << "cut to ten, the second and the third are the same";
}

/// Text in frames of 128 characters, whose digit and check nobody looks at.
CString Frame(CString text)
{
    CString bytes;
    for (; !text.empty(); text.erase(0, std::min<std::size_t>(text.size(), 128)))
        bytes +=
            "\x02" + text.substr(0, 128) + CString(128 - std::min<std::size_t>(text.size(), 128), ' ') + "7999\x03\r\n";
    return bytes;
}

struct TCase {
    int m_nCode;
    CString m_strBytes;
    const char* m_pObjects; ///< without the last line end
    EIEResult m_eResult = IE_OK;
    const char* m_pNotes = "";
};

// clang-format off
#define N(name) "_+" name "_ x+00000001000_ y+00000002000_ z+00000003000_"
#define W(name) "_0." name " _ x+000001000_ y+000002000_ z+000003000"
const TCase kCases[] = {
    // fields of the form of 12 characters
    {kReadNarrow, Frame(N("A") N("B")), "point A 1 2 3\npoint B 1 2 3"},
    {kReadNarrow, N("A") "\r\n" N("B") "\n", "point A 1 2 3\npoint B 1 2 3"},
    {kReadNarrow, N("A") "\r\n" N("B"), "point A 1 2 3\npoint B 1 2 3"},
    {kReadNarrow, N("A") "\n_+B_ x1_ y2_ z+00", "point A 1 2 3\npoint B 0.001 0.002 0", IE_OK, "2:record.height "},
    {kReadNarrow, Frame(N("A")) + N("B"), "point A 1 2 3", IE_OK, "2:block.unfinished "},
    {kReadNarrow, N("A") "\n\x02" N("B"), "point A 1 2 3", IE_OK, "2:block.unfinished "},
    {kReadNarrow, "_+A_ f+000001000m_ g-000002000m_ h+000003000m_*X,,Y_\n", "point A 1 -2 3 X() Y()"},
    {kReadNarrow, "_+A_f+000039370f_g+000039370F_h+000039370f_*X\n", "point A 12 12 12 X()"},
    {kReadNarrow, "_+ .A B_ x1_ y.5_ z+0000003000m\n", "point .A 0.001 0.0005 3", IE_OK, "1:record.name-cut "},
    {kReadNarrow, "_+.A__ x1_ y2_ z+0000003000_q7_\n", "point A 0.001 0.002 3", IE_OK, "1:record.field "},
    {kReadNarrow, "_+A_ x_ y+_ z000003000_\n", "point A 0 0 0", IE_OK, "1:record.height "},
    {kReadNarrow, "_+A_ x1_ y2_ z00000-3000_\n", "point A 0.001 0.002 0", IE_OK, "1:record.height "},
    {kReadNarrow, "_+A_ x1_ _+B_ y2_\n", "point A 0.001 0 0\npoint B 0 0.002 0", IE_OK,
     "1:record.incomplete 1:record.incomplete "},
    {kReadNarrow, "_+A_ x1_ y2_ +CODE_ z+0000003000_\n", "point A 0.001 0.002 0", IE_OK, "1:record.field 1:record.field 1:record.incomplete "},
    {kReadNarrow, "_+A_ x1_ y2_ +_ *CODE_\n", "point A 0.001 0.002 0", IE_OK, "1:record.field 1:record.incomplete "},
    {kReadNarrow, "_+1234567890123_ x1_ y2_ z+0000003000_\n", "point 123456789012 0.001 0.002 3", IE_OK, "1:record.name-cut "},
    {kReadNarrow, "_+A_ x1.5.2_ y1234567890123_ z+0000003000_\n", "point A 0 123456789.012 3", IE_OK, "1:record.number 1:record.number "},
    // what is refused ends the import
    {kReadNarrow, N("A") "\n_+B_ xa1_ y2-_\n" N("C") "\n", "point A 1 2 3", IE_BAD_CONTENT, "2:record.number 2:record.number "},
    {kReadNarrow, N("A") "\n_+ _ x1_\n", "point A 1 2 3", IE_BAD_CONTENT, "2:record.name "},
    {kReadNarrow, "_+A_1_2_3_4_5_6_7_8_x1_*R\n", "", IE_BAD_CONTENT, "1:record.field 1:record.field 1:record.field 1:record.field "
     "1:record.field 1:record.field 1:record.field 1:record.field 1:record.fields "},
    {kReadNarrow, "_+A_1_2_3_4_5_6_7_x1_*R\n", "point A 0.001 0 0 R()", IE_OK, "1:record.field 1:record.field 1:record.field "
     "1:record.field 1:record.field 1:record.field 1:record.field 1:record.incomplete "},
    {kReadNarrow, N("A") + Frame(N("B") + CString(250, '*')), "", IE_BAD_CONTENT, "1:record.too-long "},
    // lines by names
    {kReadNarrow, Frame(N("A") N("A") N("A") N("B") N("B")), "polygon A 1 2 3 | 1 2 3 | 1 2 3\npolygon B 1 2 3 | 1 2 3"},
    {kReadNarrow, "_+L_ x1_ y2_ z+0000003000_*R\n_+L_ x2_ y2_ z+0000003000_*S\n", "line L 0.001 0.002 3 | 0.002 0.002 3 R()",
     IE_OK, "2:record.codes "},
    // blocks and what stands between them
    {kReadNarrow, "", ""},
    {kReadNarrow, "\r\n" N("A") "\n", "", IE_OK, "2:block.behind-end "},
    {kReadNarrow, N("A") "\n\x02\r\n" N("B") "\n", "point A 1 2 3", IE_OK, "3:block.behind-end "},
    {kReadNarrow, "head\n" N("A") "\n", "point A 1 2 3", IE_OK, "1:block.no-record "},
    {kReadNarrow, "\xEF\xBB\xBF" N("A") "\r\r\n", "point A 1 2 3"},
    {kReadNarrow, "noise\x02more\x02" N("A") "\x03\r\n", "point A 1 2 3"},
    {kReadNarrow, Frame(N("A")) + "_*X\r\n" + Frame(N("B")), "point A 1 2 3 X()\npoint B 1 2 3", IE_OK, "2:block.no-frame "},
    {kReadNarrow, "\x02" N("A") N("B") N("C") N("D") "\n", "point A 1 2 3\npoint B 1 2 3\npoint C 1 0.002 0", IE_OK, "1:block.too-long 1:record.incomplete "},
    {kReadNarrow, N("A") N("B") N("C") N("D") "\n", "point A 1 2 3\npoint B 1 2 3\npoint C 1 2 3\npoint D 1 2 3"},
    {kReadNarrow, "_+M\xFC" "ller_ x1_ y2_ z+0000003000_*Stra\xDF" "e_\n", "point Müller 0.001 0.002 3 Straße()"},
    {kReadNarrow, "_+M\xC3\xBCller_ x1_ y2_ z+0000003000_\n", "point Müller 0.001 0.002 3"},
    {kReadNarrow, "_+A\x81_ x1_ y2_ z+0000003000_\n", "point A\uFFFD 0.001 0.002 3", IE_OK, "1:record.bad-characters "},
    // the form of 16 characters
    {kReadWide, Frame(W("A") W("B")), "point A 1 2 3\npoint B 1 2 3"},
    {kReadWide, Frame(W("A") "*ROAD" W("B") "_*ROAD" W("C")), "point A 1 2 0\npoint B 1 2 3\npoint C 1 2 3", IE_OK,
     "1:record.height 1:record.code 1:record.field "},
    {kReadWide, Frame(W("A") "m_0.B_ x+000039370F_ y+000039370f_ z39370f"), "point A 1 2 3\npoint B 12 12 12"},
    {kReadWide, Frame("_0.A_ f1_ g2_ h3_0.B_*R_ z4"), "point A 0.001 0.002 0.003\npoint B 0 0 0.004", IE_OK,
     "1:record.field 1:record.incomplete "},
    {kReadWide, Frame("_0._ x1"), "", IE_BAD_CONTENT, "1:record.name "},
    {kReadWide, Frame("_0.A_ y2x_ z3_0.B_ y-2-"), "point A 0 0.002 0.003", IE_BAD_CONTENT,
     "1:record.number 1:record.incomplete 1:record.number "},
    {kReadWide, Frame("_0.A_ y2_ x17"), "point A 0 0.002 0", IE_OK, "1:record.field 1:record.incomplete "},
    {kReadWide, Frame("_0.12345678901234567_ x1_ y2_ z3"), "point 1234567890123456 0.001 0.002 0.003", IE_OK, "1:record.name-cut "},
    {kReadWide, W("A") "\n" W("B") W("C") W("D") W("E") "\n", "point A 1 2 3\npoint B 1 2 3\npoint C 1 2 3\npoint D 1 2 0", IE_OK, "2:block.too-long "},
    {kReadWide, W("A") "\n" N("B"), "point A 1 2 3", IE_OK, "2:block.unfinished "},
};
#undef N
#undef W
// clang-format on

TEST_F(BlockPointsTest, Reads)
{
    for (const TCase& row : kCases) {
        SCOPED_TRACE(row.m_strBytes);
        CIEData job;
        job.GetJobInfo()->SetDistUnits(EDIST_UNITS::USMiles); // a letter tells feet, and nothing else does
        const CString strObjects = *row.m_pObjects ? CString(row.m_pObjects) + "\n" : CString();
        EXPECT_EQ(Import(job, row.m_nCode, row.m_strBytes), (TImported{row.m_eResult, strObjects, row.m_pNotes}));
        ASSERT_EQ(job.GetNumberOfDatasets(), 1);
        EXPECT_EQ(job.GetDatasetAt(0)->GetName(), "Import dataset");
    }
}

TEST_F(BlockPointsTest, ARecordHasAtMost256Characters)
{
    const CString strStart = "_+A_ x1_ y2_ z+0000003000_*";
    for (const char* const pLetter : {"c", "\u00E4"}) {
        for (const std::size_t nLength : {256U, 257U}) {
            CString strCode;
            for (std::size_t i = strStart.size(); i < nLength; ++i)
                strCode += pLetter;
            // blanks behind it, in more than one block, belong to no record
            CIEData job;
            const TImported read = Import(job, kReadNarrow, strStart + strCode + CString(5000, ' ') + "\n");
            EXPECT_EQ(read.m_eResult, nLength > 256 ? IE_BAD_CONTENT : IE_OK) << nLength;
            EXPECT_EQ(read.m_strObjects, nLength > 256 ? CString() : "point A 0.001 0.002 3 " + strCode + "()\n");
        }
    }
}

TEST_F(BlockPointsTest, BothFormsReadBackInEveryEncodingOfTheirs)
{
    const auto makeJob = [](const CString& strCodePage, const CString& strEncoding) {
        auto pJob = MakeEmptyJob();
        ChangeSettings(*pJob, [&](TIESettings& settings) {
            settings.m_strCodePage = strCodePage;
            settings.m_strWriteEncoding = strEncoding;
        });
        const CString names[] = {"\u6E2C\u70B9", "M\u00FCller", "A", "\U0001F600"};
        for (int i = 0; i < 40; ++i) // many blocks, whose borders fall anywhere
            AddPoint(*pJob->GetDatasetAt(0), names[i % 4] + std::to_string(i), i, -i, 0.5);
        return pJob;
    };
    struct {
        int m_nWrite, m_nRead;
        const char* m_pCodePage;
        const char* m_pEncoding;
    } const rows[] = {
        {kWriteFgh, kReadNarrow, "CP1252", "UTF-8"},    {kWriteXyz, kReadNarrow, "CP1252", "UTF-16LE"},
        {kWriteFgh, kReadNarrow, "GB18030", "GB18030"}, {kWriteWide, kReadWide, "UTF-8", "UTF-8"},
        {kWriteWide, kReadWide, "GB18030", "UTF-8"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(CString(row.m_pCodePage) + " " + row.m_pEncoding);
        const CString bytes = Export(makeJob(row.m_pCodePage, row.m_pEncoding), row.m_nWrite);
        EXPECT_TRUE(m_Ledger.IsEmpty());
        const auto pBack = MakeJobLike(*makeJob(row.m_pCodePage, row.m_pEncoding));
        EXPECT_EQ(Import(*pBack, row.m_nRead, bytes),
                  (TImported{IE_OK, Describe(*makeJob(row.m_pCodePage, row.m_pEncoding)), ""}));
    }
}

/// Whatever a cut takes away is told, unless it falls between two records.
TEST_F(BlockPointsTest, AFileThatIsCutAnywhereIsTold)
{
    for (const auto& [nWrite, nRead] : {std::pair(kWriteFgh, kReadNarrow), std::pair(kWriteWide, kReadWide)}) {
        auto pJob = MakeEmptyJob();
        for (int i = 1; i <= 8; ++i)
            AddPoint(*pJob->GetDatasetAt(0), "P" + std::to_string(i), i, 2, 3);
        const CString bytes = Export(std::move(pJob), nWrite);
        CIEData whole;
        const CString strWhole = Import(whole, nRead, bytes).m_strObjects;
        for (std::size_t n = 1; n < bytes.size(); ++n) {
            CIEData job;
            const TImported cut = Import(job, nRead, std::string_view(bytes).substr(0, n));
            EXPECT_TRUE(cut.m_eResult == IE_OK || cut.m_eResult == IE_BAD_CONTENT) << n;
            EXPECT_TRUE(cut.m_strObjects == strWhole || !cut.m_strNotes.empty()) << nWrite << " at " << n;
        }
    }
}

/// Time and memory go with the file, however its text is spread over blocks, lines and records.
TEST_F(BlockPointsTest, LargeFilesOfEveryShape)
{
    constexpr std::size_t kSize = 4 << 20;
    const CString strRecord = "_+A_ x1_ y2_ z+0000003000_";
    CString strLine, strBlocks, strEmpty;
    while (strLine.size() < kSize)
        strLine += strRecord;
    while (strBlocks.size() < kSize)
        strBlocks += Frame(strRecord);
    while (strEmpty.size() < kSize)
        strEmpty += Frame(" ");
    const int nRecords = static_cast<int>(strLine.size() / strRecord.size());
    struct {
        CString m_strBytes;
        EIEResult m_eResult;
        int m_nStations;
        const char* m_pNotes;
    } const rows[] = {
        {strLine + "\n", IE_OK, nRecords, ""},
        {strLine, IE_OK, nRecords, ""},
        {"\x02" + strLine, IE_OK, 0, "1:block.unfinished "},
        {strBlocks, IE_OK, static_cast<int>(strBlocks.size() / Frame(" ").size()), ""},
        {Frame(strRecord) + strEmpty, IE_OK, 1, ""},
        {Frame(strRecord + CString(kSize, 'x')), IE_BAD_CONTENT, 0, "1:record.too-long "},
        {Frame(CString(kSize, 'x') + strRecord), IE_OK, 1, "1:block.no-record "},
        {"\x02" + CString(kSize, 'x') + "\n" + Frame(strRecord), IE_OK, 1, "1:block.too-long 1:block.no-record "},
    };
    for (const auto& row : rows) {
        CIEData job;
        const CString strFile = m_Folder / "in.txt";
        WriteFile(strFile, row.m_strBytes);
        CIELedger ledger;
        job.SetObserver(&ledger);
        EXPECT_EQ(ImportInTheSameThread(&job, strFile, kReadNarrow), row.m_eResult);
        EXPECT_EQ(job.GetDatasetAt(0)->GetNumberOfElements(-1, 2, true, false), row.m_nStations);
        CString strNotes;
        for (const TIENote& note : ledger.GetNotes())
            strNotes += std::to_string(note.m_Place.m_nLine) + ":" + note.GetWord() + " ";
        EXPECT_EQ(strNotes, row.m_pNotes);
    }
}

TEST_F(BlockPointsTest, ALongLastRecordComesBackWhereverItsBlockEnds)
{
    for (int nAhead = 0; nAhead < 6; ++nAhead) {
        auto pJob = MakeEmptyJob();
        CIEDataset& dataset = *pJob->GetDatasetAt(0);
        for (int i = 0; i < nAhead; ++i)
            AddPoint(dataset, "P" + std::to_string(i));
        CIEObject& last = AddPoint(dataset, "LAST", 4, 5, 6);
        GiveCode(last, AddCode(*pJob, CString(60, 'a')));
        GiveCode(last, AddCode(*pJob, CString(50, 'b')));
        CString bytes;
        EXPECT_EQ(ExportTo(std::move(pJob), kWriteWide, bytes), IE_OK);
        CIEData back;
        EXPECT_EQ(Import(back, kReadWide, bytes).m_eResult, IE_OK) << nAhead;
        EXPECT_EQ(back.GetNumberOfObjectsInAllDatasets(), nAhead + 1);
    }
}

TEST_F(BlockPointsTest, TheEndMarkOfAStreamIsNoText)
{
    CIEData job;
    const CString blanks(60, ' ');
    const TImported read = Import(job, kReadNarrow,
                                  "\x02_+A_ f+1000m_ g+2000m_ h+000003000m_*ROAD" + blanks +
                                      "\x03\r\n\x04\r\n\x02_+B_ f+1000m_ g+2000m_ h+000003000m_\x03\r\n");
    EXPECT_EQ(read.m_eResult, IE_OK);
    ASSERT_EQ(job.GetNumberOfObjectsInAllDatasets(), 2);
    EXPECT_EQ(job.GetIEDataDictionary()->GetCodeDescriptionAt(0)->GetName().find('\x04'), CString::npos);
}

TEST_F(BlockPointsTest, ANumberThatALetterBreaksIsTold)
{
    const auto notes = [this](const CString& north) {
        CIEData job;
        return Import(job, 12, "_+A_ x" + north + "_ y+2000_ z+000003000_\r\n").m_strNotes;
    };
    for (const char* const pGood : {"+00000100", "+00000100m", "1000F", "-5f"})
        EXPECT_EQ(notes(pGood), "") << pGood;
    for (const char* const pBad : {"+00000100O", "q", "1k", "2000i", "10 0"})
        EXPECT_EQ(notes(pBad), "1:record.number ") << pBad;
}

} // namespace
