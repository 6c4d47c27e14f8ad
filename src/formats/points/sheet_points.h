// Delimited lists of checks and stakeouts.
#pragma once

#include "alidade/frame/format_row.h"
#include "alidade/frame/point_exporter.h"

/// What passes through the form, if the layout has a field for it.
constexpr TIECarries kSheetPointsCarries = CARRIES_SHEET_POINTS | CARRIES_CODES | CARRIES_ATTRIBUTES |
                                           CARRIES_CODE_STRINGS | CARRIES_CONTROL_CODES | CARRIES_TIME_STAMPS;

/// Writes a line for each measurement of each sheet point, with the fields chosen out of those from SheetName on; any
/// other stays empty. Lengths are in the job's units, north and east of a geographic job in the settings' style. What
/// lies along, across and off the line has three decimals, all else those of the settings.
class CIESheetPointExporter : public CIEPointExporter {
public:
    using CIEPointExporter::CIEPointExporter;

    bool OpenFile() override;
    bool ExportObject(int nIndex) override;

private:
    bool WriteRow(const CIESheetPoint& sheet, int nMeasurement);
    void AddTexts(int nField, const CIESheetPoint& sheet, int nMeasurement);
    void AddPlaces(int nField, const CIEStation& design, const CIEStation& measured);
    void AddOffsets(int nField, const CIEOffsetStation& measured);
    void NoteMissing(const CIESheetPoint& sheet) const;
    void NoteTexts(const CIESheetPoint& sheet);
};
