#include "platform/qt/update/FeedDownload.h"

#include "support/OffscreenProgram.h"
#include "support/TemporaryFolder.h"

#include <QUrl>

#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <vector>

namespace tallowbay::qt {
namespace {

class FeedDownloadTest : public testing::Test {
protected:
    FeedDownloadTest() { std::ofstream(file()) << "ten bytes!"; }

    std::filesystem::path file() const { return folder.path / "feed.xml"; }

    void start(qint64 mostBytes)
    {
        DownloadLimits limits;
        limits.bytes = mostBytes;
        download.emplace(
            QUrl::fromLocalFile(QString::fromStdString(file())), limits,
            [this](const DownloadResult& result) { results.push_back(result); });
    }
    void waitForTheResult()
    {
        test::OffscreenProgram::runUntil([this] { return !results.empty(); });
        test::OffscreenProgram::settle();
    }

    test::OffscreenProgram program;
    test::TemporaryFolder folder;
    std::vector<DownloadResult> results;
    std::optional<FeedDownload> download;
};

TEST_F(FeedDownloadTest, GivesTheBytesOfAFileThatIsJustNotTooLong)
{
    start(10);
    EXPECT_TRUE(results.empty()) << "inside the call";
    waitForTheResult();
    ASSERT_EQ(results.size(), 1u);
    ASSERT_TRUE(std::holds_alternative<QByteArray>(results.front()));
    EXPECT_EQ(std::get<QByteArray>(results.front()), "ten bytes!");
}

// It is found too long at the first bytes, and once more at the end.
TEST_F(FeedDownloadTest, GivesOneResultThoughItFailsTwice)
{
    start(9);
    waitForTheResult();
    ASSERT_EQ(results.size(), 1u);
    EXPECT_TRUE(std::holds_alternative<DownloadFailure>(results.front()));
}

TEST_F(FeedDownloadTest, GivesNoResultOnceItHasGone)
{
    start(10);
    download.reset();
    test::OffscreenProgram::settle();
    EXPECT_TRUE(results.empty());
}

TEST_F(FeedDownloadTest, MayEndInsideItsOwnResult)
{
    bool hasBytes = false;
    download.emplace(
        QUrl::fromLocalFile(QString::fromStdString(file())), DownloadLimits{},
        [&](const DownloadResult& result) {
            download.reset();
            hasBytes = std::holds_alternative<QByteArray>(result);
        });
    EXPECT_TRUE(test::OffscreenProgram::runUntil([&] { return hasBytes; }));
}

} // namespace
} // namespace tallowbay::qt
