#include "vellumlib/layers.h"

CIELayer* CIEDrawDictionary::GetLayerAt(int i) const
{
    return i >= 0 && i < GetNumberOfLayers() ? m_Layers[static_cast<std::size_t>(i)].get() : nullptr;
}

CIELayer* CIEDrawDictionary::FindLayer(std::string_view name) const
{
    const auto found = m_ByName.find(name);
    return found == m_ByName.end() ? nullptr : found->second;
}

CIELayer* CIEDrawDictionary::AddLayer(std::unique_ptr<CIELayer> pLayer)
{
    if (!pLayer)
        return nullptr;
    const auto [place, bNew] = m_ByName.try_emplace(pLayer->GetName(), pLayer.get());
    if (bNew)
        m_Layers.push_back(std::move(pLayer));
    return place->second;
}
