// Rows of the readable reports.
#pragma once

#include "frame/format_row.h"

TIEFormatRows GetReportFormats();
