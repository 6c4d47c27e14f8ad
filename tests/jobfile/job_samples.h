// Jobs for the tests of job documents: one that holds something under every key, and random ones.
#pragma once

#include "support/jobs.h"

#include "alidade/vellumlib/alignment.h"

#include <limits>
#include <random>

namespace JobSamples {

template <class TElement, class EKey>
void FillKeys(TElement& element, EKey /*key*/, double dFirst)
{
    for (int i = 0; i < TElement::kKeys; ++i)
        element.SetData(static_cast<EKey>(i), dFirst + i);
}

template <class TElement, class EKey>
std::unique_ptr<TElement> MakeElement(EKey key, double dFirst)
{
    auto pElement = std::make_unique<TElement>();
    FillKeys(*pElement, key, dFirst);
    for (int i = 0; i < TElement::kPositions; ++i)
        pElement->SetPosition(i, {dFirst + i, -dFirst - i});
    return pElement;
}

inline void FillInfo(TIEJobInfo& info)
{
    info.m_strAppName = "Collector";
    info.m_strAppDescription = "field program";
    info.m_strAppVersion = "5.2";
    info.m_strAppText = "demo";
    info.m_strJobName = "Mill \"Lane\"\n";
    info.m_strJobComment = "Überprüft – 測量";
    info.m_strObserver = "K. Berg";
    info.m_strInstrument = "TS 07";
    info.m_nPrismConstant = -30;
    info.SetCSType(TIEJobInfo::Geographic);
    info.SetDistUnits(EDIST_UNITS::USSurveyFeet);
    info.SetAngleUnits(EANGLE_UNITS::Grads);
    info.SetTemperature(12.5, 1);
    info.SetPressure(1013.25, 2);
    info.SetCreateTimeStr("2026-11-22", "09:15");
    info.SetEllToGridScaleAndElevation(0.99996, 210.5);
    info.SetProjection("UTM 33");
    info.SetDatum("ETRS89");
    info.SetGeoid("GCG2016");
}

inline void FillSettings(TIESettings& settings)
{
    settings.m_bSingleFile = true;
    settings.m_eCoordsStyle = ECOORDS_STYLE::Digits;
    settings.m_nNorthDecimals = 4;
    settings.m_nEastDecimals = 5;
    settings.m_nHeightDecimals = 0;
    settings.m_bAttrTypes = true;
    settings.m_bAttrQuotes = true;
    settings.m_pAsciiFormat = std::make_unique<TIEAsciiFormat>();
    settings.m_pAsciiFormat->m_cDelimiter = u'\t';
    settings.m_pAsciiFormat->m_bWriteHeader = true;
    settings.m_pAsciiFormat->m_Fields = {IEAsciiFields::Name, IEAsciiFields::East, IEAsciiFields::Notes};
    settings.m_cHistoryOptions = 255;
    settings.m_nMostBlockCopies = 0;
    settings.SetNoDataTypes();
    settings.SetDataType(EIEDataType::Points, true);
    settings.SetDataType(EIEDataType::JobHistory, true);
    settings.SetDataType(static_cast<EIEDataType>(21), true); // which has no word
    settings.m_strCodePage = "CP1250";
    settings.m_strWriteEncoding = "UTF-16LE";
}

inline void FillStation(CIEStation& station)
{
    station.SetGeoidHeight(44.125);
    station.SetNotes("under \\ the tree");
    station.SetTimeStamps("2026-11-22 09:31:07");
    station.SetStationType(7);
}

inline void FillGPSData(CIEGPSPosition& position)
{
    position.SetCV({0.0004, 0.0009, 0.0025, -1e-5, 2e-5, 3e-5});
    (void)position.SetTime({2026, 11, 22, 9, 31, 7, 50});
    position.SetDOP({2.5, 1.5, 1.25, 1.75});
    position.SetSolutionType(CIEGPSPosition::Fixed);
    position.SetNumberOfGpsSats(9);
    position.SetNumberOfGlonassSats(4);
}

inline CIEOffsetStation MakeOffsetStation(CIEStation station, double dFirst)
{
    CIEOffsetStation measurement(std::move(station));
    double CIEOffsetStation::*const values[] = {
        &CIEOffsetStation::m_dDeltaNorth,  &CIEOffsetStation::m_dDeltaEast,  &CIEOffsetStation::m_dDeltaHeight,
        &CIEOffsetStation::m_dLineStation, &CIEOffsetStation::m_dLineOffset, &CIEOffsetStation::m_dDeltaStation,
        &CIEOffsetStation::m_dDeltaOffset, &CIEOffsetStation::m_dDistance,
    };
    for (double CIEOffsetStation::*const pValue : values)
        measurement.*pValue = dFirst++;
    return measurement;
}

inline CIEAlignment& AddRichAlignment(CIEDataset& dataset, const CIERoadTemplatesDictionary& templates)
{
    CIEAlignment& road = *dataset.Add(std::make_unique<CIEAlignment>());
    road.SetName("Mill Lane");
    road.SetStartPoint(static_cast<CIEDesignPoint*>(dataset.GetObjectAt(1)));
    road.SetStaStart(1000);
    road.SetLength(230.5);

    auto pLine = MakeElement<CIELine2D>(ELineDataType::Azimuth, 45.5);
    pLine->SetAzToPrevEl();
    road.AddObject(std::move(pLine));
    auto pCurve = MakeElement<CIECurve>(ECurveDataType::Length, -80.5);
    pCurve->SetAzToPrevEl();
    pCurve->SetCurveType(CIECurve::ChordDefinition);
    road.AddObject(std::move(pCurve));
    auto pSpiral = MakeElement<CIESpiral>(ESpiralDataType::Length, 30.25);
    pSpiral->SetAzToPrevEl();
    pSpiral->SetSpiralType(CIESpiral::RevBloss);
    road.AddObject(std::move(pSpiral));
    auto pPoint = std::make_unique<CIEIntersectionPoint>(true);
    FillKeys(*pPoint, EIPDataType::Radius, 60);
    pPoint->SetPosition(300, 420);
    pPoint->SetSegment(MakeElement<CIELine2D>(ELineDataType::Azimuth, 1));
    pPoint->SetFirstSpiral(MakeElement<CIESpiral>(ESpiralDataType::Length, 2));
    pPoint->SetCurve(MakeElement<CIECurve>(ECurveDataType::Length, 3));
    pPoint->SetSecondSpiral(MakeElement<CIESpiral>(ESpiralDataType::Length, 4));
    road.AddObject(std::move(pPoint));
    road.AddObject(std::make_unique<CIEIntersectionPoint>(false));

    auto pSection = std::make_unique<CIELongSection>();
    FillKeys(*pSection, ELSDataType::Station, 1100);
    auto pParabola = std::make_unique<CIEVerticalElement>(CIEVerticalElement::Parabola);
    FillKeys(*pParabola, EVEDataType::StartStation, 1080);
    pSection->SetParabola(std::move(pParabola));
    road.AddLongSection(std::move(pSection));
    road.AddLongSection(std::make_unique<CIELongSection>());
    auto pVertical = std::make_unique<CIEVerticalElement>(CIEVerticalElement::Straight);
    FillKeys(*pVertical, EVEDataType::StartStation, 500);
    road.AddVerticalElement(std::move(pVertical));

    auto pCross = std::make_unique<CIECrossSection>(templates.FindRoadTemplate("lane"));
    pCross->AddRoadTemplate(templates.FindRoadTemplate("ditch"));
    pCross->SetSta(1010);
    pCross->SetTurn(true);
    pCross->SetLevelAtCL(0);
    road.AddCrossSection(std::move(pCross));
    road.AddCrossSection(std::make_unique<CIECrossSection>(nullptr));
    return road;
}

inline std::unique_ptr<CIEDrawLineProperties> MakeLines(TIEColor color, CIEDrawLineProperties::EDashStyleType eStyle,
                                                        int nWidth)
{
    auto pLines = std::make_unique<CIEDrawLineProperties>();
    pLines->SetColor(color);
    pLines->SetDashStyle(eStyle);
    pLines->SetWidth(nWidth);
    return pLines;
}

/// All that a job says of how things are drawn.
inline void FillDrawing(CIEData& job, CIEDataset& dataset)
{
    CIEDrawDictionary& layers = *job.GetIEDrawDictionary();
    CIELayer& trees = *layers.FindLayer("Trees");
    trees.SetNotes("old stock");
    trees.SetActiveStatus(false);
    trees.SetPlotStatus(false);
    trees.SetDrawProperties(MakeLines(ColorFromRGB(0x00A5FF), CIEDrawLineProperties::DashDotDotted, 2));
    layers.SetDefaultLayer(1);

    CIECodeDescription& kerb = *job.GetIEDataDictionary()->FindCodeDiscription("KERB");
    auto pPoints = std::make_unique<CIEDrawPointProperties>();
    pPoints->SetColor(ColorFromRGB(0xFF0000));
    pPoints->SetMarkStyle(12);
    kerb.SetDrawProperties(CIEDrawProperties::Points, std::move(pPoints));
    kerb.SetDrawProperties(CIEDrawProperties::Lines, std::make_unique<CIEDrawLineProperties>());
    auto pArea = std::make_unique<CIEDrawAreaProperties>();
    pArea->SetFloodStatus(true);

    dataset.FindObject("area")->SetDrawProperties(std::move(pArea));
    dataset.FindObject("line")->SetDrawProperties(MakeLines(0, CIEDrawLineProperties::DashedCustom, 0));
    auto pComposite = std::make_unique<CIECompositeObject>();
    pComposite->SetName("gate");
    pComposite->AddPart(dataset.FindObject("arc")->clone());
    pComposite->AddPart(dataset.FindObject("line")->clone());
    dataset.Add(std::move(pComposite));
    dataset.Add(std::make_unique<CIECompositeObject>());

    CHeaderInfo& header = *dataset.GetHeaderInfo();
    header.SetPointMode(34);
    header.SetSymbolSize(0.5);
    header.SetTextHeight(1.75);
    header.SetTextWidthFactor(0.8);
    dataset.FixBorders(CIEStation(1, 2, 3), CIEStation(4, 5, 6));
}

/// Something under every key that a document has.
inline void FillRichJob(CIEData& job)
{
    FillInfo(*job.GetJobInfo());
    ChangeSettings(job, FillSettings);

    CIECodeDescription* const pTree = AddCode(
        job, "TREE",
        {CIEAttrDescription("species", CIEAttrDescription::LIST, {"oak", "beech"}),
         CIEAttrDescription("girth", CIEAttrDescription::REAL), CIEAttrDescription("count", CIEAttrDescription::INT)});
    pTree->SetDescription("Single tree");
    CIECodeDescription* const pTwin = AddCode(job, "TWIN", {CIEAttrDescription("a"), CIEAttrDescription("a")});
    CIECodeDescription* const pKerb = AddCode(job, "KERB");
    const CIELayer* const pTrees = job.GetIEDrawDictionary()->AddLayer(std::make_unique<CIELayer>("Trees"));
    job.GetIEDrawDictionary()->AddLayer(std::make_unique<CIELayer>("Empty"));

    auto pTemplates = std::make_unique<CIERoadTemplatesDictionary>();
    CIERoadTemplate* const pLane = pTemplates->AddRoadTemplate(std::make_unique<CIERoadTemplate>("lane"));
    FillKeys(*pLane, ECSDataType::CutSlope, 1.5);
    CIETemplateSegment segment;
    FillKeys(segment, ETSDataType::Offset, 3.5);
    segment.SetCodeDescription(pKerb);
    pLane->AddSegment(segment);
    pLane->AddSegment(CIETemplateSegment());
    CIERoadTemplate* const pDitch = pTemplates->AddRoadTemplate(std::make_unique<CIERoadTemplate>("ditch"));
    pDitch->SetForms(CIERoadTemplate::Sequential, CIERoadTemplate::Sequential);
    job.AttachIERoadTemplatesDictionary(std::move(pTemplates));

    job.AddDataset(std::make_unique<CIEDataset>("empty"));
    CIEDataset& dataset = *job.AddDataset(std::make_unique<CIEDataset>("Mill Lane"));
    AddPoint(dataset, "1", 0.1, -2.5e-7, 1e21);
    CIEDesignPoint& full = AddPoint(dataset, "", 52.5, 13.25, 0);
    CIEStation station = *full.GetStation();
    FillStation(station);
    station.SetHeightUndefined();
    full.SetStation(station);
    full.SetLayer(pTrees);
    full.SetStateType(CIEObject::InBlock);
    GiveCode(full, pTree, {"oak", "", "3"});
    GiveCode(full, pTree, {"oak"});
    GiveCode(full, pTree, {"", "", ""});
    GiveCode(full, pTwin, {"x", "y"});
    CIECodeValues& kerb = GiveCode(full, pKerb);
    kerb.AddCodeString("1");
    kerb.AddCodeString("");
    kerb.SetControlCode(1, "END");
    FillGPSData(AddPoint<CIEGPSPosition>(dataset, "gps"));
    AddPoint<CIEPTLPoint>(dataset, "ptl").SetPTLParams("1", "gps", CIEPTLPoint::PointToLine);
    CIEStation named = MakeStation("corner", 1, 2, 3);
    FillStation(named);
    CIEStation flat(7, 8, 0);
    flat.SetHeightUndefined();
    AddLine<CIEPolyLine>(dataset, "line", {named, flat, MakeStation("", 4, 5, 6)});
    AddLine<CIEPolygon>(dataset, "area", {});
    auto pArc = std::make_unique<CIEArc>();
    pArc->SetStation(MakeStation("arc", 10, 20, 30));
    for (int i = 0; i < CIEArc::kDataTypes; ++i)
        pArc->SetData(i, 4.5 * (i + 1));
    dataset.Add(std::move(pArc));

    auto pSheet = std::make_unique<CIESheetPoint>();
    pSheet->SetName("stake");
    pSheet->SetDesignStation(named);
    pSheet->AddOffsetStation(MakeOffsetStation(named, 0.5));
    pSheet->AddOffsetStation(CIEOffsetStation());
    dataset.Add(std::move(pSheet));
    dataset.Add(std::make_unique<CIESheetPoint>())->SetName("bare sheet");
    AddPoint<CIEGPSPosition>(dataset, "heard", 1, 2, 3).SetRawDataType(CIEGPSPosition::SatelliteData);
    AddPoint<CIEGPSPosition>(dataset, "measured", 1, 2, 3).SetCV({});

    auto pHistory = std::make_unique<CIEJobHistory>();
    pHistory->AddJHTable({"Stakeout", "stake", {{"cut", "fill", "0.5, 1"}, {}}});
    pHistory->AddJHTable({});
    dataset.SetJobHistory(std::move(pHistory));
    job.GetDatasetAt(0)->SetJobHistory(std::make_unique<CIEJobHistory>());

    CIESurface& surface = *dataset.Add(std::make_unique<CIESurface>());
    surface.SetName("ground");
    surface.AddPosition(CIEStation(0, 0, 10));
    surface.AddPosition(named);
    CIETriangle triangle;
    triangle.SetPosition(0, 1);
    triangle.SetPosition(1, 0);
    surface.AddTriangle(triangle);
    dataset.Add(std::make_unique<CIESurface>());
    FillDrawing(job, dataset);
    AddRichAlignment(dataset, *job.GetIERoadTemplatesDictionary());
}

/// Draws values of all sorts; the same for the same seed.
class CRandom {
public:
    explicit CRandom(unsigned nSeed) : m_Engine(nSeed) {}
    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_Engine); }
    bool OneIn(int n) { return Below(n) == 0; }
    /// Mostly numbers of a survey, now and then any finite one.
    double Number()
    {
        if (OneIn(4))
            return Below(2000) - 1000;
        if (OneIn(4)) {
            const double dAny = std::ldexp(Fraction(), Below(2000) - 1000);
            return OneIn(2) ? -dAny : dAny;
        }
        return Fraction() * 1e6;
    }
    CString Text()
    {
        static const CString kPieces[] = {
            "a", "Z9",   " ", "\"", "\\", "\n", "\t", "/", "~1", "é", "測", "\xF0\x9F\x93\x90", CString(1, '\0'),
            "{", "\x7F", "'"};
        CString text;
        for (int i = Below(5); i > 0; --i)
            text += kPieces[Below(static_cast<int>(std::size(kPieces)))];
        return text;
    }

