// A pair of files with one base name: east and north in ".cor", heights in ".lev".
#pragma once

#include "alidade/frame/importer.h"
#include "alidade/frame/point_exporter.h"

#include <string_view>
#include <unordered_map>

/// Reads the pair. East and north are in the job's units, heights in metres.
class CIECorLevImporter : public CIEImporter {
public:
    /// The base name is the file's name without ".cor", ".lev" or ".def" in any case.
    CIECorLevImporter(CIEData* pData, CString strFileName);

    /// IE_OK, also for files without a line; IE_BAD_CONTENT at the first bad line of either file, with the points ahead
    /// of it in the job; IE_CANNOT_OPEN_FILE if one of the two can't be opened; IE_STOPPED.
    EIEResult Import() override;

private:
    using TReadLine = bool (CIECorLevImporter::*)(std::string_view line);

    bool Open(CIETextFile& file, const char* pExtension);
    EIEResult ReadLines(CIETextFile& file, TReadLine readLine);
    bool ReadCoordinates(std::string_view line);
    bool ReadLevel(std::string_view line);
    int FindStation(std::string_view name);
    void AddPoints(CIEDataset& dataset);
    bool Refuse(EIENote eCode, std::string_view record, CString strReason);

    CString m_strBase;
    const CIETextFile* m_pFile = nullptr; ///< the one that is being read
    std::vector<CIEStation> m_Stations;
    std::vector<bool> m_HasLevel;
    int m_nLevelIndex = -1; ///< station that the level ahead belongs to
    std::unordered_map<CString, int>
        m_ByName; ///< first station of each name in lower case; made when it is first needed
};

/// Writes the pair, east before north, in metres with four decimals; latitude and longitude as they are.
class CIECorLevExporter : public CIEPointExporter {
public:
    CIECorLevExporter(CIEData* pData, const CString& strFileName);
    ~CIECorLevExporter() override;

    /// False if the ".cor" file can't be created. Without the other the run goes on, and the heights are lost.
    bool OpenFile() override;
    /// The header line of delimited text has no place in this form.
    bool WriteHeader() override { return true; }
    bool CloseFile() override;
    bool WriteStation(const CIEStation* pStation, const CIEObject* pObject) override;

private:
    std::shared_ptr<CIETextWriter> Create(const char* pExtension);
    void CloseLevels();
    void NoteLevels(CString strReason) const;
    void NoteName(const CString& strName, std::string_view written) const;

    std::shared_ptr<CIETextWriter> m_pLevels; ///< null without a ".lev" file
    bool m_bFirstLine = true;                 ///< nothing of the files is written yet
};
