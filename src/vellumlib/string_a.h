// A string of 8-bit characters that is filled at its end and taken from at its start.
#pragma once

#include "alidade/vellumlib/types.h"

#include <cstddef>
#include <string_view>

namespace IEUtils {

/// Bytes on their way into blocks. Taking from the start costs what is taken.
class TStringA {
public:
    TStringA& Add(std::string_view bytes)
    {
        m_Bytes.append(bytes);
        return *this;
    }
    [[nodiscard]] std::size_t length() const { return m_Bytes.size() - m_nStart; }
    [[nodiscard]] std::string_view data() const { return std::string_view(m_Bytes).substr(m_nStart); }
    /// Moves the first `nCount` characters, or all there are, into `target`, which loses what it held.
    void Extract(TStringA& target, std::size_t nCount);
    /// Fills up to `nLength` characters with `c`; a longer string stays.
    void FillWith(std::size_t nLength, char c);
    void AddLeft(char c);
    void Clear();

private:
    std::string m_Bytes;
    std::size_t m_nStart = 0; // what stands ahead of it has been taken
};

} // namespace IEUtils
