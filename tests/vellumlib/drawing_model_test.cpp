// What the job model holds for drawings.
#include "alidade/vellumlib/autocad_utils.h"
#include "alidade/vellumlib/data.h"

#include <gtest/gtest.h>

namespace {

const CIEAutoCADUtils kUtils;

TEST(AutoCADUtilsTest, ColorsGoOutAndComeBack)
{
    for (int i = 1; i < CIEAutoCADUtils::kColors; ++i) {
        const TIEColor color = kUtils.Convert256ToRGB(i);
        const int nBack = kUtils.ConvertRGBTo256(color);
        EXPECT_EQ(kUtils.Convert256ToRGB(nBack), color) << i;
        EXPECT_LE(nBack, i) << "the lowest index of a colour is taken";
    }
    const struct {
        int m_nIndex;
        std::uint32_t m_RGB;
    } kRows[] = {{1, 0xFF0000},   {2, 0xFFFF00},   {3, 0x00FF00},   {4, 0x00FFFF},   {5, 0x0000FF},   {6, 0xFF00FF},
                 {7, 0xFFFFFF},   {8, 0x808080},   {9, 0xC0C0C0},   {11, 0xFF7F7F},  {12, 0xA50000},  {33, 0xA57C52},
                 {43, 0xA59152},  {90, 0x00FF00},  {140, 0x00BFFF}, {171, 0x7F7FFF}, {212, 0xA500A5}, {249, 0x261317},
                 {252, 0x848484}, {254, 0xD6D6D6}, {0, 0},          {-1, 0xFFFFFF},  {256, 0xFFFFFF}};
    for (const auto& row : kRows)
        EXPECT_EQ(kUtils.Convert256ToRGB(row.m_nIndex), ColorFromRGB(row.m_RGB)) << row.m_nIndex;
    EXPECT_EQ(kUtils.ConvertRGBTo256(0x000000), CIEAutoCADUtils::kForeground);
    EXPECT_EQ(kUtils.ConvertRGBTo256(0x0201FE), 1) << "red is the low byte";
    EXPECT_EQ(kUtils.ConvertRGBTo256(0x343434), 250);
}

TEST(AutoCADUtilsTest, LineWeightsKeepTheirPixels)
{
    EXPECT_EQ(kUtils.ConvertLineWeightFromMMtoPixels(nullptr, 0), 0);
    EXPECT_EQ(kUtils.ConvertLineWeightFromMMtoPixels(nullptr, -3), 0) << "the drawing's default";
    EXPECT_EQ(kUtils.ConvertLineWeightFromMMtoPixels(nullptr, 5), 1);
    EXPECT_EQ(kUtils.ConvertLineWeightFromMMtoPixels(nullptr, 50), 2);
    EXPECT_EQ(kUtils.ConvertLineWeightFromMMtoPixels(nullptr, 211), 8);
    EXPECT_EQ(kUtils.ConvertLineWeightFromMMtoPixels(nullptr, 1e300), 8);
    for (const int nPixels : {0, 1, 2, 3, 4, 5, 6, 8})
        EXPECT_EQ(kUtils.ConvertLineWeightFromMMtoPixels(nullptr, kUtils.ConvertLineWeightFromPixelsToMM(nPixels)),
                  nPixels);
}

TEST(AutoCADUtilsTest, LineTypesFindTheirDashes)
{
    using enum CIEDrawLineProperties::EDashStyleType;
    for (const auto eStyle : {ByLayer, Solid, Dashed, Dotted, DashDotted, DashDotDotted, DashedCustom}) {
        CIEDrawLineProperties properties;
        properties.SetDashStyle(eStyle);
        EXPECT_EQ(kUtils.ConvertCustomLineTypeToPredefined(properties.GetDashStyleTypeAsString()), eStyle);
    }
    const struct {
        const char* m_pName;
        CIEDrawLineProperties::EDashStyleType m_eStyle;
    } kRows[] = {{"CONTINUOUS", Solid},
                 {"ByBlock", ByLayer},
                 {"HIDDEN2", Dashed},
                 {"CENTERX2", DashDotted},
                 {"Phantom", DashDotDotted},
                 {"ACAD_ISO03W100", Dashed},
                 {"acad_iso12w100", DashDotDotted},
                 {"DASHDOTX2", DashDotted},
                 {"DOT2", Dotted},
                 {"MY_DASHES", Dashed},
                 {"Dash-Dot", DashDotted},
                 {"DASH DOT_DOT", DashDotDotted},
                 {"FENCELINE1", Solid},
                 {"", Solid}};
    for (const auto& row : kRows)
        EXPECT_EQ(kUtils.ConvertCustomLineTypeToPredefined(row.m_pName), row.m_eStyle) << row.m_pName;
}

TEST(LayersTest, AreFoundByTheNameTheyHave)
{
    CIEDrawDictionary layers;
    CIELayer* const pRoads = layers.AddLayer(std::make_unique<CIELayer>("ROADS"));
    CIELayer* const pTrees = layers.AddLayer(std::make_unique<CIELayer>("TREES"));
    EXPECT_FALSE(pTrees->SetName("ROADS")) << "two layers of one name";
    EXPECT_EQ(pTrees->GetName(), "TREES");
    EXPECT_TRUE(pTrees->SetName("BUSHES"));
    EXPECT_EQ(layers.FindLayer("TREES"), nullptr);
    EXPECT_EQ(layers.FindLayer("BUSHES"), pTrees);
    EXPECT_EQ(layers.AddLayer(std::make_unique<CIELayer>("ROADS")), pRoads);

    EXPECT_EQ(layers.GetDefaultLayer(), nullptr);
    layers.SetDefaultLayer(1);
    EXPECT_EQ(layers.GetDefaultLayer(), pTrees);
    layers.SetDefaultLayer(2);
    EXPECT_EQ(layers.GetDefaultLayer(), nullptr);

    pRoads->SetDrawProperties(std::make_unique<CIEDrawLineProperties>());
    EXPECT_STREQ(static_cast<CIEDrawLineProperties*>(pRoads->GetDrawProperties())->GetDashStyleTypeAsString(),
                 "Continuous");
}

TEST(ShiftCoordsTest, ScalesAndThenMoves)
{
    CIEDesignPoint point(CIEStation(10, 20, 30));
    CIEStation flat(1, 1, 0);
    flat.SetHeightUndefined();
    CIEDesignPoint noHeight(flat);
    CIEPolyLine line;
    line.AddStation(CIEStation(1, 2, 3));
    line.AddStation(CIEStation(4, 5, 6));
    const CIEStation shift(100, 200, 300);
    for (CIEObject* const pObject : std::initializer_list<CIEObject*>{&point, &noHeight, &line})
        pObject->ShiftCoords(shift, 2, 3, 4);
    EXPECT_EQ(*point.GetStation(), CIEStation(120, 260, 420));
    EXPECT_EQ(noHeight.GetStation()->m_dNorth, 102);
    EXPECT_FALSE(noHeight.GetStation()->IsHeightDefined());
    EXPECT_EQ(*line.GetStation(0), CIEStation(102, 206, 312));
    EXPECT_EQ(*line.GetStation(1), CIEStation(108, 215, 324));
}

TEST(ShiftCoordsTest, AMirroredArcKeepsItsShape)
{
    const struct {
        double m_dNorthScale;
        double m_dEastScale;
        double m_dRadius;
        double m_dStart;
        double m_dEnd;
        double m_dFrom = 30;
        double m_dTo = 80;
    } kRows[] = {
        {1, 2, 10, 30, 80},
        {-1, 2, 10, 280, 330},
        {1, -2, 10, 100, 150},
        {-1, -2, 10, 210, 260},
        {1, -2, 10, 170, 190, 350, 10}, // through the angle 0
        // full circles
        {1, -2, 10, 180, 540, 0, 360},
        {-1, 2, 10, 0, 360, 0, 360},
        {-1, -2, 10, 225, 585, 45, 405},
        {1, -2, 10, 180, -180, 360, 0},
    };
    for (const auto& row : kRows) {
        CIEArc arc;
        arc.SetData(CIEArc::Radius, 5);
        arc.SetData(CIEArc::StartAngle, row.m_dFrom);
        arc.SetData(CIEArc::EndAngle, row.m_dTo);
        arc.ShiftCoords(CIEStation(7, 8, 9), row.m_dNorthScale, row.m_dEastScale, 1);
        EXPECT_EQ(*arc.GetStation(), CIEStation(7, 8, 9));
        EXPECT_DOUBLE_EQ(arc.GetData(CIEArc::Radius), row.m_dRadius);
        EXPECT_DOUBLE_EQ(arc.GetData(CIEArc::StartAngle), row.m_dStart);
        EXPECT_DOUBLE_EQ(arc.GetData(CIEArc::EndAngle), row.m_dEnd);
    }
}

TEST(DatasetTest, ObjectsAreFoundByTheNameThatTheyHave)
{
    CIEDataset dataset("Survey");
    const auto add = [&](const CString& strName) {
        auto pPoint = std::make_unique<CIEDesignPoint>();
        pPoint->SetName(strName);
        return static_cast<CIEDesignPoint*>(dataset.Add(std::move(pPoint)));
    };
    CIEDesignPoint* const pFirst = add("A");
    CIEDesignPoint* const pSecond = add("B");
    EXPECT_EQ(dataset.FindObject("A"), pFirst);
    pFirst->SetName("C");
    EXPECT_EQ(dataset.FindObject("A"), nullptr);
    EXPECT_EQ(dataset.FindObject("C"), pFirst);
    *pSecond = *pFirst; // takes the name too
    EXPECT_EQ(dataset.FindObject("B"), nullptr);
    dataset.RemoveObject(0);
    EXPECT_EQ(dataset.FindObject("C"), pSecond);
    *pSecond = CIEDesignPoint();
    dataset.RemoveObject(0);
    EXPECT_EQ(dataset.FindObject("C"), nullptr);
}

TEST(CompositeObjectTest, HoldsItsPartsAndTheirStations)
{
    CIECompositeObject composite;
    composite.AddPart(std::make_unique<CIEDesignPoint>(CIEStation(1, 2, 3)));
    composite.AddPart(std::make_unique<CIEPolyLine>());
    auto pLine = std::make_unique<CIEPolyLine>();
    pLine->AddStation(CIEStation(4, 5, 6));
    pLine->AddStation(CIEStation(7, 8, 9));
    composite.AddPart(std::move(pLine));
    EXPECT_FALSE(composite.AddPart(std::make_unique<CIECompositeObject>()));
    EXPECT_FALSE(composite.AddPart(nullptr));

    const CIECompositeObject copy(composite);
    composite.ShiftCoords(CIEStation(0, 0, 0), 2, 2, 2);
    ASSERT_EQ(copy.GetNumberOfStations(), 3);
    EXPECT_EQ(*copy.GetStation(1), CIEStation(4, 5, 6));
    EXPECT_EQ(*composite.GetStation(0), CIEStation(2, 4, 6));
    EXPECT_EQ(*composite.GetStation(2), CIEStation(14, 16, 18));
    EXPECT_EQ(composite.GetStation(3), nullptr);
    EXPECT_EQ(composite.GetStation(-1), nullptr);
}

TEST(HeaderInfoTest, FollowsWhatIsOnTheGround)
{
    CIEDataset dataset("A");
    EXPECT_FALSE(dataset.GetHeaderInfo()->IsMinMaxDefined());
    EXPECT_EQ(dataset.GetHeaderInfo()->CalcAutoTextSize(), 1.0);

    CIEStation flat(100, 500, 0);
    flat.SetHeightUndefined();
    dataset.Add(std::make_unique<CIEDesignPoint>(flat));
    dataset.Add(std::make_unique<CIEDesignPoint>(CIEStation(-50, 200, 30)));
    dataset.Add(std::make_unique<CIEDesignPoint>(CIEStation(1e9, 1e9, 1e9)))->SetStateType(CIEObject::InBlock);
    auto pSurface = std::make_unique<CIESurface>();
    pSurface->AddPosition(CIEStation(0, 300, -7));
    dataset.Add(std::move(pSurface));

    const CHeaderInfo& header = *dataset.GetHeaderInfo();
    EXPECT_EQ(*header.GetBorder(CHeaderInfo::Minimum), CIEStation(-50, 200, -7));
    EXPECT_EQ(*header.GetBorder(CHeaderInfo::Maximum), CIEStation(100, 500, 30));
    EXPECT_DOUBLE_EQ(header.CalcAutoTextSize(), 2.0);
    EXPECT_DOUBLE_EQ(header.CalcAutoSymbolSize(), 1.0);
    double dTotal = 0.375;
    double dDash = 0.25;
    double dGap = -0.125;
    header.CalcAutoDashSize(dTotal, dDash, dGap);
    EXPECT_DOUBLE_EQ(dDash, 3.0);
    EXPECT_DOUBLE_EQ(dGap, -1.5);
    EXPECT_DOUBLE_EQ(dTotal, 4.5);

    dataset.FixBorders(CIEStation(0, 0, 0), CIEStation(1, 1, 1));
    EXPECT_EQ(*dataset.GetHeaderInfo()->GetBorder(CHeaderInfo::Maximum), CIEStation(1, 1, 1));
}

TEST(DrawPropertiesTest, AreCopiedWithTheirObject)
{
    CIEPolyLine line;
    auto pLines = std::make_unique<CIEDrawLineProperties>();
    pLines->SetColor(0xFF8000);
    pLines->SetWidth(3);
    line.SetDrawProperties(std::move(pLines));
    const std::unique_ptr<CIEObject> pCopy = line.clone();
    line.SetDrawProperties(nullptr);
    TIEColor color = 0;
    ASSERT_NE(pCopy->GetDrawProperties(), nullptr);
    EXPECT_TRUE(pCopy->GetDrawProperties()->GetColor(color));
    EXPECT_EQ(color, 0xFF8000U);

    CIECodeDescription code("ROAD");
    EXPECT_FALSE(code.IsDrawPropertiesWasDefined());
    code.SetDrawProperties(CIEDrawProperties::Points, std::make_unique<CIEDrawLineProperties>());
    EXPECT_FALSE(code.IsDrawPropertiesWasDefined()) << "line properties aren't for points";
    code.SetDrawProperties(CIEDrawProperties::Lines, std::make_unique<CIEDrawLineProperties>());
    EXPECT_NE(code.GetDrawProperties(CIEDrawProperties::Lines), nullptr);
}

} // namespace
