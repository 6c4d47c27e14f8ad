// What reading a drawing costs at the least: its lines split, its codes and numbers turned into values by the standard
// library, and nothing kept but a sum. The library is measured against this.
//
//   dxf_floor make FILE COUNT   writes the drawing that is measured, of so many entities
//   dxf_floor read FILE         splits it into groups

#include "drawing.h"
#include "files.h"
#include "usage.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace {

constexpr std::size_t kBuffer = std::size_t{1} << 20;

struct TSums {
    std::size_t m_nGroups = 0;
    std::size_t m_nTextBytes = 0;
    double m_dNumbers = 0;
};

template <class TValue>
TValue ToNumber(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    TValue value{};
    if (std::from_chars(text.data(), text.data() + text.size(), value).ec != std::errc())
        Fail("number");
    return value;
}

void TakeGroup(std::string_view code, std::string_view value, TSums& sums)
{
    const int nCode = ToNumber<int>(code);
    ++sums.m_nGroups;
    if (nCode >= 10 && nCode < 60)
        sums.m_dNumbers += ToNumber<double>(value);
    else if (nCode >= 60 && nCode < 100)
        sums.m_dNumbers += ToNumber<int>(value);
    else
        sums.m_nTextBytes += value.size();
}

/// The line ahead of the next line feed. False if there is none.
bool TakeLine(std::string_view& rest, std::string_view& line)
{
    const std::size_t nEnd = rest.find('\n');
    if (nEnd == rest.npos)
        return false;
    line = rest.substr(0, nEnd);
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    rest.remove_prefix(nEnd + 1);
    return true;
}

/// Reads the file in blocks; what a block leaves of its last group goes ahead of the next one.
TSums Read(const char* pPath)
{
    const TFile file = Open(pPath, "rb");
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    TSums sums;
    std::vector<char> buffer(kBuffer);
    std::size_t nHeld = 0;
    while (const std::size_t nGot = std::fread(buffer.data() + nHeld, 1, buffer.size() - nHeld, file.get())) {
        std::string_view rest(buffer.data(), nHeld + nGot), code, value;
        for (std::string_view next = rest; TakeLine(next, code) && TakeLine(next, value); rest = next)
            TakeGroup(code, value, sums);
        nHeld = rest.size();
        std::memmove(buffer.data(), rest.data(), nHeld);
    }
    return sums;
}

void Make(const char* pPath, std::size_t nCount)
{
    const TFile file = Open(pPath, "wb");
    std::string buffer;
    const auto send = [&] {
        if (std::fwrite(buffer.data(), 1, buffer.size(), file.get()) != buffer.size())
            Fail(pPath);
        buffer.clear();
    };
    Drawing::AppendHead(buffer);
    for (std::size_t i = 0; i < nCount; ++i) {
        Drawing::AppendEntity(buffer, i);
        if (buffer.size() >= kBuffer)
            send();
    }
    Drawing::AppendFoot(buffer);
    send();
    if (std::fflush(file.get()) != 0)
        Fail(pPath);
}

} // namespace

int main(int argc, char** argv)
{
    const std::string_view mode = argc > 2 ? argv[1] : "";
    if (mode == "make" && argc == 4) {
        Make(argv[2], std::strtoull(argv[3], nullptr, 10));
        return 0;
    }
    if (mode == "read" && argc == 3) {
        const double dStart = Usage::CpuSeconds();
        const TSums sums = Read(argv[2]);
        Usage::Print(sums.m_nGroups, Usage::CpuSeconds() - dStart);
        return sums.m_nTextBytes > 0 && sums.m_dNumbers > 0 ? 0 : 1; // and so the sums are needed
    }
    std::fputs("usage: dxf_floor make FILE COUNT | read FILE\n", stderr);
    return 2;
}
