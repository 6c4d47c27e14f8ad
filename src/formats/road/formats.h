// Rows of the alignments, roads and templates.
#pragma once

#include "alidade/frame/format_row.h"

TIEFormatRows GetRoadFormats();
