// From a file to a job.
#pragma once

#include "cli/forms.h"
#include "cli/job_options.h"
#include "cli/run.h"

#include <string>

namespace Cli {

/// Reads a file into a job that the options have set up, says what was refused or lost, and gives the status: Done,
/// Loss for a file that was read in part, or a failure.
EExit ReadInput(CIEData& job, const std::string& strFile, const TForm& form, const TJobOptions& options, bool bProgress,
                CWatch& watch, EIEResult& eResult, CMessages& messages);

} // namespace Cli
