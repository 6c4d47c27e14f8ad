#include "support/places.h"

std::string SourcePath(const std::string& name)
{
    return ALIDADE_SOURCE_DIR "/" + name;
}

std::string DataPath(const std::string& name)
{
    return SourcePath("tests/data/" + name);
}
