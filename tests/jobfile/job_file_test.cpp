// Job documents: what is written, that it comes back, files and disks.
#include "alidade/jobfile/job_file.h"

#include "jobfile/job_samples.h"
#include "support/files.h"
#include "support/places.h"

#include <nlohmann/json.hpp>

#include <limits>
#include <set>

#include <gtest/gtest.h>

namespace {

using nlohmann::ordered_json;

/// Reads a text that must be good.
void ReadGood(CIEData& job, const CString& text)
{
    TIEJobFileError error;
    ASSERT_EQ(CIEJobFile::FromText(job, text, &error), IE_OK) << error.m_strPlace << ": " << error.m_strReason;
}

CString Datasets(const CString& objects)
{
    return R"({"alidade":"job","datasets":[{"objects":[)" + objects + "]}]}";
}

/// The same document with the members of every object in reverse order.
ordered_json Reversed(const ordered_json& value)
{
    if (value.is_array()) {
        ordered_json list = ordered_json::array();
        for (const auto& element : value)
            list.push_back(Reversed(element));
        return list;
    }
    if (!value.is_object())
        return value;
    std::vector<std::pair<CString, ordered_json>> members;
    for (const auto& [key, member] : value.items())
        members.emplace(members.begin(), key, Reversed(member));
    ordered_json object = ordered_json::object();
    for (auto& [key, member] : members)
        object[key] = std::move(member);
    return object;
}

std::vector<CString> JsonBlocks(const CString& text)
{
    const CString strFence = "```";
    std::vector<CString> blocks;
    for (std::size_t n = text.find("```json\n"); n != CString::npos; n = text.find("```json\n", n)) {
        n += 8;
        const std::size_t nEnd = text.find(strFence, n);
        blocks.push_back(text.substr(n, nEnd - n));
        n = nEnd + strFence.size();
    }
    return blocks;
}

class CNoMessageBox : public IIEMessageBox {
public:
    bool AskOverwrite(const CString&, HWND) override { return false; }
};

/// Of a kind that documents have no word for.
class COddPoint : public CIEDesignPoint {
public:
    using CIEDesignPoint::CIEDesignPoint;
    [[nodiscard]] EIEObjectsType GetType() const override { return static_cast<EIEObjectsType>(99); }
};

TEST(JobFile, AStopCostsNoDocument)
{
    const TStopGuard guard;
    const CTempFolder folder;
    const CString strFile = folder / "a.job.json";
    CIEData job;
    ASSERT_EQ(CIEJobFile::Write(job, strFile), IE_OK);
    const CString before = ReadFile(strFile);
    AddPoint(*job.GetCurDataset(true), "new");
    CIEData::m_bStopProcess = true;
    EXPECT_EQ(CIEJobFile::Write(job, strFile), IE_STOPPED);
    EXPECT_EQ(CIEJobFile::Read(job, strFile), IE_STOPPED);
    EXPECT_EQ(job.GetNumberOfObjectsInAllDatasets(), 1);
    CIEData::m_bStopProcess = false;
    EXPECT_EQ(ReadFile(strFile), before);
    EXPECT_EQ(folder.List(), "a.job.json ");
}

} // namespace

TEST(JobFile, TheRichJobIsWrittenAsItAlwaysWas)
{
    CIEData job;
    JobSamples::FillRichJob(job);
    ExpectGolden("jobfile/rich.job.json", CIEJobFile::ToText(job));
}

