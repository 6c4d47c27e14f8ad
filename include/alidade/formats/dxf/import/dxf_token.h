// What a drawing file consists of: groups, each a code and a value, and the words among the values that say what comes.
#pragma once

#include "alidade/platform/api.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

class TTokenTable;

/// One group of a drawing.
class ALIDADE_API TToken {
public:
    /// The words that a reader of drawings knows.
    enum EToken : int {
        NONE = 0, ///< no word of these, or no text
        ACADVER,  ///< "$ACADVER"
        ARC,
        ATTDEF,
        ATTRIB,
        BLOCK,
        BLOCKS,
        CIRCLE,
        CLASS,
        CLASSES,
        DIMENSION, ///< "$DIMENSION"
        ENDBLK,
        ENDSEC,
        SEQEND,
        ENDTAB,
        ENTITIES,
        END_OF_FILE, ///< "EOF", and the end of the file itself
        EXTMAX,      ///< "$EXTMAX"
        EXTMIN,      ///< "$EXTMIN"
        FACE3D,      ///< "3DFACE"
        HEADER,
        INSERT,
        LAYER,
        LINE,
        LINE3D, ///< "3DLINE"
        LIMMIN, ///< "$LIMMIN"
        LIMMAX, ///< "$LIMMAX"
        LTYPE,
        POINT,
        POLYLINE,
        LWPOLYLINE,
        SECTION,
        SHAPE,
        STYLE,
        TABLE,
        TABLES,
        TEXT,
        VERTEX,
        VIEW,
    };
    /// Which of them is meant is told by the group code; a code without a value has a null text.
    union UValue {
        char* m_pText = nullptr; ///< ends with a zero; lies in the reader and is valid until the next token is read
        double m_dValue;         ///< always finite
        std::int32_t m_nValue;
    };

    /// The words by number, filled when the library is loaded.
    static TTokenTable m_Table;

    std::int32_t m_nCode = -1; ///< -1 in a new token and at the end of the file
    EToken m_eToken = NONE;
    UValue m_Value;

    /// The word that the token's own text is, which is turned into upper case in place. For codes that have a text.
    EToken GetStringToken();
    /// The token's text, empty where it has none. For codes that have a text.
    [[nodiscard]] std::string_view GetText() const
    {
        return m_Value.m_pText ? std::string_view(m_Value.m_pText) : std::string_view();
    }

private:
    friend class CDXFReader;
    static EToken FindToken(char* pText);
};

/// Words and their numbers, found by hash. One thread may add while no other looks.
class ALIDADE_API TTokenTable {
public:
    struct TItem {
        const char* m_pWord; ///< in upper case, lives for ever
        TToken::EToken m_eToken;
    };
    TTokenTable() = default;
    /// Adds the items of a list that ends with a null word.
    explicit TTokenTable(const TItem* pItems);

    /// Of two items with one word the first counts.
    void AddItem(const TItem& item);
    /// NONE for a word that isn't there.
    [[nodiscard]] TToken::EToken Find(std::string_view word) const;

private:
    static constexpr std::size_t kBuckets = 17;
    static constexpr std::size_t kLongestWord = 16;
    static std::size_t BucketOf(std::string_view word);

    std::array<std::vector<TItem>, kBuckets> m_Buckets;
    /// For each length the first characters of the words that have it, as bits from "!" on: most texts are no words,
    /// and this tells.
    std::array<std::uint64_t, kLongestWord + 1> m_FirstCharacters{};
};
