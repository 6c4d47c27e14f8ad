#include "alidade/platform/system.h"
#include "formats/points/points_fixture.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kDelimited = 0;

/// How a job is set for a case.
enum EMode : unsigned { Plain = 0, Types = 1, Quotes = 2, Both = 3, USFeet = 4, Degrees = 8, DMS = 16 };

std::unique_ptr<CIEData> MakeJob(unsigned nMode, const CString& fields, char16_t cDelimiter = u',',
                                 bool bHeader = false)
{
    auto pJob = std::make_unique<CIEData>();
    SetLayout(*pJob, fields, cDelimiter, bHeader);
    ChangeSettings(*pJob, [&](TIESettings& settings) {
        settings.m_bAttrTypes = nMode & Types;
        settings.m_bAttrQuotes = nMode & Quotes;
        if (nMode & DMS)
            settings.m_eCoordsStyle = ECOORDS_STYLE::DegreesMinutesSeconds;
    });
    if (nMode & USFeet)
        pJob->GetJobInfo()->SetDistUnits(EDIST_UNITS::USSurveyFeet);
    if (nMode & (Degrees | DMS))
        pJob->GetJobInfo()->SetCSType(TIEJobInfo::Geographic);
    return pJob;
}

class DelimitedTest : public CPointsTest {};

constexpr const char* kUsual = "name,north,east,height,codes";
constexpr const char* kShort = "name,north,east";

struct TLineCase {
    const char* m_pText;
    const char* m_pObjects; ///< without the last line end
    const char* m_pNotes = "";
    EIEResult m_eResult = IE_OK;
    unsigned m_nMode = Both;
    const char* m_pFields = kUsual;
    char16_t m_cDelimiter = u',';
};

