// A stream of text cut into framed blocks of 128 characters.
#pragma once

#include "vellumlib/code_page.h"
#include "vellumlib/string_a.h"

#include <cstddef>
#include <string_view>

class CIEFileWriter;

/// Cuts what it is given into blocks: a start character, 128 characters of text filled up with blanks, a running digit,
/// the check in three digits or more, an end character, CR LF.
class CIEBlockFramer {
public:
    static constexpr std::size_t kTextLength = 128; ///< characters of text in a block
    static constexpr char kStart = '\x02';
    static constexpr char kEnd = '\x03';
    static constexpr char kStreamEnd = '\x04'; ///< behind the last block of a stream of bytes, with CR LF

    enum class EUnit {
        Byte,      ///< a character is a byte; the check is the XOR of the bytes
        Character, ///< the text is UTF-8 and a character is a code point; the check is the XOR of its 16-bit values
    };

    explicit CIEBlockFramer(EUnit eUnit) : m_eUnit(eUnit) {}

    void Add(std::string_view text);
    /// Characters that wait for their block.
    [[nodiscard]] std::size_t GetLength() const { return m_nLength; }
    /// Appends the next block to `out`. False, with nothing done, while there is less than a block; `bFlush` makes a
    /// block of whatever there is, and of nothing.
    bool Take(CString& out, bool bFlush);

private:
    EUnit m_eUnit;
    IEUtils::TStringA m_Buffer;
    std::size_t m_nLength = 0;
    int m_nBlockNumber = 0; ///< 0 to 9
};

/// Writes text as blocks of bytes in a code page, with an end mark behind the last one.
class CIEBlockWriter {
public:
    explicit CIEBlockWriter(const CString& codePage) : m_CodePage(codePage), m_Framer(CIEBlockFramer::EUnit::Byte) {}

    /// Adds text to the stream and writes the blocks that it fills; less than one block waits for more. `bLast` writes
    /// what waits, be it nothing, and the end mark. True whatever the file gave: it keeps a failure in mind until it is
    /// closed.
    bool WriteBlock(CIEFileWriter& file, std::string_view text, bool bLast);
    /// Adds text that goes out with the next block.
    void Add(std::string_view text) { m_Framer.Add(m_CodePage.ToBytes(text)); }
    [[nodiscard]] CIECodePage& GetCodePage() { return m_CodePage; }

private:
    CIECodePage m_CodePage;
    CIEBlockFramer m_Framer;
    CString m_strBlock;
};
