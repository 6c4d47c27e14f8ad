// What a satellite receiver said of a position.
#include "jobfile/job_fields.h"
#include "jobfile/job_parts.h"

#include "alidade/vellumlib/gps_position.h"

#include <algorithm>
#include <fmt/format.h>

namespace {

using JobFields::ReadMember;
using JobFields::Value;
using JobFields::Word;

// ---- accuracy

constexpr TIEJobField<TGPSCoordCovMatrix> kCovarianceFields[] = {
    Value<TGPSCoordCovMatrix, &TGPSCoordCovMatrix::m_dXX>("xx"),
    Value<TGPSCoordCovMatrix, &TGPSCoordCovMatrix::m_dYY>("yy"),
    Value<TGPSCoordCovMatrix, &TGPSCoordCovMatrix::m_dZZ>("zz"),
    Value<TGPSCoordCovMatrix, &TGPSCoordCovMatrix::m_dXY>("xy"),
    Value<TGPSCoordCovMatrix, &TGPSCoordCovMatrix::m_dXZ>("xz"),
    Value<TGPSCoordCovMatrix, &TGPSCoordCovMatrix::m_dYZ>("yz"),
};

void WriteCovariance(CIEJobWriting& out, const char* pKey, const CIEGPSPosition& position)
{
    if (!position.HasCV())
        return;
    out.m_Text.Key(pKey);
    out.m_Text.BeginObject();
    JobFields::Write(out, position.GetCV(), kCovarianceFields);
    out.m_Text.EndObject();
}

bool ReadCovariance(CIEJobReading& in, const CIEJsonValue& value, CIEGPSPosition& position)
{
    TGPSCoordCovMatrix cv;
    if (!JobFields::ReadObject(in, value, cv, kCovarianceFields))
        return false;
    position.SetCV(cv);
    return true;
}

// ---- time

void WriteTime(CIEJobWriting& out, const char* pKey, const CIEGPSPosition& position)
{
    if (!position.HasTime())
        return;
    const TIEDateTime& time = position.GetTime();
    CString text = fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}", time.m_nYear, time.m_nMonth, time.m_nDay,
                               time.m_nHour, time.m_nMinute, time.m_nSecond);
    if (time.m_nMillisecond != 0)
        text += fmt::format(".{:03}", time.m_nMillisecond);
    out.m_Text.Key(pKey);
    out.m_Text.Text(text);
}

/// Whether a text has a digit wherever the pattern has a 0, and the pattern's sign elsewhere.
bool IsLike(std::string_view text, std::string_view pattern)
{
    return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                      [](char c, char sign) { return sign == '0' ? c >= '0' && c <= '9' : c == sign; });
}

bool ReadTime(CIEJobReading& in, const CIEJsonValue& value, CIEGPSPosition& position)
{
    CString text;
    if (!in.Read(value, text))
        return false;
    const bool bFraction = IsLike(text, "0000-00-00 00:00:00.000");
    const auto number = [&text](std::size_t nFirst, std::size_t nDigits) {
        int nValue = 0;
        for (const char c : text.substr(nFirst, nDigits))
            nValue = nValue * 10 + (c - '0');
        return nValue;
    };
    const bool bGood = (bFraction || IsLike(text, "0000-00-00 00:00:00")) &&
                       position.SetTime({number(0, 4), number(5, 2), number(8, 2), number(11, 2), number(14, 2),
                                         number(17, 2), bFraction ? number(20, 3) : 0});
    return bGood || in.Fail(value, "A date and time is wanted here, as 2026-11-22 09:31:07.");
}

// ---- satellites

constexpr TIEJobWord SolutionWord(int nType)
{
    return {CIEGPSPosition::kSolutionWords[nType], nType};
}

constexpr TIEJobWord kSolutions[] = {
    SolutionWord(CIEGPSPosition::NoSolution),    SolutionWord(CIEGPSPosition::Autonomous),
    SolutionWord(CIEGPSPosition::Differential),  SolutionWord(CIEGPSPosition::Float),
    SolutionWord(CIEGPSPosition::Fixed),         SolutionWord(CIEGPSPosition::Estimated),
    SolutionWord(CIEGPSPosition::WideLaneFixed), SolutionWord(CIEGPSPosition::NetworkFloat),
    SolutionWord(CIEGPSPosition::NetworkFixed),
};
static_assert(std::size(kSolutions) == std::size(CIEGPSPosition::kSolutionWords));

template <auto pMember>
double GetDOP(const CIEGPSPosition& position)
{
    return position.GetDOP().*pMember;
}

template <auto pMember>
void SetDOP(CIEGPSPosition& position, double dValue)
{
    TGPSDOP dop = position.GetDOP();
    dop.*pMember = dValue;
    position.SetDOP(dop);
}

template <auto pMember>
constexpr TIEJobField<CIEGPSPosition> Dilution(const char* pKey)
{
    return Value<CIEGPSPosition, &GetDOP<pMember>, &SetDOP<pMember>>(pKey);
}

constexpr TIEJobField<CIEGPSPosition> kSatelliteFields[] = {
    Word<CIEGPSPosition, kSolutions, &CIEGPSPosition::GetSolutionType, &CIEGPSPosition::SetSolutionType>("solution"),
    Value<CIEGPSPosition, &CIEGPSPosition::GetNumberOfGpsSats, &CIEGPSPosition::SetNumberOfGpsSats>("gps"),
    Value<CIEGPSPosition, &CIEGPSPosition::GetNumberOfGlonassSats, &CIEGPSPosition::SetNumberOfGlonassSats>("glonass"),
    Dilution<&TGPSDOP::m_dGDOP>("gdop"),
    Dilution<&TGPSDOP::m_dHDOP>("hdop"),
    Dilution<&TGPSDOP::m_dVDOP>("vdop"),
    Dilution<&TGPSDOP::m_dPDOP>("pdop"),
};

void WriteSatellites(CIEJobWriting& out, const char* pKey, const CIEGPSPosition& position)
{
    if (position.GetRawDataType() != CIEGPSPosition::SatelliteData)
        return;
    out.m_Text.Key(pKey);
    out.m_Text.BeginObject();
    JobFields::Write(out, position, kSatelliteFields);
    out.m_Text.EndObject();
}

bool ReadSatellites(CIEJobReading& in, const CIEJsonValue& value, CIEGPSPosition& position)
{
    position.SetRawDataType(CIEGPSPosition::SatelliteData);
    return JobFields::ReadObject(in, value, position, kSatelliteFields);
}

constexpr TIEJobField<CIEGPSPosition> kGPSFields[] = {
    {"covariance", WriteCovariance, ReadCovariance},
    {"time", WriteTime, ReadTime},
    {"satellites", WriteSatellites, ReadSatellites},
};

} // namespace

void JobParts::WriteGPSFields(CIEJobWriting& out, const CIEGPSPosition& position)
{
    JobFields::Write(out, position, kGPSFields);
}

EJobMember JobParts::ReadGPSMember(CIEJobReading& in, const CIEJsonValue& member, CIEGPSPosition& position)
{
    return ReadMember(in, member, position, kGPSFields);
}