private:
    double Fraction() { return std::uniform_real_distribution<double>(0, 1)(m_Engine); }
    std::mt19937 m_Engine;
};

inline CIEStation RandomStation(CRandom& random, bool bNamed)
{
    CIEStation station(random.Number(), random.Number(), random.Number());
    if (bNamed && random.OneIn(3))
        station.SetName(random.Text());
    if (random.OneIn(4))
        station.SetHeightUndefined();
    if (random.OneIn(5))
        station.SetGeoidHeight(random.Number());
    if (random.OneIn(5))
        station.SetNotes(random.Text());
    if (random.OneIn(5))
        station.SetTimeStamps(random.Text());
    if (random.OneIn(5))
        station.SetStationType(random.Below(100) - 50);
    return station;
}

inline std::unique_ptr<CIEObject> RandomGPSPosition(CRandom& random)
{
    auto pPosition = std::make_unique<CIEGPSPosition>(RandomStation(random, false));
    if (random.OneIn(3))
        pPosition->SetCV({random.Number(), random.Number(), random.Number(), 0, random.Number(), 0});
    if (random.OneIn(3))
        (void)pPosition->SetTime({1 + random.Below(9999), 1 + random.Below(12), 1 + random.Below(28), random.Below(24),
                                  random.Below(60), random.Below(61), random.OneIn(2) ? random.Below(1000) : 0});
    if (random.OneIn(3))
        pPosition->SetDOP({0, random.Number(), random.Number(), random.Number()});
    if (random.OneIn(3))
        pPosition->SetSolutionType(random.Below(11)); // 9 and 10 have no word
    if (random.OneIn(3))
        pPosition->SetNumberOfGpsSats(random.Below(30));
    if (random.OneIn(3))
        pPosition->SetNumberOfGlonassSats(random.Below(30));
    return pPosition;
}

