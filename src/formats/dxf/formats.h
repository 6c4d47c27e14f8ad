// Rows of the drawing exchange form.
#pragma once

#include "frame/format_row.h"

TIEFormatRows GetDxfFormats();
