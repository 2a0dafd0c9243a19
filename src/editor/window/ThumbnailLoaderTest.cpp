#include "editor/window/ThumbnailLoader.h"

#include "platform/headless/Desktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

namespace tallowbay {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ThumbnailLoaderTest : public testing::Test {
protected:
    ThumbnailLoaderTest()
    {
        loader->setBox({100, 50});
        loader->onLoaded = [this](std::uint64_t id) { loaded.push_back(id); };
    }

    static std::filesystem::path file(std::uint64_t id)
    {
        return "/o/" + std::to_string(id) + ".png";
    }
    void want(const std::vector<std::uint64_t>& ids)
    {
        std::vector<ThumbnailLoader::Wanted> wanted;
        for (const auto id : ids) {
            if (!desktop.files.exists(file(id)))
                picture(id, {200, 200});
            wanted.push_back({id, file(id)});
        }
        loader->want(std::move(wanted));
    }
    void picture(std::uint64_t id, PixelSize size)
    {
        desktop.files.create(file(id), *desktop.imageCodec.encodePng(Bitmap(size)));
    }
    void settle() { desktop.dispatch.runUntilIdle(); }

    headless::Desktop desktop;
    std::optional<ThumbnailLoader> loader{
        std::in_place, desktop.dispatch, desktop.files, desktop.imageCodec};
    std::vector<std::uint64_t> loaded;
};

TEST_F(ThumbnailLoaderTest, ScalesPicturesDownIntoTheBox)
{
    picture(1, {400, 100});
    picture(2, {10, 10});
    want({1, 2});
    settle();
    EXPECT_EQ(loader->thumbnail(1)->size(), (PixelSize{100, 25}));
    EXPECT_EQ(loader->thumbnail(2)->size(), (PixelSize{10, 10}));
    EXPECT_EQ(loader->thumbnail(3), nullptr);
}

TEST_F(ThumbnailLoaderTest, HasFewUnderWayAtATimeAndTheFirstFirst)
{
    want({5, 4, 3, 2});
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 2u);
    settle();
    EXPECT_THAT(loaded, ElementsAre(5u, 4u, 3u, 2u));
}

TEST_F(ThumbnailLoaderTest, TurnsToWhatIsWantedNow)
{
    want({1, 2, 3, 4, 5, 6});
    want({6, 5, 4, 3, 2, 1});
    settle();
    EXPECT_THAT(loaded, ElementsAre(1u, 2u, 6u, 5u, 4u, 3u)) << "the first two were under way";
}

TEST_F(ThumbnailLoaderTest, ReadsNothingTwice)
{
    want({1, 2});
    settle();
    want({2, 1});
    settle();
    EXPECT_THAT(loaded, ElementsAre(1u, 2u));
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 0u);
}

TEST_F(ThumbnailLoaderTest, ForgetsWhatIsNoLongerWanted)
{
    want({1, 2});
    settle();
    want({2});
    EXPECT_EQ(loader->thumbnail(1), nullptr);
    EXPECT_TRUE(loader->thumbnail(2));
}

TEST_F(ThumbnailLoaderTest, DropsAResultThatIsNoLongerWanted)
{
    want({1});
    want({});
    settle();
    EXPECT_THAT(loaded, IsEmpty());
    EXPECT_EQ(loader->thumbnail(1), nullptr);
}

TEST_F(ThumbnailLoaderTest, KeepsNoMoreThanItsBound)
{
    std::vector<std::uint64_t> ids(ThumbnailLoader::keptAtMost + 10);
    std::iota(ids.begin(), ids.end(), 1);
    want(ids);
    settle();
    EXPECT_EQ(loaded.size(), ThumbnailLoader::keptAtMost);
    EXPECT_TRUE(loader->thumbnail(ThumbnailLoader::keptAtMost));
    EXPECT_FALSE(loader->thumbnail(ThumbnailLoader::keptAtMost + 1));
}

TEST_F(ThumbnailLoaderTest, TriesAFileThatHoldsNoPictureOnce)
{
    desktop.files.create(file(1), "no picture");
    want({1, 2});
    settle();
    want({1, 2});
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 0u);
    EXPECT_THAT(loaded, ElementsAre(2u));
    picture(1, {20, 20});
    loader->fileChanged(file(1));
    settle();
    EXPECT_THAT(loaded, ElementsAre(2u, 1u));
}

TEST_F(ThumbnailLoaderTest, ReadsAFileAnewThatHasChanged)
{
    want({1, 2});
    settle();
    picture(1, {30, 30});
    loader->fileChanged(file(1));
    EXPECT_EQ(loader->thumbnail(1)->size().width, 50) << "until the new one is there";
    settle();
    EXPECT_EQ(loader->thumbnail(1)->size().width, 30);
    EXPECT_THAT(loaded, ElementsAre(1u, 2u, 1u));
}

TEST_F(ThumbnailLoaderTest, ReadsAFileOnceMoreThatChangesWhileItIsRead)
{
    want({1});
    desktop.dispatch.mainAsync([this] { // after the job, before its result
        picture(1, {30, 30});
        loader->fileChanged(file(1));
    });
    desktop.dispatch.runBackground();
    EXPECT_THAT(loaded, IsEmpty());
    settle();
    EXPECT_EQ(loader->thumbnail(1)->size().width, 30);
}

TEST_F(ThumbnailLoaderTest, ReadsAllAnewForAnotherBox)
{
    want({1, 2});
    settle();
    loader->setBox({100, 50});
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 0u) << "it is the same";
    loader->setBox({200, 100});
    settle();
    EXPECT_EQ(loader->thumbnail(1)->size().width, 100);
    EXPECT_EQ(loader->thumbnail(2)->size().width, 100);
}

TEST_F(ThumbnailLoaderTest, BeginsNoneWhileItIsPaused)
{
    loader->setPaused(true);
    want({1, 2, 3});
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 0u);
    loader->setPaused(false);
    settle();
    EXPECT_THAT(loaded, ElementsAre(1u, 2u, 3u));
}

TEST_F(ThumbnailLoaderTest, ReadsNothingMoreOnceItIsGone)
{
    want({1, 2});
    loader.reset();
    desktop.files.remove(file(1));
    settle();
    EXPECT_THAT(loaded, IsEmpty());
}

} // namespace
} // namespace tallowbay