// clang-format off
const TLineCase kLines[] = {
    // as many fields as the layout, and fewer
    {"A,1,2,3,ROAD",            "point A 1 2 3 ROAD()"},
    {"A,1,2,3",                 "point A 1 2 3"},
    {"A,1,2,3,",                "point A 1 2 3"},
    {"A,1,2",                   "", "1:line.field-count ", IE_BAD_CONTENT},
    {"A,1,2,",                  "", "1:line.number ", IE_BAD_CONTENT},
    {"A",                       "", "1:line.field-count ", IE_BAD_CONTENT},
    {"A,1,2",                   "point A 1 2 0", "", IE_OK, Plain, kShort},
    {"A,1",                     "", "1:line.field-count ", IE_BAD_CONTENT, Plain, kShort},
    {"A,1,2,3",                 "", "1:line.field-count ", IE_BAD_CONTENT, Plain, kShort},
    {"A,1,2,",                  "", "1:line.field-count ", IE_BAD_CONTENT, Plain, kShort},
    {"A,,2",                    "", "1:line.number ", IE_BAD_CONTENT, Plain, kShort},
    {",1,2",                    "point  1 2 0", "", IE_OK, Plain, kShort},
    {" ",                       "", "1:line.field-count ", IE_BAD_CONTENT, Plain, kShort},
    {"A,1,2\nB,x,2\nC,3,4",     "point A 1 2 0\npoint C 3 4 0", "2:line.number ", IE_PARTIAL, Plain, kShort},
    // numbers
    {"A, +1.5 ,-2e2",           "point A 1.5 -200 0", "", IE_OK, Plain, kShort},
    {"A,nan,2",                 "", "1:line.number ", IE_BAD_CONTENT, Plain, kShort},
    {"A,1,inf",                 "", "1:line.number ", IE_BAD_CONTENT, Plain, kShort},
    {"A,1,1e999",               "", "1:line.number ", IE_BAD_CONTENT, Plain, kShort},
    {"A,1,2m",                  "", "1:line.number ", IE_BAD_CONTENT, Plain, kShort},
    {"A,1,2,x,5",               "", "1:line.number ", IE_BAD_CONTENT, Plain, "name,north,east,height,geoid"},
    {"A,1,2,3,x",               "", "1:line.number ", IE_BAD_CONTENT, Plain, "name,north,east,height,geoid"},
    {"A,3937,7874,39.37,3.937", "point A 1200 2400 12 geoid 1.2", "", IE_OK, USFeet, "name,north,east,height,geoid"},
    {"A,47.5,-8.25,39.37",      "point A 47.5 -8.25 12", "", IE_OK, USFeet | Degrees, "name,north,east,height"},
    {"A,47°30',-8°15'0\",1",    "point A 47.5 -8.25 1", "", IE_OK, DMS, "name,north,east,height"},
    {"A,47°60',8,1",            "", "1:line.number ", IE_BAD_CONTENT, DMS, "name,north,east,height"},
    // other fields
    {"2,1,A,a note",            "point A 1 2 0 'a note'", "", IE_OK, Plain, "east,north,name,notes"},
    {"A,1,2,-5.25",             "point A 1 2 0 geoid -5.25", "", IE_OK, Plain, "name,north,east,geoid"},
    {"A,1,2,x,y",               "point A 1 2 0", "", IE_OK, Plain, "name,north,east,10,19"},
    {"A,1,2,x",                 "", "1:layout.field ", IE_BAD_CONTENT, Plain, "name,north,east,20"},
    {"1,2,3",                   "point  1 2 3", "", IE_OK, Plain, "north,east,height"},
    // codes over several fields, wherever they stand
    {"A,1,2,3,ROAD,TREE,WALL",  "point A 1 2 3 ROAD() TREE() WALL()"},
    {"A,1,2,3,ROAD,,WALL",      "point A 1 2 3 ROAD() WALL()"},
    {"A,ROAD,TREE,1,2",         "point A 1 2 0 ROAD() TREE()", "", IE_OK, Plain, "name,codes,north,east"},
    {"ROAD,TREE,A,1,2",         "point A 1 2 0 ROAD() TREE()", "", IE_OK, Plain, "codes,name,north,east"},
    {"ROAD,A,1,2",              "point A 1 2 0 ROAD()", "", IE_OK, Plain, "codes,name,north,east"},
    {"A,1,2",                   "", "1:line.field-count ", IE_BAD_CONTENT, Plain, "codes,name,north,east"},
    {"ROAD,A,1,2,TREE,WALL",    "point A 1 2 0 TREE() WALL()", "", IE_OK, Plain, "code,name,north,east,codes"},
    // points on a line
    {"A<PTL>,1,2,3,ROAD,P1,P2", "relative A 1 2 3 of P1 P2 along ROAD()"},
    {"A<REG>,1,2,3,,P1,P2",     "relative A 1 2 3 of P1 P2 plain"},
    {"A<REG>x,1,2,3,ROAD,TREE,P1,P2", "relative A 1 2 3 of P1 P2 plain ROAD() TREE()"},
    {"A<PTL>,1,2,P1,P2",        "relative A 1 2 0 of P1 P2 along", "", IE_OK, Plain, kShort},
    {"A<PTL>,1,2",              "", "1:line.field-count ", IE_BAD_CONTENT, Plain, kShort},
    {"A<PTL>",                  "", "1:line.field-count ", IE_BAD_CONTENT, Plain, "name"},
    {"A<ptl>,1,2",              "point A<ptl> 1 2 0", "", IE_OK, Plain, kShort},
    // attributes
    {R"(A,1,2,3,ROAD:width.REAL=3.5$kind.TEXT="asphalt"$lanes.INT=2$side.LIST(L#R)="L"&"note"&"two"@"c1"@"c2")",
                                "point A 1 2 3 ROAD(width:REAL=3.5 kind:TEXT=asphalt lanes:INT=2 side:LIST#L#R=L)&note&two@c1@c2"},
    {R"(A,1,2,3,ROAD:side.LIST(L#R)=R$w.REAL=1&note@c1)",
                                "point A 1 2 3 ROAD(side:LIST#L#R=R w:REAL=1)&note@c1", "", IE_OK, Types},
    {R"(A,1,2,3,ROAD:s.LIST(a#b)="x$y")",
                                "point A 1 2 3 ROAD(s:LIST#a#b=\"x)", "", IE_OK, Types},
    {R"(A,1,2,3,ROAD:w.REAL=3.5$kind.TEXT="a")",
                                "point A 1 2 3 ROAD(w.REAL:TEXT=3.5 kind.TEXT:TEXT=a)", "", IE_OK, Plain},
    {R"(A,1,2,3,ROAD:kind="a")", "point A 1 2 3 ROAD(kind:TEXT=\"a\")"},
    {"A,1,2,3,ROAD: w = 3 $ k = x y ", "point A 1 2 3 ROAD(w:TEXT=3 k:TEXT=x y)"},
    {"A,1,2,3,ROAD:w=",         "point A 1 2 3 ROAD(w:TEXT=)"},
    {"A,1,2,3,ROAD:w$k=1",      "point A 1 2 3 ROAD(w$k:TEXT=1)"},
    {"A,1,2,3,ROAD:nothing",    "point A 1 2 3 ROAD()"},
    {"A,1,2,3,ROAD:a.b.REAL=1", "point A 1 2 3 ROAD(a.b:REAL=1)"},
    {"A,1,2,3,ROAD:w.ELSE=1",   "point A 1 2 3 ROAD(w:TEXT=1)"},
    {"A,1,2,3,ROAD:s.LIST=1",   "point A 1 2 3 ROAD(s:TEXT=1)"},
    {"A,1,2,3,ROAD:k.TEXT=asphalt$w.REAL=1", "point A 1 2 3 ROAD(k:TEXT=asphalt w:REAL=1)"},
    {R"(A,1,2,3,ROAD:k.TEXT="a$b"$w.REAL=1)", "point A 1 2 3 ROAD(k:TEXT=a$b b\"$w:REAL=1)"},
    {R"(A,1,2,3,ROAD:k.TEXT="abc)", "point A 1 2 3 ROAD(k:TEXT=abc)"},
    {R"(A,1,2,3,ROAD:k.TEXT=""$w.REAL=1)", "point A 1 2 3 ROAD(k:TEXT= w:REAL=1)"},
    {"A,1,2,3,ROAD:w=1\nB,1,2,3,ROAD:x=2$y=3", "point A 1 2 3 ROAD(w:TEXT=1)\npoint B 1 2 3 ROAD(w:TEXT=2 =3)", "2:code.attributes "},
    // code strings and control codes
    {"A,1,2,3,ROAD&a&&b",       "point A 1 2 3 ROAD()&a&b"},
    {"A,1,2,3,ROAD@c1@c2@c3",   "point A 1 2 3 ROAD()@c1@c3"},
    {"A,1,2,3,ROAD:&x@y",       "point A 1 2 3 ROAD()&x@y"},
    {"A,1,2,3,ROAD@c&s",        "point A 1 2 3 ROAD@c()&s"},
    {"A,1,2,3,ROAD&a:b",        "point A 1 2 3 ROAD&a()"},
    {"A,1,2,3,ROAD&@c",         "point A 1 2 3 ROAD()@c"},
    // what the layout asks of a code
    {"A,1,2,3,ROAD:w=1&s@c",    "point A 1 2 3 ROAD()", "", IE_OK, Plain, "name,north,east,height,code"},
    {"A,1,2,3,ROAD:w=1&s@c",    "point A 1 2 3 ROAD()&s", "", IE_OK, Plain, "name,north,east,height,code+strings"},
    {"A,1,2,3,ROAD:w=1&s@c",    "point A 1 2 3 ROAD(w:TEXT=1)", "", IE_OK, Plain, "name,north,east,height,code+attributes"},
    // quotes and delimiters
    {R"(A,1,2,3,ROAD:k.TEXT="a,b"&"c,d"@"e,f",TREE)", "point A 1 2 3 ROAD(k:TEXT=a,b)&c,d@e,f TREE()"},
    {R"(2" pipe,1,2,3,ROAD)",   "point 2\" pipe 1 2 3 ROAD()"},
    {R"(A,1,2,5'6",7'8")",      "point A 1 2 0 '7'8\"'", "", IE_OK, Plain, "name,north,east,10,notes"},
    {"A;1;2",                   "point A 1 2 0", "", IE_OK, Plain, kShort, u';'},
    {"A§1§2",                   "point A 1 2 0", "", IE_OK, Plain, kShort, u'§'},
    {"A\t\t1\t2",               "", "1:line.field-count ", IE_BAD_CONTENT, Plain, kShort, u'\t'},
    {"  A   1  2 ",             "point A 1 2 0", "", IE_OK, Plain, kShort, u' '},
    {"A 1 2 3  ROAD  \"\"",     "point A 1 2 3 ROAD() \"\"()", "", IE_OK, Plain, kUsual, u' '},
    {"A 1 2 3 ROAD:k.TEXT=\"two words\"", "point A 1 2 3 ROAD(k:TEXT=two words)", "", IE_OK, Both, kUsual, u' '},
    // the end of the data
    {"A,1,2\r\nB,3,4\r\n",      "point A 1 2 0\npoint B 3 4 0", "", IE_OK, Plain, kShort},
    {"A,1,2\n\nB,3,4\n",        "point A 1 2 0", "3:line.behind-end ", IE_OK, Plain, kShort},
    {"\nA,1,2\n",               "", "2:line.behind-end ", IE_NOTHING_DONE, Plain, kShort},
    {"A,x,2\n\n",               "", "1:line.number ", IE_BAD_CONTENT, Plain, kShort},
    {"",                        "", "", IE_NOTHING_DONE, Plain, kShort},
};

