// What holds for every form of the format table. A form that is built later is held to it without a line of its own.

#include "alidade/frame/exporter.h"
#include "formats/row_fixture.h"
#include "transfer/factory.h"

#include <cmath>
#include <map>
#include <random>
#include <set>

namespace {

using TRandom = std::minstd_rand;

int Roll(TRandom& random, int nSides)
{
    return static_cast<int>(random() >> 4) % nSides;
}

/// How the jobs of a round are set.
struct TVariant {
    const char* m_pFields;
    char16_t m_cDelimiter = u',';
    bool m_bHeader = false, m_bTypes = false, m_bQuotes = false;
    EDIST_UNITS m_eUnits = EDIST_UNITS::Meters;
    bool m_bGeographic = false;
    ECOORDS_STYLE m_eStyle = ECOORDS_STYLE::DecimalDegrees;
    int m_nDecimals = 3;
    bool m_bOdd = false; ///< names and texts with characters that mean something to a form
};

const TVariant kVariants[] = {
    {"name,north,east,height,codes"},
    {"name,north,east,height,codes", u';', true, true, true},
    {"codes,name,east,north,height,geoid,notes", u'\t', true, true, true, EDIST_UNITS::USSurveyFeet},
    {"name,codes,north,east,height,notes", u' ', false, true, false, EDIST_UNITS::InternationalFeet},
    {"north,east,code+attributes,height", u'|', true, false, true},
    {"name,north,east"},
    {"name,north,east,height,10,notes,code+strings", u'§', true, false, false, EDIST_UNITS::Meters, false, {}, 5},
    {"name,north,east,height,codes", u',', true, true, true, EDIST_UNITS::Meters, true, {}, 9},
    {"name,north,east,height,code", u' ', false, false, false, EDIST_UNITS::USSurveyFeet, true,
     ECOORDS_STYLE::DegreesMinutesSeconds, 6},
    {"name,north,east,height,codes", u',', true, true, true, EDIST_UNITS::Meters, false, {}, 3, true},
    {"codes,name,notes,north,east,height", u' ', true, true, false, EDIST_UNITS::Meters, false, {}, 3, true},
    {"north,east,notes,name,code+attributes,height,geoid",
     u';',
     true,
     false,
     true,
     EDIST_UNITS::Meters,
     false,
     {},
     3,
     true},
};

/// Jobs with every kind of object and property. The first station of object i lies some twenty metres (or a tenth of a
/// degree) north of the one ahead, so that it can be told from all others whatever becomes of its name.
class CJobMaker {
public:
    CJobMaker(unsigned nSeed, const TVariant& variant) : m_Random(nSeed), m_Variant(variant) { m_Random.discard(8); }

    std::unique_ptr<CIEData> Make()
    {
        auto pJob = std::make_unique<CIEData>();
        SetLayout(*pJob, m_Variant.m_pFields, m_Variant.m_cDelimiter, m_Variant.m_bHeader);
        ChangeSettings(*pJob, [this](TIESettings& settings) {
            settings.m_bAttrTypes = m_Variant.m_bTypes;
            settings.m_bAttrQuotes = m_Variant.m_bQuotes;
            settings.m_eCoordsStyle = m_Variant.m_eStyle;
            settings.m_nNorthDecimals = settings.m_nEastDecimals = settings.m_nHeightDecimals = m_Variant.m_nDecimals;
        });
        pJob->GetJobInfo()->m_strJobName = "job";
        pJob->GetJobInfo()->SetDistUnits(m_Variant.m_eUnits);
        pJob->GetJobInfo()->SetCSType(m_Variant.m_bGeographic ? TIEJobInfo::Geographic : TIEJobInfo::Plane);
        MakeCodes(*pJob);
        CIEDataset& dataset = *pJob->AddDataset(std::make_unique<CIEDataset>("Site"));
        const int nObjects = Roll(m_Random, 40);
        for (int i = 0; i < nObjects; ++i)
            dataset.Add(MakeObject(*pJob, i));
        auto pSurface = std::make_unique<CIESurface>();
        pSurface->SetName("surface");
        if (Roll(m_Random, 4) == 0)
            dataset.Add(std::move(pSurface));
        if (Roll(m_Random, 4) == 0)
            dataset.SetJobHistory(MakeHistory(3));
        return pJob;
    }

private:
    void MakeCodes(CIEData& job)
    {
        using TAttr = CIEAttrDescription;
        m_Codes = {AddCode(job, Text("ROAD"),
                           {TAttr(Text("width"), TAttr::REAL), TAttr(Text("kind"), TAttr::TEXT),
                            TAttr("lanes", TAttr::INT), TAttr("side", TAttr::LIST, {"left", Text("right")})}),
                   AddCode(job, Text("TREE")), AddCode(job, Text("WALL"), {TAttr("of", TAttr::TEXT)})};
        for (const char* const pLayer : {"roads", "walls"})
            job.GetIEDrawDictionary()->AddLayer(std::make_unique<CIELayer>(pLayer));
    }

