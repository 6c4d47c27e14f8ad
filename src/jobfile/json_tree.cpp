#include "jobfile/json_tree.h"

#include "jobfile/json_scanner.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <new>

namespace {

/// Up to here comparing each key with each other is cheaper than sorting.
constexpr std::size_t kFewKeys = 12;

} // namespace

void AppendJsonStep(CString& strPlace, std::string_view key)
{
    strPlace.push_back('/');
    for (const char c : key) {
        if (c == '~')
            strPlace.append("~0");
        else if (c == '/')
            strPlace.append("~1");
        else
            strPlace.push_back(c);
    }
}

void CIEJsonTree::Clear()
{
    m_Nodes.clear();
    m_Open.clear();
    m_Decoded.clear();
    m_strRootKey.clear();
    m_nRootIndex = 0;
}

void CIEJsonTree::SetRootKey(std::string_view key)
{
    m_strRootKey = key;
}

/// A text that lives as long as the tree's content.
std::string_view CIEJsonTree::Keep(const CIEJsonScanner& scanner)
{
    return scanner.IsInPlace() ? scanner.GetText() : m_Decoded.emplace_front(scanner.GetText());
}

CIEJsonTree::TNode& CIEJsonTree::Add(EType eType)
{
    if (m_Nodes.size() == std::numeric_limits<std::uint32_t>::max())
        throw std::bad_alloc();
    TNode& node = m_Nodes.emplace_back();
    node.m_eType = eType;
    node.m_nEnd = static_cast<std::uint32_t>(m_Nodes.size());
    if (!m_Open.empty()) {
        TNode& parent = m_Nodes[m_Open.back()];
        node.m_nParent = m_Open.back();
        node.m_nIndex = parent.m_nCount++;
        if (parent.m_eType == Object)
            node.m_Key = m_Key;
    }
    return node;
}

void CIEJsonTree::AddNumber(const CIEJsonScanner& scanner)
{
    TNode& node = Add(Number);
    node.m_dNumber = scanner.GetNumber();
    node.m_bFlag = scanner.IsWhole();
    node.m_Text = scanner.GetText();
}

void CIEJsonTree::Open(EType eType)
{
    Add(eType);
    m_Open.push_back(static_cast<std::uint32_t>(m_Nodes.size() - 1));
}

bool CIEJsonTree::Close(std::string_view& twice)
{
    const std::size_t i = m_Open.back();
    m_Nodes[i].m_nEnd = static_cast<std::uint32_t>(m_Nodes.size());
    if (m_Nodes[i].m_eType == Object) {
        m_Keys.clear();
        for (const CIEJsonValue member : CIEJsonValue(*this, i))
            m_Keys.push_back(member.GetKey());
        auto found = m_Keys.end();
        if (m_Keys.size() <= kFewKeys) {
            for (auto it = m_Keys.begin(); it != m_Keys.end() && found == m_Keys.end(); ++it)
                found = std::find_if(it + 1, m_Keys.end(), [it](std::string_view key) { return IsSameKey(key, *it); });
        } else {
            std::sort(m_Keys.begin(), m_Keys.end());
            found = std::adjacent_find(m_Keys.begin(), m_Keys.end());
        }
        if (found != m_Keys.end()) {
            twice = *found;
            return false;
        }
    }
    m_Open.pop_back();
    return true;
}

CString CIEJsonTree::GetOpenPlace() const
{
    return m_Open.empty() ? CString() : PlaceOf(m_Open.back());
}

CString CIEJsonTree::PlaceOf(std::size_t i) const
{
    std::vector<std::size_t> way;
    for (; i != 0; i = m_Nodes[i].m_nParent)
        way.push_back(i);
    CString strPlace;
    AppendJsonStep(strPlace, m_strRootKey.empty() ? std::to_string(m_nRootIndex) : m_strRootKey);
    for (auto it = way.rbegin(); it != way.rend(); ++it) {
        const TNode& node = m_Nodes[*it];
        const bool bMember = m_Nodes[node.m_nParent].m_eType == Object;
        AppendJsonStep(strPlace, bMember ? CString(node.m_Key) : std::to_string(node.m_nIndex));
    }
    return strPlace;
}

bool CIEJsonValue::GetWhole(std::int64_t& nValue) const
{
    const CIEJsonTree::TNode& node = Node();
    nValue = 0;
    return node.m_eType == CIEJsonTree::Number && node.m_bFlag &&
           std::from_chars(node.m_Text.data(), node.m_Text.data() + node.m_Text.size(), nValue).ec == std::errc();
}

CIEJsonValue::CIterator& CIEJsonValue::CIterator::operator++()
{
    m_i = m_pTree->m_Nodes[m_i].m_nEnd;
    return *this;
}

CIEJsonValue::CIterator CIEJsonValue::Find(std::string_view key) const
{
    auto it = begin();
    while (it != end() && (*it).GetKey() != key)
        ++it;
    return it;
}
