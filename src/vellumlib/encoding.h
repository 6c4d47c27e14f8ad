// Encodings of text, for the reader and the writer of text files.
#pragma once

#include "alidade/vellumlib/types.h"

#include <cstddef>
#include <string_view>

#include <iconv.h>

namespace Encoding {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD"; ///< U+FFFD, for what has no meaning

/// Bytes that the first byte of a UTF-8 character calls for.
std::size_t CalledFor(char c);
/// Bytes at the end of a text that begin a UTF-8 character and lack the rest of it; at most 3.
std::size_t UnfinishedTail(std::string_view text);
/// Appends the text with every byte that isn't UTF-8 as U+FFFD.
void AppendMended(CString& out, std::string_view text);

/// Converts between encodings.
class CConverter {
public:
    CConverter() = default;
    ~CConverter() { Close(); }
    CConverter(const CConverter&) = delete;
    CConverter& operator=(const CConverter&) = delete;

    /// False for an encoding that iconv doesn't know. Neither the empty name, which would be the encoding of the
    /// locale, nor a suffix as in "ASCII//IGNORE", which would lose characters unseen, is a name.
    bool Open(const CString& to, const CString& from);
    void Close();
    [[nodiscard]] bool IsOpen() const { return m_pHandle != None(); }
    /// Forgets the state that earlier text has left, as before the first text.
    void Restart();
    /// Appends the text as far as it can be converted, and gives the rest: empty, or beginning with a character that
    /// has no meaning in the one encoding or no place in the other.
    std::string_view Convert(CString& out, std::string_view text);
    /// Appends what ends the text in an encoding that switches between sets of characters.
    void Finish(CString& out);

private:
    static iconv_t None() { return reinterpret_cast<iconv_t>(-1); }
    bool Step(CString& out, char** ppIn, std::size_t* pnIn);

    iconv_t m_pHandle = None();
};

} // namespace Encoding
