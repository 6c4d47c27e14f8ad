// Telling forms by the first bytes of a file.

#include "support.h"

#include "alidade/transfer/format_table.h"
#include "frame/file_head.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    const std::string_view head(reinterpret_cast<const char*>(pData), nSize);
    for (const TIEFormatRow& row : CIEFormatTable::GetRows()) {
        if (!row.m_pRecognize)
            continue;
        const EIERecognition eAnswer = row.m_pRecognize(head);
        Require(eAnswer >= EIERecognition::No && eAnswer <= EIERecognition::Surely, "an answer is one of three");
        Require(row.m_pRecognize(head) == eAnswer, "the same head gives the same answer");
    }
    FileHead::GetXmlRoot(head);
    FileHead::GetFirstGroup(head);
    CIEHeadLines lines(head);
    std::size_t nCount = 0;
    for (std::string_view line; lines.Next(line); ++nCount)
        Require(line.find_first_of("\r\n") == std::string_view::npos, "a line holds no line end");
    Require(nCount <= nSize + 1, "there are no more lines than bytes");
    return 0;
}
