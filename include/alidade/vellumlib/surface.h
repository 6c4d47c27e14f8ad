// A surface of triangles over shared positions.
// Any number of threads may read such a thing while none changes it.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/station.h"

#include <array>

/// Three positions of a surface, by index.
class ALIDADE_API CIETriangle {
public:
    static constexpr int kCorners = 3;

    /// Corner k, 0 to 2; -1 for any other and for a corner that was never set.
    [[nodiscard]] int GetPosition(int k) const;
    /// Any other corner is passed over.
    void SetPosition(int k, int nPosition);

private:
    std::array<int, kCorners> m_Positions{-1, -1, -1};
};

/// Positions and the triangles between them. Belongs to the dataset that it was added to.
class ALIDADE_API CIESurface {
public:
    [[nodiscard]] const CString& GetName() const { return m_strName; }
    void SetName(CString name) { m_strName = std::move(name); }

    [[nodiscard]] int GetNumberOfPositions() const { return static_cast<int>(m_Positions.size()); }
    /// Null past the end.
    [[nodiscard]] const CIEStation* GetPositionAt(int i) const;
    void AddPosition(CIEStation position) { m_Positions.push_back(std::move(position)); }

    [[nodiscard]] int GetNumberOfTriangles() const { return static_cast<int>(m_Triangles.size()); }
    /// Null past the end.
    [[nodiscard]] const CIETriangle* GetTriangleAt(int i) const;
    void AddTriangle(CIETriangle triangle) { m_Triangles.push_back(triangle); }

private:
    CString m_strName;
    std::vector<CIEStation> m_Positions;
    std::vector<CIETriangle> m_Triangles;
};
