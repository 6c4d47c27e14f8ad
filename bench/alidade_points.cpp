// One import or one export through the library in a process of its own, to be compared with the floor program.
//
//   alidade_points read FILE [CODE]          imports delimited text, or the form of that import code
//   alidade_points write FILE COUNT [CODE]   exports it, or the form of that export code
//   alidade_points memory COUNT              bytes that plain points take

#include "point_jobs.h"
#include "usage.h"

#include "alidade/transfer/entries.h"

#include <cstdio>
#include <cstdlib>

#include <malloc.h>

namespace {

constexpr int kDelimited = 0; ///< format code, both directions

int Read(const char* pPath, int nCode)
{
    CIEData job;
    const double dStart = Usage::CpuSeconds();
    const EIEResult eResult = ImportInTheSameThread(&job, pPath, nCode);
    const double dWork = Usage::CpuSeconds() - dStart;
    if (eResult != IE_OK) {
        std::fprintf(stderr, "%s: result %d\n", pPath, static_cast<int>(eResult));
        return 1;
    }
    Usage::Print(static_cast<std::size_t>(job.GetNumberOfObjectsInAllDatasets()), dWork);
    return 0;
}

int Write(const char* pPath, std::size_t nCount, int nCode)
{
    std::unique_ptr<CIEData> pJob = nCode == kDelimited ? PointJobs::Make(nCount) : PointJobs::MakeLocal(nCount);
    const double dStart = Usage::CpuSeconds();
    // the run deletes the job, and that is counted
    const EIEResult eResult = ExportInTheSameThread(pJob.release(), pPath, static_cast<EExportType>(nCode));
    const double dWork = Usage::CpuSeconds() - dStart;
    if (eResult != IE_OK) {
        std::fprintf(stderr, "%s: result %d\n", pPath, static_cast<int>(eResult));
        return 1;
    }
    Usage::Print(nCount, dWork);
    return 0;
}

std::size_t HeapBytes()
{
    const auto heap = ::mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

/// Bytes of heap that a point takes with the list's entry for it; `pCode` may be null. Names are short enough to lie
/// within the point.
double BytesPerPoint(std::size_t nCount, const CIECodeDescription* pCode)
{
    CIEDataset dataset("points");
    const std::size_t nBefore = HeapBytes();
    for (std::size_t i = 0; i < nCount; ++i) {
        CIEStation station(1.0, 2.0, 3.0);
        station.SetName("P" + std::to_string(i));
        auto pPoint = std::make_unique<CIEDesignPoint>(std::move(station));
        if (pCode)
            pPoint->AddCode(CIECodeValues(pCode));
        dataset.Add(std::move(pPoint));
    }
    return static_cast<double>(HeapBytes() - nBefore) / static_cast<double>(nCount);
}

int Memory(std::size_t nCount)
{
    const CIECodeDescription code("TREE");
    std::printf("records=%zu bytes_per_point=%.1f bytes_with_code=%.1f sizeof_point=%zu\n", nCount,
                BytesPerPoint(nCount, nullptr), BytesPerPoint(nCount, &code), sizeof(CIEDesignPoint));
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string_view mode = argc > 2 ? argv[1] : "";
    const auto code = [&](int nArgument) { return argc > nArgument ? std::atoi(argv[nArgument]) : kDelimited; };
    if (mode == "read" && (argc == 3 || argc == 4))
        return Read(argv[2], code(3));
    if (mode == "write" && (argc == 4 || argc == 5))
        return Write(argv[2], std::strtoull(argv[3], nullptr, 10), code(4));
    if (mode == "memory" && argc == 3)
        return Memory(std::strtoull(argv[2], nullptr, 10));
    std::fputs("usage: alidade_points read FILE [CODE] | write FILE COUNT [CODE] | memory COUNT\n", stderr);
    return 2;
}
