// A point from a satellite receiver, with what the receiver said of it.
// Any number of threads may read such a thing while none changes it.
#pragma once

#include "alidade/platform/system.h"
#include "alidade/vellumlib/objects.h"

#include <cmath>

/// Variances and covariances of a position in square metres. X runs east, Y north, Z upwards.
struct TGPSCoordCovMatrix {
    double m_dXX = 0.0;
    double m_dYY = 0.0;
    double m_dZZ = 0.0;
    double m_dXY = 0.0;
    double m_dXZ = 0.0;
    double m_dYZ = 0.0;

    /// Root mean square errors in metres: the square root of XX + YY + ZZ, of XX + YY, and of ZZ. A sum below 0, which
    /// no covariance has, gives 0.
    [[nodiscard]] double GetRMS() const { return Root(m_dXX + m_dYY + m_dZZ); }
    [[nodiscard]] double GetHRMS() const { return Root(m_dXX + m_dYY); }
    [[nodiscard]] double GetVRMS() const { return Root(m_dZZ); }

    bool operator==(const TGPSCoordCovMatrix&) const = default;

private:
    [[nodiscard]] static double Root(double dSum) { return dSum > 0.0 ? std::sqrt(dSum) : 0.0; }
};

/// Dilutions of precision; 0 where it wasn't told.
struct TGPSDOP {
    double m_dGDOP = 0.0; ///< of position and time together
    double m_dHDOP = 0.0; ///< horizontal
    double m_dVDOP = 0.0; ///< vertical
    double m_dPDOP = 0.0; ///< of the position

    bool operator==(const TGPSDOP&) const = default;
};

/// A point that was measured with a satellite receiver. What the receiver said of it, each part of which may be
/// missing, stands apart, so that a position without it is as small as a plain point.
class ALIDADE_API CIEGPSPosition : public CIEDesignPoint {
public:
    enum ERawDataType : int {
        NoRawData = -1,   ///< nothing is known of satellites
        SatelliteData = 1 ///< it has DOP, solution and numbers of satellites
    };
    enum ESolutionType : int {
        NoSolution = 0,
        Autonomous = 1,    ///< of the receiver alone
        Differential = 2,  ///< with code corrections
        Float = 3,         ///< of carrier phases whose ambiguities aren't fixed
        Fixed = 4,         ///< of carrier phases with fixed ambiguities
        Estimated = 5,     ///< carried on from earlier positions
        WideLaneFixed = 6, ///< fixed by combined frequencies
        NetworkFloat = 7,  ///< float with the corrections of a network of stations
        NetworkFixed = 8   ///< fixed with them
    };
    /// Words for ESolutionType, from 0 on.
    static constexpr const char* kSolutionWords[] = {"none",         "autonomous", "differential",    "float",
                                                     "fixed",        "estimated",  "wide-lane-fixed", "network-float",
                                                     "network-fixed"};

    using CIEDesignPoint::CIEDesignPoint;
    CIEGPSPosition() = default;
    CIEGPSPosition(const CIEGPSPosition& other);
    CIEGPSPosition& operator=(const CIEGPSPosition& other);
    ~CIEGPSPosition() override = default;

    [[nodiscard]] EIEObjectsType GetType() const override { return EIEObjectsType::GPSPosition; }
    [[nodiscard]] std::unique_ptr<CIEObject> clone() const override { return std::make_unique<CIEGPSPosition>(*this); }

    /// True if any of the parts below was set.
    [[nodiscard]] bool HasGPSData() const { return m_pGPSData != nullptr; }

    /// All 0 while there is none.
    [[nodiscard]] const TGPSCoordCovMatrix& GetCV() const { return GPSData().m_CV; }
    void SetCV(const TGPSCoordCovMatrix& cv);
    [[nodiscard]] bool HasCV() const { return GPSData().m_bCV; }

    /// Local date and time of the measurement; all 0 while there is none.
    [[nodiscard]] const TIEDateTime& GetTime() const { return GPSData().m_Time; }
    /// False, with nothing changed, if there is no such date (years 1 to 9999) or time.
    bool SetTime(const TIEDateTime& time);
    [[nodiscard]] bool HasTime() const { return GPSData().m_Time.m_nMonth != 0; }

    /// An ERawDataType. It becomes SatelliteData with the first of the four parts below that is set.
    [[nodiscard]] int GetRawDataType() const { return GPSData().m_nRawDataType; }
    /// Any other type than SatelliteData takes the four parts away.
    void SetRawDataType(int nType);
    [[nodiscard]] const TGPSDOP& GetDOP() const { return GPSData().m_DOP; }
    void SetDOP(const TGPSDOP& dop);
    /// An ESolutionType; a host may use further numbers of its own.
    [[nodiscard]] int GetSolutionType() const { return GPSData().m_nSolutionType; }
    void SetSolutionType(int nType);
    /// The word of kSolutionWords, or "unknown" for a number that has none.
    [[nodiscard]] CString GetSolutionTypeAsString() const;
    [[nodiscard]] int GetNumberOfGpsSats() const { return GPSData().m_nGpsSats; }
    void SetNumberOfGpsSats(int nCount);
    [[nodiscard]] int GetNumberOfGlonassSats() const { return GPSData().m_nGlonassSats; }
    void SetNumberOfGlonassSats(int nCount);

    /// Whether two positions say the same of all of this.
    [[nodiscard]] bool HasSameGPSData(const CIEGPSPosition& other) const { return GPSData() == other.GPSData(); }

private:
    struct TGPSData {
        TGPSCoordCovMatrix m_CV;
        TIEDateTime m_Time;
        TGPSDOP m_DOP;
        int m_nRawDataType = NoRawData;
        int m_nSolutionType = NoSolution;
        int m_nGpsSats = 0;
        int m_nGlonassSats = 0;
        bool m_bCV = false;

        bool operator==(const TGPSData&) const = default;
    };
    [[nodiscard]] const TGPSData& GPSData() const;
    TGPSData& NeedGPSData();
    TGPSData& NeedSatellites();

    std::unique_ptr<TGPSData> m_pGPSData;
};
