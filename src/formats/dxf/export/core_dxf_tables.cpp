// What stands ahead of the objects of a drawing: header variables, line types and layers.
#include "alidade/formats/dxf/export/core_dxf_exporter.h"
#include "formats/dxf/export/dxf_output.h"

#include <cmath>
#include <span>

namespace {

constexpr double kMostExtent = 1e10;

struct TLineType {
    const char* m_pName;
    const char* m_pDescription;
    double m_dTotal;
    std::span<const double> m_Elements; ///< dashes above 0, gaps below, 0 for dots
};

constexpr double kDashed[] = {0.5, -0.25};
constexpr double kDotted[] = {0, -0.1};
constexpr double kDashDotted[] = {0.1, -0.05, 0, -0.05};
constexpr double kDashDotDotted[] = {0.1, -0.05, 0, -0.05, 0, -0.05};
constexpr TLineType kLineTypes[] = {
    {"DASHED", "Dashed __ __ __ __ __ __ __ __ __ __ __ __ __ _", 0.75, kDashed},
    {"DOTTED", "Dotted . . . . . . . . . . . . . . . . . . . .", 0.1, kDotted},
    {"DASHDOTTED", "DashDotted _ . _ . _ . _ . _ . _ . _ . _ . _", 0.2, kDashDotted},
    {"DASHDOTDOTTED", "DashDotDotted _ .. _ .. _ .. _ .. _ .. _ .. _", 0.25, kDashDotDotted},
};

bool WriteLineType(TDXFOutput& out, const TLineType& type)
{
    bool bWritten = out.WriteString(0, "LTYPE") && out.WriteString(2, type.m_pName) && out.WriteInt(70, 0) &&
                    out.WriteString(3, type.m_pDescription) && out.WriteInt(72, 65) &&
                    out.WriteInt(73, static_cast<int>(type.m_Elements.size())) && out.WriteDouble(40, type.m_dTotal);
    for (const double dElement : type.m_Elements)
        bWritten = bWritten && (dElement == 0.0 ? out.WriteInt(49, 0) : out.WriteDouble(49, dElement));
    return bWritten;
}

/// Value of $AUNITS.
int AngleUnitsOf(EANGLE_UNITS units)
{
    switch (units) {
    case EANGLE_UNITS::Radians:
        return 3;
    case EANGLE_UNITS::Grads:
        return 2;
    case EANGLE_UNITS::DegreesMinutesSeconds:
        return 1;
    case EANGLE_UNITS::Mils:
    case EANGLE_UNITS::DecimalDegrees:
        break;
    }
    return 0;
}

/// In metres, whatever the units of the drawing are.
bool WriteExtent(TDXFOutput& out, const char* pVariable, const CIEStation& border)
{
    if (!(std::fabs(border.m_dEast) < kMostExtent && std::fabs(border.m_dNorth) < kMostExtent))
        return true;
    return out.WriteString(9, pVariable) && out.WriteDouble(10, border.m_dEast) &&
           out.WriteDouble(20, border.m_dNorth) && out.WriteDouble(30, border.GetHeight());
}

} // namespace

bool CCoreDXFExporter::GenerateHeader(const CHeaderInfo* pHeader)
{
    TDXFOutput& out = *m_pOut;
    bool bWritten = out.WriteString(0, "SECTION") && out.WriteString(2, "HEADER");
    if (pHeader && pHeader->IsMinMaxDefined())
        bWritten = bWritten && WriteExtent(out, "$EXTMIN", *pHeader->GetBorder(CHeaderInfo::Minimum)) &&
                   WriteExtent(out, "$EXTMAX", *pHeader->GetBorder(CHeaderInfo::Maximum));
    EANGLE_UNITS units = EANGLE_UNITS::DecimalDegrees;
    if (m_pData->GetJobInfo()->GetAngleUnits(units))
        bWritten = bWritten && out.WriteString(9, "$AUNITS") && out.WriteInt(70, AngleUnitsOf(units));
    bWritten = bWritten && out.WriteString(9, "$CLAYER") &&
               out.WriteString(8, LayerName(m_pData->GetIEDrawDictionary()->GetDefaultLayer()));
    if (pHeader) {
        const double dSymbol =
            pHeader->GetSymbolSize() != 0.0 ? pHeader->GetSymbolSize() : ToDrawing(pHeader->CalcAutoSymbolSize());
        bWritten = bWritten && out.WriteString(9, "$PDMODE") && out.WriteInt(70, pHeader->GetPointMode()) &&
                   out.WriteString(9, "$PDSIZE") && out.WriteDouble(40, dSymbol) && out.WriteString(9, "$LWDISPLAY") &&
                   out.WriteInt(290, 1);
    }
    return bWritten && out.WriteString(0, "ENDSEC");
}

