// Telling point lists by their first lines.
#pragma once

#include "alidade/frame/format_row.h"

/// SIMA with names, and SIMA with running numbers alone: the first record decides which of the two, and a file without
/// records is taken for the form with names.
EIERecognition RecognizeSima(std::string_view head);
EIERecognition RecognizeSimaNumbers(std::string_view head);

/// Surely with a header line. Otherwise Perhaps, if one delimiter gives every line at least three fields, two of them
/// numbers in the same places; the first line may be a heading.
EIERecognition RecognizeDelimited(std::string_view head);

/// Surely with the line that opens the frame of a comma list.
EIERecognition RecognizeFramed(std::string_view head);
/// Surely if the first line is a row marked " 05" that reaches to its height column.
EIERecognition RecognizeMarked05(std::string_view head);
