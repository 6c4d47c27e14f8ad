#include "alidade/vellumlib/alignment.h"

#include <algorithm>

namespace {

template <class T>
T* Append(std::vector<std::unique_ptr<T>>& list, std::unique_ptr<T> pItem)
{
    if (!pItem)
        return nullptr;
    list.push_back(std::move(pItem));
    return list.back().get();
}

template <class T>
T* At(const std::vector<std::unique_ptr<T>>& list, int i)
{
    return i >= 0 && static_cast<std::size_t>(i) < list.size() ? list[static_cast<std::size_t>(i)].get() : nullptr;
}

} // namespace

CIECrossSection::CIECrossSection(const CIERoadTemplate* pTemplate)
{
    AddRoadTemplate(pTemplate);
}

const CIERoadTemplate* CIECrossSection::GetRoadTemplateAt(int i) const
{
    return i >= 0 && i < GetNumberOfRoadTemplates() ? m_Templates[static_cast<std::size_t>(i)] : nullptr;
}

void CIECrossSection::AddRoadTemplate(const CIERoadTemplate* pTemplate)
{
    if (pTemplate)
        m_Templates.push_back(pTemplate);
}

bool CIECrossSection::RemoveRoadTemplate(std::string_view name)
{
    return std::erase_if(m_Templates, [&](const CIERoadTemplate* pTemplate) { return pTemplate->GetName() == name; }) !=
           0;
}

void CIECrossSection::CopyData(const CIECrossSection& other)
{
    m_dStation = other.m_dStation;
    m_Level = other.m_Level;
    m_bRight = other.m_bRight;
}

double CIEAlignment::GetLength() const
{
    if (m_Length)
        return *m_Length;
    double dLength = 0.0;
    for (const auto& pObject : m_Objects)
        dLength += pObject->GetElementLength();
    return dLength;
}

CIEAlignmentObject* CIEAlignment::AddObject(std::unique_ptr<CIEAlignmentObject> pObject)
{
    return Append(m_Objects, std::move(pObject));
}

CIEAlignmentObject* CIEAlignment::GetObjectAt(int i) const
{
    return At(m_Objects, i);
}

CIELongSection* CIEAlignment::AddLongSection(std::unique_ptr<CIELongSection> pSection)
{
    CIELongSection* pLast = At(m_LongSections, GetNumberOfLongSections() - 1);
    CIELongSection* pAdded = Append(m_LongSections, std::move(pSection));
    if (pLast && pAdded) {
        pLast->m_pNext = pAdded;
        pAdded->m_pPrevious = pLast;
    }
    return pAdded;
}

CIELongSection* CIEAlignment::GetLongSectionAt(int i) const
{
    return At(m_LongSections, i);
}

CIEVerticalElement* CIEAlignment::AddVerticalElement(std::unique_ptr<CIEVerticalElement> pElement)
{
    return Append(m_VerticalElements, std::move(pElement));
}

CIEVerticalElement* CIEAlignment::GetVerticalElementAt(int i) const
{
    return At(m_VerticalElements, i);
}

CIECrossSection* CIEAlignment::AddCrossSection(std::unique_ptr<CIECrossSection> pSection)
{
    return Append(m_CrossSections, std::move(pSection));
}

CIECrossSection* CIEAlignment::GetCrossSectionAt(int i) const
{
    return At(m_CrossSections, i);
}
