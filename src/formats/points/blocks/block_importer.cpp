#include "formats/points/blocks/block_importer.h"

#include "alidade/vellumlib/utils.h"
#include "formats/points/blocks/block_reader.h"
#include "frame/block_writer.h"
#include "frame/line_joiner.h"

#include <algorithm>
#include <deque>

namespace Blocks {

/// Text on its way from blocks to records. Taking a record costs what it is long.
class CPending {
public:
    explicit CPending(EDialect eDialect) : m_eDialect(eDialect) {}

    void Add(std::string_view text, std::int64_t nLine)
    {
        if (text.empty())
            return;
        m_Lines.push_back({m_nTaken + m_strText.size(), nLine});
        m_strText += text;
    }

    /// Takes the next record. False while its end isn't there; `bLast` ends it with the text. The view lives until text
    /// is added.
    bool Take(std::string_view& record, bool bLast)
    {
        Drop(m_nGiven);
        m_nGiven = 0;
        const std::string_view marker = MarkerOf(m_eDialect);
        const std::size_t nStart = GetText().find(marker);
        if (nStart != 0) {
            // the end of the text may be the start of a marker
            const std::size_t nKept = bLast ? 0 : std::min(marker.size() - 1, GetText().size());
            const std::size_t nDropped = std::min(nStart, GetText().size() - nKept);
            NoteAhead(GetText().substr(0, nDropped));
            Drop(nDropped);
            m_nSearched = 0;
            if (nStart == std::string_view::npos)
                return false;
        }
        const std::size_t nEnd = FindRecordEnd(GetText(), m_eDialect, m_nSearched);
        if (nEnd == std::string_view::npos && !bLast) {
            m_nSearched = GetText().size() - (marker.size() - 1);
            return IsEndless(record);
        }
        record = GetText().substr(0, nEnd);
        m_nGiven = record.size();
        m_nSearched = 0;
        if (nEnd == std::string_view::npos)
            record = IEUtils::TrimRight(record);
        return true;
    }

    /// Line of text that stands ahead of the first record, 0 if there is none.
    [[nodiscard]] std::int64_t GetLineAhead() const { return m_nLineAhead; }
    /// Line of the file in which the record begins that was taken last.
    [[nodiscard]] std::int64_t GetLine() const { return m_Lines.empty() ? 0 : m_Lines.front().m_nLine; }

private:
    struct TLine {
        std::uint64_t m_nStart; // in all text so far
        std::int64_t m_nLine;
    };

    [[nodiscard]] std::string_view GetText() const { return std::string_view(m_strText).substr(m_nFirst); }

    void NoteAhead(std::string_view text)
    {
        const bool bFiller = std::all_of(text.begin(), text.end(),
                                         [](char c) { return static_cast<unsigned char>(c) <= ' ' || c == '_'; });
        if (!bFiller && m_nLineAhead == 0)
            m_nLineAhead = GetLine();
    }

    void Drop(std::size_t nCount)
    {
        m_nFirst += nCount;
        while (m_Lines.size() > 1 && m_Lines[1].m_nStart <= m_nTaken + m_nFirst)
            m_Lines.pop_front();
        if (m_nFirst <= m_strText.size() / 2)
            return;
        m_nTaken += m_nFirst;
        m_strText.erase(0, m_nFirst);
        m_nFirst = 0;
    }

    /// A record that is too long already is given away; blanks at its end are no part of it.
    bool IsEndless(std::string_view& record)
    {
        constexpr std::size_t kMostBytes = std::size_t{4} * kLongestRecord;
        if (GetText().size() <= 2 * kMostBytes)
            return false;
        const std::size_t nLength = IEUtils::TrimRight(GetText()).size();
        record = GetText().substr(0, nLength);
        if (nLength > kMostBytes)
            return true;
        m_strText.resize(m_nFirst + nLength + kMostBytes, ' ');
        m_nSearched = nLength;
        while (m_Lines.size() > 1 && m_Lines.back().m_nStart >= m_nTaken + m_strText.size())
            m_Lines.pop_back();
        return false;
    }

    EDialect m_eDialect;
    CString m_strText;
    std::size_t m_nFirst = 0;    // what stands ahead of it has been taken
    std::size_t m_nGiven = 0;    // length of the record that was given away
    std::size_t m_nSearched = 0; // no end of the record begins ahead of it
    std::uint64_t m_nTaken = 0;  // characters that m_strText no longer holds
    std::int64_t m_nLineAhead = 0;
    std::deque<TLine> m_Lines; // of the text from m_nFirst on
};

} // namespace Blocks

using namespace Blocks;

EIEResult CIEBlockStreamImporter::Import()
{
    CReader reader(m_eDialect == EDialect::Narrow);
    if (!reader.Open(m_strFileName, m_CodePage))
        return IE_CANNOT_OPEN_FILE;
    CIEDataset* const pDataset = m_pData->AddDataset(std::make_unique<CIEDataset>("Import dataset"));
    const EIEResult eResult = ReadRecords(reader, *pDataset);
    if (reader.HasFailed())
        Note(TIENote::Refused, EIENote::FileReadFailed, reader.GetLineNumber() + 1, {},
             "the rest of the file can't be read");
    NoteProgress(reader);
    return eResult;
}

