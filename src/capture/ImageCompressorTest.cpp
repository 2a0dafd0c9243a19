#include "capture/ImageCompressor.h"

#include "capture/ProductFolder.h"
#include "platform/headless/Desktop.h"

#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using Arguments = std::vector<std::string>;
using Call = headless::ScriptedProcesses::Call;
using headless::optimized;

class ImageCompressorTest : public testing::Test {
protected:
    ImageCompressorTest()
    {
        for (const auto& tool : {desktop.tools.pngquant, desktop.tools.cjpeg, desktop.tools.sips})
            desktop.files.create(tool);
        install(desktop.tools.pngquant, 3);
        install(desktop.tools.cjpeg, 3);
        install(desktop.tools.sips, 4);
    }

    // A tool that writes the file whose path is the argument of that number.
    void install(const std::filesystem::path& tool, std::size_t outputArgument, int status = 0)
    {
        desktop.processes.install(tool, [=, this](const Arguments& arguments) {
            if (status == 0)
                desktop.files.create(arguments.at(outputArgument), "small");
            return status;
        });
    }

    std::optional<std::filesystem::path> compress(const std::filesystem::path& input)
    {
        desktop.files.create(input, "large");
        return ImageCompressor(desktop.files, desktop.processes, desktop.resources, desktop.tools)
            .compress(input);
    }

    Call sipsCall(const std::filesystem::path& input)
    {
        return {
            desktop.tools.sips,
            {"--resampleHeightWidthMax", "1400", input, "--out", optimized / input.filename()}};
    }

    headless::Desktop desktop;
};

TEST_F(ImageCompressorTest, CompressesAPngWithExactlyThesePngquantArguments)
{
    EXPECT_EQ(compress("/home/u/Desktop/Shot 1.png"), optimized / "Shot 1.png");
    const Call expected{
        desktop.tools.pngquant,
        {"--quality=50-70", "--speed=10", "--output", optimized / "Shot 1.png", "--force",
         "/home/u/Desktop/Shot 1.png"}};
    EXPECT_EQ(desktop.processes.journal, std::vector{expected});
}

TEST_F(ImageCompressorTest, CompressesAJpegWithExactlyTheseCjpegArguments)
{
    for (const char* name : {"a.jpg", "b.jpeg", "c.JPG"}) {
        desktop.processes.journal.clear();
        EXPECT_EQ(compress(std::filesystem::path("/home/u") / name), optimized / name);
        const Call expected{
            desktop.tools.cjpeg,
            {"-quality", "85", "-outfile", optimized / name, std::string("/home/u/") + name}};
        EXPECT_EQ(desktop.processes.journal, std::vector{expected});
    }
}

TEST_F(ImageCompressorTest, KeepsTheNameOfAPngInCapitals)
{
    EXPECT_EQ(compress("/home/u/Shot.PNG"), optimized / "Shot.PNG");
    EXPECT_EQ(desktop.processes.journal.front().program, desktop.tools.pngquant);
}

TEST_F(ImageCompressorTest, RunsNoToolForAGif)
{
    EXPECT_EQ(compress("/home/u/Shot.gif"), std::nullopt);
    EXPECT_TRUE(desktop.processes.journal.empty());
}

TEST_F(ImageCompressorTest, CreatesTheOutputFolderOnDemand)
{
    EXPECT_FALSE(desktop.files.exists(optimized));
    compress("/home/u/Shot.png");
    EXPECT_TRUE(desktop.files.isDirectory(optimized));
}

TEST_F(ImageCompressorTest, CompressesIntoAnotherFolderWhenAskedTo)
{
    desktop.files.create("/home/u/Shot.png", "large");
    const ImageCompressor compressor(
        desktop.files, desktop.processes, desktop.resources, desktop.tools);
    EXPECT_EQ(compressor.compress("/home/u/Shot.png", "/tmp/own/out"), "/tmp/own/out/Shot.png");
    EXPECT_EQ(desktop.files.read("/tmp/own/out/Shot.png"), "small");
    EXPECT_EQ(compressor.into("/tmp/other").compress("/home/u/Shot.png"), "/tmp/other/Shot.png");
    EXPECT_FALSE(desktop.files.exists(optimized / "Shot.png"));
}

TEST_F(ImageCompressorTest, FallsBackToSipsWithoutPngquant)
{
    desktop.files.remove(desktop.tools.pngquant);
    EXPECT_EQ(compress("/home/u/Shot.png"), optimized / "Shot.png");
    EXPECT_EQ(desktop.processes.journal, std::vector{sipsCall("/home/u/Shot.png")});
}

