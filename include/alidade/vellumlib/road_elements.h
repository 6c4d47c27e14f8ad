// The pieces that a road is made of: horizontal elements, intersection points, the profile's sections and vertical
// elements.
// Any number of threads may read such a thing while none changes it.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/types.h"

#include <array>
#include <cstddef>

/// A position in the plan (north, east) or in the profile (station, elevation), in metres.
class ALIDADE_API CIEPosition2D {
public:
    /// A position that was never set.
    CIEPosition2D() = default;
    CIEPosition2D(double dFirst, double dSecond) : m_dFirst(dFirst), m_dSecond(dSecond), m_bDefined(true) {}

    void Set(double dFirst, double dSecond) { *this = CIEPosition2D(dFirst, dSecond); }
    /// False until the position was set; both values are 0 then.
    [[nodiscard]] bool IsDefined() const { return m_bDefined; }

    /// First member: north or station.
    [[nodiscard]] double GetFirst() const { return m_dFirst; }
    /// Second member: east or elevation.
    [[nodiscard]] double GetSecond() const { return m_dSecond; }
    [[nodiscard]] double GetNorth() const { return m_dFirst; }
    [[nodiscard]] double GetEast() const { return m_dSecond; }
    [[nodiscard]] double GetStation() const { return m_dFirst; }
    [[nodiscard]] double GetElevation() const { return m_dSecond; }

    bool operator==(const CIEPosition2D&) const = default;

private:
    double m_dFirst = 0.0;
    double m_dSecond = 0.0;
    bool m_bDefined = false;
};

/// Kinds of objects in a horizontal alignment.
enum class EIEAlignmentObjType : int {
    Line = 0,
    Curve = 1,
    Spiral = 2,
    IntersectionPoint = 3,
};

// Keys of GetData and SetData. Lengths, stations, radii and elevations are metres, azimuths and angles decimal degrees,
// grades percent. Radii are signed: positive to the right.

enum class ELineDataType : int { Azimuth = 0, Length = 1, StartStation = 2 };

enum class ECurveDataType : int {
    Length = 0,
    Radius = 1,
    EndAzimuth = 2,
    StartAzimuth = 3,
    StartStation = 4,
    CentralAngle = 5,
};

enum class ESpiralDataType : int {
    Length = 0,
    StartRadius = 1, ///< 0 where the spiral starts from a straight
    EndAzimuth = 2,
    StartAzimuth = 3,
    StartStation = 4,
    EndRadius = 5, ///< 0 where the spiral ends in a straight
    Constant = 6,  ///< constant of the spiral as a file told it; not computed with
};

enum class EIPDataType : int { Radius = 0, EntryTangentLength = 1, ExitTangentLength = 2 };

enum class ELSDataType : int {
    Station = 0,
    Elevation = 1,
    ParabolaLength = 2, ///< 0 where the grade breaks without a parabola
    Grade = 3,
    Further = 4, ///< a value kept as a file told it; not computed with
};

enum class EVEDataType : int {
    StartStation = 0,
    EndStation = 1,
    Length = 2,
    Grade = 3, ///< at the start
    StartElevation = 4,
    EndElevation = 5,
    Station = 6,   ///< of the point where the tangents meet
    Elevation = 7, ///< of the same point
    EndGrade = 8,
    ParabolaCoefficient = 9, ///< a in: rise over the start tangent = a * distance squared; 1 over metres
};

/// Values by key, all 0 at first. A key from outside the enumeration reads 0 and isn't set.
template <class EKey, int nKeys>
class TIERoadValues {
public:
    static constexpr int kKeys = nKeys;

    [[nodiscard]] double GetData(EKey key) const
    {
        const auto i = static_cast<std::size_t>(key);
        return i < m_Values.size() ? m_Values[i] : 0.0;
    }
    void SetData(EKey key, double dValue)
    {
        const auto i = static_cast<std::size_t>(key);
        if (i < m_Values.size())
            m_Values[i] = dValue;
    }

private:
    std::array<double, nKeys> m_Values{};
};

