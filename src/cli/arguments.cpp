#include "cli/arguments.h"

#include "alidade/vellumlib/utils.h"
#include "cli/commands.h"
#include "cli/messages.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <sstream>

namespace {

using namespace Cli;

constexpr const char* kStatuses = R"(Exit status:
  0  done                          6  a loss that --fail-on forbids, or a partial result
  1  fault of the program          7  the output exists already or can't be written
  2  wrong usage                   8  out of memory
  3  the input can't be read       9  the form isn't supported
  4  no form fits, or several    130  stopped (Ctrl-C)
  5  the content isn't of the form
)";

constexpr const char* kConvertFooter = R"(Examples:
  alidade convert survey.txt survey.sim
  alidade convert survey.txt survey.job.json --layout name,east,north,height,codes --delimiter blank
  alidade convert feet.sim metres.sim --units us-feet --out-units metres
  alidade convert survey.job.json out/ --to sima --per-dataset

Fields of a layout:
  name north east height geoid notes code code+strings code+attributes codes
  GPS positions (--to gps-list) also have
  hrms vrms date time pdop hdop vdop solution gps glonass
  and sheet points (--to sheet-points) instead
  sheet-name sheet-codes measured-name cut fill to-grade measured-time measurement line-station line-offset
  design-north design-east design-height measured-north measured-east measured-height
  delta-north delta-east delta-height delta-station delta-offset distance

The output appears when it is complete; a run that fails or is stopped leaves nothing behind.
What a record lost or why it was refused is told on standard error.

)";

constexpr const char* kInfoFooter = R"(Examples:
  alidade info survey.sim
  alidade info points.txt --layout north,east,height --delimiter blank --json

)";

constexpr const char* kPlotFooter = R"(Examples:
  alidade plot survey.txt -o survey.svg
  alidade plot plan.job.json -o plan.svg --layers Buildings,Trees --size 2400x1800

North is up. The picture needs nothing from elsewhere and opens in any browser. Labels that would collide are left
out, and so is what can't be seen at that size; the last line of the picture tells how much.

)";

constexpr const char* kDiffFooter = R"(Examples:
  alidade diff design.txt staked.sim --tolerance 0.02
  alidade diff old.txt new.txt --a-units us-feet --json

Points, lines and all else belong together by name, and by kind and place where a name is missing, repeated or another.
Status 0 says that nothing differs, 6 that something does.

)";

constexpr const char* kMainFooter = R"(Start with:
  alidade info survey.txt                 what is in a file?
  alidade plot survey.txt -o survey.svg   how does it look?
  alidade convert survey.txt survey.sim   one form into another
  alidade diff survey.txt survey.sim      what differs between two files?
  alidade formats                         which forms are there?
  alidade convert --help                  all that can be told of a conversion

)";

/// Adds an option whose words `read` turns into a value. A word that it doesn't know is told with what it knows.
template <class T>
CLI::Option* AddWords(CLI::App& command, const std::string& name, std::optional<T>& value,
                      std::optional<T> (*read)(std::string_view), const std::string& words, const std::string& help)
{
    const auto take = [&value, read, name, words](const std::string& text) {
        value = read(text);
        if (!value)
            throw CLI::ValidationError(name, "\"" + text + "\" isn't one of " + words);
    };
    return command.add_option_function<std::string>(name, take, help)->type_name("WORD");
}

void AddLayout(CLI::App& command, const std::string& name, std::optional<IEAsciiFields::TFields>& layout,
               const std::string& help)
{
    const auto take = [&layout, name](const std::string& text) {
        IEAsciiFields::TFields fields;
        if (!IEAsciiFields::StringToFields(text, fields))
            throw CLI::ValidationError(name,
                                       "\"" + text +
                                           "\" isn't a list of fields (name, north, east, height, geoid, notes, code, "
                                           "codes ...; alidade convert --help tells all of them)");
        for (const IEAsciiFields::EType field : fields) {
            if (std::count(fields.begin(), fields.end(), field) > 1)
                throw CLI::ValidationError(name, "\"" + text + "\" names the field " +
                                                     IEAsciiFields::FieldsToString({field}) + " twice");
        }
        layout = std::move(fields);
    };
    command.add_option_function<std::string>(name, take, help)->type_name("FIELDS");
}

void AddEncoding(CLI::App& command, const std::string& name, std::optional<std::string>& encoding,
                 const std::string& help)
{
    const auto take = [&encoding, name](const std::string& text) {
        if (!IsKnownEncoding(text))
            throw CLI::ValidationError(name, "\"" + text +
                                                 "\" isn't an encoding that the system knows (iconv -l lists them)");
        encoding = text;
    };
    command.add_option_function<std::string>(name, take, help)->type_name("NAME");
}

