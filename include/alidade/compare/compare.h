// What differs between two jobs.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/data.h"

#include <cstdint>
#include <map>
#include <tuple>
#include <vector>

/// One thing that isn't the same in both jobs.
struct TIEDifference {
    enum EKind : int {
        Added = 0,  ///< the second job has it, the first hasn't
        Gone = 1,   ///< the first job has it, the second hasn't
        Changed = 2 ///< both have it, and the property says another thing
    };
    EKind m_eKind = Changed;
    const char* m_pThing = ""; ///< "point", "line", "layer", "code", "surface", "alignment"...; lives for ever
    const char* m_pProperty =
        ""; ///< "north", "name", "layer", "attributes"...; empty where the whole thing is added or gone; lives for ever
    CString m_strDataset;  ///< of the first job, of the second where a thing is added; empty for dictionaries
    CString m_strName;     ///< of the thing, in the first job unless it is added
    int m_nPart = -1;      ///< station, element, segment or table within the thing, from 0; -1 is the thing itself
    CString m_strFirst;    ///< what the first job says; numbers in the job's own units: metres, decimal degrees
    CString m_strSecond;   ///< what the second job says
    bool m_bPlace = false; ///< whether it has a place on the ground
    double m_dNorth = 0.0; ///< metres, or latitude in decimal degrees in a geographic job
    double m_dEast = 0.0;  ///< likewise
    const CIEObject* m_pObject = nullptr; ///< the object of m_strName, if it is one; lives as long as its job
    const CIEObject* m_pOther = nullptr;  ///< its counterpart in the second job, where something changed
};

/// Hears of differences while they are found.
class ALIDADE_API IIEDifferenceSink {
public:
    virtual ~IIEDifferenceSink() = default;
    virtual void OnDifference(const TIEDifference& difference) = 0;
};

/// How exact a comparison is. A difference up to the tolerance is none.
struct TIECompareOptions {
    double m_dPlane = 0.0;  ///< north and east: metres, or decimal degrees in a geographic job
    double m_dHeight = 0.0; ///< heights and elevations, metres
    double m_dNumber = 0.0; ///< lengths, stations and offsets in metres, angles in degrees, and values without a unit
    /// True pairs datasets by name, and what is left over in order; false takes all of a job's datasets as one, as most
    /// files hold them.
    bool m_bDatasets = false;
    bool m_bInfo = false; ///< also what the jobs say of themselves: names, units, conditions
};

/// Finds what differs. Objects belong together by name; where a name is missing, repeated or another, by kind and
/// place. The work grows with the sizes of the jobs, sorting aside, and beside the jobs some forty bytes an object are
/// held. Nothing is changed in either job; both may be read by other threads meanwhile. Ends early, with what was found
/// so far, once CIEData::m_bStopProcess is set. Gives the number of differences; no memory throws std::bad_alloc.
ALIDADE_API std::int64_t CompareJobs(const CIEData& first, const CIEData& second, const TIECompareOptions& options,
                                     IIEDifferenceSink& sink);

/// Counts differences by kind, thing and property, and keeps the first hundred of each, so that two jobs that have
/// nothing in common don't fill the memory.
class ALIDADE_API CIEDifferenceCounter : public IIEDifferenceSink {
public:
    static constexpr std::size_t kKeptOfEach = 100;
    /// Kind, thing, property.
    using TKey = std::tuple<TIEDifference::EKind, CString, CString>;

    void OnDifference(const TIEDifference& difference) override;
    [[nodiscard]] const std::map<TKey, std::int64_t>& GetCounts() const { return m_Counts; }
    /// The differences that were kept, in the order in which they came.
    [[nodiscard]] const std::vector<TIEDifference>& GetKept() const { return m_Kept; }
    [[nodiscard]] std::int64_t GetTotal() const { return m_nTotal; }

private:
    std::map<TKey, std::int64_t> m_Counts;
    std::vector<TIEDifference> m_Kept;
    std::int64_t m_nTotal = 0;
};
