// Delimited lists of GPS positions.
#pragma once

#include "alidade/frame/format_row.h"
#include "alidade/frame/point_exporter.h"

/// What passes through the form, if the layout has a field for it.
constexpr TIECarries kGPSListCarries = CARRIES_GPS_DATA | CARRIES_POINT_KINDS | CARRIES_CODES | CARRIES_ATTRIBUTES |
                                       CARRIES_CODE_STRINGS | CARRIES_CONTROL_CODES | CARRIES_NOTES |
                                       CARRIES_GEOID_HEIGHTS;

/// Writes the GPS positions alone, a line each, with the fields of delimited text and, as chosen, accuracy, date, time,
/// DOP, solution and satellites. Accuracy is in the job's units; all of these have three decimals. What the receiver
/// didn't tell of satellites stays empty; an accuracy or a time that isn't known is written as 0.
class CIEGPSListExporter : public CIEPointExporter {
public:
    using CIEPointExporter::CIEPointExporter;

    bool OpenFile() override;
    bool WriteStation(const CIEStation* pStation, const CIEObject* pObject) override;

private:
    void AddGPSField(int nField, const CIEGPSPosition& position);
    void NoteMissing(const CIEGPSPosition& position) const;
    void NoteTexts(const CIEGPSPosition& position);
};
