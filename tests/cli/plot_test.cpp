#include "alidade/vellumlib/utils.h"
#include "cli/plot/clip.h"
#include "cli/plot/lines.h"
#include "cli/plot/picture.h"
#include "cli/plot/points.h"
#include "cli/plot/road.h"
#include "cli/plot/thinning.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>

using namespace Cli;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr TBox kSheet{0, 0, 1000, 1000};

MATCHER_P2(IsAt, dNorth, dEast, "")
{
    constexpr double kNear = 0.01;
    *result_listener << arg.m_dNorth << " " << arg.m_dEast;
    return std::abs(arg.m_dNorth - dNorth) < kNear && std::abs(arg.m_dEast - dEast) < kNear;
}

std::unique_ptr<CIEDrawProperties> LineOf(TIEColor color)
{
    auto pLine = std::make_unique<CIEDrawLineProperties>();
    pLine->SetColor(color);
    return pLine;
}

std::unique_ptr<CIEPolyLine> MakeLine(const std::vector<TPlace>& places)
{
    auto pLine = std::make_unique<CIEPolyLine>();
    for (const TPlace& place : places)
        pLine->AddStation({place.m_dNorth, place.m_dEast, 0});
    return pLine;
}

TEST(PlotText, LeavesNothingThatAReaderOfXmlRefuses)
{
    const std::pair<std::string, std::string> rows[] = {
        {"a<b>&\"'", "a&lt;b&gt;&amp;&quot;&#39;"},
        {std::string("a\0b\x1B\x7F", 5), "ab"},
        {"a\tb\r\nc", "a b  c"},
        {"\xC3\xA4\xF0\x9F\x8C\xB2", "\xC3\xA4\xF0\x9F\x8C\xB2"},
        {"\xEF\xBF\xBE\xEF\xBF\xBF.", "."},                       // U+FFFE, U+FFFF
        {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"}, // half of a surrogate pair
        {"\xE6\xB8", "\xEF\xBF\xBD\xEF\xBF\xBD"},                 // cut within a character
        {"\xC0\xAF\xFF", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"}, // longer than it need be; no lead byte
        {"\xC2\x85z", "z"},
    };
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(EscapeXml(text), expected) << text;
}

TEST(PlotText, IsCutBetweenCharacters)
{
    const std::string text = "H\xC3\xB6he \xE6\xB8\xAC\xE9\x87\x8F 12.50 m\xF0\x9F\x8C\xB2";
    for (double dWidth = 0; dWidth < 150; dWidth += 1) {
        const std::string shown = FitWidth(text, 10, dWidth);
        EXPECT_TRUE(IEUtils::IsValidUtf8(shown)) << dWidth;
        EXPECT_TRUE(shown == text || shown.ends_with("\xE2\x80\xA6"));
        EXPECT_TRUE(EstimateWidth(shown, 10) <= std::max(dWidth, 10.0)) << shown << dWidth;
    }
    EXPECT_EQ(FitWidth(text, 10, 1000), text);
}

TEST(PlotText, WritesPixelsWithoutExponents)
{
    const std::pair<double, std::string> rows[] = {{0.004, "0"},
                                                   {-0.004, "0"},
                                                   {12.345, "12.35"},
                                                   {-7.5, "-7.5"},
                                                   {1e300, "0"},
                                                   {std::nan(""), "0"},
                                                   {std::numeric_limits<double>::infinity(), "0"},
                                                   {123456, "123456"}};
    for (const auto& [dValue, expected] : rows) {
        std::string text;
        AppendPixels(text, dValue);
        EXPECT_EQ(text, expected);
    }
}

TEST(PlotStyle, DarkensWhatAWhiteSheetHides)
{
    const std::pair<std::uint32_t, std::uint32_t> rows[] = {{0xFFFFFF, 0x202020}, {0xE8F0F8, 0x202020},
                                                            {0xFF0000, 0xFF0000}, {0x000000, 0x000000},
                                                            {0x00A000, 0x00A000}, {0xFFFF00, 0xB5B500}};
    for (const auto& [color, expected] : rows)
        EXPECT_EQ(ColorToSvg(ColorForSheet(ColorFromRGB(color))), ColorToSvg(ColorFromRGB(expected)));
}

TEST(PlotStyle, IsToldByTheNearest)
{
    CIECodeDescription code("KERB");
    CIELayer layer("Kerbs");
    auto pLine = MakeLine({{0, 0}, {1, 1}});
    pLine->AddCode(CIECodeValues(&code));
    EXPECT_EQ(StyleOf(*pLine, nullptr, nullptr).m_Color, 0x404040U);
    auto pOfLayer = std::make_unique<CIEDrawLineProperties>();
    pOfLayer->SetColor(0x0000AA);
    pOfLayer->SetWidth(500);
    pOfLayer->SetDashStyle(CIEDrawLineProperties::Dotted);
    layer.SetDrawProperties(std::move(pOfLayer));
    EXPECT_EQ(StyleOf(*pLine, nullptr, &layer).m_Color, 0x0000AAU);
    EXPECT_EQ(StyleOf(*pLine, nullptr, &layer).m_nWidth, 20);

    auto pForPoints = std::make_unique<CIEDrawPointProperties>();
    pForPoints->SetColor(0x00AA00);
    code.SetDrawProperties(CIEDrawProperties::Points, std::move(pForPoints));
    EXPECT_EQ(StyleOf(*pLine, nullptr, &layer).m_Color, 0x0000AAU); // of points alone
    code.SetDrawProperties(CIEDrawProperties::Lines, LineOf(0xAA0000));
    EXPECT_EQ(StyleOf(*pLine, nullptr, &layer).m_Color, 0xAA0000U);
    EXPECT_EQ(StyleOf(*pLine, nullptr, &layer).m_eDash, CIEDrawLineProperties::Dotted); // the code says no dash
    CIECompositeObject whole;
    whole.SetDrawProperties(LineOf(0x123456));
    EXPECT_EQ(StyleOf(*pLine, &whole, &layer).m_Color, 0x123456U);
    pLine->SetDrawProperties(LineOf(0x654321));
    EXPECT_EQ(StyleOf(*pLine, &whole, &layer).m_Color, 0x654321U);
}

TEST(PlotStyle, ManyStylesBecomeFew)
{
    for (const bool bColors : {false, true}) {
        CStyleTable table;
        constexpr int kMany = 100000;
        for (int i = 0; i < kMany; ++i) {
            TStyle style;
            style.m_nLayer = i;
            style.m_Color = bColors ? static_cast<TIEColor>(i) * 167U & 0xFFFFFFU : 0xAA0000U;
            EXPECT_EQ(table.Take(style), i);
        }
        table.Reduce();
        EXPECT_LE(table.GetStyles().size(), bColors ? 4096U : 1U);
        for (int i = 0; i < kMany; ++i)
            ASSERT_LT(static_cast<std::size_t>(table.GetDrawn(i)), table.GetStyles().size());
        EXPECT_EQ(table.GetStyles()[static_cast<std::size_t>(table.GetDrawn(0))].m_Color, bColors ? 0U : 0xAA0000U);
    }
}

TEST(PlotView, FitsEveryExtent)
{
    const TExtent rows[] = {{{5, 5}, {5, 5}},        {{1e12, -1e12}, {1e12, -1e12}}, {{0, 0}, {5e-324, 0}},
                            {{5, -1e12}, {5, 1e12}}, {{-1e12, 3}, {1e12, 3}},        {{1e12, 0}, {1e12 + 1e-3, 0}}};
    for (const bool bGeographic : {false, true}) {
        for (const TExtent& extent : rows) {
            const CView view(extent, {100, 50, 900, 800}, bGeographic);
            for (const TPlace& place : {extent.m_Least, extent.m_Most}) {
                const TPixel pixel = view.ToPixel(place);
                EXPECT_TRUE(pixel.m_dX >= 100 && pixel.m_dX <= 900 && pixel.m_dY >= 50 && pixel.m_dY <= 800)
                    << pixel.m_dX << " " << pixel.m_dY;
            }
            std::string svg;
            CGrid(view, EDIST_UNITS::Meters).Append(svg);
            EXPECT_LT(svg.size(), 20000U);
        }
    }
}

TEST(PlotView, HasALineOfTheGridInEachDirection)
{
    for (const bool bGeographic : {false, true}) {
        for (double dSize = 0.003; dSize < 80; dSize *= 1.7) {
            for (double dAt = 41.0123; dAt < 47; dAt += 0.377) {
                const CView view({{dAt, -dAt}, {dAt + dSize / 3, dSize - dAt}}, {80, 54, 256, 190}, bGeographic);
                std::string svg;
                CGrid(view, EDIST_UNITS::InternationalFeet).Append(svg);
                EXPECT_THAT(svg, testing::ContainsRegex(" [NS]</text>")) << dAt << " " << dSize;
                EXPECT_THAT(svg, testing::ContainsRegex(" [EW]</text>")) << dAt << " " << dSize;
            }
        }
    }
}

TEST(PlotView, RoundsToStepsForPeople)
{
    const std::pair<double, double> rows[] = {{1, 1},    {1.99, 1}, {2, 2},       {4.9, 2},     {5, 5},
                                              {9.99, 5}, {10, 10},  {0.03, 0.02}, {7e11, 5e11}, {6e-9, 5e-9}};
    for (const auto& [dValue, dExpected] : rows)
        EXPECT_NEAR(RoundDown125(dValue), dExpected, dExpected * 1e-9);
}

TEST(PlotRoad, FollowsAzimuthsAndLengths)
{
    CIEDesignPoint start(CIEStation{100, 200, 0});
    CIEAlignment road;
    road.SetStartPoint(&start);
    auto pLine = std::make_unique<CIELine2D>();
    pLine->SetData(ELineDataType::Azimuth, 90);
    pLine->SetData(ELineDataType::Length, 50);
    road.AddObject(std::move(pLine));
    auto pCurve = std::make_unique<CIECurve>(); // a quarter to the right: from east to south
    pCurve->SetAzToPrevEl();
    pCurve->SetData(ECurveDataType::Radius, 100);
    pCurve->SetData(ECurveDataType::Length, 50 * std::numbers::pi);
    road.AddObject(std::move(pCurve));
    auto pSpiral = std::make_unique<CIESpiral>(); // to the left, turning by half its length over its radius
    pSpiral->SetAzToPrevEl();
    pSpiral->SetData(ESpiralDataType::Length, 40);
    pSpiral->SetData(ESpiralDataType::EndRadius, -20);
    road.AddObject(std::move(pSpiral));
    auto pLast = std::make_unique<CIELine2D>();
    pLast->SetAzToPrevEl();
    pLast->SetData(ELineDataType::Length, 10);
    road.AddObject(std::move(pLast));

    const std::vector<TPlace> places = TraceRoad(road, false).m_Places;
    constexpr std::size_t kSteps = 32;
    ASSERT_EQ(places.size(), 3 + 2 * kSteps);
    EXPECT_THAT(places[1], IsAt(100, 250));
    const TPlace& curveEnd = places[1 + kSteps];
    EXPECT_NEAR(curveEnd.m_dNorth, 0, 0.05);
    EXPECT_NEAR(curveEnd.m_dEast, 350, 0.05);
    const TPlace& last = places.back();
    const TPlace& before = places[1 + 2 * kSteps];
    EXPECT_NEAR(std::atan2(last.m_dEast - before.m_dEast, last.m_dNorth - before.m_dNorth), std::numbers::pi - 1.0,
                1e-6);
    EXPECT_EQ(TraceRoad(road, true).m_Places.size(), 1U); // metres and azimuths don't go with degrees
}

TEST(PlotRoad, PositionsGoAheadOfLengths)
{
    CIEDesignPoint elsewhere(CIEStation{500, 500, 0});
    CIEAlignment road;
    road.SetStartPoint(&elsewhere);
    auto pLine = std::make_unique<CIELine2D>();
    pLine->SetPosition(CIELine2D::Start, {10, 10});
    pLine->SetPosition(CIELine2D::End, {10, 60});
    pLine->SetData(ELineDataType::Length, 50); // its azimuth, 0, was never told
    road.AddObject(std::move(pLine));
    EXPECT_THAT(TraceRoad(road, false).m_Places, testing::ElementsAre(IsAt(10, 10), IsAt(10, 60)));

    CIEAlignment corners;
    for (const auto& [dNorth, dEast] : {std::pair{0.0, 0.0}, {0.0, 100.0}, {100.0, 100.0}}) {
        auto pPoint = std::make_unique<CIEIntersectionPoint>(false);
        pPoint->SetPosition(dNorth, dEast);
        pPoint->SetData(EIPDataType::EntryTangentLength, 20);
        pPoint->SetData(EIPDataType::ExitTangentLength, 500); // further than the next corner
        corners.AddObject(std::move(pPoint));
    }
    const std::vector<TPlace> places = TraceRoad(corners, false).m_Places;
    EXPECT_THAT(places.front(), IsAt(0, 0));
    EXPECT_THAT(places[1], IsAt(0, 80));
    EXPECT_THAT(places.back(), IsAt(100, 100));
    EXPECT_TRUE(TraceRoad(CIEAlignment(), false).m_Places.empty());
}

TEST(PlotScene, LeavesOutWhatHasNoPlace)
{
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInf = std::numeric_limits<double>::infinity();
    CIEData job;
    CIEDataset& dataset = *job.GetCurDataset(true);
    for (const double dBad : {kNan, kInf, -1e300, 2e12}) {
        dataset.Add(std::make_unique<CIEDesignPoint>(CIEStation{dBad, 0, 0}));
        dataset.Add(MakeLine({{1, 1}, {0, dBad}}));
        auto pArc = std::make_unique<CIEArc>();
        pArc->SetData(CIEArc::Radius, dBad);
        dataset.Add(std::move(pArc));
    }
    auto pArc = std::make_unique<CIEArc>();
    pArc->SetData(CIEArc::Radius, 1);
    pArc->SetData(CIEArc::EndAngle, kNan);
    dataset.Add(std::move(pArc));
    auto pSurface = std::make_unique<CIESurface>();
    pSurface->AddPosition({kNan, 0, 0});
    pSurface->AddTriangle(CIETriangle());
    dataset.Add(std::move(pSurface));
    const TScene scene = MakeScene(job, {});
    EXPECT_FALSE(scene.m_Extent);
    EXPECT_EQ(scene.m_nOffEarth, 13);
    EXPECT_TRUE(DrawPicture(scene, job, "bad", {}).m_bNothing);
}

TEST(PlotScene, TakesInAllOfAnArc)
{
    const struct {
        double m_dStart, m_dEnd;
        TPlace m_Least, m_Most;
    } rows[] = {{0, 90, {0, 0}, {10, 10}},
                {45, 135, {7.071, -7.071}, {10, 7.071}},
                {350, 10, {-1.736, 9.848}, {1.736, 10}},
                {0, 360, {-10, -10}, {10, 10}},
                {-90, 0, {-10, 0}, {0, 10}}};
    for (const auto& row : rows) {
        CIEData job;
        auto pArc = std::make_unique<CIEArc>();
        pArc->SetData(CIEArc::Radius, 10);
        pArc->SetData(CIEArc::StartAngle, row.m_dStart);
        pArc->SetData(CIEArc::EndAngle, row.m_dEnd);
        job.GetCurDataset(true)->Add(std::move(pArc));
        const TScene scene = MakeScene(job, {});
        EXPECT_THAT(scene.m_Extent->m_Least, IsAt(row.m_Least.m_dNorth, row.m_Least.m_dEast)) << row.m_dStart;
        EXPECT_THAT(scene.m_Extent->m_Most, IsAt(row.m_Most.m_dNorth, row.m_Most.m_dEast)) << row.m_dStart;
    }
}

TEST(PlotClip, LeavesWhatLiesInTheWindow)
{
    using testing::ElementsAre;
    const TExtent window{{0, 0}, {10, 10}};
    const auto row = [&](const std::vector<TPlace>& places) { return ClipRow(window, places); };
    EXPECT_THAT(row({{5, -5}, {5, 5}, {15, 5}, {15, 8}, {2, 8}}),
                ElementsAre(ElementsAre(IsAt(5, 0), IsAt(5, 5), IsAt(10, 5)), ElementsAre(IsAt(10, 8), IsAt(2, 8))));
    EXPECT_THAT(row({{-5, 5}, {20, 5}}), ElementsAre(ElementsAre(IsAt(0, 5), IsAt(10, 5))));
    EXPECT_THAT(row({{5, 5}, {1e12, 1e12}}), ElementsAre(ElementsAre(IsAt(5, 5), IsAt(10, 10))));
    EXPECT_THAT(row({{10, 10}}), testing::SizeIs(1)); // on the rim
    EXPECT_THAT(row({{10.001, 10}}), testing::IsEmpty());
    EXPECT_THAT(row({{-1, 5}, {5, -1.5}}), ElementsAre(ElementsAre(IsAt(0, 3.9167), IsAt(3.6154, 0))));
    EXPECT_THAT(row({{-4, 3}, {3, -4}}), testing::IsEmpty()); // around a corner

    EXPECT_THAT(ClipArea(window, {{-5, -5}, {-5, 50}, {50, 50}, {50, -5}}), testing::SizeIs(4)); // all around it
    EXPECT_THAT(ClipArea(window, {{2, 2}, {2, 20}, {4, 20}, {4, 2}}),
                ElementsAre(IsAt(2, 2), IsAt(2, 10), IsAt(4, 10), IsAt(4, 2)));
    EXPECT_THAT(ClipArea(window, {{-5, 3}, {-5, 5}, {-1, 4}}), testing::IsEmpty());
    EXPECT_THAT(ClipArea(window, {}), testing::IsEmpty());
}

TEST(PlotThinning, TheRareGiveNothing)
{
    struct TRow {
        std::vector<std::size_t> m_Needs;
        std::size_t m_nWhole, m_nLeft;
    };
    const TRow rows[] = {{{60, 0, 40}, 2, 0},     {{90, 1, 30}, 2, 69}, {{50, 51}, 1, 50}, {{1000, 1000}, 0, 100},
                         {{10, 1000, 20}, 2, 70}, {{}, 0, 100},         {{101}, 0, 100}};
    for (const TRow& row : rows) {
        const TShares shares = ShareOut(row.m_Needs, 100);
        EXPECT_EQ(shares.m_nWhole, row.m_nWhole);
        EXPECT_EQ(shares.m_nLeft, row.m_nLeft);
    }
    const TShares shares = ShareOut(std::vector<std::size_t>(1000, 7), 100); // more than there is room for
    EXPECT_EQ(shares.m_Order.size(), 100U);
    EXPECT_EQ(shares.m_nWhole, 0U);
}

TEST(PlotLines, AreDrawnToHalfAPixel)
{
    TScene scene;
    scene.m_Styles.Take({});
    constexpr int kMany = 200000; // places along a curve within the box
    for (int i = 0; i <= kMany; ++i)
        scene.m_Places.push_back({50 + 40 * std::sin(i * 1e-4), i * 100.0 / kMany});
    scene.m_Lines.push_back({0, scene.m_Places.size(), 0, false});
    const TExtent extent{{0, 0}, {100, 100}};
    const CView view(extent, kSheet, false);
    const TLinePaths paths = DrawLines(scene, view);
    EXPECT_EQ(paths.m_dMerged, 0);
    EXPECT_LT(paths.m_Paths[0].size(), 100000U);
    EXPECT_THAT(paths.m_Paths[0], testing::StartsWith("M25 500l"));
    EXPECT_EQ(std::count(paths.m_Paths[0].begin(), paths.m_Paths[0].end(), 'M'), 1);
}

TEST(PlotLines, HaveAnEndHoweverManyThereAre)
{
    CIEData job;
    CIEDataset& dataset = *job.GetCurDataset(true);
    std::uint32_t nSeed = 1;
    const auto next = [&nSeed] { // 0 to 1000
        nSeed = nSeed * 1664525U + 1013904223U;
        return (nSeed >> 8U) % 100000U / 100.0;
    };
    for (int i = 0; i < 30000; ++i)
        dataset.Add(MakeLine({{next(), next()}, {next(), next()}, {next(), next()}, {next(), next()}}));
    auto pSurface = std::make_unique<CIESurface>();
    constexpr int kPositions = 50000;
    for (int i = 0; i < kPositions; ++i) {
        pSurface->AddPosition({next(), next(), 0});
        CIETriangle triangle;
        for (int k = 0; k < CIETriangle::kCorners; ++k)
            triangle.SetPosition(k, static_cast<int>(next() * 50) % kPositions);
        pSurface->AddTriangle(triangle);
    }
    dataset.Add(std::move(pSurface));
    const TScene scene = MakeScene(job, {});
    const CView view(*scene.m_Extent, kSheet, false);
    const TBox point{500, 500, 500, 500}; // of a sheet: a thin window may leave no more
    EXPECT_LE(DrawLines(scene, CView(*scene.m_Extent, point, false)).m_Paths[0].size(), 2500000U);
    for (const TLinePaths& paths : {DrawLines(scene, view), DrawSurfaces(scene, view)}) {
        EXPECT_GT(paths.m_dMerged, 0);
        EXPECT_LE(paths.m_nDrawn, kMostStraights);
        EXPECT_GT(paths.m_Paths[0].size(), 1000U);
        EXPECT_LT(paths.m_Paths[0].size(), 2500000U);
    }
}

TEST(PlotLines, ASurfaceIsAsFineAsItMayBe)
{
    constexpr int kRows = 300;
    CIEData job;
    auto pSurface = std::make_unique<CIESurface>();
    for (int i = 0; i < kRows * kRows; ++i) {
        pSurface->AddPosition({static_cast<double>(i / kRows), static_cast<double>(i % kRows), 0});
        for (const auto& [nSecond, nThird] : {std::pair{i + 1, i + kRows}, {i - 1, i - kRows}}) {
            CIETriangle triangle;
            triangle.SetPosition(0, i);
            triangle.SetPosition(1, i % kRows == (nSecond > i ? kRows - 1 : 0) ? -1 : nSecond);
            triangle.SetPosition(2, nThird);
            pSurface->AddTriangle(triangle);
        }
    }
    job.GetCurDataset(true)->Add(std::move(pSurface));
    const TScene scene = MakeScene(job, {});
    EXPECT_EQ(scene.m_Edges.size(), 268801U);
    const TLinePaths paths = DrawSurfaces(scene, CView(*scene.m_Extent, kSheet, false));
    EXPECT_GT(paths.m_dMerged, 0.0);
    EXPECT_LE(paths.m_nDrawn, kMostStraights);
    EXPECT_GT(paths.m_nDrawn, kMostStraights / 3 * 2);
}

} // namespace
