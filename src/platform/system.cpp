#include "alidade/platform/system.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <clocale>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <limits>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <langinfo.h>
#include <sys/resource.h>
#include <sys/sysinfo.h>
#include <unistd.h>

namespace {

// While that much lies idle, the memory that caches could give back needn't be counted, and counting it is the slow
// part.
constexpr std::uint64_t kPlentyOfMemory = std::uint64_t{256} << 20;

std::function<TIEDateTime()>& Clock()
{
    static std::function<TIEDateTime()> clock;
    return clock;
}

std::function<std::uint64_t()>& FreeMemory()
{
    static std::function<std::uint64_t()> freeMemory;
    return freeMemory;
}

using TReportBuffer = std::array<char, 4096>;

/// The beginning of one of the system's report files, which have no length; empty if there is none. Takes nothing from
/// the heap: it is asked when memory runs out.
std::string_view ReadReport(const char* path, TReportBuffer& buffer)
{
    const int nDescriptor = ::open(path, O_RDONLY | O_CLOEXEC);
    if (nDescriptor < 0)
        return {};
    const auto got = ::read(nDescriptor, buffer.data(), buffer.size());
    ::close(nDescriptor);
    return {buffer.data(), got > 0 ? static_cast<std::size_t>(got) : 0};
}

/// The first whole number in a text; 0 if there is none.
std::uint64_t FirstNumber(std::string_view text)
{
    std::uint64_t nNumber = 0;
    text.remove_prefix(std::min(text.find_first_of("0123456789"), text.size()));
    std::from_chars(text.data(), text.data() + text.size(), nNumber);
    return nNumber;
}

/// A row of /proc/meminfo in bytes; 0 if there is no such row.
std::uint64_t MemoryRow(std::string_view report, std::string_view title)
{
    const std::size_t nPlace = report.find(title);
    return nPlace == std::string_view::npos ? 0 : FirstNumber(report.substr(nPlace + title.size())) * 1024;
}

std::uint64_t SystemFreeMemory()
{
    struct sysinfo about = {};
    std::uint64_t nFree = 0;
    if (::sysinfo(&about) == 0)
        nFree = (std::uint64_t{about.freeram} + about.bufferram + about.freeswap) * about.mem_unit;
    if (nFree >= kPlentyOfMemory)
        return nFree;
    TReportBuffer buffer;
    const std::string_view report = ReadReport("/proc/meminfo", buffer);
    return std::max(nFree, MemoryRow(report, "MemAvailable:") + MemoryRow(report, "SwapFree:"));
}

/// What a limit on the address space leaves to this process.
std::uint64_t AddressSpaceLeft()
{
    struct rlimit limit = {};
    if (::getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY)
        return std::numeric_limits<std::uint64_t>::max();
    TReportBuffer buffer;
    const std::uint64_t nPages = FirstNumber(ReadReport("/proc/self/statm", buffer));
    const std::uint64_t nUsed = nPages * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
    return limit.rlim_cur > nUsed ? limit.rlim_cur - nUsed : 0;
}

/// The weekday and the day of the year are filled in too: some languages put them into their short date.
std::tm BrokenDown(const TIEDateTime& moment)
{
    using namespace std::chrono;
    std::tm parts = {};
    parts.tm_year = moment.m_nYear - 1900;
    parts.tm_mon = moment.m_nMonth - 1;
    parts.tm_mday = moment.m_nDay;
    parts.tm_hour = moment.m_nHour;
    parts.tm_min = moment.m_nMinute;
    parts.tm_sec = moment.m_nSecond;
    parts.tm_isdst = -1;
    const year_month_day date(year(moment.m_nYear), month(static_cast<unsigned>(moment.m_nMonth)),
                              day(static_cast<unsigned>(moment.m_nDay)));
    if (date.ok()) {
        parts.tm_wday = static_cast<int>(weekday(sys_days(date)).c_encoding());
        parts.tm_yday = static_cast<int>((sys_days(date) - sys_days(date.year() / January / 1)).count());
    }
    return parts;
}

/// The locale's own form; empty if that isn't in UTF-8, as no text of ours is in anything else.
std::string LocaleDate(const std::tm& parts, locale_t locale)
{
    char text[128];
    const std::size_t nLength = ::strftime_l(text, sizeof(text), "%x", &parts, locale);
    const std::string_view date(text, nLength);
#if defined(__GLIBC__)
    const auto isPlain = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    const bool bUtf8 = std::strcmp(::nl_langinfo_l(_NL_TIME_CODESET, locale), "UTF-8") == 0;
    if (!bUtf8 && !std::all_of(date.begin(), date.end(), isPlain))
        return {};
#endif
    return std::string(date);
}

/// Index of the character behind the one at `place`, so that a `?` stands for a whole one.
std::size_t NextCharacter(std::string_view text, std::size_t place)
{
    ++place;
    while (place < text.size() && (static_cast<unsigned char>(text[place]) & 0xC0) == 0x80)
        ++place;
    return place;
}

char LowerCase(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Remembers only the last star: what an earlier one could take, the last one can take as well. So a pattern of many
/// stars costs no more than name times pattern.
bool FitsPattern(std::string_view name, std::string_view pattern)
{
    constexpr std::size_t kNone = std::string_view::npos;
    std::size_t nName = 0, nPattern = 0, nStar = kNone, nStarEnd = 0;
    while (nName < name.size()) {
        const char c = nPattern < pattern.size() ? pattern[nPattern] : '\0';
        if (c == '*') {
            nStar = nPattern++;
            nStarEnd = nName;
        } else if (c == '?') {
            ++nPattern;
            nName = NextCharacter(name, nName);
        } else if (nPattern < pattern.size() && LowerCase(c) == LowerCase(name[nName])) {
            ++nPattern;
            ++nName;
        } else if (nStar != kNone) {
            nPattern = nStar + 1;
            nName = ++nStarEnd;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', nPattern) == kNone;
}

} // namespace

namespace Platform {

TIEDateTime Now()
{
    if (Clock())
        return Clock()();
    std::timespec time = {};
    std::tm parts = {};
    if (::clock_gettime(CLOCK_REALTIME, &time) != 0 || !::localtime_r(&time.tv_sec, &parts))
        return {};
    return {parts.tm_year + 1900,
            parts.tm_mon + 1,
            parts.tm_mday,
            parts.tm_hour,
            parts.tm_min,
            parts.tm_sec,
            static_cast<int>(time.tv_nsec / 1'000'000)};
}

// A locale object of its own, made anew each time, leaves the host's locale alone and follows a changed environment.
std::string ShortDate(const TIEDateTime& moment)
{
    const std::tm parts = BrokenDown(moment);
    if (const locale_t locale = ::newlocale(LC_TIME_MASK, "", nullptr)) {
        std::string date = LocaleDate(parts, locale);
        ::freelocale(locale);
        if (!date.empty())
            return date;
    }
    char text[64];
    return {text, std::strftime(text, sizeof(text), "%m/%d/%y", &parts)};
}

std::uint64_t FreeVirtualMemory()
{
    if (FreeMemory())
        return FreeMemory()();
    return std::min(SystemFreeMemory(), AddressSpaceLeft());
}

std::vector<std::string> FindFiles(const std::string& folder, const std::string& pattern)
{
    std::vector<std::string> names;
    std::error_code error;
    std::filesystem::directory_iterator place(folder, error);
    for (; !error && place != std::filesystem::directory_iterator(); place.increment(error)) {
        // an entry that vanishes in this instant is no file, and no reason to stop
        std::error_code ignored;
        std::string name = place->path().filename().string();
        if (FitsPattern(name, pattern) && place->is_regular_file(ignored))
            names.push_back(std::move(name));
    }
    std::sort(names.begin(), names.end());
    return names;
}

void SetClock(std::function<TIEDateTime()> clock)
{
    Clock() = std::move(clock);
}

void SetFreeMemory(std::function<std::uint64_t()> freeMemory)
{
    FreeMemory() = std::move(freeMemory);
}

} // namespace Platform
