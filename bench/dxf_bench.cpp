// Drawings through the entries, as a host runs them.

#include "drawing.h"
#include "scratch_file.h"

#include "alidade/formats/dxf/import/dxf_reader.h"
#include "alidade/transfer/entries.h"

#include <benchmark/benchmark.h>

namespace {

constexpr int kDxfIn = 4;

void WriteDrawing(const CString& strPath, std::size_t nEntities)
{
    std::string text;
    Drawing::AppendHead(text);
    for (std::size_t i = 0; i < nEntities; ++i)
        Drawing::AppendEntity(text, i);
    Drawing::AppendFoot(text);
    std::ofstream(strPath, std::ios::binary) << text;
}

/// As many objects as there should be, and the first block reference's copy with its codes where it belongs.
bool IsWhole(CIEData& job, std::size_t nEntities)
{
    constexpr std::size_t kReference = 3; // among the kinds that take turns
    const CIEDataset& dataset = *job.GetCurDataset(true);
    if (dataset.GetNumberOfElements(-1, 2, false, false) != static_cast<int>(Drawing::CountObjects(nEntities)))
        return false;
    // each kind ahead of it has made one object
    const CIEObject* const pCopy = dataset.GetObjectAt(static_cast<int>(Drawing::CountObjects(kReference)));
    const PointList::TPoint point = PointList::MakePoint(kReference);
    return pCopy && *pCopy->GetStation(0) == CIEStation(point.m_dNorth, point.m_dEast, point.m_dHeight) &&
           pCopy->GetNumberOfCodes() == 1 && pCopy->GetCode(0)->GetAttrAt(1) == "3.5" && pCopy->GetLayer() &&
           pCopy->GetLayer()->GetName() == "LAYER3";
}

void Import(benchmark::State& state)
{
    const auto nEntities = static_cast<std::size_t>(state.range(0));
    const CScratchFile file;
    WriteDrawing(file.GetPath(), nEntities);
    {
        CIEData job;
        if (ImportInTheSameThread(&job, file.GetPath(), kDxfIn) != IE_OK || !IsWhole(job, nEntities)) {
            state.SkipWithError("the import gives something else");
            return;
        }
    }
    for ([[maybe_unused]] auto _ : state) {
        auto pJob = std::make_unique<CIEData>();
        benchmark::DoNotOptimize(ImportInTheSameThread(pJob.get(), file.GetPath(), kDxfIn));
        state.PauseTiming();
        pJob.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetBytesProcessed(state.iterations() * file.GetSize());
}

/// The groups alone.
void ReadGroups(benchmark::State& state)
{
    const auto nEntities = static_cast<std::size_t>(state.range(0));
    const CScratchFile file;
    WriteDrawing(file.GetPath(), nEntities);
    for ([[maybe_unused]] auto _ : state) {
        CDXFReader reader;
        std::size_t nPoints = 0;
        if (reader.Open(file.GetPath())) {
            for (TToken token = reader.ReadToken(); token.m_nCode != -1; token = reader.ReadToken())
                nPoints += token.m_eToken == TToken::POINT;
        }
        if (nPoints < nEntities / 6) {
            state.SkipWithError("the reader gives something else");
            return;
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetBytesProcessed(state.iterations() * file.GetSize());
}

/// Blocks within blocks, each with ten references to the one ahead of it.
void ImportNest(benchmark::State& state)
{
    const auto nDeep = static_cast<int>(state.range(0));
    std::string text;
    const auto add = [&text](int nCode, const std::string& value) { Drawing::AppendText(text, nCode, value); };
    const auto block = [&](int nBlock) {
        add(0, "BLOCK");
        add(2, "B" + std::to_string(nBlock));
        Drawing::AppendPlace(text, 10, 0, 0, 0);
    };
    const auto reference = [&](int nBlock) {
        add(0, "INSERT");
        add(2, "B" + std::to_string(nBlock));
    };
    add(0, "SECTION");
    add(2, "BLOCKS");
    block(0);
    add(0, "POINT");
    add(0, "ENDBLK");
    std::size_t nObjects = 1, nOfBlock = 1;
    for (int i = 1; i <= nDeep; ++i) {
        block(i);
        for (int j = 0; j < 10; ++j)
            reference(i - 1);
        add(0, "ENDBLK");
        nObjects += nOfBlock *= 10;
    }
    add(0, "ENDSEC");
    const CScratchFile file;
    std::ofstream(file.GetPath(), std::ios::binary) << text;
    for ([[maybe_unused]] auto _ : state) {
        CIEData job;
        if (ImportInTheSameThread(&job, file.GetPath(), kDxfIn) != IE_OK ||
            job.GetNumberOfObjectsInAllDatasets() != static_cast<int>(nObjects)) {
            state.SkipWithError("the import gives something else");
            return;
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(nObjects));
}

} // namespace

BENCHMARK(Import)->Arg(50'000)->Arg(500'000)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadGroups)->Arg(50'000)->Unit(benchmark::kMillisecond);
BENCHMARK(ImportNest)->Arg(4)->Arg(5)->Unit(benchmark::kMillisecond);
