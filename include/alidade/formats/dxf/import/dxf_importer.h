// Reads a drawing: layers, and points, lines, polylines, arcs, faces and block references.
#pragma once

#include "alidade/formats/dxf/import/dxf_token.h"
#include "alidade/frame/importer.h"
#include "alidade/platform/api.h"
#include "alidade/vellumlib/autocad_utils.h"

class CDXFReader;

/// Reads a drawing into a new dataset "Import dataset". X is east and Y north, both in the job's units, or degrees in a
/// geographic job; Z is the height in the job's units.
///
/// | in the drawing | in the job |
/// |---|---|
/// | LAYER of the tables | layer |
/// | POINT | point |
/// | LINE, 3DLINE, an open POLYLINE or LWPOLYLINE | polyline |
/// | a closed POLYLINE or LWPOLYLINE, a POLYLINE that ends where it began | polygon |
/// | ARC | arc |
/// | 3DFACE | triangle of the dataset's surface |
/// | BLOCK | its objects in state CIEObject::InBlock, named like the block |
/// | INSERT | copies of these, with codes and attributes from its ATTRIBs |
///
/// All else is left out and told of at the end of the run. How many copies INSERTs may make is in the settings.
class ALIDADE_API CDXFImporter : public CIEImporter {
public:
    CDXFImporter(CIEData* pData, CString strFileName);
    CDXFImporter(const CDXFImporter&) = delete;
    CDXFImporter& operator=(const CDXFImporter&) = delete;
    ~CDXFImporter() override;

    /// IE_OK with all that could be read, of a file that ends too early too; IE_BAD_CONTENT for a file without a
    /// section; IE_CANNOT_OPEN_FILE; IE_OUT_OF_MEMORY if memory runs out or block references make more copies than the
    /// settings allow. What was read stays in the job in every case. A stop gives what the sections so far give.
    EIEResult Import() override;

private:
    struct TEntity;
    struct TRun;
    using TBase = double[3]; ///< X, Y and Z of a block's base point

    // sections; false if the file ended first
    bool ReadSections(bool& bSection);
    bool Section(const TToken& token);
    bool Header();
    bool Classes();
    bool Tables();
    bool TableLayer(TToken& token);
    bool TableLType(TToken& token) { return SkipTable(token); }
    bool TableStyle(TToken& token) { return SkipTable(token); }
    bool TableView(TToken& token) { return SkipTable(token); }
    bool SkipTable(TToken& token);
    bool Blocks();
    bool Block();
    bool Entities();

    // entities: each reads up to the next group 0 and leaves it in `token`; false if the file ended first
    enum class EEntity { None, Read, FileEnd };
    EEntity Entity(const CString& strBlock, const TBase& base, TToken& token);
    bool Point(const CString& strBlock, const TBase& base, TToken& token);
    bool Line(const CString& strBlock, const TBase& base, TToken& token);
    bool Polyline(const CString& strBlock, const TBase& base, TToken& token);
    bool LWPolyline(const CString& strBlock, const TBase& base, TToken& token);
    bool Arc(const CString& strBlock, const TBase& base, TToken& token);
    bool Surface(TToken& token);
    bool Vertex(CIEPolyLine* pLine, const TBase& base, TToken& token);
    bool Insert(const CString& strBlock, TToken& token);
    using TTypes = std::vector<CIEAttrDescription::EType>;
    bool Attrib(TToken& token, CStringArray& names, CStringArray& values, TTypes& types);
    void AddCodeToDataDictionary(const CStringArray& names, const TTypes& types, const CStringArray& values);
    void AddAttributesToIEObject(CIEObject& object, const CStringArray& names, const CStringArray& values);

    std::unique_ptr<CDXFReader> m_pReader;
    CIEAutoCADUtils m_AutoCADUtils;
    bool m_bInEntities = false; ///< the ENTITIES section has begun
    std::unique_ptr<TRun> m_pRun;
};
