// The command line.
#pragma once

#include "cli/exit_codes.h"
#include "cli/job_options.h"
#include "cli/plot/picture.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace Cli {

struct TConvertArguments {
    std::string m_strIn;
    std::string m_strOut;
    std::string m_strFrom; ///< empty: content and extension decide
    std::string m_strTo;   ///< empty: the extension decides
    TJobOptions m_Job;
    std::string m_strReport; ///< empty: none is written
    bool m_bPerDataset = false;
    bool m_bOverwrite = false;
    bool m_bFailOnLoss = false;
    bool m_bProgress = false;
    bool m_bQuiet = false;
};

struct TInfoArguments {
    std::string m_strIn;
    std::string m_strFrom;
    TJobOptions m_Job;
    bool m_bJson = false;
    bool m_bProgress = false;
};

struct TPlotArguments {
    std::string m_strIn;
    std::string m_strOut;
    std::string m_strFrom;
    TJobOptions m_Job;
    std::vector<std::string> m_Layers;             ///< lists with commas between names; none: all layers that are on
    std::optional<std::array<double, 4>> m_Window; ///< north and east of two corners, in the job's units
    TPictureOptions m_Picture;
    bool m_bOverwrite = false;
    bool m_bProgress = false;
    bool m_bQuiet = false;
};

/// What is told of one of two files alone.
struct TDiffSide {
    std::string m_strFile;
    std::string m_strFrom;
    TJobOptions m_Job;
};

struct TDiffArguments {
    TDiffSide m_First;
    TDiffSide m_Second;
    std::string m_strFrom;        ///< of both
    TJobOptions m_Job;            ///< of both, where a side doesn't say otherwise
    double m_dTolerance = 0.0005; ///< metres
    bool m_bJson = false;
    bool m_bProgress = false;
    bool m_bQuiet = false;
};

struct TFormatsArguments {
    bool m_bJson = false;
    bool m_bMarkdown = false;
};

/// Reads the command line and runs the command that it names. Help and version go to standard output.
EExit RunCommandLine(int argc, const char* const* argv);

} // namespace Cli
