#include "formats/dxf/export/dxf_note_words.h"

#include "alidade/formats/dxf/export/core_dxf_exporter.h"
#include "alidade/vellumlib/utils.h"
#include "formats/dxf/export/dxf_output.h"

#include <algorithm>

namespace {

/// Words that readers act on wherever they stand as a text.
constexpr std::string_view kWords[] = {"ARC",   "ATTRIB",   "3DFACE",     "INSERT", "LINE",  "3DLINE",
                                       "POINT", "POLYLINE", "LWPOLYLINE", "ENDSEC", "ENDBLK"};

} // namespace

namespace DXFNoteWords {

bool IsWord(std::string_view text)
{
    constexpr std::size_t kLongest = 10;
    if (text.size() > kLongest)
        return false;
    const CString upper = IEUtils::ToUpper(text);
    return std::find(std::begin(kWords), std::end(kWords), upper) != std::end(kWords);
}

CString BlockName(const CString& strName)
{
    return IEUtils::ToUpper(TDXFOutput::AsRead(CCoreDXFExporter::CreateCorrectDXFName(strName, true)));
}

bool HasWidth(const CIEDrawProperties* pProperties)
{
    int nWidth = 0;
    const auto* const pLine = dynamic_cast<const CIEDrawLineProperties*>(pProperties);
    return pLine && pLine->GetWidth(nWidth);
}

bool HasMarkStyle(const CIEDrawProperties* pProperties)
{
    int nStyle = 0;
    const auto* const pPoint = dynamic_cast<const CIEDrawPointProperties*>(pProperties);
    return pPoint && pPoint->GetMarkStyle(nStyle);
}

bool IsFlooded(const CIEDrawProperties* pProperties)
{
    const auto* const pArea = dynamic_cast<const CIEDrawAreaProperties*>(pProperties);
    return pArea && pArea->IsFlooded();
}

} // namespace DXFNoteWords
