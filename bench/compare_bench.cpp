// What it costs to compare two jobs: the same points in the same order, in another order, and moved.
#include "alidade/compare/compare.h"

#include <benchmark/benchmark.h>
#include <random>

namespace {

enum EChange : int { Same, Shuffled, Moved };

std::unique_ptr<CIEData> MakeJob(int nPoints, EChange eChange)
{
    auto pJob = std::make_unique<CIEData>();
    const CIECodeDescription* const pCode = pJob->TakeCode("TREE");
    CIEDataset& dataset = *pJob->AddDataset(std::make_unique<CIEDataset>("Site"));
    std::vector<int> order(static_cast<std::size_t>(nPoints));
    for (int i = 0; i < nPoints; ++i)
        order[static_cast<std::size_t>(i)] = i;
    if (eChange == Shuffled)
        std::shuffle(order.begin(), order.end(), std::minstd_rand(1));
    for (const int i : order) {
        CIEStation station(5e6 + i * 0.25 + (eChange == Moved ? 0.1 : 0.0), 4e5 + i * 0.5, i % 1000);
        station.SetName("P" + std::to_string(i));
        auto pPoint = std::make_unique<CIEDesignPoint>(std::move(station));
        pPoint->AddCode(CIECodeValues(pCode));
        dataset.Add(std::move(pPoint));
    }
    return pJob;
}

void Compare(benchmark::State& state, EChange eChange)
{
    const int nPoints = static_cast<int>(state.range(0));
    const auto pFirst = MakeJob(nPoints, Same), pSecond = MakeJob(nPoints, eChange);
    const std::int64_t nExpected = eChange == Moved ? nPoints : 0;
    for (auto _ : state) {
        CIEDifferenceCounter counter;
        if (CompareJobs(*pFirst, *pSecond, {0.0005, 0.0005, 0.0005, false, false}, counter) != nExpected) {
            state.SkipWithError("the comparison found another number of differences");
            return;
        }
    }
    state.SetItemsProcessed(state.iterations() * nPoints);
}

BENCHMARK_CAPTURE(Compare, same, Same)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Compare, shuffled, Shuffled)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Compare, moved, Moved)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

} // namespace
