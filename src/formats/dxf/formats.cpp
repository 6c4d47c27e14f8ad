#include "formats/dxf/formats.h"

#include "alidade/formats/dxf/export/dxf_exporter.h"
#include "alidade/formats/dxf/import/dxf_importer.h"
#include "frame/file_head.h"

namespace {

constexpr auto kIn = EIEDirection::Import;
constexpr auto kOut = EIEDirection::Export;

constexpr TIECarries kDrawing = CARRIES_POINTS | CARRIES_LINES | CARRIES_POLYGONS | CARRIES_ARCS | CARRIES_SURFACES |
                                CARRIES_CODES | CARRIES_ATTRIBUTES | CARRIES_LAYERS;

/// Of a drawing that is read. Colours, line types and widths are those of its entities.
constexpr TIECarries kReadDrawing = kDrawing | CARRIES_CODE_STRINGS | CARRIES_DRAWING;

EIERecognition Recognize(std::string_view head)
{
    // this reader's own mark of a binary file ends in 0x16; the usual one, in 0x1A
    constexpr std::string_view kBinary = "AutoCAD Binary DXF\r\n";
    if (head.starts_with(kBinary)) {
        head.remove_prefix(kBinary.size());
        return head.starts_with('\x16') || head.starts_with('\x1A') ? EIERecognition::Surely : EIERecognition::Perhaps;
    }

    const FileHead::TIEGroup group = FileHead::GetFirstGroup(head);
    return group.m_nCode == 0 && group.m_strValue == "SECTION" ? EIERecognition::Surely : EIERecognition::No;
}

std::unique_ptr<CIEExporter> MakeExporter(CIEData* pData, const CString& strFileName, int /*nCode*/)
{
    return std::make_unique<CDXFExporter>(pData, strFileName);
}

std::unique_ptr<CIEImporter> MakeImporter(CIEData* pData, const CString& strFileName, int /*nCode*/)
{
    return std::make_unique<CDXFImporter>(pData, strFileName);
}

// clang-format off
constexpr TIEFormatRow kRows[] = {
    {kIn,  4, "dxf", "DXF drawing", "dxf dxb", kReadDrawing,
     "X is east, Y is north, in the job's units; a drawing whose header tells others is noted. Points, lines, polylines, arcs, 3D "
     "faces and layers; attributes of block references become codes. The binary form is read with this program's mark and with the usual one.",
     MakeImporter, nullptr, Recognize},
    {kOut, 4, "dxf", "DXF drawing", "dxf dxb", kDxfWriteCarries,
     "X is east, Y is north; 6 decimals in the job's units, latitude and longitude in degrees. A file holds one dataset, the current "
     "one, and doesn't name its units; the extent in its header is in metres. Programs that keep to the rules show lines and polygons "
     "at one height; the heights stand in the vertices. "
     "Without codes an object is an entity, with its name as a text beside it; in a dataset with codes it is a block and a "
     "reference with attributes, and names must differ for it to read back alone. Text is ASCII with \\U+XXXX for all other "
     "characters, cut at 2047 bytes, of which older programs take 255. The file states no version, so programs take it as one of release 12; it has no handles, texts "
     "without a height of their place, and a second table of layers, which is empty. Strict readers drop the SEQEND of a "
     "polyline in a block, refuse a layer with one of <>/\\\":;?*|,=` in its name (some of them the \\U+XXXX too), and refuse a coordinate of 1e30 or more, "
     "which goes out as 0 NAN. The extension dxb gives a binary form without a mark, which no reader knows.",
     nullptr, MakeExporter},
};
// clang-format on

} // namespace

TIEFormatRows GetDxfFormats()
{
    return kRows;
}
