// Jobs of many points.
#pragma once

#include "point_list.h"

#include "alidade/vellumlib/data.h"

#include <memory>

namespace PointJobs {

/// A job in metres whose current dataset holds the first `nCount` points of the list, each with its code.
inline std::unique_ptr<CIEData> Make(std::size_t nCount)
{
    auto pJob = std::make_unique<CIEData>();
    CIEDataset* const pDataset = pJob->AddDataset(std::make_unique<CIEDataset>("points"));
    std::array<const CIECodeDescription*, PointList::kCodes.size()> codes{};
    for (std::size_t i = 0; i < codes.size(); ++i)
        codes[i] = pJob->AddCodeToIEDataDictionary(std::make_unique<CIECodeDescription>(CString(PointList::kCodes[i])));
    for (std::size_t i = 0; i < nCount; ++i) {
        PointList::TPoint point = PointList::MakePoint(i);
        CIEStation station(point.m_dNorth, point.m_dEast, point.m_dHeight);
        station.SetName(std::move(point.m_strName));
        auto pPoint = std::make_unique<CIEDesignPoint>(std::move(station));
        pPoint->AddCode(CIECodeValues(codes[i % codes.size()]));
        pDataset->Add(std::move(pPoint));
    }
    TIESettings settings = pJob->GetCopyOfSettings();
    settings.m_bSingleFile = true; // the file is named as asked for, not after the dataset
    pJob->SetSettings(std::move(settings));
    return pJob;
}

/// The same with the places near the origin, for forms whose columns hold no more.
inline std::unique_ptr<CIEData> MakeLocal(std::size_t nCount)
{
    constexpr double kNorth = 5'400'000, kEast = 450'000;
    std::unique_ptr<CIEData> pJob = Make(nCount);
    CIEDataset& dataset = *pJob->GetCurDataset(true);
    for (int i = 0; CIEObject* const pObject = dataset.GetObjectAt(i); ++i) {
        auto& point = static_cast<CIEDesignPoint&>(*pObject);
        const CIEStation& station = *point.GetStation();
        point.SetCoords(station.m_dNorth - kNorth, station.m_dEast - kEast, station.GetHeight(), 0);
    }
    return pJob;
}

} // namespace PointJobs
