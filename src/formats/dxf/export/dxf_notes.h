// What a drawing doesn't hold, or not as the job does, is told to the host.
#pragma once

#include "alidade/vellumlib/data.h"

#include <string_view>
#include <unordered_map>
#include <unordered_set>

/// The notes of one drawing, beside those that follow from what the form carries. What holds for many objects alike is
/// told once for the file.
class CDXFNotes {
public:
    /// `bCodes`: the dataset is written as blocks. The job outlives this.
    CDXFNotes(const CIEData& job, CString strFile, bool bCodes);

    /// Tells of the file as a whole, and of what the settings don't ask for. The dataset may be null.
    void NoteRun(const CIEDataset* pDataset, bool bObjects, bool bSurfaces);
    void NoteObject(const CIEObject& object);
    /// Tells of a colour that drawings lack.
    void NoteColor(TIEColor color, int nIndex);

private:
    void Add(TIENote::EKind eKind, EIENote eCode, const CString& strRecord, CString strReason);
    void NoteForm();
    void NoteUnwantedObjects(const CIEDataset& dataset);
    void LookThrough(const CIEDataset& dataset);
    void NoteFlatLines(const CIEDataset& dataset);
    void NoteCodeDrawing(const CIEDataset& dataset);
    void NoteLayers();
    void NoteLayer(const CIELayer& layer);
    void NoteSurfaces(const CIEDataset& dataset, bool bWanted);
    /// Gives the number of faces that the drawing gets.
    int NoteTriangles(const CIESurface& surface);
    void NoteName(const CIEObject& object);
    void NoteNumbers(const CIEObject& object);
    void NoteRing(const CIEObject& object);
    [[nodiscard]] bool IsOneNumber(double dFirst, double dSecond, double dBase, EDIST_UNITS units) const;
    [[nodiscard]] bool IsStanding(const CIESurface& surface, const CIETriangle& triangle) const;
    [[nodiscard]] bool AreOnePlace(const CIEStation& first, const CIEStation& last) const;
    void NoteDrawing(const CIEObject& object);
    void NoteLayerOf(const CIEObject& object);
    void NoteCodes(const CIEObject& object);
    void NoteCode(const CIEObject& object, const CIECodeValues& code);
    void NoteSharedTags(const CIEObject& object);
    void NoteDescription(const CIECodeDescription& description);
    /// Whether a text isn't in upper case, in which all of them come back.
    void LookAtCase(std::string_view text);
    /// Tells, once for an object, of a text that comes back as another one, or acts as a word of the form.
    bool NoteText(const CIEObject& object, EIENote eCode, std::string_view text, const char* pWhat);
    /// Whether a number in metres, or with EDIST_UNITS::None as it stands, goes out as one.
    [[nodiscard]] bool IsNumber(double dValue, EDIST_UNITS units) const;
    [[nodiscard]] bool ArePlaceNumbers(double dNorth, double dEast, double dHeight, EDIST_UNITS plane) const;
    void AddTooLarge(EIENote eCode, const CString& strRecord);

    const CIEData& m_Job;
    CString m_strFile;
    bool m_bCodes;
    bool m_bBinary;
    EDIST_UNITS m_ePlaneUnits;
    EDIST_UNITS m_eUnits;
    std::unordered_map<CString, int> m_Blocks;                    ///< how many objects have a block of that name
    std::unordered_set<const CIECodeDescription*> m_Descriptions; ///< those looked at
    std::unordered_set<const CIECodeDescription*> m_ManyStrings;  ///< those told of for their code strings
    std::unordered_set<const CIELayer*> m_Layers;                 ///< those that the drawing has
    bool m_bCaseTold = false;
    bool m_bDefaultLayerTold = false;
    bool m_bExtrasTold = false;
    bool m_bListsTold = false;
};
