// Drawings that are cut, that lie, that ask for too much, and runs that are stopped.
#include "drawing.h"

#include "alidade/formats/dxf/import/dxf_reader.h"
#include "alidade/platform/system.h"

namespace {

using Drawing::Make;
using Drawing::ToBinary;
using Drawing::ToText;

class HostileDrawingsTest : public Drawing::CDrawingTest {};

const CString kBlock = "0 BLOCK|8 0|2 TREE|70 0|10 0|20 0|30 0|0 POINT|10 1|0 LINE|11 1|0 ENDBLK";
const CString kSmall =
    Make("0 POINT|8 A|10 1|20 2|0 INSERT|2 TREE|10 5|0 ATTRIB|1 OAK|2 CODENAME|0 SEQEND|"
         "0 POLYLINE|70 1|0 VERTEX|10 1|0 VERTEX|10 2|0 SEQEND|0 LWPOLYLINE|70 1|10 1|20 2|10 3|20 4|"
         "0 3DFACE|10 1|11 2|22 3|0 ARC|40 2|0 TEXT|1 x",
         kBlock, "0 TABLE|2 LAYER|0 LAYER|2 A|70 0|62 1|0 ENDTAB", "9 $ACADVER|1 AC1015");

TEST_F(HostileDrawingsTest, CutAnywhere)
{
    for (const CString& bytes : {ToText(kSmall), ToText(kSmall, "\r"), ToBinary(kSmall)}) {
        CIEData whole;
        ASSERT_EQ(Import(whole, bytes), IE_OK);
        const int nObjects = whole.GetNumberOfObjectsInAllDatasets();
        ASSERT_EQ(nObjects, 8);
        int nMost = 0;
        for (std::size_t nCut = 0; nCut < bytes.size(); ++nCut) {
            CIEData job;
            const EIEResult eResult = Import(job, bytes.substr(0, nCut));
            ASSERT_TRUE(eResult == IE_OK || eResult == IE_BAD_CONTENT) << nCut;
            ASSERT_EQ(job.GetNumberOfDatasets(), 1) << nCut;
            const int nRead = job.GetNumberOfObjectsInAllDatasets();
            ASSERT_GE(nRead + 2, nMost) << nCut << ": a reference waits for its attributes";
            nMost = std::max(nMost, nRead);
        }
        EXPECT_EQ(nMost, nObjects);
    }
}

TEST_F(HostileDrawingsTest, EveryByteMayBeAnother)
{
    for (const CString& bytes : {ToText(kSmall), ToBinary(kSmall)}) {
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            for (const char c : {'\0', '\n', '-', '9', '\xFF'}) {
                CString changed = bytes;
                changed[i] = c;
                CIEData job;
                ChangeSettings(job, [](TIESettings& settings) { settings.m_nMostBlockCopies = 100; });
                const EIEResult eResult = Import(job, changed);
                // without its end a block holds the reference to itself
                ASSERT_TRUE(eResult == IE_OK || eResult == IE_BAD_CONTENT || eResult == IE_OUT_OF_MEMORY) << i;
            }
        }
    }
}

/// Drawings hold texts of any length; the groups behind them are read as ever.
TEST_F(HostileDrawingsTest, ValuesThatAreTooLong)
{
    for (const std::size_t nLength : {CDXFReader::kLongestLine + 1, 5'000'000UL}) {
        const CString strLong(nLength, 'x');
        EXPECT_EQ(
            Read(ToText(Make("0 MTEXT|1 " + strLong + "|0 POINT|8 " + strLong + "|10 5|40" + strLong + " 3|20 1"))),
            "point  1 5 0\n");
        EXPECT_EQ(m_Ledger.GetCount(EIENote::DrawingLongValue), 1) << "those of what is left out don't count";
        EXPECT_EQ(Read(Drawing::ToBinary(Make("0 MTEXT|1 " + strLong + "|0 POINT|8 " + strLong + "|10 5|20 1"))),
                  "point  1 5 0\n");
        EXPECT_EQ(m_Ledger.GetCount(EIENote::DrawingLongValue), 1);
    }
}

