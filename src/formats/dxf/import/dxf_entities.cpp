#include "formats/dxf/import/dxf_run.h"

#include <algorithm>
#include <cmath>

namespace {

// group codes
constexpr int kName = 2;
constexpr int kFirstX = 10;
constexpr int kFirstY = 20;
constexpr int kFirstZ = 30;
constexpr int kElevation = 38;
constexpr int kRadius = 40;
constexpr int kStartWidth = 40;
constexpr int kEndWidth = 41;
constexpr int kBulge = 42;
constexpr int kStartAngle = 50;
constexpr int kEndAngle = 51;
constexpr int kFlags = 70;
constexpr int kCount = 90; ///< of vertices

constexpr int kClosed = 1;                     ///< bit of the flags of a polyline
constexpr int kInSpace = 8 | 16 | 64;          ///< lines and meshes whose vertices don't lie in one plane
constexpr int kCurvesOrMesh = 2 | 4 | 16 | 64; ///< fitted curves, meshes and networks of faces
constexpr int kFaceRecord = 128;               ///< of a vertex that lists the corners of a face
constexpr int kMeshVertex = 64 | kFaceRecord;  ///< both of them, of one that is a corner
constexpr int kBlockHeaderGroups = 4;          ///< the name and the base point

constexpr int kUsualVertices = 4;  ///< room that a new polyline gets
constexpr int kMostReserved = 256; ///< whatever a drawing says of the number of its vertices

constexpr const char* kNotFinite = "one of its numbers isn't finite";

bool IsFinite(const CIEStation& station)
{
    return std::isfinite(station.m_dNorth) && std::isfinite(station.m_dEast) && std::isfinite(station.m_dHeight);
}

std::unique_ptr<CIEPolyLine> MakeLine(bool bClosed)
{
    if (bClosed)
        return std::make_unique<CIEPolygon>();
    return std::make_unique<CIEPolyLine>();
}

} // namespace

/// A block, from behind its first word, or the section of entities. The words of a group's value decide, whatever its
/// code.
bool CDXFImporter::Entities()
{
    CString strBlock;
    TBase base = {};
    int nHeaderGroups = m_bInEntities ? kBlockHeaderGroups : 0;
    bool bPending = false;
    TToken token;
    while (bPending || m_pRun->Next(token)) {
        bPending = false;
        if (nHeaderGroups < kBlockHeaderGroups && token.m_nCode != 0) {
            if (token.m_nCode == kName)
                strBlock = m_pRun->ToBlockName(token);
            else if (token.m_nCode == kFirstX || token.m_nCode == kFirstY || token.m_nCode == kFirstZ)
                base[token.m_nCode / kFirstX - 1] = token.m_Value.m_dValue;
            else
                continue;
            m_pRun->CountValue();
            ++nHeaderGroups;
        } else {
            nHeaderGroups = kBlockHeaderGroups; // a block of two coordinates has three
        }
        if (token.m_eToken == TToken::ENDSEC || token.m_eToken == TToken::ENDBLK) {
            m_pRun->CountWord(token);
            return true;
        }
        const EEntity eEntity = Entity(strBlock, base, token);
        if (eEntity == EEntity::FileEnd)
            return false;
        bPending = eEntity == EEntity::Read;
    }
    return false;
}

CDXFImporter::EEntity CDXFImporter::Entity(const CString& strBlock, const TBase& base, TToken& token)
{
    const auto read = [&](bool bRead) { return bRead ? EEntity::Read : EEntity::FileEnd; };
    const auto begin = [&] { m_pRun->CountWord(token); };
    if (token.m_nCode == 0 && token.m_eToken != TToken::ATTRIB)
        m_pRun->m_bDroppedReference = false;
    switch (token.m_eToken) {
    case TToken::ARC:
        begin();
        return read(Arc(strBlock, base, token));
    case TToken::ATTRIB: {
        CStringArray names, values;
        TTypes types;
        if (token.m_nCode == 0 && !m_pRun->m_bDroppedReference)
            m_pRun->CountEntity(token);
        return read(Attrib(token, names, values, types));
    }
    case TToken::FACE3D:
        begin();
        return read(Surface(token));
    case TToken::INSERT:
        begin();
        m_pRun->m_bMovedBlock = !strBlock.empty() && (base[0] != 0 || base[1] != 0 || base[2] != 0);
        return read(Insert(strBlock, token));
    case TToken::LINE:
    case TToken::LINE3D:
        begin();
        return read(Line(strBlock, base, token));
    case TToken::POINT:
        begin();
        return read(Point(strBlock, base, token));
    case TToken::POLYLINE:
        begin();
        return read(Polyline(strBlock, base, token));
    case TToken::LWPOLYLINE:
        begin();
        return read(LWPolyline(strBlock, base, token));
    default:
        if (token.m_nCode == 0 && !TRun::IsCompanion(token.m_eToken, !m_bInEntities))
            m_pRun->CountEntity(token);
        return EEntity::None;
    }
}