TEST(JobFile, TheRichJobComesBack)
{
    CIEData job;
    JobSamples::FillRichJob(job);
    const CString text = CIEJobFile::ToText(job);
    CIEData back;
    ReadGood(back, text);
    EXPECT_EQ(CIEJobFile::ToText(back), text);

    EXPECT_EQ(back.GetCurDatasetID(), 1);
    EXPECT_EQ(back.GetJobInfo()->m_strJobComment, "Überprüft – 測量");
    EXPECT_EQ(back.GetJobInfo()->GetDistUnits(), EDIST_UNITS::USSurveyFeet);
    EXPECT_EQ(back.GetSettings().GetAsciiFormat(), job.GetSettings().GetAsciiFormat());
    EXPECT_TRUE(back.GetSettings().HasDataType(EIEDataType::JobHistory));
    EXPECT_TRUE(back.GetSettings().HasDataType(static_cast<EIEDataType>(21)));
    EXPECT_FALSE(back.GetSettings().HasDataType(EIEDataType::Lines));
    CIEDataset& dataset = *back.GetDatasetAt(1);
    const CIEObject& full = *dataset.GetObjectAt(1);
    EXPECT_EQ(full.GetLayer(), back.GetIEDrawDictionary()->FindLayer("Trees"));
    EXPECT_EQ(full.GetStateType(), CIEObject::InBlock);
    EXPECT_FALSE(full.GetStation(0)->IsHeightDefined());
    EXPECT_EQ(full.GetStation(0)->GetStationType(), 7);
    ASSERT_EQ(full.GetNumberOfCodes(), 5);
    EXPECT_EQ(full.GetCode(0)->GetDescription(), back.GetIEDataDictionary()->FindCodeDiscription("TREE"));
    const int kCounts[] = {3, 1, 3, 2, 0};
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(full.GetCode(i)->GetNumberOfAttrs(), kCounts[i]) << i;
    EXPECT_EQ(full.GetCode(3)->GetAttrAt(1), "y");
    EXPECT_EQ(full.GetCode(4)->GetNumberOfCodeStrings(), 2);
    EXPECT_EQ(full.GetCode(4)->GetControlCode(0), "");
    EXPECT_EQ(full.GetCode(4)->GetControlCode(1), "END");
    EXPECT_EQ(dataset.FindObject("ptl")->GetType(), EIEObjectsType::PTLPoint);
    EXPECT_EQ(dataset.GetObjectAt(4)->GetStation(0)->GetName(), "corner");
    EXPECT_EQ(static_cast<CIEArc*>(dataset.GetObjectAt(6))->GetData(CIEArc::EndAngle), 13.5);
    const auto& gps = static_cast<const CIEGPSPosition&>(*dataset.FindObject("gps"));
    CIEGPSPosition expected;
    JobSamples::FillGPSData(expected);
    EXPECT_TRUE(gps.HasSameGPSData(expected));
    EXPECT_EQ(static_cast<CIEGPSPosition*>(dataset.FindObject("heard"))->GetRawDataType(), 1);
    EXPECT_TRUE(static_cast<CIEGPSPosition*>(dataset.FindObject("measured"))->HasCV());
    const auto& sheet = static_cast<const CIESheetPoint&>(*dataset.FindObject("stake"));
    ASSERT_EQ(sheet.GetNumberOfStations(), 3);
    EXPECT_EQ(sheet.GetStation(0)->GetName() + sheet.GetStation(1)->GetNotes(), "cornerunder \\ the tree");
    EXPECT_EQ(sheet.GetOffsetStation(1)->m_dDeltaHeight, 2.5);
    EXPECT_EQ(sheet.GetOffsetStation(1)->m_dDistance, 7.5);
    EXPECT_EQ(dataset.FindObject("bare sheet")->GetStation(0), nullptr);
    EXPECT_EQ(dataset.GetJobHistory()->GetJHTables(), job.GetDatasetAt(1)->GetJobHistory()->GetJHTables());
    EXPECT_NE(back.GetDatasetAt(0)->GetJobHistory(), nullptr);
    EXPECT_EQ(dataset.GetSurfaceAt(0)->GetTriangleAt(0)->GetPosition(2), -1);

    const CIELayer& trees = *back.GetIEDrawDictionary()->FindLayer("Trees");
    EXPECT_FALSE(trees.IsActive() || trees.IsPlot());
    EXPECT_STREQ(static_cast<CIEDrawLineProperties*>(trees.GetDrawProperties())->GetDashStyleTypeAsString(),
                 "DASHDOTDOTTED");
    EXPECT_EQ(back.GetIEDrawDictionary()->GetDefaultLayer()->GetName(), "Empty");
    TIEColor color = 0;
    const CIECodeDescription& kerb = *back.GetIEDataDictionary()->FindCodeDiscription("KERB");
    EXPECT_TRUE(kerb.GetDrawProperties(CIEDrawProperties::Points)->GetColor(color));
    EXPECT_EQ(color, 0xFFU); // red
    EXPECT_FALSE(kerb.GetDrawProperties(CIEDrawProperties::Lines)->GetColor(color));
    const auto& gate = static_cast<const CIECompositeObject&>(*dataset.FindObject("gate"));
    EXPECT_EQ(gate.GetPartAt(1)->GetDrawProperties()->GetType(), CIEDrawProperties::Lines);
    EXPECT_EQ(gate.GetNumberOfStations(), 4);
    EXPECT_EQ(dataset.GetHeaderInfo()->GetBorder(CHeaderInfo::Maximum)->m_dEast, 5);
    EXPECT_EQ(dataset.GetHeaderInfo()->GetTextHeight(), 1.75);

    const CIEAlignment& road = *dataset.GetAlignmentAt(0);
    EXPECT_EQ(road.GetStartPoint(), dataset.GetObjectAt(1));
    const auto& spiral = static_cast<const CIESpiral&>(*road.GetObjectAt(2));
    EXPECT_EQ(spiral.GetData(ESpiralDataType::EndRadius), 35.25);
    EXPECT_STREQ(spiral.GetSpiralTypeAsString(), "revBloss");
    const auto& point = static_cast<const CIEIntersectionPoint&>(*road.GetObjectAt(3));
    EXPECT_TRUE(point.IsSimplePoint());
    EXPECT_EQ(point.GetSecondSpiral()->GetPosition(CIESpiral::End).GetEast(), -5);
    const auto& bare = static_cast<const CIEIntersectionPoint&>(*road.GetObjectAt(4));
    EXPECT_FALSE(bare.GetStartPosition().IsDefined());
    EXPECT_EQ(bare.GetCurve(), nullptr);
    EXPECT_EQ(road.GetLongSectionAt(0)->GetParabola()->GetData(EVEDataType::EndGrade), 1088);
    const CIECrossSection& cross = *road.GetCrossSectionAt(0);
    EXPECT_EQ(cross.GetRoadTemplateAt(1), back.GetIERoadTemplatesDictionary()->FindRoadTemplate("ditch"));
    EXPECT_EQ(cross.GetRoadTemplateAt(1)->GetOffsetsForm(), CIERoadTemplate::Sequential);
    EXPECT_TRUE(cross.IsLevelAtCLCalculated());
    EXPECT_FALSE(road.GetCrossSectionAt(1)->IsLevelAtCLCalculated());
}

