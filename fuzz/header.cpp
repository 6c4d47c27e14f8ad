// The header line of delimited text and the words for its fields.

#include "support.h"

#include "alidade/vellumlib/utils.h"
#include "frame/point_importer.h"
#include "transfer/factory.h"

namespace {

constexpr int kDelimited = 0; ///< format code, both directions

void CheckWords(std::string_view text)
{
    IEAsciiFields::TFields fields{IEAsciiFields::Notes};
    const bool bRead = IEAsciiFields::StringToFields(text, fields);
    Require(bRead != fields.empty(), "words that can't be read leave no field");
    for (const IEAsciiFields::EType field : fields)
        Require(field >= IEAsciiFields::Name && field <= IEAsciiFields::LastField, "a field is one of those known");
    if (!bRead)
        return;
    IEAsciiFields::TFields again;
    Require(IEAsciiFields::StringToFields(IEAsciiFields::FieldsToString(fields), again) && again == fields,
            "written words give the same fields");
}

/// Whether the line of a header can hold the delimiter: not a line end, and no half of a character.
bool IsWritable(char16_t cDelimiter)
{
    return cDelimiter != u'\r' && cDelimiter != u'\n' && cDelimiter != 0 &&
           IEUtils::StringToChar(IEUtils::CharToString(cDelimiter)) == cDelimiter;
}

/// Writes a header line and reads it again.
void CheckLayout(const TIEAsciiFormat& format)
{
    static const std::string strFile = Scratch::MakePath("written");
    if (!IsWritable(format.m_cDelimiter))
        return;
    CIEData job;
    TIESettings settings;
    settings.m_pAsciiFormat = std::make_unique<TIEAsciiFormat>(format);
    settings.m_pAsciiFormat->m_bWriteHeader = true;
    job.SetSettings(std::move(settings));
    job.GetCurDataset(true);
    CreateExporter(&job, strFile, kDelimited)->Export();

    CIEData again;
    CreateImporter(&again, strFile, kDelimited)->Import();
    const TIEAsciiFormat& read = again.GetSettings().GetAsciiFormat();
    Require(read.m_cDelimiter == format.m_cDelimiter && read.m_Fields == format.m_Fields,
            "a written header tells the same layout");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    static const std::string strFile = Scratch::MakePath("input");
    const std::string_view text(reinterpret_cast<const char*>(pData), nSize);
    CheckWords(text);

    Scratch::Write(strFile, text);
    CIEData job;
    CreateImporter(&job, strFile, kDelimited)->Import();
    const TIEAsciiFormat& format = job.GetSettings().GetAsciiFormat();
    if (!(format == TIEAsciiFormat()) && !format.m_Fields.empty())
        CheckLayout(format);
    return 0;
}
