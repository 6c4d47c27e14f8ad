// Rows of the alignments, roads and templates.
#pragma once

#include "frame/format_row.h"

TIEFormatRows GetRoadFormats();
