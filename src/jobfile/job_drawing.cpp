// How things are drawn: properties of objects, codes and layers, and what a drawing of a dataset says ahead.
#include "jobfile/job_fields.h"
#include "jobfile/job_parts.h"

#include "alidade/vellumlib/dataset.h"

#include <array>
#include <charconv>

namespace {

using JobFields::Value;

// ---- draw properties

constexpr TIEJobWord kKinds[] = {
    {"point", CIEDrawProperties::Points}, {"line", CIEDrawProperties::Lines}, {"area", CIEDrawProperties::Areas}};

constexpr TIEJobWord kDashes[] = {
    {"solid", CIEDrawLineProperties::Solid},
    {"dashed", CIEDrawLineProperties::Dashed},
    {"dotted", CIEDrawLineProperties::Dotted},
    {"dash-dotted", CIEDrawLineProperties::DashDotted},
    {"dash-dot-dotted", CIEDrawLineProperties::DashDotDotted},
    {"dashed-custom", CIEDrawLineProperties::DashedCustom},
};

constexpr std::size_t kColorDigits = 6;

CString ColorText(TIEColor color)
{
    std::array<char, kColorDigits> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), ColorToRGB(color), 16);
    const CString strDigits(digits.data(), written.ptr);
    return "#" + CString(kColorDigits - strDigits.size(), '0') + strDigits;
}

bool ReadColor(CIEJobReading& in, const CIEJsonValue& value, TIEColor& color)
{
    CString text;
    if (!in.Read(value, text))
        return false;
    const char* const pEnd = text.data() + text.size();
    if (text.size() == kColorDigits + 1 && text[0] == '#') {
        std::uint32_t nRGB = 0;
        const auto read = std::from_chars(text.data() + 1, pEnd, nRGB, 16);
        color = ColorFromRGB(nRGB);
        if (read.ec == std::errc() && read.ptr == pEnd)
            return true;
    }
    return in.Fail(value, "A color is red, green and blue as \"#rrggbb\".");
}

/// What the three kinds have among them, while it is being read.
struct TDrawing {
    int m_nKind = -1;
    TIEColor m_Color = 0;
    int m_nDash = CIEDrawLineProperties::Solid;
    int m_nWidth = 0;
    int m_nMark = 0;
    bool m_bFlooded = false;
};

/// A key of draw properties: the kinds that it belongs to, and where it goes.
struct TDrawingKey {
    const char* m_pKey;
    int m_nKind; ///< -1 for all
    bool (*m_pRead)(CIEJobReading& in, const CIEJsonValue& value, TDrawing& drawing);
    void (*m_pSet)(CIEDrawProperties& properties, const TDrawing& drawing);
};

CIEDrawLineProperties& Lines(CIEDrawProperties& properties)
{
    return static_cast<CIEDrawLineProperties&>(properties);
}

constexpr TDrawingKey kDrawingKeys[] = {
    {"color", -1,
     [](CIEJobReading& in, const CIEJsonValue& value, TDrawing& drawing) {
         return ReadColor(in, value, drawing.m_Color);
     },
     [](CIEDrawProperties& properties, const TDrawing& drawing) { properties.SetColor(drawing.m_Color); }},
    {"dash", CIEDrawProperties::Lines,
     [](CIEJobReading& in, const CIEJsonValue& value, TDrawing& drawing) {
         return in.ReadWord(value, kDashes, std::size(kDashes), drawing.m_nDash);
     },
     [](CIEDrawProperties& properties, const TDrawing& drawing) {
         Lines(properties).SetDashStyle(static_cast<CIEDrawLineProperties::EDashStyleType>(drawing.m_nDash));
     }},
    {"width", CIEDrawProperties::Lines,
     [](CIEJobReading& in, const CIEJsonValue& value, TDrawing& drawing) { return in.Read(value, drawing.m_nWidth); },
     [](CIEDrawProperties& properties, const TDrawing& drawing) { Lines(properties).SetWidth(drawing.m_nWidth); }},
    {"mark", CIEDrawProperties::Points,
     [](CIEJobReading& in, const CIEJsonValue& value, TDrawing& drawing) { return in.Read(value, drawing.m_nMark); },
     [](CIEDrawProperties& properties, const TDrawing& drawing) {
         static_cast<CIEDrawPointProperties&>(properties).SetMarkStyle(drawing.m_nMark);
     }},
    {"flooded", CIEDrawProperties::Areas,
     [](CIEJobReading& in, const CIEJsonValue& value, TDrawing& drawing) { return in.Read(value, drawing.m_bFlooded); },
     [](CIEDrawProperties& properties, const TDrawing& drawing) {
         static_cast<CIEDrawAreaProperties&>(properties).SetFloodStatus(drawing.m_bFlooded);
     }},
};

std::unique_ptr<CIEDrawProperties> MakeDrawProperties(int nKind)
{
    switch (nKind) {
    case CIEDrawProperties::Points:
        return std::make_unique<CIEDrawPointProperties>();
    case CIEDrawProperties::Lines:
        return std::make_unique<CIEDrawLineProperties>();
    case CIEDrawProperties::Areas:
        return std::make_unique<CIEDrawAreaProperties>();
    default:
        return nullptr;
    }
}

bool ReadDrawingKey(CIEJobReading& in, const CIEJsonValue& member, CIEDrawProperties& properties)
{
    for (const TDrawingKey& key : kDrawingKeys) {
        if (member.GetKey() != key.m_pKey || (key.m_nKind != -1 && key.m_nKind != properties.GetType()))
            continue;
        TDrawing drawing;
        if (!key.m_pRead(in, member, drawing))
            return false;
        key.m_pSet(properties, drawing);
        return true;
    }
    return in.FailUnknownKey(member);
}