/// Lines of one name become a line; all with the layout name, north, east.
const TLineCase kJoined[] = {
    {"L,0,0\nL,0,5",                         "line L 0 0 0 | 0 5 0"},
    {"L,0,0\nL,0,5\nL,5,5\nL,0,0",           "polygon L 0 0 0 | 0 5 0 | 5 5 0 | 0 0 0"},
    {"L,0,0\nL,0,5\nL,0,0\nL,7,7",           "line L 0 0 0 | 0 5 0 | 0 0 0 | 7 7 0"},
    {"L,0,0\nL,0,5\nL,0,0\nB,1,1",           "polygon L 0 0 0 | 0 5 0 | 0 0 0\npoint B 1 1 0"},
    {"L,0,0\nL,0,0",                         "polygon L 0 0 0 | 0 0 0"},
    {"L,0,0\nL,0,5\nB,1,1\nC,2,2",           "line L 0 0 0 | 0 5 0\npoint B 1 1 0\npoint C 2 2 0"},
    {"L,0,0\nL,0,5\nB,1,1\nB,2,2",           "line L 0 0 0 | 0 5 0\nline B 1 1 0 | 2 2 0"},
    {"L,0,0\nL,0,5\nL,0,0\nB,1,1\nB,2,2",    "polygon L 0 0 0 | 0 5 0 | 0 0 0\nline B 1 1 0 | 2 2 0"},
    {"L,0,0\nL,0,5\nB,1,1\nL,2,2",           "line L 0 0 0 | 0 5 0\npoint B 1 1 0\npoint L 2 2 0"},
    {"L,0,0\nl,0,5\nL ,1,1",                 "point L 0 0 0\npoint l 0 5 0\npoint L  1 1 0"},
    {",0,0\n,0,5",                           "point  0 0 0\npoint  0 5 0"},
    {"L,0,0\nL,x,5\nL,1,1",                  "line L 0 0 0 | 1 1 0", "2:line.number ", IE_PARTIAL},
    {"L<REG>,0,0,P,Q\nL,0,5",                "line L 0 0 0 | 0 5 0"},
};