    /// The text, or in odd rounds one out of pieces that forms have a meaning for.
    CString Text(const CString& plain)
    {
        constexpr const char* kPieces[] = {"A",        "b1",    " ", ",", ";",     "\"",    "ä",     "&",  "@",
                                           ":",        "$",     "=", ".", "#",     "<PTL>", "<REG>", "\t", "\r\n",
                                           "Header>>", ".TEXT", "(", ")", "LIST(", "1",     "点",    "§",  "A01,"};
        if (!m_Variant.m_bOdd || Roll(m_Random, 3) > 0)
            return plain;
        CString text;
        for (int n = Roll(m_Random, 4); n > 0; --n)
            text += kPieces[Roll(m_Random, static_cast<int>(std::size(kPieces)))];
        return text;
    }

    double Number(double dLargest) { return dLargest * (Roll(m_Random, 2000001) - 1000000) / 1e6; }

    CIEStation MakeStation(int nPlace)
    {
        CIEStation station(m_Variant.m_bGeographic ? nPlace * 0.1 - 2 + Number(0.02) : nPlace * 20.0 - 200 + Number(4),
                           m_Variant.m_bGeographic ? Number(170) : Number(5e5), Number(900));
        if (Roll(m_Random, 8) == 0)
            station.SetHeightUndefined();
        if (Roll(m_Random, 6) == 0)
            station.SetGeoidHeight(Number(60));
        if (Roll(m_Random, 5) == 0)
            station.SetNotes(Text("seen"));
        if (Roll(m_Random, 9) == 0)
            station.SetTimeStamps("2024-05-06 07:08:09");
        return station;
    }

    std::unique_ptr<CIEObject> MakeObject(CIEData& job, int nPlace)
    {
        std::unique_ptr<CIEObject> pObject;
        const CString strName = Roll(m_Random, 30) == 0 ? CString() : Text("P" + std::to_string(nPlace));
        const int nKind = Roll(m_Random, 20);
        if (nKind < 11) {
            pObject = std::make_unique<CIEDesignPoint>(MakeStation(nPlace));
        } else if (nKind < 13) {
            auto pPosition = std::make_unique<CIEGPSPosition>(MakeStation(nPlace));
            if (Roll(m_Random, 2) == 0)
                pPosition->SetNumberOfGpsSats(Roll(m_Random, 20));
            pObject = std::move(pPosition);
        } else if (nKind == 13) {
            auto pPoint = std::make_unique<CIEPTLPoint>(MakeStation(nPlace));
            pPoint->SetPTLParams("P1", Text("P2"), Roll(m_Random, 2));
            pObject = std::move(pPoint);
        } else if (nKind == 14) {
            auto pArc = std::make_unique<CIEArc>();
            pArc->SetStation(MakeStation(nPlace));
            pObject = std::move(pArc);
        } else if (nKind == 15) {
            auto pSheet = std::make_unique<CIESheetPoint>();
            pSheet->SetDesignStation(MakeStation(nPlace));
            for (int n = Roll(m_Random, 3); n > 0; --n)
                pSheet->AddOffsetStation(CIEOffsetStation(MakeStation(nPlace)));
            pObject = std::move(pSheet);
        } else {
            auto pLine = std::make_unique<CIEPolyLine>();
            for (int n = m_Variant.m_bOdd ? Roll(m_Random, 5) : 2 + Roll(m_Random, 4); n > 0; --n)
                pLine->AddStation(MakeStation(nPlace));
            if (nKind > 17 && pLine->GetNumberOfStations() > 0 && !(m_Variant.m_bOdd && Roll(m_Random, 4) == 0))
                pLine->AddStation(*pLine->GetStation(0));
            pObject = std::move(pLine);
            if (nKind > 17)
                pObject = std::make_unique<CIEPolygon>(static_cast<const CIEPolyLine&>(*pObject));
        }
        pObject->SetName(m_Variant.m_bOdd && Roll(m_Random, 10) == 0 ? m_strLastName : strName);
        m_strLastName = pObject->GetName();
        if (Roll(m_Random, 6) == 0)
            pObject->SetLayer(job.GetIEDrawDictionary()->GetLayerAt(Roll(m_Random, 2)));
        for (int n = Roll(m_Random, 3); n > 0; --n)
            pObject->AddCode(MakeValues());
        return pObject;
    }

