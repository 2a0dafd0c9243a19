#include "editor/AnnotationConstants.h"
#include "editor/AnnotationExporter.h"
#include "editor/QtFixture.h"
#include "platform/linux/LinuxResources.h"
#include "platform/linux/PosixFileSystem.h"
#include "platform/linux/PosixProcesses.h"
#include "platform/linux/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <atomic>
#include <fstream>
#include <thread>

namespace tallowbay::test {
namespace {

namespace fs = std::filesystem;

// Real files and the real pngquant.
class SaveTest : public QtTest {
protected:
    // The whole picture below one mask or one highlight, so that two saves can be told apart.
    void save(const Image& image, AnnotationTool tool) const
    {
        const AnnotationItem item{tool, {{0, 0}, {500, 500}}, std::nullopt, systemRed};
        exporter.writeFlattenedImage(
            *exporter.flattenAnnotation(image, {item}, {500, 500}, imageInset), shot);
    }
    std::variant<Bitmap, ImageError> load() const { return loadImage(files, codec, shot); }

    linux_desktop::TemporaryFolder folder;
    mutable linux_desktop::PosixFileSystem files;
    mutable linux_desktop::PosixProcesses processes;
    linux_desktop::LinuxResources resources{
        linux_desktop::runningProgramFolder(), [](const std::string&) { return false; }};
    const fs::path shot = folder.path / "Screenshot 2026-01-05 at 10.31.12.png";
    AnnotationExporter exporter{
        files, codec, graphics,
        ImageCompressor(files, processes, resources, linux_desktop::linuxToolPaths(resources))
            .into(folder.path)};
};

TEST_F(SaveTest, WritesWhatIsMeantThroughTheRealCompressor)
{
    save(plainImage({640, 480}, 0xFFFFFFFFu), AnnotationTool::blur);
    const auto written = std::get<Bitmap>(load());
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
    const Image image = plainImage({900, 700}, 0xFFFFFFFFu);
    save(image, AnnotationTool::blur);
    std::atomic<bool> saving = true;
    int reads = 0;
    std::thread reader([&] {
        for (; saving || reads < 10; ++reads) {
            const auto loaded = load();
            if (!std::holds_alternative<Bitmap>(loaded)) {
                ADD_FAILURE() << "a file that cannot be read, at read " << reads;
                return;
            }
        }
    });
    for (int round = 0; round < 3; ++round) {
        std::thread other([&] { save(image, AnnotationTool::highlight); });
        save(image, AnnotationTool::blur);
        other.join();
    }
    saving = false;
    reader.join();
    save(image, AnnotationTool::highlight);
    EXPECT_GT(std::get<Bitmap>(load()).pixel(450, 350) >> 16 & 0xFF, 200u) << "the last one wins";
}

} // namespace
} // namespace tallowbay::test
