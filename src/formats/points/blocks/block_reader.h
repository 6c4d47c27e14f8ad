// The text of a file of blocks.
#pragma once

#include "alidade/platform/file.h"
#include "alidade/vellumlib/text_file.h"
#include "vellumlib/code_page.h"

#include <string_view>

namespace Blocks {

/// Gives the text of a file block by block. A start character empties the text that stands ahead of it, a line feed
/// ends a block, and of a block the first 128 characters count, so that its digit and its check are passed over. A
/// character is a byte, unless the block has more bytes than its frame has places. 16-bit text is taken as the text
/// that it is.
class CReader {
public:
    /// With `bLines` a line counts whole as long as the file has had no start character, and the last one may lack its
    /// end.
    explicit CReader(bool bLines) : m_bLines(bLines) {}

    /// Opens with writers denied (see CIEFileReader).
    [[nodiscard]] bool Open(const CString& strFileName, CIECodePage& codePage);
    /// Text of the next block; the mark that ends a stream is passed over. False, with no text, at the end of the file.
    bool Read(CString& text);

    /// Number of the block or line last read, counted from 1.
    [[nodiscard]] std::int64_t GetLineNumber() const { return m_nLine; }
    [[nodiscard]] std::uint64_t GetPosition() const;
    [[nodiscard]] std::uint64_t GetLength() const { return m_File.GetLength(); }
    [[nodiscard]] bool HasFailed() const { return m_File.HasFailed(); }
    /// True if the block last read stands in no frame, though blocks ahead did.
    [[nodiscard]] bool IsForeign() const { return m_bFramed && !m_bBlockFramed; }
    /// True if the block last read held more than a block or a line can.
    [[nodiscard]] bool WasCut() const { return m_bCut; }
    /// True if the file ended within a block, whose text isn't given.
    [[nodiscard]] bool WasUnfinished() const { return m_bUnfinished; }

private:
    bool ReadBlock(CString& text);
    void Add(std::string_view bytes);
    void Finish(CString& text);

    CIEFileReader m_File;
    CIETextFile m_TextFile; ///< 16-bit text
    CIECodePage* m_pCodePage = nullptr;
    bool m_bLines;
    bool m_bUnicode = false;
    bool m_bFramed = false;      ///< a start character has been seen in the file
    bool m_bBlockFramed = false; ///< and in the block
    bool m_bCut = false;
    bool m_bUnfinished = false;
    std::int64_t m_nLine = 0;
    CString m_strBlock; ///< text, digit and check of the block that is being read
};

} // namespace Blocks