bool CDXFImporter::Point(const CString& strBlock, const TBase& base, TToken& token)
{
    TEntity entity(*m_pReader, token);
    TRun::TCorner places[1];
    if (!m_pRun->ReadEntity(token, entity, TRun::NoWidths,
                            [&](const TToken& group) { m_pRun->TakeCorner(group, entity, places, base); }))
        return false;
    const CIEStation station = m_pRun->ToStation(places[0]);
    if (entity.m_bDropped)
        return true;
    if (entity.m_bRefused || !IsFinite(station)) {
        m_pRun->Refuse(entity, kNotFinite);
        return true;
    }
    auto pPoint = std::make_unique<CIEDesignPoint>();
    pPoint->SetCoords(station.m_dNorth, station.m_dEast, station.m_dHeight, 0.0);
    m_pRun->AddObject(std::move(pPoint), entity, strBlock, m_pRun->MakePointProperties(entity));
    return true;
}

bool CDXFImporter::Line(const CString& strBlock, const TBase& base, TToken& token)
{
    TEntity entity(*m_pReader, token);
    TRun::TCorner places[2];
    if (!m_pRun->ReadEntity(token, entity, TRun::AllWidths,
                            [&](const TToken& group) { m_pRun->TakeCorner(group, entity, places, base); }))
        return false;
    if (entity.m_bDropped)
        return true;
    auto pLine = std::make_unique<CIEPolyLine>();
    pLine->ReserveStations(2);
    for (const TRun::TCorner& place : places) {
        CIEStation station = m_pRun->ToStation(place);
        entity.m_bRefused = entity.m_bRefused || !IsFinite(station);
        pLine->AddStation(std::move(station));
    }
    if (entity.m_bRefused)
        m_pRun->Refuse(entity, kNotFinite);
    else
        m_pRun->AddObject(std::move(pLine), entity, strBlock, m_pRun->MakeLineProperties(entity));
    return true;
}

bool CDXFImporter::Arc(const CString& strBlock, const TBase& base, TToken& token)
{
    TEntity entity(*m_pReader, token);
    TRun::TCorner places[1];
    double dRadius = 0, dStart = 0, dEnd = 0;
    const auto take = [&](const TToken& group) {
        if (group.m_nCode == kRadius)
            dRadius = m_pRun->Number(group, entity);
        else if (group.m_nCode == kStartAngle)
            dStart = m_pRun->Number(group, entity);
        else if (group.m_nCode == kEndAngle)
            dEnd = m_pRun->Number(group, entity);
        else
            m_pRun->TakeCorner(group, entity, places, base);
    };
    if (!m_pRun->ReadEntity(token, entity, TRun::Width41 | TRun::Width43, take))
        return false;
    m_pRun->CountExtrusion(entity);
    CIEStation center = m_pRun->ToStation(places[0]);
    dRadius = m_pRun->ToMeters(dRadius);
    if (entity.m_bDropped)
        return true;
    if (entity.m_bRefused || !IsFinite(center) || !std::isfinite(dRadius)) {
        m_pRun->Refuse(entity, kNotFinite);
        return true;
    }
    auto pArc = std::make_unique<CIEArc>();
    pArc->SetStation(std::move(center));
    pArc->SetData(CIEArc::Radius, dRadius);
    pArc->SetData(CIEArc::StartAngle, dStart);
    pArc->SetData(CIEArc::EndAngle, dEnd);
    m_pRun->AddObject(std::move(pArc), entity, strBlock, m_pRun->MakeLineProperties(entity));
    return true;
}

