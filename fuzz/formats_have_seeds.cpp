// Fails if an importer of the format table isn't fed by seeds of its own, or seeds have no importer. The argument is
// the folder that holds a folder of seeds for each importer, named by its key.

#include "alidade/transfer/format_table.h"

#include <cstdio>
#include <filesystem>

namespace fs = std::filesystem;

int main(int argc, char** argv)
{
    if (argc != 2)
        return 2;
    int nFaults = 0;
    for (const TIEFormatRow& row : CIEFormatTable::GetRows()) {
        if (row.m_eDirection != EIEDirection::Import || !row.IsBuilt())
            continue;
        const fs::path folder = fs::path(argv[1]) / row.m_pKey;
        if (!fs::is_directory(folder) || fs::is_empty(folder)) {
            std::fprintf(stderr, "no seeds in %s\n", folder.c_str());
            ++nFaults;
        }
    }
    for (const fs::directory_entry& folder : fs::directory_iterator(argv[1])) {
        const TIEFormatRow* const pRow =
            CIEFormatTable::FindByKey(EIEDirection::Import, folder.path().filename().string());
        if (!pRow || !pRow->IsBuilt()) {
            std::fprintf(stderr, "no importer for the seeds in %s\n", folder.path().c_str());
            ++nFaults;
        }
    }
    return nFaults == 0 ? 0 : 1;
}
