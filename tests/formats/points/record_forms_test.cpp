// The lists whose records are told as tables: comma lists, five lines a point, fixed columns.

#include "formats/points/points_fixture.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsSupersetOf;

class RecordFormsTest : public CPointsTest {};

/// Names at, below and above each width, numbers on rounding edges, codes with all that they can carry, and objects
/// that the forms pass over.
std::unique_ptr<CIEData> MakeJob(EDIST_UNITS units, TIEJobInfo::ECSType type = TIEJobInfo::Plane)
{
    auto pJob = std::make_unique<CIEData>();
    pJob->GetJobInfo()->SetDistUnits(units);
    pJob->GetJobInfo()->SetCSType(type);
    CIEDataset& dataset = *pJob->AddDataset(std::make_unique<CIEDataset>("Site"));
    const auto giveCode = [&](CIEObject& object, const CString& name, const CString& string) -> CIECodeValues& {
        CIECodeDescription* const pThere = pJob->GetIEDataDictionary()->FindCodeDiscription(name);
        CIECodeValues& code = GiveCode(object, pThere ? pThere : AddCode(*pJob, name));
        if (!string.empty())
            code.AddCodeString(string);
        return code;
    };
    const auto addNoted = [&](CIEStation station, const CString& name, const CString& notes) -> CIEObject& {
        station.SetName(name);
        station.SetNotes(notes);
        return *dataset.Add(std::make_unique<CIEDesignPoint>(station));
    };
    const auto addRelative = [&](const CString& name, int nType, const CString& second) -> CIEPTLPoint& {
        auto& point = AddPoint<CIEPTLPoint>(dataset, name, 1.5, 2.5, 3.5);
        point.SetPTLParams("A", second, nType);
        return point;
    };
    AddPoint(dataset, "1", 1, 2, 3);
    AddLine<CIEPolyLine>(dataset, "L", {MakeStation("L", 1, 2, 3), MakeStation("L", 4, 5, 6)});
    CIECodeValues& tree = giveCode(addNoted({1234.5678, -987.65432, 0}, "PT-45678", "at the gate"), "TREE", "oak");
    tree.SetControlCode(0, "S1");
    tree.SetControlCode(1, "E2");
    giveCode(AddPoint(dataset, "NINE-CHAR", -0.00004, 0.00006, -0.0004), "P.ROAD", "");
    CIECodeValues& control = giveCode(addNoted({5402028.872, 468260.094, 311.15}, "Straße-16-zeichen-x", "äääääääää"),
                                      "CONTROLPOINT", "a string");
    control.SetControlCode(0, "C01234567");
    control.SetControlCode(1, "XYZ");
    CIEStation noHeight(10, 20, 0);
    noHeight.SetHeightUndefined();
    giveCode(addNoted(noHeight, "NoHeight", ""), "K", "");
    dataset.Add(std::make_unique<CIEArc>())->SetName("arc");
    giveCode(addRelative("R0", CIEPTLPoint::Regular, "B"), "K", "s");
    addRelative("R1", CIEPTLPoint::PointToLine, "B");
    giveCode(addRelative("R2", 2, "B;C"), "K", "s");
    return pJob;
}

TEST_F(RecordFormsTest, WritesWhatItsRulesSay)
{
    struct TRow {
        const char* m_pFile;
        EDIST_UNITS m_eUnits;
        TIEJobInfo::ECSType m_eType;
        int m_nUnitNotes; ///< of the form that states no unit
    };
    for (const TRow& row : {TRow{"records/metres.txt", EDIST_UNITS::Meters, TIEJobInfo::Plane, 0},
                            TRow{"records/us_feet.txt", EDIST_UNITS::USSurveyFeet, TIEJobInfo::Plane, 1},
                            TRow{"records/geographic.txt", EDIST_UNITS::USSurveyFeet, TIEJobInfo::Geographic, 1}}) {
        CString bytes;
        for (const int nCode : {7, 8, 11, 12, 13, 36, 37, 47, 49, 50, 51, 57, 60}) {
            bytes += "==== " + std::to_string(nCode) + "\r\n" + Export(MakeJob(row.m_eUnits, row.m_eType), nCode);
            EXPECT_EQ(m_Ledger.GetCount(EIENote::JobGeographic), row.m_eType == TIEJobInfo::Geographic ? 1 : 0)
                << nCode;
            if (nCode == 49) {
                EXPECT_EQ(m_Ledger.GetCount(EIENote::JobUnits), row.m_nUnitNotes);
            }
        }
        ExpectGolden(row.m_pFile, bytes);
    }
    EXPECT_EQ(Export(std::make_unique<CIEData>(), 49), "A,01,Z,\r\nZ,&,\r\n");
    EXPECT_EQ(Export(std::make_unique<CIEData>(), 51), "");
}