/// An object of a horizontal alignment. Belongs to the alignment that it was added to.
class ALIDADE_API CIEAlignmentObject {
public:
    virtual ~CIEAlignmentObject() = default;
    [[nodiscard]] virtual EIEAlignmentObjType GetType() const = 0;
    /// Undefined if the object was made from lengths and azimuths alone.
    [[nodiscard]] virtual CIEPosition2D GetStartPosition() const = 0;
    /// Metres along the alignment.
    [[nodiscard]] virtual double GetElementLength() const = 0;

protected:
    CIEAlignmentObject() = default;
    CIEAlignmentObject(const CIEAlignmentObject&) = default;
    CIEAlignmentObject& operator=(const CIEAlignmentObject&) = default;
};

/// A line, curve or spiral: values by key, positions by index, the first of them the start.
template <EIEAlignmentObjType eType, class EKey, int nKeys, EKey eLength, int nPositions>
class TIEHorizontalElement : public CIEAlignmentObject, public TIERoadValues<EKey, nKeys> {
public:
    static constexpr int kPositions = nPositions;

    [[nodiscard]] EIEAlignmentObjType GetType() const override { return eType; }
    [[nodiscard]] CIEPosition2D GetStartPosition() const override { return m_Positions[0]; }
    [[nodiscard]] double GetElementLength() const override { return this->GetData(eLength); }

    /// Undefined for an index past the end.
    [[nodiscard]] CIEPosition2D GetPosition(int i) const
    {
        return i >= 0 && i < nPositions ? m_Positions[static_cast<std::size_t>(i)] : CIEPosition2D();
    }
    /// An index past the end is passed over.
    void SetPosition(int i, const CIEPosition2D& position)
    {
        if (i >= 0 && i < nPositions)
            m_Positions[static_cast<std::size_t>(i)] = position;
    }

    /// Says that the start azimuth isn't given and follows from the element before.
    void SetAzToPrevEl(bool bFollows = true) { m_bAzToPrevEl = bFollows; }
    [[nodiscard]] bool IsAzToPrevEl() const { return m_bAzToPrevEl; }

private:
    std::array<CIEPosition2D, nPositions> m_Positions;
    bool m_bAzToPrevEl = false;
};

/// A straight.
class ALIDADE_API CIELine2D
    : public TIEHorizontalElement<EIEAlignmentObjType::Line, ELineDataType, 3, ELineDataType::Length, 2> {
public:
    enum EPosition : int { Start = 0, End = 1 };
};

/// A circular curve.
class ALIDADE_API CIECurve
    : public TIEHorizontalElement<EIEAlignmentObjType::Curve, ECurveDataType, 6, ECurveDataType::Length, 4> {
public:
    enum EPosition : int { Start = 0, Centre = 1, End = 2, Intersection = 3 };
    /// How the curve's length and degree of curvature are told.
    enum ECurveType : int { ArcDefinition = 0, ChordDefinition = 1 };

    [[nodiscard]] int GetCurveType() const { return m_nCurveType; }
    void SetCurveType(int nType) { m_nCurveType = nType; }

private:
    int m_nCurveType = ArcDefinition;
};

/// A transition curve.
class ALIDADE_API CIESpiral
    : public TIEHorizontalElement<EIEAlignmentObjType::Spiral, ESpiralDataType, 7, ESpiralDataType::Length, 3> {
public:
    enum EPosition : int { Start = 0, End = 1, Intersection = 2 };
    enum ESpiralType : int {
        Biquadratic = 0,
        Bloss = 1,
        Clothoid = 2,
        Cosine = 3,
        Cubic = 4,
        Sinusoid = 5,
        RevBiquadratic = 6,
        RevBloss = 7,
        RevCosine = 8,
        RevSinusoid = 9,
    };

    [[nodiscard]] int GetSpiralType() const { return m_nSpiralType; }
    void SetSpiralType(int nType) { m_nSpiralType = nType; }
    /// "clothoid", "revBloss" and so on; "clothoid" for a number that is no type.
    [[nodiscard]] const char* GetSpiralTypeAsString() const;
    /// The type of such a word, Clothoid for any other. The case matters.
    static int GetSpiralTypeFromString(const CString& word);

private:
    int m_nSpiralType = Clothoid;
};

/// A point where two straights meet, rounded by a curve with up to two spirals, or left as a corner. Owns its parts;
/// each part may be absent.
class ALIDADE_API CIEIntersectionPoint : public CIEAlignmentObject, public TIERoadValues<EIPDataType, 3> {
public:
    /// A simple point is a corner without curve and spirals: only its segment counts.
    explicit CIEIntersectionPoint(bool bSimple) : m_bSimple(bSimple) {}

