#include "jobfile/job_context.h"

#include "alidade/vellumlib/utils.h"

#include <limits>
#include <unordered_set>

bool CIEJobReading::FailAt(CString strPlace, CString strReason)
{
    if (!m_bFailed)
        m_Error = {std::move(strPlace), std::move(strReason)};
    m_bFailed = true;
    return false;
}

bool CIEJobReading::FailUnknownKey(const CIEJsonValue& value)
{
    return Fail(value, "There is no such key here.");
}

bool CIEJobReading::Read(const CIEJsonValue& value, double& dValue)
{
    if (!value.Is(CIEJsonTree::Number))
        return Fail(value, "A number is wanted here.");
    dValue = value.GetNumber();
    return true;
}

bool CIEJobReading::Read(const CIEJsonValue& value, int& nValue)
{
    std::int64_t nWhole = 0;
    if (!value.GetWhole(nWhole) || nWhole < std::numeric_limits<int>::min() || nWhole > std::numeric_limits<int>::max())
        return Fail(value, "A whole number of 32 bits is wanted here.");
    nValue = static_cast<int>(nWhole);
    return true;
}

bool CIEJobReading::Read(const CIEJsonValue& value, bool& bValue)
{
    if (!value.Is(CIEJsonTree::Flag))
        return Fail(value, "true or false is wanted here.");
    bValue = value.GetFlag();
    return true;
}

bool CIEJobReading::Read(const CIEJsonValue& value, CString& strValue)
{
    if (!value.Is(CIEJsonTree::Text))
        return Fail(value, "A text is wanted here.");
    strValue = value.GetText();
    return true;
}

bool CIEJobReading::ReadWord(const CIEJsonValue& value, const TIEJobWord* pWords, std::size_t nWords, int& nValue)
{
    if (value.Is(CIEJsonTree::Number))
        return Read(value, nValue);
    CString strWanted;
    for (std::size_t i = 0; i < nWords; ++i) {
        if (value.Is(CIEJsonTree::Text) && value.GetText() == pWords[i].m_pWord) {
            nValue = pWords[i].m_nValue;
            return true;
        }
        strWanted.append(i == 0 ? "" : ", ").append(pWords[i].m_pWord);
    }
    return Fail(value, "One of these words is wanted here: " + strWanted + ".");
}

bool CIEJobReading::WantArray(const CIEJsonValue& value)
{
    return value.Is(CIEJsonTree::Array) || Fail(value, "A list in [ ] is wanted here.");
}

bool CIEJobReading::WantObject(const CIEJsonValue& value)
{
    return value.Is(CIEJsonTree::Object) || Fail(value, "An object in { } is wanted here.");
}

CIECodeDescription* CIEJobReading::NeedCode(std::string_view name)
{
    if (CIECodeDescription* const pThere = m_Job.GetIEDataDictionary()->FindCodeDiscription(name))
        return pThere;
    CIECodeDescription* const pAdded =
        m_Job.AddCodeToIEDataDictionary(std::make_unique<CIECodeDescription>(CString(name)));
    m_Attributes[pAdded].m_bOpen = true;
    return pAdded;
}

int CIEJobReading::FindAttribute(CIECodeDescription& code, std::string_view name)
{
    const auto [it, bNew] = m_Attributes.try_emplace(&code);
    TAttributes& attributes = it->second;
    if (bNew) {
        for (int i = 0; i < code.GetSize(); ++i)
            attributes.m_ByName.try_emplace(code.GetAttrDescriptionAt(i)->GetName(), i);
    }
    const auto found = attributes.m_ByName.find(CString(name));
    if (found != attributes.m_ByName.end())
        return found->second;
    if (!attributes.m_bOpen)
        return -1;
    code.AddAttrDescription(CIEAttrDescription(CString(name)));
    return attributes.m_ByName[CString(name)] = code.GetSize() - 1;
}

void CIEJobWriting::NoteMended(const CString& strName, CString strReason, std::int64_t nCount) const
{
    Note(TIENote::Changed, EIENote::JobMended, strName, std::move(strReason), nCount);
}

void CIEJobWriting::NoteMendedIn(const CString& strName)
{
    const std::int64_t nMended = m_Text.GetMended() - m_nTold;
    if (nMended == 0)
        return;
    m_nTold += nMended;
    NoteMended(strName, "A number that isn't finite is written as 0, and bytes that aren't UTF-8 as U+FFFD.", nMended);
}

void CIEJobWriting::WriteWord(const TIEJobWord* pWords, std::size_t nWords, int nValue)
{
    for (std::size_t i = 0; i < nWords; ++i) {
        if (pWords[i].m_nValue == nValue) {
            m_Text.Text(pWords[i].m_pWord);
            return;
        }
    }
    m_Text.Whole(nValue);
}

bool CIEJobWriting::HasAttributeNames(const CIECodeDescription& code)
{
    const auto [it, bNew] = m_AttributeNames.try_emplace(&code, false);
    if (bNew && m_Job.GetIEDataDictionary()->FindCodeDiscription(code.GetName()) == &code) {
        std::unordered_set<std::string_view> names;
        bool bApart = true;
        for (int i = 0; i < code.GetSize(); ++i)
            bApart = names.insert(code.GetAttrDescriptionAt(i)->GetName()).second &&
                     IEUtils::IsValidUtf8(code.GetAttrDescriptionAt(i)->GetName()) && bApart;
        it->second = bApart;
    }
    return it->second;
}