    CIECodeValues MakeValues()
    {
        CIECodeValues code(m_Codes[static_cast<std::size_t>(Roll(m_Random, 3))]);
        constexpr const char* kValues[] = {"3.5", "asphalt", "2", "left"};
        const int nSize = code.GetDescription()->GetSize();
        for (int i = 0; i < nSize && !(m_Variant.m_bOdd && Roll(m_Random, 9) == 0); ++i)
            code.AddAttr(Text(kValues[i]));
        for (int n = std::max(Roll(m_Random, 6) - 3, 0); n > 0; --n)
            code.AddCodeString(Text("string"));
        if (Roll(m_Random, 4) == 0)
            code.SetControlCode(0, Text("c1"));
        if (!code.GetControlCode(0).empty() && Roll(m_Random, 2) == 0)
            code.SetControlCode(1, Text("c2"));
        return code;
    }

    TRandom m_Random;
    const TVariant& m_Variant;
    std::vector<const CIECodeDescription*> m_Codes;
    CString m_strLastName;
};

/// Compares a job with what came back of it. Whatever isn't equal must stand in the ledger: a note on the object, whose
/// code names the property ("object.notes", "object.name-cut"), or one on the job.
class CJudge {
public:
    CJudge(const CIEData& job, const CIELedger& ledger, const TVariant& variant)
        : m_Job(job), m_dTolerance(variant.m_bGeographic ? 2e-9 : 5.01e-4)
    {
        for (const TIENote& note : ledger.GetNotes())
            m_Told[CString(note.GetWord()).starts_with("job.") ? CString() : note.m_strRecord] +=
                CString(note.GetWord()) + " ";
    }

    /// The first thing that was lost in silence; empty if nothing was.
    CString FindLoss(const CIEData& back, EIEResult eBack) const
    {
        if (IsTold({}, "job.units") || IsTold({}, "job.geographic"))
            return {};
        constexpr const char* kReshaped[] = {"line.",        "object.joined",     "object.ring",
                                             "object.line-", "object.no-station", "object.coordinates",
                                             "object.word",  "object.block-name"};
        std::vector<const CIEObject*> found;
        for (int i = 0; const CIEDataset* const pDataset = back.GetDatasetAt(i); ++i) {
            for (int j = 0; const CIEObject* const pObject = pDataset->GetObjectAt(j); ++j) {
                if (pObject->GetStateType() != CIEObject::InBlock)
                    found.push_back(pObject);
            }
        }
        const CIEDataset& dataset = *m_Job.GetDatasetAt(0);
        const CIEDataset* const pBack = back.GetDatasetAt(0);
        if (dataset.GetJobHistory() && !(pBack && pBack->GetJobHistory()) &&
            !IsTold(dataset.GetName(), "dataset.job-history"))
            return "job history";
        std::size_t nAtMost = 0; // a note is on a name, which an object that came back may share
        bool bSome = false;      // something came back in another shape, so that counting makes no sense
        for (int i = 0; const CIEObject* const pObject = dataset.GetObjectAt(i); ++i) {
            const CString& strName = pObject->GetName();
            ++nAtMost;
            if (IsTold(strName, "line.") && eBack < 0)
                return {}; // the reader gave up here, as was told
            const bool bReshaped = std::any_of(std::begin(kReshaped), std::end(kReshaped),
                                               [&](const char* pCode) { return IsTold(strName, pCode); });
            bSome = bSome || bReshaped;
            if (bReshaped || IsTold(strName, "object.kind"))
                continue;
            const auto same = std::find_if(found.begin(), found.end(), [&](const CIEObject* pFound) {
                return IsNear(*pFound->GetStation(0), *pObject->GetStation(0));
            });
            if (same == found.end())
                return "vanished: " + Describe(*pObject);
            if (const CString strWhat = FindLoss(*pObject, **same); !strWhat.empty())
                return strWhat + ": " + Describe(*pObject) + "\ncame back as " + Describe(**same);
        }
        return bSome || found.size() <= nAtMost ? CString() : "objects came from nowhere";
    }

private:
    [[nodiscard]] bool IsTold(const CString& strName, const CString& strCode) const
    {
        const auto of = m_Told.find(strName);
        return of != m_Told.end() && of->second.find(strCode) != CString::npos;
    }
    [[nodiscard]] bool IsNear(const CIEStation& left, const CIEStation& right) const
    {
        return std::abs(left.m_dNorth - right.m_dNorth) <= m_dTolerance &&
               std::abs(left.m_dEast - right.m_dEast) <= m_dTolerance;
    }

