// The objects of a dataset: points, lines, polygons, arcs, composites. GPS positions and sheet points have headers of
// their own.
// Any number of threads may read such a thing while none changes it.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/codes.h"
#include "alidade/vellumlib/draw_properties.h"
#include "alidade/vellumlib/layers.h"
#include "alidade/vellumlib/station.h"
#include "alidade/vellumlib/types.h"

class CIEDataset;

/// What every object of a dataset is. An object belongs to the dataset that it was added to, or else to whoever holds
/// it.
class ALIDADE_API CIEObject : public CIECodesDataInterface {
public:
    enum EGroup : int {
        PointLike = 0, ///< one station: a CIEDesignPoint or a class derived from it
        SheetLike = 1, ///< a CIESheetPoint
        LineLike = 2,
        ArcLike = 3,
        CompositeLike = 4
    };
    enum EState : int {
        InBlock = 0,  ///< part of a block's definition: a pattern for copies, not itself on the ground
        InDrawing = 1 ///< on the ground
    };

    ~CIEObject() override = default;

    [[nodiscard]] virtual EIEObjectsType GetType() const = 0;
    /// An EGroup; 0 means a point-like object with one station.
    [[nodiscard]] virtual int GetGroupType() const = 0;
    [[nodiscard]] virtual const CString& GetName() const = 0;
    void SetName(CString name);
    /// A copy that belongs to no dataset.
    [[nodiscard]] virtual std::unique_ptr<CIEObject> clone() const = 0;

    /// Stations of the object in order; an object without any gives 0.
    [[nodiscard]] virtual int GetNumberOfStations() const = 0;
    /// Null past the end.
    [[nodiscard]] virtual const CIEStation* GetStation(int i) const = 0;

    /// Multiplies each coordinate of each station by its scale and then adds that of `shift`, so that what is told
    /// relative to a base lands where a reference puts it.
    virtual void ShiftCoords(const CIEStation& shift, double dNorthScale, double dEastScale, double dHeightScale) = 0;

    /// How the object is drawn; null is as its code and its layer say.
    [[nodiscard]] CIEDrawProperties* GetDrawProperties() const { return m_DrawProperties.Get(); }
    void SetDrawProperties(std::unique_ptr<CIEDrawProperties> pProperties)
    {
        m_DrawProperties.Set(std::move(pProperties));
    }

    /// The layer belongs to the job's draw dictionary; null is none.
    [[nodiscard]] const CIELayer* GetLayer() const { return m_pLayer; }
    void SetLayer(const CIELayer* pLayer) { m_pLayer = pLayer; }

    [[nodiscard]] int GetStateType() const { return m_nState; }
    void SetStateType(int nState) { m_nState = nState; }

protected:
    CIEObject() = default;
    CIEObject(const CIEObject& other);
    CIEObject& operator=(const CIEObject& other);

    virtual void DoSetName(CString name) = 0;

private:
    friend class CIEDataset;
    CIEDataset* m_pOwner = nullptr; // told of a new name, because it finds objects by name
    const CIELayer* m_pLayer = nullptr;
    CIEDrawPropertiesHolder m_DrawProperties;
    int m_nState = InDrawing;
};

/// A point with one station, whose name is the point's name.
class ALIDADE_API CIEDesignPoint : public CIEObject {
public:
    CIEDesignPoint() = default;
    explicit CIEDesignPoint(CIEStation station) : m_Station(std::move(station)) {}

    [[nodiscard]] EIEObjectsType GetType() const override { return EIEObjectsType::DesignPoint; }
    [[nodiscard]] int GetGroupType() const override { return PointLike; }
    [[nodiscard]] const CString& GetName() const override { return m_Station.GetName(); }
    [[nodiscard]] std::unique_ptr<CIEObject> clone() const override { return std::make_unique<CIEDesignPoint>(*this); }
    [[nodiscard]] int GetNumberOfStations() const override { return 1; }
    [[nodiscard]] const CIEStation* GetStation(int i) const override { return i == 0 ? &m_Station : nullptr; }

    void ShiftCoords(const CIEStation& shift, double dNorthScale, double dEastScale, double dHeightScale) override;

    /// Never null. To give the point another name, use SetName or SetStation.
    [[nodiscard]] const CIEStation* GetStation() const { return &m_Station; }
    /// Takes a copy of the station, its name with it.
    void SetStation(CIEStation station);
    /// North, east and height in metres (north and east in decimal degrees in a geographic job), and the geoid height.
    void SetCoords(double dNorth, double dEast, double dHeight, double dGeoidHeight);

protected:
    void DoSetName(CString name) override { m_Station.SetName(std::move(name)); }

private:
    CIEStation m_Station;
};

/// A point given relative to the line between two other points.
class ALIDADE_API CIEPTLPoint : public CIEDesignPoint {
public:
    enum ECoordType : int {
        Regular = 0,    ///< the station holds plain coordinates
        PointToLine = 1 ///< the station holds values along and off the reference line
    };

    using CIEDesignPoint::CIEDesignPoint;

    [[nodiscard]] EIEObjectsType GetType() const override { return EIEObjectsType::PTLPoint; }
    [[nodiscard]] std::unique_ptr<CIEObject> clone() const override { return std::make_unique<CIEPTLPoint>(*this); }

    /// Ids of the points that the reference line runs from and to.
    void SetPTLParams(CString first, CString second, int nCoordType);
    [[nodiscard]] const CString& GetFirstReferencePointIDs() const { return m_strFirst; }
    [[nodiscard]] const CString& GetSecondReferencePointIDs() const { return m_strSecond; }
    [[nodiscard]] int GetCoordType() const { return m_nCoordType; }

private:
    CString m_strFirst;
    CString m_strSecond;
    int m_nCoordType = Regular;
};

