// User-defined delimited text, for the factory: the reader and the writer themselves are the defaults of the frame.
#pragma once

#include "alidade/frame/point_exporter.h"

/// Writes delimited text and tells the host what won't come back from it as it is in the job: what the layout has no
/// field for, what the reader will join into a line, and texts whose characters mean something else to the reader.
class CIEDelimitedExporter : public CIEPointExporter {
public:
    CIEDelimitedExporter(CIEData* pData, const CString& strFileName);
    ~CIEDelimitedExporter() override;

    bool OpenFile() override;
    bool ExportObject(int nIndex) override;
    bool WriteStation(const CIEStation* pStation, const CIEObject* pObject) override;

private:
    class CReader;

    [[nodiscard]] unsigned CarriedByLayout() const;
    void NoteObject(const CIEObject& object);
    void NoteShape(const CIEObject& object);
    [[nodiscard]] bool ClosesInFile(const CIEObject& object);
    void NoteJoin(const CIEObject& object, const CString& strRead);
    void NoteLine(const CIEStation& station, const CIEObject& object);
    void NoteStart(const CString& strName);
    [[nodiscard]] bool IsPlain(const CIEStation& station, const CIEObject& object) const;

    std::shared_ptr<CReader> m_pReader;       ///< reads doubtful lines back; null without an observer
    const CIEObject* m_pLastObject = nullptr; ///< of the line ahead
    CString m_strLastName;                    ///< its name
    CString m_strLastRead;                    ///< the name that the reader sees on that line
    bool m_bNameField = true;                 ///< without one, nothing is joined
    bool m_bPlainLayout = false;              ///< plain texts come back by the layout
    bool m_bFirstLine = true;                 ///< nothing of the file is written yet
};
