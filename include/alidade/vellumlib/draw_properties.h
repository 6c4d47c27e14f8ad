// How objects, layers and codes are drawn.
// Any number of threads may read such a thing while none changes it.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/types.h"

#include <cstdint>

/// A colour: red in the low byte, then green, then blue.
using TIEColor = std::uint32_t;

/// The colour that people write as 0xRRGGBB.
constexpr TIEColor ColorFromRGB(std::uint32_t nRGB)
{
    return (nRGB >> 16U & 0xFFU) | (nRGB & 0xFF00U) | (nRGB & 0xFFU) << 16U;
}

/// A colour as 0xRRGGBB.
constexpr std::uint32_t ColorToRGB(TIEColor color)
{
    return ColorFromRGB(color); // the outer bytes change places either way
}

/// How something is drawn. What was never set is left to the layer, and there to the host.
class ALIDADE_API CIEDrawProperties {
public:
    enum EType : int { Points = 0, Lines = 1, Areas = 2 };
    static constexpr int kTypes = 3;

    virtual ~CIEDrawProperties() = default;

    /// An EType.
    [[nodiscard]] virtual int GetType() const = 0;
    [[nodiscard]] virtual std::unique_ptr<CIEDrawProperties> clone() const = 0;

    /// False, with nothing stored, if there is no colour.
    bool GetColor(TIEColor& color) const;
    void SetColor(TIEColor color);

protected:
    CIEDrawProperties() = default;
    CIEDrawProperties(const CIEDrawProperties&) = default;
    CIEDrawProperties& operator=(const CIEDrawProperties&) = default;

private:
    TIEColor m_Color = 0;
    bool m_bColorDefined = false;
};

class ALIDADE_API CIEDrawPointProperties : public CIEDrawProperties {
public:
    [[nodiscard]] int GetType() const override { return Points; }
    [[nodiscard]] std::unique_ptr<CIEDrawProperties> clone() const override
    {
        return std::make_unique<CIEDrawPointProperties>(*this);
    }

    /// The host's number of a point symbol. False, with nothing stored, if there is none.
    bool GetMarkStyle(int& nStyle) const;
    void SetMarkStyle(int nStyle);

private:
    int m_nMarkStyle = 0;
    bool m_bMarkStyleDefined = false;
};

/// Serves arcs too.
class ALIDADE_API CIEDrawLineProperties : public CIEDrawProperties {
public:
    enum EDashStyleType : int {
        ByLayer = -1, ///< none of its own
        Solid = 0,
        Dashed = 1,
        Dotted = 2,
        DashDotted = 3,
        DashDotDotted = 4,
        DashedCustom = 5 ///< dashes whose length follows from the extent of the dataset
    };

    [[nodiscard]] int GetType() const override { return Lines; }
    [[nodiscard]] std::unique_ptr<CIEDrawProperties> clone() const override
    {
        return std::make_unique<CIEDrawLineProperties>(*this);
    }

    /// False, with nothing stored, if there is none.
    bool GetDashStyle(EDashStyleType& eStyle) const;
    void SetDashStyle(EDashStyleType eStyle) { m_eDashStyle = eStyle; }
    /// Name of the line type in a drawing: "Continuous", "DASHED", "DOTTED", "DASHDOTTED", "DASHDOTDOTTED",
    /// "DASHED_CUSTOM", or "BYLAYER" where there is none. CIEAutoCADUtils::ConvertCustomLineTypeToPredefined takes them
    /// back.
    [[nodiscard]] const char* GetDashStyleTypeAsString() const;

    /// Pixels of the host's window. False, with nothing stored, if there is none.
    bool GetWidth(int& nWidth) const;
    void SetWidth(int nWidth);

private:
    EDashStyleType m_eDashStyle = ByLayer;
    int m_nWidth = 0;
    bool m_bWidthDefined = false;
};

class ALIDADE_API CIEDrawAreaProperties : public CIEDrawProperties {
public:
    [[nodiscard]] int GetType() const override { return Areas; }
    [[nodiscard]] std::unique_ptr<CIEDrawProperties> clone() const override
    {
        return std::make_unique<CIEDrawAreaProperties>(*this);
    }

    /// Whether the area is filled with its colour.
    [[nodiscard]] bool IsFlooded() const { return m_bFlooded; }
    void SetFloodStatus(bool bFlooded) { m_bFlooded = bFlooded; }

private:
    bool m_bFlooded = false;
};

/// Draw properties that are owned, and copied with their owner.
class CIEDrawPropertiesHolder {
public:
    CIEDrawPropertiesHolder() = default;
    CIEDrawPropertiesHolder(const CIEDrawPropertiesHolder& other)
        : m_pProperties(other.m_pProperties ? other.m_pProperties->clone() : nullptr)
    {
    }
    CIEDrawPropertiesHolder& operator=(const CIEDrawPropertiesHolder& other)
    {
        if (this != &other)
            *this = CIEDrawPropertiesHolder(other);
        return *this;
    }
    CIEDrawPropertiesHolder(CIEDrawPropertiesHolder&&) noexcept = default;
    CIEDrawPropertiesHolder& operator=(CIEDrawPropertiesHolder&&) noexcept = default;
    ~CIEDrawPropertiesHolder() = default;

    [[nodiscard]] CIEDrawProperties* Get() const { return m_pProperties.get(); }
    void Set(std::unique_ptr<CIEDrawProperties> pProperties) { m_pProperties = std::move(pProperties); }

private:
    std::unique_ptr<CIEDrawProperties> m_pProperties;
};
