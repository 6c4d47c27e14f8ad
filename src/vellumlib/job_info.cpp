#include "alidade/vellumlib/job_info.h"

bool TIEJobInfo::GetDistUnits(EDIST_UNITS& units) const
{
    units = m_eDistUnits;
    return true;
}

bool TIEJobInfo::GetAngleUnits(EANGLE_UNITS& units) const
{
    units = m_eAngleUnits;
    return true;
}

bool TIEJobInfo::GetTemperature(double& dValue, int& nUnit) const
{
    if (!m_Temperature)
        return false;
    dValue = m_Temperature->m_dValue;
    nUnit = m_Temperature->m_nUnit;
    return true;
}

bool TIEJobInfo::GetPressure(double& dValue, int& nUnit) const
{
    if (!m_Pressure)
        return false;
    dValue = m_Pressure->m_dValue;
    nUnit = m_Pressure->m_nUnit;
    return true;
}

bool TIEJobInfo::GetCreateTimeStr(CString& strDate, CString& strTime) const
{
    if (m_strCreateDate.empty() && m_strCreateTime.empty())
        return false;
    strDate = m_strCreateDate;
    strTime = m_strCreateTime;
    return true;
}

void TIEJobInfo::SetCreateTimeStr(CString strDate, CString strTime)
{
    m_strCreateDate = std::move(strDate);
    m_strCreateTime = std::move(strTime);
}

bool TIEJobInfo::GetEllToGridScaleAndElevation(double& dScale, double& dElevation) const
{
    dScale = m_Scale ? m_Scale->m_dScale : 1.0;
    dElevation = m_Scale ? m_Scale->m_dElevation : 0.0;
    return m_Scale.has_value();
}
