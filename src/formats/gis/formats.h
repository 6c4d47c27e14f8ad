// Rows of the GIS formats.
#pragma once

#include "alidade/frame/format_row.h"

TIEFormatRows GetGisFormats();
