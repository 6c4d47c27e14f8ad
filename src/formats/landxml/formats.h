// Rows of LandXML.
#pragma once

#include "frame/format_row.h"

TIEFormatRows GetLandXmlFormats();
