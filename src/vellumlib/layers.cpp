#include "alidade/vellumlib/layers.h"

bool CIELayer::SetName(CString name)
{
    if (name == m_strName)
        return true;
    if (m_pOwner) {
        if (m_pOwner->FindLayer(name))
            return false;
        m_pOwner->m_ByName.erase(m_strName);
    }
    m_strName = std::move(name);
    if (m_pOwner)
        m_pOwner->m_ByName.emplace(m_strName, this);
    return true;
}

void CIELayer::SetDrawProperties(std::unique_ptr<CIEDrawProperties> pProperties)
{
    if (pProperties && pProperties->GetType() == CIEDrawProperties::Lines) {
        auto& lines = static_cast<CIEDrawLineProperties&>(*pProperties);
        CIEDrawLineProperties::EDashStyleType eStyle{};
        if (!lines.GetDashStyle(eStyle))
            lines.SetDashStyle(CIEDrawLineProperties::Solid);
    }
    m_DrawProperties.Set(std::move(pProperties));
}

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
    if (bNew) {
        pLayer->m_pOwner = this;
        m_Layers.push_back(std::move(pLayer));
    }
    return place->second;
}