EIEResult CIEBlockStreamImporter::ReadRecords(CReader& reader, CIEDataset& dataset)
{
    constexpr std::int64_t kRecordsBetweenReports = 1000;
    CIELineJoiner joiner(dataset);
    CPending pending(m_eDialect);
    CString text;
    bool bMore = true;
    std::int64_t nReported = 0;
    while (bMore && !m_bRefused && !CIEData::m_bStopProcess) {
        bMore = reader.Read(text) && !text.empty();
        if (bMore)
            NoteBlock(reader, text);
        pending.Add(text, reader.GetLineNumber());
        while (TakeRecord(pending, false, joiner)) {
        }
        if (m_nRecords - nReported >= kRecordsBetweenReports) {
            nReported = m_nRecords;
            NoteProgress(reader);
        }
    }
    if (!CIEData::m_bStopProcess && !m_bRefused) {
        TakeRecord(pending, true, joiner);
        if (pending.GetLineAhead() > 0)
            Note(TIENote::LeftOut, EIENote::BlockNoRecord, pending.GetLineAhead(), {},
                 "what stands ahead of the first \"" + CString(MarkerOf(m_eDialect)) + "\" isn't read");
        NoteEnd(reader);
        if (!m_bRefused)
            joiner.Close();
    }
    return m_bRefused ? IE_BAD_CONTENT : IE_OK;
}

/// False if there is no record to be taken, or it is refused.
bool CIEBlockStreamImporter::TakeRecord(CPending& pending, bool bLast, CIELineJoiner& joiner)
{
    std::string_view bytes;
    if (!pending.Take(bytes, bLast))
        return false;
    ++m_nRecords;
    const bool bObserved = m_pData->GetObserver() != nullptr;
    CString strScratch;
    const std::string_view text = Decode(bytes, m_CodePage, strScratch);
    TRecord record;
    m_bRefused = !Parse(text, m_eDialect, record, bObserved);
    if (bObserved && text.find("\uFFFD") != std::string_view::npos)
        record.m_Losses.insert(
            record.m_Losses.begin(),
            {EIENote::RecordBadCharacters, "bytes without a meaning in " + m_CodePage.GetName() + " became U+FFFD"});
    NoteRecord(record, pending.GetLine(), !m_bRefused);
    if (m_bRefused)
        return false;
    if (!joiner.Add(MakePoint(record)))
        Note(TIENote::Changed, EIENote::RecordCodes, pending.GetLine(), record.m_strName,
             "this station joined a line, which keeps the codes of its first station");
    return true;
}

std::unique_ptr<CIEObject> CIEBlockStreamImporter::MakePoint(const TRecord& record)
{
    CIEStation station(record.m_dNorth, record.m_dEast, record.m_dHeight);
    station.SetName(record.m_strName);
    auto pPoint = std::make_unique<CIEDesignPoint>(std::move(station));
    for (const CString& strCode : record.m_Codes)
        pPoint->AddCode(CIECodeValues(m_pData->TakeCode(strCode)));
    return pPoint;
}

void CIEBlockStreamImporter::NoteRecord(const TRecord& record, std::int64_t nLine, bool bTaken) const
{
    for (const TLoss& loss : record.m_Losses) {
        const bool bReason = !bTaken && &loss == &record.m_Losses.back();
        Note(bReason ? TIENote::Refused : TIENote::Changed, loss.m_eCode, nLine, record.m_strName, loss.m_strReason);
    }
}

void CIEBlockStreamImporter::NoteBlock(const CReader& reader, std::string_view text) const
{
    if (reader.WasCut())
        Note(TIENote::LeftOut, EIENote::BlockTooLong, reader.GetLineNumber(), {},
             "it is longer than a block; the rest of it isn't read");
    if (reader.IsForeign() && !text.empty())
        Note(TIENote::Changed, EIENote::BlockNoFrame, reader.GetLineNumber(), {},
             "it stands in no frame, though others do, and was read as a part of the text");
}

/// Tells of what stands behind the end of the data.
void CIEBlockStreamImporter::NoteEnd(CReader& reader) const
{
    if (!m_pData->GetObserver())
        return;
    CString text;
    while (reader.Read(text)) {
        if (IEUtils::Trim(text).empty())
            continue;
        Note(TIENote::LeftOut, EIENote::BlockBehindEnd, reader.GetLineNumber(), {},
             "an empty block or line ended the data ahead of it; nothing from here on was read");
        return;
    }
    if (reader.WasUnfinished())
        Note(TIENote::LeftOut, EIENote::BlockUnfinished, reader.GetLineNumber() + 1, {},
             "the file ends within it, and it isn't read");
}

void CIEBlockStreamImporter::NoteProgress(const CReader& reader) const
{
    if (IIETransferObserver* const pObserver = m_pData->GetObserver())
        pObserver->OnProgress(static_cast<std::int64_t>(reader.GetPosition()),
                              static_cast<std::int64_t>(reader.GetLength()));
}