/// Ten blocks, each with ten references to the one ahead of it.
CString MakeNest(int nDeep, int nReferences)
{
    CString blocks = "0 BLOCK|2 B0|10 0|20 0|30 0|0 POINT|10 1|0 ENDBLK";
    for (int i = 1; i <= nDeep; ++i) {
        blocks += "|0 BLOCK|2 B" + std::to_string(i) + "|10 0|20 0|30 0";
        for (int j = 0; j < nReferences; ++j)
            blocks += "|0 INSERT|2 B" + std::to_string(i - 1);
        blocks += "|0 ENDBLK";
    }
    return Make("0 INSERT|2 B" + std::to_string(nDeep) + "|0 POINT", blocks);
}

TEST_F(HostileDrawingsTest, CopiesHaveALimit)
{
    struct {
        const char* m_pWhat;
        CString m_strDrawing;
        int m_nLimit;
        EIEResult m_eResult;
        int m_nObjects;
    } const rows[] = {
        {"a nest that fits", MakeNest(3, 4), 148, IE_OK, 1 + 4 + 16 + 64 + 64 + 1},
        {"and doesn't", MakeNest(3, 4), 147, IE_OUT_OF_MEMORY, 1 + 4 + 16 + 64 + 63},
        {"one of ten by ten", MakeNest(10, 10), 5000, IE_OUT_OF_MEMORY, 5001},
        {"a block with a reference to itself",
         Make("0 POINT", "0 BLOCK|2 A|10 0|20 0|30 0|0 POINT|0 INSERT|2 A|10 1|0 ENDBLK"), 100, IE_OUT_OF_MEMORY, 101},
        {"one that is empty", Make("0 POINT", "0 BLOCK|2 A|10 0|20 0|30 0|0 INSERT|2 A|0 POINT|0 ENDBLK"), 100, IE_OK,
         2},
        {"long lines count by their stations",
         Make("0 INSERT|2 A|0 INSERT|2 A",
              "0 BLOCK|2 A|0 LWPOLYLINE|10 0|20 0|20 0|20 0|20 0|20 0|20 0|20 0|20 0|0 ENDBLK"),
         5, IE_OUT_OF_MEMORY, 2},
    };
    for (const auto& row : rows) {
        CIEData job;
        ChangeSettings(job, [&](TIESettings& settings) { settings.m_nMostBlockCopies = row.m_nLimit; });
        EXPECT_EQ(Import(job, ToText(row.m_strDrawing)), row.m_eResult) << row.m_pWhat;
        EXPECT_EQ(job.GetNumberOfObjectsInAllDatasets(), row.m_nObjects) << row.m_pWhat;
        EXPECT_EQ(m_Ledger.GetCount(EIENote::DrawingTooManyCopies), row.m_eResult == IE_OK ? 0 : 1) << row.m_pWhat;
    }
}