inline std::unique_ptr<CIEObject> RandomSheetPoint(CRandom& random)
{
    auto pSheet = std::make_unique<CIESheetPoint>();
    if (random.OneIn(4))
        return pSheet;
    pSheet->SetDesignStation(RandomStation(random, true));
    for (int i = random.Below(4); i > 0; --i)
        pSheet->AddOffsetStation(MakeOffsetStation(RandomStation(random, true), random.Number()));
    return pSheet;
}

inline std::unique_ptr<CIEJobHistory> RandomJobHistory(CRandom& random)
{
    auto pHistory = std::make_unique<CIEJobHistory>();
    for (int i = random.Below(4); i > 0; --i) {
        TIEJobHistoryTable table{random.Text(), random.Text(), {}};
        for (int k = random.Below(4); k > 0; --k)
            table.m_Tags.push_back({random.Text(), random.Text(), random.Text()});
        pHistory->AddJHTable(std::move(table));
    }
    return pHistory;
}

inline std::unique_ptr<CIEObject> RandomObject(CRandom& random)
{
    switch (random.Below(7)) {
    case 0:
        return std::make_unique<CIEDesignPoint>(RandomStation(random, false));
    case 1:
        return RandomGPSPosition(random);
    case 4:
        return RandomSheetPoint(random);
    case 2: {
        auto pPoint = std::make_unique<CIEPTLPoint>(RandomStation(random, false));
        pPoint->SetPTLParams(random.Text(), random.Text(), random.Below(3)); // 2 has no word
        return pPoint;
    }
    case 3: {
        auto pArc = std::make_unique<CIEArc>();
        pArc->SetStation(RandomStation(random, false));
        for (int i = 0; i < CIEArc::kDataTypes; ++i)
            pArc->SetData(i, random.Number());
        return pArc;
    }
    default: {
        auto pLine = random.OneIn(2) ? std::make_unique<CIEPolyLine>() : std::make_unique<CIEPolygon>();
        for (int i = random.Below(5); i > 0; --i)
            pLine->AddStation(RandomStation(random, true));
        return pLine;
    }
    }
}

