#include "cli/plot/labels.h"

#include "cli/plot/coverage.h"

#include <algorithm>
#include <array>

namespace {

using namespace Cli;

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

/// Where a label stands beside its point. The codes keep at least a cell of the occupied places away from the name, so
/// that it never takes their room.
struct TSide {
    double m_dX;
    double m_dY; ///< of the text's line
    EAnchor m_eAnchor;
    std::array<double, 2> m_CodeY; ///< of the line of the codes, the better one first
};
constexpr std::array<TSide, 8> kSides{{{5, 3.5, EAnchor::Start, {14, -8.5}},
                                       {-5, 3.5, EAnchor::End, {14, -8.5}},
                                       {0, -5.5, EAnchor::Middle, {11, -17.5}},
                                       {0, 13, EAnchor::Middle, {23.5, -5.5}},
                                       {4, -3, EAnchor::Start, {7.5, -14.6}},
                                       {4, 10, EAnchor::Start, {20.5, -1.7}},
                                       {-4, -3, EAnchor::End, {7.5, -14.6}},
                                       {-4, 10, EAnchor::End, {20.5, -1.7}}}};

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

/// Where a name may stand.
enum class ERoom {
    Free,     ///< on nothing
    OnOthers, ///< on marks that aren't rare
    Spaced,   ///< the same, but far from other labels
};

class CLabelMaker {
public:
    explicit CLabelMaker(const CView& view)
        : m_View(view), m_Fixed(view.GetBox(), kCell), m_All(view.GetBox(), kCell), m_Spaces(view.GetBox(), kSpace)
    {
    }

    void TakeMark(const TPixel& pixel, double dSize, bool bRare);
    /// Gives the side that the text got; null where there is no room.
    const TSide* PlaceName(const TPixel& at, std::string_view text, std::string_view strClass, ERoom eRoom);
    /// False where there is no room.
    bool PlaceCodes(const TPixel& at, const TSide& side, std::string_view text, ERoom eRoom);
    std::string Take() { return std::move(m_strSvg); }

private:
    static constexpr double kCell = 1.0;
    static constexpr double kSpace = 80.0;

    bool Place(const TLabel& label, std::string_view strClass, ERoom eRoom);

    const CView& m_View;
    CCoverage m_Fixed;  ///< by texts and rare marks
    CCoverage m_All;    ///< by texts and all marks
    CCoverage m_Spaces; ///< by texts
    std::string m_strSvg;
};

void CLabelMaker::TakeMark(const TPixel& pixel, double dSize, bool bRare)
{
    constexpr double kApart = 0.5;
    const double dHalf = dSize / 2.0 + kApart;
    const TBox box{pixel.m_dX - dHalf, pixel.m_dY - dHalf, pixel.m_dX + dHalf, pixel.m_dY + dHalf};
    m_All.TakeBox(box);
    if (bRare)
        m_Fixed.TakeBox(box);
}

bool CLabelMaker::Place(const TLabel& label, std::string_view strClass, ERoom eRoom)
{
    const TBox box = label.GetBox();
    const TBox& sheet = m_View.GetBox();
    if (box.m_dLeft < sheet.m_dLeft || box.m_dRight > sheet.m_dRight || box.m_dTop < sheet.m_dTop ||
        box.m_dBottom > sheet.m_dBottom || !(eRoom == ERoom::Free ? m_All : m_Fixed).IsFree(box) ||
        (eRoom == ERoom::Spaced && !m_Spaces.IsFree(box)))
        return false;
    m_Fixed.TakeBox(box);
    m_All.TakeBox(box);
    m_Spaces.TakeBox(box);
    AppendText(m_strSvg, label.m_At, strClass, label.m_eAnchor, label.m_strText);
    return true;
}

const TSide* CLabelMaker::PlaceName(const TPixel& at, std::string_view text, std::string_view strClass, ERoom eRoom)
{
    const std::string shown = FitWidth(text, kNameSize, kWidest);
    const auto it = std::find_if(kSides.begin(), kSides.end(), [&](const TSide& side) {
        const TLabel label{shown, kNameSize, side.m_eAnchor, {at.m_dX + side.m_dX, at.m_dY + side.m_dY}};
        return Place(label, strClass, eRoom);
    });
    return it == kSides.end() ? nullptr : &*it;
}

bool CLabelMaker::PlaceCodes(const TPixel& at, const TSide& side, std::string_view text, ERoom eRoom)
{
    const std::string shown = FitWidth(text, kCodeSize, kWidest);
    return std::any_of(side.m_CodeY.begin(), side.m_CodeY.end(), [&](double dY) {
        const TLabel label{shown, kCodeSize, side.m_eAnchor, {at.m_dX + side.m_dX, at.m_dY + dY}};
        return Place(label, eRoom == ERoom::Free ? "code" : "code over", eRoom);
    });
}

/// Places the labels of the marks, first those that have room.
class CMarkLabeler {
public:
    CMarkLabeler(const TScene& scene, const TMarkPaths& marks, const CView& view, CLabelMaker& maker, TLabels& labels)
        : m_Scene(scene), m_Marks(marks), m_View(view), m_Maker(maker), m_Labels(labels)
    {
    }
    void TakeMarks();
    void PlaceAll();

private:
    struct TNamed {
        TPixel m_At;
        const TSide* m_pSide;
        std::string m_strCodes;
        bool m_bRare;
    };

