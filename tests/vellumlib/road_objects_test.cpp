// The road objects: keys and positions, the computed parabola, templates by name, and offsets in both forms.
#include "alidade/vellumlib/alignment.h"
#include "alidade/vellumlib/data.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using EForm = CIERoadTemplate::EForm;

/// A template with offsets and heights in turn.
std::unique_ptr<CIERoadTemplate> MakeTemplate(const CString& name, const std::vector<double>& values)
{
    auto pTemplate = std::make_unique<CIERoadTemplate>(name);
    for (std::size_t i = 0; i + 1 < values.size(); i += 2) {
        CIETemplateSegment segment;
        segment.SetData(ETSDataType::Offset, values[i]);
        segment.SetData(ETSDataType::Height, values[i + 1]);
        pTemplate->AddSegment(segment);
    }
    return pTemplate;
}

std::vector<double> Values(const CIERoadTemplate& shape)
{
    std::vector<double> values;
    for (int i = 0; i < shape.GetNumberOfSegments(); ++i) {
        values.push_back(shape.GetSegmentAt(i)->GetData(ETSDataType::Offset));
        values.push_back(shape.GetSegmentAt(i)->GetData(ETSDataType::Height));
    }
    return values;
}

std::vector<CString> Names(const CIERoadTemplatesDictionary& dictionary)
{
    std::vector<CString> names;
    auto position = dictionary.GetStartPosition();
    while (const CIERoadTemplate* pTemplate = dictionary.GetNextRoadTemplate(position))
        names.push_back(pTemplate->GetName());
    return names;
}

template <class T, class EKey>
void ExpectKeysApart(T&& object, EKey)
{
    for (int i = 0; i < std::decay_t<T>::kKeys; ++i)
        object.SetData(static_cast<EKey>(i), 10.5 + i);
    object.SetData(static_cast<EKey>(std::decay_t<T>::kKeys), 99.0);
    object.SetData(static_cast<EKey>(-1), 99.0);
    for (int i = 0; i < std::decay_t<T>::kKeys; ++i)
        EXPECT_EQ(object.GetData(static_cast<EKey>(i)), 10.5 + i) << "key " << i;
    EXPECT_EQ(object.GetData(static_cast<EKey>(std::decay_t<T>::kKeys)), 0.0);
    EXPECT_EQ(object.GetData(static_cast<EKey>(-1)), 0.0);
}

std::unique_ptr<CIELongSection> MakeSection(double dStation, double dElevation, double dParabola)
{
    auto pSection = std::make_unique<CIELongSection>();
    pSection->SetData(ELSDataType::Station, dStation);
    pSection->SetData(ELSDataType::Elevation, dElevation);
    pSection->SetData(ELSDataType::ParabolaLength, dParabola);
    return pSection;
}

} // namespace

TEST(RoadElements, KeysAreKeptApart)
{
    ExpectKeysApart(CIELine2D(), ELineDataType::Azimuth);
    ExpectKeysApart(CIECurve(), ECurveDataType::Length);
    ExpectKeysApart(CIESpiral(), ESpiralDataType::Length);
    ExpectKeysApart(CIEIntersectionPoint(false), EIPDataType::Radius);
    ExpectKeysApart(CIELongSection(), ELSDataType::Station);
    ExpectKeysApart(CIEVerticalElement(CIEVerticalElement::Straight), EVEDataType::StartStation);
    ExpectKeysApart(CIETemplateSegment(), ETSDataType::Offset);
    ExpectKeysApart(CIERoadTemplate("A"), ECSDataType::CutSlope);
}

TEST(RoadElements, APositionKnowsWhetherItWasSet)
{
    CIECurve curve;
    EXPECT_FALSE(curve.GetStartPosition().IsDefined());
    curve.SetPosition(CIECurve::Centre, {0.0, 0.0});
    EXPECT_TRUE(curve.GetPosition(CIECurve::Centre).IsDefined());
    EXPECT_FALSE(curve.GetPosition(CIECurve::End).IsDefined());
    curve.SetPosition(4, {1.0, 2.0});
    curve.SetPosition(-1, {1.0, 2.0});
    EXPECT_FALSE(curve.GetPosition(4).IsDefined());
    EXPECT_FALSE(curve.GetStartPosition().IsDefined());
    curve.SetPosition(CIECurve::Start, {7.0, 8.0});
    const CIEAlignmentObject& object = curve;
    EXPECT_EQ(object.GetStartPosition().GetNorth(), 7.0);
    EXPECT_EQ(object.GetStartPosition().GetEast(), 8.0);
    EXPECT_NE(CIEPosition2D(), CIEPosition2D(0.0, 0.0));
}

