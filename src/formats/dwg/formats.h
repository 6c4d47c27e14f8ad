// Rows of the drawings that go through the drawing engine.
#pragma once

#include "frame/format_row.h"

TIEFormatRows GetDwgFormats();