    [[nodiscard]] std::size_t StyleOf(std::size_t nMark) const
    {
        return static_cast<std::size_t>(m_Scene.m_Styles.GetDrawn(m_Scene.m_Marks[nMark].m_nStyle));
    }
    bool PlaceOne(std::size_t nMark, ERoom eRoom);
    bool PlaceCodes(const TNamed& point);

    const TScene& m_Scene;
    const TMarkPaths& m_Marks;
    const CView& m_View;
    CLabelMaker& m_Maker;
    TLabels& m_Labels;
    std::vector<TNamed> m_Named; ///< and have codes
};

void CMarkLabeler::TakeMarks()
{
    for (const std::size_t i : m_Marks.m_Shown) {
        const std::size_t nStyle = StyleOf(i);
        m_Maker.TakeMark(m_View.ToPixel(m_Scene.m_Marks[i].m_Place), m_Marks.m_Sizes[nStyle], m_Marks.m_Rare[nStyle]);
    }
}

/// True for one that has no label, or got it.
bool CMarkLabeler::PlaceOne(std::size_t nMark, ERoom eRoom)
{
    TWords words = WordsOf(m_Scene.m_Marks[nMark].m_pObject);
    const bool bNamed = !words.m_strName.empty();
    if (!bNamed && words.m_strCodes.empty())
        return true;
    const TPixel at = m_View.ToPixel(m_Scene.m_Marks[nMark].m_Place);
    std::string strClass = bNamed ? "name" : "code";
    if (eRoom != ERoom::Free)
        strClass += " over";
    const TSide* const pSide =
        m_Maker.PlaceName(at, bNamed ? words.m_strName : std::string_view(words.m_strCodes), strClass, eRoom);
    if (!pSide)
        return false;
    ++m_Labels.m_nShown;
    if (bNamed && !words.m_strCodes.empty())
        m_Named.push_back({at, pSide, std::move(words.m_strCodes), m_Marks.m_Rare[StyleOf(nMark)]});
    return true;
}

bool CMarkLabeler::PlaceCodes(const TNamed& point)
{
    return m_Maker.PlaceCodes(point.m_At, *point.m_pSide, point.m_strCodes, ERoom::Free) ||
           (point.m_bRare && m_Maker.PlaceCodes(point.m_At, *point.m_pSide, point.m_strCodes, ERoom::OnOthers));
}

void CMarkLabeler::PlaceAll()
{
    std::vector<std::size_t> later;
    for (const std::size_t i : m_Marks.m_Shown) {
        if (!PlaceOne(i, ERoom::Free) && !(m_Marks.m_Rare[StyleOf(i)] && PlaceOne(i, ERoom::OnOthers)))
            later.push_back(i);
    }
    for (const TNamed& point : m_Named)
        m_Labels.m_nCodesShown += PlaceCodes(point) ? 1 : 0;
    if (m_Marks.m_Shown.size() > kFewMarks) {
        for (const std::size_t i : later)
            PlaceOne(i, ERoom::Spaced);
    }
}

} // namespace

namespace Cli {

TLabels DrawLabels(const TScene& scene, const TMarkPaths& marks, const CView& view)
{
    TLabels labels;
    CLabelMaker maker(view);
    CMarkLabeler labeler(scene, marks, view, maker, labels);
    labeler.TakeMarks();
    for (const TTitle& title : scene.m_Titles) {
        ++labels.m_nLabels;
        const TPixel at = view.ToPixel(title.m_Place);
        labels.m_nShown += maker.PlaceName(at, title.m_strText, "road", ERoom::Free) ||
                                   maker.PlaceName(at, title.m_strText, "road over", ERoom::OnOthers)
                               ? 1
                               : 0;
    }
    for (const TMark& mark : scene.m_Marks) {
        const TWords words = WordsOf(mark.m_pObject);
        const bool bNamed = !words.m_strName.empty(), bCodes = !words.m_strCodes.empty();
        labels.m_nLabels += bNamed || bCodes ? 1 : 0;
        labels.m_nCodes += bNamed && bCodes ? 1 : 0;
    }
    labeler.PlaceAll();
    labels.m_strSvg = maker.Take();
    return labels;
}

} // namespace Cli