/// First line, and whether it is a header that sets ";" and name, north, east.
const std::pair<const char*, bool> kHeaders[] = {
    {"Header>> Delimiter(;) FileFormat(name,north,east) <<",   true},
    {"xx Header>>Delimiter(;)FileFormat( PNE ) <<yy",          true},
    {"Header>> Delimiter(;) FileFormat(name,north,east)<<",    false},
    {"Header>> Delimiter(;) FileFormat(name,north,east)  <<",  false},
    {"Header>> Delimiter(;) FileFormat(name,north,east) <",    false},
    {"Header> Delimiter(;) FileFormat(name,north,east) <<",    false},
    {"Header>> Delimiter(;;) FileFormat(name,north,east) <<",  false},
    {"Header>> Delimiter() FileFormat(name,north,east) <<",    false},
    {"Header>> Delimiter; FileFormat(name,north,east) <<",     false},
    {"Header>> Delimiter(;) Fields(name,north,east) <<",       false},
    {"Header>> Delimiter(;) << FileFormat(name,north,east)",   false},
    {"Header>> << Delimiter(",                                 false},
};
// clang-format on

TEST_F(DelimitedTest, ReadsLines)
{
    const auto check = [this](const TLineCase& row, unsigned nMode, const char* pFields) {
        SCOPED_TRACE(row.m_pText);
        const auto pJob = MakeJob(nMode, pFields, row.m_cDelimiter);
        const CString strObjects = *row.m_pObjects ? CString(row.m_pObjects) + "\n" : CString();
        EXPECT_EQ(Import(*pJob, kDelimited, row.m_pText), (TImported{row.m_eResult, strObjects, row.m_pNotes}));
        ASSERT_EQ(pJob->GetNumberOfDatasets(), 1);
        EXPECT_EQ(pJob->GetDatasetAt(0)->GetName(), "Import dataset");
    };
    for (const TLineCase& row : kLines)
        check(row, row.m_nMode, row.m_pFields);
    for (const TLineCase& row : kJoined)
        check(row, Plain, kShort);
}

