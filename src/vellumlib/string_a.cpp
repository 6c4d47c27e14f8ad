#include "vellumlib/string_a.h"

#include <algorithm>

namespace IEUtils {

void TStringA::Extract(TStringA& target, std::size_t nCount)
{
    const std::string_view taken = data().substr(0, nCount);
    target.m_Bytes = taken;
    target.m_nStart = 0;
    m_nStart += taken.size();
    if (m_nStart == m_Bytes.size())
        Clear();
    else if (m_nStart > m_Bytes.size() / 2) {
        m_Bytes.erase(0, m_nStart);
        m_nStart = 0;
    }
}

void TStringA::FillWith(std::size_t nLength, char c)
{
    m_Bytes.resize(std::max(m_Bytes.size(), m_nStart + nLength), c);
}

void TStringA::AddLeft(char c)
{
    m_Bytes.insert(m_Bytes.begin() + static_cast<std::ptrdiff_t>(m_nStart), c);
}

void TStringA::Clear()
{
    m_Bytes.clear();
    m_nStart = 0;
}

} // namespace IEUtils
