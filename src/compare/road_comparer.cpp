#include "compare/comparer.h"

#include <algorithm>

namespace {

/// How each kind of horizontal element is told apart beyond its values and positions.
int SubtypeOf(const CIELine2D& /*line*/)
{
    return 0;
}
int SubtypeOf(const CIECurve& curve)
{
    return curve.GetCurveType();
}
int SubtypeOf(const CIESpiral& spiral)
{
    return spiral.GetSpiralType();
}

template <class EKey, class TThing>
void Values(CIEComparer& comparer, const TThing& first, const TThing& second)
{
    for (int i = 0; i < TThing::kKeys; ++i) {
        const auto eKey = static_cast<EKey>(i);
        comparer.Number("values", first.GetData(eKey), second.GetData(eKey));
    }
}

template <class TKey>
struct TKeyOf;
template <>
struct TKeyOf<CIELine2D> {
    using Type = ELineDataType;
};
template <>
struct TKeyOf<CIECurve> {
    using Type = ECurveDataType;
};
template <>
struct TKeyOf<CIESpiral> {
    using Type = ESpiralDataType;
};

} // namespace

void CIEComparer::Positions(const CIEPosition2D& first, const CIEPosition2D& second)
{
    Flag("position", first.IsDefined(), second.IsDefined());
    Number("position", first.GetFirst(), second.GetFirst(), m_Options.m_dPlane);
    Number("position", first.GetSecond(), second.GetSecond(), m_Options.m_dPlane);
}

/// Either may be null: then both must be.
template <class TElement>
void CIEComparer::Elements(const TElement* pFirst, const TElement* pSecond, const char* pWhat)
{
    Flag(pWhat, pFirst != nullptr, pSecond != nullptr);
    if (!pFirst || !pSecond)
        return;
    Values<typename TKeyOf<TElement>::Type>(*this, *pFirst, *pSecond);
    for (int i = 0; i < TElement::kPositions; ++i)
        Positions(pFirst->GetPosition(i), pSecond->GetPosition(i));
    Flag("azimuth to the element before", pFirst->IsAzToPrevEl(), pSecond->IsAzToPrevEl());
    Integer("type", SubtypeOf(*pFirst), SubtypeOf(*pSecond));
}

void CIEComparer::AlignmentObjects(const CIEAlignmentObject& first, const CIEAlignmentObject& second)
{
    Integer("kind of element", static_cast<int>(first.GetType()), static_cast<int>(second.GetType()));
    if (first.GetType() != second.GetType())
        return;
    switch (first.GetType()) {
    case EIEAlignmentObjType::Line:
        Elements(&static_cast<const CIELine2D&>(first), &static_cast<const CIELine2D&>(second), "line");
        break;
    case EIEAlignmentObjType::Curve:
        Elements(&static_cast<const CIECurve&>(first), &static_cast<const CIECurve&>(second), "curve");
        break;
    case EIEAlignmentObjType::Spiral:
        Elements(&static_cast<const CIESpiral&>(first), &static_cast<const CIESpiral&>(second), "spiral");
        break;
    case EIEAlignmentObjType::IntersectionPoint: {
        const auto& one = static_cast<const CIEIntersectionPoint&>(first);
        const auto& other = static_cast<const CIEIntersectionPoint&>(second);
        Flag("simple point", one.IsSimplePoint(), other.IsSimplePoint());
        Positions(one.GetPosition(), other.GetPosition());
        Values<EIPDataType>(*this, one, other);
        Elements(one.GetSegment(), other.GetSegment(), "segment");
        Elements(one.GetFirstSpiral(), other.GetFirstSpiral(), "first spiral");
        Elements(one.GetCurve(), other.GetCurve(), "curve");
        Elements(one.GetSecondSpiral(), other.GetSecondSpiral(), "second spiral");
        break;
    }
    }
}

