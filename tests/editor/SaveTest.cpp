#include "editor/AnnotationConstants.h"
#include "editor/AnnotationExporter.h"
#include "editor/QtFixture.h"
#include "platform/posix/LinuxResources.h"
#include "platform/posix/PosixProcesses.h"
#include "platform/posix/files/PosixFileSystem.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <atomic>
#include <fstream>
#include <thread>

namespace tallowbay::test {
namespace {

namespace fs = std::filesystem;

class SaveTest : public QtTest {
protected:
    AnnotationExporter exporterWith(const ToolPaths& tools)
    {
        return {
            files, codec, graphics,
            ImageCompressor(files, processes, resources, tools).into(folder.path)};
    }

    // The whole picture below one mask or one highlight, so that two saves can be told apart.
    static void save(
        const AnnotationExporter& exporter, AnnotationTool tool, const Image& image,
        const fs::path& shot)
    {
        const AnnotationItem item{tool, {{0, 0}, {500, 500}}, std::nullopt, systemRed};
        exporter.writeFlattenedImage(
            *exporter.flattenAnnotation(image, {item}, {500, 500}, imageInset), shot);
    }
    std::variant<Bitmap, ImageError> load(const fs::path& shot) const
    {
        return loadImage(files, codec, shot);
    }

    test::TemporaryFolder folder;
    posix::PosixFileSystem files;
    posix::PosixProcesses processes;
    posix::LinuxResources resources{
        posix::runningProgramFolder(), [](const std::string&) { return false; }};
};

TEST_F(SaveTest, WritesWhatIsMeantThroughTheRealPngquant)
{
    const fs::path shot = folder.path / "Screenshot 2026-01-05 at 10.31.12.png";
    save(
        exporterWith(posix::linuxToolPaths(resources)), AnnotationTool::blur,
        plainImage({640, 480}, 0xFFFFFFFFu), shot);
    const auto written = std::get<Bitmap>(load(shot));
    EXPECT_EQ(written.size(), (PixelSize{640, 480}));
    for (const auto& [x, y] : {std::pair{5, 5}, {320, 240}, {639, 479}}) {
        EXPECT_GE(written.pixel(x, y) & 0xFF, 31u - 3);
        EXPECT_LE(written.pixel(x, y) & 0xFF, 46u + 3);
    }
    EXPECT_THAT(*files.list(folder.path), testing::ElementsAre(shot)) << "nothing stays beside it";
}

// Two edits of one file in quick succession, again and again, while someone reads it
TEST_F(SaveTest, NeverShowsHalfAFile)
{
    const fs::path tool = folder.path / "half-and-half";
    std::ofstream(tool)
        << "#!/bin/sh\n"
           "head -c 500 \"$5\" > \"$4\"; sleep 0.05; tail -c +501 \"$5\" >> \"$4\"\n";
    fs::permissions(tool, fs::perms::owner_all);
    ToolPaths tools;
    tools.cjpeg = tool;
    const AnnotationExporter exporter = exporterWith(tools);
    const Image image = plainImage({90, 70}, 0xFFFFFFFFu);
    const fs::path shot = folder.path / "Shot.jpg";
    save(exporter, AnnotationTool::blur, image, shot);

    std::atomic<bool> saving = true;
    std::thread reader([&] {
        for (int reads = 0; saving || reads < 10; ++reads)
            ASSERT_TRUE(std::holds_alternative<Bitmap>(load(shot))) << "at read " << reads;
    });
    for (int round = 0; round < 5; ++round) {
        std::thread other([&] { save(exporter, AnnotationTool::highlight, image, shot); });
        save(exporter, AnnotationTool::blur, image, shot);
        other.join();
    }
    saving = false;
    reader.join();
    save(exporter, AnnotationTool::highlight, image, shot);
    EXPECT_GT(std::get<Bitmap>(load(shot)).pixel(45, 35) >> 16 & 0xFF, 200u);
}

} // namespace
} // namespace tallowbay::test
