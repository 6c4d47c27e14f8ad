// Objects as entities, blocks and references to blocks.
#include "alidade/formats/dxf/export/core_dxf_exporter.h"
#include "alidade/vellumlib/utils.h"
#include "formats/dxf/export/dxf_output.h"

namespace {

constexpr double kPixelWidth = 0.1; ///< width of a line in a drawing for each pixel of ours
constexpr int kHasAttributes = 2;   ///< flag of a block
constexpr int kLeastRing = 3;

/// How an object is drawn: as it says itself, or else as its first code says.
const CIEDrawProperties* PropertiesOf(const CIEObject& object)
{
    if (const CIEDrawProperties* const pOwn = object.GetDrawProperties())
        return pOwn;
    const CIECodeValues* const pCode = object.GetCode(0);
    if (!pCode)
        return nullptr;
    const bool bPoint = object.GetGroupType() == CIEObject::PointLike;
    return pCode->GetDescription()->GetDrawProperties(bPoint ? CIEDrawProperties::Points : CIEDrawProperties::Lines);
}

} // namespace

std::string_view CCoreDXFExporter::LayerOf(const CIEObject& object) const
{
    return object.GetLayer() ? LayerName(object.GetLayer()) : std::string_view(m_strDefaultLayer);
}

std::string_view CCoreDXFExporter::LayerName(const CIELayer* pLayer)
{
    return !pLayer || pLayer->GetName().empty() ? "0" : std::string_view(pLayer->GetName());
}

bool CCoreDXFExporter::WritePlace(int nGroup, double dNorth, double dEast, double dHeight)
{
    return m_pOut->WriteDouble(nGroup, dEast) && m_pOut->WriteDouble(nGroup + 10, dNorth) &&
           m_pOut->WriteDouble(nGroup + 20, dHeight);
}

bool CCoreDXFExporter::WriteReference(const CIEStation& station)
{
    if (m_bInBlocks)
        return WritePlace(10, 0.0, 0.0, 0.0);
    return WritePlace(10, IEUtils::FromMetersFactor(station.m_dNorth, m_ePlaneUnits),
                      IEUtils::FromMetersFactor(station.m_dEast, m_ePlaneUnits),
                      IEUtils::FromMetersFactor(station.GetHeight(), m_eUnits));
}

bool CCoreDXFExporter::GenerateBlockStart(const CIEObject& object)
{
    TDXFOutput& out = *m_pOut;
    return out.WriteString(0, "BLOCK") && out.WriteString(8, LayerOf(object)) &&
           out.WriteString(2, CreateCorrectDXFName(object.GetName(), true)) && out.WriteInt(70, kHasAttributes) &&
           WritePlace(10, 0.0, 0.0, 0.0);
}

bool CCoreDXFExporter::GenerateBlockEnd()
{
    return m_pOut->WriteString(0, "ENDBLK");
}

bool CCoreDXFExporter::GenerateInsert(const CIEObject& object)
{
    TDXFOutput& out = *m_pOut;
    return out.WriteString(0, "INSERT") && out.WriteString(8, LayerOf(object)) && out.WriteInt(66, 1) &&
           out.WriteString(2, CreateCorrectDXFName(object.GetName(), true)) && WriteReference(*object.GetStation(0));
}

bool CCoreDXFExporter::GenerateEntity(const CIEObject& object)
{
    if (!GenerateNameText(object))
        return false;
    switch (object.GetType()) {
    case EIEObjectsType::DesignPoint:
    case EIEObjectsType::PTLPoint:
    case EIEObjectsType::GPSPosition:
        return GeneratePoint(object);
    case EIEObjectsType::PolyLine:
    case EIEObjectsType::Polygon:
        return GeneratePolyline(object);
    case EIEObjectsType::Arc:
        return GenerateArc(static_cast<const CIEArc&>(object));
    case EIEObjectsType::Composite:
        return GenerateComposite(object);
    case EIEObjectsType::SheetPoint:
        break;
    }
    return true;
}

bool CCoreDXFExporter::GenerateNameText(const CIEObject& object)
{
    TDXFOutput& out = *m_pOut;
    const CIEStation& station = *object.GetStation(0);
    const double dEast = m_bInBlocks ? 0.0 : IEUtils::FromMetersFactor(station.m_dEast, m_ePlaneUnits);
    const double dNorth = m_bInBlocks ? 0.0 : IEUtils::FromMetersFactor(station.m_dNorth, m_ePlaneUnits);
    return out.WriteString(0, "TEXT") && out.WriteString(8, LayerOf(object)) &&
           out.WriteInt(62, CIEAutoCADUtils::kForeground) && out.WriteDouble(10, dEast) &&
           out.WriteDouble(20, dNorth) && out.WriteDouble(40, m_dTextHeight) &&
           out.WriteDouble(41, m_dTextWidthFactor) && out.WriteString(1, CreateCorrectDXFName(object.GetName(), true));
}

