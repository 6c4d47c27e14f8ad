// What reading and writing a list of points costs at the least: lines and numbers by the standard library into a plain
// array, and back. The library is measured against this.
//
//   floor make FILE COUNT    writes the list that is measured
//   floor read FILE          reads it into an array
//   floor write FILE COUNT   writes it from an array

#include "files.h"
#include "point_list.h"
#include "usage.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace {

using PointList::TPoint;

constexpr std::size_t kBuffer = std::size_t{64} << 10;

std::string_view TakeField(std::string_view& line)
{
    const std::size_t nComma = line.find(',');
    const std::string_view field = line.substr(0, nComma);
    line.remove_prefix(nComma == line.npos ? line.size() : nComma + 1);
    return field;
}

double TakeNumber(std::string_view& line)
{
    const std::string_view field = TakeField(line);
    double dValue = 0;
    if (std::from_chars(field.data(), field.data() + field.size(), dValue).ec != std::errc())
        Fail("number");
    return dValue;
}

void TakeLine(std::string_view line, std::vector<TPoint>& points)
{
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    TPoint& point = points.emplace_back();
    point.m_strName = TakeField(line);
    point.m_dNorth = TakeNumber(line);
    point.m_dEast = TakeNumber(line);
    point.m_dHeight = TakeNumber(line);
    point.m_strCode = TakeField(line);
}

/// Reads the file in blocks; what a block leaves of its last line goes ahead of the next one.
std::vector<TPoint> Read(const char* pPath)
{
    const TFile file = Open(pPath, "rb");
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    std::vector<TPoint> points;
    std::vector<char> buffer(kBuffer);
    std::size_t nHeld = 0;
    while (const std::size_t nGot = std::fread(buffer.data() + nHeld, 1, buffer.size() - nHeld, file.get())) {
        std::string_view rest(buffer.data(), nHeld + nGot);
        for (std::size_t nEnd = 0; (nEnd = rest.find('\n')) != rest.npos; rest.remove_prefix(nEnd + 1))
            TakeLine(rest.substr(0, nEnd), points);
        nHeld = rest.size();
        std::memmove(buffer.data(), rest.data(), nHeld);
    }
    return points;
}

void Write(const char* pPath, const std::vector<TPoint>& points)
{
    const TFile file = Open(pPath, "wb");
    std::string buffer;
    const auto send = [&] {
        if (std::fwrite(buffer.data(), 1, buffer.size(), file.get()) != buffer.size())
            Fail(pPath);
        buffer.clear();
    };
    for (const TPoint& point : points) {
        PointList::AppendLine(buffer, point);
        if (buffer.size() >= kBuffer)
            send();
    }
    send();
    if (std::fflush(file.get()) != 0)
        Fail(pPath);
}

std::vector<TPoint> MakePoints(std::size_t nCount)
{
    std::vector<TPoint> points;
    points.reserve(nCount);
    for (std::size_t i = 0; i < nCount; ++i)
        points.push_back(PointList::MakePoint(i));
    return points;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string_view mode = argc > 2 ? argv[1] : "";
    const std::size_t nCount = argc == 4 ? std::strtoull(argv[3], nullptr, 10) : 0;
    if (mode == "make" && argc == 4) {
        Write(argv[2], MakePoints(nCount));
        return 0;
    }
    if (mode == "read" && argc == 3) {
        const double dStart = Usage::CpuSeconds();
        const std::vector<TPoint> points = Read(argv[2]);
        Usage::Print(points.size(), Usage::CpuSeconds() - dStart);
        return 0;
    }
    if (mode == "write" && argc == 4) {
        const std::vector<TPoint> points = MakePoints(nCount);
        const double dStart = Usage::CpuSeconds();
        Write(argv[2], points);
        Usage::Print(points.size(), Usage::CpuSeconds() - dStart);
        return 0;
    }
    std::fputs("usage: floor make FILE COUNT | read FILE | write FILE COUNT\n", stderr);
    return 2;
}