/// Attribute 999 of a code makes 999 empty values in each copy.
TEST_F(HostileDrawingsTest, ValuesOfAttributesCountAsCopies)
{
    CString first = "0 INSERT|2 A";
    for (int i = 0; i < 1100; ++i)
        first += "|0 ATTRIB|2 A" + std::to_string(i) + ":T:C|1 1";
    CString rest;
    for (int i = 0; i < 20; ++i)
        rest += "|0 INSERT|2 A|0 ATTRIB|2 A999:T:C|1 x|0 SEQEND";
    CIEData job;
    ChangeSettings(job, [](TIESettings& settings) { settings.m_nMostBlockCopies = 1'500; });
    EXPECT_EQ(Import(job, ToText(Make(first + rest, "0 BLOCK|2 A|0 POINT|0 ENDBLK"))), IE_OUT_OF_MEMORY);
    EXPECT_EQ(m_Ledger.GetCount(EIENote::DrawingAttributes), 100);
    EXPECT_LT(job.GetNumberOfObjectsInAllDatasets(), 10);

    // as many as a drawing of assets has take no more than they are
    CString assets = "0 POINT";
    for (int i = 0; i < 300; ++i) {
        assets += "|0 INSERT|2 A";
        for (int k = 0; k < 30; ++k)
            assets += "|0 ATTRIB|2 A" + std::to_string(k) + ":T:C|1 " + std::to_string(i);
        assets += "|0 SEQEND";
    }
    CIEData many;
    ChangeSettings(many, [](TIESettings& settings) { settings.m_nMostBlockCopies = 400; });
    EXPECT_EQ(Import(many, ToText(Make(assets, "0 BLOCK|2 A|0 POINT|0 ENDBLK"))), IE_OK);

    // long ones more, on the object and on the copies of one that has them
    const CString strText = "|0 ATTRIB|2 CODESTRING:T|1 " + CString(2000, 'x');
    const CString blocks =
        "0 BLOCK|2 A|0 POINT|0 POINT|0 ENDBLK|0 BLOCK|2 B|0 INSERT|2 A" + strText + "|0 SEQEND|0 ENDBLK";
    for (const CString& strEntity : {"|0 INSERT|2 A" + strText + "|0 SEQEND", CString("|0 INSERT|2 B")}) {
        CString entities = "0 POINT";
        for (int i = 0; i < 100; ++i)
            entities += strEntity;
        CIEData texts;
        ChangeSettings(texts, [](TIESettings& settings) { settings.m_nMostBlockCopies = 400; });
        EXPECT_EQ(Import(texts, ToText(Make(entities, blocks))), IE_OUT_OF_MEMORY);
        EXPECT_GT(texts.GetNumberOfObjectsInAllDatasets(), 30);
    }
}

/// Each of the references has a tag of its own, which is one more attribute of the drawing's code: empty values stand
/// ahead of it.
TEST_F(HostileDrawingsTest, EmptyValuesAreBoundedByTheSizeOfTheDrawing)
{
    CString references = "0 POINT";
    for (int i = 0; i < 4000; ++i)
        references += "|0 INSERT|2 A|0 ATTRIB|2 T" + std::to_string(i) + "|1 X|0 SEQEND";
    CIEData job;
    EXPECT_EQ(Import(job, ToText(Make(references, "0 BLOCK|2 A|0 POINT|0 ENDBLK"))), IE_OK);
    EXPECT_EQ(job.GetNumberOfObjectsInAllDatasets(), 4002);
    EXPECT_GT(m_Ledger.GetCount(EIENote::DrawingAttributes), 2000);
    EXPECT_LT(job.GetIEDataDictionary()->GetCodeDescriptionAt(0)->GetSize(), 1500);
}

TEST_F(HostileDrawingsTest, LittleMemoryLimitsCopies)
{
    Platform::SetFreeMemory([] { return std::uint64_t{8} << 20; });
    CIEData job;
    EXPECT_EQ(Import(job, ToText(MakeNest(10, 10))), IE_OUT_OF_MEMORY);
    Platform::SetFreeMemory({});
    EXPECT_LT(job.GetNumberOfObjectsInAllDatasets(), 20'000);
    ASSERT_EQ(m_Ledger.GetCount(EIENote::DrawingTooManyCopies), 1);
    EXPECT_NE(m_Ledger.GetNotes()[0].m_strReason.find("there is memory for"), CString::npos);
}

TEST_F(HostileDrawingsTest, LongNamesOfBlocks)
{
    const CString strName = CString(254, 'N') + "\u00C4" + CString(1000, 'N');
    EXPECT_EQ(Read(ToText(Make("0 INSERT|2 " + strName, "0 BLOCK|2 " + strName + "|10 0|20 0|30 0|0 POINT|0 ENDBLK"))),
              "*point " + CString(254, 'N') + " 0 0 0\npoint " + CString(254, 'N') + " 0 0 0\n");
    EXPECT_EQ(m_Ledger.GetCount(EIENote::DrawingLongName), 2);
}

TEST_F(HostileDrawingsTest, ManyOfAKind)
{
    constexpr int kMany = 100'000;
    CString tables = "0 TABLE|2 LAYER", blocks, entities = "0 POINT";
    for (int i = 0; i < kMany; ++i) {
        const CString number = std::to_string(i);
        tables += "|0 LAYER|2 L" + number;
        blocks += (i > 0 ? "|0 BLOCK|2 B" : "0 BLOCK|2 B") + number + "|0 POINT|0 ENDBLK";
        entities += "|0 KIND" + number + "|0 INSERT|2 B" + number + "|8 L" + number;
    }
    CIEData job;
    ASSERT_EQ(Import(job, ToText(Make(entities, blocks, tables))), IE_OK);
    EXPECT_EQ(job.GetIEDrawDictionary()->GetNumberOfLayers(), kMany);
    EXPECT_EQ(job.GetNumberOfObjectsInAllDatasets(), 2 * kMany + 1);
    EXPECT_EQ(Drawing::TellObject(*job.GetDatasetAt(0)->GetObjectAt(2 * kMany)), "point B99999 0 0 0 on L99999");
    EXPECT_LT(m_Ledger.GetNotes().size(), 300U) << "kinds of entities beyond the first few hundred are told as one";
}

/// The host hears of progress every thousand groups. Remarks ahead of the drawing put the n-th group there.
TEST_F(HostileDrawingsTest, StopsAtEveryGroup)
{
    struct CStopper : IIETransferObserver {
        void OnProgress(std::int64_t, std::int64_t) override { CIEData::m_bStopProcess = true; }
        void OnNote(const TIENote&) override {}
    } stopper;
    CIEData whole;
    const CString strWhole = Read(whole, ToText(kSmall));
    const int nGroups = static_cast<int>(std::count(kSmall.begin(), kSmall.end(), '|')) + 1;
    const CString strFile = m_Folder / "stopped.dxf";
    std::size_t nLast = 0;
    for (int nGroup = 0; nGroup < nGroups; ++nGroup) {
        CString remarks;
        for (int i = nGroup; i < 1000; ++i)
            remarks += "999\r\nremark\r\n";
        WriteFile(strFile, remarks + ToText(kSmall));
        CIEData job;
        job.SetObserver(&stopper);
        CIEData::m_bStopProcess = false;
        const EIEResult eResult = ImportInTheSameThread(&job, strFile, Drawing::kImportCode);
        EXPECT_EQ(eResult, nGroup < 1 ? IE_BAD_CONTENT : IE_OK) << nGroup;
        const CString strRead = Drawing::TellJob(job);
        EXPECT_GE(strRead.size(), nLast) << nGroup;
        nLast = strRead.size();
    }
    EXPECT_GT(nLast, strWhole.size() / 2);
    CIEData::m_bStopProcess = true;
    CIEData job;
    EXPECT_EQ(ImportInTheSameThread(&job, strFile, Drawing::kImportCode), IE_BAD_CONTENT) << "nothing was read";
}

TEST_F(HostileDrawingsTest, LittleMemoryEndsTheRunWithinASection)
{
    CString entities = "0 POINT";
    for (int i = 0; i < 3000; ++i)
        entities += "|0 POINT";
    Platform::SetFreeMemory([nAsked = 0]() mutable { return ++nAsked < 4 ? std::uint64_t{1} << 40 : 4096; });
    CIEData job;
    EXPECT_EQ(Import(job, ToText(Make(entities))), IE_OUT_OF_MEMORY);
    Platform::SetFreeMemory({});
    EXPECT_GT(job.GetNumberOfObjectsInAllDatasets(), 2900);
}

} // namespace
