// What a job says of itself.
// Any number of threads may read such a thing while none changes it.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/types.h"

#include <optional>

/// Texts, units and conditions of a job.
struct ALIDADE_API TIEJobInfo {
    CString m_strAppName;
    CString m_strAppDescription;
    CString m_strAppVersion;
    CString m_strAppText; ///< a further text of the application
    CString m_strJobName;
    CString m_strJobComment;
    CString m_strObserver;
    CString m_strInstrument;
    int m_nPrismConstant = 0; ///< millimetres

    enum ECSType : int {
        Geographic = 0, ///< north and east of a station are latitude and longitude
        Plane = 1
    };
    [[nodiscard]] int GetCSType() const { return m_nCSType; }
    void SetCSType(int nType) { m_nCSType = nType; }

    [[nodiscard]] EDIST_UNITS GetDistUnits() const { return m_eDistUnits; }
    /// The same by an out value; true.
    bool GetDistUnits(EDIST_UNITS& units) const;
    void SetDistUnits(EDIST_UNITS units) { m_eDistUnits = units; }

    [[nodiscard]] EANGLE_UNITS GetAngleUnits() const { return m_eAngleUnits; }
    /// The same by an out value; true.
    bool GetAngleUnits(EANGLE_UNITS& units) const;
    void SetAngleUnits(EANGLE_UNITS units) { m_eAngleUnits = units; }

    /// A measured value with the number of its unit. False, with nothing stored, if the job has none.
    bool GetTemperature(double& dValue, int& nUnit) const;
    void SetTemperature(double dValue, int nUnit) { m_Temperature = TMeasured{dValue, nUnit}; }
    bool GetPressure(double& dValue, int& nUnit) const;
    void SetPressure(double dValue, int nUnit) { m_Pressure = TMeasured{dValue, nUnit}; }

    /// Date and time at which the job was made, as the host gave them. False, with nothing stored, if it gave none.
    bool GetCreateTimeStr(CString& strDate, CString& strTime) const;
    void SetCreateTimeStr(CString strDate, CString strTime);

    /// Scale from ellipsoid to grid and elevation in metres. False, with 1 and 0 stored, if the job has none.
    bool GetEllToGridScaleAndElevation(double& dScale, double& dElevation) const;
    void SetEllToGridScaleAndElevation(double dScale, double dElevation) { m_Scale = TScale{dScale, dElevation}; }

    /// Names of the projection, datum and geoid in use; empty if there are none.
    [[nodiscard]] const CString& GetProjection() const { return m_strProjection; }
    void SetProjection(CString name) { m_strProjection = std::move(name); }
    [[nodiscard]] const CString& GetDatum() const { return m_strDatum; }
    void SetDatum(CString name) { m_strDatum = std::move(name); }
    [[nodiscard]] const CString& GetGeoid() const { return m_strGeoid; }
    void SetGeoid(CString name) { m_strGeoid = std::move(name); }

private:
    struct TMeasured {
        double m_dValue;
        int m_nUnit;
    };
    struct TScale {
        double m_dScale;
        double m_dElevation;
    };

    int m_nCSType = Plane;
    EDIST_UNITS m_eDistUnits = EDIST_UNITS::Meters;
    EANGLE_UNITS m_eAngleUnits = EANGLE_UNITS::DegreesMinutesSeconds;
    std::optional<TMeasured> m_Temperature;
    std::optional<TMeasured> m_Pressure;
    std::optional<TScale> m_Scale;
    CString m_strCreateDate;
    CString m_strCreateTime;
    CString m_strProjection;
    CString m_strDatum;
    CString m_strGeoid;
};