bool CDXFImporter::Polyline(const CString& strBlock, const TBase& base, TToken& token)
{
    TEntity entity(*m_pReader, token);
    int nFlags = 0;
    const auto take = [&](const TToken& group) { nFlags = group.m_nCode == kFlags ? group.m_Value.m_nValue : nFlags; };
    if (!m_pRun->ReadEntity(token, entity, TRun::AllWidths, take))
        return false;
    if (entity.m_bDropped)
        return true;
    if ((nFlags & kCurvesOrMesh) != 0)
        m_pRun->m_Tally.Count(CDXFTally::Mesh, entity.m_Place);
    if ((nFlags & kInSpace) == 0)
        m_pRun->CountExtrusion(entity);
    auto pNew = MakeLine((nFlags & kClosed) != 0);
    CIEPolyLine* const pLine = pNew.get();
    pLine->ReserveStations(kUsualVertices);
    m_pRun->AddObject(std::move(pNew), entity, strBlock, m_pRun->MakeLineProperties(entity));
    m_pRun->m_bRefusedVertex = false;
    m_pRun->m_dPolylineWidth = entity.m_GroundWidth.value_or(0);
    m_pRun->m_bPolylineVaries = entity.m_bWidthVaries;
    while (token.m_eToken == TToken::VERTEX) {
        if (Vertex(pLine, base, token))
            continue;
        if (m_pRun->m_bRefusedVertex) {
            m_pRun->Refuse(entity, kNotFinite);
            m_pRun->RemoveLast(strBlock);
        }
        return false;
    }
    if (m_pRun->m_bRefusedVertex) {
        m_pRun->Refuse(entity, kNotFinite);
        m_pRun->RemoveLast(strBlock);
    } else if (pLine->GetNumberOfStations() == 0) {
        m_pRun->m_Tally.Count(CDXFTally::NoVertex, entity.m_Place);
    } else if (*pLine->GetStation(0) == *pLine->GetStation(pLine->GetNumberOfStations() - 1)) {
        m_pRun->m_pDataset->TransformLineToPolygon(pLine); // a polygon stays what it is
    }
    if (m_pRun->m_bPolylineVaries)
        m_pRun->m_Tally.Count(CDXFTally::Widths, entity.m_Place);
    return true;
}

bool CDXFImporter::Vertex(CIEPolyLine* pLine, const TBase& base, TToken& token)
{
    TEntity entity(*m_pReader, token);
    TRun::TCorner places[1];
    int nFlags = 0;
    const auto take = [&](const TToken& group) {
        if (group.m_nCode == kBulge && group.m_Value.m_dValue != 0)
            m_pRun->m_Tally.Count(CDXFTally::Bulge, *m_pReader);
        if (group.m_nCode == kFlags)
            nFlags = group.m_Value.m_nValue;
        if (group.m_nCode == kStartWidth || group.m_nCode == kEndWidth)
            m_pRun->m_bPolylineVaries |= group.m_Value.m_dValue != m_pRun->m_dPolylineWidth;
        m_pRun->TakeCorner(group, entity, places, base);
    };
    if (!m_pRun->ReadEntity(token, entity, TRun::NoWidths, take))
        return false;
    if (entity.m_bDropped)
        return true;
    if ((nFlags & kMeshVertex) == kFaceRecord)
        m_pRun->m_Tally.Count(CDXFTally::FaceRecord, entity.m_Place);
    CIEStation station = m_pRun->ToStation(places[0]);
    if (entity.m_bRefused || !IsFinite(station))
        m_pRun->m_bRefusedVertex = true;
    else
        pLine->AddStation(std::move(station));
    return true;
}

