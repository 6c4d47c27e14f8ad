// SIMA point records: comma fields, a head of two lines, a foot of one.
#pragma once

#include "alidade/frame/format_row.h"
#include "alidade/frame/point_exporter.h"

/// What passes through the form.
constexpr TIECarries kSimaCarries = CARRIES_POINTS;

/// Writes the point-like objects as SIMA point records, numbered from 1 in the order of writing. North and east are in
/// the job's units, or decimal degrees in a geographic job; the height is in the job's units.
class ALIDADE_API CSimaPtExporterJ : public CIEPointExporter {
public:
    /// With `bNumbersOnly` the records carry no name.
    CSimaPtExporterJ(CIEData* pData, const CString& strFileName, bool bNumbersOnly);
    /// A copy writes on into the same file; the first of the two that closes it, closes it for both.
    CSimaPtExporterJ(const CSimaPtExporterJ& other);
    CSimaPtExporterJ& operator=(const CSimaPtExporterJ& other);
    ~CSimaPtExporterJ() override;

    bool WriteHeader() override;
    bool WriteFooter() override;
    /// True, whatever the write gave; the observer learns of a file that failed.
    bool WriteStation(const CIEStation* pStation, const CIEObject* pObject) override;

private:
    void NoteName(const CString& strName) const;
    /// `values`: north, east, height in the units of the file.
    bool Write1Line(const CString& name, const double* values);

    bool m_bNumbersOnly;
    int m_nPointNumber = 1; ///< next running number
};