TEST_F(RecordFormsTest, TellsWhatWillNotComeBack)
{
    Export(MakeJob(EDIST_UNITS::Meters),
           12); // east first: R0 has its axes in the order of the list, and is read north first
    EXPECT_THAT(Notes(), ElementsAre("object.kind L", "object.attributes PT-45678", "object.notes PT-45678",
                                     "object.codes NINE-CHAR", "object.attributes Straße-16-zeichen-x",
                                     "object.notes Straße-16-zeichen-x", "object.no-height NoHeight", "object.kind arc",
                                     "object.coordinates R0", "object.point-kind R0", "object.kind R2"));
    Export(MakeJob(EDIST_UNITS::Meters), 7);
    EXPECT_THAT(Notes(), IsSupersetOf({"object.name NINE-CHAR", "line.unreadable Straße-16-zeichen-x",
                                       "object.notes PT-45678", "object.point-kind R1"}));
    Export(MakeJob(EDIST_UNITS::Meters), 60);
    EXPECT_THAT(Notes(), IsSupersetOf({"object.height PT-45678", "object.name Straße-16-zeichen-x",
                                       "object.codes Straße-16-zeichen-x", "object.notes Straße-16-zeichen-x"}));

    const auto notesOf = [this](int nCode, const CString& name, double dNorth) {
        auto pJob = std::make_unique<CIEData>();
        AddPoint(*pJob->AddDataset(std::make_unique<CIEDataset>("Site")), name, dNorth);
        Export(std::move(pJob), nCode);
        return Notes();
    };
    EXPECT_THAT(notesOf(36, "P1", 1), ElementsAre());
    EXPECT_THAT(notesOf(36, "P,1", 1),
                ElementsAre("object.name P,1", "object.coordinates P,1", "object.height P,1", "object.codes P,1"));
    EXPECT_THAT(notesOf(8, "P,1", 1), ElementsAre("object.name P,1"));
    EXPECT_THAT(notesOf(13, "12345678", 1), ElementsAre());
    EXPECT_THAT(notesOf(13, "123456789", 1), ElementsAre("object.name 123456789"));
    EXPECT_THAT(notesOf(13, "P ", 1), ElementsAre("object.name P "));
    EXPECT_THAT(notesOf(13, "P", -123456789.125), ElementsAre());
    EXPECT_THAT(notesOf(13, "P", -1234567890.125), ElementsAre("line.unreadable P"));
    EXPECT_THAT(notesOf(7, "P", 123456), ElementsAre("object.notes P"));
    EXPECT_THAT(notesOf(7, "P", 1234567), ElementsAre("line.unreadable P"));

    auto pJob = std::make_unique<CIEData>();
    CIEDataset& dataset = *pJob->AddDataset(std::make_unique<CIEDataset>("Site"));
    AddPoint(dataset, "SAMESTART1", 1, 2, 3);
    AddPoint(dataset, "SAMESTART2", 4, 5, 6);
    Export(std::move(pJob), 7);
    EXPECT_THAT(Notes(), IsSupersetOf({"object.joined SAMESTART1", "object.joined SAMESTART2"}));
}