bool CDXFImporter::LWPolyline(const CString& strBlock, const TBase& base, TToken& token)
{
    TEntity entity(*m_pReader, token);
    std::unique_ptr<CIEPolyLine> pLine;
    TRun::TCorner place;
    bool bClosed = false, bElevated = false;
    int nCount = 0;
    const auto take = [&](const TToken& group) {
        switch (group.m_nCode) {
        case kFlags:
            bClosed = (group.m_Value.m_nValue & kClosed) != 0;
            break;
        case kFirstX:
            place.m_Values[0] = m_pRun->Number(group, entity) - base[0];
            break;
        case kFirstY: {
            place.m_Values[1] = m_pRun->Number(group, entity) - base[1];
            if (!pLine) {
                pLine = MakeLine(bClosed);
                pLine->ReserveStations(std::clamp(nCount, kUsualVertices, kMostReserved));
            }
            CIEStation station = m_pRun->ToStation(place);
            entity.m_bRefused = entity.m_bRefused || !IsFinite(station);
            pLine->AddStation(std::move(station));
            break;
        }
        case kCount:
            nCount = group.m_Value.m_nValue; // only a hint
            break;
        case kElevation:
            bElevated = group.m_Value.m_dValue != 0;
            break;
        case kBulge:
            if (group.m_Value.m_dValue != 0)
                m_pRun->m_Tally.Count(CDXFTally::Bulge, *m_pReader);
            break;
        default:
            break;
        }
    };
    if (!m_pRun->ReadEntity(token, entity, TRun::AllWidths, take))
        return false;
    if (entity.m_bDropped)
        return true;
    m_pRun->CountExtrusion(entity);
    if (entity.m_bWidthVaries)
        m_pRun->m_Tally.Count(CDXFTally::Widths, entity.m_Place);
    if (bElevated)
        m_pRun->m_Tally.Count(CDXFTally::Elevation, entity.m_Place);
    if (entity.m_bRefused)
        m_pRun->Refuse(entity, kNotFinite);
    else if (pLine)
        m_pRun->AddObject(std::move(pLine), entity, strBlock, m_pRun->MakeLineProperties(entity));
    else
        m_pRun->m_Tally.Count(CDXFTally::NoVertex, entity.m_Place);
    return true;
}

namespace {

constexpr int kFaceCorners = 4;

/// The corner of a face that its triangle does without: the first that lies over or under another one, or the last.
/// `bTwice` tells whether it is another corner once more, so that nothing of the face is lost.
int FindSpareCorner(const CIEStation (&corners)[kFaceCorners], bool& bTwice)
{
    for (int i = 0; i < kFaceCorners; ++i) {
        for (int j = 0; j < kFaceCorners; ++j) {
            if (i != j && corners[i].m_dNorth == corners[j].m_dNorth && corners[i].m_dEast == corners[j].m_dEast) {
                bTwice = corners[i].m_dHeight == corners[j].m_dHeight;
                return j;
            }
        }
    }
    bTwice = false;
    return kFaceCorners - 1;
}

} // namespace

/// A block's base point and name play no part: all faces of a drawing go to one surface.
bool CDXFImporter::Surface(TToken& token)
{
    constexpr TBase kNoBase = {};
    TEntity entity(*m_pReader, token);
    TRun::TCorner places[kFaceCorners];
    bool bFourth = false;
    const auto take = [&](const TToken& group) {
        constexpr int kFourth = kFaceCorners - 1;
        bFourth = bFourth || group.m_nCode == kFirstX + kFourth || group.m_nCode == kFirstY + kFourth ||
                  group.m_nCode == kFirstZ + kFourth;
        m_pRun->TakeCorner(group, entity, places, kNoBase);
    };
    if (!m_pRun->ReadEntity(token, entity, TRun::NoWidths, take))
        return false;
    if (entity.m_bDropped)
        return true;
    CIEStation corners[kFaceCorners];
    for (int i = 0; i < kFaceCorners; ++i) {
        corners[i] = m_pRun->ToStation(places[i], true);
        entity.m_bRefused = entity.m_bRefused || !IsFinite(corners[i]);
    }
    if (entity.m_bRefused) {
        m_pRun->Refuse(entity, kNotFinite);
        return true;
    }
    bool bTwice = false;
    const int nSpare = FindSpareCorner(corners, bTwice);
    if (!bTwice && bFourth)
        m_pRun->m_Tally.Count(CDXFTally::FourthCorner, entity.m_Place);
    if (entity.m_nColor > 0 || (!entity.m_strLayer.empty() && entity.m_strLayer != "0"))
        m_pRun->m_Tally.Count(CDXFTally::FaceDrawing, entity.m_Place);
    if (!m_bInEntities)
        m_pRun->m_Tally.Count(CDXFTally::BlockFace, entity.m_Place);
    CIESurface* pSurface = m_pRun->m_pDataset->GetSurfaceAt(0);
    if (!pSurface)
        pSurface = m_pRun->m_pDataset->Add(std::make_unique<CIESurface>());
    CIETriangle triangle;
    int k = 0;
    for (int i = 0; i < kFaceCorners; ++i) {
        if (i == nSpare)
            continue;
        triangle.SetPosition(k++, pSurface->GetNumberOfPositions());
        pSurface->AddPosition(std::move(corners[i]));
    }
    pSurface->AddTriangle(triangle);
    return true;
}
