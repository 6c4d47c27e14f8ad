#include "alidade/frame/point_exporter.h"

#include "alidade/frame/format_row.h"
#include "support/files.h"
#include "support/jobs.h"

namespace {

/// Writes down what the walk asks of it.
class CRecorder : public CIEPointExporter {
public:
    using CIEPointExporter::CIEPointExporter;
    CString m_strCalls;
    int m_nFailAt = -1; ///< the station whose writing fails

    bool OpenFile() override { return Say("open ") && CIEPointExporter::OpenFile(); }
    bool WriteHeader() override { return !Say("header "); } // a header that fails ends nothing
    bool WriteFooter() override { return !Say("footer "); }
    bool WriteStation(const CIEStation* pStation, const CIEObject* pObject) override
    {
        Say((pObject ? pObject->GetName() : "ring:") + IEUtils::IntToString(static_cast<int>(pStation->m_dNorth)) +
            " ");
        return --m_nFailAt != -1;
    }
    bool CloseFile() override
    {
        Say("close");
        return CIEPointExporter::CloseFile();
    }

private:
    bool Say(const CString& what)
    {
        m_strCalls += what;
        return true;
    }
};

class ExporterTest : public testing::Test {
protected:
    ExporterTest()
    {
        CIEDataset& dataset = *m_Job.AddDataset(std::make_unique<CIEDataset>("Site"));
        AddPoint(dataset, "a", 1);
        AddLine<CIEPolyLine>(dataset, "b", {MakeStation("", 2, 0, 0), MakeStation("", 3, 0, 0)});
        AddLine<CIEPolyLine>(dataset, "empty", {});
        AddLine<CIEPolygon>(dataset, "c", {MakeStation("", 4, 0, 0)});
        dataset.Add(std::make_unique<CIEArc>());
        AddPoint<CIEGPSPosition>(dataset, "d", 5);
    }

    CTempFolder m_Folder;
    CIEData m_Job;
};

TEST_F(ExporterTest, OneStepAnObjectInAFrameOfTwo)
{
    CRecorder exporter(&m_Job, m_Folder / "out");
    EXPECT_EQ(exporter.GetNumberOfSteps(), 8);
    const char* const steps[] = {"open ", "header a1 ", "b2 b3 ", "", "c4 ring:4 ", "", "d5 ", "footer close"};
    for (int i = 0; i < 8; ++i) {
        exporter.m_strCalls.clear();
        EXPECT_EQ(exporter.SingleStep(), i < 7) << i;
        EXPECT_EQ(exporter.m_strCalls, steps[i]) << i;
    }
}

TEST_F(ExporterTest, AFailedStationEndsItsObjectAndTheRunButNotTheResult)
{
    CRecorder exporter(&m_Job, m_Folder / "out");
    exporter.m_nFailAt = 1;
    EXPECT_EQ(exporter.Export(), IE_OK);
    EXPECT_EQ(exporter.m_strCalls, "open header a1 b2 ");
}

TEST_F(ExporterTest, WithoutAFileThereIsNoHeader)
{
    CRecorder exporter(&m_Job, m_Folder / "missing/out");
    EXPECT_EQ(exporter.Export(), IE_CANNOT_OPEN_FILE);
    EXPECT_EQ(exporter.m_strCalls, "open ");
    EXPECT_TRUE(m_Job.GetCreatedFileNames().empty());
}

TEST_F(ExporterTest, AStopIsSeenBehindAStepThatRanToItsEnd)
{
    const TStopGuard guard;
    CIEDataset& dataset = *m_Job.GetDatasetAt(0);
    dataset.Add(
        std::make_unique<CProbePoint>(MakeStation("last", 6, 0, 0), nullptr, [] { CIEData::m_bStopProcess = true; }));
    CRecorder exporter(&m_Job, m_Folder / "out");
    EXPECT_EQ(exporter.Export(), IE_STOPPED);
    EXPECT_TRUE(exporter.m_strCalls.ends_with("d5 last6 ")) << exporter.m_strCalls;
}

TEST_F(ExporterTest, ProgressEveryThousandStepsAndAtTheEnd)
{
    struct : IIETransferObserver {
        CString m_strSeen;
        void OnProgress(std::int64_t nDone, std::int64_t nTotal) override
        {
            m_strSeen += std::to_string(nDone) + "/" + std::to_string(nTotal) + " ";
        }
        void OnNote(const TIENote& /*note*/) override {}
    } observer;
    for (int i = 0; i < 1500; ++i)
        AddPoint(*m_Job.GetDatasetAt(0), "p");
    m_Job.SetObserver(&observer);
    CRecorder exporter(&m_Job, m_Folder / "out");
    EXPECT_EQ(exporter.Export(), IE_OK);
    EXPECT_EQ(observer.m_strSeen, "1000/1508 1508/1508 ");
}

} // namespace
