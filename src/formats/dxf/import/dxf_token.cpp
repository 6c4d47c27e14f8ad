#include "alidade/formats/dxf/import/dxf_token.h"

namespace {

using TItem = TTokenTable::TItem;

constexpr TItem kWords[] = {
    {"$ACADVER", TToken::ACADVER},     {"ARC", TToken::ARC},           {"ATTDEF", TToken::ATTDEF},
    {"ATTRIB", TToken::ATTRIB},        {"BLOCK", TToken::BLOCK},       {"BLOCKS", TToken::BLOCKS},
    {"CIRCLE", TToken::CIRCLE},        {"CLASS", TToken::CLASS},       {"CLASSES", TToken::CLASSES},
    {"$DIMENSION", TToken::DIMENSION}, {"ENDBLK", TToken::ENDBLK},     {"ENDSEC", TToken::ENDSEC},
    {"SEQEND", TToken::SEQEND},        {"ENDTAB", TToken::ENDTAB},     {"ENTITIES", TToken::ENTITIES},
    {"EOF", TToken::END_OF_FILE},      {"$EXTMAX", TToken::EXTMAX},    {"$EXTMIN", TToken::EXTMIN},
    {"3DFACE", TToken::FACE3D},        {"HEADER", TToken::HEADER},     {"INSERT", TToken::INSERT},
    {"LAYER", TToken::LAYER},          {"LINE", TToken::LINE},         {"3DLINE", TToken::LINE3D},
    {"$LIMMIN", TToken::LIMMIN},       {"$LIMMAX", TToken::LIMMAX},    {"LTYPE", TToken::LTYPE},
    {"POINT", TToken::POINT},          {"POLYLINE", TToken::POLYLINE}, {"LWPOLYLINE", TToken::LWPOLYLINE},
    {"SECTION", TToken::SECTION},      {"SHAPE", TToken::SHAPE},       {"STYLE", TToken::STYLE},
    {"TABLE", TToken::TABLE},          {"TABLES", TToken::TABLES},     {"TEXT", TToken::TEXT},
    {"VERTEX", TToken::VERTEX},        {"VIEW", TToken::VIEW},         {nullptr, TToken::NONE},
};

/// Bit of a word's first character; none for characters beyond the upper case letters, which no word begins with.
std::uint64_t BitOf(char c)
{
    constexpr unsigned kBits = 64;
    const unsigned nBit = static_cast<unsigned char>(c) - static_cast<unsigned>('!');
    return nBit < kBits ? std::uint64_t{1} << nBit : 0;
}

} // namespace

TTokenTable TToken::m_Table(kWords);

TToken::EToken TToken::FindToken(char* pText)
{
    char* p = pText;
    for (; *p; ++p)
        *p = *p >= 'a' && *p <= 'z' ? static_cast<char>(*p - ('a' - 'A')) : *p;
    return m_Table.Find({pText, static_cast<std::size_t>(p - pText)});
}

TToken::EToken TToken::GetStringToken()
{
    return m_Value.m_pText ? FindToken(m_Value.m_pText) : NONE;
}

TTokenTable::TTokenTable(const TItem* pItems)
{
    for (; pItems->m_pWord; ++pItems)
        AddItem(*pItems);
}

std::size_t TTokenTable::BucketOf(std::string_view word)
{
    std::size_t nHash = 0;
    for (const char c : word)
        nHash = nHash * 31 + static_cast<unsigned char>(c);
    return nHash % kBuckets;
}

void TTokenTable::AddItem(const TItem& item)
{
    const std::string_view word = item.m_pWord;
    const std::uint64_t nBit = word.empty() ? 0 : BitOf(word[0]);
    if (nBit == 0 || word.size() > kLongestWord)
        return; // no value could be found by it
    m_FirstCharacters[word.size()] |= nBit;
    m_Buckets[BucketOf(word)].push_back(item);
}

TToken::EToken TTokenTable::Find(std::string_view word) const
{
    if (word.empty() || word.size() > kLongestWord || (m_FirstCharacters[word.size()] & BitOf(word[0])) == 0)
        return TToken::NONE;
    for (const TItem& item : m_Buckets[BucketOf(word)]) {
        if (item.m_pWord == word)
            return item.m_eToken;
    }
    return TToken::NONE;
}
