#include "vellumlib/encoding.h"

#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <cerrno>

namespace Encoding {

std::size_t CalledFor(char c)
{
    const auto lead = static_cast<unsigned char>(c);
    return lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
}

std::size_t UnfinishedTail(std::string_view text)
{
    for (std::size_t nBack = 1; nBack <= std::min<std::size_t>(3, text.size()); ++nBack) {
        const auto byte = static_cast<unsigned char>(text[text.size() - nBack]);
        if ((byte & 0xC0U) != 0x80U)
            return CalledFor(text[text.size() - nBack]) > nBack ? nBack : 0;
    }
    return 0;
}

void AppendMended(CString& out, std::string_view text)
{
    while (!text.empty()) {
        const std::string_view character = text.substr(0, CalledFor(text[0]));
        const bool bValid = IEUtils::IsValidUtf8(character);
        out.append(bValid ? character : kReplacement);
        text.remove_prefix(bValid ? character.size() : 1);
    }
}

bool CConverter::Open(const CString& to, const CString& from)
{
    Close();
    if (to.empty() || from.empty() || (to + from).find_first_of(std::string_view("/\0", 2)) != CString::npos)
        return false;
    m_pHandle = ::iconv_open(to.c_str(), from.c_str());
    return IsOpen();
}

void CConverter::Close()
{
    if (IsOpen())
        ::iconv_close(m_pHandle);
    m_pHandle = None();
}

void CConverter::Restart()
{
    ::iconv(m_pHandle, nullptr, nullptr, nullptr, nullptr);
}

std::string_view CConverter::Convert(CString& out, std::string_view text)
{
    // iconv takes a pointer to what it only reads
    char* pIn = const_cast<char*>(text.data());
    std::size_t nIn = text.size();
    while (nIn > 0 && !Step(out, &pIn, &nIn) && errno == E2BIG) {
    }
    return text.substr(text.size() - nIn);
}

void CConverter::Finish(CString& out)
{
    while (!Step(out, nullptr, nullptr) && errno == E2BIG) {
    }
}

bool CConverter::Step(CString& out, char** ppIn, std::size_t* pnIn)
{
    char buffer[1024];
    char* pOut = buffer;
    std::size_t nOut = sizeof buffer;
    const std::size_t result = ::iconv(m_pHandle, ppIn, pnIn, &pOut, &nOut);
    const int nError = errno;
    out.append(buffer, pOut);
    errno = nError;
    return result != static_cast<std::size_t>(-1);
}

} // namespace Encoding
