// Rows of LandXML.
#pragma once

#include "alidade/frame/format_row.h"

TIEFormatRows GetLandXmlFormats();