TEST_F(DelimitedTest, AJoinedLineKeepsTheCodesOfItsFirstStation)
{
    const auto pJob = MakeJob(Plain, "name,north,east,codes");
    EXPECT_EQ(Import(*pJob, kDelimited, "L,0,0,ROAD:w=1\nL,1,1,ROAD:w=1\nL,2,2,ROAD:w=2\n"),
              (TImported{IE_OK, "line L 0 0 0 | 1 1 0 | 2 2 0 ROAD(w:TEXT=1)\n", "3:line.codes "}));
}

TEST_F(DelimitedTest, HeaderLine)
{
    for (const auto& [pHeader, bHeader] : kHeaders) {
        SCOPED_TRACE(pHeader);
        const auto pJob = MakeJob(Plain, "name,east,north");
        const TIEAsciiFormat before = pJob->GetSettings().GetAsciiFormat();
        const TImported imported = Import(*pJob, kDelimited, CString(pHeader) + "\nA;1;2\nB,3,4\n");
        EXPECT_EQ(imported.m_eResult, IE_PARTIAL);
        EXPECT_EQ(imported.m_strObjects, bHeader ? "point A 1 2 0\n" : "point B 4 3 0\n");
        EXPECT_EQ(pJob->GetSettings().GetAsciiFormat() == before, !bHeader);
        if (!bHeader)
            continue;
        // the layout of the file stays for the next one
        EXPECT_EQ(Import(*pJob, kDelimited, "C;5;6").m_strObjects, "point A 1 2 0\npoint C 5 6 0\n");
    }
}

TEST_F(DelimitedTest, HeaderWithoutDataOrWithoutUsableFields)
{
    auto pJob = MakeJob(Plain, kShort);
    EXPECT_EQ(Import(*pJob, kDelimited, "Header>> Delimiter()) FileFormat(PNE) <<\n\nA)1)2\n"),
              (TImported{IE_NOTHING_DONE, "", "3:line.behind-end "}));
    EXPECT_EQ(pJob->GetSettings().GetAsciiFormat().m_cDelimiter, u')');

    pJob = MakeJob(Plain, kShort);
    EXPECT_EQ(Import(*pJob, kDelimited, "Header>> Delimiter(§) FileFormat(name,what,east) <<\nA§1§2\n"),
              (TImported{IE_BAD_CONTENT, "", "1:header.unknown-field 2:layout.empty "}));
}

TEST_F(DelimitedTest, MemoryIsLookedAtOnceInAThousandLines)
{
    struct TRestore {
        ~TRestore() { Platform::SetFreeMemory({}); }
    } restore;
    struct {
        int m_nLines;
        std::uint64_t m_nFree;
        EIEResult m_eResult;
        int m_nObjects;
    } const rows[] = {
        {1000, 0x3FFFFF, IE_OK, 1000},
        {1001, 0x3FFFFF, IE_OUT_OF_MEMORY, 1001},
        {5000, 0x3FFFFF, IE_OUT_OF_MEMORY, 1001},
        {5000, 0x400000, IE_OK, 5000},
    };
    for (const auto& row : rows) {
        Platform::SetFreeMemory([&row] { return row.m_nFree; });
        CString text;
        for (int i = 0; i < row.m_nLines; ++i)
            text += "P" + std::to_string(i) + ",1,2\n";
        const auto pJob = MakeJob(Plain, kShort);
        EXPECT_EQ(Import(*pJob, kDelimited, text).m_eResult, row.m_eResult) << row.m_nLines;
        EXPECT_EQ(pJob->GetNumberOfObjectsInAllDatasets(), row.m_nObjects) << row.m_nLines;
    }
}

