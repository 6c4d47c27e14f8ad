#include "formats/points/job_history_list.h"

#include <algorithm>

const CIEJobHistory* CIEJobHistoryListExporter::GetHistory() const
{
    const CIEDataset* const pDataset = m_pData->GetCurDataset(false);
    return pDataset ? pDataset->GetJobHistory() : nullptr;
}

int CIEJobHistoryListExporter::GetNumberOfSteps()
{
    constexpr int kFramingSteps = 2;
    const CIEJobHistory* const pHistory = GetHistory();
    return kFramingSteps + (pHistory ? static_cast<int>(pHistory->GetJHTables().size()) : 0);
}

bool CIEJobHistoryListExporter::SingleStep()
{
    const CIEJobHistory* const pHistory = GetHistory();
    if (!pHistory) {
        Note(TIENote::LeftOut, EIENote::JobNoHistory, {}, "the dataset has no job history, so there is no file of it");
        return false;
    }
    ++m_nStep;
    if (m_nStep < 0)
        return OpenFile();
    const CIEJobHistory::TTables& tables = pHistory->GetJHTables();
    if (static_cast<std::size_t>(m_nStep) >= tables.size()) {
        NoteObjects();
        return CloseFile();
    }
    return WriteTable(tables[static_cast<std::size_t>(m_nStep)], m_nStep + 1);
}

bool CIEJobHistoryListExporter::WriteTable(const TIEJobHistoryTable& table, int nNumber)
{
    if (!m_pFile)
        return false;
    m_Line.Clear();
    m_Line.AddInt(nNumber).Add(',');
    AddText(table.m_strTitle);
    m_Line.Add(',');
    AddText(table.m_strText);
    m_Line.Add(',');
    for (const TIEJobHistoryXMLTag& tag : table.m_Tags) {
        if (tag.m_strValue.empty())
            continue;
        AddText(tag.m_strName);
        m_Line.Add('{');
        CString strValue = tag.m_strValue;
        std::replace(strValue.begin(), strValue.end(), ',', ' ');
        AddText(strValue);
        m_Line.Add('}');
    }
    if (m_pData->GetObserver())
        NoteTable(table);
    return m_Line.EndTo(*m_pFile);
}

void CIEJobHistoryListExporter::NoteTable(const TIEJobHistoryTable& table) const
{
    const auto hasComma = [](const CString& text) { return text.find(',') != CString::npos; };
    const auto hasLineEnd = [](const CString& text) { return text.find_first_of("\r\n") != CString::npos; };
    const CString strTable = table.m_strTitle + " " + table.m_strText;
    const auto any = [&table](auto has) { return std::any_of(table.m_Tags.begin(), table.m_Tags.end(), has); };
    const auto anyWritten = [&](auto has) {
        return any([&](const TIEJobHistoryXMLTag& tag) { return !tag.m_strValue.empty() && has(tag); });
    };
    if (hasComma(table.m_strTitle) || hasComma(table.m_strText) ||
        anyWritten([&](const TIEJobHistoryXMLTag& tag) { return hasComma(tag.m_strName); }))
        Note(TIENote::Changed, EIENote::HistoryComma, strTable,
             "a comma in its texts or in the names of its tags looks like the end of a field");
    if (anyWritten([&](const TIEJobHistoryXMLTag& tag) { return hasComma(tag.m_strValue); }))
        Note(TIENote::Changed, EIENote::HistoryComma, strTable, "commas in its values became blanks");
    if (hasLineEnd(table.m_strTitle) || hasLineEnd(table.m_strText) || anyWritten([&](const TIEJobHistoryXMLTag& tag) {
            return hasLineEnd(tag.m_strName) || hasLineEnd(tag.m_strValue);
        }))
        Note(TIENote::Changed, EIENote::HistoryLineEnd, strTable, "line ends in its texts became blanks");
    if (any([](const TIEJobHistoryXMLTag& tag) { return tag.m_strValue.empty() || !tag.m_strText.empty(); }))
        Note(TIENote::LeftOut, EIENote::HistoryTag, strTable,
             "the list holds neither tags without a value nor the further texts of tags");
}

/// The walk through the tables never meets the objects, none of which the form holds.
void CIEJobHistoryListExporter::NoteObjects() const
{
    if (!m_pData->GetObserver())
        return;
    for (int i = 0; const CIEObject* const pObject = m_pData->GetCurDataset(false)->GetObjectAt(i); ++i)
        NoteLosses(*pObject);
}
