#include "formats/landxml/formats.h"

#include "frame/file_head.h"

namespace {

constexpr auto kIn = EIEDirection::Import;
constexpr auto kOut = EIEDirection::Export;

constexpr TIECarries kDesign =
    CARRIES_POINTS | CARRIES_SURFACES | CARRIES_ALIGNMENTS | CARRIES_TEMPLATES | CARRIES_CODES | CARRIES_NOTES;

EIERecognition Recognize(std::string_view head)
{
    return FileHead::GetXmlRoot(head) == "LandXML" ? EIERecognition::Surely : EIERecognition::No;
}

// clang-format off
constexpr TIEFormatRow kRows[] = {
    {kIn,  17, "landxml", "LandXML", "xml", kDesign,
     "Points and point groups, parcels, alignments with profiles, TIN surfaces, road templates of a grade surface. North before "
     "east; the units are those that the file states.",
     nullptr, nullptr, Recognize},
    {kOut, 19, "landxml", "LandXML", "xml", kDesign | CARRIES_RAW_DATA | CARRIES_ATTRIBUTES,
     "LandXML 1.0 in the job's units, north before east: points, survey observations, alignments, a grade model, surfaces, as "
     "far as the settings ask for them."},
};
// clang-format on

} // namespace

TIEFormatRows GetLandXmlFormats()
{
    return kRows;
}
