// Rows of the raw-data logs.
#pragma once

#include "alidade/frame/format_row.h"

TIEFormatRows GetRawFormats();
