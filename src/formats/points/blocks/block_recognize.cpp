#include "formats/points/blocks/block_recognize.h"

#include "formats/points/blocks/block_record.h"
#include "frame/block_writer.h"
#include "frame/file_head.h"

#include <algorithm>

namespace {

enum class EForm { None, Any, Wide, Fgh, Xyz };

/// Text of the first blocks, or of the first lines where nothing is framed.
CString JoinText(std::string_view head, bool& bFramed)
{
    constexpr std::size_t kEnough = 1024; // a few records
    const CString strHead = FileHead::ToText(head);
    const std::string_view text = strHead;
    bFramed = text.starts_with(CIEBlockFramer::kStart);
    if (!bFramed)
        return CString(text.substr(0, kEnough));
    CString joined;
    for (std::size_t n = 0; n != text.npos && joined.size() < kEnough; n = text.find(CIEBlockFramer::kStart, n + 1)) {
        const std::string_view block = text.substr(n + 1, CIEBlockFramer::kTextLength);
        joined += block.substr(0, block.find(CIEBlockFramer::kEnd));
    }
    return joined;
}

EForm LookAtBlocks(std::string_view head)
{
    bool bFramed = false;
    const CString strText = JoinText(head, bFramed);
    std::string_view text = strText;
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    // the mark alone is the wide form without a point
    if (text.find_first_not_of("_ ") == text.npos)
        return bFramed ? EForm::Any : EForm::None;
    if (text.starts_with(Blocks::MarkerOf(Blocks::EDialect::Wide)))
        return EForm::Wide;
    if (!text.starts_with(Blocks::MarkerOf(Blocks::EDialect::Narrow)))
        return EForm::None;
    // the first field behind the name, with or without a blank behind its mark
    const std::size_t nMark = text.find('_', 2);
    std::string_view field = text.substr(std::min(nMark, text.size() - 1) + 1);
    if (field.starts_with(' '))
        field.remove_prefix(1);
    if (field.starts_with('f'))
        return EForm::Fgh;
    return field.starts_with('x') ? EForm::Xyz : EForm::None;
}

EIERecognition Recognize(std::string_view head, EForm eForm)
{
    const EForm eFound = LookAtBlocks(head);
    if (eFound == EForm::Any)
        return EIERecognition::Perhaps;
    return eFound == eForm ? EIERecognition::Surely : EIERecognition::No;
}

} // namespace

EIERecognition RecognizeBlockWide(std::string_view head)
{
    return Recognize(head, EForm::Wide);
}

EIERecognition RecognizeBlockFgh(std::string_view head)
{
    return Recognize(head, EForm::Fgh);
}

EIERecognition RecognizeBlockXyz(std::string_view head)
{
    return Recognize(head, EForm::Xyz);
}
