#include "alidade/compare/compare.h"
#include "alidade/jobfile/job_file.h"
#include "jobfile/job_samples.h"
#include "support/files.h"
#include "support/jobs.h"

#include <chrono>
#include <functional>
#include <random>

namespace {

/// All that was found, a line each: "changed point P1.north 1 -> 2".
class CListing : public IIEDifferenceSink {
public:
    void OnDifference(const TIEDifference& difference) override
    {
        constexpr const char* kKinds[] = {"added", "gone", "changed"};
        m_strText += CString(kKinds[difference.m_eKind]) + " " + difference.m_pThing + " " + difference.m_strName;
        if (difference.m_nPart >= 0)
            m_strText += "[" + std::to_string(difference.m_nPart) + "]";
        if (difference.m_eKind == TIEDifference::Changed)
            m_strText +=
                CString(".") + difference.m_pProperty + " " + difference.m_strFirst + " -> " + difference.m_strSecond;
        m_strText += "\n";
    }
    CString m_strText;
};

CString Compare(const CIEData& first, const CIEData& second, const TIECompareOptions& options = {})
{
    CListing listing;
    const std::int64_t nCount = CompareJobs(first, second, options, listing);
    EXPECT_EQ(nCount, std::count(listing.m_strText.begin(), listing.m_strText.end(), '\n'));
    return listing.m_strText;
}

constexpr TIECompareOptions kWhole{0.0, 0.0, 0.0, true, true};

/// A job with three points, a line and a polygon, and things of every dictionary.
void Fill(CIEData& job)
{
    CIECodeDescription* const pRoad = AddCode(job, "ROAD", {CIEAttrDescription("width", CIEAttrDescription::REAL)});
    CIELayer* const pLayer = job.GetIEDrawDictionary()->AddLayer(std::make_unique<CIELayer>("Roads"));
    CIEDataset& dataset = *job.AddDataset(std::make_unique<CIEDataset>("Site"));
    for (int i = 1; i <= 3; ++i) {
        CIEDesignPoint& point = AddPoint(dataset, "P" + std::to_string(i), 10.0 * i, 20.0 * i, i);
        GiveCode(point, pRoad, {"3.5"});
        point.SetLayer(pLayer);
    }
    AddLine<CIEPolyLine>(dataset, "L", {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
    AddLine<CIEPolygon>(dataset, "R", {{0, 0, 0}, {0, 9, 0}, {9, 9, 0}});
}

/// Whatever a job can hold is the same as itself, and no property is passed over by mistake: the copy went through a
/// document that keeps everything.
TEST(Compare, AJobIsTheSameAsItsCopy)
{
    CTempFolder folder;
    const auto check = [&](CIEData& job) {
        CIEData copy;
        ASSERT_EQ(CIEJobFile::Write(job, folder / "a.job.json"), IE_OK);
        ASSERT_EQ(CIEJobFile::Read(copy, folder / "a.job.json"), IE_OK);
        EXPECT_EQ(Compare(job, copy, kWhole), "");
        EXPECT_EQ(Compare(copy, job, kWhole), "");
    };
    CIEData rich;
    JobSamples::FillRichJob(rich);
    check(rich);
    for (unsigned nSeed = 1; nSeed <= 20; ++nSeed) {
        CIEData job;
        JobSamples::FillRandomJob(job, nSeed);
        check(job);
    }
}

/// Each change, and nothing else, is found.
TEST(Compare, FindsWhatWasChanged)
{
    using TChange = void (*)(CIEData & job, CIEDataset & dataset);
    const struct {
        const char* m_pFound;
        TChange m_pChange;
    } kRows[] = {
        {"", [](CIEData&, CIEDataset&) {}},
        {"changed point P2.north 20 -> 20.5\n",
         [](CIEData&, CIEDataset& d) { static_cast<CIEDesignPoint*>(d.FindObject("P2"))->SetCoords(20.5, 40, 2, 0); }},
        {"changed point P2.height 2 -> \n",
         [](CIEData&, CIEDataset& d) {
             auto& point = *static_cast<CIEDesignPoint*>(d.FindObject("P2"));
             CIEStation station = *point.GetStation();
             station.SetHeightUndefined();
             point.SetStation(station);
         }},
        {"changed point P2.name P2 -> Q\n", [](CIEData&, CIEDataset& d) { d.FindObject("P2")->SetName("Q"); }},
        {"gone point P2\n", [](CIEData&, CIEDataset& d) { d.RemoveObject(1); }},
        {"added point N\n", [](CIEData&, CIEDataset& d) { AddPoint(d, "N", 77, 88, 9); }},
        {"changed point P3.codes ROAD -> \n", [](CIEData&, CIEDataset& d) { d.FindObject("P3")->RemoveCodes(); }},
        {"changed point P3.attributes ROAD.width=3.5 -> ROAD.width=4\n",
         [](CIEData&, CIEDataset& d) { d.FindObject("P3")->GetCode(0)->SetAttrAt(0, "4"); }},
        {"changed point P3.code strings  -> s\n",
         [](CIEData&, CIEDataset& d) { d.FindObject("P3")->GetCode(0)->AddCodeString("s"); }},
        {"changed point P3.control codes  -> c\n",
         [](CIEData&, CIEDataset& d) { d.FindObject("P3")->GetCode(0)->SetControlCode(1, "c"); }},
        {"changed point P1.layer Roads -> \n", [](CIEData&, CIEDataset& d) { d.FindObject("P1")->SetLayer(nullptr); }},
        {"changed point P1.drawing as its layer says -> as an area\n",
         [](CIEData&, CIEDataset& d) {
             d.FindObject("P1")->SetDrawProperties(std::make_unique<CIEDrawAreaProperties>());
         }},
        {"changed line L.kind line -> polygon\n",
         [](CIEData&, CIEDataset& d) { d.TransformLineToPolygon(static_cast<CIEPolyLine*>(d.FindObject("L"))); }},
        {"changed line L.number of stations 3 -> 4\nchanged line L[3].station  -> 1 1 1\n",
         [](CIEData&, CIEDataset& d) {
             static_cast<CIEPolyLine*>(d.FindObject("L"))->AddStation({1, 1, 1});
         }},
        {"added layer New\n",
         [](CIEData& job, CIEDataset&) { job.GetIEDrawDictionary()->AddLayer(std::make_unique<CIELayer>("New")); }},
        {"changed layer Roads.printed yes -> no\n",
         [](CIEData& job, CIEDataset&) { job.GetIEDrawDictionary()->GetLayerAt(0)->SetPlotStatus(false); }},
        {"added code TREE\n", [](CIEData& job, CIEDataset&) { AddCode(job, "TREE"); }},
        {"changed code ROAD.description  -> words\n",
         [](CIEData& job, CIEDataset&) {
             job.GetIEDataDictionary()->GetCodeDescriptionAt(0)->SetDescription("words");
         }},
        {"changed dataset Site.name Site -> Other\n", [](CIEData&, CIEDataset& d) { d.SetName("Other"); }},
        {"added dataset Further\nadded point F\n",
         [](CIEData& job, CIEDataset&) { AddPoint(*job.AddDataset(std::make_unique<CIEDataset>("Further")), "F"); }},
        {"changed job .instrument  -> T2\n",
         [](CIEData& job, CIEDataset&) { job.GetJobInfo()->m_strInstrument = "T2"; }},
        {"changed job history Site.number of tables 0 -> 2\n",
         [](CIEData&, CIEDataset& d) { d.SetJobHistory(MakeHistory(2)); }},
        {"added alignment A\n", [](CIEData&, CIEDataset& d) { d.Add(std::make_unique<CIEAlignment>())->SetName("A"); }},
    };
    for (const auto& row : kRows) {
        CIEData first, second;
        Fill(first);
        Fill(second);
        row.m_pChange(second, *second.GetDatasetAt(0));
        EXPECT_EQ(Compare(first, second, kWhole), row.m_pFound);
    }
}

TEST(Compare, DifferencesUpToTheToleranceAreNone)
{
    CIEData first, second;
    Fill(first);
    Fill(second);
    auto& point = *static_cast<CIEDesignPoint*>(second.GetDatasetAt(0)->FindObject("P1"));
    point.SetCoords(10.0004, 19.9996, 1.04, 0);
    EXPECT_EQ(Compare(first, second, {0.0005, 0.05, 0.0, false, false}), "");
    EXPECT_EQ(Compare(first, second, {0.0005, 0.03, 0.0, false, false}), "changed point P1.height 1 -> 1.04\n");
    EXPECT_EQ(Compare(first, second, {0.0003, 0.05, 0.0, false, false}),
              "changed point P1.north 10 -> 10.0004\nchanged point P1.east 20 -> 19.9996\n");
}

/// Names that repeat or are missing don't mix things up, in whatever order they stand.
TEST(Compare, PairsByPlaceWhereNamesDontServe)
{
    std::minstd_rand random(7);
    for (int nRound = 0; nRound < 20; ++nRound) {
        CIEData first, second;
        CIEDataset& one = *first.AddDataset(std::make_unique<CIEDataset>("A"));
        CIEDataset& other = *second.AddDataset(std::make_unique<CIEDataset>("B"));
        std::vector<int> order(60);
        for (int i = 0; i < 60; ++i)
            order[static_cast<std::size_t>(i)] = i;
        const auto add = [](CIEDataset& dataset, int i, double dOff) {
            AddPoint(dataset, i % 3 == 0 ? "" : i % 3 == 1 ? "same" : "P" + std::to_string(i), i * 10.0 + dOff, -i, i);
        };
        for (const int i : order)
            add(one, i, 0.0);
        std::shuffle(order.begin(), order.end(), random);
        for (const int i : order)
            add(other, i, 0.0009);
        EXPECT_EQ(Compare(first, second, {0.001, 0.0, 0.0, false, false}), "");
    }
}

/// Triangles are the same whatever corner they begin with and in whatever order they stand.
TEST(Compare, TrianglesAreTheirCorners)
{
    const auto make = [](CIEData& job, std::initializer_list<std::array<int, 3>> triangles) {
        auto pSurface = std::make_unique<CIESurface>();
        pSurface->SetName("S");
        for (const CIEStation& position : {CIEStation(0, 0, 1), {0, 10, 2}, {10, 0, 3}, {10, 10, 4}})
            pSurface->AddPosition(position);
        for (const std::array<int, 3>& corners : triangles) {
            CIETriangle triangle;
            for (int k = 0; k < 3; ++k)
                triangle.SetPosition(k, corners[static_cast<std::size_t>(k)]);
            pSurface->AddTriangle(triangle);
        }
        job.AddDataset(std::make_unique<CIEDataset>("D"))->Add(std::move(pSurface));
    };
    CIEData whole, turned, other;
    make(whole, {{0, 1, 2}, {1, 2, 3}});
    make(turned, {{3, 1, 2}, {2, 0, 1}});
    make(other, {{0, 1, 2}, {0, 2, 3}});
    EXPECT_EQ(Compare(whole, turned), "");
    EXPECT_EQ(Compare(whole, other),
              "changed surface S.triangles lost 1 -> 0\nchanged surface S.triangles new 0 -> 1\n");
}

/// Crowds at one place or under one name cost no more than others: these take well under a second, and a search for
/// each would take minutes.
TEST(Compare, CrowdsTakeNoLonger)
{
    constexpr int kPoints = 100'000;
    for (const bool bNamed : {true, false}) {
        CIEData first, second;
        CIEDataset& one = *first.AddDataset(std::make_unique<CIEDataset>("A"));
        CIEDataset& other = *second.AddDataset(std::make_unique<CIEDataset>("B"));
        for (int i = 0; i < kPoints; ++i) {
            AddPoint(one, bNamed ? "same" : "", 1, 2, i);
            AddPoint(other, bNamed ? "same" : "", bNamed ? 5 + i : 1, 2, kPoints - i);
        }
        CIEDifferenceCounter counter;
        const auto start = std::chrono::steady_clock::now();
        EXPECT_GT(CompareJobs(first, second, {}, counter), 0);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
        EXPECT_LE(counter.GetKept().size(), counter.GetCounts().size() * CIEDifferenceCounter::kKeptOfEach);
    }
}

} // namespace
