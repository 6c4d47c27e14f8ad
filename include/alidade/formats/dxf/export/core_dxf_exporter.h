// The parts of a drawing file.
#pragma once

#include "alidade/frame/exporter.h"
#include "alidade/platform/api.h"
#include "alidade/vellumlib/autocad_utils.h"

#include <string_view>
#include <unordered_map>

class CDXFNotes;
struct TDXFAttribute;
class TDXFOutput;

/// Knows how each part of a drawing is written; who derives from it owns the walk. X is east, Y is north.
///
/// A dataset without codes becomes plain entities, each with its name as a text. In one with codes each object becomes
/// a block around its reference station, with a template for each attribute, and an INSERT of that block with the
/// attributes' values, so that codes survive the trip through a drawing program. The dataset that is current when the
/// run starts is the one that is written.
class ALIDADE_API CCoreDXFExporter : public CIEExporter {
public:
    CCoreDXFExporter(CIEData* pData, const CString& strFileName);
    /// Closes the file of a run that stopped early.
    ~CCoreDXFExporter() override;
    CCoreDXFExporter(const CCoreDXFExporter&) = delete;
    CCoreDXFExporter& operator=(const CCoreDXFExporter&) = delete;

    /// Writes one object as the section calls for: its entities, its block, or the reference to it. An object without
    /// a station, which has no place in a drawing, is left out.
    virtual bool ExportEntitiy(CIEObject* pObject);
    /// Writes a triangle. One whose corners aren't positions of the surface is left out.
    virtual bool ExportSurface(const CIESurface* pSurface, const CIETriangle* pTriangle);
    /// Creates the file, in binary form if its extension is "dxb", records it with the job, and writes all that stands
    /// ahead of the objects. False if the file can't be created or written.
    virtual bool StartExport();
    /// Writes what stands behind the objects and closes the file. False if any write failed.
    virtual bool EndExport();
    /// Goes from the blocks to the entities in a dataset with codes.
    virtual bool MiddleOfExport();
    /// Objects and surfaces of the current dataset, as far as the settings ask for them.
    virtual int GetNumberObjectsInTheDataset();

    /// A name as drawings allow them: "0" for an empty one, and "_" for each blank, tab, line end or mark of
    /// !.,?%*@#$^&'"\/|~;[]{}()<>`+= in it. Without `bCorrect` the name as it stands.
    [[nodiscard]] static CString CreateCorrectDXFName(std::string_view name, bool bCorrect);
    /// How the tag of an attribute begins: its name, which loses its first two characters if there is a "." in it.
    [[nodiscard]] static CString GetTagName(const CString& strAttribute);

protected:
    /// The dataset of the run, or ahead of its start the current one; null if there is none.
    [[nodiscard]] CIEDataset* GetDataset() const;
    /// Whether that dataset is written as blocks.
    [[nodiscard]] bool HasCodes() const;
    /// Whether the settings ask for points, lines or polygons: for one of them is for all objects.
    [[nodiscard]] bool WantsObjects() const;
    [[nodiscard]] bool WantsSurfaces() const;
    /// Closes the file, if it is open, and tells of a write that failed. True if none did.
    bool CloseOutput();

    bool GenerateHeader(const CHeaderInfo* pHeader);
    bool GenerateTables();
    bool GenerateBlocksStart();
    bool GenerateBlocksEnd();
    bool GenerateEntitiesStart();

    bool GenerateBlockStart(const CIEObject& object);
    bool GenerateBlockEnd();
    bool GenerateInsert(const CIEObject& object);
    bool GenerateEntity(const CIEObject& object);
    bool GenerateNameText(const CIEObject& object);
    bool GeneratePoint(const CIEObject& object);
    bool GeneratePolyline(const CIEObject& object);
    bool GenerateArc(const CIEArc& arc);
    /// Drawings have nothing for a composite object: its name is all that is written of it.
    bool GenerateComposite(const CIEObject& object);
    /// `pProperties` may be null. The width goes out for lines and polygons alone.
    bool GenerateDrawProperties(EIEObjectsType eKind, const CIEDrawProperties* pProperties);

    bool GenerateAttDef(const CIEObject& object);
    bool GenerateAttrib(const CIEObject& object);
    bool ForAllAttributes(const CIEObject& object, const CIEStation& station, bool bAttDef);

    bool m_bInBlocks = false; ///< the section of blocks is open
    CIEAutoCADUtils m_AutoCADUtils;
    CString m_strDefaultLayer;          ///< of objects without a layer
    std::unique_ptr<TDXFOutput> m_pOut; ///< null before StartExport and after EndExport

private:
    bool WriteLineTypes();
    bool WriteLayers();
    bool WriteLayer(const CIELayer& layer);
    /// East, north and height as the groups nGroup, nGroup + 10 and nGroup + 20.
    bool WritePlace(int nGroup, double dNorth, double dEast, double dHeight);
    /// The same in the units of the drawing; zeros inside a block, which stands around its reference station.
    bool WriteReference(const CIEStation& station);
    bool WriteVertex(const CIEObject& object, const CIEStation& station);
    bool WriteAttribute(const TDXFAttribute& attribute, const CIEStation& station, std::string_view layer,
                        bool bAttDef);
    [[nodiscard]] std::string_view LayerOf(const CIEObject& object) const;
    /// "0", which every drawing has, for a layer without a name, and without a layer.
    [[nodiscard]] static std::string_view LayerName(const CIELayer* pLayer);
    int GetColorIndex(TIEColor color);
    /// A size that suits the extent, in the units of the drawing.
    [[nodiscard]] double ToDrawing(double dSize) const;
    void BeginNotes();

    CIEDataset* m_pDataset = nullptr; // of the run, not owned
    bool m_bStarted = false;
    bool m_bCodes = false; ///< of the run
    CHeaderInfo m_Header;  ///< of the dataset, which is asked once
    EDIST_UNITS m_ePlaneUnits = EDIST_UNITS::None;
    EDIST_UNITS m_eUnits = EDIST_UNITS::None;
    double m_dTextHeight = 1.0;      ///< of names
    double m_dTextWidthFactor = 1.0; ///< of names
    double m_dAttributeHeight = 1.0; ///< of attributes
    std::unordered_map<TIEColor, int> m_ColorIndexes;
    std::unique_ptr<CDXFNotes> m_pNotes; ///< null where nobody listens
};
