// Rows of the point lists.
#pragma once

#include "alidade/frame/format_row.h"

TIEFormatRows GetPointFormats();
