// JSON text cut into its tokens.
#pragma once

#include "alidade/vellumlib/types.h"

#include <cstdint>
#include <string_view>

/// Walks once over a text that stays in memory and holds its grammar against it, strictly: no comments, no comma too
/// many, UTF-8 alone. Gives one token after another and needs no memory but for the longest text with an escape in it.
class CIEJsonScanner {
public:
    enum EToken : std::uint8_t {
        OpenObject,
        CloseObject,
        OpenArray,
        CloseArray,
        Key,
        Text,
        Number,
        Flag,
        Null,
        End,
        Broken
    };
    /// Arrays and objects within each other; one deeper ends in TooDeep().
    static constexpr std::size_t kDeepest = 32;

    /// The text outlives the scanner; a mark of UTF-8 ahead is passed over.
    explicit CIEJsonScanner(std::string_view text);

    /// The next token. End comes once behind the value that the text is; behind End and Broken there is nothing.
    EToken Next();

    /// Of a Key or a Text, valid until the next one unless IsInPlace; of a Number its digits, which are in place.
    [[nodiscard]] std::string_view GetText() const { return m_Token; }
    /// The token's text is a piece of the whole text.
    [[nodiscard]] bool IsInPlace() const { return m_bInPlace; }
    [[nodiscard]] double GetNumber() const { return m_dNumber; }
    /// The number has neither a point nor an exponent.
    [[nodiscard]] bool IsWhole() const { return m_bWhole; }
    [[nodiscard]] bool GetFlag() const { return m_bFlag; }

    /// Broken because of the depth, not the grammar.
    [[nodiscard]] bool IsTooDeep() const { return m_bTooDeep; }
    /// Of what broke: "line 3, column 7", where columns count characters, and a sentence.
    [[nodiscard]] CString GetPlace() const;
    [[nodiscard]] const char* GetReason() const { return m_pReason; }

private:
    /// What may come next.
    enum EState : std::uint8_t { Value, FirstKey, NextKey, FirstElement, AfterValue, Done };

    EToken Fail(const char* pWhere, const char* pReason);
    EToken FailUnexpected(const char* pReason);
    void SkipBlanks();
    EToken ReadValue();
    EToken ReadKey();
    EToken OpenLevel(bool bObject);
    EToken CloseLevel(bool bObject);
    EToken ReadWord(std::string_view word, EToken eToken);
    EToken ReadNumber();
    bool SkipDigits();
    EToken ReadText(EToken eToken);
    bool ReadEscape();
    bool ReadHex(char32_t& c);
    bool SkipCharacter();
    [[nodiscard]] bool IsInObject() const { return m_nDepth > 0 && m_Objects[m_nDepth - 1]; }

    const char* m_pBegin;
    const char* m_p;
    const char* m_pEnd;
    EState m_eState = Value;
    bool m_bFlag = false;
    bool m_bInPlace = true;
    bool m_bWhole = false;
    bool m_bTooDeep = false;
    bool m_Objects[kDeepest] = {}; // of the open ones: an object, or an array
    std::size_t m_nDepth = 0;
    std::string_view m_Token; // text, or digits of a number
    double m_dNumber = 0.0;
    CString m_strDecoded;
    const char* m_pBroken = nullptr;
    const char* m_pReason = "";
};

/// Bytes of the character of UTF-8 that a text begins with, 0 if there is none.
[[nodiscard]] std::size_t GetCharacterLength(std::string_view text);
