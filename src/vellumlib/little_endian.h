// Numbers of binary forms, lowest byte first on every machine.
#pragma once

#include "alidade/vellumlib/types.h"

#include <bit>
#include <cstdint>
#include <string_view>

namespace LittleEndian {

/// Appends the lowest `nBytes` bytes.
inline void Append(CString& out, std::uint64_t nValue, int nBytes)
{
    for (int i = 0; i < nBytes; ++i)
        out += static_cast<char>(static_cast<unsigned char>(nValue >> (8U * static_cast<unsigned>(i))));
}
inline void AppendInt32(CString& out, std::int32_t nValue)
{
    Append(out, static_cast<std::uint32_t>(nValue), 4);
}
inline void AppendDouble(CString& out, double dValue)
{
    Append(out, std::bit_cast<std::uint64_t>(dValue), 8);
}

/// The whole number that all bytes of a text of at most eight make.
inline std::uint64_t Read(std::string_view bytes)
{
    std::uint64_t nValue = 0;
    for (auto it = bytes.rbegin(); it != bytes.rend(); ++it)
        nValue = nValue << 8U | static_cast<unsigned char>(*it);
    return nValue;
}
/// Reads at an offset; the bytes must be there.
inline std::int32_t ReadInt32(std::string_view bytes, std::size_t nOffset)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(Read(bytes.substr(nOffset, 4))));
}
inline double ReadDouble(std::string_view bytes, std::size_t nOffset)
{
    return std::bit_cast<double>(Read(bytes.substr(nOffset, 8)));
}

} // namespace LittleEndian
