#include "editor/AnnotationConstants.h"
#include "editor/QtFixture.h"
#include "editor/saving/AnnotationExporter.h"
#include "editor/saving/AnnotationSaver.h"
#include "platform/posix/LinuxResources.h"
#include "platform/posix/PosixProcesses.h"
#include "platform/posix/files/PosixFileSystem.h"
#include "support/LoopDispatch.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <atomic>
#include <condition_variable>
#include <fstream>
#include <future>
#include <mutex>
#include <random>
#include <thread>

using namespace std::chrono_literals;

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
        const auto flattened = exporter.flattenAnnotation(image, {item}, {500, 500}, imageInset);
        exporter.writeFlattenedImage(*exporter.compressed(*flattened, shot), shot);
    }
    std::variant<Bitmap, ImageError> load(const fs::path& shot) const
    {
        return loadImage(files, codec, shot);
    }

    test::TemporaryFolder folder;
    posix::PosixFileSystem files;
    // Counts the tools that were started. The first can be made the slowest: it does not end before
    // another has, if another is started within a second.
    struct OrderedProcesses final : Processes {
        bool run(const fs::path& program, const std::vector<std::string>& arguments) override
        {
            const bool isFirst = ++started == 1;
            const bool result = real.run(program, arguments);
            if (isFirst && firstIsSlowest)
                EXPECT_TRUE(otherAsked.get_future().wait_for(60s) == std::future_status::ready);
            std::unique_lock lock(mutex);
            if (isFirst && firstIsSlowest)
                change.wait_for(lock, 1s, [this] { return ended > 0; });
            ++ended;
            change.notify_all();
            return result;
        }
        posix::PosixProcesses real;
        std::atomic<int> started = 0;
        bool firstIsSlowest = false;
        std::promise<void> otherAsked; // all saves were asked for

    private:
        std::mutex mutex;
        std::condition_variable change;
        int ended = 0;
    } processes;
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

// Items over a picture whose first save takes longest, saved one after the other without a pause
class QuickEditsTest : public SaveTest {
protected:
    // Of a picture of 300 x 200 pixels, which the canvas shows at twice its size
    static constexpr Size canvasSize{696, 496};
    const AnnotationItem highlight{
        AnnotationTool::highlight, {{60, 60}, {100, 50}}, std::nullopt, systemYellow};
    const AnnotationItem mask{
        AnnotationTool::blur, {{40, 40}, {616, 416}}, std::nullopt, systemYellow};

    static Image secret()
    {
        // Few colours, so that pngquant is content
        std::mt19937 random;
        std::vector<std::uint32_t> colors(100);
        for (auto& color : colors)
            color = 0xFF404040u | random();
        auto bitmap = std::make_shared<Bitmap>(PixelSize{300, 200});
        for (int y = 0; y < 200; ++y)
            for (int x = 0; x < 300; ++x)
                bitmap->row(y)[x] = colors[random() % colors.size()];
        return bitmap;
    }

    void edit(const std::vector<std::vector<AnnotationItem>>& edits)
    {
        LoopDispatch dispatch;
        AnnotationSaver saver(dispatch, exporterWith(posix::linuxToolPaths(resources)));
        const Image picture = secret();
        processes.firstIsSlowest = edits.size() > 1;
        for (const auto& items : edits) {
            saver.save({shot, items, picture, canvasSize});
            // The first save is under way when the others are asked for.
            EXPECT_TRUE(dispatch.runUntil([&] { return processes.started > 0; }, 60s));
        }
        processes.otherAsked.set_value();
        EXPECT_TRUE(dispatch.runUntil([&] { return saver.pathsBeingWritten().empty(); }, 60s));
    }

    int countVisible()
    {
        const auto written = std::get<Bitmap>(load(shot));
        int visible = 0;
        for (int y = 0; y < written.size().height; ++y)
            for (int x = 0; x < written.size().width; ++x)
                visible += (written.pixel(x, y) >> 16 & 0xFF) > 49;
        return visible;
    }

    const fs::path shot = folder.path / "Shot.png";
};

TEST_F(QuickEditsTest, ShowAHighlight)
{
    edit({{highlight}});
    EXPECT_EQ(countVisible(), 300 * 200);
}

// Bug: the masked picture was ready before the one with the highlight alone, which then replaced
// it.
TEST_F(QuickEditsTest, HideWhatIsMaskedRightAfterAHighlight)
{
    edit({{highlight}, {highlight, mask}});
    EXPECT_EQ(countVisible(), 0);
}

TEST_F(QuickEditsTest, HideWhatIsMaskedAgainAfterAnUndo)
{
    edit({{highlight}, {highlight, mask}, {highlight}, {highlight, mask}});
    EXPECT_EQ(countVisible(), 0);
}

TEST_F(QuickEditsTest, HideWhatAMaskIsMovedTo)
{
    AnnotationItem before = mask;
    before.rect.origin.x -= 600;
    edit({{before}, {mask}});
    EXPECT_EQ(countVisible(), 0);
}

// Bug: what waited for a thread at the end of the program was dropped, and the tool of what was
// under way was ended.
TEST_F(QuickEditsTest, AreInTheirFilesWhenTheProgramEnds)
{
    LoopDispatch dispatch;
    AnnotationSaver saver(dispatch, exporterWith(posix::linuxToolPaths(resources)));
    std::vector<fs::path> shots;
    for (int number = 0; number < 6; ++number) // more than there are threads on most machines
        shots.push_back(folder.path / ("Shot " + std::to_string(number) + ".png"));
    for (const fs::path& each : shots)
        saver.save({each, {mask}, secret(), canvasSize});
    EXPECT_TRUE(saver.finishWriting(60s));
    processes.real.endChildren(0ms);
    for (const fs::path& each : shots)
        EXPECT_TRUE(std::holds_alternative<Bitmap>(load(each))) << each;
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
