// A dataset as a drawing file.
#pragma once

#include "alidade/formats/dxf/export/core_dxf_exporter.h"
#include "alidade/frame/format_row.h"

/// What a drawing holds, as EIECarries bits.
inline constexpr TIECarries kDxfWriteCarries = CARRIES_POINTS | CARRIES_LINES | CARRIES_POLYGONS | CARRIES_ARCS |
                                               CARRIES_SURFACES | CARRIES_CODES | CARRIES_ATTRIBUTES |
                                               CARRIES_CODE_STRINGS | CARRIES_LAYERS | CARRIES_DRAWING;

/// Writes the current dataset, one object or surface a step: surfaces first where there are no codes, else the blocks
/// of all objects, the references to all of them, and the surfaces. Points, lines and polygons are all written if one
/// of them is asked for.
class ALIDADE_API CDXFExporter : public CCoreDXFExporter {
public:
    CDXFExporter(CIEData* pData, const CString& strFileName);

    [[nodiscard]] int GetNumberOfSteps() override;
    bool SingleStep() override;

    /// Writes object `nIndex` of the dataset, or for EIEDataType::Surfaces all triangles of surface `nIndex`.
    bool ExportObject(int nIndex, EIEDataType eType);

private:
    bool StepWithoutCodes(int nStep);
    bool StepWithCodes(int nStep);
    bool Finish();
};
