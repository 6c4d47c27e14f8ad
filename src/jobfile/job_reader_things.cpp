// What the walk through a document has gathered goes into the job.
#include "jobfile/job_parts.h"
#include "jobfile/job_reader.h"

// ---- the whole document

bool CIEJobReader::CheckMark()
{
    const auto itMark = m_Sections.find(JobParts::kMarkKey);
    CString strMark;
    if (itMark == m_Sections.end())
        return m_In.FailAt(CString(), "A job document has \"alidade\": \"job\" among its keys.");
    const CIEJsonValue mark(itMark->second);
    if (!m_In.Read(mark, strMark))
        return false;
    if (strMark != JobParts::kMark)
        return m_In.Fail(mark, "This is no job document; one says \"job\" here.");
    const auto itVersion = m_Sections.find(JobParts::kVersionKey);
    int nVersion = JobParts::kVersion;
    if (itVersion == m_Sections.end())
        return true;
    const CIEJsonValue version(itVersion->second);
    if (!m_In.Read(version, nVersion))
        return false;
    return nVersion == JobParts::kVersion ||
           m_In.Fail(version, "The only version of job documents that can be read is 1.");
}

bool CIEJobReader::ReadSections()
{
    for (const JobParts::TSection& section : JobParts::Sections()) {
        const auto it = m_Sections.find(section.m_pKey);
        if (it != m_Sections.end() && !section.m_pRead(m_In, CIEJsonValue(it->second)))
            return false;
    }
    return true;
}

bool CIEJobReader::ReadCurrentDataset()
{
    CIEData& job = m_In.GetJob();
    const auto it = m_Sections.find(JobParts::kCurrentKey);
    int nCurrent = 0;
    if (it != m_Sections.end()) {
        const CIEJsonValue current(it->second);
        if (!m_In.Read(current, nCurrent))
            return false;
        if (!job.GetDatasetAt(nCurrent))
            return m_In.Fail(current, "The job has no dataset of this number; the first is 0.");
    }
    job.SetCurDataset(nCurrent);
    return true;
}

// ---- gathered things

bool CIEJobReader::Deliver()
{
    m_bGathering = false;
    const TLevel& level = m_Levels.back();
    const CIEJsonValue value(m_Tree);
    if (level.m_eLevel == Document) {
        m_Sections.emplace(level.m_strKey, std::move(m_Tree));
        m_Tree = CIEJsonTree();
        return true;
    }
    CString name;
    CIEStation position;
    switch (level.m_eLevel) {
    case Dataset:
        if (level.m_strKey == JobParts::kHistoryKey)
            return JobParts::ReadJobHistory(m_In, value, *m_pDataset);
        if (level.m_strKey == JobParts::kHeaderKey)
            return JobParts::ReadHeader(m_In, value, *m_pDataset);
        if (!m_In.Read(value, name))
            return false;
        m_pDataset->SetName(std::move(name));
        return true;
    case Surface:
        if (!m_In.Read(value, name))
            return false;
        m_pSurface->SetName(std::move(name));
        return true;
    case ObjectList:
        return m_pDataset->Add(JobParts::ReadObject(m_In, value)) != nullptr;
    case AlignmentList:
        return DeliverAlignment(value);
    case PositionList:
        if (!JobParts::ReadStation(m_In, value, position))
            return false;
        m_pSurface->AddPosition(std::move(position));
        return true;
    case TriangleList:
        return DeliverTriangle(value);
    default:
        return false;
    }
}

bool CIEJobReader::DeliverTriangle(const CIEJsonValue& value)
{
    CIETriangle triangle;
    int nCorner = 0;
    if (!m_In.WantArray(value))
        return false;
    if (value.GetSize() != CIETriangle::kCorners)
        return m_In.Fail(value, "A triangle is the numbers of three positions.");
    for (const CIEJsonValue corner : value) {
        int nPosition = 0;
        if (!m_In.Read(corner, nPosition))
            return false;
        triangle.SetPosition(nCorner++, nPosition);
    }
    m_pSurface->AddTriangle(triangle);
    return true;
}

/// Positions may stand behind the triangles, so this waits for the end of the surface.
bool CIEJobReader::CheckTriangles()
{
    const int nPositions = m_pSurface->GetNumberOfPositions();
    for (int i = 0; const CIETriangle* const pTriangle = m_pSurface->GetTriangleAt(i); ++i) {
        for (int k = 0; k < CIETriangle::kCorners; ++k) {
            const int nPosition = pTriangle->GetPosition(k);
            if (nPosition >= -1 && nPosition < nPositions) // -1 is a corner that was never set
                continue;
            return m_In.FailAt(FramePlace() + "/triangles/" + std::to_string(i) + "/" + std::to_string(k),
                               "The surface has no position of this number; the first is 0.");
        }
    }
    return true;
}

bool CIEJobReader::DeliverAlignment(const CIEJsonValue& value)
{
    int nStartPoint = -1;
    CIEAlignment* const pAlignment = m_pDataset->Add(JobParts::ReadAlignment(m_In, value, nStartPoint));
    if (!pAlignment)
        return false;
    if (nStartPoint != -1)
        m_StartPoints.push_back({pAlignment, nStartPoint, FramePlace() + value.GetPlace() + "/startPoint"});
    return true;
}

bool CIEJobReader::SetStartPoints()
{
    for (const TStartPoint& start : m_StartPoints) {
        auto* const pPoint = dynamic_cast<CIEDesignPoint*>(m_pDataset->GetObjectAt(start.m_nObject));
        if (!pPoint)
            return m_In.FailAt(start.m_strPlace, "The dataset has no point of this number; the first object is 0.");
        start.m_pAlignment->SetStartPoint(pPoint);
    }
    m_StartPoints.clear();
    return true;
}