/// The records of point-to-line points have codes where others have none.
TEST_F(RecordFormsTest, TellsOfCodesWhatTheRecordOfTheObjectHasNot)
{
    const auto notesOf = [this](int nCode, int nCodes, bool bString, bool bRelative) {
        auto pJob = std::make_unique<CIEData>();
        CIEDataset& dataset = *pJob->AddDataset(std::make_unique<CIEDataset>("Site"));
        auto& relative = AddPoint<CIEPTLPoint>(dataset, "R", 1, 2, 3);
        relative.SetPTLParams("A", "B", CIEPTLPoint::PointToLine);
        CIEObject& point = bRelative ? relative : AddPoint(dataset, "P", 1, 2, 3);
        CIECodeValues& code = GiveCode(point, AddCode(*pJob, "K"));
        if (bString)
            code.AddCodeString("s");
        if (nCodes > 1)
            GiveCode(point, AddCode(*pJob, "L"));
        Export(std::move(pJob), nCode);
        return Notes();
    };
    EXPECT_THAT(notesOf(50, 1, false, true), ElementsAre("object.attributes R")) << "its reference reads as a string";
    EXPECT_THAT(notesOf(50, 2, false, true), ElementsAre("object.codes R", "object.attributes R"));
    EXPECT_THAT(notesOf(50, 1, true, true), ElementsAre("object.attributes R", "object.attributes R"));
    EXPECT_THAT(notesOf(50, 1, false, false), ElementsAre("object.codes P"));
    EXPECT_THAT(notesOf(51, 1, true, true), ElementsAre());
}

/// A point without notes has an empty second line.
TEST_F(RecordFormsTest, NoteLinesReadBack)
{
    const auto makeJob = [](const CString& strControl = {}) {
        auto pJob = std::make_unique<CIEData>();
        CIEDataset& dataset = *pJob->AddDataset(std::make_unique<CIEDataset>("Site"));
        const CIECodeDescription* const pCode = AddCode(*pJob, "K");
        for (const char* const pNotes : {"", "one", "", "", "!", "two words", ""}) {
            CIEStation station = MakeStation("P", 1, 2, 3);
            station.SetNotes(pNotes);
            GiveCode(*dataset.Add(std::make_unique<CIEDesignPoint>(station)), pCode).SetControlCode(0, strControl);
        }
        return pJob;
    };
    const CString bytes = Export(makeJob(), 47);
    EXPECT_TRUE(m_Ledger.IsEmpty());
    CIEData back;
    EXPECT_EQ(Import(back, 36, bytes), (TImported{IE_OK, Describe(*makeJob()), ""}));
    Export(makeJob("!2345678"), 47);
    EXPECT_EQ(m_Ledger.GetCount(EIENote::LineUnreadable), 7) << "each reads as a note";
}

struct TCase {
    int m_nCode;
    const char* m_pText;
    const char* m_pObjects; ///< without the last line end
    EIEResult m_eResult = IE_OK;
    const char* m_pNotes = "";
};

