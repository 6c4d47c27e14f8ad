#include "jobfile/job_reader.h"

#include "jobfile/job_parts.h"

#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <limits>

namespace {

/// More than any part of a document needs.
constexpr std::size_t kDeepest = 32;

/// "line 3, column 7" of a byte; columns count characters.
CString PlaceInText(std::string_view text, std::size_t nOffset)
{
    const std::string_view before = text.substr(0, std::min(nOffset, text.size()));
    const auto nLine = std::count(before.begin(), before.end(), '\n') + 1;
    const std::size_t nLineStart = before.rfind('\n') + 1; // npos + 1 is 0
    const auto isFirstByte = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; };
    const auto nColumn =
        std::count_if(before.begin() + static_cast<std::ptrdiff_t>(nLineStart), before.end(), isFirstByte) + 1;
    return "line " + std::to_string(nLine) + ", column " + std::to_string(nColumn);
}

/// What the parser says, without its numbers and the bytes it shows.
CString ReasonOf(const CString& strMessage)
{
    constexpr std::string_view kBefore = " - ";
    const std::size_t nFrom = strMessage.find(kBefore);
    if (nFrom == CString::npos)
        return "The text isn't JSON here.";
    const CString strDetail =
        strMessage.substr(nFrom + kBefore.size(), strMessage.find("; last read") - nFrom - kBefore.size());
    return IEUtils::IsValidUtf8(strDetail) ? "The text isn't JSON here: " + strDetail + "."
                                           : "The text isn't JSON here.";
}

} // namespace

/// What a value within the frame is: a level of its own or, with the same level again, a thing that is gathered whole.
struct CIEJobReader::TRow {
    ELevel m_eWithin;
    const char* m_pKey; ///< null for the elements of a list
    ELevel m_eLevel;
    CIEJsonTree::EType m_eType; ///< of a level: Array or Object; unused for a thing

    [[nodiscard]] bool IsThing() const { return m_eLevel == m_eWithin; }
};

const CIEJobReader::TRow* CIEJobReader::FindRow() const
{
    constexpr auto kAny = CIEJsonTree::Null;
    static constexpr TRow kRows[] = {
        {Document, JobParts::kMarkKey, Document, kAny},
        {Document, JobParts::kVersionKey, Document, kAny},
        {Document, JobParts::kCurrentKey, Document, kAny},
        {Document, "datasets", DatasetList, CIEJsonTree::Array},
        {DatasetList, nullptr, Dataset, CIEJsonTree::Object},
        {Dataset, "name", Dataset, kAny},
        {Dataset, JobParts::kHistoryKey, Dataset, kAny},
        {Dataset, JobParts::kHeaderKey, Dataset, kAny},
        {Dataset, "objects", ObjectList, CIEJsonTree::Array},
        {ObjectList, nullptr, ObjectList, kAny},
        {Dataset, "surfaces", SurfaceList, CIEJsonTree::Array},
        {SurfaceList, nullptr, Surface, CIEJsonTree::Object},
        {Surface, "name", Surface, kAny},
        {Surface, "positions", PositionList, CIEJsonTree::Array},
        {PositionList, nullptr, PositionList, kAny},
        {Surface, "triangles", TriangleList, CIEJsonTree::Array},
        {TriangleList, nullptr, TriangleList, kAny},
        {Dataset, "alignments", AlignmentList, CIEJsonTree::Array},
        {AlignmentList, nullptr, AlignmentList, kAny},
    };
    static constexpr TRow kSection{Document, nullptr, Document, kAny};

    const TLevel& level = m_Levels.back();
    for (const TRow& row : kRows) {
        if (row.m_eWithin == level.m_eLevel && (!row.m_pKey || level.m_strKey == row.m_pKey))
            return &row;
    }
    if (level.m_eLevel == Document) {
        for (const JobParts::TSection& section : JobParts::Sections()) {
            if (level.m_strKey == section.m_pKey)
                return &kSection;
        }
    }
    return nullptr;
}