TEST(RoadElements, SpiralTypesAndTheirWordsFit)
{
    CIESpiral spiral;
    EXPECT_STREQ(spiral.GetSpiralTypeAsString(), "clothoid");
    for (int nType = CIESpiral::Biquadratic; nType <= CIESpiral::RevSinusoid; ++nType) {
        spiral.SetSpiralType(nType);
        EXPECT_EQ(CIESpiral::GetSpiralTypeFromString(spiral.GetSpiralTypeAsString()), nType);
    }
    spiral.SetSpiralType(8);
    EXPECT_STREQ(spiral.GetSpiralTypeAsString(), "revCosine");
    spiral.SetSpiralType(77);
    EXPECT_STREQ(spiral.GetSpiralTypeAsString(), "clothoid");
    EXPECT_EQ(CIESpiral::GetSpiralTypeFromString("Bloss"), CIESpiral::Clothoid);
}

TEST(RoadElements, AnIntersectionPointIsAsLongAsItsParts)
{
    for (const bool bSimple : {false, true}) {
        CIEIntersectionPoint point(bSimple);
        EXPECT_EQ(point.GetElementLength(), 0.0);
        point.SetSegment(std::make_unique<CIELine2D>());
        point.GetSegment()->SetData(ELineDataType::Length, 100.0);
        point.SetFirstSpiral(std::make_unique<CIESpiral>());
        point.GetFirstSpiral()->SetData(ESpiralDataType::Length, 20.0);
        point.SetCurve(std::make_unique<CIECurve>());
        point.GetCurve()->SetData(ECurveDataType::Length, 5.0);
        point.SetSecondSpiral(std::make_unique<CIESpiral>());
        point.GetSecondSpiral()->SetData(ESpiralDataType::Length, 3.0);
        EXPECT_EQ(point.GetElementLength(), bSimple ? 100.0 : 128.0);
        EXPECT_EQ(point.IsSimplePoint(), bSimple);
    }
}

TEST(Alignment, AddsUpItsLengthUntilOneIsTold)
{
    CIEAlignment alignment;
    EXPECT_EQ(alignment.AddObject(nullptr), nullptr);
    auto pLine = std::make_unique<CIELine2D>();
    pLine->SetData(ELineDataType::Length, 12.5);
    pLine->SetData(ELineDataType::Azimuth, 300.0);
    alignment.AddObject(std::move(pLine));
    auto pCurve = std::make_unique<CIECurve>();
    pCurve->SetData(ECurveDataType::Length, 30.0);
    alignment.AddObject(std::move(pCurve));
    EXPECT_EQ(alignment.GetLength(), 42.5);
    EXPECT_EQ(alignment.GetObjectAt(1)->GetType(), EIEAlignmentObjType::Curve);
    EXPECT_EQ(alignment.GetObjectAt(2), nullptr);
    EXPECT_EQ(alignment.GetObjectAt(-1), nullptr);
    alignment.SetLength(0.0);
    EXPECT_EQ(alignment.GetLength(), 0.0);
}

TEST(Alignment, AParabolaFollowsFromTheNeighbours)
{
    CIEAlignment alignment;
    alignment.AddLongSection(MakeSection(0, 100, 40)); // an end has no parabola, whatever its length
    CIELongSection* const pMiddle = alignment.AddLongSection(MakeSection(100, 102, 40));
    EXPECT_EQ(pMiddle->GetParabola(), nullptr);
    alignment.AddLongSection(MakeSection(200, 101, 0));

    EXPECT_EQ(alignment.GetLongSectionAt(0)->GetParabola(), nullptr);
    EXPECT_EQ(alignment.GetLongSectionAt(2)->GetParabola(), nullptr);
    const auto pParabola = pMiddle->GetParabola();
    ASSERT_NE(pParabola, nullptr);
    EXPECT_EQ(pParabola->GetElementType(), CIEVerticalElement::Parabola);
    EXPECT_DOUBLE_EQ(pParabola->GetData(EVEDataType::StartStation), 80.0);
    EXPECT_DOUBLE_EQ(pParabola->GetData(EVEDataType::EndStation), 120.0);
    EXPECT_DOUBLE_EQ(pParabola->GetData(EVEDataType::StartElevation), 101.6);
    EXPECT_DOUBLE_EQ(pParabola->GetData(EVEDataType::EndElevation), 101.8);
    EXPECT_DOUBLE_EQ(pParabola->GetData(EVEDataType::Grade), 2.0);
    EXPECT_DOUBLE_EQ(pParabola->GetData(EVEDataType::EndGrade), -1.0);
    // the parabola meets the end: rise on the start tangent plus a * L * L
    const double dCoefficient = pParabola->GetData(EVEDataType::ParabolaCoefficient);
    EXPECT_DOUBLE_EQ(101.6 + 0.02 * 40 + dCoefficient * 1600, 101.8);

    pMiddle->SetData(ELSDataType::ParabolaLength, 0.0);
    EXPECT_EQ(pMiddle->GetParabola(), nullptr);
    auto pOwn = std::make_unique<CIEVerticalElement>(CIEVerticalElement::Parabola);
    pOwn->SetData(EVEDataType::EndStation, 7.0);
    pMiddle->SetParabola(std::move(pOwn));
    EXPECT_EQ(pMiddle->GetParabola()->GetData(EVEDataType::EndStation), 7.0);
}

