#include "formats/side/formats.h"

#include "frame/file_head.h"

namespace {

constexpr auto kIn = EIEDirection::Import;
constexpr auto kOut = EIEDirection::Export;

EIERecognition RecognizeCodesXml(std::string_view head)
{
    const CString root = FileHead::GetXmlRoot(head);
    return root == "CodeDictionary" || root == "DATADICTIONARY" ? EIERecognition::Surely : EIERecognition::No;
}

EIERecognition RecognizeLayerState(std::string_view head)
{
    const FileHead::TIEGroup group = FileHead::GetFirstGroup(head);
    return group.m_nCode == 0 && group.m_strValue == "LAYERSTATEDICTIONARY" ? EIERecognition::Surely
                                                                            : EIERecognition::No;
}

/// A log of two-letter records: remarks, if any, then the job record.
EIERecognition RecognizeLog(std::string_view head)
{
    CIEHeadLines lines(head);
    std::string_view line;
    while (lines.Next(line)) {
        if (line.starts_with("JB,NM"))
            return EIERecognition::Surely;
        if (!line.starts_with("--"))
            break;
    }
    return EIERecognition::No;
}

// clang-format off
constexpr TIEFormatRow kRows[] = {
    {kIn,  30, "codes-text",        "Code library as text",                "txt", CARRIES_DICTIONARY,
     "A code a line, with draw properties and typed attributes. Replaces the job's code library."},
    {kOut, 38, "codes-text",        "Code library as text",                "txt", CARRIES_DICTIONARY,
     "A code a line, with draw properties and typed attributes."},
    {kIn,  31, "codes-xml",         "Code library as XML",                 "xml", CARRIES_DICTIONARY | CARRIES_LAYERS,
     "Documents with the root CodeDictionary or DATADICTIONARY. Replaces the job's code library.",
     nullptr, nullptr, RecognizeCodesXml},
    {kOut, 39, "codes-xml",         "Code library as XML",                 "xml", CARRIES_DICTIONARY | CARRIES_LAYERS,
     "Layers and codes with draw properties and attributes, in UTF-16."},
    {kIn,  32, "codes-dbase",       "Code library as dBase tables",        "dbf", CARRIES_DICTIONARY,
     "One table is one code, its fields are the attributes. Replaces the job's code library."},
    {kOut, 40, "codes-dbase",       "Code library as dBase tables",        "dbf", CARRIES_DICTIONARY,
     "One table for each code, with a field for each attribute."},

    {kIn,  22, "lx4",               "LX4 localization, binary",            "lx4", CARRIES_LOCALIZATION,
     "Pairs of geodetic and plane points, in metres or US survey feet as the file states. Replaces the job's localization."},
    {kOut, 28, "lx4",               "LX4 localization, binary",            "lx4", CARRIES_LOCALIZATION,
     "Pairs of geodetic and plane points; in US survey feet if the job is, otherwise in metres."},
    {kIn,  24, "localization-text", "Localization block of an RW5 log",    "rw5 txt", CARRIES_LOCALIZATION,
     "The block of control points in an RW5 log; its other records are passed over. Replaces the job's localization.",
     nullptr, nullptr, RecognizeLog},

    {kIn,  34, "scan-session",      "Scanning session",                    "imc csv cmr", CARRIES_NOTHING,
     "Image coordinates, control points and camera calibration, three files with one base name."},
    {kOut, 42, "scan-session",      "Scanning session",                    "imc csv cmr fsc dlt bkh dbs", CARRIES_NOTHING,
     "Eight files for each session, and a copy of its image."},

    {kIn,  44, "layer-state",       "Layer state",                         "las", CARRIES_LAYERS,
     "Names, colours, line weights and line types of layers. Adds to the job's layers.",
     nullptr, nullptr, RecognizeLayerState},
    {kOut, 56, "layer-state",       "Layer state",                         "las", CARRIES_LAYERS,
     "Names, colours, line weights and line types of layers."},
};
// clang-format on

} // namespace

TIEFormatRows GetSideFormats()
{
    return kRows;
}
