// Job documents: what is read can be written, and that reads as the same job.

#include "job_checks.h"
#include "support.h"

#include "alidade/jobfile/job_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    const std::string_view text(reinterpret_cast<const char*>(pData), nSize);
    CIEData job;
    TIEJobFileError error;
    const EIEResult eResult = CIEJobFile::FromText(job, text, &error);
    Require(eResult == IE_OK || eResult == IE_BAD_CONTENT, "a text is a document or it isn't");
    if (eResult != IE_OK) {
        Require(!error.m_strPlace.empty() || !error.m_strReason.empty(), "a refusal has its place or its reason");
        Require(job.GetNumberOfDatasets() == 0 && job.GetIEDataDictionary()->GetSize() == 0,
                "a document that is refused leaves the job as it was");
        return 0;
    }
    CheckJob(job);

    const CString written = CIEJobFile::ToText(job);
    CIEData again;
    Require(CIEJobFile::FromText(again, written, &error) == IE_OK, "a written document can be read");
    CheckJob(again);
    CheckSameObjects(job, again);
    RequireEqual(CIEJobFile::ToText(again), written, "a job that was read is written the same");
    return 0;
}
