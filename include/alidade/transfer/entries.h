// The way into the library: four entries that run a transfer, four that make a raw-data generator.
//
// A transfer reads a file into a job, or writes a job to files, and tells the host the result by a registered message:
// "IMPORT_DATA_FINISHED" or "EXPORT_DATA_FINISHED" with wParam 0 and the EIEResult as lParam, posted to the window in
// the job's settings, or to all windows if that is null. The order of an import's end: importer deleted, objects named
// from their codes, message. Of an export's end: exporter deleted, the files of a stopped run deleted, message, job
// deleted.
//
// The form in a thread and the form on the caller's thread run the same procedure. Runs on different jobs may go on at
// the same time; on one job only one. No exception leaves an entry: where memory runs out, the result is
// IE_OUT_OF_MEMORY. A run stops after its present step once CIEData::m_bStopProcess is set, which stays as the host
// sets it.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/platform/thread.h"
#include "alidade/vellumlib/data.h"

/// Export code 0 to 66; the codes stand in the format table.
enum class EExportType : int {};

class CRW5Generator;

extern "C" {

/// Reads a file into the job on a thread of its own. The job stays with the host, which leaves it alone until the
/// message has come, and the host owns the thread object: it can wait on it and must delete it. Null if no thread could
/// be made; then nothing has happened and no message comes. Without a job the run ends with IE_NO_JOB and no message.
ALIDADE_API CIEThread* StartImportInSeparateThread(CIEData* pData, const CString& strFileName, int nCode);

/// Reads a file into the job. The job stays with the caller, with what was read until a failure or a stop.
ALIDADE_API EIEResult ImportInTheSameThread(CIEData* pData, const CString& strFileName, int nCode);

/// Writes a job on a thread of its own. The run takes the job, which must have been made with new, and deletes it at
/// its end: the host doesn't touch it again. The host owns the thread object. Null if no thread could be made; then the
/// job stays with the host and no message comes. With TIESettings::m_bSingleFile set the file is named as given.
/// Without it, if the first dataset has objects and points or lines are asked for, each dataset goes to a file of its
/// own, named after the dataset in the folder of the given name, with the format's extension.
ALIDADE_API CIEThread* StartExportInSeparateThread(CIEData* pData, const CString& strFileName, EExportType eCode);

/// Writes a job and deletes it, which must have been made with new.
ALIDADE_API EIEResult ExportInTheSameThread(CIEData* pData, const CString& strFileName, EExportType eCode);

/// Generators of raw-data lines over the job's info, which must outlive them; the caller owns them. None of the four
/// dialects is built yet: they give null.
ALIDADE_API CRW5Generator* CreateRW5Generator(TIEJobInfo* pJobInfo);
ALIDADE_API CRW5Generator* CreateQr1RawDataGenerator(TIEJobInfo* pJobInfo);
ALIDADE_API CRW5Generator* CreateQr2Tm2RawDataGenerator(TIEJobInfo* pJobInfo);
ALIDADE_API CRW5Generator* CreateTm1RawDataGenerator(TIEJobInfo* pJobInfo);

} // extern "C"