bool CCoreDXFExporter::GenerateTables()
{
    TDXFOutput& out = *m_pOut;
    return out.WriteString(0, "SECTION") && out.WriteString(2, "TABLES") && WriteLineTypes() && WriteLayers() &&
           // the order that readers of these files have come to know: a second table of layers, without any
           out.WriteString(0, "TABLE") && out.WriteString(2, "LAYER") && out.WriteString(0, "ENDTAB") &&
           out.WriteString(0, "ENDSEC");
}

bool CCoreDXFExporter::WriteLineTypes()
{
    TDXFOutput& out = *m_pOut;
    bool bWritten = out.WriteString(0, "TABLE") && out.WriteString(2, "LTYPE") &&
                    out.WriteInt(70, static_cast<int>(std::size(kLineTypes)) + 1);
    for (const TLineType& type : kLineTypes)
        bWritten = bWritten && WriteLineType(out, type);

    double dTotal = 0.0;
    double elements[] = {0.0, 0.0};
    m_Header.CalcAutoDashSize(dTotal, elements[0], elements[1]);
    if (dTotal > 0.0) {
        for (double* const pSize : {&dTotal, &elements[0], &elements[1]})
            *pSize = ToDrawing(*pSize);
    } else {
        dTotal = 0.375;
        elements[0] = 0.25;
        elements[1] = -0.125;
    }
    return bWritten &&
           WriteLineType(out, {"DASHED_CUSTOM", "Dashed_Custom (It depends on MINMAX values) _ _", dTotal, elements}) &&
           out.WriteString(0, "ENDTAB");
}

bool CCoreDXFExporter::WriteLayers()
{
    TDXFOutput& out = *m_pOut;
    const CIEDrawDictionary& layers = *m_pData->GetIEDrawDictionary();
    bool bWritten = out.WriteString(0, "TABLE") && out.WriteString(2, "LAYER");
    if (layers.GetNumberOfLayers() == 0) {
        m_strDefaultLayer = "0";
        bWritten = bWritten && out.WriteInt(70, 1) && out.WriteString(0, "LAYER") && out.WriteString(2, "0") &&
                   out.WriteInt(70, 0) && out.WriteInt(62, CIEAutoCADUtils::kForeground) &&
                   out.WriteString(6, "Continuous");
    } else {
        const CIELayer* const pDefault = layers.GetDefaultLayer();
        m_strDefaultLayer = LayerName(pDefault ? pDefault : layers.GetLayerAt(0));
        bWritten = bWritten && out.WriteInt(70, layers.GetNumberOfLayers());
        for (int i = 0; const CIELayer* const pLayer = layers.GetLayerAt(i); ++i)
            bWritten = bWritten && (!pLayer->GetDrawProperties() || WriteLayer(*pLayer));
    }
    return bWritten && out.WriteString(0, "ENDTAB");
}

bool CCoreDXFExporter::WriteLayer(const CIELayer& layer)
{
    TDXFOutput& out = *m_pOut;
    const CIEDrawProperties& properties = *layer.GetDrawProperties();
    const auto* const pLine = dynamic_cast<const CIEDrawLineProperties*>(&properties);
    const bool bOn = layer.IsActive() && layer.IsPlot();
    TIEColor color = 0;
    (void)properties.GetColor(color);
    const int nColor = GetColorIndex(color);
    return out.WriteString(0, "LAYER") && out.WriteString(2, LayerName(&layer)) && out.WriteInt(70, bOn ? 64 : 0) &&
           out.WriteInt(62, bOn ? nColor : -nColor) &&
           out.WriteString(6, pLine ? pLine->GetDashStyleTypeAsString() : "Continuous");
}
