#include "jobfile/job_writer.h"

#include "jobfile/job_parts.h"

#include <unordered_map>

namespace {

class CIEJobWriter {
public:
    CIEJobWriter(const CIEData& job, IIEJsonSink& sink, const CString& strFileName)
        : m_Job(job), m_Out(job, sink, strFileName)
    {
    }

    bool Write();

private:
    void WriteDataset(const CIEDataset& dataset);
    void WriteObjects(const CIEDataset& dataset);
    void WriteSurfaces(const CIEDataset& dataset);
    void WriteAlignments(const CIEDataset& dataset);

    const CIEData& m_Job;
    CIEJobWriting m_Out;
    /// Start points of the dataset's alignments and their places among the objects that were written. One that lies
    /// elsewhere is never looked into.
    std::unordered_map<const CIEObject*, int> m_StartPoints;
};

bool CIEJobWriter::Write()
{
    CIEJsonText& text = m_Out.m_Text;
    text.BeginObject(CIEJsonText::Lines);
    text.Key(JobParts::kMarkKey);
    text.Text(JobParts::kMark);
    text.Key(JobParts::kVersionKey);
    text.Whole(JobParts::kVersion);
    for (const JobParts::TSection& section : JobParts::Sections()) {
        section.m_pWrite(m_Out, section.m_pKey);
        m_Out.NoteMendedIn(section.m_pKey);
    }
    if (m_Job.GetCurDatasetID() > 0) {
        text.Key(JobParts::kCurrentKey);
        text.Whole(m_Job.GetCurDatasetID());
    }
    if (m_Job.GetNumberOfDatasets() > 0) {
        text.Key(JobParts::kDatasetsKey);
        text.BeginArray(CIEJsonText::Lines);
        for (int i = 0; i < m_Job.GetNumberOfDatasets(); ++i)
            WriteDataset(*m_Job.GetDatasetAt(i));
        text.EndArray();
    }
    text.EndObject();
    return text.Finish();
}

void CIEJobWriter::WriteDataset(const CIEDataset& dataset)
{
    m_Out.m_Text.BeginObject(CIEJsonText::Lines);
    m_Out.m_Text.Key("name");
    m_Out.m_Text.Text(dataset.GetName());
    JobParts::WriteHeader(m_Out, JobParts::kHeaderKey, dataset);
    m_Out.NoteMendedIn(dataset.GetName());
    m_StartPoints.clear();
    for (int i = 0; const CIEAlignment* const pAlignment = dataset.GetAlignmentAt(i); ++i) {
        if (pAlignment->GetStartPoint())
            m_StartPoints.emplace(pAlignment->GetStartPoint(), -1);
    }
    WriteObjects(dataset);
    WriteSurfaces(dataset);
    WriteAlignments(dataset);
    JobParts::WriteJobHistory(m_Out, JobParts::kHistoryKey, dataset);
    m_Out.NoteMendedIn(dataset.GetName());
    m_Out.m_Text.EndObject();
}

void CIEJobWriter::WriteObjects(const CIEDataset& dataset)
{
    if (!dataset.GetObjectAt(0))
        return;
    m_Out.m_Text.Key("objects");
    m_Out.m_Text.BeginArray(CIEJsonText::Lines);
    int nWritten = 0;
    for (int i = 0; const CIEObject* const pObject = dataset.GetObjectAt(i); ++i) {
        if (!JobParts::WriteObject(m_Out, *pObject)) {
            m_Out.Note(TIENote::LeftOut, EIENote::JobObjectKind, pObject->GetName(),
                       "Job documents have no word for objects of this kind.");
            continue;
        }
        m_Out.NoteMendedIn(pObject->GetName());
        const auto it = m_StartPoints.empty() ? m_StartPoints.end() : m_StartPoints.find(pObject);
        if (it != m_StartPoints.end())
            it->second = nWritten;
        ++nWritten;
    }
    m_Out.m_Text.EndArray();
}

void CIEJobWriter::WriteSurfaces(const CIEDataset& dataset)
{
    CIEJsonText& text = m_Out.m_Text;
    if (dataset.GetNumberOfSurfaces() == 0)
        return;
    text.Key("surfaces");
    text.BeginArray(CIEJsonText::Lines);
    for (int i = 0; const CIESurface* const pSurface = dataset.GetSurfaceAt(i); ++i) {
        text.BeginObject(CIEJsonText::Lines);
        text.Key("name");
        text.Text(pSurface->GetName());
        text.Key("positions");
        text.BeginArray(CIEJsonText::Lines);
        for (int j = 0; const CIEStation* const pPosition = pSurface->GetPositionAt(j); ++j)
            JobParts::WriteStation(m_Out, *pPosition);
        text.EndArray();
        std::int64_t nLost = 0;
        text.Key("triangles");
        text.BeginArray(CIEJsonText::Lines);
        for (int j = 0; const CIETriangle* const pTriangle = pSurface->GetTriangleAt(j); ++j) {
            text.BeginArray();
            for (int k = 0; k < CIETriangle::kCorners; ++k) {
                const int nPosition = pTriangle->GetPosition(k);
                const bool bThere = nPosition >= -1 && nPosition < pSurface->GetNumberOfPositions();
                text.Whole(bThere ? nPosition : -1);
                nLost += !bThere;
            }
            text.EndArray();
        }
        text.EndArray();
        text.EndObject();
        m_Out.NoteMendedIn(pSurface->GetName());
        if (nLost > 0)
            m_Out.NoteMended(pSurface->GetName(), "Corners of triangles name no position and are written as missing.",
                             nLost);
    }
    text.EndArray();
}

void CIEJobWriter::WriteAlignments(const CIEDataset& dataset)
{
    if (dataset.GetNumberOfAlignments() == 0)
        return;
    m_Out.m_Text.Key("alignments");
    m_Out.m_Text.BeginArray(CIEJsonText::Lines);
    for (int i = 0; const CIEAlignment* const pAlignment = dataset.GetAlignmentAt(i); ++i) {
        const auto it = m_StartPoints.find(pAlignment->GetStartPoint());
        const int nStartPoint = it == m_StartPoints.end() ? -1 : it->second;
        if (pAlignment->GetStartPoint() && nStartPoint < 0)
            m_Out.Note(TIENote::LeftOut, EIENote::JobStartPoint, pAlignment->GetName(),
                       "The start point isn't in the alignment's dataset.");
        JobParts::WriteAlignment(m_Out, *pAlignment, nStartPoint);
        m_Out.NoteMendedIn(pAlignment->GetName());
    }
    m_Out.m_Text.EndArray();
}

} // namespace

bool WriteJobDocument(const CIEData& job, IIEJsonSink& sink, const CString& strFileName)
{
    return CIEJobWriter(job, sink, strFileName).Write();
}