TEST(Alignment, StationsThatDontAscendGiveNoParabola)
{
    CIEAlignment alignment;
    alignment.AddLongSection(MakeSection(0, 100, 0));
    CIELongSection* const pMiddle = alignment.AddLongSection(MakeSection(0, 102, 40));
    alignment.AddLongSection(MakeSection(200, 101, 0));
    EXPECT_EQ(pMiddle->GetParabola(), nullptr);
}

TEST(CrossSection, KnowsItsLevelOnceItWasSetAndCopiesWithoutTemplates)
{
    CIERoadTemplate first("first");
    CIERoadTemplate second("second");
    CIECrossSection section(&first);
    EXPECT_FALSE(section.IsLevelAtCLCalculated());
    section.SetSta(250.0);
    section.SetLevelAtCL(0.0);
    section.SetTurn(true);
    EXPECT_TRUE(section.IsLevelAtCLCalculated());

    CIECrossSection copy(&second);
    copy.CopyData(section);
    EXPECT_EQ(copy.GetSta(), 250.0);
    EXPECT_TRUE(copy.GetTurn());
    EXPECT_TRUE(copy.IsLevelAtCLCalculated());
    ASSERT_EQ(copy.GetNumberOfRoadTemplates(), 1);
    EXPECT_EQ(copy.GetRoadTemplateAt(0), &second);
    EXPECT_FALSE(copy.RemoveRoadTemplate("first"));
    EXPECT_TRUE(copy.RemoveRoadTemplate("second"));
    EXPECT_EQ(copy.GetRoadTemplateAt(0), nullptr);
    EXPECT_EQ(CIECrossSection(nullptr).GetNumberOfRoadTemplates(), 0);
}

TEST(RoadTemplates, AreFoundByNameThroughAddingRenamingAndRemoving)
{
    CIERoadTemplatesDictionary dictionary;
    EXPECT_EQ(dictionary.GetStartPosition(), 0U);
    CIERoadTemplate* const pB = dictionary.AddRoadTemplate(MakeTemplate("B", {1, 2}));
    EXPECT_EQ(dictionary.AddRoadTemplate(MakeTemplate("B", {3, 4})), pB);
    EXPECT_EQ(dictionary.AddRoadTemplate(nullptr), nullptr);
    CIERoadTemplate* const pA = dictionary.AddRoadTemplate(MakeTemplate("A_L", {}));
    dictionary.AddRoadTemplate(MakeTemplate("A_R", {}));
    EXPECT_FALSE(pA->SetName("B"));
    EXPECT_TRUE(dictionary.RemoveRoadTemplate("A_R"));
    EXPECT_FALSE(dictionary.RemoveRoadTemplate("A_R"));
    EXPECT_TRUE(pA->SetName("A"));
    EXPECT_EQ(dictionary.FindRoadTemplate("A_L"), nullptr);
    EXPECT_EQ(dictionary.FindRoadTemplate("A"), pA);
    EXPECT_EQ(Names(dictionary), (std::vector<CString>{"B", "A"}));
    EXPECT_EQ(dictionary.GetNumberOfRoadTemplates(), 2);
}

TEST(RoadTemplates, KeepOrderAndNamesWhileManyAreRemoved)
{
    CIERoadTemplatesDictionary dictionary;
    for (int i = 0; i < 100; ++i)
        dictionary.AddRoadTemplate(MakeTemplate(std::to_string(i), {double(i), 0}));
    std::vector<CString> expected;
    for (int i = 0; i < 100; ++i) {
        if (i % 7 == 3)
            expected.push_back(std::to_string(i));
        else
            ASSERT_TRUE(dictionary.RemoveRoadTemplate(std::to_string(i)));
    }
    EXPECT_EQ(Names(dictionary), expected);
    for (const CString& name : expected)
        EXPECT_EQ(dictionary.FindRoadTemplate(name)->GetName(), name);
    dictionary.AddRoadTemplate(MakeTemplate("0", {}));
    EXPECT_EQ(Names(dictionary).back(), "0");
}

