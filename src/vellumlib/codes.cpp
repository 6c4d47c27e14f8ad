#include "alidade/vellumlib/codes.h"

#include "alidade/vellumlib/utils.h"

#include <algorithm>

namespace {

const CString kEmpty;

/// Element i, or the empty text where there is none.
const CString& TextAt(const CStringArray& texts, int i)
{
    return i >= 0 && static_cast<std::size_t>(i) < texts.size() ? texts[static_cast<std::size_t>(i)] : kEmpty;
}

} // namespace

const CIEAttrDescription* CIECodeDescription::GetAttrDescriptionAt(int i) const
{
    return i >= 0 && i < GetSize() ? &m_Attributes[static_cast<std::size_t>(i)] : nullptr;
}

int CIECodeDescription::FindAttrDescription(std::string_view name) const
{
    const auto place =
        std::find_if(m_Attributes.begin(), m_Attributes.end(),
                     [name](const CIEAttrDescription& attribute) { return attribute.GetName() == name; });
    return place == m_Attributes.end() ? -1 : static_cast<int>(place - m_Attributes.begin());
}

CIEDrawProperties* CIECodeDescription::GetDrawProperties(int nType) const
{
    return nType >= 0 && nType < CIEDrawProperties::kTypes ? m_DrawProperties[static_cast<std::size_t>(nType)].Get()
                                                           : nullptr;
}

void CIECodeDescription::SetDrawProperties(int nType, std::unique_ptr<CIEDrawProperties> pProperties)
{
    if (nType < 0 || nType >= CIEDrawProperties::kTypes || (pProperties && pProperties->GetType() != nType))
        return;
    m_DrawProperties[static_cast<std::size_t>(nType)].Set(std::move(pProperties));
}

bool CIECodeDescription::IsDrawPropertiesWasDefined() const
{
    return std::any_of(m_DrawProperties.begin(), m_DrawProperties.end(),
                       [](const CIEDrawPropertiesHolder& holder) { return holder.Get() != nullptr; });
}

CIECodeDescription* CIEDataDictionary::GetCodeDescriptionAt(int i) const
{
    return i >= 0 && i < GetSize() ? m_Codes[static_cast<std::size_t>(i)].get() : nullptr;
}

CIECodeDescription* CIEDataDictionary::FindCodeDiscription(std::string_view name) const
{
    const auto found = m_ByName.find(name);
    return found == m_ByName.end() ? nullptr : found->second;
}

CIECodeDescription* CIEDataDictionary::AddCodeDescription(std::unique_ptr<CIECodeDescription> pCode)
{
    if (!pCode)
        return nullptr;
    const auto [place, bNew] = m_ByName.try_emplace(pCode->GetName(), pCode.get());
    if (bNew)
        m_Codes.push_back(std::move(pCode));
    return place->second;
}

CIECodeValues::CIECodeValues(const CIECodeDescription* pDescription) : m_pDescription(pDescription)
{
    static const CIECodeDescription kNone;
    if (!m_pDescription)
        m_pDescription = &kNone;
}

CIECodeValues::CIECodeValues(const CIECodeValues& other)
    : m_pDescription(other.m_pDescription),
      m_Attributes(other.m_Attributes),
      m_pExtras(other.m_pExtras ? std::make_unique<TExtras>(*other.m_pExtras) : nullptr)
{
}

CIECodeValues& CIECodeValues::operator=(const CIECodeValues& other)
{
    if (this != &other)
        *this = CIECodeValues(other);
    return *this;
}

CIECodeValues::TExtras& CIECodeValues::Extras()
{
    if (!m_pExtras)
        m_pExtras = std::make_unique<TExtras>();
    return *m_pExtras;
}

const CString& CIECodeValues::GetAttrAt(int i) const
{
    return TextAt(m_Attributes, i);
}

void CIECodeValues::SetAttrAt(int i, CString value)
{
    if (i < 0)
        return;
    const auto place = static_cast<std::size_t>(i);
    if (place >= m_Attributes.size())
        m_Attributes.resize(place + 1);
    m_Attributes[place] = std::move(value);
}

int CIECodeValues::GetNumberOfCodeStrings() const
{
    return m_pExtras ? static_cast<int>(m_pExtras->m_CodeStrings.size()) : 0;
}

const CString& CIECodeValues::GetCodeStringAt(int i) const
{
    return m_pExtras ? TextAt(m_pExtras->m_CodeStrings, i) : kEmpty;
}

void CIECodeValues::AddCodeString(CString text)
{
    Extras().m_CodeStrings.push_back(std::move(text));
}

const CString& CIECodeValues::GetControlCode(int i) const
{
    return m_pExtras && i >= 0 && i < kControlCodes ? m_pExtras->m_ControlCodes[static_cast<std::size_t>(i)] : kEmpty;
}

void CIECodeValues::SetControlCode(int i, CString text)
{
    if (i < 0 || i >= kControlCodes || (!m_pExtras && text.empty()))
        return;
    Extras().m_ControlCodes[static_cast<std::size_t>(i)] = std::move(text);
}

bool CIECodeValues::operator==(const CIECodeValues& other) const
{
    if (m_pDescription != other.m_pDescription || m_Attributes != other.m_Attributes ||
        GetNumberOfCodeStrings() != other.GetNumberOfCodeStrings())
        return false;
    for (int i = 0; i < GetNumberOfCodeStrings(); ++i) {
        if (GetCodeStringAt(i) != other.GetCodeStringAt(i))
            return false;
    }
    return GetControlCode(0) == other.GetControlCode(0) && GetControlCode(1) == other.GetControlCode(1);
}

const CIECodeValues* CIECodesDataInterface::GetCode(int i) const
{
    return i >= 0 && i < GetNumberOfCodes() ? &m_Codes[static_cast<std::size_t>(i)] : nullptr;
}

CIECodeValues* CIECodesDataInterface::GetCode(int i)
{
    return i >= 0 && i < GetNumberOfCodes() ? &m_Codes[static_cast<std::size_t>(i)] : nullptr;
}

CIECodeValues* CIECodesDataInterface::FindCode(std::string_view name, bool bIgnoreCase)
{
    const auto isCode = [&](const CIECodeValues& values) {
        const CString& strCode = values.GetDescription()->GetName();
        return strCode == name || (bIgnoreCase && IEUtils::ToLower(strCode) == IEUtils::ToLower(name));
    };
    const auto place = std::find_if(m_Codes.begin(), m_Codes.end(), isCode);
    return place == m_Codes.end() ? nullptr : &*place;
}

int CIECodesDataInterface::GetCodePos(const CIECodeDescription* pCode) const
{
    for (std::size_t i = 0; i < m_Codes.size(); ++i) {
        if (m_Codes[i].GetDescription() == pCode)
            return static_cast<int>(i);
    }
    return -1;
}
