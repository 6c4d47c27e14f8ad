// Telling the forms in blocks by the first record.
#pragma once

#include "alidade/frame/format_row.h"

/// Surely if a file of blocks, or of plain lines, begins with a record of the form. Blocks that hold no record may be
/// of any of them.
EIERecognition RecognizeBlockWide(std::string_view head);
EIERecognition RecognizeBlockFgh(std::string_view head);
EIERecognition RecognizeBlockXyz(std::string_view head);