// clang-format off
const TCase kCases[] = {
    // comma lists
    {28, "P,1,2,3,ROAD\r\nQ,-4,5.5,,\r\n",         "point P 1 2 3 ROAD()\npoint Q -4 5.5 -"},
    {13, "P,1,2,3,ROAD,s\nQ,1,2\n",                "point P 2 1 3 ROAD()&s\npoint Q 2 1 -"},
    {14, "P,1,2,3,,s\nQ,1,2,3,, ",                 "point P 2 1 3\npoint Q 2 1 3", IE_OK, "1:line.code-string "},
    {29, "P,1,2,3,R,s,A\n",                        "relative P 1 2 3 of s A along R()&s"},
    {29, "P,1,2,3,R,s,A,B,more\n",                 "relative P 1 2 3 of A B along R()&s", IE_OK, "1:line.fields "},
    {28, "P,1,2,3,R,s,A,B, ,,,x\nQ,1,2,3,,s,A,B,, ,\n", "relative P 1 2 3 of A B along R()&s\nrelative Q 1 2 3 of A B along", IE_OK, "1:line.fields 2:line.code-string "},
    {13, "P,1,2,3,,A,B\nQ,1,2,3,,,A,B\n",          "relative P 1 2 3 of A B along\nrelative Q 1 2 3 of A B along"},
    {28, "P,1,2,3\r\n\r\n",                        "point P 1 2 3"},
    {28, "P,1,2,3\r\n\r\nQ,1,2,3\r\n",             "point P 1 2 3", IE_BAD_CONTENT, "2:line.empty "},
    {28, "P,1,2,3\n,1,2,3\nR,1,2,3",               "point P 1 2 3", IE_BAD_CONTENT, "2:line.name "},
    {28, "P,1,x,3\n",                              "", IE_BAD_CONTENT, "1:line.number "},
    {28, "P,1\n",                                  "", IE_BAD_CONTENT, "1:line.number "},
    {28, "P,1,2,3m\n",                             "", IE_BAD_CONTENT, "1:line.number "},
    {28, "",                                       "", IE_NOTHING_DONE},
    {28, "\r\n",                                   "", IE_NOTHING_DONE},
    // the same name doesn't make a line here
    {28, "P,1,2,3\nP,4,5,6\n",                     "point P 1 2 3\npoint P 4 5 6"},
    // five lines
    {10, "P\r\n1\r\n2\r\n3\r\nC\r\nQ\r\n4\r\n5\r\n6\r\n\r\n", "point P 1 2 3 C()\npoint Q 4 5 6"},
    {10, "P\n1\n2\n3",                             "point P 1 2 3"},
    {10, "P,\n1, \n2,,\n3\nC, ,\n",                "point P 1 2 3 C()"},
    {10, "P,x\n1,x\n2,5\n3\nC,x\nQ\n1\n2,5\n3\n\n",   "point P 1 2 3 C()\npoint Q 1 2 3", IE_OK,
         "1:line.fields 2:line.number-cut 5:line.fields 8:line.number-cut "},
    {10, "P\n1\n2\n3\nC\x81\nQ\n1\n2\n3\nD\nR\x81,\n1\n2\n3\n\x81\n", "point P 1 2 3 C\uFFFD()\npoint Q 1 2 3 D()\npoint R\uFFFD 1 2 3 \uFFFD()", IE_OK,
         "5:line.bad-characters 11:line.bad-characters 15:line.bad-characters "},
    {10, "P\n1\n2\n3\n\nQ\n4\n",                   "point P 1 2 3", IE_OK, "7:line.cut "},
    {10, "P\n1\nx\n3\n\n",                         "", IE_BAD_CONTENT, "3:line.number "},
    {10, "P\n1\n2\n3\n\n\n1\n",                    "point P 1 2 3", IE_BAD_CONTENT, "6:line.name "},
    // columns with code and name
    {15, "       0   oak      TREE     P-1         1.000         2.000         3.000     0 0", "point P-1 1 2 3 TREE()&oak"},
    {15, "       0                 P-äöü-7         1.000        -2.000         3.000", "point P-äöü-7 1 -2 3"},
    {15, "       0   oak             P             1.000         2.000         3.000", "point P 1 2 3", IE_OK, "1:line.code-string "},
    {15, "       0                     P           1.000         2.000", "", IE_BAD_CONTENT, "1:line.number "},
    {15, "       0                                 1.000         2.000         3.000", "", IE_BAD_CONTENT, "1:line.name "},
    // the frame
    {38, "A,01,Z,\r\nG,P,1,2,3,X,\r\nG,Q,1,2\r\nG,R,1,2,h\r\nZ,&,\r\n", "point P 1 2 3\npoint Q 1 2 0\npoint R 1 2 0", IE_OK, "4:line.number "},
    {38, "A,01,Z,\nH,P,1,2,3,X,\nG,Q,1,2,3,,,\nG,R,1,2,3,K,A,B\nZ,&,\n", "point P 1 2 3\npoint Q 1 2 3\npoint R 1 2 3", IE_OK,
         "2:line.tag 4:line.fields "},
    {38, "A,01,Z,\nG,P,1,2,3,X,\n",                "point P 1 2 3", IE_OK, "2:file.no-end "},
    {38, "A,01,Z,\nZ,&,\n",                        ""},
    {38, "A,01,Z,\n",                              "", IE_NOTHING_DONE, "1:file.no-end "},
    {38, "G,P,1,2,3,X,\n",                         "", IE_NOTHING_DONE, "1:file.no-frame "},
    {38, "A,01,Z,\nG,P,1,2,3,X,\nG,Q,1\n",         "point P 1 2 3", IE_BAD_CONTENT, "3:line.field-count "},
    {38, "A,01,Z,\nG,P,1,2,3,X,\nZ,&,\nG,Q,1,2,3\n", "point P 1 2 3", IE_OK, "4:line.behind-end "},
    // columns with note lines
    {36, "      S1     oak    TREE       P         1.000         2.000         3.000\r\n!at the gate\r\n", "point P 1 2 3 'at the gate' TREE()&oak@S1"},
    {36, "                               P         1.000         2.000         3.000", "point P 1 2 3 ()"},
    {36, "                       A       P         1.000         2.000         3.000\n"
         "                       B                 4.000         5.000         6.000\n!\n", "point P 1 2 3 A()\npoint B 4 5 6 B()"},
    {36, "!lost\n                       A       P         1.000         2.000         3.000\n", "point P 1 2 3 A()", IE_OK, "1:line.note "},
    {36, "                       A       P         1.000         2.000         3.000\nrubbish\n!n\n", "point P 1 2 3 A()", IE_BAD_CONTENT, "2:line.number "},
    {36, "                      ?\x81       P         1.000         2.000         3.000\n!n\x81\n"
         "                       A       Q         1.000         2.000         3.000\n"
         "                      ?\x81       R         1.000         2.000         3.000\n"
         "                       A       S         1.000         2.000         3.000\n",
         "point P 1 2 3 'n\uFFFD' ?\uFFFD()\npoint Q 1 2 3 A()\npoint R 1 2 3 ?\uFFFD()\npoint S 1 2 3 A()", IE_OK,
         "1:line.bad-characters 2:line.bad-characters 4:line.bad-characters "},
    {36, "!lost\x81\n                       A       P         1.000         2.000         3.000\n", "point P 1 2 3 A()", IE_OK, "1:line.note "},
    // columns with two control codes
    {45, "     S1 oak      P    TREE2       1.000       2.000           3.000", "point P 1 2 3 TRE()&oak@S1@E2"},
    {45, "     S1 oak      P    TREE2       1.000       2.000           3.000\r\n     S1 oak              E2       1.000       2.000           3.000", "point P 1 2 3 TRE()&oak@S1@E2", IE_BAD_CONTENT, "2:line.name "},
    // rows marked 05, among others
    {47, " 01 head\r\n 05 P          TREE            1.000       2.000    3.000   note\r\n\r\n 05 Q                          1.000       2.000\r\n 07\r\n",
         "point P 1 2 3 'note' TREE()\npoint Q 1 2 999999.9", IE_OK, "4:line.height "},
    {47, " 05            T              x           2.000    y\n", "point T 0 2 0 T()", IE_OK, "1:line.number 1:line.number "},
    {47, " 01 head\n",                             "", IE_OK, "1:file.no-record "},
    // rows marked 001
    {7,  "P        001 1.000000     2.000000     3.000000        P\r\nQ        001 x            2.000000     3.000000        Q\r\n", "point P 1 2 3", IE_PARTIAL, "2:line.number "},
    {7,  "P        001 1.000000     2.000000     3.000000         note", "point P 1 2 3 'note'"},
    {7,  "P        001 1.000000     2.000000     3.000000\nP        001 4.000000     2.000000     3.000000\n\nR\n", "line P 1 2 3 | 4 2 3", IE_OK, "4:line.behind-end "},
    {7,  "P        001 1.0\n",                     "", IE_BAD_CONTENT, "1:line.number "},
    // blank lines between them, and notes with blanks at their ends
    {36, "                       A       P         1.000         2.000         3.000\n!  two words \n\n\n                       A       Q         1.000         2.000         3.000\n\n\n", "point P 1 2 3 'two words' A()\npoint Q 1 2 3 A()"},
    {36, "\n\n", ""},
    {36, "                       A       P         1.000         2.000         3.000\nrubbish", "point P 1 2 3 A()", IE_BAD_CONTENT, "2:line.number "},
    // what is passed over in a line is told
    {47, " 05 \x01          T             1.000       2.000    3.000", "point T 1 2 3 T()", IE_OK, "1:line.name "},
    {28, "P,1,2,3,,,\n", "relative P 1 2 3 of   along", IE_OK, "1:line.references "},
    // fields without a blank between them
    {15, "12345678abcdefghIJKLMNOPqrstuvwx-100000000.125-200000000.125-300000000.125     0 0", "point qrstuvwx -100000000.125 -200000000.125 -300000000.125 IJKLMNOP()&abcdefgh"},
    {36, "12345678abcdefghIJKLMNOPqrstuvwx-100000000.125-200000000.125-300000000.125", "point qrstuvwx -100000000.125 -200000000.125 -300000000.125 IJKLMNOP()&abcdefgh@12345678"},
    {45, "....c00strinameof7....codc1.-100000.125.-200000.125........-300.125.", "point nameof7 -100000.125 -200000.125 -300.125 cod()&stri@c00@c1"},
    {47, " 05 nameoften1.codeof-8.-1000000.125.-200000.125.-300.125...noteof7.", "point nameoften1 -1000000.125 -200000.125 -300.125 'noteof7' codeof-8()"},
    // numbers that reach into a gap between fields
    {45,  "    S1     P          T     1.5         2.5                3.5\n", "point P 1.5 2.5 3.5 T()@S1"},
    {45,  "    S1     P          T     12345.500014 2.5               3.5\n", "point P 12345.50001 2.5 3.5 T()@S1", IE_OK, "1:line.number-cut "},
    {45,  "    S1     P          T     12345.500010 2.5               3.5\n", "point P 12345.50001 2.5 3.5 T()@S1"},
    {45,  "    S1     P          T     1.5        -12345.50001        3.5\n", "point P 1.5 12345.50001 3.5 T()@S1", IE_OK, "1:line.number-cut "},
    {45,  "    S1     P          T     1.5        +12345.50001        3.5\n", "point P 1.5 12345.50001 3.5 T()@S1"},
    {45,  "    S1     P          T     1.5         2.5              -12345.1234\n", "point P 1.5 2.5 2345.123 T()@S1", IE_OK, "1:line.number-cut "},
    {45,  "    S1     P          T     1.5         2.5              7  345.67  9\n", "point P 1.5 2.5 345.67 T()@S1"},
    {45,  "           ä                1.5         2.5                345.67891\n", "point ä 1.5 2.5 345.6789 ()", IE_OK, "1:line.number-cut "},
    {47,  " 05 P                   1.5          2345678.9012345.67891\n", "point P 1.5 2345678.901 345.6789", IE_OK, "1:line.number-cut "},
    {47,  " 05 P                   1.5          2.5         345.67891  seen\n", "point P 1.5 2.5 345.6789 'seen'", IE_OK, "1:line.number-cut "},
    {47,  " 05 P                   1.5          2345678.9x12 9.5\n", "point P 1.5 0 9.5", IE_OK, "1:line.number "},
    {7,   "P        001 123456.000000 12345.000001 3.000000\n", "point P 123456 12345 3", IE_OK, "1:line.number-cut "},
    {7,   "P        001 123456.000000 12345.000000 3.000000\n", "point P 123456 12345 3"},
    {36,  "                        P       1.5           2.5           123456789.12345\n", "point P 1.5 2.5 123456789.1234 ()", IE_OK, "1:line.number-cut "},
    {7,  "nameof-8.....-10000000.125-2000000.125.-3000000.125.....notes", "point nameof-8 -10000000.125 -2000000.125 -3000000.125 'notes'"},
};
// clang-format on

