// Help for delimited text whose layout nobody told.
#pragma once

#include "cli/job_options.h"

#include <string>

namespace Cli {

/// True if the file's first line tells its layout.
bool HasHeaderLine(const std::string& strFile, const CString& strCodePage);

/// What the file's first line looks like, and the options to read it with, for a file that didn't fit `format`.
std::string SuggestLayout(const std::string& strFile, const CString& strCodePage, const TIEAsciiFormat& format);

} // namespace Cli
