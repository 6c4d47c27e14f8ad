// Rows of the readable reports.
#pragma once

#include "alidade/frame/format_row.h"

TIEFormatRows GetReportFormats();