CString CIEJobReader::FramePlace() const
{
    CString strPlace;
    for (std::size_t i = 1; i < m_Levels.size(); ++i)
        AppendJsonStep(strPlace, m_Levels[i].m_strStep);
    return strPlace;
}

// ---- the two passes

bool CIEJobReader::Read()
{
    return RunPass(Sections) && CheckMark() && ReadSections() && RunPass(Datasets) && ReadCurrentDataset();
}

bool CIEJobReader::RunPass(EPass ePass)
{
    m_ePass = ePass;
    m_Levels.clear();
    m_nDepth = 0;
    return nlohmann::json::sax_parse(m_Text.begin(), m_Text.end(), this);
}

// ---- values as they come

/// Finds out what the value that begins here is. `bTaken` is false if it is a level of the frame or is left out in this
/// pass.
bool CIEJobReader::BeginValue(CIEJsonTree::EType eType, bool& bTaken)
{
    if (CIEData::m_bStopProcess)
        return m_In.FailAt(FramePlace(), "Reading was stopped here.");
    const bool bContainer = eType == CIEJsonTree::Array || eType == CIEJsonTree::Object;
    if (bContainer && ++m_nDepth > kDeepest)
        return m_In.FailAt(FramePlace() + (m_bGathering ? m_Tree.GetOpenPlace() : CString()),
                           "Values are nested too deep here.");
    bTaken = m_bGathering;
    if (m_bGathering)
        return true;
    if (m_nSkipped > 0) {
        m_nSkipped += bContainer ? 1 : 0;
        return true;
    }
    if (m_Levels.empty()) {
        if (eType != CIEJsonTree::Object)
            return m_In.FailAt(CString(), "A job document is an object in { }.");
        m_Levels.push_back({Document, CString(), 0, CString(), {}});
        return true;
    }

    TLevel& level = m_Levels.back();
    const TRow& row = *FindRow(); // keys were checked as they came, and every list has elements
    const bool bSections = level.m_eLevel == Document && row.IsThing();
    if (level.m_eLevel == Document && bSections != (m_ePass == Sections)) {
        m_nSkipped = bContainer ? 1 : 0;
        return true;
    }
    if (!row.IsThing())
        return EnterLevel(row, eType);
    m_Tree.Clear();
    if (row.m_pKey || level.m_eLevel == Document)
        m_Tree.SetRootKey(level.m_strKey);
    else
        m_Tree.SetRootIndex(level.m_nNext++);
    m_bGathering = true;
    bTaken = true;
    return true;
}

bool CIEJobReader::EnterLevel(const TRow& row, CIEJsonTree::EType eType)
{
    TLevel& within = m_Levels.back();
    CString strStep = row.m_pKey ? within.m_strKey : std::to_string(within.m_nNext++);
    if (eType != row.m_eType) {
        CString strPlace = FramePlace();
        AppendJsonStep(strPlace, strStep);
        return m_In.FailAt(strPlace, row.m_eType == CIEJsonTree::Array ? "A list in [ ] is wanted here."
                                                                       : "An object in { } is wanted here.");
    }
    m_Levels.push_back({row.m_eLevel, std::move(strStep), 0, CString(), {}});
    if (row.m_eLevel == Dataset)
        m_pDataset = m_In.GetJob().AddDataset(std::make_unique<CIEDataset>(CString()));
    else if (row.m_eLevel == Surface)
        m_pSurface = m_pDataset->Add(std::make_unique<CIESurface>());
    m_In.SetPrefix(FramePlace());
    return true;
}

bool CIEJobReader::LeaveLevel()
{
    const ELevel eLevel = m_Levels.back().m_eLevel;
    if (eLevel == Surface && !CheckTriangles())
        return false;
    if (eLevel == Dataset && !SetStartPoints())
        return false;
    m_Levels.pop_back();
    m_In.SetPrefix(FramePlace());
    return true;
}

