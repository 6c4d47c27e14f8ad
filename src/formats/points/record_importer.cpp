#include "formats/points/record_importer.h"

#include "alidade/vellumlib/utils.h"

CIERecordImporter::CIERecordImporter(CIEData* pData, CString strFileName, const TIEReadForm& form)
    : CIEImporter(pData, std::move(strFileName)), m_Reader(form, *pData->GetJobInfo()), m_Form(form)
{
}

EIEResult CIERecordImporter::Import()
{
    CIETextFile file;
    if (!file.Open(m_strFileName, m_pData->GetSettings().m_strCodePage))
        return IE_CANNOT_OPEN_FILE;
    CIEDataset* const pDataset = m_pData->AddDataset(std::make_unique<CIEDataset>("Import dataset"));
    NoteUnits();
    const EIEResult eResult = ReadLines(file, *pDataset);
    if (file.HasFailed())
        Note(TIENote::Refused, EIENote::FileReadFailed, file.GetLineNumber() + 1, {},
             "the rest of the file can't be read");
    Progress(file);
    return eResult;
}

void CIERecordImporter::NoteUnits() const
{
    const TIEJobInfo& info = *m_pData->GetJobInfo();
    const bool bLengths = m_Form.m_eNumbers == TIEReadForm::Lengths || m_Form.m_eNumbers == TIEReadForm::LengthsIfValid;
    if (bLengths && info.GetCSType() == TIEJobInfo::Geographic && IEUtils::ToMetersFactor(1, info.GetDistUnits()) != 1)
        Note(TIENote::Changed, EIENote::JobUnits, 0, {},
             "the form has no degrees: latitude and longitude are converted as lengths in the job's units");
}

EIEResult CIERecordImporter::ReadLines(CIETextFile& file, CIEDataset& dataset)
{
    constexpr std::int64_t kLinesBetweenReports = 1000;
    const std::uint64_t nLength = file.GetLength();
    EIEResult eResult = IE_NOTHING_DONE;
    std::string_view line;
    while (!CIEData::m_bStopProcess) {
        const bool bRead = file.ReadLine(line);
        if (!bRead)
            line = {};
        const bool bAtEnd = !bRead || file.GetPosition() == nLength;
        if (line.empty() && bAtEnd && !AwaitsLine()) {
            NoteEnd();
            break;
        }
        m_nLine = file.GetLineNumber();
        if (file.WasCut()) {
            Refuse(m_nLine, {}, EIENote::LineTooLong, "the line is longer than any record can be");
            return IE_BAD_CONTENT;
        }
        m_bMended = bRead && file.WasMended();
        if (m_bMended)
            m_strEncoding = file.GetEncoding();
        m_pPoint.reset();
        const EAnswer eAnswer = TakeLine(line);
        if (m_pPoint)
            dataset.Add(std::move(m_pPoint));
        if (eAnswer == Refused)
            return IE_BAD_CONTENT;
        if (eAnswer == NotOurs)
            return eResult;
        if (eAnswer != Passed)
            eResult = IE_OK;
        if (eAnswer == Closed) {
            NoteRest(file);
            break;
        }
        if (m_nLine % kLinesBetweenReports == 0)
            Progress(file);
    }
    return eResult;
}

void CIERecordImporter::NoteRest(CIETextFile& file) const
{
    std::string_view line;
    while (m_pData->GetObserver() && file.ReadLine(line)) {
        if (!IEUtils::Trim(line).empty()) {
            Note(TIENote::LeftOut, EIENote::LineBehindEnd, file.GetLineNumber(), {},
                 "the data ended ahead of this line; nothing from here on was read");
            return;
        }
    }
}

CIERecordImporter::EAnswer CIERecordImporter::TakeRecord(std::string_view text, std::int64_t nLine)
{
    TIEPointRecord record;
    if (!m_Reader.Read(text, record))
        return RefuseRecord(nLine, record.m_Name);
    KeepMended();
    TakePoint(record, nLine);
    return Taken;
}

void CIERecordImporter::TakePoint(const TIEPointRecord& record, std::int64_t nLine)
{
    m_pPoint = CIERecordReader::MakePoint(*m_pData, record);
    if (m_Form.m_dMissingHeight != 0.0 && record.m_dHeight == m_Form.m_dMissingHeight)
        Note(TIENote::Changed, EIENote::LineHeight, nLine, m_pPoint->GetName(),
             "it has no height; " + IEUtils::DoubleToString(m_Form.m_dMissingHeight, -1) + " m stands for that");
    for (const CIERecordReader::TDoubt& doubt : m_Reader.GetDoubts())
        Note(doubt.m_eKind, doubt.m_eCode, nLine, m_pPoint->GetName(), doubt.m_strReason);
    for (TLineNote& note : m_LineNotes)
        Note(note.m_eKind, note.m_eCode, note.m_nLine, m_pPoint->GetName(), std::move(note.m_strReason));
    m_LineNotes.clear();
}

void CIERecordImporter::KeepNote(TIENote::EKind eKind, EIENote eCode, CString strReason)
{
    m_LineNotes.push_back({eKind, eCode, m_nLine, std::move(strReason)});
}

void CIERecordImporter::KeepMended()
{
    if (m_bMended)
        KeepNote(TIENote::Changed, EIENote::LineBadCharacters,
                 "bytes without a meaning in " + m_strEncoding + " became U+FFFD");
}

CIERecordImporter::EAnswer CIERecordImporter::Refuse(std::int64_t nLine, CString strName, EIENote eCode,
                                                     CString strReason) const
{
    Note(TIENote::Refused, eCode, nLine, std::move(strName), std::move(strReason));
    return Refused;
}

CIERecordImporter::EAnswer CIERecordImporter::RefuseRecord(std::int64_t nLine, std::string_view name) const
{
    return Refuse(nLine, CString(name), m_Reader.GetRefusalCode(), m_Reader.GetRefusal());
}