TEST(RoadTemplates, TurnOffsetsIntoStepsAndBack)
{
    CIERoadTemplatesDictionary dictionary;
    CIERoadTemplate& shape = *dictionary.AddRoadTemplate(MakeTemplate("A", {3.5, -0.07, 5, -0.13, 6.5, -1}));
    dictionary.ConvertOffsetsCentralToSeq(true, false);
    EXPECT_EQ(Values(shape), (std::vector<double>{3.5, -0.07, 1.5, -0.13, 1.5, -1}));
    dictionary.ConvertOffsetsCentralToSeq(false, true);
    EXPECT_EQ(Values(shape), (std::vector<double>{3.5, -0.07, 1.5, -0.13 + 0.07, 1.5, -1 + 0.13}));
    dictionary.ConvertOffsetsSeqToCentral(true, true);
    EXPECT_EQ(Values(shape), (std::vector<double>{3.5, -0.07, 5, -0.13, 6.5, -1}));
}

TEST(RoadTemplates, ConvertOnlyWhatIsInTheOtherForm)
{
    CIERoadTemplatesDictionary dictionary;
    CIERoadTemplate& older = *dictionary.AddRoadTemplate(MakeTemplate("older", {3, 0, 7, 0}));
    older.SetForms(EForm::Central, EForm::Central);
    // read beside it, in steps
    CIERoadTemplate& added = *dictionary.AddRoadTemplate(MakeTemplate("new", {3, 0, 4, 0}));
    dictionary.ConvertOffsetsSeqToCentral(true, true);
    dictionary.ConvertOffsetsSeqToCentral(true, true);
    EXPECT_EQ(Values(older), (std::vector<double>{3, 0, 7, 0}));
    EXPECT_EQ(Values(added), (std::vector<double>{3, 0, 7, 0}));
    // a writer may ask once for each alignment
    dictionary.ConvertOffsetsCentralToSeq(true, true);
    dictionary.ConvertOffsetsCentralToSeq(true, true);
    EXPECT_EQ(Values(older), (std::vector<double>{3, 0, 4, 0}));
}

TEST(RoadTemplates, RandomOnesComeBackFromSteps)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> step(0.0, 9.0);
    for (int nRound = 0; nRound < 50; ++nRound) {
        std::vector<double> values;
        for (int i = 0; i < nRound % 9; ++i) {
            values.push_back((values.empty() ? 0.0 : values[values.size() - 2]) + step(random));
            values.push_back(step(random) - 4.5);
        }
        CIERoadTemplatesDictionary dictionary;
        const CIERoadTemplate& shape = *dictionary.AddRoadTemplate(MakeTemplate("A", values));
        dictionary.ConvertOffsetsCentralToSeq(true, true);
        dictionary.ConvertOffsetsSeqToCentral(true, true);
        const std::vector<double> back = Values(shape);
        ASSERT_EQ(back.size(), values.size());
        for (std::size_t i = 0; i < back.size(); ++i)
            EXPECT_NEAR(back[i], values[i], 1e-12);
    }
}

TEST(RoadTemplates, NegativeSidesTurnRoundToRunOutwards)
{
    CIERoadTemplatesDictionary dictionary;
    const CIERoadTemplate& left = *dictionary.AddRoadTemplate(MakeTemplate("left", {-7, 0.5, -3, 0.1, 0, 0}));
    const CIERoadTemplate& outwards = *dictionary.AddRoadTemplate(MakeTemplate("outwards", {-3, 0.1, -7, 0.5}));
    const CIERoadTemplate& right = *dictionary.AddRoadTemplate(MakeTemplate("right", {7, 0.5, 3, 0.1}));
    dictionary.AddRoadTemplate(MakeTemplate("empty", {}));
    dictionary.MakeOffsetsPositive();
    EXPECT_EQ(Values(left), (std::vector<double>{0, 0, 3, 0.1, 7, 0.5}));
    EXPECT_EQ(Values(outwards), (std::vector<double>{3, 0.1, 7, 0.5}));
    EXPECT_EQ(Values(right), (std::vector<double>{7, 0.5, 3, 0.1}));
}

TEST(RoadTemplates, AJobHoldsThemCentralAndKeepsReplacedOnesAlive)
{
    CIEData job;
    auto pDictionary = std::make_unique<CIERoadTemplatesDictionary>();
    const CIERoadTemplate& shape = *pDictionary->AddRoadTemplate(MakeTemplate("A", {3, 0, 7, 0}));
    job.AttachIERoadTemplatesDictionary(std::move(pDictionary));
    job.GetIERoadTemplatesDictionary()->ConvertOffsetsSeqToCentral(true, true);
    EXPECT_EQ(Values(shape), (std::vector<double>{3, 0, 7, 0}));

    const CIECrossSection section(&shape);
    job.AttachIERoadTemplatesDictionary(nullptr);
    EXPECT_EQ(job.GetIERoadTemplatesDictionary(), nullptr);
    EXPECT_EQ(section.GetRoadTemplateAt(0)->GetName(), "A");
}