TEST(JobFile, TheOrderOfKeysMakesNoDifference)
{
    CIEData job;
    JobSamples::FillRichJob(job);
    const CString text = CIEJobFile::ToText(job);
    CIEData back;
    ReadGood(back, Reversed(ordered_json::parse(text)).dump());
    EXPECT_EQ(CIEJobFile::ToText(back), text);
}

TEST(JobFile, RandomJobsComeBack)
{
    for (unsigned nSeed = 1; nSeed <= 300; ++nSeed) {
        CIEData job;
        JobSamples::FillRandomJob(job, nSeed);
        const CString text = CIEJobFile::ToText(job);
        CIEData back;
        ASSERT_NO_FATAL_FAILURE(ReadGood(back, text)) << "seed " << nSeed;
        ASSERT_EQ(CIEJobFile::ToText(back), text) << "seed " << nSeed;
        for (int i = 0; i < job.GetNumberOfDatasets(); ++i) {
            for (int k = 0; const CIEObject* const pObject = job.GetDatasetAt(i)->GetObjectAt(k); ++k) {
                const CIEObject* const pBack = back.GetDatasetAt(i)->GetObjectAt(k);
                ASSERT_EQ(pBack->GetName(), pObject->GetName()) << "seed " << nSeed;
                for (int s = 0; s < pObject->GetNumberOfStations(); ++s)
                    ASSERT_TRUE(*pBack->GetStation(s) == *pObject->GetStation(s)) << "seed " << nSeed;
            }
        }
    }
}

