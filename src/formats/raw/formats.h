// Rows of the raw-data logs.
#pragma once

#include "frame/format_row.h"

TIEFormatRows GetRawFormats();
