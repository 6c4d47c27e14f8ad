// Every importer of the format table: --format=<key> says which one this process feeds.
//
// The first four bytes of the input choose settings, the rest is the file, or the files of a form that has several.
// What comes in is checked and written out again by the form's exporter; if nothing was reported as lost on the way,
// reading that file must give the same objects, and writing those the same bytes.

#include "job_checks.h"
#include "support.h"

#include "alidade/transfer/entries.h"
#include "alidade/transfer/format_table.h"
#include "transfer/factory.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iterator>

namespace {

using enum IEAsciiFields::EType;

const IEAsciiFields::TFields kLayouts[] = {
    {Name, North, East, Height, CodesWithAll},
    {Name, North, East, Height, Codes},
    {Name, North, East, Height},
    {CodesWithAll, Name, North, East, Height},
    {Name, North, East, Height, GeoidHeight, Notes, CodesWithAttributes},
    {Name, North, East, Height, CodesWithStrings},
    {North, East, Height},
    {Name, Notes},
    {Name, Codes, North, East, CodesWithAll},
    {},
    {HorizontalRMS, GlonassSatellites, Name},
    {Name, LastField},
    {Name},
    {CodesWithAll},
    {Notes, CodesWithAttributes, Name, North, East},
    {East, North, Name, Height, Name},
};
constexpr char16_t kDelimiters[] = {u',', u';', u'\t', u' ', u'|', u'\u00A6', u':', u'"'};
constexpr int kDecimals[] = {3, -1, 0, 2, 4, 6, 9, 12};
constexpr const char* kCodePages[] = {"CP1252", "UTF-8", "SHIFT_JIS", "no such page"};

const TIEFormatRow* g_pRow = nullptr; ///< of the importer that is fed

/// What stands behind the name of each file of a form; most have one file with the name as it is.
CStringArray Endings()
{
    if (g_pRow->m_pKey == std::string_view("cor-lev"))
        return {".cor", ".lev"};
    return {""};
}

/// Puts the input into the files; form feeds part it.
void WriteFiles(const CString& strName, std::string_view input)
{
    const CStringArray endings = Endings();
    for (const CString& strEnding : endings) {
        const std::size_t nEnd =
            &strEnding == &endings.back() ? input.size() : std::min(input.find('\f'), input.size());
        Scratch::Write(strName + strEnding, input.substr(0, nEnd));
        input.remove_prefix(std::min(nEnd + 1, input.size()));
    }
}

CString ReadFiles(const CString& strName)
{
    CString bytes;
    for (const CString& strEnding : Endings())
        bytes += Scratch::Read(strName + strEnding);
    return bytes;
}

/// Takes the four bytes. "0000" is a job in metres with the settings of a new one.
void TakeSettings(CFuzzInput& input, CIEData& job)
{
    const unsigned nLayout = input.TakeChoice();
    const unsigned nFlags = input.TakeChoice();
    const unsigned nUnits = input.TakeChoice();
    const unsigned nTexts = input.TakeChoice();

    TIESettings settings;
    settings.m_pAsciiFormat = std::make_unique<TIEAsciiFormat>();
    settings.m_pAsciiFormat->m_Fields = kLayouts[nLayout % std::size(kLayouts)];
    settings.m_pAsciiFormat->m_cDelimiter = kDelimiters[nFlags % std::size(kDelimiters)];
    settings.m_pAsciiFormat->m_bWriteHeader = (nFlags & 0x40U) != 0;
    settings.m_bAttrTypes = (nFlags & 0x10U) != 0;
    settings.m_bAttrQuotes = (nFlags & 0x20U) != 0;
    settings.m_eCoordsStyle = static_cast<ECOORDS_STYLE>(nUnits / 8 % 6);
    settings.m_nNorthDecimals = settings.m_nEastDecimals = settings.m_nHeightDecimals =
        kDecimals[nTexts % std::size(kDecimals)];
    settings.m_nMostBlockCopies = 2000; // more teach nothing
    settings.m_strCodePage = kCodePages[nTexts / std::size(kDecimals) % std::size(kCodePages)];
    job.SetSettings(std::move(settings));

    TIEJobInfo& info = *job.GetJobInfo();
    info.SetCSType((nFlags & 0x08U) != 0 ? TIEJobInfo::Geographic : TIEJobInfo::Plane);
    info.SetDistUnits(nUnits % 8 == 0 ? EDIST_UNITS::Meters : static_cast<EDIST_UNITS>(nUnits % 8 - 1));
}

EIEResult Import(CIEData& job, const CString& strFile)
{
    const EIEResult eResult = ImportInTheSameThread(&job, strFile, g_pRow->m_nCode);
    const bool bTooManyCopies = eResult == IE_OUT_OF_MEMORY && g_pRow->m_pKey == std::string_view("dxf");
    Require(eResult == IE_OK || eResult == IE_PARTIAL || eResult == IE_BAD_CONTENT || eResult == IE_NOTHING_DONE ||
                bTooManyCopies,
            "an import of a file that is there ends in one of four results");
    CheckJob(job);
    return eResult;
}

/// Writes the current dataset.
EIEResult Export(CIEData& job, const TIEFormatRow& row, const CString& strFile)
{
    const EIEResult eResult = CreateExporter(&job, strFile, row.m_nCode)->Export();
    Require(eResult == IE_OK || eResult == IE_VALUE_TOO_WIDE || eResult == IE_NOTHING_TO_EXPORT,
            "an export of an imported job ends in one of three results");
    return eResult;
}

/// True if all of the dataset is in the file.
bool ExportWhole(CIEData& job, const TIEFormatRow& row, const CString& strFile)
{
    CIELedger ledger;
    job.SetObserver(&ledger);
    const EIEResult eResult = Export(job, row, strFile);
    job.SetObserver(nullptr);
    return eResult == IE_OK && ledger.IsEmpty();
}

/// A number just below 0 may go out as 0 with its sign, and come back without it.
bool HasSmallNegative(CIEData& job)
{
    const auto isSmall = [](double dValue) { return dValue < 0 && dValue > -0.001; };
    const CIEDataset* const pDataset = job.GetCurDataset(false);
    for (int i = 0; const CIEObject* const pObject = pDataset ? pDataset->GetObjectAt(i) : nullptr; ++i) {
        for (int j = 0; const CIEStation* const pStation = pObject->GetStation(j); ++j) {
            if (isSmall(pStation->m_dNorth) || isSmall(pStation->m_dEast) || isSmall(pStation->GetHeight()))
                return true;
        }
    }
    return false;
}

/// A drawing takes far longer to write than a small input takes to read, so one in eight is written.
bool IsWrittenBack(std::string_view input)
{
    return g_pRow->m_pKey != std::string_view("dxf") || std::hash<std::string_view>{}(input) % 8 == 0;
}

void CheckWayBack(CIEData& job)
{
    const TIEFormatRow* const pExport = CIEFormatTable::FindByKey(EIEDirection::Export, g_pRow->m_pKey);
    if (!pExport || !pExport->IsBuilt())
        return;
    static const std::string strFirst = Scratch::MakePath("first");
    static const std::string strSecond = Scratch::MakePath("second");
    if (!ExportWhole(job, *pExport, strFirst))
        return;

    CIEData again;
    again.SetSettings(job.GetCopyOfSettings());
    *again.GetJobInfo() = *job.GetJobInfo();
    const EIEResult eResult = Import(again, strFirst);
    Require(eResult == IE_OK || eResult == IE_NOTHING_DONE, "a file that lacks nothing is read without a fault");
    // a drawing comes back in upper case, and objects with codes as copies of blocks that come with them
    if (g_pRow->m_pKey == std::string_view("dxf"))
        return;
    CheckSameObjects(job, again);
    Export(again, *pExport, strSecond);
    // the last digits of a conversion may show, where many decimals are asked for
    if (job.GetJobInfo()->GetCSType() == TIEJobInfo::Plane && job.GetJobInfo()->GetDistUnits() == EDIST_UNITS::Meters &&
        !HasSmallNegative(job))
        RequireEqual(ReadFiles(strFirst), ReadFiles(strSecond), "a second export gives the same file");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* pCount, char*** pArgs)
{
    constexpr std::string_view kOption = "--format=";
    for (int i = 1; i < *pCount; ++i) {
        const std::string_view argument = (*pArgs)[i];
        if (argument.starts_with(kOption))
            g_pRow = CIEFormatTable::FindByKey(EIEDirection::Import, argument.substr(kOption.size()));
    }
    if (g_pRow && g_pRow->IsBuilt())
        return 0;
    std::fputs("say --format=<key>, one of", stderr);
    for (const TIEFormatRow& row : CIEFormatTable::GetRows()) {
        if (row.m_eDirection == EIEDirection::Import && row.IsBuilt())
            std::fprintf(stderr, " %s", row.m_pKey);
    }
    std::fputs("\n", stderr);
    std::exit(2);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    static const std::string strFile = Scratch::MakePath("input");
    CFuzzInput input(pData, nSize);
    CIEData job;
    TakeSettings(input, job);
    WriteFiles(strFile, input.GetRest());
    Import(job, strFile);
    if (IsWrittenBack({reinterpret_cast<const char*>(pData), nSize}))
        CheckWayBack(job);
    return 0;
}
