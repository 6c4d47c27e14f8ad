// From a job to files in their place.
#pragma once

#include "cli/arguments.h"
#include "cli/forms.h"
#include "cli/run.h"

#include <memory>
#include <string>
#include <vector>

namespace Cli {

/// What came of an output.
struct TDelivery {
    EExit m_eExit = EExit::Done;
    bool m_bRan = false; ///< the export ran, and m_eResult is its result
    EIEResult m_eResult = IE_OK;
    std::vector<std::string> m_Files; ///< the files in their place; none if anything failed
};

/// Takes out the objects of blocks: they stand relative to the base of their block, and what references put on the
/// ground is in the job as copies. Told as one note to the watch.
void DropBlocks(CIEData& job, const std::string& strOut, CWatch& watch);

/// Takes out datasets that hold nothing that the form takes, and says so: an export of all datasets into one file ends
/// at an empty one. A job history that goes with them is told to the watch as left out of `strOut`.
void DropEmptyDatasets(CIEData& job, const TForm& form, const std::string& strOut, CWatch& watch,
                       const CMessages& messages);

/// Writes the job beside the target and moves the files to their place if all went well and the command line has
/// nothing against the losses. The watch listens; it must have been made with this staging folder.
TDelivery Deliver(std::unique_ptr<CIEData> pJob, const TConvertArguments& arguments, const TForm& form,
                  CStaging& staging, CWatch& watch, CMessages& messages);

/// Folder, with its slash, in which the output comes into being.
std::string TargetFolder(const TConvertArguments& arguments);

} // namespace Cli
