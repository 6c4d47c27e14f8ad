// What a form can't hold is told to the host, object by object. Without an observer nothing here does anything.
#pragma once

#include "alidade/vellumlib/data.h"
#include "alidade/vellumlib/kinds.h"

namespace Losses {

/// What of an object a form with these EIECarries bits doesn't hold: the object itself, its codes, its layer ...
void NoteObject(const CIEData& job, const CString& strFile, const CIEObject& object, TIECarries nCarries);
/// The surfaces, the alignments and the job history of a dataset that was written.
void NoteDataset(const CIEData& job, const CString& strFile, const CIEDataset& dataset, TIECarries nCarries);
/// All that a dataset holds to which the run didn't come.
void NoteUnreached(const CIEData& job, const CString& strFile, const CIEDataset& dataset, const CString& strReason);
/// What belongs to the job as a whole: road templates, codes that no object has.
void NoteJob(const CIEData& job, const CString& strFile, TIECarries nCarries);

/// Latitude and longitude that a list writes in the settings' style and decimals, where those of a list in metres leave
/// little of them.
void NoteCoarseDegrees(const CIEData& job, const CString& strFile);

} // namespace Losses
