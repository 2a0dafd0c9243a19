#include "platform/posix/LinuxResources.h"

#include "platform/contract/ResourcesContract.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>

namespace tallowbay::posix {

namespace fs = std::filesystem;

namespace {

struct LinuxResourcesBackend {
    test::TemporaryFolder root;
    LinuxResources installed{
        root.path / "bin", [](const std::string& name) { return name == "MenubarIcon"; }};

    const Resources& resources() { return installed; }
    fs::path ship(const std::string& name)
    {
        const auto folder = root.path / "libexec" / "tallowbay";
        fs::create_directories(folder);
        std::ofstream(folder / name) << "#!/bin/sh\n";
        fs::permissions(folder / name, fs::perms(0755));
        return folder / name;
    }
};

class LinuxResourcesTest : public testing::Test {
protected:
    LinuxResourcesTest() { fs::create_directories(root / "bin"); }
    ~LinuxResourcesTest() override { ::setenv("PATH", pathBefore.c_str(), 1); }

    fs::path install(const fs::path& relative, int mode = 0755)
    {
        const auto path = root / relative;
        fs::create_directories(path.parent_path());
        std::ofstream(path) << "#!/bin/sh\n";
        fs::permissions(path, fs::perms(mode));
        return path;
    }
    void setSearchPath(const std::string& text) { ::setenv("PATH", text.c_str(), 1); }

    test::TemporaryFolder temporary;
    const fs::path root = temporary.path;
    const std::string pathBefore = std::getenv("PATH");
    LinuxResources resources{root / "bin", [](const std::string& name) { return name == "Logo"; }};
};

TEST_F(LinuxResourcesTest, FindsHelpersBesideTheProgram)
{
    const auto sips = install("libexec/tallowbay/sips");
    EXPECT_EQ(resources.executable("sips"), sips);
}

TEST_F(LinuxResourcesTest, FindsNothingThatIsAbsentOrNoProgram)
{
    install("libexec/tallowbay/notes.txt", 0644);
    fs::create_directory(root / "libexec/tallowbay/folder");
    for (const char* name : {"absent", "notes.txt", "folder", "", "..", "../tallowbay/x"})
        EXPECT_EQ(resources.executable(name), fs::path()) << name;
}

TEST_F(LinuxResourcesTest, AsksTheToolkitForArtwork)
{
    EXPECT_TRUE(resources.hasImage("Logo"));
    EXPECT_FALSE(resources.hasImage("Other"));
}

TEST_F(LinuxResourcesTest, TakesPngquantFromTheSearchPath)
{
    const auto installed = install("usr/pngquant");
    install("first/pngquant", 0644);
    setSearchPath((root / "first").native() + "::relative:" + (root / "usr").native());
    EXPECT_EQ(linuxToolPaths(resources).pngquant, installed);
}

TEST_F(LinuxResourcesTest, PrefersThePngquantThatCameAlong)
{
    install("usr/pngquant");
    const auto own = install("libexec/tallowbay/pngquant");
    setSearchPath((root / "usr").native());
    EXPECT_EQ(linuxToolPaths(resources).pngquant, own);
}

TEST_F(LinuxResourcesTest, NamesAnAbsentFileWherePngquantIsNowhere)
{
    // The bug: it was /usr/bin/pngquant, which is there on most machines.
    setSearchPath((root / "usr").native());
    EXPECT_EQ(linuxToolPaths(resources).pngquant, root / "libexec/tallowbay/pngquant");
    EXPECT_FALSE(fs::exists(linuxToolPaths(resources).pngquant));
}

TEST_F(LinuxResourcesTest, TakesNoToolButPngquantFromTheSearchPath)
{
    install("usr/cjpeg");
    setSearchPath((root / "usr").native());
    const auto tools = linuxToolPaths(resources);
    const auto helpers = root / "libexec/tallowbay";
    EXPECT_EQ(tools.cjpeg, helpers / "cjpeg");
    EXPECT_EQ(tools.sips, helpers / "sips");
    EXPECT_EQ(tools.defaults, helpers / "defaults");
    EXPECT_EQ(tools.screencapture, helpers / "screencapture");
}

TEST(RunningProgramFolderTest, IsWhereThisTestLies)
{
    EXPECT_TRUE(fs::exists(runningProgramFolder() / "posix_test"));
}

} // namespace

} // namespace tallowbay::posix

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, ResourcesContract, posix::LinuxResourcesBackend);
} // namespace tallowbay::contract
