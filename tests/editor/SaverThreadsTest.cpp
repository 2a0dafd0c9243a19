// Edits that are saved on real threads. Worth most under ThreadSanitizer.

#include "editor/saving/AnnotationSaver.h"
#include "platform/headless/HeadlessResources.h"
#include "platform/headless/PlainImageCodec.h"
#include "platform/headless/RecordingGraphics.h"
#include "platform/posix/files/PosixFileSystem.h"
#include "support/LoopDispatch.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <map>

using namespace std::chrono_literals;

namespace tallowbay::test {
namespace {

namespace fs = std::filesystem;

// Every tool copies its input.
class CopyingProcesses final : public Processes {
public:
    bool run(const fs::path&, const std::vector<std::string>& arguments) override
    {
        return fs::copy_file(
            arguments.at(2), arguments.at(4), fs::copy_options::overwrite_existing);
    }
};

class SaverThreadsTest : public testing::Test {
protected:
    SaverThreadsTest()
    {
        saver->onWritten = [this](const fs::path& url, bool succeeded) {
            EXPECT_TRUE(succeeded) << url;
            ++written[url];
        };
    }

    // So many saves of each file without a pause; each time of one more item.
    void saveEach(int times)
    {
        for (int time = 0; time < times; ++time) {
            items.push_back({AnnotationTool::highlight, {{68, 98}, {100, 50}}, std::nullopt, {}});
            for (const fs::path& url : urls)
                saver->save({url, items, picture, {496, 396}});
        }
    }

    // The recording backend numbers its drawings in their first pixel, and begins each with the
    // picture.
    std::size_t itemsIn(const fs::path& url) const
    {
        const auto bytes = files.read(url).value_or("");
        const auto number = bytes.find("\nff");
        if (number == std::string::npos)
            return 0;
        const int drawing = std::stoi(bytes.substr(number + 3, 6), nullptr, 16);
        return graphics.drawings().at(std::size_t(drawing) - 1).lines.size() - 1;
    }

    bool showAll() const
    {
        return std::ranges::all_of(
            urls, [this](const fs::path& url) { return itemsIn(url) == items.size(); });
    }

    TemporaryFolder folder;
    std::vector<fs::path> urls{
        folder.path / "A.png", folder.path / "B.png", folder.path / "C.png", folder.path / "D.png"};
    std::vector<AnnotationItem> items;
    const Image picture = std::make_shared<Bitmap>(PixelSize{20, 15});

    posix::PosixFileSystem files;
    headless::PlainImageCodec codec;
    headless::RecordingOffscreenGraphics graphics;
    headless::HeadlessResources resources;
    CopyingProcesses processes;
    std::map<fs::path, int> written;
    LoopDispatch dispatch;
    std::optional<AnnotationSaver> saver{
        std::in_place, dispatch,
        AnnotationExporter(
            files, codec, graphics,
            ImageCompressor(files, processes, resources, {.pngquant = "/nowhere"})
                .into(folder.path))};
};

TEST_F(SaverThreadsTest, EveryFileShowsWhatWasAskedForLast)
{
    saveEach(20);
    EXPECT_TRUE(dispatch.runUntil([this] { return saver->pathsBeingWritten().empty(); }, 60s));
    EXPECT_TRUE(showAll());
    EXPECT_EQ(written.size(), urls.size());
}

TEST_F(SaverThreadsTest, SavesJoinThoseThatEndMeanwhile)
{
    for (int round = 0; round < 20; ++round) {
        saveEach(2);
        const auto before = written;
        ASSERT_TRUE(dispatch.runUntil([&] { return written != before; }, 60s));
    }
    EXPECT_TRUE(dispatch.runUntil([this] { return saver->pathsBeingWritten().empty(); }, 60s));
    EXPECT_TRUE(showAll());
}

TEST_F(SaverThreadsTest, TheEndOfTheProgramWaitsForAllThatWasAskedFor)
{
    saveEach(20);
    EXPECT_TRUE(saver->finishWriting(60s));
    EXPECT_TRUE(showAll());
    EXPECT_TRUE(written.empty()) << "the main queue does not run meanwhile";
}

TEST_F(SaverThreadsTest, SavesAreCompletedAfterTheirSaversEnd)
{
    saveEach(5);
    saver.reset();
    EXPECT_TRUE(dispatch.runUntil([this] { return showAll(); }, 60s));
    EXPECT_TRUE(written.empty());
}

} // namespace
} // namespace tallowbay::test
