// The codes that an object carries.
#include "jobfile/job_fields.h"
#include "jobfile/job_parts.h"

namespace {

void WriteTexts(CIEJobWriting& out, const char* pKey, const CStringArray& texts)
{
    out.m_Text.Key(pKey);
    out.m_Text.BeginArray();
    for (const CString& text : texts)
        out.m_Text.Text(text);
    out.m_Text.EndArray();
}

void WriteAttributes(CIEJobWriting& out, const CIECodeValues& values)
{
    const CIECodeDescription& code = *values.GetDescription();
    const int nValues = values.GetNumberOfAttrs();
    if (nValues == 0)
        return;
    out.m_Text.Key("attributes");
    if (code.GetSize() == nValues && out.HasAttributeNames(code)) {
        out.m_Text.BeginObject();
        for (int i = 0; i < nValues; ++i) {
            if (values.GetAttrAt(i).empty())
                continue;
            out.m_Text.Key(code.GetAttrDescriptionAt(i)->GetName());
            out.m_Text.Text(values.GetAttrAt(i));
        }
        out.m_Text.EndObject();
        return;
    }
    out.m_Text.BeginArray();
    for (int i = 0; i < nValues; ++i)
        out.m_Text.Text(values.GetAttrAt(i));
    out.m_Text.EndArray();
}

void WriteCode(CIEJobWriting& out, const CIECodeValues& values)
{
    out.m_Text.BeginObject();
    out.m_Text.Key("name");
    out.m_Text.Text(values.GetDescription()->GetName());
    WriteAttributes(out, values);
    CStringArray texts;
    for (int i = 0; i < values.GetNumberOfCodeStrings(); ++i)
        texts.push_back(values.GetCodeStringAt(i));
    if (!texts.empty())
        WriteTexts(out, "strings", texts);
    texts.clear();
    for (int i = 0; i < CIECodeValues::kControlCodes; ++i)
        texts.push_back(values.GetControlCode(i));
    while (!texts.empty() && texts.back().empty())
        texts.pop_back();
    if (!texts.empty())
        WriteTexts(out, "control", texts);
    out.m_Text.EndObject();
}

bool ReadTexts(CIEJobReading& in, const CIEJsonValue& value, CStringArray& texts)
{
    return JobFields::ReadList(in, value,
                               [&](const CIEJsonValue& element) { return in.Read(element, texts.emplace_back()); });
}

/// Values by name fill up the others with empty ones; a list is taken as it is.
bool ReadAttributes(CIEJobReading& in, const CIEJsonValue& value, CIECodeDescription& code, CIECodeValues& values)
{
    if (value.Is(CIEJsonTree::Array)) {
        CStringArray texts;
        if (!ReadTexts(in, value, texts))
            return false;
        for (CString& text : texts)
            values.AddAttr(std::move(text));
        return true;
    }
    if (!in.WantObject(value))
        return false;
    for (const CIEJsonValue member : value) {
        const int i = in.FindAttribute(code, member.GetKey());
        CString text;
        if (i < 0)
            return in.Fail(member, "The code has no attribute of this name.");
        if (!in.Read(member, text))
            return false;
        values.SetAttrAt(i, std::move(text));
    }
    if (values.GetNumberOfAttrs() < code.GetSize())
        values.SetAttrAt(code.GetSize() - 1, CString());
    return true;
}

bool ReadCode(CIEJobReading& in, const CIEJsonValue& value, CIEObject& object)
{
    if (!in.WantObject(value))
        return false;
    const auto itName = value.Find("name");
    if (itName == value.end())
        return in.Fail(value, "A code needs its name.");
    CString name;
    if (!in.Read(*itName, name))
        return false;
    CIECodeDescription* const pCode = in.NeedCode(name);
    CIECodeValues values(pCode);
    for (const CIEJsonValue member : value) {
        CStringArray texts;
        if (member.GetKey() == "name")
            continue;
        if (member.GetKey() == "attributes") {
            if (!ReadAttributes(in, member, *pCode, values))
                return false;
        } else if (member.GetKey() == "strings") {
            if (!ReadTexts(in, member, texts))
                return false;
            for (CString& text : texts)
                values.AddCodeString(std::move(text));
        } else if (member.GetKey() == "control") {
            if (!ReadTexts(in, member, texts))
                return false;
            if (texts.size() > CIECodeValues::kControlCodes)
                return in.Fail(member, "A code has at most two control codes.");
            for (std::size_t i = 0; i < texts.size(); ++i)
                values.SetControlCode(static_cast<int>(i), std::move(texts[i]));
        } else {
            return in.FailUnknownKey(member);
        }
    }
    object.AddCode(std::move(values));
    return true;
}

} // namespace

void JobParts::WriteCodes(CIEJobWriting& out, const char* pKey, const CIEObject& object)
{
    if (object.GetNumberOfCodes() == 0)
        return;
    out.m_Text.Key(pKey);
    out.m_Text.BeginArray();
    for (int i = 0; i < object.GetNumberOfCodes(); ++i)
        WriteCode(out, *object.GetCode(i));
    out.m_Text.EndArray();
}

bool JobParts::ReadCodes(CIEJobReading& in, const CIEJsonValue& value, CIEObject& object)
{
    return JobFields::ReadList(in, value, [&](const CIEJsonValue& code) { return ReadCode(in, code, object); });
}