template <class TAdd>
bool CIEJobReader::Scalar(CIEJsonTree::EType eType, TAdd add)
{
    bool bTaken = false;
    if (!BeginValue(eType, bTaken))
        return false;
    if (!bTaken)
        return true;
    add();
    return !m_Tree.IsComplete() || Deliver();
}

bool CIEJobReader::EndContainer()
{
    --m_nDepth;
    if (m_bGathering) {
        std::string_view twice;
        if (!m_Tree.Close(twice)) {
            CString strPlace = FramePlace() + m_Tree.GetOpenPlace();
            AppendJsonStep(strPlace, twice);
            return m_In.FailAt(strPlace, "This key stands here twice.");
        }
        return !m_Tree.IsComplete() || Deliver();
    }
    if (m_nSkipped > 0) {
        --m_nSkipped;
        return true;
    }
    return LeaveLevel();
}

// ---- events

bool CIEJobReader::null()
{
    return Scalar(CIEJsonTree::Null, [&] { m_Tree.AddNull(); });
}

bool CIEJobReader::boolean(bool bValue)
{
    return Scalar(CIEJsonTree::Flag, [&] { m_Tree.AddFlag(bValue); });
}

bool CIEJobReader::number_integer(std::int64_t nValue)
{
    return Scalar(CIEJsonTree::Number, [&] { m_Tree.AddWhole(nValue); });
}

bool CIEJobReader::number_unsigned(std::uint64_t nValue)
{
    if (nValue <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
        return number_integer(static_cast<std::int64_t>(nValue));
    return number_float(static_cast<double>(nValue), std::string());
}

bool CIEJobReader::number_float(double dValue, const std::string& /*digits*/)
{
    return Scalar(CIEJsonTree::Number, [&] { m_Tree.AddNumber(dValue); });
}

bool CIEJobReader::string(std::string& text)
{
    return Scalar(CIEJsonTree::Text, [&] { m_Tree.AddText(text); });
}

bool CIEJobReader::binary(std::vector<std::uint8_t>& /*bytes*/)
{
    return false; // JSON text has none
}

bool CIEJobReader::start_object(std::size_t /*nElements*/)
{
    bool bTaken = false;
    if (!BeginValue(CIEJsonTree::Object, bTaken))
        return false;
    if (bTaken)
        m_Tree.Open(CIEJsonTree::Object);
    return true;
}

bool CIEJobReader::start_array(std::size_t /*nElements*/)
{
    bool bTaken = false;
    if (!BeginValue(CIEJsonTree::Array, bTaken))
        return false;
    if (bTaken)
        m_Tree.Open(CIEJsonTree::Array);
    return true;
}

bool CIEJobReader::key(std::string& text)
{
    if (m_bGathering) {
        m_Tree.AddKey(text);
        return true;
    }
    if (m_nSkipped > 0)
        return true;
    TLevel& level = m_Levels.back();
    level.m_strKey = text;
    CString strPlace = FramePlace();
    AppendJsonStep(strPlace, text);
    if (!FindRow())
        return m_In.FailAt(strPlace, "There is no such key here.");
    if (std::find(level.m_Seen.begin(), level.m_Seen.end(), text) != level.m_Seen.end())
        return m_In.FailAt(strPlace, "This key stands here twice.");
    level.m_Seen.push_back(text);
    return true;
}

bool CIEJobReader::end_object()
{
    return EndContainer();
}

bool CIEJobReader::end_array()
{
    return EndContainer();
}

bool CIEJobReader::parse_error(std::size_t nPosition, const std::string& /*token*/,
                               const nlohmann::json::exception& error)
{
    constexpr int kNumberTooLarge = 406;
    const CString strPlace = PlaceInText(m_Text, nPosition > 0 ? nPosition - 1 : 0);
    if (error.id == kNumberTooLarge)
        return m_In.FailAt(strPlace, "This number is too large.");
    return m_In.FailAt(strPlace, ReasonOf(error.what()));
}
