#include "alidade/vellumlib/road_elements.h"

namespace {

constexpr const char* kSpiralWords[] = {"biquadratic", "bloss",          "clothoid", "cosine",    "cubic",
                                        "sinusoid",    "revBiquadratic", "revBloss", "revCosine", "revSinusoid"};

/// Rise per metre between two sections; false where the second doesn't lie ahead of the first.
bool GradeBetween(const CIELongSection& from, const CIELongSection& to, double& dGrade)
{
    const double dRun = to.GetData(ELSDataType::Station) - from.GetData(ELSDataType::Station);
    if (!(dRun > 0.0))
        return false;
    dGrade = (to.GetData(ELSDataType::Elevation) - from.GetData(ELSDataType::Elevation)) / dRun;
    return true;
}

} // namespace

const char* CIESpiral::GetSpiralTypeAsString() const
{
    const bool bKnown = m_nSpiralType >= Biquadratic && m_nSpiralType <= RevSinusoid;
    return kSpiralWords[bKnown ? m_nSpiralType : Clothoid];
}

int CIESpiral::GetSpiralTypeFromString(const CString& word)
{
    for (int i = Biquadratic; i <= RevSinusoid; ++i) {
        if (word == kSpiralWords[i])
            return i;
    }
    return Clothoid;
}

double CIEIntersectionPoint::GetElementLength() const
{
    double dLength = m_pSegment ? m_pSegment->GetElementLength() : 0.0;
    if (m_bSimple)
        return dLength;
    if (m_pFirstSpiral)
        dLength += m_pFirstSpiral->GetElementLength();
    if (m_pCurve)
        dLength += m_pCurve->GetElementLength();
    if (m_pSecondSpiral)
        dLength += m_pSecondSpiral->GetElementLength();
    return dLength;
}

CIEPosition2D CIEVerticalElement::GetStartPosition() const
{
    return {GetData(EVEDataType::StartStation), GetData(EVEDataType::StartElevation)};
}

CIEPosition2D CIELongSection::GetStartPosition() const
{
    return {GetData(ELSDataType::Station), GetData(ELSDataType::Elevation)};
}

std::unique_ptr<CIEVerticalElement> CIELongSection::GetParabola() const
{
    if (m_pParabola)
        return std::make_unique<CIEVerticalElement>(*m_pParabola);

    const double dLength = GetData(ELSDataType::ParabolaLength);
    double dIn = 0.0;
    double dOut = 0.0;
    if (!(dLength > 0.0) || !m_pPrevious || !m_pNext || !GradeBetween(*m_pPrevious, *this, dIn) ||
        !GradeBetween(*this, *m_pNext, dOut))
        return nullptr;

    const double dStation = GetData(ELSDataType::Station);
    const double dElevation = GetData(ELSDataType::Elevation);
    const double dHalf = dLength / 2;
    auto pParabola = std::make_unique<CIEVerticalElement>(CIEVerticalElement::Parabola);
    pParabola->SetData(EVEDataType::StartStation, dStation - dHalf);
    pParabola->SetData(EVEDataType::EndStation, dStation + dHalf);
    pParabola->SetData(EVEDataType::Length, dLength);
    pParabola->SetData(EVEDataType::Grade, dIn * 100);
    pParabola->SetData(EVEDataType::StartElevation, dElevation - dIn * dHalf);
    pParabola->SetData(EVEDataType::EndElevation, dElevation + dOut * dHalf);
    pParabola->SetData(EVEDataType::Station, dStation);
    pParabola->SetData(EVEDataType::Elevation, dElevation);
    pParabola->SetData(EVEDataType::EndGrade, dOut * 100);
    pParabola->SetData(EVEDataType::ParabolaCoefficient, (dOut - dIn) / (2 * dLength));
    return pParabola;
}