/// Codes with attributes of every type, code strings and control codes, on points, a line and a polygon.
void FillRichly(CIEData& job)
{
    using TAttr = CIEAttrDescription;
    const auto* const pRoad = AddCode(job, "ROAD",
                                      {TAttr("width", TAttr::REAL), TAttr("kind", TAttr::TEXT),
                                       TAttr("lanes", TAttr::INT), TAttr("side", TAttr::LIST, {"left", "right"})});
    const auto* const pTree = AddCode(job, "TREE");
    CIEDataset& dataset = *job.AddDataset(std::make_unique<CIEDataset>("Site"));
    GiveCode(AddPoint(dataset, "P1", 1200, -2400.0006, 12.5), pTree);
    auto& road = GiveCode(AddPoint(dataset, "P2", -0.0004, 0.0006, -2), pRoad, {"3.5", "asphalt, new", "2", "left"});
    road.AddCodeString("note");
    road.AddCodeString("a, b");
    road.SetControlCode(0, "c1");
    road.SetControlCode(1, "c2");
    GiveCode(*dataset.GetObjectAt(1), pTree).SetControlCode(0, "c3");
    auto& line = AddLine<CIEPolyLine>(dataset, "L", {MakeStation("L", 0, 0, 1), MakeStation("L", 0.5, 10, 2)});
    GiveCode(line, pRoad, {"4", "", "1", "right"});
    AddLine<CIEPolygon>(dataset, "R",
                        {MakeStation("R", 0, 0, 0), MakeStation("R", 12, 0, 0), MakeStation("R", 12, 24, 0),
                         MakeStation("R", 0, 0, 0)});
}

TEST_F(DelimitedTest, WritesWhatItsRulesSay)
{
    auto pJob = MakeJob(Both, kUsual, u',', true);
    FillRichly(*pJob);
    CIEDataset& dataset = *pJob->GetDatasetAt(0);
    AddPoint<CIEPTLPoint>(dataset, "K", 5, 6, 7).SetPTLParams("P1", "P2", CIEPTLPoint::PointToLine);
    AddPoint(dataset, "name, comma");
    dataset.Add(std::make_unique<CIEArc>())->SetName("left out");
    AddPoint(dataset, "two\r\nlines");
    ExpectGolden("delimited/rich.txt", Export(std::move(pJob), kDelimited));

    pJob = MakeJob(USFeet, "name,east,north,height,geoid,notes,10,code+strings", u';');
    FillRichly(*pJob);
    pJob->GetDatasetAt(0)->GetObjectAt(0)->SetName("größer");
    CIEStation station = MakeStation("N", 12, 1.2, -0.00001);
    station.SetGeoidHeight(-48);
    station.SetNotes("a note");
    pJob->GetDatasetAt(0)->Add(std::make_unique<CIEGPSPosition>(station));
    ExpectGolden("delimited/us_feet.txt", Export(std::move(pJob), kDelimited));

    pJob = MakeJob(DMS | Types | USFeet, "name,north,east,height,code+attributes", u'\t', true);
    ChangeSettings(*pJob, [](TIESettings& settings) {
        settings.m_nNorthDecimals = 4;
        settings.m_nEastDecimals = 2;
        settings.m_nHeightDecimals = 1;
    });
    FillRichly(*pJob);
    pJob->GetDatasetAt(0)->RemoveObjectsIf(
        [](const CIEObject& object) { return object.GetName() != "P2" && object.GetName() != "L"; });
    AddPoint(*pJob->GetDatasetAt(0), "Z", 47.37519, -8.9999999, 408);
    ExpectGolden("delimited/geographic.txt", Export(std::move(pJob), kDelimited));
}

