// The parts of a job document, each with its writer and its reader.
#pragma once

#include "jobfile/job_context.h"

#include <vector>

class CIEAlignment;
class CIEDataset;
class CIEDrawProperties;
class CIEGPSPosition;

namespace JobParts {

// ---- keys of the document itself
inline constexpr const char* kMarkKey = "alidade";
inline constexpr const char* kMark = "job";
inline constexpr const char* kVersionKey = "version";
inline constexpr int kVersion = 1;
inline constexpr const char* kCurrentKey = "currentDataset";
inline constexpr const char* kDatasetsKey = "datasets";
inline constexpr const char* kHistoryKey = "jobHistory"; // of a dataset
inline constexpr const char* kHeaderKey = "header";      // likewise
inline constexpr const char* kDrawKey = "draw";          // of an object, a layer or a code

// ---- sections of the document's frame; a section that would say nothing isn't written

/// A key of the whole document. Sections are read in the order of the table, whatever the document's order is.
struct TSection {
    const char* m_pKey;
    void (*m_pWrite)(CIEJobWriting& out, const char* pKey);
    bool (*m_pRead)(CIEJobReading& in, const CIEJsonValue& value);
};
/// Info, settings, codes, layers, road templates.
const std::vector<TSection>& Sections();

void WriteSettings(CIEJobWriting& out, const char* pKey);
bool ReadSettings(CIEJobReading& in, const CIEJsonValue& value);
void WriteDictionary(CIEJobWriting& out, const char* pKey);
bool ReadDictionary(CIEJobReading& in, const CIEJsonValue& value);
void WriteLayers(CIEJobWriting& out, const char* pKey);
bool ReadLayers(CIEJobReading& in, const CIEJsonValue& value);
void WriteDefaultLayer(CIEJobWriting& out, const char* pKey);
bool ReadDefaultLayer(CIEJobReading& in, const CIEJsonValue& value);
void WriteRoadTemplates(CIEJobWriting& out, const char* pKey);
bool ReadRoadTemplates(CIEJobReading& in, const CIEJsonValue& value);

// ---- stations: [north, east, height], [north, east] without a height, or an object if there is more

void WriteStation(CIEJobWriting& out, const CIEStation& station);
bool ReadStation(CIEJobReading& in, const CIEJsonValue& value, CIEStation& station);
/// The same keys among those of an object that has one station. The reader takes the station's height away first,
/// because a document without one means just that.
void WriteStationFields(CIEJobWriting& out, const CIEStation& station);
EJobMember ReadStationMember(CIEJobReading& in, const CIEJsonValue& member, CIEStation& station);
/// The same with the station's name among them, for those that stand in lists.
void WriteNamedStationFields(CIEJobWriting& out, const CIEStation& station);
EJobMember ReadNamedStationMember(CIEJobReading& in, const CIEJsonValue& member, CIEStation& station);

// ---- objects of a dataset

void WriteCodes(CIEJobWriting& out, const char* pKey, const CIEObject& object);
bool ReadCodes(CIEJobReading& in, const CIEJsonValue& value, CIEObject& object);

/// False if the document has no word for the object's kind; then nothing is written.
bool WriteObject(CIEJobWriting& out, const CIEObject& object);
/// Null after a failure.
std::unique_ptr<CIEObject> ReadObject(CIEJobReading& in, const CIEJsonValue& value);

/// What a receiver said of a position.
void WriteGPSFields(CIEJobWriting& out, const CIEGPSPosition& position);
EJobMember ReadGPSMember(CIEJobReading& in, const CIEJsonValue& member, CIEGPSPosition& position);

// ---- how things are drawn; none isn't written

/// Without a key they are the element of a list.
void WriteDrawProperties(CIEJobWriting& out, const char* pKey, const CIEDrawProperties* pProperties);
/// Null after a failure.
std::unique_ptr<CIEDrawProperties> ReadDrawProperties(CIEJobReading& in, const CIEJsonValue& value);
void WriteHeader(CIEJobWriting& out, const char* pKey, const CIEDataset& dataset);
bool ReadHeader(CIEJobReading& in, const CIEJsonValue& value, CIEDataset& dataset);

// ---- the history of a dataset; none isn't written

void WriteJobHistory(CIEJobWriting& out, const char* pKey, const CIEDataset& dataset);
bool ReadJobHistory(CIEJobReading& in, const CIEJsonValue& value, CIEDataset& dataset);

// ---- roads

/// `nStartPoint` is the start point's place among the dataset's objects, -1 for none.
void WriteAlignment(CIEJobWriting& out, const CIEAlignment& alignment, int nStartPoint);
/// Null after a failure. The start point is left to the caller, who may not know the dataset's objects yet:
/// `nStartPoint` is -1 for none.
std::unique_ptr<CIEAlignment> ReadAlignment(CIEJobReading& in, const CIEJsonValue& value, int& nStartPoint);

} // namespace JobParts
