#include "cli/plot/points.h"

#include "cli/plot/coverage.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace {

using namespace Cli;

/// Keeps the first mark of each cell. False once there are too many.
bool Keep(const TScene& scene, const CView& view, double dCell, std::vector<std::size_t>& shown)
{
    CCoverage coverage(view.GetBox(), dCell);
    shown.clear();
    for (std::size_t i = 0; i < scene.m_Marks.size(); ++i) {
        if (!coverage.Take(view.ToPixel(scene.m_Marks[i].m_Place)))
            continue;
        if (shown.size() == kMostMarks)
            return false;
        shown.push_back(i);
    }
    return true;
}

constexpr std::string_view kDatasetExtras = "JP.DATASETEXTRAS"; ///< a code that says nothing of the point

/// What is written beside a point; empty where there is nothing to say.
struct TWords {
    std::string_view m_strName;
    std::string m_strCodes;
};

TWords WordsOf(const CIEObject* pObject)
{
    constexpr std::size_t kEnough = 200; // bytes; what is longer is cut anyway
    TWords words;
    if (!pObject)
        return words;
    if (pObject->GetName() != kDatasetExtras)
        words.m_strName = pObject->GetName();
    for (int i = 0; const CIECodeValues* const pCode = pObject->GetCode(i); ++i) {
        const CString& name = pCode->GetDescription()->GetName();
        if (name.empty() || name == kDatasetExtras || (i == 0 && name == words.m_strName))
            continue; // objects without a name are named after their code
        words.m_strCodes += (words.m_strCodes.empty() ? "" : ", ") + name;
        if (words.m_strCodes.size() > kEnough)
            break;
    }
    return words;
}

constexpr double kNameSize = 10.0;
constexpr double kCodeSize = 8.0;
constexpr double kWidest = 160.0;

constexpr std::size_t kFew = 1500; ///< marks that leave room between them

/// Where a label stands beside its point. The codes keep at least a cell of the occupied places away from the name, so
/// that it never takes their room.
struct TSide {
    double m_dX;
    double m_dY; ///< of the text's line
    EAnchor m_eAnchor;
    std::array<double, 2> m_CodeY; ///< of the line of the codes, the better one first
};
constexpr std::array<TSide, 4> kSides{{{5, 3.5, EAnchor::Start, {14, -8.5}},
                                       {-5, 3.5, EAnchor::End, {14, -8.5}},
                                       {0, -5.5, EAnchor::Middle, {11, -17.5}},
                                       {0, 13, EAnchor::Middle, {23.5, -5.5}}}};

struct TLabel {
    std::string m_strText;
    double m_dSize;
    EAnchor m_eAnchor;
    TPixel m_At;

    [[nodiscard]] TBox GetBox() const
    {
        constexpr double kAscent = 0.8, kDescent = 0.2;
        const double dWidth = EstimateWidth(m_strText, m_dSize);
        const double dLeft = m_eAnchor == EAnchor::Start    ? m_At.m_dX
                             : m_eAnchor == EAnchor::Middle ? m_At.m_dX - dWidth / 2.0
                                                            : m_At.m_dX - dWidth;
        return {dLeft, m_At.m_dY - kAscent * m_dSize, dLeft + dWidth, m_At.m_dY + kDescent * m_dSize};
    }
};

class CLabelMaker {
public:
    /// With `bOverMarks` a label may cover other points' marks where it has no other room.
    CLabelMaker(const CView& view, bool bOverMarks)
        : m_View(view), m_Texts(view.GetBox(), kCell), m_All(view.GetBox(), kCell), m_bOverMarks(bOverMarks)
    {
    }

    void TakeMark(const TPixel& pixel) { m_All.Take(pixel); }
    /// Gives the side that the text got; null where there is no room.
    const TSide* PlaceName(const TPixel& at, std::string_view text, std::string_view strClass);
    /// False where there is no room.
    bool PlaceCodes(const TPixel& at, const TSide& side, std::string_view text);
    std::string Take() { return std::move(m_strSvg); }

private:
    static constexpr double kCell = 2.0;

    bool Place(const TLabel& label, std::string_view strClass, bool bOverMarks);

    const CView& m_View;
    CCoverage m_Texts;
    CCoverage m_All; ///< texts and marks
    std::string m_strSvg;
    bool m_bOverMarks;
};

bool CLabelMaker::Place(const TLabel& label, std::string_view strClass, bool bOverMarks)
{
    const TBox box = label.GetBox();
    const TBox& sheet = m_View.GetBox();
    if (box.m_dLeft < sheet.m_dLeft || box.m_dRight > sheet.m_dRight || box.m_dTop < sheet.m_dTop ||
        box.m_dBottom > sheet.m_dBottom || !(bOverMarks ? m_Texts : m_All).IsFree(box))
        return false;
    m_Texts.TakeBox(box);
    m_All.TakeBox(box);
    AppendText(m_strSvg, label.m_At, strClass, label.m_eAnchor, label.m_strText);
    return true;
}

