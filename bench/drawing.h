// The drawing that benchmarks work on: plain C++ without the library, so that the floor program shares it.
#pragma once

#include "point_list.h"

#include <cstdio>
#include <utility>

namespace Drawing {

constexpr std::size_t kKinds = 12; ///< entities of all kinds take turns
constexpr int kVertices = 10;
constexpr int kLayers = 20;
/// What an INSERT copies.
constexpr std::size_t kObjectsOfBlock = 2;

/// Objects that an import makes of this many entities, the blocks' own and the copies among them: a text makes none,
/// and a face goes to the surface.
constexpr std::size_t CountObjects(std::size_t nEntities)
{
    std::size_t nObjects = PointList::kCodes.size() * kObjectsOfBlock;
    constexpr std::size_t kObjectsOfKind[kKinds] = {1, 1, 1, kObjectsOfBlock, 0, 1, 0, 1, 1, 1, 1, 1};
    for (std::size_t i = 0; i < kKinds; ++i)
        nObjects += kObjectsOfKind[i] * (nEntities / kKinds + (i < nEntities % kKinds ? 1 : 0));
    return nObjects;
}

inline void AppendText(std::string& out, int nCode, std::string_view text)
{
    char code[16];
    out.append(code, static_cast<std::size_t>(std::snprintf(code, sizeof code, "%3d\r\n", nCode)));
    out += text;
    out += "\r\n";
}

inline void AppendNumber(std::string& out, int nCode, double dValue)
{
    char text[64];
    const auto written = std::to_chars(text, text + sizeof text, dValue, std::chars_format::fixed, 4);
    AppendText(out, nCode, {text, static_cast<std::size_t>(written.ptr - text)});
}

/// X, Y and Z by the codes 10, 20, 30, or those behind them.
inline void AppendPlace(std::string& out, int nFirst, double dEast, double dNorth, double dHeight)
{
    AppendNumber(out, nFirst, dEast);
    AppendNumber(out, nFirst + 10, dNorth);
    AppendNumber(out, nFirst + 20, dHeight);
}

inline void AppendStart(std::string& out, std::string_view kind, std::size_t nIndex)
{
    AppendText(out, 0, kind);
    char handle[32];
    AppendText(out, 5, {handle, static_cast<std::size_t>(std::snprintf(handle, sizeof handle, "%zX", nIndex + 256))});
    AppendText(out, 8, "LAYER" + std::to_string(nIndex % kLayers));
}

inline void AppendPolyline(std::string& out, std::size_t nIndex, const PointList::TPoint& point)
{
    AppendStart(out, "POLYLINE", nIndex);
    AppendText(out, 66, "1");
    AppendPlace(out, 10, 0, 0, 0);
    AppendText(out, 70, "8");
    for (int i = 0; i < kVertices; ++i) {
        AppendText(out, 0, "VERTEX");
        AppendText(out, 8, "LAYER" + std::to_string(nIndex % kLayers));
        AppendPlace(out, 10, point.m_dEast + i, point.m_dNorth + i * 0.5, point.m_dHeight);
    }
    AppendText(out, 0, "SEQEND");
}

inline void AppendLwPolyline(std::string& out, std::size_t nIndex, const PointList::TPoint& point)
{
    AppendStart(out, "LWPOLYLINE", nIndex);
    AppendText(out, 90, std::to_string(kVertices));
    AppendText(out, 70, "0");
    for (int i = 0; i < kVertices; ++i) {
        AppendNumber(out, 10, point.m_dEast + i);
        AppendNumber(out, 20, point.m_dNorth + i * 0.5);
    }
}

inline void AppendInsert(std::string& out, std::size_t nIndex, const PointList::TPoint& point)
{
    AppendStart(out, "INSERT", nIndex);
    AppendText(out, 66, "1");
    const std::string strCode(PointList::kCodes[nIndex / kKinds % PointList::kCodes.size()]);
    AppendText(out, 2, strCode);
    AppendPlace(out, 10, point.m_dEast, point.m_dNorth, point.m_dHeight);
    const std::string strWidth = std::to_string(nIndex % 97) + ".5";
    for (const auto& [tag, value] : {std::pair<const char*, const char*>{"CODENAME", strCode.c_str()},
                                     {"NUMBER:TREE:N000", point.m_strName.c_str() + 1},
                                     {"WIDTH:TREE:N3", strWidth.c_str()}}) {
        AppendText(out, 0, "ATTRIB");
        AppendText(out, 8, "LAYER0");
        AppendPlace(out, 10, point.m_dEast, point.m_dNorth, point.m_dHeight);
        AppendText(out, 1, value);
        AppendText(out, 2, tag);
        AppendText(out, 70, "0");
    }
    AppendText(out, 0, "SEQEND");
}

/// Entity `nIndex`, at the place of the point of that number.
inline void AppendEntity(std::string& out, std::size_t nIndex)
{
    const PointList::TPoint point = PointList::MakePoint(nIndex);
    const double dEast = point.m_dEast, dNorth = point.m_dNorth, dHeight = point.m_dHeight;
    switch (nIndex % kKinds) {
    case 0:
    case 8:
    case 10:
        AppendStart(out, "POINT", nIndex);
        AppendPlace(out, 10, dEast, dNorth, dHeight);
        break;
    case 1:
    case 9:
    case 11:
        AppendStart(out, "LINE", nIndex);
        AppendText(out, 62, "3");
        AppendPlace(out, 10, dEast, dNorth, dHeight);
        AppendPlace(out, 11, dEast + 10, dNorth + 5, dHeight + 1);
        break;
    case 2:
        AppendPolyline(out, nIndex, point);
        break;
    case 3:
        AppendInsert(out, nIndex, point);
        break;
    case 4:
        AppendStart(out, "3DFACE", nIndex);
        AppendPlace(out, 10, dEast, dNorth, dHeight);
        AppendPlace(out, 11, dEast + 10, dNorth, dHeight);
        AppendPlace(out, 12, dEast, dNorth + 10, dHeight + 1);
        AppendPlace(out, 13, dEast, dNorth + 10, dHeight + 1);
        break;
    case 5:
        AppendStart(out, "ARC", nIndex);
        AppendPlace(out, 10, dEast, dNorth, dHeight);
        AppendNumber(out, 40, 12.5);
        AppendNumber(out, 50, 30);
        AppendNumber(out, 51, 120);
        break;
    case 6:
        AppendStart(out, "TEXT", nIndex);
        AppendPlace(out, 10, dEast, dNorth, dHeight);
        AppendNumber(out, 40, 2.5);
        AppendText(out, 1, point.m_strName);
        break;
    default:
        AppendLwPolyline(out, nIndex, point);
    }
}

inline void AppendHead(std::string& out)
{
    for (const char* const pText : {"SECTION", "HEADER"})
        AppendText(out, *pText == 'S' ? 0 : 2, pText);
    AppendText(out, 9, "$ACADVER");
    AppendText(out, 1, "AC1009");
    AppendText(out, 0, "ENDSEC");
    AppendText(out, 0, "SECTION");
    AppendText(out, 2, "TABLES");
    AppendText(out, 0, "TABLE");
    AppendText(out, 2, "LAYER");
    AppendText(out, 70, std::to_string(kLayers));
    for (int i = 0; i < kLayers; ++i) {
        AppendText(out, 0, "LAYER");
        AppendText(out, 2, "LAYER" + std::to_string(i));
        AppendText(out, 70, "0");
        AppendText(out, 62, std::to_string(i + 1));
        AppendText(out, 6, "CONTINUOUS");
    }
    AppendText(out, 0, "ENDTAB");
    AppendText(out, 0, "ENDSEC");
    AppendText(out, 0, "SECTION");
    AppendText(out, 2, "BLOCKS");
    for (const std::string_view code : PointList::kCodes) {
        AppendText(out, 0, "BLOCK");
        AppendText(out, 8, "0");
        AppendText(out, 2, code);
        AppendText(out, 70, "2");
        AppendPlace(out, 10, 0, 0, 0);
        AppendText(out, 0, "POINT");
        AppendText(out, 8, "0");
        AppendPlace(out, 10, 0, 0, 0);
        AppendText(out, 0, "LINE");
        AppendText(out, 8, "0");
        AppendPlace(out, 10, -0.5, 0, 0);
        AppendPlace(out, 11, 0.5, 0, 0);
        AppendText(out, 0, "ENDBLK");
    }
    AppendText(out, 0, "ENDSEC");
    AppendText(out, 0, "SECTION");
    AppendText(out, 2, "ENTITIES");
}

inline void AppendFoot(std::string& out)
{
    AppendText(out, 0, "ENDSEC");
    AppendText(out, 0, "EOF");
}

} // namespace Drawing