void CIEComparer::VerticalElements(const CIEVerticalElement* pFirst, const CIEVerticalElement* pSecond)
{
    Flag("parabola", pFirst != nullptr, pSecond != nullptr);
    if (!pFirst || !pSecond)
        return;
    Integer("type", pFirst->GetElementType(), pSecond->GetElementType());
    Values<EVEDataType>(*this, *pFirst, *pSecond);
}

void CIEComparer::CrossSections(const CIECrossSection& first, const CIECrossSection& second)
{
    Number("station", first.GetSta(), second.GetSta());
    Flag("right side", first.GetTurn(), second.GetTurn());
    Flag("level at centre line", first.IsLevelAtCLCalculated(), second.IsLevelAtCLCalculated());
    Number("level at centre line", first.GetLevelAtCL(), second.GetLevelAtCL(), m_Options.m_dHeight);
    const auto names = [](const CIECrossSection& section) {
        CString text;
        for (int i = 0; const CIERoadTemplate* const pTemplate = section.GetRoadTemplateAt(i); ++i)
            text.append(i > 0 ? ", " : "").append(pTemplate->GetName());
        return text;
    };
    Text("templates", names(first), names(second));
}

void CIEComparer::Alignments(const CIEAlignment& first, const CIEAlignment& second)
{
    Number("start station", first.GetStaStart(), second.GetStaStart());
    Flag("length", first.IsLengthSet(), second.IsLengthSet());
    Number("length", first.GetLength(), second.GetLength());
    const CIEDesignPoint *const pStart = first.GetStartPoint(), *const pOther = second.GetStartPoint();
    Flag("start point", pStart != nullptr, pOther != nullptr);
    if (pStart && pOther) {
        Text("start point", pStart->GetName(), pOther->GetName());
        Stations(*pStart->GetStation(), *pOther->GetStation());
    }

    const auto forEach = [this](const char* pProperty, int nFirst, int nSecond, const auto& compare) {
        SetPart(-1);
        Integer(pProperty, nFirst, nSecond);
        for (int i = 0; i < std::min(nFirst, nSecond); ++i) {
            SetPart(i);
            compare(i);
        }
        SetPart(-1);
    };
    forEach("number of elements", first.GetNumberOfObjects(), second.GetNumberOfObjects(),
            [&](int i) { AlignmentObjects(*first.GetObjectAt(i), *second.GetObjectAt(i)); });
    forEach("number of profile points", first.GetNumberOfLongSections(), second.GetNumberOfLongSections(), [&](int i) {
        const CIELongSection &one = *first.GetLongSectionAt(i), &other = *second.GetLongSectionAt(i);
        Values<ELSDataType>(*this, one, other);
        VerticalElements(one.GetOwnParabola(), other.GetOwnParabola());
    });
    forEach("number of vertical elements", first.GetNumberOfVerticalElements(), second.GetNumberOfVerticalElements(),
            [&](int i) { VerticalElements(first.GetVerticalElementAt(i), second.GetVerticalElementAt(i)); });
    forEach("number of cross sections", first.GetNumberOfCrossSections(), second.GetNumberOfCrossSections(),
            [&](int i) { CrossSections(*first.GetCrossSectionAt(i), *second.GetCrossSectionAt(i)); });
}

void CIEComparer::Templates(const CIERoadTemplate& first, const CIERoadTemplate& second)
{
    Values<ECSDataType>(*this, first, second);
    Integer("form of offsets", first.GetOffsetsForm(), second.GetOffsetsForm());
    Integer("form of heights", first.GetHeightsForm(), second.GetHeightsForm());
    Integer("number of segments", first.GetNumberOfSegments(), second.GetNumberOfSegments());
    for (int i = 0; i < std::min(first.GetNumberOfSegments(), second.GetNumberOfSegments()); ++i) {
        const CIETemplateSegment &one = *first.GetSegmentAt(i), &other = *second.GetSegmentAt(i);
        SetPart(i);
        Values<ETSDataType>(*this, one, other);
        const auto code = [](const CIETemplateSegment& segment) {
            return segment.GetCodeDescription() ? segment.GetCodeDescription()->GetName() : CString();
        };
        Text("code", code(one), code(other));
    }
    SetPart(-1);
}
