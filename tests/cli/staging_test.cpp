#include "cli/staging.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace fs = std::filesystem;
using Cli::CStaging;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class Staging : public testing::Test {
protected:
    Staging()
    {
        std::string pattern = (fs::temp_directory_path() / "staging-XXXXXX").string();
        m_Folder = mkdtemp(pattern.data());
    }
    ~Staging() override { fs::remove_all(m_Folder); }

    [[nodiscard]] std::string At(const std::string& name) const { return (m_Folder / name).string(); }
    static void Put(const std::string& path, const std::string& text) { std::ofstream(path) << text; }
    static std::string Get(const std::string& path)
    {
        std::ifstream file(path);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    [[nodiscard]] std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_Folder))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    fs::path m_Folder;
    std::vector<std::string> m_Delivered;
    std::string m_strError;
};

TEST_F(Staging, DeliversAllFiles)
{
    {
        CStaging staging;
        ASSERT_TRUE(staging.Make(m_Folder.string(), m_strError));
        Put(staging.PathOf("b.sim"), "new b");
        Put(staging.PathOf("a.sim"), "new a");
        Put(At("a.sim"), "old a");
        EXPECT_EQ(staging.ToTarget(staging.PathOf("a.sim")), At("a.sim"));
        EXPECT_EQ(staging.ToTarget("elsewhere/a.sim"), "elsewhere/a.sim");
        ASSERT_TRUE(staging.Deliver(true, m_Delivered, m_strError)) << m_strError;
    }
    EXPECT_THAT(m_Delivered, ElementsAre(At("a.sim"), At("b.sim")));
    EXPECT_THAT(Names(), ElementsAre("a.sim", "b.sim"));
    EXPECT_EQ(Get(At("a.sim")), "new a");
}

TEST_F(Staging, LeavesNothingBehindWhenNothingIsDelivered)
{
    {
        CStaging staging;
        ASSERT_TRUE(staging.Make(m_Folder.string(), m_strError));
        Put(staging.PathOf("a.sim"), "new a");
    }
    EXPECT_THAT(Names(), ElementsAre());
}

TEST_F(Staging, DoesntReplaceUnasked)
{
    {
        CStaging staging;
        ASSERT_TRUE(staging.Make(m_Folder.string(), m_strError));
        Put(staging.PathOf("a.sim"), "new a");
        Put(staging.PathOf("b.sim"), "new b");
        Put(At("b.sim"), "old b");
        EXPECT_FALSE(staging.Deliver(false, m_Delivered, m_strError));
    }
    EXPECT_THAT(m_strError, HasSubstr("b.sim: the file exists already"));
    EXPECT_THAT(Names(), ElementsAre("b.sim"));
    EXPECT_EQ(Get(At("b.sim")), "old b");
}

TEST_F(Staging, TakesAllBackWhenALaterFileCantBeMoved)
{
    {
        CStaging staging;
        ASSERT_TRUE(staging.Make(m_Folder.string(), m_strError));
        Put(staging.PathOf("a.sim"), "new a");
        Put(staging.PathOf("b.sim"), "new b");
        // a folder can't take the place of a file, which only the attempt shows
        fs::create_directory(staging.PathOf("c.sim"));
        Put(At("b.sim"), "old b");
        Put(At("c.sim"), "old c");
        EXPECT_FALSE(staging.Deliver(true, m_Delivered, m_strError));
    }
    EXPECT_THAT(m_strError, HasSubstr("c.sim"));
    EXPECT_TRUE(m_Delivered.empty());
    EXPECT_THAT(Names(), ElementsAre("b.sim", "c.sim"));
    EXPECT_EQ(Get(At("b.sim")), "old b");
    EXPECT_EQ(Get(At("c.sim")), "old c");
}

TEST_F(Staging, SaysWhyAFolderCantBeUsed)
{
    CStaging staging;
    EXPECT_FALSE(staging.Make(At("missing"), m_strError));
    EXPECT_THAT(m_strError, HasSubstr("missing"));
    EXPECT_THAT(Cli::FindObstacle(At("missing/a.sim"), true), HasSubstr("no such folder"));
    EXPECT_EQ(Cli::FindObstacle(At("a.sim"), false), "");
}

} // namespace
