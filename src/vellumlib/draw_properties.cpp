#include "alidade/vellumlib/draw_properties.h"

bool CIEDrawProperties::GetColor(TIEColor& color) const
{
    if (m_bColorDefined)
        color = m_Color;
    return m_bColorDefined;
}

void CIEDrawProperties::SetColor(TIEColor color)
{
    m_Color = color & 0xFFFFFFU;
    m_bColorDefined = true;
}

bool CIEDrawPointProperties::GetMarkStyle(int& nStyle) const
{
    if (m_bMarkStyleDefined)
        nStyle = m_nMarkStyle;
    return m_bMarkStyleDefined;
}

void CIEDrawPointProperties::SetMarkStyle(int nStyle)
{
    m_nMarkStyle = nStyle;
    m_bMarkStyleDefined = true;
}

bool CIEDrawLineProperties::GetDashStyle(EDashStyleType& eStyle) const
{
    if (m_eDashStyle != ByLayer)
        eStyle = m_eDashStyle;
    return m_eDashStyle != ByLayer;
}

const char* CIEDrawLineProperties::GetDashStyleTypeAsString() const
{
    switch (m_eDashStyle) {
    case Solid:
        return "Continuous";
    case Dashed:
        return "DASHED";
    case Dotted:
        return "DOTTED";
    case DashDotted:
        return "DASHDOTTED";
    case DashDotDotted:
        return "DASHDOTDOTTED";
    case DashedCustom:
        return "DASHED_CUSTOM";
    case ByLayer:
        break;
    }
    return "BYLAYER";
}

bool CIEDrawLineProperties::GetWidth(int& nWidth) const
{
    if (m_bWidthDefined)
        nWidth = m_nWidth;
    return m_bWidthDefined;
}

void CIEDrawLineProperties::SetWidth(int nWidth)
{
    m_nWidth = nWidth;
    m_bWidthDefined = true;
}