inline void GiveRandomCodes(CRandom& random, const CIEData& job, CIEObject& object)
{
    const CIEDataDictionary& codes = *job.GetIEDataDictionary();
    for (int i = random.Below(3); i > 0 && codes.GetSize() > 0; --i) {
        const CIECodeDescription* const pCode = codes.GetCodeDescriptionAt(random.Below(codes.GetSize()));
        CIECodeValues values(pCode);
        for (int k = random.OneIn(3) ? random.Below(5) : pCode->GetSize(); k > 0; --k)
            values.AddAttr(random.Text());
        for (int k = random.Below(3); k > 0; --k)
            values.AddCodeString(random.Text());
        for (int k = random.Below(3); k > 0; --k)
            values.SetControlCode(random.Below(2), random.Text());
        object.AddCode(std::move(values));
    }
}

inline void FillRandomJob(CIEData& job, unsigned nSeed)
{
    CRandom random(nSeed);
    for (int i = random.Below(4); i > 0; --i) {
        CIECodeDescription* const pCode = AddCode(job, random.Text() + std::to_string(i));
        for (int k = random.Below(4); k > 0; --k)
            pCode->AddAttrDescription(CIEAttrDescription(random.Text()));
    }
    for (int i = random.Below(3); i > 0; --i)
        job.GetIEDrawDictionary()->AddLayer(std::make_unique<CIELayer>(random.Text()));
    for (int i = random.Below(4); i > 0; --i) {
        CIEDataset& dataset = *job.AddDataset(std::make_unique<CIEDataset>(random.Text()));
        for (int k = random.Below(12); k > 0; --k) {
            CIEObject& object = *dataset.Add(RandomObject(random));
            object.SetName(random.Text());
            GiveRandomCodes(random, job, object);
            const int nLayers = job.GetIEDrawDictionary()->GetNumberOfLayers();
            if (nLayers > 0 && random.OneIn(2))
                object.SetLayer(job.GetIEDrawDictionary()->GetLayerAt(random.Below(nLayers)));
            if (random.OneIn(5))
                object.SetStateType(random.Below(4)); // 2 and 3 have no word
        }
        if (random.OneIn(3))
            dataset.SetJobHistory(RandomJobHistory(random));
        for (int k = random.Below(3); k > 0; --k) {
            CIESurface& surface = *dataset.Add(std::make_unique<CIESurface>());
            surface.SetName(random.Text());
            const int nPositions = random.Below(6);
            for (int n = 0; n < nPositions; ++n)
                surface.AddPosition(RandomStation(random, true));
            for (int n = random.Below(4); n > 0 && nPositions > 0; --n) {
                CIETriangle triangle;
                for (int c = random.Below(4); c > 0; --c)
                    triangle.SetPosition(c - 1, random.Below(nPositions));
                surface.AddTriangle(triangle);
            }
        }
    }
    job.SetCurDataset(random.Below(4));
}

