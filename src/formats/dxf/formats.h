// Rows of the drawing exchange form.
#pragma once

#include "alidade/frame/format_row.h"

TIEFormatRows GetDxfFormats();