    [[nodiscard]] EIEAlignmentObjType GetType() const override { return EIEAlignmentObjType::IntersectionPoint; }
    [[nodiscard]] bool IsSimplePoint() const { return m_bSimple; }
    void SetSimplePoint(bool bSimple) { m_bSimple = bSimple; }

    /// Position of the point itself.
    [[nodiscard]] CIEPosition2D GetStartPosition() const override { return m_Position; }
    [[nodiscard]] const CIEPosition2D& GetPosition() const { return m_Position; }
    void SetPosition(double dNorth, double dEast) { m_Position.Set(dNorth, dEast); }
    void SetPosition(const CIEPosition2D& position) { m_Position = position; }

    /// The parts' lengths together; of a simple point the segment's.
    [[nodiscard]] double GetElementLength() const override;

    /// The straight that leads to the curve. Null if there is none.
    [[nodiscard]] CIELine2D* GetSegment() const { return m_pSegment.get(); }
    void SetSegment(std::unique_ptr<CIELine2D> pSegment) { m_pSegment = std::move(pSegment); }
    /// Null if there is none.
    [[nodiscard]] CIESpiral* GetFirstSpiral() const { return m_pFirstSpiral.get(); }
    void SetFirstSpiral(std::unique_ptr<CIESpiral> pSpiral) { m_pFirstSpiral = std::move(pSpiral); }
    /// Null if there is none.
    [[nodiscard]] CIECurve* GetCurve() const { return m_pCurve.get(); }
    void SetCurve(std::unique_ptr<CIECurve> pCurve) { m_pCurve = std::move(pCurve); }
    /// Null if there is none.
    [[nodiscard]] CIESpiral* GetSecondSpiral() const { return m_pSecondSpiral.get(); }
    void SetSecondSpiral(std::unique_ptr<CIESpiral> pSpiral) { m_pSecondSpiral = std::move(pSpiral); }

private:
    CIEPosition2D m_Position;
    std::unique_ptr<CIELine2D> m_pSegment;
    std::unique_ptr<CIESpiral> m_pFirstSpiral;
    std::unique_ptr<CIECurve> m_pCurve;
    std::unique_ptr<CIESpiral> m_pSecondSpiral;
    bool m_bSimple;
};

/// A piece of the profile: a straight grade or a parabola.
class ALIDADE_API CIEVerticalElement : public TIERoadValues<EVEDataType, 10> {
public:
    enum EElementType : int { Straight = 0, Parabola = 1 };

    explicit CIEVerticalElement(EElementType eType) : m_eType(eType) {}
    virtual ~CIEVerticalElement() = default;

    [[nodiscard]] EElementType GetElementType() const { return m_eType; }
    /// Start station and start elevation.
    [[nodiscard]] virtual CIEPosition2D GetStartPosition() const;

private:
    EElementType m_eType;
};

/// A point of the profile where the grade changes. Belongs to the alignment that it was added to, and knows its
/// neighbours there.
class ALIDADE_API CIELongSection : public TIERoadValues<ELSDataType, 5> {
public:
    CIELongSection() = default;
    virtual ~CIELongSection() = default;
    CIELongSection(const CIELongSection&) = delete; // its neighbours would not know the copy
    CIELongSection& operator=(const CIELongSection&) = delete;

    /// Station and elevation.
    [[nodiscard]] virtual CIEPosition2D GetStartPosition() const;

    /// The parabola that rounds the grade change: the one that was set, else the symmetric one that the parabola length
    /// and the grades to both neighbours give. Null without a length, or at an end of the profile, or where stations
    /// don't ascend.
    [[nodiscard]] std::unique_ptr<CIEVerticalElement> GetParabola() const;
    /// Replaces the computed parabola; null goes back to it.
    void SetParabola(std::unique_ptr<CIEVerticalElement> pParabola) { m_pParabola = std::move(pParabola); }
    /// The parabola that was set; null while it is computed.
    [[nodiscard]] const CIEVerticalElement* GetOwnParabola() const { return m_pParabola.get(); }

private:
    friend class CIEAlignment;
    std::unique_ptr<CIEVerticalElement> m_pParabola;
    const CIELongSection* m_pPrevious = nullptr; // neighbours in the alignment; not owned
    const CIELongSection* m_pNext = nullptr;
};
