// The format table: every format code that has a format, whether it is built yet or not.
#pragma once

#include "alidade/frame/format_row.h"
#include "alidade/platform/api.h"
#include "alidade/vellumlib/types.h"

#include <string>
#include <string_view>
#include <vector>

/// A form that a file may have.
struct TIEFormatGuess {
    const TIEFormatRow* m_pRow = nullptr; ///< an import row
    /// Never No. Perhaps also where the content tells nothing of this form, and where the file can't be read.
    EIERecognition m_eByContent = EIERecognition::Perhaps;
    bool m_bByExtension = false; ///< the file's name ends as names of this form do
};

/// The rows live as long as the program. Every function may be called from any thread.
class ALIDADE_API CIEFormatTable {
public:
    /// Import rows, then export rows, each by code.
    static const std::vector<TIEFormatRow>& GetRows();

    /// The row of a format code. Null for a code without a format.
    static const TIEFormatRow* Find(EIEDirection eDirection, int nCode);
    /// The row of a key ("sima"), or of a format code in decimal digits ("49"). Null if there is none.
    static const TIEFormatRow* FindByKey(EIEDirection eDirection, std::string_view keyOrNumber);
    /// The rows with that extension, by code. Case and a leading point don't count.
    static std::vector<const TIEFormatRow*> FindByExtension(EIEDirection eDirection, std::string_view extension);

    /// The forms that a file can have, best first. If its content bears the mark of a form, only forms whose mark it
    /// bears; otherwise those that its extension speaks for and its content doesn't exclude, and those that its content
    /// allows. A file that can't be read is told by its extension alone.
    static std::vector<TIEFormatGuess> Guess(const CString& strFileName);

    /// Words for EIECarries bits, in the order of the bits: "points", "lines" ...
    static std::vector<std::string_view> GetCarriedWords(TIECarries nCarries);
    /// The table as the document docs/formats.md.
    static std::string ToMarkdown();
    /// The table as an array of objects with code, direction, key, title, extensions, built, carries, remark.
    static std::string ToJson();
};
