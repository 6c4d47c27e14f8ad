// A set of objects within a job.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/alignment.h"
#include "alidade/vellumlib/gps_position.h"
#include "alidade/vellumlib/header_info.h"
#include "alidade/vellumlib/job_history.h"
#include "alidade/vellumlib/objects.h"
#include "alidade/vellumlib/sheet_point.h"
#include "alidade/vellumlib/surface.h"

#include <string_view>

/// Objects in order, surfaces, alignments and a job history, under a name. Owns all that it is given.
/// Any number of threads may read it while none changes it or one of its objects.
class ALIDADE_API CIEDataset {
public:
    explicit CIEDataset(CString name);
    ~CIEDataset();
    CIEDataset(const CIEDataset&) = delete;
    CIEDataset& operator=(const CIEDataset&) = delete;

    [[nodiscard]] const CString& GetName() const { return m_strName; }
    void SetName(CString name) { m_strName = std::move(name); }

    /// Adds an object behind the others and gives it back. Null adds nothing and gives null.
    CIEObject* Add(std::unique_ptr<CIEObject> pObject);
    CIESurface* Add(std::unique_ptr<CIESurface> pSurface);
    CIEAlignment* Add(std::unique_ptr<CIEAlignment> pAlignment);

    /// Takes object i out and deletes it; the ones behind it move up. Past the end nothing happens. Taking the last one
    /// costs nothing, taking one from the middle as much as there are behind it.
    void RemoveObject(int i);
    /// Takes out and deletes the objects for which `unwanted` is true, in one pass.
    template <class TPredicate>
    void RemoveObjectsIf(TPredicate unwanted);
    /// Null past the end.
    [[nodiscard]] CIEObject* GetObjectAt(int i) const;

    /// Objects of a kind (an EIEObjectsType, or -1 for all) in a state (a CIEObject::EState, or 2 for any). `bStations`
    /// counts the objects' stations instead of the objects; `bNamed` counts only objects with a name.
    /// (-1, 2, false, false) counts all that GetObjectAt reaches, in constant time.
    [[nodiscard]] int GetNumberOfElements(int nKind, int nState, bool bStations, bool bNamed) const;

    /// First object of that name, in the order in which they got it; null if there is none, and for the empty name.
    /// Constant time once the first call has built the index. Threads that only read may call it at the same time.
    [[nodiscard]] CIEObject* FindObject(std::string_view name) const;

    /// Puts a polygon with the same stations, name, codes, layer and state in the place of a polyline. Null, with
    /// nothing changed, if that object isn't a polyline of this dataset. The last object is found at once.
    CIEPolygon* TransformLineToPolygon(const CIEPolyLine* pLine);

    [[nodiscard]] int GetNumberOfSurfaces() const { return static_cast<int>(m_Surfaces.size()); }
    [[nodiscard]] CIESurface* GetSurfaceAt(int i) const;
    /// Deletes all surfaces; likewise all alignments below.
    void RemoveSurfaces() { m_Surfaces.clear(); }
    [[nodiscard]] int GetNumberOfAlignments() const { return static_cast<int>(m_Alignments.size()); }
    [[nodiscard]] CIEAlignment* GetAlignmentAt(int i) const;
    void RemoveAlignments() { m_Alignments.clear(); }

    /// Extent and sizes for drawings; never null. Unless the host has set the borders, each call goes over all objects
    /// and surfaces to find them, leaving out the objects of blocks, which aren't on the ground: ask once for a run.
    [[nodiscard]] CHeaderInfo* GetHeaderInfo();
    /// The same as it was found last, for its sizes.
    [[nodiscard]] const CHeaderInfo& GetHeaderSettings() const { return m_HeaderInfo; }
    /// Borders that stay as they are, whatever is added.
    void FixBorders(CIEStation minimum, CIEStation maximum);
    [[nodiscard]] bool HasFixedBorders() const { return m_bFixedBorders; }

    /// Whether any object has a code. Goes over the objects until it meets one.
    [[nodiscard]] bool IsCodesExist() const;

    /// What was done in the dataset; null if nothing was recorded.
    [[nodiscard]] CIEJobHistory* GetJobHistory() const { return m_pJobHistory.get(); }
    /// Replaces it; null takes it away.
    void SetJobHistory(std::unique_ptr<CIEJobHistory> pHistory) { m_pJobHistory = std::move(pHistory); }

private:
    friend class CIEObject;
    struct TIndex;

    void EnterIndex(CIEObject* pObject) const;
    void LeaveIndex(const CIEObject* pObject) const;
    void DropIndex();
    void ForgetStartPoint(const CIEObject* pObject) const;

    CString m_strName;
    std::vector<std::unique_ptr<CIEObject>> m_Objects;
    std::vector<std::unique_ptr<CIESurface>> m_Surfaces;
    std::vector<std::unique_ptr<CIEAlignment>> m_Alignments;
    std::unique_ptr<CIEJobHistory> m_pJobHistory;
    CHeaderInfo m_HeaderInfo;
    bool m_bFixedBorders = false;
    std::unique_ptr<TIndex> m_pIndex; // its content is built by the first FindObject
};

template <class TPredicate>
void CIEDataset::RemoveObjectsIf(TPredicate unwanted)
{
    std::erase_if(m_Objects, [&](const std::unique_ptr<CIEObject>& pObject) {
        if (!unwanted(*pObject))
            return false;
        ForgetStartPoint(pObject.get());
        return true;
    });
    DropIndex();
}
