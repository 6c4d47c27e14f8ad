// A point of a design with the measurements that were made of it.
// Any number of threads may read such a thing while none changes it.
#pragma once

#include "alidade/vellumlib/objects.h"

#include <optional>

/// A measurement of a sheet point, with how far it lies from the design. All eight values are metres, in a job of
/// latitude and longitude too, and 0 where they weren't told. Differences are measured less design.
class CIEOffsetStation : public CIEStation {
public:
    double m_dDeltaNorth = 0.0;
    double m_dDeltaEast = 0.0;
    double m_dDeltaHeight = 0.0;  ///< above 0 the ground is to be cut, below 0 to be filled
    double m_dLineStation = 0.0;  ///< where the measurement lies along the line that was staked out
    double m_dLineOffset = 0.0;   ///< how far it lies off that line, positive to the right
    double m_dDeltaStation = 0.0; ///< difference along the line
    double m_dDeltaOffset = 0.0;  ///< difference across the line, positive to the right
    double m_dDistance = 0.0;     ///< horizontal distance between design and measurement

    using CIEStation::CIEStation;
    CIEOffsetStation() = default;
    explicit CIEOffsetStation(CIEStation station) : CIEStation(std::move(station)) {}
};

/// A design point, which is station 0, and its checks or stakeouts, which are the further stations.
class ALIDADE_API CIESheetPoint : public CIEObject {
public:
    [[nodiscard]] EIEObjectsType GetType() const override { return EIEObjectsType::SheetPoint; }
    [[nodiscard]] int GetGroupType() const override { return SheetLike; }
    [[nodiscard]] const CString& GetName() const override { return m_strName; }
    [[nodiscard]] std::unique_ptr<CIEObject> clone() const override { return std::make_unique<CIESheetPoint>(*this); }
    /// The design point and its measurements; 0 without a design point.
    [[nodiscard]] int GetNumberOfStations() const override;
    /// Station 0 is the design point, all others are CIEOffsetStation. Null past the end. Valid until a station is set
    /// or added.
    [[nodiscard]] const CIEStation* GetStation(int i) const override;
    void ShiftCoords(const CIEStation& shift, double dNorthScale, double dEastScale, double dHeightScale) override;
    /// Measurement i, counted as in GetStation: from 1. Null for any other.
    [[nodiscard]] const CIEOffsetStation* GetOffsetStation(int i) const;

    /// Sets station 0, whose name may differ from the sheet point's.
    void SetDesignStation(CIEStation design) { m_Design = std::move(design); }
    /// Adds a measurement. False, with nothing added, without a design point.
    bool AddOffsetStation(CIEOffsetStation measurement);

protected:
    void DoSetName(CString name) override { m_strName = std::move(name); }

private:
    CString m_strName;
    std::optional<CIEStation> m_Design;
    std::vector<CIEOffsetStation> m_Measurements;
};
