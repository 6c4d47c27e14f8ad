// Point lists through the entries, as a host runs them.

#include "point_jobs.h"
#include "scratch_file.h"

#include "alidade/transfer/entries.h"

#include <benchmark/benchmark.h>

#include <algorithm>

namespace {

constexpr int kDelimitedIn = 0, kDelimitedOut = 0;
constexpr int kSimaIn = 49, kSimaOut = 63;

// ---- the lists

using TAppend = void (*)(std::string& out, std::size_t nIndex);

void AppendPoint(std::string& out, std::size_t nIndex)
{
    PointList::AppendLine(out, PointList::MakePoint(nIndex));
}

/// Ten points in a row share a name and make a polyline.
void AppendLinePoint(std::string& out, std::size_t nIndex)
{
    PointList::TPoint point = PointList::MakePoint(nIndex);
    point.m_strName = "L" + std::to_string(nIndex / 10);
    PointList::AppendLine(out, point);
}

/// Codes with attributes, a code string and a control code.
void AppendAttributes(std::string& out, std::size_t nIndex)
{
    PointList::TPoint point = PointList::MakePoint(nIndex);
    point.m_strCode += ":width=" + std::to_string(nIndex % 97) + ".5$kind=asphalt&text@c" + std::to_string(nIndex % 7);
    PointList::AppendLine(out, point);
}

void AppendSima(std::string& out, std::size_t nIndex)
{
    const PointList::TPoint point = PointList::MakePoint(nIndex);
    out += nIndex == 0 ? "G00,03,,\r\nA00,\r\nA01," : "A01,";
    out += std::to_string(nIndex + 1) + ',' + point.m_strName;
    for (const double dValue : {point.m_dNorth, point.m_dEast, point.m_dHeight}) {
        out += ',';
        PointList::AppendFixed(out, dValue);
    }
    out += ",\r\n";
}

void WriteFile(const CString& strPath, TAppend append, std::size_t nCount)
{
    std::ofstream file(strPath, std::ios::binary);
    std::string block;
    for (std::size_t i = 0; i < nCount; ++i) {
        append(block, i);
        if (block.size() > 1'000'000) {
            file << block;
            block.clear();
        }
    }
    file << block;
}

std::string FirstLines(const CString& strPath, int nCount)
{
    std::ifstream file(strPath, std::ios::binary);
    std::string text, line;
    for (int i = 0; i < nCount && std::getline(file, line); ++i)
        text += line + '\n';
    return text;
}

// ---- import

bool IsPoint(const CIEObject* pObject, std::size_t nIndex)
{
    const PointList::TPoint point = PointList::MakePoint(nIndex);
    return pObject && pObject->GetType() == EIEObjectsType::DesignPoint && pObject->GetName() == point.m_strName &&
           *pObject->GetStation(0) == CIEStation(point.m_dNorth, point.m_dEast, point.m_dHeight);
}

/// Every point of the list, in order.
bool HasPoints(CIEData& job, std::size_t nCount)
{
    const CIEDataset& dataset = *job.GetCurDataset(true);
    if (dataset.GetNumberOfElements(-1, 2, false, false) != static_cast<int>(nCount))
        return false;
    for (std::size_t i = 0; i < nCount; ++i) {
        if (!IsPoint(dataset.GetObjectAt(static_cast<int>(i)), i))
            return false;
    }
    return true;
}

bool HasCodedPoints(CIEData& job, std::size_t nCount)
{
    const CIEObject* const pLast = job.GetCurDataset(true)->GetObjectAt(static_cast<int>(nCount) - 1);
    return HasPoints(job, nCount) && pLast->GetNumberOfCodes() == 1 &&
           pLast->GetCode(0)->GetDescription()->GetName() == PointList::MakePoint(nCount - 1).m_strCode;
}

bool HasLines(CIEData& job, std::size_t nCount)
{
    const CIEDataset& dataset = *job.GetCurDataset(true);
    const int nLine = static_cast<int>(EIEObjectsType::PolyLine);
    return dataset.GetNumberOfElements(nLine, 2, false, false) == static_cast<int>(nCount / 10) &&
           dataset.GetNumberOfElements(nLine, 2, true, false) == static_cast<int>(nCount);
}

bool HasAttributes(CIEData& job, std::size_t nCount)
{
    const CIEObject* const pLast = job.GetCurDataset(true)->GetObjectAt(static_cast<int>(nCount) - 1);
    return HasPoints(job, nCount) && pLast->GetNumberOfCodes() == 1 && pLast->GetCode(0)->GetNumberOfAttrs() == 2 &&
           pLast->GetCode(0)->GetAttrAt(0) == std::to_string((nCount - 1) % 97) + ".5" &&
           pLast->GetCode(0)->GetCodeStringAt(0) == "text" &&
           pLast->GetCode(0)->GetControlCode(0) == "c" + std::to_string((nCount - 1) % 7);
}

using TCheck = bool (*)(CIEData& job, std::size_t nCount);

void Import(benchmark::State& state, int nCode, TAppend append, TCheck check)
{
    const auto nCount = static_cast<std::size_t>(state.range(0));
    const CScratchFile file;
    WriteFile(file.GetPath(), append, nCount);
    {
        CIEData job;
        if (ImportInTheSameThread(&job, file.GetPath(), nCode) != IE_OK || !check(job, nCount)) {
            state.SkipWithError("the import gives something else");
            return;
        }
    }
    for ([[maybe_unused]] auto _ : state) {
        auto pJob = std::make_unique<CIEData>();
        benchmark::DoNotOptimize(ImportInTheSameThread(pJob.get(), file.GetPath(), nCode));
        state.PauseTiming();
        pJob.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetBytesProcessed(state.iterations() * file.GetSize());
}

// ---- lines made to be slow

/// One line that repeats a piece of code text.
void ImportLongLine(benchmark::State& state, const char* pStart, const char* pPiece)
{
    std::string line = pStart;
    for (std::int64_t i = 0; i < state.range(0); ++i)
        line += pPiece;
    const CScratchFile file;
    std::ofstream(file.GetPath(), std::ios::binary) << line << "\r\n";
    for ([[maybe_unused]] auto _ : state) {
        CIEData job;
        TIESettings settings;
        settings.m_bAttrTypes = settings.m_bAttrQuotes = true;
        job.SetSettings(std::move(settings));
        if (ImportInTheSameThread(&job, file.GetPath(), kDelimitedIn) != IE_OK ||
            job.GetNumberOfObjectsInAllDatasets() != 1) {
            state.SkipWithError("the import gives something else");
            return;
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetBytesProcessed(state.iterations() * file.GetSize());
}

// ---- export

std::unique_ptr<CIEData> MakeAttributeJob(std::size_t nCount)
{
    std::unique_ptr<CIEData> pJob = PointJobs::Make(nCount);
    for (int i = 0; CIECodeDescription* const pCode = pJob->GetIEDataDictionary()->GetCodeDescriptionAt(i); ++i) {
        pCode->AddAttrDescription(CIEAttrDescription("width"));
        pCode->AddAttrDescription(CIEAttrDescription("kind"));
    }
    const CIEDataset& dataset = *pJob->GetCurDataset(true);
    for (int i = 0; CIEObject* const pObject = dataset.GetObjectAt(i); ++i) {
        CIECodeValues& code = *pObject->GetCode(0);
        code.AddAttr(std::to_string(i % 97) + ".5");
        code.AddAttr("asphalt");
        code.AddCodeString("text");
        code.SetControlCode(0, "c" + std::to_string(i % 7));
    }
    return pJob;
}

using TMakeJob = std::unique_ptr<CIEData> (*)(std::size_t nCount);

void Export(benchmark::State& state, int nCode, TMakeJob makeJob, TAppend expected, bool bObserved)
{
    const auto nCount = static_cast<std::size_t>(state.range(0));
    const CScratchFile file;
    CIELedger ledger;
    const auto run = [&](std::unique_ptr<CIEData> pJob) {
        if (bObserved)
            pJob->SetObserver(&ledger);
        return ExportInTheSameThread(pJob.release(), file.GetPath(), static_cast<EExportType>(nCode));
    };

    std::string lines;
    for (std::size_t i = 0; i < 100; ++i)
        expected(lines, i);
    const int nLines = static_cast<int>(std::count(lines.begin(), lines.end(), '\n'));
    if (run(makeJob(nCount)) != IE_OK || FirstLines(file.GetPath(), nLines) != lines || !ledger.IsEmpty()) {
        state.SkipWithError("the export gives something else");
        return;
    }
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        std::unique_ptr<CIEData> pJob = makeJob(nCount);
        state.ResumeTiming();
        benchmark::DoNotOptimize(run(std::move(pJob))); // deletes the job, too
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetBytesProcessed(state.iterations() * file.GetSize());
}

void SizesOf(benchmark::internal::Benchmark* pBenchmark)
{
    pBenchmark->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
}

void LengthsOf(benchmark::internal::Benchmark* pBenchmark)
{
    pBenchmark->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK_CAPTURE(Import, delimited, kDelimitedIn, AppendPoint, HasCodedPoints)->Apply(SizesOf);
BENCHMARK_CAPTURE(Import, delimited_lines, kDelimitedIn, AppendLinePoint, HasLines)->Apply(SizesOf);
BENCHMARK_CAPTURE(Import, delimited_attributes, kDelimitedIn, AppendAttributes, HasAttributes)->Apply(SizesOf);
BENCHMARK_CAPTURE(Import, sima, kSimaIn, AppendSima, HasPoints)->Apply(SizesOf);
BENCHMARK_CAPTURE(ImportLongLine, attributes, "P,1,2,3,ROAD:", "a=b$")->Apply(LengthsOf);
BENCHMARK_CAPTURE(ImportLongLine, quoted_attributes, "P,1,2,3,ROAD:", "a.TEXT=\"b\"")->Apply(LengthsOf);
BENCHMARK_CAPTURE(ImportLongLine, code_strings, "P,1,2,3,ROAD", "&\"a\"")->Apply(LengthsOf);
BENCHMARK_CAPTURE(ImportLongLine, codes, "P,1,2,3", ",TREE")->Arg(900)->Arg(9'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Export, delimited, kDelimitedOut, PointJobs::Make, AppendPoint, false)->Apply(SizesOf);
BENCHMARK_CAPTURE(Export, delimited_attributes, kDelimitedOut, MakeAttributeJob, AppendAttributes, false)
    ->Apply(SizesOf);
BENCHMARK_CAPTURE(Export, delimited_attributes_observed, kDelimitedOut, MakeAttributeJob, AppendAttributes, true)
    ->Apply(SizesOf);
BENCHMARK_CAPTURE(Export, sima, kSimaOut, PointJobs::Make, AppendSima, false)->Apply(SizesOf);
