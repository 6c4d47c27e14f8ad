// Writer of delimited lines, and the base of exporters that write one station a line.
#pragma once

#include "alidade/frame/exporter.h"
#include "alidade/vellumlib/text_file.h"

/// Walks the objects of the current dataset, or of all datasets from the current one on, one object a step, and writes
/// their stations by the layout in the settings. In a run over all datasets the host makes the first one current before
/// it starts.
class ALIDADE_API CIEPointExporter : public CIEExporter {
public:
    using CIEExporter::CIEExporter;
    /// Closes the file of a run that stopped early.
    ~CIEPointExporter() override;

    /// Objects plus the two framing steps.
    [[nodiscard]] int GetNumberOfSteps() override;
    /// First step: the file. Then the header and the first object in one step, one object a step, and at last the
    /// footer.
    bool SingleStep() override;

    /// Creates the file in the settings' encoding and records it with the job. False if it can't be created.
    virtual bool OpenFile();
    /// Writes the stations of one object of the current dataset. False ends the run.
    virtual bool ExportObject(int nIndex);
    /// Always false, which ends the run.
    virtual bool CloseFile();
    /// Writes one station. The object is null for the station that closes a polygon's ring.
    virtual bool WriteStation(const CIEStation* pStation, const CIEObject* pObject);
    /// The object's codes by the layout's delimiter; empty without an object.
    virtual CString MakeCodeString(const CIEObject* pObject, bool bAttributes, bool bCodeStrings, bool bControlCodes);
    virtual bool WriteHeader();
    virtual bool WriteFooter();

protected:
    CIEPointExporter(const CIEPointExporter&) = default;
    CIEPointExporter& operator=(const CIEPointExporter&) = default;

    /// Puts the line of one station into m_Line, without its end.
    void MakeLine(const CIEStation& station, const CIEObject& object);
    /// Adds the field of a layout to m_Line: nothing for those from HorizontalRMS on.
    void AddField(int nField, const CIEStation& station, const CIEObject& object);
    /// Adds metres in the job's units.
    void AddDistance(double dMeters, int nDecimals);
    /// Adds north or east: in the job's units, or in the settings' style in a geographic job.
    void AddCoordinate(double dValue, int nDecimals);
    /// Tells of a line that has a meaning for the file as a whole: one with a zero byte, and at the start of the file
    /// one that begins with a byte order mark.
    void NoteBytes(std::string_view line, bool bStart, const CString& strName) const;
    /// Adds text of the job to m_Line. A line end within it would end the record, and becomes a blank.
    void AddText(std::string_view text);

    std::shared_ptr<CIETextWriter> m_pFile; ///< null before OpenFile and after CloseFile
    CString m_strCodeLine;                  ///< scratch for subclasses
    CIETextLine m_Line;                     ///< the line under construction

private:
    [[nodiscard]] int CountObjects() const;
    bool WriteAllStations(const CIEObject& object);
    void AddCode(const CIECodeValues& code, bool bAttributes, bool bCodeStrings, bool bControlCodes,
                 CString& out) const;
    void Close();
};