    [[nodiscard]] bool IsSame(const CString& strText, const CString& strBack) const
    {
        return strText == strBack ||
               (IsTold({}, "job.upper-case") && IEUtils::ToLower(strText) == IEUtils::ToLower(strBack));
    }

    static bool IsSameGPSData(const CIEObject& object, const CIEObject& back)
    {
        const auto* const pPosition = dynamic_cast<const CIEGPSPosition*>(&object);
        const auto* const pBack = dynamic_cast<const CIEGPSPosition*>(&back);
        const CIEGPSPosition none;
        return (pPosition ? *pPosition : none).HasSameGPSData(pBack ? *pBack : none);
    }

    [[nodiscard]] CString FindLoss(const CIEObject& object, const CIEObject& back) const
    {
        if (object.GetNumberOfStations() != back.GetNumberOfStations())
            return "stations";
        CString strLost;
        const auto check = [&](const char* pCode, bool bEqual) {
            // a note on the job may tell of all objects: "job.name"
            if (!bEqual && !IsTold(object.GetName(), pCode) && !IsTold({}, "job." + CString(pCode).substr(7) + " "))
                strLost += CString(pCode) + " ";
        };
        const auto isSameHeight = [](double dLeft, double dRight) { return std::abs(dLeft - dRight) <= 5.01e-4; };
        check("object.point-kind", object.GetType() == back.GetType());
        check("object.gps-data", IsSameGPSData(object, back));
        check("object.name", IsSame(object.GetName(), back.GetName()));
        const CIELayer *const pLayer = object.GetLayer(), *const pBackLayer = back.GetLayer();
        check("object.layer", !pLayer || (pBackLayer && IsSame(pLayer->GetName(), pBackLayer->GetName())));
        for (int i = 0; const CIEStation* const pStation = object.GetStation(i); ++i) {
            const CIEStation& other = *back.GetStation(i);
            check("object.coordinates", IsNear(*pStation, other));
            check("object.height", isSameHeight(pStation->GetHeight(), other.GetHeight()));
            check("object.no-height", pStation->IsHeightDefined() == other.IsHeightDefined());
            check("object.geoid-height", isSameHeight(pStation->GetGeoidHeight(), other.GetGeoidHeight()));
            check("object.notes", pStation->GetNotes() == other.GetNotes());
            check("object.time-stamps", pStation->GetTimeStamps() == other.GetTimeStamps());
        }
        if (IsTold(object.GetName(), "object.attributes") || IsTold({}, "job.attributes ")) {
            for (int i = 0; const CIECodeValues* const pCode = object.GetCode(i); ++i)
                check("object.codes", back.GetCode(i) && IsSame(pCode->GetDescription()->GetName(),
                                                                back.GetCode(i)->GetDescription()->GetName()));
        } else {
            const bool bTypes = !IsTold({}, "job.attribute-types");
            check("object.codes", IsSame(DescribeCodes(object, bTypes), DescribeCodes(back, bTypes)));
        }
        return strLost;
    }

