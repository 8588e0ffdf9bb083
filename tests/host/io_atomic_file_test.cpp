#include "host/io/atomic_file.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/resource.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class AtomicFileTest : public testing::Test {
protected:
    void SetUp() override
    {
        std::string pattern = (fs::temp_directory_path() / "vekad-io-XXXXXX").string();
        m_folder = ::mkdtemp(pattern.data());
    }
    void TearDown() override
    {
        fs::permissions(m_folder, fs::perms::owner_all);
        fs::remove_all(m_folder);
    }
    std::string path(const char* name = "a.dxf") const { return (m_folder / name).string(); }
    static std::string contents(const std::string& path)
    {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }
    std::size_t filesThere() const
    {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(m_folder), {}));
    }
    static bool save(const std::string& path, std::string_view text, bool keepBackup = true)
    {
        AtomicFile file(path);
        file.write(text);
        return file.commit(keepBackup);
    }

    fs::path m_folder;
};

}

TEST_F(AtomicFileTest, KeepsWhatStoodThere)
{
    EXPECT_TRUE(save(path(), "one"));
    EXPECT_EQ(filesThere(), 1u);
    EXPECT_TRUE(save(path(), "two"));
    EXPECT_TRUE(save(path(), "three"));
    EXPECT_EQ(contents(path()), "three");
    EXPECT_EQ(contents(path() + ".bak"), "two");
    EXPECT_EQ(filesThere(), 2u);
}

TEST_F(AtomicFileTest, WithoutCommitNothingChanges)
{
    save(path(), "one");
    {
        AtomicFile file(path());
        file.write("half");
    }
    EXPECT_EQ(contents(path()), "one");
    EXPECT_EQ(filesThere(), 1u);
}

TEST_F(AtomicFileTest, AFullDiskLeavesTheOldFile)
{
    save(path(), "one");
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit tiny{4096, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &tiny);
    {
        AtomicFile file(path());
        file.write(std::string(100000, 'x'));
        EXPECT_FALSE(file.commit(true));
        EXPECT_NE(file.error().find("cannot save"), std::string::npos);
    }
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(contents(path()), "one");
    EXPECT_EQ(filesThere(), 1u);
}

TEST_F(AtomicFileTest, AFolderThatTakesNothingIsTold)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "the superuser may write anywhere";
    save(path(), "one");
    fs::permissions(m_folder, fs::perms::owner_read | fs::perms::owner_exec);
    AtomicFile file(path());
    EXPECT_NE(file.error().find("cannot save"), std::string::npos);
    EXPECT_FALSE(file.commit(true));
    EXPECT_EQ(contents(path()), "one");
}

TEST_F(AtomicFileTest, AMissingFolderIsTold)
{
    AtomicFile file(path("missing/a.dxf"));
    EXPECT_NE(file.error().find("No such file"), std::string::npos);
    EXPECT_FALSE(file.commit(true));
}

TEST_F(AtomicFileTest, AFolderInThePlaceOfTheFileIsTold)
{
    AtomicFile file(m_folder.string());
    EXPECT_NE(file.error().find("it is a folder"), std::string::npos);
}

TEST_F(AtomicFileTest, ALinkStaysALink)
{
    save(path("real.dxf"), "one");
    fs::create_symlink(path("real.dxf"), path("link.dxf"));
    EXPECT_TRUE(save(path("link.dxf"), "two"));
    EXPECT_TRUE(fs::is_symlink(path("link.dxf")));
    EXPECT_EQ(contents(path("real.dxf")), "two");
}

TEST_F(AtomicFileTest, KeepsThePermissionsOfTheOldFile)
{
    save(path(), "one");
    fs::permissions(path(), fs::perms::owner_read | fs::perms::owner_write);
    save(path(), "two");
    EXPECT_EQ(fs::status(path()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}
