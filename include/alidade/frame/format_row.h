// One row of the format table: what the library knows of a format code before it runs.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/kinds.h"

#include <memory>
#include <span>
#include <string_view>

class CIEData;
class CIEExporter;
class CIEImporter;

enum class EIEDirection : int { Import, Export };

/// How surely a file's first bytes are of a form.
enum class EIERecognition : int {
    No,      ///< they can't be
    Perhaps, ///< nothing speaks against it
    Surely   ///< they bear its mark
};

struct TIEFormatRow {
    using TMakeImporter = std::unique_ptr<CIEImporter> (*)(CIEData* pData, const CString& strFileName, int nCode);
    using TMakeExporter = std::unique_ptr<CIEExporter> (*)(CIEData* pData, const CString& strFileName, int nCode);
    /// `head` is the start of the file as it stands on the disk, at most 64 KB.
    using TRecognize = EIERecognition (*)(std::string_view head);

    EIEDirection m_eDirection;
    int m_nCode;          ///< import code 0 to 50 or export code 0 to 66
    const char* m_pKey;   ///< short stable word for people; both directions of one form share it; unique in a direction
    const char* m_pTitle; ///< what it is, for a list
    const char*
        m_pExtensions;     ///< "txt csv": lower case, without points; the first is the one that is written; "" for none
    TIECarries m_nCarries; ///< EIECarries
    const char* m_pRemark = ""; ///< axes, units, decimals and losses in a sentence or two, for the documents
    TMakeImporter m_pMakeImporter = nullptr; ///< null while the format isn't built, and on export rows
    TMakeExporter m_pMakeExporter = nullptr; ///< null while the format isn't built, and on import rows
    TRecognize m_pRecognize = nullptr;       ///< import: null where content tells nothing

    [[nodiscard]] bool IsBuilt() const { return m_pMakeImporter || m_pMakeExporter; }
};

using TIEFormatRows = std::span<const TIEFormatRow>;
