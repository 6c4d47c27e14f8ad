#include "jobfile/json_tree.h"

#include <algorithm>

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
    m_strTexts.clear();
    m_strRootKey.clear();
    m_nRootIndex = 0;
    m_nKeyLength = 0;
}

void CIEJsonTree::SetRootKey(std::string_view key)
{
    m_strRootKey = key;
}

void CIEJsonTree::AddKey(std::string_view key)
{
    m_nKey = m_strTexts.size();
    m_nKeyLength = key.size();
    m_strTexts.append(key);
}

std::size_t CIEJsonTree::Add(EType eType)
{
    const std::size_t i = m_Nodes.size();
    TNode& node = m_Nodes.emplace_back();
    node.m_eType = eType;
    node.m_nEnd = i + 1;
    if (!m_Open.empty()) {
        TNode& parent = m_Nodes[m_Open.back()];
        node.m_nParent = m_Open.back();
        node.m_nIndex = parent.m_nCount++;
        if (parent.m_eType == Object) {
            node.m_nKey = m_nKey;
            node.m_nKeyLength = m_nKeyLength;
        }
    }
    return i;
}

void CIEJsonTree::AddWhole(std::int64_t nValue)
{
    TNode& node = m_Nodes[Add(Number)];
    node.m_bWhole = true;
    node.m_nWhole = nValue;
    node.m_dNumber = static_cast<double>(nValue);
}

void CIEJsonTree::AddText(std::string_view text)
{
    TNode& node = m_Nodes[Add(Text)];
    node.m_nText = m_strTexts.size();
    node.m_nTextLength = text.size();
    m_strTexts.append(text);
}

bool CIEJsonTree::Close(std::string_view& twice)
{
    const std::size_t i = m_Open.back();
    m_Nodes[i].m_nEnd = m_Nodes.size();
    if (m_Nodes[i].m_eType == Object) {
        m_Keys.clear();
        for (const CIEJsonValue member : CIEJsonValue(*this, i))
            m_Keys.push_back(member.GetKey());
        auto found = m_Keys.end();
        if (m_Keys.size() <= kFewKeys) {
            for (auto it = m_Keys.begin(); it != m_Keys.end() && found == m_Keys.end(); ++it)
                found = std::find(it + 1, m_Keys.end(), *it);
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

std::string_view CIEJsonTree::KeyOf(const TNode& node) const
{
    return std::string_view(m_strTexts).substr(node.m_nKey, node.m_nKeyLength);
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
        AppendJsonStep(strPlace, bMember ? CString(KeyOf(node)) : std::to_string(node.m_nIndex));
    }
    return strPlace;
}

bool CIEJsonValue::GetWhole(std::int64_t& nValue) const
{
    nValue = Node().m_nWhole;
    return Node().m_bWhole;
}

std::string_view CIEJsonValue::GetText() const
{
    return std::string_view(m_pTree->m_strTexts).substr(Node().m_nText, Node().m_nTextLength);
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