TEST(JobFile, WhateverIsWrittenCanBeRead)
{
    CIELedger ledger;
    for (unsigned nSeed = 1; nSeed <= 300; ++nSeed) {
        CIEData job;
        job.SetObserver(&ledger);
        JobSamples::FillWildJob(job, nSeed);
        const CString text = CIEJobFile::ToText(job);
        CIEData back;
        CIELedger none;
        back.SetObserver(&none);
        ASSERT_NO_FATAL_FAILURE(ReadGood(back, text)) << "seed " << nSeed;
        const CString mendedText = CIEJobFile::ToText(back);
        CIEData again;
        ASSERT_NO_FATAL_FAILURE(ReadGood(again, mendedText)) << "seed " << nSeed;
        ASSERT_EQ(CIEJobFile::ToText(again), mendedText) << "seed " << nSeed;
        EXPECT_TRUE(none.IsEmpty()) << "nothing is left to mend";
    }
    std::set<CString> mended;
    for (const TIENote& note : ledger.GetNotes())
        mended.insert(note.GetWord() + (": " + note.m_strRecord));
    for (const char* record : {"northDecimals", "heightDecimals", "mostBlockCopies", "codePage", "writeEncoding",
                               "delimiter", "fields", "info", "l", "n"})
        EXPECT_TRUE(mended.contains(CString("job.mended: ") + record)) << record;
}

TEST(JobFile, AnEmptyJobSaysNothing)
{
    CIEData job;
    const CString text = CIEJobFile::ToText(job);
    EXPECT_EQ(text, "{\n  \"alidade\": \"job\",\n  \"version\": 1\n}\n");
    job.AddDataset(std::make_unique<CIEDataset>("A"));
    job.AttachIERoadTemplatesDictionary(std::make_unique<CIERoadTemplatesDictionary>());
    ReadGood(job, text);
    EXPECT_EQ(job.GetNumberOfDatasets(), 0);
    EXPECT_EQ(job.GetCurDatasetID(), -1);
    EXPECT_EQ(job.GetIERoadTemplatesDictionary(), nullptr);
}

