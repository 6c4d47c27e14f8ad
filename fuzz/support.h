// What the fuzz targets share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Ends the process as a crash would, with words for what doesn't hold.
void Require(bool bHolds, const char* pWhat);
/// The same for two texts that have to be equal; shows both.
void RequireEqual(std::string_view left, std::string_view right, const char* pWhat);

/// Files of this process alone, in memory where the system has a place for that; gone at the end of the process.
namespace Scratch {

/// The path of a file of that name, which may not be there yet.
std::string MakePath(const std::string& name);
void Write(const std::string& path, std::string_view bytes);
/// The bytes of a file; empty if there is none.
std::string Read(const std::string& path);

} // namespace Scratch

/// Takes values off the front of an input; an input that has run out gives zeros.
class CFuzzInput {
public:
    CFuzzInput(const std::uint8_t* pData, std::size_t nSize) : m_Rest(reinterpret_cast<const char*>(pData), nSize) {}

    /// One byte, counted from "0" so that a seed can be written as text: the character "0" is 0, "1" is 1 ...
    unsigned TakeChoice()
    {
        if (m_Rest.empty())
            return 0;
        const unsigned nChoice = static_cast<unsigned char>(m_Rest[0]) ^ static_cast<unsigned>('0');
        m_Rest.remove_prefix(1);
        return nChoice;
    }
    [[nodiscard]] std::string_view GetRest() const { return m_Rest; }

private:
    std::string_view m_Rest;
};