    const CIEData& m_Job;
    std::map<CString, CString> m_Told; ///< codes of the notes by name of the object; the job's without a name
    double m_dTolerance;
};

class LawsTest : public CRowTest {};

TEST_F(LawsTest, WhatGoesOutComesBackOrIsTold)
{
    constexpr unsigned kSeeds = 20;
    for (const auto& [pOut, pIn] : BuiltPairs()) {
        for (const TVariant& variant : kVariants) {
            for (unsigned nSeed = 1; nSeed <= kSeeds && !HasFailure(); ++nSeed) {
                SCOPED_TRACE(CString(pOut->m_pKey) + " " + variant.m_pFields + " seed " + std::to_string(nSeed));
                const CString strFirst = m_Folder / "first", strSecond = m_Folder / "second";
                const auto pJob = CJobMaker(nSeed, variant).Make();
                auto pBack = MakeJobLike(*pJob);
                for (const CString& strFile : {strFirst, strSecond}) {
                    for (const CString& strName : FilesOf(*pOut, strFile))
                        Platform::RemoveFile(strName);
                }
                ASSERT_GT(Export(CJobMaker(nSeed, variant).Make(), *pOut, strFirst), 0);
                const CJudge judge(*pJob, m_Ledger, variant);
                const bool bChanged = m_Ledger.GetCount(TIENote::Changed) > 0;
                CIELedger ledger;
                pBack->SetObserver(&ledger);
                // not through the entry, which names what has no name after its code
                const EIEResult eBack = CreateImporter(pBack.get(), strFirst, pIn->m_nCode)->Import();
                pBack->SetObserver(nullptr);
                EXPECT_TRUE(IsKnownResult(eBack));
                EXPECT_EQ(FindFault(*pBack), "");
                EXPECT_EQ(judge.FindLoss(*pBack, eBack), "") << ReadFiles(*pOut, strFirst);
                ASSERT_GT(Export(std::move(pBack), *pOut, strSecond), 0);
                if (!bChanged) {
                    EXPECT_TRUE(ledger.IsEmpty()) << ledger.GetNotes()[0].m_strReason << ReadFiles(*pOut, strFirst);
                    EXPECT_EQ(ReadFiles(*pOut, strSecond), ReadFiles(*pOut, strFirst));
                }
            }
        }
    }
}

TEST_F(LawsTest, EveryPrefixAndEveryFlippedByteEndInAResult)
{
    constexpr std::size_t kPrefixes = 1500;
    constexpr int kFlips = 300;
    for (const auto& [pOut, pIn] : BuiltPairs()) {
        const CString strRun = FileOf(*pOut), strFile = FilesOf(*pOut, strRun)[0];
        for (const TVariant& variant : {kVariants[1], kVariants[9]}) {
            const auto pJob = CJobMaker(7, variant).Make();
            ASSERT_GT(Export(CJobMaker(7, variant).Make(), *pOut, strRun), 0);
            const CString bytes = ReadFile(strFile);
            const auto check = [&, pRow = pIn](std::string_view damaged, const CString& strWhere) {
                WriteFile(strFile, damaged);
                const auto pBack = MakeJobLike(*pJob);
                EXPECT_TRUE(IsKnownResult(ImportInTheSameThread(pBack.get(), strFile, pRow->m_nCode))) << strWhere;
                const CString strFault = FindFault(*pBack);
                // a polyline comes in ahead of its vertices
                const bool bCutLine = IsDrawing(*pRow) && strFault.starts_with("no station: ");
                EXPECT_TRUE(bCutLine || strFault.empty()) << strFault << " " << pRow->m_pKey << strWhere;
            };
            for (std::size_t n = 0; n < bytes.size(); n += 1 + bytes.size() / kPrefixes)
                check(std::string_view(bytes).substr(0, n), " cut at " + std::to_string(n));
            TRandom random(3);
            for (int i = 0; i < kFlips; ++i) {
                CString flipped = bytes;
                const std::size_t n = random() % bytes.size();
                flipped[n] = static_cast<char>(flipped[n] ^ (1 << Roll(random, 8)));
                check(flipped, " flipped at " + std::to_string(n));
            }
        }
    }
}

/// Points and a history, so that every form has a file. The point at `nStop` sets the stop when it is looked at.
std::unique_ptr<CIEData> MakePointsThatStop(int nPoints, int nStop)
{
    auto pJob = std::make_unique<CIEData>();
    CIEDataset& dataset = *pJob->AddDataset(std::make_unique<CIEDataset>("Site"));
    for (int i = 0; i < nPoints; ++i) {
        dataset.Add(
            std::make_unique<CProbePoint>(MakeStation("P" + std::to_string(i), i, 2, 3), nullptr, [bStop = i == nStop] {
                if (bStop)
                    CIEData::m_bStopProcess = true;
            }));
    }
    dataset.SetJobHistory(MakeHistory(nPoints));
    return pJob;
}

TEST_F(LawsTest, AStopAtAnyStepLeavesNoFile)
{
    constexpr int kPoints = 6;
    for (const TIEFormatRow* const pRow : BuiltRows(EIEDirection::Export)) {
        SCOPED_TRACE(pRow->m_pKey);
        const CString strFile = FileOf(*pRow);
        const auto checkNothingIsLeft = [&](const auto& where) {
            if (LeavesItsFile(*pRow)) {
                Platform::RemoveFile(strFile);
                Platform::RemoveFile(m_Folder / "Site.bin"); // a file for each dataset
            }
            EXPECT_EQ(m_Folder.List(), "") << where;
        };
        for (int nStep = 0;; ++nStep) { // step by step: the frame takes away what the job knows of
            const auto pJob = MakePointsThatStop(kPoints, -1);
            const auto pExporter = CreateExporter(pJob.get(), strFile, pRow->m_nCode);
            bool bMore = true;
            for (int i = 0; i < nStep && bMore; ++i)
                bMore = pExporter->SingleStep();
            if (!bMore)
                break;
            CIEData::m_bStopProcess = true;
            EXPECT_EQ(pExporter->Export(), IE_STOPPED) << nStep;
            CIEData::m_bStopProcess = false;
            for (const CString& strCreated : pJob->GetCreatedFileNames())
                Platform::RemoveFile(strCreated);
            checkNothingIsLeft(nStep);
        }
        for (int nStop = -1; nStop < kPoints; ++nStop) { // through the entries; at -1 while the file is being opened
            if (nStop >= 0 && !(pRow->m_nCarries & (CARRIES_POINTS | CARRIES_SHEET_POINTS | CARRIES_GPS_DATA)))
                break;
            for (const bool bThread : {false, true}) {
                CFileFaults faults;
                faults.m_AllowOpen = [nStop](const std::string&, bool) {
                    if (nStop < 0)
                        CIEData::m_bStopProcess = true;
                    return true;
                };
                auto pJob = MakePointsThatStop(kPoints, nStop);
                EIEResult eResult = IE_OK;
                if (bThread) {
                    const std::unique_ptr<CIEThread> pThread(
                        StartExportInSeparateThread(pJob.release(), strFile, EExportType(pRow->m_nCode)));
                    ASSERT_TRUE(pThread && pThread->Wait());
                    eResult = static_cast<EIEResult>(pThread->GetExitCode());
                } else {
                    eResult = Export(std::move(pJob), *pRow, strFile);
                }
                EXPECT_EQ(eResult, IE_STOPPED) << nStop << bThread;
                checkNothingIsLeft(nStop);
                CIEData::m_bStopProcess = false;
            }
        }
    }
}

/// Sets the stop at the first sign of progress.
struct TStopper : IIETransferObserver {
    void OnProgress(std::int64_t, std::int64_t) override { CIEData::m_bStopProcess = true; }
    void OnNote(const TIENote& /*note*/) override {}
};

TEST_F(LawsTest, AStoppedImportKeepsWhatItHasRead)
{
    for (const auto& [pOut, pIn] : BuiltPairs()) {
        SCOPED_TRACE(pIn->m_pKey);
        if (!(pIn->m_nCarries & CARRIES_POINTS))
            continue;
        const CString strFile = FilesOf(*pOut, FileOf(*pOut))[0];
        ASSERT_EQ(Export(MakePointsThatStop(5000, -1), *pOut, FileOf(*pOut)), IE_OK);
        {
            CFileFaults faults;
            faults.m_AllowOpen = [](const std::string&, bool) { return CIEData::m_bStopProcess = true; };
            CIEData job;
            const EIEResult eNothing = IsStreamOfBlocks(*pIn) ? IE_OK
                                       : IsDrawing(*pIn)      ? IE_BAD_CONTENT
                                                              : IE_NOTHING_DONE;
            EXPECT_EQ(ImportInTheSameThread(&job, strFile, pIn->m_nCode), HidesAStop(*pIn) ? eNothing : IE_STOPPED);
            EXPECT_EQ(job.GetNumberOfObjectsInAllDatasets(), 0);
            CIEData::m_bStopProcess = false;
        }
        TStopper stopper;
        CIEData job;
        job.SetObserver(&stopper);
        EXPECT_EQ(ImportInTheSameThread(&job, strFile, pIn->m_nCode), HidesAStop(*pIn) ? IE_OK : IE_STOPPED);
        EXPECT_GT(job.GetNumberOfObjectsInAllDatasets(), 0);
        EXPECT_LT(job.GetNumberOfObjectsInAllDatasets(), 5000);
        CIEData::m_bStopProcess = false;
    }
}

/// One object that has only what the row below names; the note that an export makes of it if its form doesn't carry
/// that.
struct TKind {
    TIECarries m_nCarries;
    const char* m_pNote; ///< code and record
    void (*m_pAdd)(CIEData& job, CIEDataset& dataset);
};

template <class TPoint = CIEDesignPoint, class TChange>
void AddChanged(CIEDataset& dataset, TChange change)
{
    CIEStation station = MakeStation("A", 1, 2, 0);
    change(station);
    dataset.Add(std::make_unique<TPoint>(station));
}

// clang-format off
const TKind kKinds[] = {
    {CARRIES_POINTS, "object.kind A", [](CIEData&, CIEDataset& set) { AddPoint(set, "A"); }},
    {CARRIES_LINES, "object.kind A", [](CIEData&, CIEDataset& set) { AddLine<CIEPolyLine>(set, "A", {{1, 2, 3}, {4, 5, 6}}); }},
    {CARRIES_POLYGONS, "object.kind A", [](CIEData&, CIEDataset& set) { AddLine<CIEPolygon>(set, "A", {{1, 2, 3}, {4, 5, 6}, {1, 2, 3}}); }},
    {CARRIES_ARCS, "object.kind A", [](CIEData&, CIEDataset& set) { set.Add(std::make_unique<CIEArc>())->SetName("A"); }},
    {CARRIES_SURFACES, "object.kind A", [](CIEData&, CIEDataset& set) { set.Add(std::make_unique<CIESurface>())->SetName("A"); }},
    {CARRIES_ALIGNMENTS, "object.kind A", [](CIEData&, CIEDataset& set) { set.Add(std::make_unique<CIEAlignment>())->SetName("A"); }},
    {CARRIES_TEMPLATES, "job.templates ", [](CIEData& job, CIEDataset&) {
        job.AttachIERoadTemplatesDictionary(std::make_unique<CIERoadTemplatesDictionary>()); }},
    {CARRIES_DICTIONARY, "job.code A", [](CIEData& job, CIEDataset&) { AddCode(job, "A"); }},
    {CARRIES_CODES, "object.codes A", [](CIEData& job, CIEDataset& set) { GiveCode(AddPoint(set, "A"), AddCode(job, "T")); }},
    {CARRIES_CODES | CARRIES_ATTRIBUTES, "object.attributes A", [](CIEData& job, CIEDataset& set) {
        GiveCode(AddPoint(set, "A"), AddCode(job, "T", {CIEAttrDescription("w")}), {"1"}); }},
    {CARRIES_LAYERS, "object.layer A", [](CIEData& job, CIEDataset& set) {
        AddPoint(set, "A").SetLayer(job.GetIEDrawDictionary()->AddLayer(std::make_unique<CIELayer>("trees"))); }},
    {CARRIES_LAYERS, "job.layer trees", [](CIEData& job, CIEDataset& set) {
        AddPoint(set, "A"); job.GetIEDrawDictionary()->AddLayer(std::make_unique<CIELayer>("trees")); }},
    {CARRIES_DRAWING, "object.drawing A", [](CIEData&, CIEDataset& set) {
        AddPoint(set, "A").SetDrawProperties(std::make_unique<CIEDrawPointProperties>()); }},
    {CARRIES_LAYERS, "object.coordinates A", [](CIEData&, CIEDataset& set) { AddPoint(set, "A").SetStateType(CIEObject::InBlock); }},
    {CARRIES_COMPOSITES, "object.kind A", [](CIEData&, CIEDataset& set) { set.Add(std::make_unique<CIECompositeObject>())->SetName("A"); }},
    {CARRIES_NOTES, "object.notes A", [](CIEData&, CIEDataset& set) { AddChanged(set, [](auto& station) { station.SetNotes("x"); }); }},
    {CARRIES_GEOID_HEIGHTS, "object.geoid-height A", [](CIEData&, CIEDataset& set) { AddChanged(set, [](auto& station) { station.SetGeoidHeight(9); }); }},
    {CARRIES_TIME_STAMPS, "object.time-stamps A", [](CIEData&, CIEDataset& set) { AddChanged(set, [](auto& station) { station.SetTimeStamps("7:00"); }); }},
    {CARRIES_UNDEFINED_HEIGHTS, "object.no-height A", [](CIEData&, CIEDataset& set) { AddChanged(set, [](auto& station) { station.SetHeightUndefined(); }); }},
    {CARRIES_SHEET_POINTS, "object.kind A", [](CIEData&, CIEDataset& set) { set.Add(std::make_unique<CIESheetPoint>())->SetName("A"); }},
    {CARRIES_GPS_DATA, "object.gps-data A", [](CIEData&, CIEDataset& set) { AddPoint<CIEGPSPosition>(set, "A").SetCV({}); }},
    {CARRIES_JOB_HISTORY, "dataset.job-history Site", [](CIEData&, CIEDataset& set) { set.SetJobHistory(std::make_unique<CIEJobHistory>()); }},
    {CARRIES_POINT_KINDS, "object.point-kind A", [](CIEData&, CIEDataset& set) { AddChanged<CIEGPSPosition>(set, [](auto&) {}); }},
    {CARRIES_DATASETS, "job.datasets ", [](CIEData& job, CIEDataset& set) {
        AddPoint(set, "A"); AddPoint(*job.AddDataset(std::make_unique<CIEDataset>("Second")), "B"); job.SetCurDataset(0); }},
};
// clang-format on

TEST_F(LawsTest, EveryExportTellsWhatItsFormDoesNotCarry)
{
    for (const TIEFormatRow* const pRow : BuiltRows(EIEDirection::Export)) {
        for (const TKind& kind : kKinds) {
            if (pRow->m_nCarries & kind.m_nCarries &
                ~(kind.m_nCarries & CARRIES_ATTRIBUTES ? CARRIES_CODES : CARRIES_NOTHING))
                continue;
            auto pJob = std::make_unique<CIEData>();
            CIEDataset& dataset = *pJob->AddDataset(std::make_unique<CIEDataset>("Site"));
            kind.m_pAdd(*pJob, dataset);
            if (pRow->m_nCarries & CARRIES_JOB_HISTORY)
                dataset.SetJobHistory(MakeHistory(1)); // without one there is no run
            EXPECT_EQ(Export(std::move(pJob), *pRow, FileOf(*pRow)), IE_OK);
            CString strNotes;
            for (const TIENote& note : m_Ledger.GetNotes())
                strNotes += CString(note.GetWord()) + " " + note.m_strRecord + "\n";
            const bool bNothingOfIt =
                strNotes.find("object.kind A\n") != CString::npos || strNotes.find("object.codes A\n") != CString::npos;
            EXPECT_TRUE(bNothingOfIt || strNotes.find(kind.m_pNote) != CString::npos)
                << pRow->m_pKey << " should tell: " << kind.m_pNote << "\nand tells: " << strNotes;
        }
    }
}

} // namespace
