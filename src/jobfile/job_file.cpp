#include "alidade/jobfile/job_file.h"

#include "jobfile/job_reader.h"
#include "jobfile/job_writer.h"

#include "alidade/platform/file.h"

#include <filesystem>
#include <new>

namespace {

class CIEFileSink : public IIEJsonSink {
public:
    explicit CIEFileSink(CIEFileWriter& file) : m_File(file) {}
    /// A stop ends the document as a full disk does.
    bool Take(std::string_view piece) override { return !CIEData::m_bStopProcess && m_File.Write(piece); }

private:
    CIEFileWriter& m_File;
};

bool ReadWholeFile(const CString& strFileName, CString& text)
{
    CIEFileReader file;
    if (!file.Open(strFileName))
        return false;
    constexpr std::size_t kPiece = std::size_t{1} << 20;
    text.reserve(file.GetLength());
    for (;;) {
        const std::string_view piece = file.Peek(kPiece);
        if (piece.empty() || CIEData::m_bStopProcess)
            return !file.HasFailed();
        text.append(piece);
        file.Skip(piece.size());
    }
}

bool IsPlainFile(const CString& strPath)
{
    std::error_code error;
    return std::filesystem::is_regular_file(std::filesystem::symlink_status(strPath, error));
}

/// Writes a file and closes it. One that didn't get whole is deleted, unless it is a device or the like.
bool WriteWhole(const CIEData& job, const CString& strPath, const CString& strFileName)
{
    CIEFileWriter file;
    if (!file.Create(strPath))
        return false;
    CIEFileSink sink(file);
    const bool bWritten = WriteJobDocument(job, sink, strFileName);
    if (file.Close() && bWritten)
        return true;
    if (IsPlainFile(strPath))
        Platform::RemoveFile(strPath);
    return false;
}

/// Puts a finished file into the place of another one, with its permissions.
bool Replace(const CString& strPath, const CString& strNew)
{
    namespace fs = std::filesystem;
    std::error_code error;
    fs::permissions(strNew, fs::status(strPath, error).permissions(), error);
    fs::rename(strNew, strPath, error);
    return !error;
}

} // namespace

EIEResult CIEJobFile::FromText(CIEData& job, std::string_view text, TIEJobFileError* pError)
try {
    for (const CIEJobReader::EWalks eWalks : {CIEJobReader::One, CIEJobReader::Two}) {
        CIEData fresh;
        TIESettings settings;
        settings.m_pMessageBox = job.GetSettings().m_pMessageBox;
        settings.m_hWnd = job.GetSettings().m_hWnd;
        fresh.SetSettings(std::move(settings));

        CIEJobReading in(fresh);
        CIEJobReader reader(in, text);
        if (reader.Read(eWalks)) {
            job.SwapContent(fresh);
            return IE_OK;
        }
        if (pError)
            *pError = in.GetError();
        if (CIEData::m_bStopProcess)
            return IE_STOPPED;
        if (reader.IsFinal())
            break;
    }
    return IE_BAD_CONTENT;
} catch (const std::bad_alloc&) {
    return IE_OUT_OF_MEMORY;
}

EIEResult CIEJobFile::Read(CIEData& job, const CString& strFileName, TIEJobFileError* pError)
try {
    CString text;
    if (!ReadWholeFile(strFileName, text))
        return IE_CANNOT_OPEN_FILE;
    return FromText(job, text, pError);
} catch (const std::bad_alloc&) {
    return IE_OUT_OF_MEMORY;
}

EIEResult CIEJobFile::Write(const CIEData& job, const CString& strFileName)
try {
    bool bWritten = false;
    if (IsPlainFile(strFileName)) {
        // a document that is already there gives way to the finished one only, so that a full disk doesn't cost it
        const CString strNew = strFileName + ".new";
        bWritten = WriteWhole(job, strNew, strFileName) && Replace(strFileName, strNew);
    } else {
        bWritten = WriteWhole(job, strFileName, strFileName);
    }
    if (bWritten)
        return IE_OK;
    return CIEData::m_bStopProcess ? IE_STOPPED : IE_CANNOT_OPEN_FILE;
} catch (const std::bad_alloc&) {
    return IE_OUT_OF_MEMORY;
}

CString CIEJobFile::ToText(const CIEData& job)
{
    CIEJsonString sink;
    WriteJobDocument(job, sink, CString());
    return std::move(sink.m_strText);
}