TEST_F(ImageCompressorTest, FallsBackToSipsWhenTheToolFails)
{
    install(desktop.tools.pngquant, 3, 99);
    install(desktop.tools.cjpeg, 3, 1);
    EXPECT_EQ(compress("/home/u/Shot.png"), optimized / "Shot.png");
    EXPECT_EQ(compress("/home/u/Shot.jpg"), optimized / "Shot.jpg");
    EXPECT_EQ(desktop.processes.journal.at(1), sipsCall("/home/u/Shot.png"));
    EXPECT_EQ(desktop.processes.journal.at(3), sipsCall("/home/u/Shot.jpg"));
}

TEST_F(ImageCompressorTest, TakesAToolThatWritesNothingForAFailedOne)
{
    for (const auto& tool : {desktop.tools.pngquant, desktop.tools.cjpeg})
        desktop.processes.install(tool, [](const Arguments&) { return 0; });
    EXPECT_TRUE(compress("/home/u/Shot.png"));
    EXPECT_TRUE(compress("/home/u/Shot.jpg"));
    EXPECT_EQ(desktop.processes.journal.at(1), sipsCall("/home/u/Shot.png"));
    EXPECT_EQ(desktop.processes.journal.at(3), sipsCall("/home/u/Shot.jpg"));
}

TEST_F(ImageCompressorTest, YieldsNothingWhenTheFallbackFailsToo)
{
    install(desktop.tools.pngquant, 3, 99);
    install(desktop.tools.sips, 4, 1);
    EXPECT_EQ(compress("/home/u/Shot.png"), std::nullopt);
}

TEST_F(ImageCompressorTest, LeavesNoHalfCopyBehindWhenEveryToolFails)
{
    desktop.processes.install(desktop.tools.cjpeg, [this](const Arguments& arguments) {
        desktop.files.create(arguments.at(3), "half");
        return 1;
    });
    install(desktop.tools.sips, 4, 1);
    EXPECT_EQ(compress("/home/u/Shot.jpg"), std::nullopt);
    EXPECT_FALSE(desktop.files.exists(optimized / "Shot.jpg"));
}

TEST_F(ImageCompressorTest, LeavesAnOlderCopyInPlaceWhenEveryToolFails)
{
    desktop.files.create(optimized / "Shot.png", "old");
    install(desktop.tools.pngquant, 3, 99);
    install(desktop.tools.sips, 4, 1);
    EXPECT_EQ(compress("/home/u/Shot.png"), std::nullopt);
    EXPECT_EQ(desktop.files.read(optimized / "Shot.png"), "old");
}

TEST_F(ImageCompressorTest, YieldsNothingWhenTheFallbackWritesNothing)
{
    install(desktop.tools.pngquant, 3, 99);
    desktop.processes.install(desktop.tools.sips, [](const Arguments&) { return 0; });
    EXPECT_EQ(compress("/home/u/Shot.png"), std::nullopt);
}

TEST_F(ImageCompressorTest, PrefersThePngquantThatCameAlong)
{
    desktop.resources.executables["pngquant"] = "/app/pngquant";
    desktop.files.create("/app/pngquant");
    install("/app/pngquant", 3);
    compress("/home/u/Shot.png");
    EXPECT_EQ(desktop.processes.journal.front().program, "/app/pngquant");
}

TEST_F(ImageCompressorTest, LooksForNoCjpegAmongTheResources)
{
    desktop.resources.executables["cjpeg"] = "/app/cjpeg";
    compress("/home/u/Shot.jpg");
    EXPECT_EQ(desktop.processes.journal.front().program, desktop.tools.cjpeg);
}

TEST_F(ImageCompressorTest, OverwritesAnOlderCopyAndLeavesTheOriginalAlone)
{
    desktop.files.create(optimized / "Shot.png", "old");
    compress("/home/u/Shot.png");
    EXPECT_EQ(desktop.files.read(optimized / "Shot.png"), "small");
    EXPECT_EQ(desktop.files.read("/home/u/Shot.png"), "large");
}

TEST_F(ImageCompressorTest, KeepsACopyThatCameOutLarger)
{
    desktop.processes.install(desktop.tools.pngquant, [this](const Arguments& arguments) {
        desktop.files.create(arguments.at(3), "larger than large");
        return 0;
    });
    EXPECT_EQ(compress("/home/u/Shot.png"), optimized / "Shot.png");
    EXPECT_EQ(desktop.files.read(optimized / "Shot.png"), "larger than large");
}

TEST(ToolPaths, AreTheseWhereThePlatformNamesNoOthers)
{
    const ToolPaths tools;
    EXPECT_EQ(tools.pngquant, "/opt/homebrew/bin/pngquant");
    EXPECT_EQ(tools.cjpeg, "/opt/homebrew/opt/mozjpeg/bin/cjpeg");
    EXPECT_EQ(tools.sips, "/usr/bin/sips");
    EXPECT_EQ(tools.defaults, "/usr/bin/defaults");
    EXPECT_EQ(tools.screencapture, "/usr/sbin/screencapture");
}

} // namespace
} // namespace tallowbay
