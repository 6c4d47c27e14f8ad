// What the readers and writers of a document's parts share.
#pragma once

#include "alidade/jobfile/job_file.h"
#include "jobfile/json_text.h"
#include "jobfile/json_tree.h"

#include <unordered_map>

/// A word of the document for a number of the job.
struct TIEJobWord {
    const char* m_pWord;
    int m_nValue;
};

/// What happened to a member of an object that is being read.
enum class EJobMember { Done, Failed, Unknown };

/// A job under construction, and the first thing that went wrong. Its readers of values leave the target alone and
/// return false where the value isn't of the kind.
class CIEJobReading {
public:
    explicit CIEJobReading(CIEData& job) : m_Job(job) {}

    [[nodiscard]] CIEData& GetJob() const { return m_Job; }
    [[nodiscard]] const TIEJobFileError& GetError() const { return m_Error; }
    /// Where the trees that are being read stand in the document, as /datasets/0/objects.
    void SetPrefix(CString strPrefix) { m_strPrefix = std::move(strPrefix); }
    [[nodiscard]] const CString& GetPrefix() const { return m_strPrefix; }

    /// False, always. The first failure counts.
    bool FailAt(CString strPlace, CString strReason);
    bool Fail(const CIEJsonValue& value, CString strReason)
    {
        return FailAt(m_strPrefix + value.GetPlace(), strReason);
    }
    bool FailUnknownKey(const CIEJsonValue& value);

    bool Read(const CIEJsonValue& value, double& dValue);
    bool Read(const CIEJsonValue& value, int& nValue);
    bool Read(const CIEJsonValue& value, bool& bValue);
    bool Read(const CIEJsonValue& value, CString& strValue);
    /// One of the words, or a whole number that has none.
    bool ReadWord(const CIEJsonValue& value, const TIEJobWord* pWords, std::size_t nWords, int& nValue);
    bool WantArray(const CIEJsonValue& value);
    bool WantObject(const CIEJsonValue& value);

    /// The code of that name. One that the dictionary lacks is added, and takes attributes as objects name them.
    CIECodeDescription* NeedCode(std::string_view name);
    /// Index of an attribute, or -1; a code that NeedCode added gets the attribute if it lacks it.
    int FindAttribute(CIECodeDescription& code, std::string_view name);

private:
    struct TAttributes {
        std::unordered_map<CString, int> m_ByName;
        bool m_bOpen = false;
    };

    CIEData& m_Job;
    TIEJobFileError m_Error;
    bool m_bFailed = false;
    CString m_strPrefix;
    std::unordered_map<const CIECodeDescription*, TAttributes> m_Attributes; // of the codes that were met
};

/// A document under construction from a job.
class CIEJobWriting {
public:
    /// Notes name the file.
    CIEJobWriting(const CIEData& job, IIEJsonSink& sink, CString strFileName)
        : m_Text(sink), m_Job(job), m_strFileName(std::move(strFileName))
    {
    }

    CIEJsonText m_Text;

    [[nodiscard]] const CIEData& GetJob() const { return m_Job; }
    /// Tells the job's observer of what isn't written, or not as it is.
    void Note(TIENote::EKind eKind, EIENote eCode, const CString& strName, CString strReason,
              std::int64_t nCount = 1) const
    {
        m_Job.Note(eKind, eCode, m_strFileName, {}, strName, std::move(strReason), nCount);
    }
    void NoteMended(const CString& strName, CString strReason, std::int64_t nCount = 1) const;
    /// The same for numbers and texts that were written since the last call.
    void NoteMendedIn(const CString& strName);

    void WriteWord(const TIEJobWord* pWords, std::size_t nWords, int nValue);
    /// True if a code is the dictionary's own and no two of its attributes share a name, so that values can stand by
    /// name.
    bool HasAttributeNames(const CIECodeDescription& code);

private:
    const CIEData& m_Job;
    CString m_strFileName;
    std::int64_t m_nTold = 0; // of what the text has mended
    std::unordered_map<const CIECodeDescription*, bool> m_AttributeNames;
};