bool CCoreDXFExporter::GeneratePoint(const CIEObject& object)
{
    return m_pOut->WriteString(0, "POINT") && m_pOut->WriteString(8, LayerOf(object)) &&
           GenerateDrawProperties(object.GetType(), PropertiesOf(object)) && WriteReference(*object.GetStation(0));
}

bool CCoreDXFExporter::GeneratePolyline(const CIEObject& object)
{
    bool bWritten = m_pOut->WriteString(0, "POLYLINE") && m_pOut->WriteString(8, LayerOf(object)) &&
                    GenerateDrawProperties(object.GetType(), PropertiesOf(object)) && m_pOut->WriteInt(66, 1);
    for (int i = 0; const CIEStation* const pStation = object.GetStation(i); ++i) {
        if (!bWritten)
            break;
        bWritten = WriteVertex(object, *pStation);
    }
    // the ring of a polygon closes by one vertex more, whether or not its last station repeats the first
    if (object.GetType() == EIEObjectsType::Polygon && object.GetNumberOfStations() >= kLeastRing)
        bWritten = bWritten && WriteVertex(object, *object.GetStation(0));
    return bWritten && m_pOut->WriteString(0, "SEQEND");
}

/// Inside a block, coordinates count from the first station.
bool CCoreDXFExporter::WriteVertex(const CIEObject& object, const CIEStation& station)
{
    double dNorth = station.m_dNorth, dEast = station.m_dEast, dHeight = station.GetHeight();
    if (m_bInBlocks) {
        const CIEStation& first = *object.GetStation(0);
        dNorth -= first.m_dNorth;
        dEast -= first.m_dEast;
        dHeight -= first.GetHeight();
    }
    return m_pOut->WriteString(0, "VERTEX") && m_pOut->WriteString(8, LayerOf(object)) &&
           WritePlace(10, IEUtils::FromMetersFactor(dNorth, m_ePlaneUnits),
                      IEUtils::FromMetersFactor(dEast, m_ePlaneUnits), IEUtils::FromMetersFactor(dHeight, m_eUnits));
}

bool CCoreDXFExporter::GenerateArc(const CIEArc& arc)
{
    return m_pOut->WriteString(0, "ARC") && m_pOut->WriteString(8, LayerOf(arc)) &&
           GenerateDrawProperties(arc.GetType(), PropertiesOf(arc)) && WriteReference(*arc.GetStation()) &&
           m_pOut->WriteDouble(40, IEUtils::FromMetersFactor(arc.GetData(CIEArc::Radius), m_eUnits)) &&
           m_pOut->WriteDouble(50, arc.GetData(CIEArc::StartAngle)) &&
           m_pOut->WriteDouble(51, arc.GetData(CIEArc::EndAngle));
}

bool CCoreDXFExporter::GenerateComposite(const CIEObject& /*object*/)
{
    return true;
}

bool CCoreDXFExporter::GenerateDrawProperties(EIEObjectsType eKind, const CIEDrawProperties* pProperties)
{
    if (!pProperties || pProperties->GetType() >= CIEDrawProperties::kTypes)
        return true;
    const auto* const pLine = dynamic_cast<const CIEDrawLineProperties*>(pProperties);
    if (pLine && !m_pOut->WriteString(6, pLine->GetDashStyleTypeAsString()))
        return false;
    TIEColor color = 0;
    if (pProperties->GetColor(color) && !m_pOut->WriteInt(62, GetColorIndex(color)))
        return false;
    int nWidth = 0;
    const bool bWide =
        pLine && (eKind == EIEObjectsType::PolyLine || eKind == EIEObjectsType::Polygon) && pLine->GetWidth(nWidth);
    return !bWide || (m_pOut->WriteDouble(40, nWidth * kPixelWidth) && m_pOut->WriteDouble(41, nWidth * kPixelWidth));
}

bool CCoreDXFExporter::ExportSurface(const CIESurface* pSurface, const CIETriangle* pTriangle)
{
    if (!m_pOut || !pSurface || !pTriangle)
        return m_pOut != nullptr;
    constexpr int kFaceCorners[] = {0, 1, 2, 0};
    for (const int k : kFaceCorners) {
        if (!pSurface->GetPositionAt(pTriangle->GetPosition(k)))
            return true;
    }
    bool bWritten = m_pOut->WriteString(0, "3DFACE") && m_pOut->WriteString(8, m_strDefaultLayer);
    for (int i = 0; i < std::ssize(kFaceCorners) && bWritten; ++i) {
        const CIEStation& corner = *pSurface->GetPositionAt(pTriangle->GetPosition(kFaceCorners[i]));
        // a face has lengths in all directions, in a job of latitude and longitude too
        bWritten = WritePlace(10 + i, IEUtils::FromMetersFactor(corner.m_dNorth, m_eUnits),
                              IEUtils::FromMetersFactor(corner.m_dEast, m_eUnits),
                              IEUtils::FromMetersFactor(corner.GetHeight(), m_eUnits));
    }
    return bWritten;
}
