// Codes and layers of a job.
#include "jobfile/job_fields.h"
#include "jobfile/job_parts.h"

namespace {

using JobFields::Value;
using JobFields::Word;

constexpr TIEJobWord kAttributeTypes[] = {
    {"text", CIEAttrDescription::TEXT},
    {"int", CIEAttrDescription::INT},
    {"real", CIEAttrDescription::REAL},
    {"list", CIEAttrDescription::LIST},
};

void WriteItems(CIEJobWriting& out, const char* pKey, const CIEAttrDescription& attribute)
{
    if (attribute.GetListItems().empty())
        return;
    out.m_Text.Key(pKey);
    out.m_Text.BeginArray();
    for (const CString& item : attribute.GetListItems())
        out.m_Text.Text(item);
    out.m_Text.EndArray();
}

bool ReadItems(CIEJobReading& in, const CIEJsonValue& value, CIEAttrDescription& attribute)
{
    CStringArray items;
    const auto readItem = [&](const CIEJsonValue& item) { return in.Read(item, items.emplace_back()); };
    if (!JobFields::ReadList(in, value, readItem))
        return false;
    attribute.SetListItems(std::move(items));
    return true;
}

constexpr TIEJobField<CIEAttrDescription> kAttributeFields[] = {
    Value<CIEAttrDescription, &CIEAttrDescription::GetName, &CIEAttrDescription::SetName>("name"),
    Word<CIEAttrDescription, kAttributeTypes, &CIEAttrDescription::GetType, &CIEAttrDescription::SetType>("type"),
    {"items", WriteItems, ReadItems},
};

void WriteAttributeDescriptions(CIEJobWriting& out, const char* pKey, const CIECodeDescription& code)
{
    if (code.GetSize() == 0)
        return;
    out.m_Text.Key(pKey);
    out.m_Text.BeginArray();
    for (int i = 0; i < code.GetSize(); ++i) {
        out.m_Text.BeginObject();
        JobFields::Write(out, *code.GetAttrDescriptionAt(i), kAttributeFields);
        out.m_Text.EndObject();
    }
    out.m_Text.EndArray();
}

bool ReadAttributeDescriptions(CIEJobReading& in, const CIEJsonValue& value, CIECodeDescription& code)
{
    return JobFields::ReadList(in, value, [&](const CIEJsonValue& element) {
        CIEAttrDescription attribute;
        if (!JobFields::ReadObject(in, element, attribute, kAttributeFields))
            return false;
        code.AddAttrDescription(std::move(attribute));
        return true;
    });
}

void WriteCodeDrawing(CIEJobWriting& out, const char* pKey, const CIECodeDescription& code)
{
    if (!code.IsDrawPropertiesWasDefined())
        return;
    out.m_Text.Key(pKey);
    out.m_Text.BeginArray();
    for (int i = 0; i < CIEDrawProperties::kTypes; ++i)
        JobParts::WriteDrawProperties(out, nullptr, code.GetDrawProperties(i));
    out.m_Text.EndArray();
}

bool ReadCodeDrawing(CIEJobReading& in, const CIEJsonValue& value, CIECodeDescription& code)
{
    return JobFields::ReadList(in, value, [&](const CIEJsonValue& element) {
        auto pProperties = JobParts::ReadDrawProperties(in, element);
        if (!pProperties)
            return false;
        const int nType = pProperties->GetType();
        if (code.GetDrawProperties(nType))
            return in.Fail(element, "This kind stands in the list twice.");
        code.SetDrawProperties(nType, std::move(pProperties));
        return true;
    });
}

constexpr TIEJobField<CIECodeDescription> kCodeFields[] = {
    Value<CIECodeDescription, &CIECodeDescription::GetDescription, &CIECodeDescription::SetDescription>("description"),
    {"attributes", WriteAttributeDescriptions, ReadAttributeDescriptions},
    {JobParts::kDrawKey, WriteCodeDrawing, ReadCodeDrawing},
};

void WriteLayerDrawing(CIEJobWriting& out, const char* pKey, const CIELayer& layer)
{
    JobParts::WriteDrawProperties(out, pKey, layer.GetDrawProperties());
}

bool ReadLayerDrawing(CIEJobReading& in, const CIEJsonValue& value, CIELayer& layer)
{
    auto pProperties = JobParts::ReadDrawProperties(in, value);
    if (!pProperties)
        return false;
    layer.SetDrawProperties(std::move(pProperties));
    return true;
}

constexpr TIEJobField<CIELayer> kLayerFields[] = {
    Value<CIELayer, &CIELayer::GetNotes, &CIELayer::SetNotes>("notes"),
    Value<CIELayer, &CIELayer::IsActive, &CIELayer::SetActiveStatus>("active"),
    Value<CIELayer, &CIELayer::IsPlot, &CIELayer::SetPlotStatus>("plot"),
    {JobParts::kDrawKey, WriteLayerDrawing, ReadLayerDrawing},
};

bool ReadCodeDescription(CIEJobReading& in, const CIEJsonValue& value)
{
    CIEDataDictionary& codes = *in.GetJob().GetIEDataDictionary();
    CString name;
    if (!JobFields::ReadEntryName(in, value, name,
                                  [&](const CString& text) { return codes.FindCodeDiscription(text); }))
        return false;
    auto pCode = std::make_unique<CIECodeDescription>(std::move(name));
    if (!JobFields::ReadOtherMembers(in, value, "name", *pCode, kCodeFields))
        return false;
    codes.AddCodeDescription(std::move(pCode));
    return true;
}

bool ReadLayer(CIEJobReading& in, const CIEJsonValue& value)
{
    CIEDrawDictionary& layers = *in.GetJob().GetIEDrawDictionary();
    CString name;
    if (!JobFields::ReadEntryName(in, value, name, [&](const CString& text) { return layers.FindLayer(text); }))
        return false;
    auto pLayer = std::make_unique<CIELayer>(std::move(name));
    if (!JobFields::ReadOtherMembers(in, value, "name", *pLayer, kLayerFields))
        return false;
    layers.AddLayer(std::move(pLayer));
    return true;
}

} // namespace