const std::string kUnitWords = "metres, us-feet, feet, us-inches, inches, us-miles, or 1 to 6";
const std::string kDelimiterWords = "comma, semicolon, tab, blank, pipe, or a sign";

/// The options of an input. `prefix` stands between the dashes and the name: "a-" for those of one of two files.
void AddJobOptions(CLI::App& command, TJobOptions& options, const std::string& prefix = {})
{
    const std::string dashes = "--" + prefix;
    AddWords(command, dashes + "units", options.m_Units, &ReadUnits, kUnitWords,
             "Units of lengths in the files: " + kUnitWords);
    AddWords(command, dashes + "angles", options.m_Angles, &ReadAngles, "radians, grads, mils, degrees, dms, or 0 to 4",
             "Units of angles: radians, grads, mils, degrees, dms");
    AddWords(command, dashes + "coordinates", options.m_Coordinates, &ReadCoordinates, "plane, geographic",
             "plane: north and east; geographic: latitude and longitude");
    AddWords(command, dashes + "coords-style", options.m_CoordsStyle, &ReadCoordsStyle,
             "decimal, packed, dm, dms, digits, plain, or 0 to 5",
             "How latitude and longitude are written: decimal, packed, dm, dms, digits, plain");
    AddLayout(command, dashes + "layout", options.m_Layout,
              "Fields of delimited text without a header line, as name,east,north,height,codes or PENZD");
    AddWords(command, dashes + "delimiter", options.m_Delimiter, &ReadDelimiter, kDelimiterWords,
             "What stands between them: " + kDelimiterWords);
    command.add_flag(dashes + "attribute-types", options.m_bAttributeTypes,
                     "Attribute names in delimited text carry a type");
    command.add_flag(dashes + "quote", options.m_bQuote,
                     "Text values of attributes stand in double quotes; they are taken off again only with "
                     "--attribute-types");
    AddWords(command, dashes + "types", options.m_Kinds, &ReadKinds,
             "points, lines, polygons, arcs, surfaces, alignments, templates, raw-data, localization, history",
             "Take these kinds alone, as points,lines: points, lines, polygons, arcs, surfaces, alignments, templates, "
             "raw-data, localization, history");
    command
        .add_option(dashes + "most-copies", options.m_nMostCopies,
                    "Objects that the block references of a drawing may make (" +
                        std::to_string(TIESettings().m_nMostBlockCopies) + ", or what memory allows)")
        ->check(CLI::NonNegativeNumber)
        ->type_name("N");
    AddEncoding(command, dashes + "encoding", options.m_Encoding,
                "Encoding of text files that have no mark and aren't UTF-8 (CP1252)");
}

void AddOutputOptions(CLI::App& command, TConvertArguments& arguments)
{
    TJobOptions& options = arguments.m_Job;
    AddWords(command, "--out-units", options.m_OutUnits, &ReadUnits, kUnitWords,
             "Units of lengths in the output, if they are others");
    AddLayout(command, "--out-layout", options.m_OutLayout, "Fields of delimited output, if they are others");
    AddWords(command, "--out-delimiter", options.m_OutDelimiter, &ReadDelimiter, kDelimiterWords,
             "Delimiter of delimited output, if it is another");
    command.add_flag("--header", options.m_bHeader, "Delimited output begins with a line that tells its layout");
    AddWords(command, "--decimals", options.m_Decimals, &ReadDecimals, "a number from 0 to 15, or three as 3,3,2",
             "Decimals of north, east and height: one number, or three as 3,3,2")
        ->type_name("N");
    command.add_option("--job-name", options.m_JobName, "Name of the job, for forms that hold one")->type_name("NAME");
    AddEncoding(command, "--write-encoding", options.m_WriteEncoding, "Encoding of text that is written (UTF-8)");
    command.add_flag("--per-dataset", arguments.m_bPerDataset,
                     "A file for each dataset, named after it, in the folder OUT or in that of OUT");
    command.add_flag("--overwrite", arguments.m_bOverwrite, "Replace existing files");
    command.add_option("--report", arguments.m_strReport, "Write what was lost, and what came of it, as JSON")
        ->type_name("FILE");
    const auto failOn = [&arguments](const std::string& text) {
        if (text != "loss")
            throw CLI::ValidationError("--fail-on", "\"" + text + "\" isn't loss");
        arguments.m_bFailOnLoss = true;
    };
    command
        .add_option_function<std::string>("--fail-on", failOn,
                                          "loss: write nothing if anything is refused, changed or left out")
        ->type_name("WORD");
    command.add_flag("-q,--quiet", arguments.m_bQuiet, "Say nothing but losses and failures");
}

