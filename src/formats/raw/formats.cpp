#include "formats/raw/formats.h"

namespace {

constexpr auto kOut = EIEDirection::Export;

constexpr TIECarries kRaw = CARRIES_RAW_DATA | CARRIES_CODES;

// clang-format off
constexpr TIEFormatRow kRows[] = {
    {kOut, 21, "raw-qr1",     "Raw data, Qr1 dialect",         "raw", kRaw,
     "Total-station records as tagged fields; backsights are left out."},
    {kOut, 22, "raw-qr2",     "Raw data, Qr2 and Tm2 dialect", "raw", kRaw | CARRIES_NOTES,
     "Total-station records as keyword lines, backsights among them."},
    {kOut, 23, "raw-tm1",     "Raw data, Tm1 dialect",         "raw", kRaw,
     "Total-station records as tagged fields; backsights are left out."},
    {kOut, 30, "rw5",         "RW5 raw data",                  "rw5", kRaw | CARRIES_NOTES | CARRIES_LOCALIZATION,
     "Total-station and GPS records; the localization leads them if the settings ask for it."},
    {kOut, 45, "raw-text",    "Raw data as keyword text",      "txt", kRaw,
     "A head of settings lines, then a block for each occupation, backsight and shot; the job's units."},
    {kOut, 52, "raw-blocks",  "Raw data in blocks of 128 characters", "txt", kRaw,
     "Tagged fields in framed blocks with a check sum."},
    {kOut, 59, "raw-columns", "Raw data in fixed columns",     "txt", kRaw | CARRIES_NOTES,
     "Total-station and GPS records of fixed columns; distances in the job's units, angles in grads."},
};
// clang-format on

} // namespace

TIEFormatRows GetRawFormats()
{
    return kRows;
}