/// The same with values that a document can't hold.
inline void FillWildJob(CIEData& job, unsigned nSeed)
{
    FillRandomJob(job, nSeed);
    CRandom random(nSeed);
    ChangeSettings(job, [&](TIESettings& settings) {
        const char16_t delimiters[] = {u'-', u'.', u'+', u'7', u'\0', u'\n', u'\t', u';', char16_t{0xD800}, u'\u00E9'};
        settings.m_nNorthDecimals = random.Below(40) - 20;
        settings.m_nHeightDecimals = random.Below(40) - 20;
        settings.m_nMostBlockCopies = random.Below(3) - 1;
        settings.m_strCodePage = random.OneIn(2) ? random.Text() : "CP1250";
        settings.m_strWriteEncoding = random.OneIn(2) ? random.Text() : "UTF-16LE";
        settings.m_pAsciiFormat = std::make_unique<TIEAsciiFormat>();
        settings.m_pAsciiFormat->m_cDelimiter = delimiters[random.Below(static_cast<int>(std::size(delimiters)))];
        settings.m_pAsciiFormat->m_Fields.push_back(static_cast<IEAsciiFields::EType>(random.Below(60) - 5));
    });
    const double odd[] = {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1.0};
    const auto number = [&] { return odd[random.Below(3)]; };
    CIEDataset& dataset = *job.GetCurDataset(true);
    AddPoint(dataset, random.OneIn(2) ? "\xC3" : "n", number(), number(), number());
    CIECodeDescription* const pCode = AddCode(job, "wild", {CIEAttrDescription("\xFF"), CIEAttrDescription("\xFE")});
    GiveCode(AddLine<CIEPolyLine>(dataset, "l", {CIEStation(number(), 1, number())}), pCode, {"x", "\x80y"});
    AddPoint(dataset, "none").AddCode(CIECodeValues(nullptr));
    CIESurface& surface = *dataset.Add(std::make_unique<CIESurface>());
    surface.AddPosition(CIEStation(number(), 0, 0));
    CIETriangle triangle;
    for (int i = 0; i < CIETriangle::kCorners; ++i)
        triangle.SetPosition(i, random.Below(6) - 3);
    surface.AddTriangle(triangle);
    CIEAlignment& road = *dataset.Add(std::make_unique<CIEAlignment>());
    road.SetStaStart(number());
    job.GetJobInfo()->SetTemperature(number(), 1);
}

} // namespace JobSamples