CLI::App* AddConvert(CLI::App& app, TConvertArguments& arguments)
{
    CLI::App* const pCommand = app.add_subcommand("convert", "Read a file and write it in another form");
    pCommand->add_option("IN", arguments.m_strIn, "The file to read")->required()->type_name("");
    pCommand->add_option("OUT", arguments.m_strOut, "The file to write")->required()->type_name("");
    pCommand->add_option("--from", arguments.m_strFrom, "Form of IN: a key or a code of \"alidade formats\", or job")
        ->type_name("FORM");
    pCommand->add_option("--to", arguments.m_strTo, "Form of OUT; without it the extension of OUT decides")
        ->type_name("FORM");
    AddJobOptions(*pCommand, arguments.m_Job);
    AddOutputOptions(*pCommand, arguments);
    pCommand->add_flag("--progress", arguments.m_bProgress, "Draw a bar, if standard error is a terminal");
    pCommand->footer(std::string(kConvertFooter) + kStatuses);
    return pCommand;
}

CLI::App* AddInfo(CLI::App& app, TInfoArguments& arguments)
{
    CLI::App* const pCommand = app.add_subcommand("info", "Tell what is in a file");
    pCommand->add_option("IN", arguments.m_strIn, "The file to read")->required()->type_name("");
    pCommand->add_flag("--json", arguments.m_bJson, "As JSON; lengths are in metres then");
    pCommand->add_option("--from", arguments.m_strFrom, "Form of IN: a key or a code of \"alidade formats\", or job")
        ->type_name("FORM");
    AddJobOptions(*pCommand, arguments.m_Job);
    pCommand->add_flag("--progress", arguments.m_bProgress, "Draw a bar, if standard error is a terminal");
    pCommand->footer(std::string(kInfoFooter) + kStatuses);
    return pCommand;
}

/// "1200x900".
std::optional<TSize> ReadSize(std::string_view text)
{
    constexpr int kLeastWidth = 400, kLeastHeight = 300, kMost = 10000;
    TSize size;
    const std::size_t nCross = text.find('x');
    const auto isDigits = [](std::string_view part) {
        return !part.empty() && part.find_first_not_of("0123456789") == std::string_view::npos;
    };
    if (nCross == std::string_view::npos || !isDigits(text.substr(0, nCross)) || !isDigits(text.substr(nCross + 1)) ||
        !IEUtils::StringToInt(text.substr(0, nCross), size.m_nWidth) ||
        !IEUtils::StringToInt(text.substr(nCross + 1), size.m_nHeight))
        return std::nullopt;
    if (size.m_nWidth < kLeastWidth || size.m_nHeight < kLeastHeight || std::max(size.m_nWidth, size.m_nHeight) > kMost)
        return std::nullopt;
    return size;
}

/// "N1,E1,N2,E2": two corners that differ in both directions.
std::optional<std::array<double, 4>> ReadWindow(std::string_view text)
{
    std::array<double, 4> window{};
    std::vector<std::string_view> parts;
    IEUtils::ParseValues(text, parts, u',');
    if (parts.size() != window.size())
        return std::nullopt;
    for (std::size_t i = 0; i < window.size(); ++i) {
        constexpr double kFarthest = 1e12; // in whatever unit, there is nothing beyond
        if (!IEUtils::StringToDouble(parts[i], window[i], false) || std::abs(window[i]) > kFarthest)
            return std::nullopt;
    }
    if (window[0] == window[2] || window[1] == window[3])
        return std::nullopt;
    return window;
}

