// Job documents of many points, written to a file and read from it.

#include "point_jobs.h"
#include "scratch_file.h"
#include "usage.h"

#include "alidade/jobfile/job_file.h"

#include <benchmark/benchmark.h>

#include <fstream>

#include <malloc.h>

namespace {

double HeapMegabytes()
{
    const auto heap = ::mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd) / 1e6;
}

void Tell(benchmark::State& state, const CScratchFile& file)
{
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetBytesProcessed(state.iterations() * file.GetSize());
}

void Write(benchmark::State& state)
{
    const auto nCount = static_cast<std::size_t>(state.range(0));
    const CScratchFile file;
    const std::unique_ptr<CIEData> pJob = PointJobs::Make(nCount);
    for ([[maybe_unused]] auto _ : state) {
        if (CIEJobFile::Write(*pJob, file.GetPath()) != IE_OK) {
            state.SkipWithError("the job isn't written");
            return;
        }
    }
    Tell(state, file);
}

/// The counters tell the job's heap, and the most that was resident, the text of the document and the program included.
void Read(benchmark::State& state)
{
    const auto nCount = static_cast<std::size_t>(state.range(0));
    const CScratchFile file;
    std::unique_ptr<CIEData> pJob = PointJobs::Make(nCount);
    if (CIEJobFile::Write(*pJob, file.GetPath()) != IE_OK) {
        state.SkipWithError("the job isn't written");
        return;
    }
    pJob.reset();
    ::malloc_trim(0);
    {
        CIEData job;
        const double dBefore = HeapMegabytes();
        const EIEResult eResult = CIEJobFile::Read(job, file.GetPath());
        state.counters["job_mb"] = HeapMegabytes() - dBefore;
        state.counters["peak_mb"] = Usage::PeakMegabytes();
        const CIEObject* const pLast =
            eResult == IE_OK ? job.GetDatasetAt(0)->GetObjectAt(static_cast<int>(nCount) - 1) : nullptr;
        const PointList::TPoint last = PointList::MakePoint(nCount - 1);
        if (!pLast || pLast->GetName() != last.m_strName || pLast->GetStation(0)->m_dEast != last.m_dEast) {
            state.SkipWithError("the document reads as something else");
            return;
        }
    }
    for ([[maybe_unused]] auto _ : state) {
        auto pBack = std::make_unique<CIEData>();
        benchmark::DoNotOptimize(CIEJobFile::Read(*pBack, file.GetPath()));
        state.PauseTiming();
        pBack.reset();
        state.ResumeTiming();
    }
    Tell(state, file);
}

/// A document that holds next to nothing but one byte again and again: what a text made to be slow costs.
void Refuse(benchmark::State& state, const char* pPiece)
{
    std::string text = R"({"alidade":"job")";
    while (text.size() < static_cast<std::size_t>(state.range(0)))
        text += pPiece;
    for ([[maybe_unused]] auto _ : state) {
        CIEData job;
        if (CIEJobFile::FromText(job, text) != IE_BAD_CONTENT) {
            state.SkipWithError("the text is taken");
            return;
        }
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void SizesOf(benchmark::internal::Benchmark* pBenchmark)
{
    pBenchmark->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
}

void BytesOf(benchmark::internal::Benchmark* pBenchmark)
{
    pBenchmark->Arg(100'000)->Arg(200'000'000)->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK(Read)->Apply(SizesOf);
BENCHMARK(Write)->Apply(SizesOf);
BENCHMARK_CAPTURE(Refuse, line_feeds, "\n")->Apply(BytesOf);
BENCHMARK_CAPTURE(Refuse, digits, "1")->Apply(BytesOf);
