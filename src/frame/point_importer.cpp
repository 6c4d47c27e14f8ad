#include "frame/point_importer.h"

#include "alidade/vellumlib/utils.h"
#include "frame/delimited_text.h"
#include "frame/line_joiner.h"

namespace {

/// Reads the layout that a header line tells. False if the line is no header.
bool ParseHeader(std::string_view line, TIEAsciiFormat& format)
{
    using namespace DelimitedText;
    const std::size_t nEnd = line.find(kHeaderEnd);
    const std::size_t nDelimiter = line.find(kDelimiter);
    const std::size_t nFields = line.find(kFileFormat);
    constexpr auto npos = std::string_view::npos;
    if (line.find(kHeaderStart) == npos || nEnd == npos || nDelimiter == npos || nFields == npos)
        return false;

    const std::string_view behindDelimiter = line.substr(nDelimiter + kDelimiter.size());
    const std::string_view delimiter = IEUtils::Left(behindDelimiter, 1);
    const char16_t cDelimiter = IEUtils::StringToChar(delimiter);
    if (cDelimiter == 0 || behindDelimiter.substr(delimiter.size(), 1) != ")")
        return false;

    const std::size_t nFirst = nFields + kFileFormat.size();
    if (nEnd < nFirst + 2 || line.substr(nEnd - 2, 2) != ") ")
        return false;
    format.m_cDelimiter = cDelimiter;
    // an unknown word leaves no field, so that every line is refused rather than read by a layout that it doesn't have
    (void)IEAsciiFields::StringToFields(line.substr(nFirst, nEnd - 2 - nFirst), format.m_Fields);
    return true;
}

} // namespace

EIEResult CIEPointImporter::Import()
{
    CIETextFile file;
    if (!file.Open(m_strFileName, m_pData->GetSettings().m_strCodePage))
        return IE_CANNOT_OPEN_FILE;
    const EIEResult eResult = ImportFile(file);
    if (file.HasFailed())
        Note(TIENote::Refused, EIENote::FileReadFailed, file.GetLineNumber() + 1, {},
             "the rest of the file can't be read");
    file.Close();
    return CIEData::m_bStopProcess ? IE_STOPPED : eResult;
}

EIEResult CIEPointImporter::ImportFile(CIETextFile& file)
{
    EIEResult eResult = IE_OK;
    bool bAnyObject = false;
    TakeHeader(file);
    CIEDataset* const pDataset = m_pData->AddDataset(std::make_unique<CIEDataset>("Import dataset"));

    CIELineJoiner joiner(*pDataset);
    CIEMemoryCheck memory;
    std::string_view line;
    while (!CIEData::m_bStopProcess) {
        const CIEMemoryCheck::EAnswer eMemory = memory.Look(kLeastFreeMemory);
        if (eMemory == CIEMemoryCheck::TooLittle)
            return IE_OUT_OF_MEMORY;
        if (eMemory == CIEMemoryCheck::Enough)
            Progress(file);
        if (!file.ReadLine(line) || line.empty())
            break;
        m_nLine = file.GetLineNumber();
        m_FieldTexts.clear(); // they point into the line before
        std::unique_ptr<CIEObject> pObject;
        EIEResult eLine = file.WasCut() ? Refuse(EIENote::LineTooLong, "the line is longer than any record can be")
                                        : ParseLine(line, pObject);
        if (!pObject)
            eLine = IE_PARTIAL; // a reader may have another code for a line that gives nothing
        if (eResult != IE_PARTIAL)
            eResult = eLine;
        if (eLine == IE_PARTIAL) {
            Note(TIENote::Refused, m_eRefusalCode, m_nLine, m_FieldTexts.empty() ? CString() : Excerpt(m_FieldTexts[0]),
                 m_strRefusal);
            continue;
        }
        if (file.WasMended())
            Note(TIENote::Changed, EIENote::LineBadCharacters, m_nLine, pObject->GetName(),
                 "bytes without a meaning in " + file.GetEncoding() + " became U+FFFD");
        bAnyObject = true;
        Join(joiner, std::move(pObject));
    }
    if (!CIEData::m_bStopProcess)
        joiner.Close();
    NoteRest(file);
    Progress(file);
    if (bAnyObject)
        return eResult;
    return eResult == IE_PARTIAL ? IE_BAD_CONTENT : IE_NOTHING_DONE;
}

void CIEPointImporter::TakeHeader(CIETextFile& file)
{
    std::string_view line;
    TIESettings settings = m_pData->GetCopyOfSettings();
    TIEAsciiFormat format = settings.GetAsciiFormat();
    if (!file.ReadLine(line) || !ParseHeader(line, format)) {
        file.Rewind();
        return;
    }
    if (format.m_Fields.empty())
        Note(TIENote::Refused, EIENote::HeaderUnknownField, 1, {}, "the header line names a field that isn't known");
    settings.m_pAsciiFormat = std::make_unique<TIEAsciiFormat>(std::move(format));
    m_pData->SetSettings(std::move(settings));
}

void CIEPointImporter::NoteRest(CIETextFile& file)
{
    if (!m_pData->GetObserver() || CIEData::m_bStopProcess)
        return;
    std::string_view line;
    while (file.ReadLine(line)) {
        if (!IEUtils::Trim(line).empty()) {
            Note(TIENote::LeftOut, EIENote::LineBehindEnd, file.GetLineNumber(), {},
                 "a blank line ended the data ahead of this line; nothing from here on was read");
            return;
        }
    }
}

void CIEPointImporter::Join(CIELineJoiner& joiner, std::unique_ptr<CIEObject> pObject)
{
    const CString strName = m_pData->GetObserver() ? pObject->GetName() : CString();
    if (!joiner.Add(std::move(pObject)))
        Note(TIENote::Changed, EIENote::LineCodes, m_nLine, strName,
             "this station joined a line, which keeps the codes of its first station");
}

CString CIEPointImporter::Excerpt(std::string_view text)
{
    constexpr int kShown = 64; // no name or number of sense is longer
    return CString(IEUtils::Left(text, kShown));
}

EIEResult CIEPointImporter::Refuse(EIENote eCode, CString strReason)
{
    m_eRefusalCode = eCode;
    m_strRefusal = std::move(strReason);
    return IE_PARTIAL;
}

void CIEPointImporter::NoteLine(EIENote eCode, const CIEObject& object, CString strReason) const
{
    Note(TIENote::Changed, eCode, m_nLine, object.GetName(), std::move(strReason));
}
