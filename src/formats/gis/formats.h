// Rows of the GIS formats.
#pragma once

#include "frame/format_row.h"

TIEFormatRows GetGisFormats();
