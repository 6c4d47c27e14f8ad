// JSON text under construction.
#pragma once

#include "alidade/vellumlib/types.h"

#include <cstdint>
#include <string_view>

/// Takes finished pieces of the text. False once one couldn't be taken.
class IIEJsonSink {
public:
    virtual ~IIEJsonSink() = default;
    virtual bool Take(std::string_view piece) = 0;
};

/// Keeps the text.
class CIEJsonString : public IIEJsonSink {
public:
    bool Take(std::string_view piece) override
    {
        m_strText.append(piece);
        return true;
    }
    CString m_strText;
};

/// Writes JSON in order, with commas and indents of its own. The big frame stands one member a line, everything within
/// a compact value on one line. The sink outlives it.
class CIEJsonText {
public:
    enum EStyle { Lines, Compact };

    explicit CIEJsonText(IIEJsonSink& sink) : m_Sink(sink) {}

    /// Name of the next value; only within an object.
    void Key(std::string_view key);
    /// Within a compact value, Lines is Compact too.
    void BeginObject(EStyle eStyle = Compact) { Begin('{', eStyle); }
    /// An object under a key that comes into being with its first member; without any there is neither key nor object.
    void BeginOptionalObject(const char* pKey, EStyle eStyle);
    void EndObject();
    void BeginArray(EStyle eStyle = Compact) { Begin('[', eStyle); }
    void EndArray() { End(']'); }
    /// Shortest digits that read back as the same number; 0 for one that isn't finite, because JSON has none.
    void Number(double dValue);
    void Whole(std::int64_t nValue);
    void Flag(bool bValue);
    /// Bytes that aren't UTF-8 become U+FFFD.
    void Text(std::string_view text);

    /// How many numbers and texts weren't what JSON can hold.
    [[nodiscard]] std::int64_t GetMended() const { return m_nMended; }

    /// Hands what is left to the sink. False if any piece wasn't taken.
    bool Finish();

private:
    struct TLevel {
        bool m_bLines;
        bool m_bEmpty;
    };
    void Begin(char cBracket, EStyle eStyle);
    void End(char cBracket);
    void StartValue();
    void NewLine();
    void AppendQuoted(std::string_view text);

    IIEJsonSink& m_Sink;
    CString m_strBuffer;
    std::vector<TLevel> m_Levels;
    const char* m_pPendingKey = nullptr; // of an optional object without members so far
    EStyle m_ePendingStyle = Compact;
    std::int64_t m_nMended = 0;
    bool m_bAfterKey = false;
    bool m_bTaken = true;
};