// ---- header of a dataset

constexpr TIEJobField<CHeaderInfo> kHeaderFields[] = {
    Value<CHeaderInfo, &CHeaderInfo::GetPointMode, &CHeaderInfo::SetPointMode>("pointMode"),
    Value<CHeaderInfo, &CHeaderInfo::GetSymbolSize, &CHeaderInfo::SetSymbolSize>("symbolSize"),
    Value<CHeaderInfo, &CHeaderInfo::GetTextHeight, &CHeaderInfo::SetTextHeight>("textHeight"),
    Value<CHeaderInfo, &CHeaderInfo::GetTextWidthFactor, &CHeaderInfo::SetTextWidthFactor>("textWidthFactor"),
};
constexpr const char* kBorderKeys[] = {"minimum", "maximum"};

bool HasOwnHeader(const CIEDataset& dataset)
{
    static const CHeaderInfo kNew;
    const CHeaderInfo& header = dataset.GetHeaderSettings();
    return dataset.HasFixedBorders() || header.GetPointMode() != kNew.GetPointMode() ||
           header.GetSymbolSize() != kNew.GetSymbolSize() || header.GetTextHeight() != kNew.GetTextHeight() ||
           header.GetTextWidthFactor() != kNew.GetTextWidthFactor();
}

} // namespace

void JobParts::WriteDrawProperties(CIEJobWriting& out, const char* pKey, const CIEDrawProperties* pProperties)
{
    if (!pProperties)
        return;
    if (pKey)
        out.m_Text.Key(pKey);
    out.m_Text.BeginObject();
    out.m_Text.Key("kind");
    out.WriteWord(kKinds, std::size(kKinds), pProperties->GetType());
    TIEColor color = 0;
    if (pProperties->GetColor(color)) {
        out.m_Text.Key("color");
        out.m_Text.Text(ColorText(color));
    }
    int nValue = 0;
    if (const auto* const pLines = dynamic_cast<const CIEDrawLineProperties*>(pProperties)) {
        CIEDrawLineProperties::EDashStyleType eStyle{};
        if (pLines->GetDashStyle(eStyle)) {
            out.m_Text.Key("dash");
            out.WriteWord(kDashes, std::size(kDashes), eStyle);
        }
        if (pLines->GetWidth(nValue)) {
            out.m_Text.Key("width");
            out.m_Text.Whole(nValue);
        }
    } else if (const auto* const pPoints = dynamic_cast<const CIEDrawPointProperties*>(pProperties)) {
        if (pPoints->GetMarkStyle(nValue)) {
            out.m_Text.Key("mark");
            out.m_Text.Whole(nValue);
        }
    } else if (const auto* const pAreas = dynamic_cast<const CIEDrawAreaProperties*>(pProperties)) {
        if (pAreas->IsFlooded()) {
            out.m_Text.Key("flooded");
            out.m_Text.Flag(true);
        }
    }
    out.m_Text.EndObject();
}

std::unique_ptr<CIEDrawProperties> JobParts::ReadDrawProperties(CIEJobReading& in, const CIEJsonValue& value)
{
    if (!in.WantObject(value))
        return nullptr;
    const auto itKind = value.Find("kind");
    if (itKind == value.end()) {
        in.Fail(value, "This needs its kind: \"point\", \"line\" or \"area\".");
        return nullptr;
    }
    int nKind = -1;
    if (!in.ReadWord(*itKind, kKinds, std::size(kKinds), nKind))
        return nullptr;
    auto pProperties = MakeDrawProperties(nKind);
    if (!pProperties) {
        in.Fail(*itKind, "There is no such kind.");
        return nullptr;
    }
    for (const CIEJsonValue member : value) {
        if (member.GetKey() != "kind" && !ReadDrawingKey(in, member, *pProperties))
            return nullptr;
    }
    return pProperties;
}

void JobParts::WriteHeader(CIEJobWriting& out, const char* pKey, const CIEDataset& dataset)
{
    if (!HasOwnHeader(dataset))
        return;
    const CHeaderInfo& header = dataset.GetHeaderSettings();
    out.m_Text.Key(pKey);
    out.m_Text.BeginObject();
    JobFields::Write(out, header, kHeaderFields);
    for (int i = 0; dataset.HasFixedBorders() && i < CHeaderInfo::kBorders; ++i) {
        out.m_Text.Key(kBorderKeys[i]);
        WriteStation(out, *header.GetBorder(i));
    }
    out.m_Text.EndObject();
}

bool JobParts::ReadHeader(CIEJobReading& in, const CIEJsonValue& value, CIEDataset& dataset)
{
    std::array<CIEStation, CHeaderInfo::kBorders> borders;
    unsigned nBorders = 0;
    if (!in.WantObject(value))
        return false;
    for (const CIEJsonValue member : value) {
        EJobMember eMember = JobFields::ReadMember(in, member, *dataset.GetHeaderInfo(), kHeaderFields);
        for (unsigned i = 0; eMember == EJobMember::Unknown && i < borders.size(); ++i) {
            if (member.GetKey() != kBorderKeys[i])
                continue;
            eMember = ReadStation(in, member, borders[i]) ? EJobMember::Done : EJobMember::Failed;
            nBorders |= 1U << i;
        }
        if (eMember != EJobMember::Done)
            return eMember == EJobMember::Unknown ? in.FailUnknownKey(member) : false;
    }
    if (nBorders == 0)
        return true;
    if (nBorders != 3U)
        return in.Fail(value, "Borders are a minimum and a maximum.");
    dataset.FixBorders(std::move(borders[0]), std::move(borders[1]));
    return true;
}
