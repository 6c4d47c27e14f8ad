// Walks through a job and writes its document.
#pragma once

#include "jobfile/job_context.h"

/// False if the sink didn't take all of it. What the document can't hold is told to the job's observer under
/// `strFileName`.
bool WriteJobDocument(const CIEData& job, IIEJsonSink& sink, const CString& strFileName);
