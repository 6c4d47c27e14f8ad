// Rows of the drawings that go through the drawing engine.
#pragma once

#include "alidade/frame/format_row.h"

TIEFormatRows GetDwgFormats();
