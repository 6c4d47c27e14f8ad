// A whole job as one JSON document; docs/job-document.md tells what stands in it.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/data.h"

#include <string_view>

/// Where a job document went wrong, and how.
struct TIEJobFileError {
    CString
        m_strPlace; ///< JSON pointer as /datasets/0/objects/12/north, or "line 3, column 7" where the text isn't JSON
    CString m_strReason; ///< one sentence
};

/// Reads and writes job documents (*.job.json). Holds nothing; any thread.
class ALIDADE_API CIEJobFile {
public:
    /// Puts the document's job into the place of the job's content. The job's observer, message box, window and list of
    /// created files stay. Unless the result is IE_OK the job is as it was. IE_CANNOT_OPEN_FILE, also for a file that
    /// can't be read to its end; IE_BAD_CONTENT, with the place in `pError` if that isn't null; IE_OUT_OF_MEMORY;
    /// IE_STOPPED after a stop.
    [[nodiscard]] static EIEResult Read(CIEData& job, const CString& strFileName, TIEJobFileError* pError = nullptr);
    /// The same from the document's text.
    [[nodiscard]] static EIEResult FromText(CIEData& job, std::string_view text, TIEJobFileError* pError = nullptr);

    /// Writes the job. IE_OK, or IE_CANNOT_OPEN_FILE if the file can't be made or not all of it reached the disk; a
    /// plain file of that name is then as it was. IE_OUT_OF_MEMORY. IE_STOPPED, with the same. The name isn't added to
    /// the job's created files. What the document can't hold is told to the job's observer.
    [[nodiscard]] static EIEResult Write(const CIEData& job, const CString& strFileName);
    /// The document as text, without a file. std::bad_alloc alone can leave it.
    [[nodiscard]] static CString ToText(const CIEData& job);
};
