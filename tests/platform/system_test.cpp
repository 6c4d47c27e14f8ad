#include "alidade/platform/system.h"

#include <chrono>
#include <clocale>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <sys/resource.h>

namespace {

constexpr TIEDateTime kMoment{2026, 11, 22, 7, 8, 9, 10};

TEST(SystemTest, ShortDateFollowsTheEnvironment)
{
    const struct {
        const char *m_szLocale, *m_szDate;
    } rows[] = {
        {"C", "11/22/26"},
        {"xx_NOWHERE.UTF-8", "11/22/26"},
        {"de_DE.UTF-8", "22.11.2026"},
        {"ja_JP.UTF-8", "2026年11月22日"},
        {"ja_JP.EUC-JP", "11/22/26"},
    };
    const std::string before = std::setlocale(LC_ALL, nullptr);
    const char* szOld = std::getenv("LC_ALL");
    const std::optional<std::string> old = szOld ? std::optional<std::string>(szOld) : std::nullopt;
    bool bGerman = false;
    for (const auto& row : rows) {
        const locale_t locale = newlocale(LC_TIME_MASK, row.m_szLocale, nullptr);
        if (locale)
            freelocale(locale);
        bGerman = bGerman || (locale && row.m_szLocale == std::string("de_DE.UTF-8"));
        setenv("LC_ALL", row.m_szLocale, 1);
        EXPECT_EQ(locale ? row.m_szDate : "11/22/26", Platform::ShortDate(kMoment)) << row.m_szLocale;
    }
    old ? setenv("LC_ALL", old->c_str(), 1) : unsetenv("LC_ALL");
    EXPECT_EQ(before, std::setlocale(LC_ALL, nullptr)) << "the locale of the process isn't ours to change";
    if (!bGerman)
        GTEST_SKIP() << "de_DE.UTF-8 isn't installed, so only the plain form was seen";
}

TEST(SystemTest, NowIsTheLocalTime)
{
    const auto before = std::chrono::system_clock::now();
    const TIEDateTime now = Platform::Now();
    const auto after = std::chrono::system_clock::now();
    std::tm parts = {};
    parts.tm_year = now.m_nYear - 1900;
    parts.tm_mon = now.m_nMonth - 1;
    parts.tm_mday = now.m_nDay;
    parts.tm_hour = now.m_nHour;
    parts.tm_min = now.m_nMinute;
    parts.tm_sec = now.m_nSecond;
    parts.tm_isdst = -1;
    const auto seen =
        std::chrono::system_clock::from_time_t(std::mktime(&parts)) + std::chrono::milliseconds(now.m_nMillisecond);
    EXPECT_GT(seen, before - std::chrono::milliseconds(1));
    EXPECT_LE(seen, after);
}

TEST(SystemTest, HooksStandInUntilTheyAreTakenAway)
{
    Platform::SetClock([] { return kMoment; });
    Platform::SetFreeMemory([] { return std::uint64_t{7}; });
    EXPECT_EQ(kMoment, Platform::Now());
    EXPECT_EQ(7U, Platform::FreeVirtualMemory());
    Platform::SetClock({});
    Platform::SetFreeMemory({});
    EXPECT_NE(kMoment, Platform::Now());
    EXPECT_GT(Platform::FreeVirtualMemory(), std::uint64_t{1} << 20);
}

TEST(SystemTest, FreeMemoryKeepsToTheAddressSpaceLimit)
{
    std::uint64_t nPages = 0;
    std::ifstream("/proc/self/statm") >> nPages;
    const std::uint64_t nUsed = nPages * 4096;
    struct rlimit old = {};
    ASSERT_EQ(0, getrlimit(RLIMIT_AS, &old));
    constexpr std::uint64_t kSlack = 64 << 20;
    const auto freeUnder = [&old](std::uint64_t nLimit) {
        struct rlimit limit = {nLimit, old.rlim_max};
        setrlimit(RLIMIT_AS, &limit);
        const std::uint64_t nFree = Platform::FreeVirtualMemory();
        setrlimit(RLIMIT_AS, &old);
        return nFree;
    };
    EXPECT_EQ(0U, freeUnder(nUsed / 2));
    const std::uint64_t nFree = freeUnder(nUsed + kSlack);
    EXPECT_LE(nFree, kSlack);
    EXPECT_GT(nFree, kSlack / 2);
}

TEST(SystemTest, FindsThePlainFilesThatFit)
{
    std::string name = testing::TempDir() + "alidade-find-XXXXXX";
    const std::filesystem::path folder = mkdtemp(name.data());
    const std::string longName(200, 'a');
    for (const std::string file :
         {"b.CSV", "a.csv", "noext", "ab.txt", "aab.txt", "öl.csv", "[x].csv", "a.csv.bak", "\xF6.csv"})
        std::ofstream(folder / file) << "x";
    std::ofstream(folder / longName) << "x";
    std::filesystem::create_directory(folder / "folder.csv");
    std::filesystem::create_symlink("a.csv", folder / "link.csv");
    std::filesystem::create_symlink("nowhere", folder / "lost.csv");

    std::string manyStars;
    for (int i = 0; i < 60; ++i)
        manyStars += "a*"; // a search that tries every way for every star would never end
    const struct {
        std::string m_strPattern;
        std::vector<std::string> m_Names;
    } rows[] = {
        {"*.csv", {"[x].csv", "a.csv", "b.CSV", "link.csv", "öl.csv", "\xF6.csv"}},
        {"*.CsV", {"[x].csv", "a.csv", "b.CSV", "link.csv", "öl.csv", "\xF6.csv"}},
        {"?.csv", {"a.csv", "b.CSV", "\xF6.csv"}},
        {"?l.csv", {"öl.csv"}},
        {"*ab.txt", {"aab.txt", "ab.txt"}},
        {"a*b*t", {"aab.txt", "ab.txt"}},
        {"noext?", {}},
        {"noext**", {"noext"}},
        {"[x].csv", {"[x].csv"}},
        {"", {}},
        {manyStars, {longName}},
        {manyStars + "b", {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.m_Names, Platform::FindFiles(folder.string(), row.m_strPattern)) << row.m_strPattern;
    std::filesystem::remove_all(folder);
    EXPECT_TRUE(Platform::FindFiles(folder.string(), "*").empty());
}

} // namespace
