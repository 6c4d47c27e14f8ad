// Layers of a job.
// Any number of threads may read such a thing while none changes it.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/draw_properties.h"
#include "alidade/vellumlib/types.h"

#include <string_view>
#include <unordered_map>

class CIEDrawDictionary;

/// A layer that objects lie on.
class ALIDADE_API CIELayer {
public:
    CIELayer() = default;
    explicit CIELayer(CString name) : m_strName(std::move(name)) {}
    CIELayer(const CIELayer&) = delete;
    CIELayer& operator=(const CIELayer&) = delete;
    ~CIELayer() = default;

    [[nodiscard]] const CString& GetName() const { return m_strName; }
    /// A layer of a dictionary is found by its new name from then on. False, with nothing changed, if another layer of
    /// the dictionary has that name.
    bool SetName(CString name);

    /// Words for people; empty if there are none.
    [[nodiscard]] const CString& GetNotes() const { return m_strNotes; }
    void SetNotes(CString notes) { m_strNotes = std::move(notes); }

    /// Whether what lies on the layer is shown.
    [[nodiscard]] bool IsActive() const { return m_bActive; }
    void SetActiveStatus(bool bActive) { m_bActive = bActive; }
    /// Whether it is printed.
    [[nodiscard]] bool IsPlot() const { return m_bPlot; }
    void SetPlotStatus(bool bPlot) { m_bPlot = bPlot; }

    /// How objects are drawn that don't say it themselves; null if the layer doesn't say it either.
    [[nodiscard]] CIEDrawProperties* GetDrawProperties() const { return m_DrawProperties.Get(); }
    /// Lines without a dash style of their own become solid: there is no layer behind a layer.
    void SetDrawProperties(std::unique_ptr<CIEDrawProperties> pProperties);

private:
    friend class CIEDrawDictionary;
    CIEDrawDictionary* m_pOwner = nullptr; // told of a new name, because it finds layers by name
    CString m_strName;
    CString m_strNotes;
    CIEDrawPropertiesHolder m_DrawProperties;
    bool m_bActive = true;
    bool m_bPlot = true;
};

/// The layers of a job, in order and by name. A layer stays where it is as long as the dictionary lives, so that
/// objects can point to it.
class ALIDADE_API CIEDrawDictionary {
public:
    CIEDrawDictionary() = default;
    CIEDrawDictionary(const CIEDrawDictionary&) = delete;
    CIEDrawDictionary& operator=(const CIEDrawDictionary&) = delete;
    ~CIEDrawDictionary() = default;

    [[nodiscard]] int GetNumberOfLayers() const { return static_cast<int>(m_Layers.size()); }
    /// Null past the end.
    [[nodiscard]] CIELayer* GetLayerAt(int i) const;
    /// By its exact name, in constant time; null if there is none.
    [[nodiscard]] CIELayer* FindLayer(std::string_view name) const;
    /// Adds a layer and gives it back. If the name is there already, that one is given back and nothing is added.
    CIELayer* AddLayer(std::unique_ptr<CIELayer> pLayer);

    /// The layer for what names none; null unless one was set.
    [[nodiscard]] CIELayer* GetDefaultLayer() const { return GetLayerAt(m_nDefault); }
    /// An index past the end takes the default away.
    void SetDefaultLayer(int i) { m_nDefault = GetLayerAt(i) ? i : -1; }

private:
    friend class CIELayer;
    std::vector<std::unique_ptr<CIELayer>> m_Layers;
    std::unordered_map<std::string_view, CIELayer*> m_ByName; // keys live in the layers
    int m_nDefault = -1;
};