/// A line through stations in order.
class ALIDADE_API CIEPolyLine : public CIEObject {
public:
    [[nodiscard]] EIEObjectsType GetType() const override { return EIEObjectsType::PolyLine; }
    [[nodiscard]] int GetGroupType() const override { return LineLike; }
    [[nodiscard]] const CString& GetName() const override { return m_strName; }
    [[nodiscard]] std::unique_ptr<CIEObject> clone() const override { return std::make_unique<CIEPolyLine>(*this); }
    [[nodiscard]] int GetNumberOfStations() const override { return static_cast<int>(m_Stations.size()); }
    /// Null past the end. Valid until a station is added.
    [[nodiscard]] const CIEStation* GetStation(int i) const override;

    void ShiftCoords(const CIEStation& shift, double dNorthScale, double dEastScale, double dHeightScale) override;

    void AddStation(CIEStation station) { m_Stations.push_back(std::move(station)); }
    /// Makes room for so many stations, which saves moving them while they come.
    void ReserveStations(int nCount) { m_Stations.reserve(static_cast<std::size_t>(nCount)); }
    /// True with more than one station and the first equal to the last.
    [[nodiscard]] bool IsClosed() const;

protected:
    void DoSetName(CString name) override { m_strName = std::move(name); }

private:
    CString m_strName;
    std::vector<CIEStation> m_Stations;
};

/// A closed ring of stations. The ring closes from the last station to the first, whether or not the last repeats the
/// first: both forms come in from files and stay as they are.
class ALIDADE_API CIEPolygon : public CIEPolyLine {
public:
    CIEPolygon() = default;
    /// The ring along a line's stations, with its name, codes, layer and state.
    explicit CIEPolygon(const CIEPolyLine& line) : CIEPolyLine(line) {}
    [[nodiscard]] EIEObjectsType GetType() const override { return EIEObjectsType::Polygon; }
    [[nodiscard]] std::unique_ptr<CIEObject> clone() const override { return std::make_unique<CIEPolygon>(*this); }
};

/// A circular arc around its station, in the plane of north and east.
class ALIDADE_API CIEArc : public CIEObject {
public:
    enum EArcDataType : int {
        Radius = 0,     ///< metres
        StartAngle = 1, ///< decimal degrees, counted from east towards north
        EndAngle = 2    ///< the same; the arc runs from start to end, east towards north
    };
    static constexpr int kDataTypes = 3;

    [[nodiscard]] EIEObjectsType GetType() const override { return EIEObjectsType::Arc; }
    [[nodiscard]] int GetGroupType() const override { return ArcLike; }
    [[nodiscard]] const CString& GetName() const override { return m_Center.GetName(); }
    [[nodiscard]] std::unique_ptr<CIEObject> clone() const override { return std::make_unique<CIEArc>(*this); }
    [[nodiscard]] int GetNumberOfStations() const override { return 1; }
    [[nodiscard]] const CIEStation* GetStation(int i) const override { return i == 0 ? &m_Center : nullptr; }

    /// The radius takes the magnitude of the east scale. A mirrored arc keeps its shape: its angles are mirrored, and
    /// its start becomes its end where the mirror turns its sense. A full circle stays one.
    void ShiftCoords(const CIEStation& shift, double dNorthScale, double dEastScale, double dHeightScale) override;

    /// The centre, whose name is the arc's name. Never null.
    [[nodiscard]] const CIEStation* GetStation() const { return &m_Center; }
    void SetStation(CIEStation center);
    /// Value by EArcDataType; 0 for any other key.
    [[nodiscard]] double GetData(int nKey) const;
    /// Any other key is passed over.
    void SetData(int nKey, double dValue);

protected:
    void DoSetName(CString name) override { m_Center.SetName(std::move(name)); }

private:
    CIEStation m_Center;
    std::array<double, kDataTypes> m_Data{};
};

/// Objects that stand for one thing together. Owns them; they belong to no dataset.
class ALIDADE_API CIECompositeObject : public CIEObject {
public:
    CIECompositeObject() = default;
    CIECompositeObject(const CIECompositeObject& other);
    CIECompositeObject& operator=(const CIECompositeObject& other);
    ~CIECompositeObject() override = default;

    [[nodiscard]] EIEObjectsType GetType() const override { return EIEObjectsType::Composite; }
    [[nodiscard]] int GetGroupType() const override { return CompositeLike; }
    [[nodiscard]] const CString& GetName() const override { return m_strName; }
    [[nodiscard]] std::unique_ptr<CIEObject> clone() const override
    {
        return std::make_unique<CIECompositeObject>(*this);
    }
    /// The stations of its parts, one part after the other.
    [[nodiscard]] int GetNumberOfStations() const override { return m_Ends.empty() ? 0 : m_Ends.back(); }
    [[nodiscard]] const CIEStation* GetStation(int i) const override;
    /// Moves every part.
    void ShiftCoords(const CIEStation& shift, double dNorthScale, double dEastScale, double dHeightScale) override;

    [[nodiscard]] int GetNumberOfParts() const { return static_cast<int>(m_Parts.size()); }
    /// Null past the end.
    [[nodiscard]] const CIEObject* GetPartAt(int i) const;
    /// False, with nothing added, for null and for another composite.
    bool AddPart(std::unique_ptr<CIEObject> pPart);

protected:
    void DoSetName(CString name) override { m_strName = std::move(name); }

private:
    CString m_strName;
    std::vector<std::unique_ptr<CIEObject>> m_Parts;
    std::vector<int> m_Ends; ///< stations up to and with each part
};