CLI::App* AddPlot(CLI::App& app, TPlotArguments& arguments)
{
    CLI::App* const pCommand = app.add_subcommand("plot", "Draw a picture of what is in a file");
    pCommand->add_option("IN", arguments.m_strIn, "The file to read")->required()->type_name("");
    pCommand->add_option("-o,--output", arguments.m_strOut, "The SVG file to write")->required()->type_name("OUT");
    pCommand->add_option("--layers", arguments.m_Layers, "Draw these layers alone, as A,B; \"(no layer)\" is the rest")
        ->type_name("NAMES")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    const auto takeSize = [&arguments](const std::string& text) {
        const std::optional<TSize> size = ReadSize(text);
        if (!size)
            throw CLI::ValidationError("--size", "\"" + text + "\" isn't a size from 400x300 to 10000x10000");
        arguments.m_Picture.m_Size = *size;
    };
    pCommand
        ->add_option_function<std::string>("--size", takeSize,
                                           "Pixels of the picture, from 400x300 to 10000x10000 "
                                           "(1200x900)")
        ->type_name("WxH");
    const auto takeWindow = [&arguments](const std::string& text) {
        arguments.m_Window = ReadWindow(text);
        if (!arguments.m_Window)
            throw CLI::ValidationError("--window",
                                       "\"" + text + "\" isn't north and east of two corners, as 100,200,150,280");
    };
    pCommand
        ->add_option_function<std::string>("--window", takeWindow,
                                           "Draw the ground between two corners alone, in the job's units")
        ->type_name("N1,E1,N2,E2");
    pCommand->add_flag_callback(
        "--no-labels", [&arguments] { arguments.m_Picture.m_bLabels = false; }, "No names and codes of points");
    pCommand->add_option("--from", arguments.m_strFrom, "Form of IN: a key or a code of \"alidade formats\", or job")
        ->type_name("FORM");
    AddJobOptions(*pCommand, arguments.m_Job);
    pCommand->add_flag("--overwrite", arguments.m_bOverwrite, "Replace an existing file");
    pCommand->add_flag("--progress", arguments.m_bProgress, "Draw a bar, if standard error is a terminal");
    pCommand->add_flag("-q,--quiet", arguments.m_bQuiet, "Say nothing but losses and failures");
    pCommand->footer(std::string(kPlotFooter) + kStatuses);
    return pCommand;
}

CLI::App* AddDiff(CLI::App& app, TDiffArguments& arguments)
{
    CLI::App* const pCommand = app.add_subcommand("diff", "Tell what differs between two files, of whatever forms");
    pCommand->add_option("A", arguments.m_First.m_strFile, "The one file")->required()->type_name("");
    pCommand->add_option("B", arguments.m_Second.m_strFile, "The other")->required()->type_name("");
    pCommand
        ->add_option("--tolerance", arguments.m_dTolerance,
                     "Metres up to which coordinates and lengths are the same (0.0005)")
        ->check(CLI::NonNegativeNumber)
        ->type_name("M");
    pCommand->add_flag("--json", arguments.m_bJson, "As JSON; coordinates are in metres or decimal degrees then");
    const std::string form = ": a key or a code of \"alidade formats\", or job";
    pCommand->add_option("--from", arguments.m_strFrom, "Form of both" + form)->type_name("FORM");
    AddJobOptions(*pCommand, arguments.m_Job);
    for (auto [pSide, pPrefix] : {std::pair(&arguments.m_First, "a-"), {&arguments.m_Second, "b-"}}) {
        pCommand->add_option("--" + std::string(pPrefix) + "from", pSide->m_strFrom, "Form of one alone" + form)
            ->type_name("FORM");
        AddJobOptions(*pCommand, pSide->m_Job, pPrefix);
    }
    pCommand->add_flag("--progress", arguments.m_bProgress, "Draw a bar, if standard error is a terminal");
    pCommand->add_flag("-q,--quiet", arguments.m_bQuiet, "Say nothing but differences and failures");
    pCommand->footer(std::string(kDiffFooter) + kStatuses);
    return pCommand;
}

CLI::App* AddFormats(CLI::App& app, TFormatsArguments& arguments)
{
    CLI::App* const pCommand = app.add_subcommand("formats", "List the forms that can be read and written");
    CLI::Option* const pJson = pCommand->add_flag("--json", arguments.m_bJson, "As JSON");
    pCommand->add_flag("--markdown", arguments.m_bMarkdown, "As a document")->excludes(pJson);
    return pCommand;
}

} // namespace

namespace Cli {

EExit RunCommandLine(int argc, const char* const* argv)
{
    CLI::App app{"Alidade carries survey data from one file form into another.", "alidade"};
    TConvertArguments convert;
    TInfoArguments info;
    TDiffArguments diff;
    TPlotArguments plot;
    TFormatsArguments formats;
    app.set_version_flag("--version", "alidade " ALIDADE_VERSION);
    app.require_subcommand(1);
    app.footer(std::string(kMainFooter) + kStatuses);
    const CLI::App* const pConvert = AddConvert(app, convert);
    const CLI::App* const pInfo = AddInfo(app, info);
    const CLI::App* const pDiff = AddDiff(app, diff);
    const CLI::App* const pPlot = AddPlot(app, plot);
    AddFormats(app, formats);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        std::ostringstream out, err;
        const bool bAsked = app.exit(error, out, err) == 0; // for help or version
        PutOnError(err.str());
        if (!bAsked)
            return EExit::Usage;
        return PutOnOutput(out.str()) ? EExit::Done : EExit::OutputFailed;
    }
    if (pConvert->parsed())
        return Convert(convert);
    if (pInfo->parsed())
        return Info(info);
    if (pDiff->parsed())
        return Diff(diff);
    if (pPlot->parsed())
        return Plot(plot);
    return Formats(formats);
}

} // namespace Cli
