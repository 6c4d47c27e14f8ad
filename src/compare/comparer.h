// Compares single things, property by property.
#pragma once

#include "alidade/compare/compare.h"

#include <string_view>

/// Knows which thing is being compared, and tells the sink what differs in it.
class CIEComparer {
public:
    CIEComparer(const TIECompareOptions& options, IIEDifferenceSink& sink) : m_Options(options), m_Sink(sink) {}

    [[nodiscard]] std::int64_t GetCount() const { return m_nCount; }
    [[nodiscard]] const TIECompareOptions& GetOptions() const { return m_Options; }

    /// What is told from now on belongs to this thing. `pThing` lives for ever.
    void Begin(const char* pThing, const CString& strDataset, const CString& strName);
    void Begin(const CString& strDataset, const CIEObject& first, const CIEObject* pSecond);
    void SetPart(int nPart) { m_Now.m_nPart = nPart; }

    /// The thing that was begun is in one of the jobs alone.
    void TellAlone(TIEDifference::EKind eKind);

    void Text(const char* pProperty, std::string_view first, std::string_view second);
    void Number(const char* pProperty, double dFirst, double dSecond, double dTolerance);
    void Number(const char* pProperty, double dFirst, double dSecond)
    {
        Number(pProperty, dFirst, dSecond, m_Options.m_dNumber);
    }
    void Integer(const char* pProperty, std::int64_t nFirst, std::int64_t nSecond);
    void Flag(const char* pProperty, bool bFirst, bool bSecond);

    void Stations(const CIEStation& first, const CIEStation& second);
    void Objects(const CIEObject& first, const CIEObject& second);
    void Drawing(const CIEDrawProperties* pFirst, const CIEDrawProperties* pSecond);
    void Layers(const CIELayer& first, const CIELayer& second);
    void Codes(const CIECodeDescription& first, const CIECodeDescription& second);
    void Histories(const CIEJobHistory* pFirst, const CIEJobHistory* pSecond);
    void Infos(const TIEJobInfo& first, const TIEJobInfo& second);
    void Alignments(const CIEAlignment& first, const CIEAlignment& second);
    void Templates(const CIERoadTemplate& first, const CIERoadTemplate& second);

private:
    void Tell(const char* pProperty, CString strFirst, CString strSecond);
    void AllStations(const CIEObject& first, const CIEObject& second);
    void ObjectCodes(const CIEObject& first, const CIEObject& second);
    void CodeValues(const CIECodeValues& first, const CIECodeValues& second);
    void PTLPoints(const CIEPTLPoint& first, const CIEPTLPoint& second);
    void GPSPositions(const CIEGPSPosition& first, const CIEGPSPosition& second);
    void Offsets(const CIEOffsetStation& first, const CIEOffsetStation& second);
    void Composites(const CIECompositeObject& first, const CIECompositeObject& second);
    void Positions(const CIEPosition2D& first, const CIEPosition2D& second);
    void AlignmentObjects(const CIEAlignmentObject& first, const CIEAlignmentObject& second);
    void CrossSections(const CIECrossSection& first, const CIECrossSection& second);
    void VerticalElements(const CIEVerticalElement* pFirst, const CIEVerticalElement* pSecond);
    template <class TElement>
    void Elements(const TElement* pFirst, const TElement* pSecond, const char* pWhat);

    const TIECompareOptions& m_Options;
    IIEDifferenceSink& m_Sink;
    TIEDifference m_Now;
    std::int64_t m_nCount = 0;
};