TEST_F(DelimitedTest, EachFieldHasItsDecimalsAndItsShareOfTheCodes)
{
    auto pJob = MakeJob(Plain, "north,east,height,geoid,code");
    ChangeSettings(*pJob, [](TIESettings& settings) {
        settings.m_nNorthDecimals = 1;
        settings.m_nEastDecimals = 2;
        settings.m_nHeightDecimals = 4;
    });
    CIEStation station = MakeStation("P", 1, 2, 3);
    station.SetGeoidHeight(-48.5);
    CIEDataset& dataset = *pJob->AddDataset(std::make_unique<CIEDataset>("Site"));
    CIEObject* const pPoint = dataset.Add(std::make_unique<CIEDesignPoint>(std::move(station)));
    const auto* const pRoad = AddCode(*pJob, "ROAD", {CIEAttrDescription("kind")});
    CIECodeValues& road = GiveCode(*pPoint, pRoad, {"gravel"});
    road.AddCodeString("note");
    road.SetControlCode(0, "c1");
    EXPECT_EQ(Export(std::move(pJob), kDelimited), "1.0,2.00,3.0000,-48.5000,ROAD\r\n");
}

TEST_F(DelimitedTest, ARichJobComesBackTheSameAndNothingIsSaidOfIt)
{
    auto pJob = MakeJob(Both, "name,north,east,height,codes", u',', true);
    ChangeSettings(*pJob, [](TIESettings& settings) { settings.m_nNorthDecimals = settings.m_nEastDecimals = -1; });
    FillRichly(*pJob);
    const CString strBefore = Describe(*pJob);
    const auto pBack = MakeJobLike(*pJob);
    const CString bytes = Export(std::move(pJob), kDelimited);
    EXPECT_THAT(Notes(), IsEmpty());
    SetLayout(*pBack, "name", u'|'); // the header knows better
    EXPECT_EQ(Import(*pBack, kDelimited, bytes), (TImported{IE_OK, strBefore, ""}));
}

struct TTold {
    const char* m_pFields;
    void (*m_pFill)(CIEData& job, CIEDataset& set);
    CStringArray m_Notes;
    char16_t m_cDelimiter = u',';
};

CIEStation At(double dNorth)
{
    return MakeStation("", dNorth, 2, 3);
}

void AddRoadPoint(CIEData& job, CIEDataset& set)
{
    GiveCode(AddPoint(set, "A"), AddCode(job, "ROAD", {CIEAttrDescription("w", CIEAttrDescription::REAL)}), {"1"});
}

void AddCoded(CIEData& job, CIEDataset& set, const CString& name, std::initializer_list<const char*> codes)
{
    AddPoint(set, name);
    for (const char* const pCode : codes)
        GiveCode(*set.GetObjectAt(set.GetNumberOfElements(-1, 2, false, false) - 1), AddCode(job, pCode));
}

