#include "formats/dwg/formats.h"

#include "frame/file_head.h"

namespace {

constexpr auto kIn = EIEDirection::Import;
constexpr auto kOut = EIEDirection::Export;

constexpr TIECarries kDrawing =
    CARRIES_POINTS | CARRIES_LINES | CARRIES_POLYGONS | CARRIES_ARCS | CARRIES_SURFACES | CARRIES_LAYERS;

EIERecognition Recognize(std::string_view head)
{
    if (head.starts_with("AC10"))
        return EIERecognition::Surely;
    // the engine reads the exchange form too, but it is left to the importer that knows its codes
    if (head.starts_with("AutoCAD Binary DXF"))
        return EIERecognition::Perhaps;
    const FileHead::TIEGroup group = FileHead::GetFirstGroup(head);
    return group.m_nCode == 0 && group.m_strValue == "SECTION" ? EIERecognition::Perhaps : EIERecognition::No;
}

// clang-format off
constexpr TIEFormatRow kRows[] = {
    {kIn,  5, "dwg", "DWG drawing", "dwg dxf", kDrawing,
     "X is east, Y is north. Reads versions AC1002 to AC1015, and the exchange form in text and binary.",
     nullptr, nullptr, Recognize},
    {kOut, 5, "dwg", "DWG drawing", "dwg",     kDrawing,
     "X is east, Y is north. A new drawing of version AC1015, with a label for each object."},
};
// clang-format on

} // namespace

TIEFormatRows GetDwgFormats()
{
    return kRows;
}
