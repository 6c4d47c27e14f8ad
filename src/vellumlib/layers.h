// Layers of a job.
#pragma once

#include "platform/api.h"
#include "vellumlib/types.h"

#include <string_view>
#include <unordered_map>

/// A layer that objects lie on.
class ALIDADE_API CIELayer {
public:
    explicit CIELayer(CString name) : m_strName(std::move(name)) {}
    [[nodiscard]] const CString& GetName() const { return m_strName; }

private:
    CString m_strName;
};

/// The layers of a job, in order and by name. A layer stays where it is as long as the dictionary lives, so that
/// objects can point to it.
class ALIDADE_API CIEDrawDictionary {
public:
    [[nodiscard]] int GetNumberOfLayers() const { return static_cast<int>(m_Layers.size()); }
    /// Null past the end.
    [[nodiscard]] CIELayer* GetLayerAt(int i) const;
    /// By its exact name, in constant time; null if there is none.
    [[nodiscard]] CIELayer* FindLayer(std::string_view name) const;
    /// Adds a layer and gives it back. If the name is there already, that one is given back and nothing is added.
    CIELayer* AddLayer(std::unique_ptr<CIELayer> pLayer);

private:
    std::vector<std::unique_ptr<CIELayer>> m_Layers;
    std::unordered_map<std::string_view, CIELayer*> m_ByName; // keys live in the layers
};