// clang-format off
#define FILL []([[maybe_unused]] CIEData & job, [[maybe_unused]] CIEDataset & set)
const TTold kTold[] = {
    // texts that mean something to the reader
    {kUsual, FILL { AddCoded(job, set, "", {}); }, {}},
    {kUsual, FILL { AddCoded(job, set, "A,B", {}); }, {"line.unreadable A,B"}},
    {kUsual, FILL { AddCoded(job, set, "A<PTL>", {}); }, {"line.unreadable A<PTL>"}},
    {kUsual, FILL { AddCoded(job, set, "two\nlines", {}); }, {"object.name two\nlines"}},
    {kUsual, FILL { AddCoded(job, set, "Header>> A", {}); }, {"line.file-start Header>> A"}},
    {kUsual, FILL { AddCoded(job, set, CString("A\0", 2), {}); }, {CString("line.zero-byte A\0", 17)}},
    {kUsual, FILL { AddCoded(job, set, "A", {"A:B"}); }, {"object.codes A"}},
    {kUsual, FILL { AddCoded(job, set, "A", {""}); }, {"object.codes A"}},
    {"name,north,east,height,code", FILL { AddCoded(job, set, "A<REG>", {"T", "U", "V"}); },
     {"object.point-kind A<REG>", "object.name A<REG>", "object.codes A<REG>"}},
    {"name,notes,north,east,height", FILL {
        CIEStation station = At(1);
        station.SetNotes("a b");
        set.Add(std::make_unique<CIEDesignPoint>(station))->SetName("A"); }, {"line.unreadable A"}, u' '},
    // what the layout has no field for
    {"north,east,height", FILL { AddCoded(job, set, "A", {}); }, {"object.name A"}},
    {"north,east,height", FILL { AddCoded(job, set, "", {}), AddCoded(job, set, "", {}); }, {}},
    {"name,north,east", FILL { AddCoded(job, set, "A", {}); }, {"object.height A"}},
    {"name,east,height", FILL { AddCoded(job, set, "A", {}); }, {"object.coordinates A"}},
    {"name,codes", FILL { AddPoint(set, "A", 0, 0, 0); }, {}},
    {"name", FILL { AddPoint(set, "", 0, 0, 0); }, {"line.blank "}},
    {kUsual, AddRoadPoint, {"job.attribute-types "}},
    {"PNEZD", AddRoadPoint, {"object.attributes A"}},
    {"name,north,east,height,code+strings", AddRoadPoint, {"job.attribute-types ", "object.codes A"}},
    {"name,north,east,height", AddRoadPoint, {"object.codes A"}},
    {kUsual, FILL { GiveCode(AddPoint(set, "A"), AddCode(job, "T")).SetControlCode(1, "c"); }, {"object.codes A"}},
    {kUsual, FILL { AddCode(job, "UNUSED"); }, {"job.code UNUSED"}},
    {kUsual, FILL { AddPoint<CIEPTLPoint>(set, "A"); }, {"object.point-kind A"}},
    {kUsual, FILL { AddPoint<CIEPTLPoint>(set, "A").SetPTLParams("P", "Q", 0); }, {"object.point-kind A", "object.codes A"}},
    {"name,north,east,height", FILL { AddPoint<CIEPTLPoint>(set, "A"); }, {"object.point-kind A", "line.unreadable A"}},
    // what the reader joins, or doesn't
    {kUsual, FILL { AddCoded(job, set, "A", {}), AddCoded(job, set, "A", {}); }, {"object.joined A"}},
    {kUsual, FILL { AddCoded(job, set, "L", {}), AddLine<CIEPolyLine>(set, "L", {At(1), At(2)}); }, {"object.joined L"}},
    {kUsual, FILL { AddCoded(job, set, "A", {}), AddPoint<CIEPTLPoint>(set, "A<REG>x").SetPTLParams("P", "Q", 0); },
     {"object.point-kind A<REG>x", "object.joined A<REG>x", "object.joined A", "object.name A<REG>x"}},
    {kUsual, FILL { AddLine<CIEPolyLine>(set, "L", {At(1), At(2), At(1)}); }, {"object.ring L"}},
    {kUsual, FILL { AddLine<CIEPolyLine>(set, "L", {At(1), At(2), At(1.0001)}); }, {"object.ring L"}},
    {kUsual, FILL { AddLine<CIEPolygon>(set, "L", {At(1), At(2), At(3)}); }, {"object.ring L"}},
    {kUsual, FILL { AddLine<CIEPolyLine>(set, "L", {At(1)}); }, {"object.line-as-points L"}},
    {kUsual, FILL { AddLine<CIEPolyLine>(set, "", {At(1), At(2)}); }, {"object.line-as-points "}},
    {kUsual, FILL { AddLine<CIEPolyLine>(set, "L", {}); }, {"object.no-station L"}},
    {"north,east,height", FILL { AddLine<CIEPolyLine>(set, "L", {At(1), At(2)}); },
     {"object.line-as-points L", "object.name L", "object.name L"}},
    {"codes,name,north,east,height", FILL { GiveCode(AddLine<CIEPolyLine>(set, "L<", {At(1), At(2)}), AddCode(job, "T,\t")); },
     {"object.codes L<", "object.codes L<"}},
};
#undef FILL
// clang-format on

TEST_F(DelimitedTest, TellsWhatWontComeBack)
{
    for (const TTold& row : kTold) {
        auto pJob = MakeJob(Plain, row.m_pFields, row.m_cDelimiter);
        row.m_pFill(*pJob, *pJob->AddDataset(std::make_unique<CIEDataset>("Site")));
        const CString bytes = Export(std::move(pJob), kDelimited);
        EXPECT_EQ(Notes(), row.m_Notes) << row.m_pFields << "\n" << bytes;
    }
}

} // namespace
