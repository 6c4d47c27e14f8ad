#include "alidade/vellumlib/data.h"

std::atomic<bool> CIEData::m_bStopProcess{false};

namespace {
std::atomic<CIEData::TExtensionSource> g_ExtensionSource{nullptr};
}

CIEData::CIEData()
    : m_pDataDictionary(std::make_unique<CIEDataDictionary>()), m_pDrawDictionary(std::make_unique<CIEDrawDictionary>())
{
}

CIEData::~CIEData() = default;

CIEDataset* CIEData::GetDatasetAt(int i) const
{
    return i >= 0 && i < GetNumberOfDatasets() ? m_Datasets[static_cast<std::size_t>(i)].get() : nullptr;
}

CIEDataset* CIEData::AddDataset(std::unique_ptr<CIEDataset> pDataset)
{
    if (!pDataset)
        return nullptr;
    m_Datasets.push_back(std::move(pDataset));
    m_nCurDataset = GetNumberOfDatasets() - 1;
    return m_Datasets.back().get();
}

void CIEData::RemoveDataset(int i)
{
    if (!GetDatasetAt(i))
        return;
    m_Datasets.erase(m_Datasets.begin() + i);
    if (m_nCurDataset > i)
        --m_nCurDataset;
    else if (m_nCurDataset == i)
        m_nCurDataset = m_Datasets.empty() ? -1 : 0;
}

CIEDataset* CIEData::GetCurDataset(bool bCreate)
{
    if (bCreate && !GetDatasetAt(m_nCurDataset))
        return AddDataset(std::make_unique<CIEDataset>(CString()));
    return GetDatasetAt(m_nCurDataset);
}

void CIEData::SetCurDataset(int i)
{
    if (GetDatasetAt(i))
        m_nCurDataset = i;
}

int CIEData::GetNumberOfObjectsInAllDatasets() const
{
    int nCount = 0;
    for (const auto& pDataset : m_Datasets)
        nCount += pDataset->GetNumberOfElements(-1, 2, false, false);
    return nCount;
}

void CIEData::SetObjectNamesFromCodes()
{
    for (const auto& pDataset : m_Datasets) {
        for (int i = 0; CIEObject* const pObject = pDataset->GetObjectAt(i); ++i) {
            const CIECodeValues* const pCode = pObject->GetCode(0);
            if (pCode && pObject->GetName().empty())
                pObject->SetName(pCode->GetDescription()->GetName());
        }
    }
}

CIECodeDescription* CIEData::AddCodeToIEDataDictionary(std::unique_ptr<CIECodeDescription> pCode)
{
    return m_pDataDictionary->AddCodeDescription(std::move(pCode));
}

CIECodeDescription* CIEData::TakeCode(std::string_view name)
{
    CIECodeDescription* const pThere = m_pDataDictionary->FindCodeDiscription(name);
    return pThere ? pThere : AddCodeToIEDataDictionary(std::make_unique<CIECodeDescription>(CString(name)));
}

void CIEData::AttachIERoadTemplatesDictionary(std::unique_ptr<CIERoadTemplatesDictionary> pTemplates)
{
    if (m_pTemplates)
        m_EarlierTemplates.push_back(std::move(m_pTemplates));
    m_pTemplates = std::move(pTemplates);
    if (m_pTemplates)
        m_pTemplates->SettleAsCentral();
}

void CIEData::SwapContent(CIEData& other) noexcept
{
    std::swap(m_Settings, other.m_Settings);
    std::swap(m_JobInfo, other.m_JobInfo);
    m_pDataDictionary.swap(other.m_pDataDictionary);
    m_pDrawDictionary.swap(other.m_pDrawDictionary);
    m_pTemplates.swap(other.m_pTemplates);
    m_EarlierTemplates.swap(other.m_EarlierTemplates);
    m_Datasets.swap(other.m_Datasets);
    std::swap(m_nCurDataset, other.m_nCurDataset);
}

CString CIEData::GetExtForExportType(int nCode)
{
    const TExtensionSource source = g_ExtensionSource.load();
    return source ? source(nCode) : CString();
}

void CIEData::SetExtensionSource(TExtensionSource source)
{
    g_ExtensionSource.store(source);
}

void CIEData::Note(TIENote::EKind eKind, EIENote eCode, const CString& strFile, TIENotePlace place, CString strRecord,
                   CString strReason, std::int64_t nCount) const
{
    if (!m_pObserver)
        return;
    TIENote note{eKind, eCode, strFile, place, std::move(strRecord), std::move(strReason), nCount};
    if (note.m_strReason.empty())
        note.m_strReason = GetNoteRows()[static_cast<std::size_t>(eCode)].m_pSentence;
    m_pObserver->OnNote(note);
}