const TSide* CLabelMaker::PlaceName(const TPixel& at, std::string_view text, std::string_view strClass)
{
    const std::string shown = FitWidth(text, kNameSize, kWidest);
    for (const bool bOverMarks : {false, true}) {
        if (bOverMarks && !m_bOverMarks)
            break;
        for (const TSide& side : kSides) {
            const TLabel label{shown, kNameSize, side.m_eAnchor, {at.m_dX + side.m_dX, at.m_dY + side.m_dY}};
            if (Place(label, strClass, bOverMarks))
                return &side;
        }
    }
    return nullptr;
}

bool CLabelMaker::PlaceCodes(const TPixel& at, const TSide& side, std::string_view text)
{
    const std::string shown = FitWidth(text, kCodeSize, kWidest);
    return std::any_of(side.m_CodeY.begin(), side.m_CodeY.end(), [&](double dY) {
        const TLabel label{shown, kCodeSize, side.m_eAnchor, {at.m_dX + side.m_dX, at.m_dY + dY}};
        return Place(label, "code", false);
    });
}

} // namespace

namespace Cli {

TMarkPaths DrawMarks(const TScene& scene, const CView& view)
{
    constexpr double kFirstCell = 0.5, kMostCells = 1.6e7;
    constexpr std::size_t kSome = 6000;
    constexpr double kDense = 0.75; // of a cell, so that full cells look full
    constexpr double kLarge = 4.0, kMiddle = 3.0, kSmall = 2.0;
    TMarkPaths marks;
    double dCell = 0.0;
    if (scene.m_Marks.size() <= kMostMarks) {
        marks.m_Shown.resize(scene.m_Marks.size());
        std::iota(marks.m_Shown.begin(), marks.m_Shown.end(), std::size_t{0});
    } else {
        dCell = std::max(kFirstCell, std::sqrt(view.GetBox().GetWidth() * view.GetBox().GetHeight() / kMostCells));
        while (!Keep(scene, view, dCell, marks.m_Shown))
            dCell *= 2.0;
    }
    marks.m_dSize = marks.m_Shown.size() <= kFew ? kLarge : marks.m_Shown.size() <= kSome ? kMiddle : kSmall;
    marks.m_dSize = std::max(marks.m_dSize, dCell * kDense);
    marks.m_Paths.resize(scene.m_Styles.GetStyles().size());
    for (const std::size_t i : marks.m_Shown) {
        const TMark& mark = scene.m_Marks[i];
        std::string& path = marks.m_Paths[static_cast<std::size_t>(scene.m_Styles.GetDrawn(mark.m_nStyle))];
        const TPixel pixel = view.ToPixel(mark.m_Place);
        path += 'M';
        AppendPixels(path, pixel.m_dX);
        path += ' ';
        AppendPixels(path, pixel.m_dY);
        path += "h0";
    }
    return marks;
}

TLabels DrawLabels(const TScene& scene, const TMarkPaths& marks, const CView& view)
{
    TLabels labels;
    CLabelMaker maker(view, marks.m_Shown.size() <= kFew);
    for (const std::size_t i : marks.m_Shown)
        maker.TakeMark(view.ToPixel(scene.m_Marks[i].m_Place));
    for (const TTitle& title : scene.m_Titles) {
        ++labels.m_nLabels;
        labels.m_nShown += maker.PlaceName(view.ToPixel(title.m_Place), title.m_strText, "road") ? 1 : 0;
    }
    for (const TMark& mark : scene.m_Marks) {
        const TWords words = WordsOf(mark.m_pObject);
        const bool bNamed = !words.m_strName.empty(), bCodes = !words.m_strCodes.empty();
        labels.m_nLabels += bNamed || bCodes ? 1 : 0;
        labels.m_nCodes += bNamed && bCodes ? 1 : 0;
    }

    struct TNamed {
        TPixel m_At;
        const TSide* m_pSide;
        std::string m_strCodes;
    };
    std::vector<TNamed> named; // and have codes
    for (const std::size_t i : marks.m_Shown) {
        TWords words = WordsOf(scene.m_Marks[i].m_pObject);
        const bool bNamed = !words.m_strName.empty();
        if (!bNamed && words.m_strCodes.empty())
            continue;
        const TPixel at = view.ToPixel(scene.m_Marks[i].m_Place);
        const TSide* const pSide =
            bNamed ? maker.PlaceName(at, words.m_strName, "name") : maker.PlaceName(at, words.m_strCodes, "code");
        labels.m_nShown += pSide ? 1 : 0;
        if (pSide && bNamed && !words.m_strCodes.empty())
            named.push_back({at, pSide, std::move(words.m_strCodes)});
    }
    for (const TNamed& point : named)
        labels.m_nCodesShown += maker.PlaceCodes(point.m_At, *point.m_pSide, point.m_strCodes) ? 1 : 0;
    labels.m_strSvg = maker.Take();
    return labels;
}

} // namespace Cli
