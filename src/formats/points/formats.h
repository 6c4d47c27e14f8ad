// Rows of the point lists.
#pragma once

#include "frame/format_row.h"

TIEFormatRows GetPointFormats();
