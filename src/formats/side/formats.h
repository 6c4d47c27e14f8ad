// Rows of the files that carry a job's side data: code libraries, localizations, scanning sessions, layers.
#pragma once

#include "alidade/frame/format_row.h"

TIEFormatRows GetSideFormats();