TEST(JobFile, APersonCanLeaveMostOut)
{
    CIEData job;
    ReadGood(
        job,
        Datasets(
            R"({"point":"1","north":1,"east":2,"height":3,"layer":"new","codes":[{"name":"TREE","attributes":{"b":"x"}}]},
                             {"codes":[{"attributes":{"a":"y","b":"z"},"name":"TREE"}],"point":"2"},
                             {"point":"3","height":null})"));
    EXPECT_EQ(job.GetCurDatasetID(), 0);
    CIEDataset& dataset = *job.GetDatasetAt(0);
    EXPECT_TRUE(*dataset.FindObject("1")->GetStation(0) == CIEStation(1, 2, 3));
    EXPECT_EQ(dataset.FindObject("1")->GetLayer(), job.GetIEDrawDictionary()->FindLayer("new"));
    EXPECT_FALSE(dataset.FindObject("3")->GetStation(0)->IsHeightDefined());
    // the code takes its attributes as they are named
    const CIECodeDescription& code = *job.GetIEDataDictionary()->FindCodeDiscription("TREE");
    ASSERT_EQ(code.GetSize(), 2);
    EXPECT_EQ(code.GetAttrDescriptionAt(0)->GetName(), "b");
    EXPECT_EQ(code.GetAttrDescriptionAt(1)->GetName(), "a");
    EXPECT_EQ(dataset.FindObject("2")->GetCode(0)->GetAttrAt(0), "z");
    EXPECT_EQ(dataset.FindObject("2")->GetCode(0)->GetAttrAt(1), "y");
    EXPECT_EQ(dataset.FindObject("1")->GetCode(0)->GetNumberOfAttrs(), 1);
    CIEData back;
    ReadGood(back, CIEJobFile::ToText(job));
    EXPECT_EQ(CIEJobFile::ToText(back), CIEJobFile::ToText(job));
}

TEST(JobFile, NumbersKeepEveryBit)
{
    for (const double d : {0.1, 1.0 / 3, 5e-324, 1.7976931348623157e308, -123456789.98765432, 4503599627370497.5,
                           9007199254740993.0, 1e22, 1e23, 18446744073709551616.0}) {
        CIEData job;
        AddPoint(*job.GetCurDataset(true), "1", d, -d, d);
        CIEData back;
        ReadGood(back, CIEJobFile::ToText(job));
        EXPECT_TRUE(*back.GetDatasetAt(0)->GetObjectAt(0)->GetStation(0) == CIEStation(d, -d, d)) << d;
    }
}

TEST(JobFile, WhatJsonCantHoldIsMended)
{
    CIEData job;
    AddPoint(*job.GetCurDataset(true), "a\xFF\xC3z", std::numeric_limits<double>::quiet_NaN(),
             std::numeric_limits<double>::infinity());
    CIEData back;
    ReadGood(back, CIEJobFile::ToText(job));
    const CIEObject& object = *back.GetDatasetAt(0)->GetObjectAt(0);
    EXPECT_EQ(object.GetName(), "a\xEF\xBF\xBD\xEF\xBF\xBDz");
    EXPECT_TRUE(*object.GetStation(0) == CIEStation(0, 0, 3));
}

TEST(JobFile, CodesAndTemplatesFromElsewhereAreWrittenToo)
{
    CIECodeDescription foreign("FOREIGN");
    foreign.AddAttrDescription(CIEAttrDescription("a"));
    CIEData job;
    CIEDataset& dataset = *job.GetCurDataset(true);
    GiveCode(AddPoint(dataset, "1"), &foreign, {"x"});
    auto pTemplates = std::make_unique<CIERoadTemplatesDictionary>();
    const CIERoadTemplate* const pOld = pTemplates->AddRoadTemplate(std::make_unique<CIERoadTemplate>("old"));
    job.AttachIERoadTemplatesDictionary(std::move(pTemplates));
    CIEAlignment& road = *dataset.Add(std::make_unique<CIEAlignment>());
    for (int i = 0; i < 2; ++i)
        road.AddCrossSection(std::make_unique<CIECrossSection>(pOld));
    job.AttachIERoadTemplatesDictionary(nullptr);

    CIEData back;
    ReadGood(back, CIEJobFile::ToText(job));
    EXPECT_EQ(back.GetDatasetAt(0)->GetObjectAt(0)->GetCode(0)->GetAttrAt(0), "x");
    EXPECT_EQ(back.GetDatasetAt(0)->GetAlignmentAt(0)->GetCrossSectionAt(1)->GetRoadTemplateAt(0)->GetName(), "old");
}

TEST(JobFile, WhatIsLeftOutIsTold)
{
    CIELedger ledger;
    CIEData job;
    job.SetObserver(&ledger);
    CIEDataset& dataset = *job.AddDataset(std::make_unique<CIEDataset>("A"));
    CIEDataset& other = *job.AddDataset(std::make_unique<CIEDataset>("B"));
    AddPoint(dataset, "1");
    AddPoint<COddPoint>(dataset, "odd");
    CIEAlignment& road = *dataset.Add(std::make_unique<CIEAlignment>());
    road.SetName("road");
    road.SetStartPoint(&AddPoint(other, "far"));
    const CTempFolder folder;
    ASSERT_EQ(CIEJobFile::Write(job, folder / "a.job.json"), IE_OK);

    ASSERT_EQ(ledger.GetNotes().size(), 2U);
    EXPECT_STREQ(ledger.GetNotes()[0].GetWord(), "job.object-kind");
    EXPECT_EQ(ledger.GetNotes()[0].m_strRecord, "odd");
    EXPECT_EQ(ledger.GetNotes()[0].m_strFile, folder / "a.job.json");
    EXPECT_STREQ(ledger.GetNotes()[1].GetWord(), "job.start-point");
    CIEData back;
    ASSERT_EQ(CIEJobFile::Read(back, folder / "a.job.json"), IE_OK);
    EXPECT_EQ(back.GetDatasetAt(0)->GetNumberOfElements(-1, 2, false, false), 1);
    EXPECT_EQ(back.GetDatasetAt(0)->GetAlignmentAt(0)->GetStartPoint(), nullptr);
}

TEST(JobFile, StartPointsCountOnlyWhatIsWritten)
{
    CIEData job;
    CIEDataset& dataset = *job.GetCurDataset(true);
    AddPoint<COddPoint>(dataset, "odd");
    dataset.Add(std::make_unique<CIEAlignment>())->SetStartPoint(&AddPoint(dataset, "start"));
    CIEData back;
    ReadGood(back, CIEJobFile::ToText(job));
    EXPECT_EQ(back.GetDatasetAt(0)->GetAlignmentAt(0)->GetStartPoint()->GetName(), "start");
}

TEST(JobFile, TheHostsThingsStayWithTheJob)
{
    CNoMessageBox box;
    CIELedger ledger;
    CIEData job;
    int nWindow = 0;
    ChangeSettings(job, [&](TIESettings& settings) {
        settings.m_pMessageBox = &box;
        settings.m_hWnd = reinterpret_cast<HWND>(&nWindow);
        settings.m_nNorthDecimals = 9;
    });
    job.SetObserver(&ledger);
    job.AddFileNameToExported("x");
    ReadGood(job, Datasets(""));
    EXPECT_EQ(job.GetSettings().m_pMessageBox, &box);
    EXPECT_EQ(job.GetSettings().m_hWnd, reinterpret_cast<HWND>(&nWindow));
    EXPECT_EQ(job.GetSettings().m_nNorthDecimals, 3);
    EXPECT_EQ(job.GetObserver(), &ledger);
    EXPECT_EQ(job.GetCreatedFileNames(), CStringArray{"x"});
}

// ---- the description for people

TEST(JobDocumentPage, ItsExamplesCanBeRead)
{
    const std::vector<CString> blocks = JsonBlocks(ReadFile(SourcePath("docs/job-document.md")));
    ASSERT_GE(blocks.size(), 8U);
    for (const CString& block : blocks) {
        CIEData job;
        TIEJobFileError error;
        EXPECT_EQ(CIEJobFile::FromText(job, block, &error), IE_OK)
            << block << error.m_strPlace << ": " << error.m_strReason;
        CIEData back;
        ReadGood(back, CIEJobFile::ToText(job));
        EXPECT_EQ(CIEJobFile::ToText(back), CIEJobFile::ToText(job));
    }
}

TEST(JobDocumentPage, ItTellsEveryKey)
{
    CIEData job;
    JobSamples::FillRichJob(job);
    const CString page = ReadFile(SourcePath("docs/job-document.md"));
    std::set<CString> keys;
    const auto collect = [&keys](int, nlohmann::json::parse_event_t event, nlohmann::json& value) {
        if (event == nlohmann::json::parse_event_t::key)
            keys.insert(value.get<CString>());
        return true;
    };
    EXPECT_TRUE(nlohmann::json::parse(CIEJobFile::ToText(job), collect).is_object());
    for (const char* attribute : {"species", "girth", "count"})
        keys.erase(attribute);
    EXPECT_GT(keys.size(), 80U);
    for (const CString& key : keys)
        EXPECT_NE(page.find("`" + key + "`"), CString::npos) << key;
}

// ---- files

TEST(JobFile, FilesComeBackAndAreRecordedNowhere)
{
    const CTempFolder folder;
    CIEData job;
    JobSamples::FillRichJob(job);
    const CString strFileName = folder / "Übung.job.json";
    for (int i = 0; i < 2; ++i) // the second time over the first
        ASSERT_EQ(CIEJobFile::Write(job, strFileName), IE_OK);
    EXPECT_TRUE(job.GetCreatedFileNames().empty());
    EXPECT_EQ(ReadFile(strFileName), CIEJobFile::ToText(job));
    EXPECT_EQ(folder.List(), "Übung.job.json ");
    CIEData back;
    ASSERT_EQ(CIEJobFile::Read(back, strFileName), IE_OK);
    EXPECT_EQ(CIEJobFile::ToText(back), CIEJobFile::ToText(job));
}

TEST(JobFile, WhatCantBeOpenedIsSaid)
{
    const CTempFolder folder;
    CIEData job;
    AddPoint(*job.GetCurDataset(true), "1");
    EXPECT_EQ(CIEJobFile::Read(job, folder / "none.job.json"), IE_CANNOT_OPEN_FILE);
    EXPECT_EQ(CIEJobFile::Read(job, folder / ""), IE_CANNOT_OPEN_FILE);
    EXPECT_EQ(CIEJobFile::Write(job, folder / "no/such/folder.job.json"), IE_CANNOT_OPEN_FILE);
    EXPECT_EQ(CIEJobFile::Write(job, folder / ""), IE_CANNOT_OPEN_FILE);
    EXPECT_EQ(job.GetNumberOfObjectsInAllDatasets(), 1);

    WriteFile(folder / "bad.job.json", "{\"alidade\":\"job\",\n \"datasets\":[}");
    TIEJobFileError error;
    EXPECT_EQ(CIEJobFile::Read(job, folder / "bad.job.json", &error), IE_BAD_CONTENT);
    EXPECT_EQ(error.m_strPlace, "line 2, column 14");
    EXPECT_EQ(CIEJobFile::Read(job, folder / "bad.job.json"), IE_BAD_CONTENT);
    EXPECT_EQ(job.GetNumberOfObjectsInAllDatasets(), 1);
}

TEST(JobFile, AFullDiskIsSeenAndCostsNoDocument)
{
    const CTempFolder folder;
    CIEData job;
    JobSamples::FillRichJob(job);
    for (int i = 0; i < 3000; ++i) // more than one piece
        AddPoint(*job.GetDatasetAt(0), std::to_string(i));
    const std::size_t nSize = CIEJobFile::ToText(job).size();
    ASSERT_GT(nSize, std::size_t{64} << 10);
    WriteFile(folder / "old.job.json", "kept");
    for (const std::size_t nSpace : {std::size_t{0}, std::size_t{1}, std::size_t{70000}, nSize - 1}) {
        CFileFaults faults;
        faults.m_nDiskSpace = nSpace;
        EXPECT_EQ(CIEJobFile::Write(job, folder / "new.job.json"), IE_CANNOT_OPEN_FILE) << nSpace;
        faults.m_nDiskSpace = nSpace;
        EXPECT_EQ(CIEJobFile::Write(job, folder / "old.job.json"), IE_CANNOT_OPEN_FILE) << nSpace;
    }
    EXPECT_EQ(folder.List(), "old.job.json ");
    EXPECT_EQ(ReadFile(folder / "old.job.json"), "kept");
    CFileFaults faults;
    faults.m_nDiskSpace = nSize;
    EXPECT_EQ(CIEJobFile::Write(job, folder / "old.job.json"), IE_OK);
    EXPECT_EQ(ReadFile(folder / "old.job.json").size(), nSize);
}
