// What a run lost or changed: for people, line by line, and for programs, as JSON.
#pragma once

#include "alidade/vellumlib/observer.h"
#include "cli/forms.h"

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace Cli {

/// Prints the first notes as "survey.txt:17: refused: its north "abc" can't be read (line.number)", and counts the
/// rest.
void PrintNotes(const CIELedger& ledger, const CMessages& messages);

[[nodiscard]] inline bool HasLoss(const CIELedger& ledger)
{
    return !ledger.IsEmpty();
}

/// Counts by kind and by code, and an array of items; empty to begin with.
nlohmann::ordered_json MakeNotes();
/// Adds the notes of a run. `phase` is "import" or "export".
void AddNotes(nlohmann::ordered_json& notes, const CIELedger& ledger, std::string_view phase);

nlohmann::ordered_json ToJson(EIEResult eResult);
nlohmann::ordered_json ToJson(const TForm& form);
/// The document with a line end. Bytes that aren't UTF-8, as a file's name may hold, become U+FFFD.
std::string Dump(const nlohmann::ordered_json& document);

/// What keeps a report from being written there. An earlier report may be replaced, any other file only with
/// `bOverwrite`.
std::string FindReportObstacle(const std::string& strPath, bool bOverwrite);
[[nodiscard]] bool WriteReport(const nlohmann::ordered_json& document, const std::string& strPath);

} // namespace Cli
