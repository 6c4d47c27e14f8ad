// A job's info, and the table of the document's sections.
#include "jobfile/job_fields.h"
#include "jobfile/job_parts.h"

namespace {

using JobFields::Value;
using JobFields::Word;

// ---- info

constexpr TIEJobWord kCoordinates[] = {{"geographic", TIEJobInfo::Geographic}, {"plane", TIEJobInfo::Plane}};

constexpr TIEJobWord kDistUnits[] = {
    {"none", static_cast<int>(EDIST_UNITS::None)},
    {"metres", static_cast<int>(EDIST_UNITS::Meters)},
    {"us-survey-feet", static_cast<int>(EDIST_UNITS::USSurveyFeet)},
    {"international-feet", static_cast<int>(EDIST_UNITS::InternationalFeet)},
    {"us-inches", static_cast<int>(EDIST_UNITS::USInches)},
    {"international-inches", static_cast<int>(EDIST_UNITS::InternationalInches)},
    {"us-miles", static_cast<int>(EDIST_UNITS::USMiles)},
};

constexpr TIEJobWord kAngleUnits[] = {
    {"radians", static_cast<int>(EANGLE_UNITS::Radians)},
    {"grads", static_cast<int>(EANGLE_UNITS::Grads)},
    {"mils", static_cast<int>(EANGLE_UNITS::Mils)},
    {"decimal-degrees", static_cast<int>(EANGLE_UNITS::DecimalDegrees)},
    {"degrees-minutes-seconds", static_cast<int>(EANGLE_UNITS::DegreesMinutesSeconds)},
};

EDIST_UNITS GetDistUnits(const TIEJobInfo& info)
{
    return info.GetDistUnits();
}

EANGLE_UNITS GetAngleUnits(const TIEJobInfo& info)
{
    return info.GetAngleUnits();
}

/// Values that a job has together or not at all.
struct TMeasured {
    double m_dValue = 0.0;
    int m_nUnit = 0;
};
constexpr TIEJobField<TMeasured> kMeasuredFields[] = {
    Value<TMeasured, &TMeasured::m_dValue>("value"),
    Value<TMeasured, &TMeasured::m_nUnit>("unit"),
};

struct TGrid {
    double m_dScale = 1.0;
    double m_dElevation = 0.0;
};
constexpr TIEJobField<TGrid> kGridFields[] = {
    Value<TGrid, &TGrid::m_dScale>("scale"),
    Value<TGrid, &TGrid::m_dElevation>("elevation"),
};

template <bool (TIEJobInfo::*get)(double&, int&) const, void (TIEJobInfo::*set)(double, int)>
constexpr TIEJobField<TIEJobInfo> Measured(const char* pKey)
{
    return {pKey,
            [](CIEJobWriting& out, const char* pName, const TIEJobInfo& info) {
                TMeasured measured;
                if (!(info.*get)(measured.m_dValue, measured.m_nUnit))
                    return;
                out.m_Text.Key(pName);
                out.m_Text.BeginObject();
                JobFields::Write(out, measured, kMeasuredFields);
                out.m_Text.EndObject();
            },
            [](CIEJobReading& in, const CIEJsonValue& value, TIEJobInfo& info) {
                TMeasured measured;
                if (!JobFields::ReadObject(in, value, measured, kMeasuredFields))
                    return false;
                (info.*set)(measured.m_dValue, measured.m_nUnit);
                return true;
            }};
}

void WriteGrid(CIEJobWriting& out, const char* pKey, const TIEJobInfo& info)
{
    TGrid grid;
    if (!info.GetEllToGridScaleAndElevation(grid.m_dScale, grid.m_dElevation))
        return;
    out.m_Text.Key(pKey);
    out.m_Text.BeginObject();
    JobFields::Write(out, grid, kGridFields);
    out.m_Text.EndObject();
}

bool ReadGrid(CIEJobReading& in, const CIEJsonValue& value, TIEJobInfo& info)
{
    TGrid grid;
    if (!JobFields::ReadObject(in, value, grid, kGridFields))
        return false;
    info.SetEllToGridScaleAndElevation(grid.m_dScale, grid.m_dElevation);
    return true;
}

CString GetCreateDate(const TIEJobInfo& info)
{
    CString strDate;
    CString strTime;
    info.GetCreateTimeStr(strDate, strTime);
    return strDate;
}

CString GetCreateTime(const TIEJobInfo& info)
{
    CString strDate;
    CString strTime;
    info.GetCreateTimeStr(strDate, strTime);
    return strTime;
}

void SetCreateDate(TIEJobInfo& info, CString strDate)
{
    info.SetCreateTimeStr(std::move(strDate), GetCreateTime(info));
}

void SetCreateTime(TIEJobInfo& info, CString strTime)
{
    info.SetCreateTimeStr(GetCreateDate(info), std::move(strTime));
}

constexpr TIEJobField<TIEJobInfo> kInfoFields[] = {
    Value<TIEJobInfo, &TIEJobInfo::m_strJobName>("jobName"),
    Value<TIEJobInfo, &TIEJobInfo::m_strJobComment>("jobComment"),
    Value<TIEJobInfo, &TIEJobInfo::m_strObserver>("observer"),
    Value<TIEJobInfo, &TIEJobInfo::m_strInstrument>("instrument"),
    Value<TIEJobInfo, &TIEJobInfo::m_nPrismConstant>("prismConstant"),
    Word<TIEJobInfo, kCoordinates, &TIEJobInfo::GetCSType, &TIEJobInfo::SetCSType>("coordinates"),
    Word<TIEJobInfo, kDistUnits, &GetDistUnits, &TIEJobInfo::SetDistUnits>("distanceUnits"),
    Word<TIEJobInfo, kAngleUnits, &GetAngleUnits, &TIEJobInfo::SetAngleUnits>("angleUnits"),
    Measured<&TIEJobInfo::GetTemperature, &TIEJobInfo::SetTemperature>("temperature"),
    Measured<&TIEJobInfo::GetPressure, &TIEJobInfo::SetPressure>("pressure"),
    Value<TIEJobInfo, &GetCreateDate, &SetCreateDate>("createDate"),
    Value<TIEJobInfo, &GetCreateTime, &SetCreateTime>("createTime"),
    {"ellipsoidToGrid", WriteGrid, ReadGrid},
    Value<TIEJobInfo, &TIEJobInfo::GetProjection, &TIEJobInfo::SetProjection>("projection"),
    Value<TIEJobInfo, &TIEJobInfo::GetDatum, &TIEJobInfo::SetDatum>("datum"),
    Value<TIEJobInfo, &TIEJobInfo::GetGeoid, &TIEJobInfo::SetGeoid>("geoid"),
    Value<TIEJobInfo, &TIEJobInfo::m_strAppName>("applicationName"),
    Value<TIEJobInfo, &TIEJobInfo::m_strAppDescription>("applicationDescription"),
    Value<TIEJobInfo, &TIEJobInfo::m_strAppVersion>("applicationVersion"),
    Value<TIEJobInfo, &TIEJobInfo::m_strAppText>("applicationText"),
};

void WriteInfo(CIEJobWriting& out, const char* pKey)
{
    out.m_Text.BeginOptionalObject(pKey, CIEJsonText::Lines);
    JobFields::Write(out, *out.GetJob().GetJobInfo(), kInfoFields);
    out.m_Text.EndObject();
}

bool ReadInfo(CIEJobReading& in, const CIEJsonValue& value)
{
    return JobFields::ReadObject(in, value, *in.GetJob().GetJobInfo(), kInfoFields);
}

} // namespace

const std::vector<JobParts::TSection>& JobParts::Sections()
{
    // road templates name codes
    static const std::vector<TSection> sections{
        {"info", WriteInfo, ReadInfo},
        {"settings", WriteSettings, ReadSettings},
        {"codes", WriteDictionary, ReadDictionary},
        {"layers", WriteLayers, ReadLayers},
        {"defaultLayer", WriteDefaultLayer, ReadDefaultLayer},
        {"roadTemplates", WriteRoadTemplates, ReadRoadTemplates},
    };
    return sections;
}
