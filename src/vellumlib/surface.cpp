#include "alidade/vellumlib/surface.h"

int CIETriangle::GetPosition(int k) const
{
    return k >= 0 && k < kCorners ? m_Positions[static_cast<std::size_t>(k)] : -1;
}

void CIETriangle::SetPosition(int k, int nPosition)
{
    if (k >= 0 && k < kCorners)
        m_Positions[static_cast<std::size_t>(k)] = nPosition;
}

const CIEStation* CIESurface::GetPositionAt(int i) const
{
    return i >= 0 && i < GetNumberOfPositions() ? &m_Positions[static_cast<std::size_t>(i)] : nullptr;
}

const CIETriangle* CIESurface::GetTriangleAt(int i) const
{
    return i >= 0 && i < GetNumberOfTriangles() ? &m_Triangles[static_cast<std::size_t>(i)] : nullptr;
}
