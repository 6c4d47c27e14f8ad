// The job history of a dataset.
#include "jobfile/job_fields.h"
#include "jobfile/job_parts.h"

#include "alidade/vellumlib/dataset.h"

namespace {

using JobFields::Value;

constexpr TIEJobField<TIEJobHistoryXMLTag> kTagFields[] = {
    Value<TIEJobHistoryXMLTag, &TIEJobHistoryXMLTag::m_strName>("name"),
    Value<TIEJobHistoryXMLTag, &TIEJobHistoryXMLTag::m_strText>("text"),
    Value<TIEJobHistoryXMLTag, &TIEJobHistoryXMLTag::m_strValue>("value"),
};

void WriteTags(CIEJobWriting& out, const char* pKey, const TIEJobHistoryTable& table)
{
    if (table.m_Tags.empty())
        return;
    out.m_Text.Key(pKey);
    out.m_Text.BeginArray();
    for (const TIEJobHistoryXMLTag& tag : table.m_Tags) {
        out.m_Text.BeginObject();
        JobFields::Write(out, tag, kTagFields);
        out.m_Text.EndObject();
    }
    out.m_Text.EndArray();
}

bool ReadTags(CIEJobReading& in, const CIEJsonValue& value, TIEJobHistoryTable& table)
{
    return JobFields::ReadList(in, value, [&](const CIEJsonValue& element) {
        return JobFields::ReadObject(in, element, table.m_Tags.emplace_back(), kTagFields);
    });
}

constexpr TIEJobField<TIEJobHistoryTable> kTableFields[] = {
    Value<TIEJobHistoryTable, &TIEJobHistoryTable::m_strTitle>("title"),
    Value<TIEJobHistoryTable, &TIEJobHistoryTable::m_strText>("text"),
    {"tags", WriteTags, ReadTags},
};

void WriteTables(CIEJobWriting& out, const char* pKey, const CIEJobHistory& history)
{
    if (history.GetJHTables().empty())
        return;
    out.m_Text.Key(pKey);
    out.m_Text.BeginArray(CIEJsonText::Lines);
    for (const TIEJobHistoryTable& table : history.GetJHTables()) {
        out.m_Text.BeginObject();
        JobFields::Write(out, table, kTableFields);
        out.m_Text.EndObject();
    }
    out.m_Text.EndArray();
}

bool ReadTables(CIEJobReading& in, const CIEJsonValue& value, CIEJobHistory& history)
{
    return JobFields::ReadList(in, value, [&](const CIEJsonValue& element) {
        TIEJobHistoryTable table;
        if (!JobFields::ReadObject(in, element, table, kTableFields))
            return false;
        history.AddJHTable(std::move(table));
        return true;
    });
}

constexpr TIEJobField<CIEJobHistory> kHistoryFields[] = {
    {"tables", WriteTables, ReadTables},
};

} // namespace

void JobParts::WriteJobHistory(CIEJobWriting& out, const char* pKey, const CIEDataset& dataset)
{
    if (!dataset.GetJobHistory())
        return;
    out.m_Text.Key(pKey);
    out.m_Text.BeginObject(CIEJsonText::Lines);
    JobFields::Write(out, *dataset.GetJobHistory(), kHistoryFields);
    out.m_Text.EndObject();
}

bool JobParts::ReadJobHistory(CIEJobReading& in, const CIEJsonValue& value, CIEDataset& dataset)
{
    auto pHistory = std::make_unique<CIEJobHistory>();
    if (!JobFields::ReadObject(in, value, *pHistory, kHistoryFields))
        return false;
    dataset.SetJobHistory(std::move(pHistory));
    return true;
}
