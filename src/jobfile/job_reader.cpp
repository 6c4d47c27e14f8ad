#include "jobfile/job_reader.h"

#include "jobfile/job_parts.h"

#include <algorithm>

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
        {Document, JobParts::kDatasetsKey, DatasetList, CIEJsonTree::Array},
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

// ---- the walks

bool CIEJobReader::Read(EWalks eWalks)
{
    if (eWalks == Two)
        return RunPass(Sections) && CheckMark() && ReadSections() && RunPass(Datasets) && ReadCurrentDataset();
    return RunPass(Everything) && (m_bDatasets || (CheckMark() && ReadSections())) && ReadCurrentDataset();
}

bool CIEJobReader::RunPass(EPass ePass)
{
    m_ePass = ePass;
    m_Levels.clear();
    CIEJsonScanner scanner(m_Text);
    for (;;) {
        bool bTaken = false;
        switch (scanner.Next()) {
        case CIEJsonScanner::OpenObject:
            bTaken = TakeValue(scanner, CIEJsonTree::Object);
            break;
        case CIEJsonScanner::OpenArray:
            bTaken = TakeValue(scanner, CIEJsonTree::Array);
            break;
        case CIEJsonScanner::Text:
            bTaken = TakeValue(scanner, CIEJsonTree::Text);
            break;
        case CIEJsonScanner::Number:
            bTaken = TakeValue(scanner, CIEJsonTree::Number);
            break;
        case CIEJsonScanner::Flag:
            bTaken = TakeValue(scanner, CIEJsonTree::Flag);
            break;
        case CIEJsonScanner::Null:
            bTaken = TakeValue(scanner, CIEJsonTree::Null);
            break;
        case CIEJsonScanner::CloseObject:
        case CIEJsonScanner::CloseArray:
            bTaken = EndContainer();
            break;
        case CIEJsonScanner::Key:
            bTaken = TakeKey(scanner);
            break;
        case CIEJsonScanner::End:
            return true;
        case CIEJsonScanner::Broken:
            return FailBroken(scanner);
        }
        if (!bTaken)
            return false;
    }
}

bool CIEJobReader::FailBroken(const CIEJsonScanner& scanner)
{
    if (scanner.IsTooDeep())
        return m_In.FailAt(FramePlace() + (m_bGathering ? m_Tree.GetOpenPlace() : CString()), scanner.GetReason());
    m_bFinal = true;
    return m_In.FailAt(scanner.GetPlace(), scanner.GetReason());
}

// ---- values as they come

bool CIEJobReader::TakeValue(const CIEJsonScanner& scanner, CIEJsonTree::EType eType)
{
    bool bTaken = false;
    if (!BeginValue(eType, bTaken))
        return false;
    if (!bTaken)
        return true;
    switch (eType) {
    case CIEJsonTree::Object:
    case CIEJsonTree::Array:
        m_Tree.Open(eType);
        return true;
    case CIEJsonTree::Text:
        m_Tree.AddText(scanner);
        break;
    case CIEJsonTree::Number:
        m_Tree.AddNumber(scanner);
        break;
    case CIEJsonTree::Flag:
        m_Tree.AddFlag(scanner.GetFlag());
        break;
    case CIEJsonTree::Null:
        m_Tree.AddNull();
        break;
    }
    return !m_Tree.IsComplete() || Deliver();
}

/// Finds out what the value that begins here is. `bTaken` is false if it is a level of the frame or is left out in this
/// pass.
bool CIEJobReader::BeginValue(CIEJsonTree::EType eType, bool& bTaken)
{
    if (CIEData::m_bStopProcess)
        return m_In.FailAt(FramePlace(), "Reading was stopped here.");
    const bool bContainer = eType == CIEJsonTree::Array || eType == CIEJsonTree::Object;
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
    if (level.m_eLevel == Document && m_ePass != Everything && row.IsThing() != (m_ePass == Sections)) {
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

bool CIEJobReader::EndContainer()
{
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

bool CIEJobReader::TakeKey(const CIEJsonScanner& scanner)
{
    if (m_bGathering) {
        m_Tree.AddKey(scanner);
        return true;
    }
    if (m_nSkipped > 0)
        return true;
    TLevel& level = m_Levels.back();
    level.m_strKey = scanner.GetText();
    CString strPlace = FramePlace();
    AppendJsonStep(strPlace, level.m_strKey);
    if (!FindRow())
        return m_In.FailAt(strPlace, "There is no such key here.");
    if (std::find(level.m_Seen.begin(), level.m_Seen.end(), level.m_strKey) != level.m_Seen.end())
        return m_In.FailAt(strPlace, "This key stands here twice.");
    level.m_Seen.push_back(level.m_strKey);
    if (level.m_eLevel != Document || m_ePass != Everything)
        return true;
    if (m_bDatasets)
        return level.m_strKey == JobParts::kCurrentKey ||
               m_In.FailAt(strPlace, "This must be read ahead of the datasets.");
    m_bDatasets = level.m_strKey == JobParts::kDatasetsKey;
    return !m_bDatasets || (CheckMark() && ReadSections());
}
