// Where tests find the source tree and the built program.
#pragma once

#include <string>

/// A path in the source tree, by its place there: "docs/formats.md".
std::string SourcePath(const std::string& name);
/// A path below tests/data/.
std::string DataPath(const std::string& name);