void JobParts::WriteDictionary(CIEJobWriting& out, const char* pKey)
{
    const CIEDataDictionary& codes = *out.GetJob().GetIEDataDictionary();
    if (codes.GetSize() == 0)
        return;
    out.m_Text.Key(pKey);
    out.m_Text.BeginArray(CIEJsonText::Lines);
    for (int i = 0; i < codes.GetSize(); ++i) {
        const CIECodeDescription& code = *codes.GetCodeDescriptionAt(i);
        out.m_Text.BeginObject();
        out.m_Text.Key("name");
        out.m_Text.Text(code.GetName());
        JobFields::Write(out, code, kCodeFields);
        out.m_Text.EndObject();
    }
    out.m_Text.EndArray();
}

bool JobParts::ReadDictionary(CIEJobReading& in, const CIEJsonValue& value)
{
    return JobFields::ReadList(in, value,
                               [&](const CIEJsonValue& element) { return ReadCodeDescription(in, element); });
}

void JobParts::WriteLayers(CIEJobWriting& out, const char* pKey)
{
    const CIEDrawDictionary& layers = *out.GetJob().GetIEDrawDictionary();
    if (layers.GetNumberOfLayers() == 0)
        return;
    out.m_Text.Key(pKey);
    out.m_Text.BeginArray(CIEJsonText::Lines);
    for (int i = 0; i < layers.GetNumberOfLayers(); ++i) {
        out.m_Text.BeginObject();
        out.m_Text.Key("name");
        out.m_Text.Text(layers.GetLayerAt(i)->GetName());
        JobFields::Write(out, *layers.GetLayerAt(i), kLayerFields);
        out.m_Text.EndObject();
    }
    out.m_Text.EndArray();
}

bool JobParts::ReadLayers(CIEJobReading& in, const CIEJsonValue& value)
{
    return JobFields::ReadList(in, value, [&](const CIEJsonValue& element) { return ReadLayer(in, element); });
}

void JobParts::WriteDefaultLayer(CIEJobWriting& out, const char* pKey)
{
    const CIELayer* const pLayer = out.GetJob().GetIEDrawDictionary()->GetDefaultLayer();
    if (!pLayer)
        return;
    out.m_Text.Key(pKey);
    out.m_Text.Text(pLayer->GetName());
}

bool JobParts::ReadDefaultLayer(CIEJobReading& in, const CIEJsonValue& value)
{
    CString name;
    if (!in.Read(value, name))
        return false;
    CIEDrawDictionary& layers = *in.GetJob().GetIEDrawDictionary();
    for (int i = 0; const CIELayer* const pLayer = layers.GetLayerAt(i); ++i) {
        if (pLayer->GetName() != name)
            continue;
        layers.SetDefaultLayer(i);
        return true;
    }
    return in.Fail(value, "No layer of the list has this name.");
}