TEST_F(RecordFormsTest, Reads)
{
    for (const TCase& row : kCases) {
        SCOPED_TRACE(std::to_string(row.m_nCode) + " " + row.m_pText);
        CIEData job;
        const CString strObjects = *row.m_pObjects ? CString(row.m_pObjects) + "\n" : CString();
        EXPECT_EQ(Import(job, row.m_nCode, row.m_pText), (TImported{row.m_eResult, strObjects, row.m_pNotes}));
        EXPECT_EQ(job.GetNumberOfDatasets(), 1);
    }
}

TEST_F(RecordFormsTest, LongLinesCostWhatIsLookedAt)
{
    CIEData job;
    const CString strNote(200, 'n');
    const TImported cut = Import(
        job, 36, "                               P         1.000         2.000         3.000\n!" + strNote + "\n");
    EXPECT_EQ(cut.m_strObjects, "point P 1 2 3 '" + CString(127, 'n') + "' ()\n");
    EXPECT_EQ(cut.m_strNotes, "2:line.note ");
    CIEData commas;
    EXPECT_EQ(Import(commas, 28, "P,1,2,3," + CString(3'000'000, ',') + "\n"),
              (TImported{IE_OK, "relative P 1 2 3 of   along\n", "1:line.references "}));
}

TEST_F(RecordFormsTest, ReadsLengthsInTheUnitsOfTheJob)
{
    const auto read = [this](int nCode, TIEJobInfo::ECSType type, const char* pText) {
        CIEData job;
        job.GetJobInfo()->SetDistUnits(EDIST_UNITS::InternationalFeet);
        job.GetJobInfo()->SetCSType(type);
        const TImported imported = Import(job, nCode, pText);
        return imported.m_strObjects + imported.m_strNotes;
    };
    constexpr const char* kRow7 = "P        001 10           20           30\n";
    EXPECT_EQ(read(28, TIEJobInfo::Plane, "P,10,20,30\n"), "point P 3.048 6.096 9.144\n");
    EXPECT_EQ(read(28, TIEJobInfo::Geographic, "P,10,20,30\n"), "point P 3.048 6.096 9.144\n0:job.units ");
    EXPECT_EQ(read(7, TIEJobInfo::Plane, kRow7), "point P 3.048 6.096 9.144\n");
    EXPECT_EQ(read(7, TIEJobInfo::Geographic, kRow7), "point P 10 20 9.144\n");
    EXPECT_EQ(read(7, TIEJobInfo::Geographic, "P        001 1O           20           30\n"),
              "point P 0 20 9.144\n1:line.number ");
    EXPECT_EQ(read(38, TIEJobInfo::Plane, "A,01,Z,\nG,P,10,20,30\nZ,&,"), "point P 10 20 30\n");
    EXPECT_EQ(read(47, TIEJobInfo::Plane, " 05 P                             10          20\n"),
              "point P 3.048 6.096 999999.9\n1:line.height ");
}

TEST_F(RecordFormsTest, TheCheckIsOverTheBytesOfTheFile)
{
    const auto write = [this](const char* pEncoding) {
        auto pJob = std::make_unique<CIEData>();
        ChangeSettings(*pJob, [&](TIESettings& settings) { settings.m_strWriteEncoding = pEncoding; });
        AddPoint(*pJob->AddDataset(std::make_unique<CIEDataset>("Site")), "ü", 1, 2, 3);
        return Export(std::move(pJob), 49);
    };
    // the bytes without those of the name sum to 1011
    EXPECT_EQ(write("UTF-8"), "A,01,Z,\r\nG,\xC3\xBC,1.000,2.000,3.000,R,\r\nZ,&,\r\n");
    EXPECT_EQ(write("CP1252"), "A,01,Z,\r\nG,\xFC,1.000,2.000,3.000,O,\r\nZ,&,\r\n");
}

} // namespace
