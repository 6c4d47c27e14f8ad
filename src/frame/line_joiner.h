// Points in a row that share a name make a line.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/dataset.h"

/// Puts points into a dataset in the order in which a file holds them. Consecutive ones of one name become a polyline
/// with the codes of the first; one whose first station equals its last becomes a polygon as soon as it ends. Names are
/// compared exactly, and points without a name stay points.
class CIELineJoiner {
public:
    /// The dataset must outlive the joiner.
    explicit CIELineJoiner(CIEDataset& dataset) : m_Dataset(dataset) {}

    /// Takes the next point. False if it joined a line that doesn't have its codes: they are lost.
    bool Add(std::unique_ptr<CIEObject> pObject);
    /// No further point joins the open line.
    void Close();

private:
    bool Extend(const CIEObject& object);

    CIEDataset& m_Dataset;
    CIEPolyLine* m_pOpenLine = nullptr; // belongs to the dataset
};
