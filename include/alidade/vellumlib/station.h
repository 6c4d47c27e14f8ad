// A place on the ground with its name and what was noted there.
// Any number of threads may read such a thing while none changes it.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/types.h"

/// North, east and height in metres; in a job of latitude and longitude, north and east are decimal degrees.
class ALIDADE_API CIEStation {
public:
    double m_dNorth = 0.0;
    double m_dEast = 0.0;
    double m_dHeight = 0.0; ///< 0 while the height is undefined

    CIEStation() = default;
    CIEStation(double dNorth, double dEast, double dHeight) : m_dNorth(dNorth), m_dEast(dEast), m_dHeight(dHeight) {}
    CIEStation(const CIEStation& other);
    CIEStation& operator=(const CIEStation& other);
    CIEStation(CIEStation&&) noexcept = default;
    CIEStation& operator=(CIEStation&&) noexcept = default;
    ~CIEStation() = default;

    [[nodiscard]] const CString& GetName() const { return m_strName; }
    void SetName(CString name) { m_strName = std::move(name); }

    /// Free text of the surveyor; empty if there is none.
    [[nodiscard]] const CString& GetNotes() const;
    void SetNotes(CString notes);

    [[nodiscard]] double GetHeight() const { return m_dHeight; }
    /// A station has a height unless it was taken away; setting one brings it back.
    void SetHeight(double dHeight)
    {
        m_dHeight = dHeight;
        m_bHeightDefined = true;
    }
    void SetHeightUndefined()
    {
        m_dHeight = 0.0;
        m_bHeightDefined = false;
    }
    [[nodiscard]] bool IsHeightDefined() const { return m_bHeightDefined; }

    /// Height of the geoid above the ellipsoid, metres; 0 if it was never set.
    [[nodiscard]] double GetGeoidHeight() const;
    void SetGeoidHeight(double dHeight);

    /// Date and time of the measurement as the data collector wrote them; empty if there are none.
    [[nodiscard]] const CString& GetTimeStamps() const;
    void SetTimeStamps(CString stamps);

    /// A number that the host gives its stations; 0 unless set.
    [[nodiscard]] int GetStationType() const { return m_nStationType; }
    void SetStationType(int nType) { m_nStationType = nType; }

    /// Multiplies each coordinate by its scale and then adds the one of `shift`. A height that is undefined stays so.
    void ShiftCoords(const CIEStation& shift, double dNorthScale, double dEastScale, double dHeightScale);

    /// Same place: north, east and height are exactly equal, and both heights are defined or neither is. Names and
    /// notes play no part, so the ends of a closed line are equal whatever was noted at each.
    bool operator==(const CIEStation& other) const
    {
        return m_dNorth == other.m_dNorth && m_dEast == other.m_dEast && m_dHeight == other.m_dHeight &&
               m_bHeightDefined == other.m_bHeightDefined;
    }

private:
    /// What few stations have, kept apart so that a plain one stays small.
    struct TExtras {
        CString m_strNotes;
        CString m_strTimeStamps;
        double m_dGeoidHeight = 0.0;
    };
    TExtras& Extras();

    CString m_strName;
    std::unique_ptr<TExtras> m_pExtras;
    int m_nStationType = 0;
    bool m_bHeightDefined = true;
};
