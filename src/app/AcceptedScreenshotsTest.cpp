#include "app/AcceptedScreenshots.h"

#include "platform/headless/Desktop.h"

#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;

const std::filesystem::path original = "/home/u/Desktop/Screenshot 1.png";
const std::filesystem::path renamed = "/home/u/Desktop/Screenshot of a bug.png";
const std::filesystem::path copy = "/home/u/Downloads/Tallowbay/optimized/Screenshot 1.png";
const std::filesystem::path otherCopy = copy.parent_path() / renamed.filename();

class AcceptedScreenshotsTest : public testing::Test {
protected:
    AcceptedScreenshotsTest()
    {
        desktop.files.create(original);
        EXPECT_TRUE(accepted.begin(original, copy));
    }

    bool isNewAfterARename()
    {
        desktop.files.rename(original, renamed);
        return accepted.begin(renamed, otherCopy);
    }

    headless::Desktop desktop;
    AcceptedScreenshots accepted{desktop.files, desktop.clock};
};

// A report is late by as much as file events may be: a rename just within three seconds is heard of
// after them.
TEST_F(AcceptedScreenshotsTest, KnowAFileWhoseNewNameIsReportedThreeSecondsAndALatencyLater)
{
    accepted.end(copy, true);
    desktop.clock.move(3499ms);
    EXPECT_FALSE(isNewAfterARename());
}

TEST_F(AcceptedScreenshotsTest, ForgetAFileAfterThat)
{
    accepted.end(copy, true);
    desktop.clock.move(3500ms);
    EXPECT_TRUE(isNewAfterARename());
}

TEST_F(AcceptedScreenshotsTest, CountFromTheEndOfALongCompression)
{
    desktop.clock.move(60s);
    accepted.end(copy, true);
    desktop.clock.move(3499ms);
    EXPECT_FALSE(isNewAfterARename());
}

TEST_F(AcceptedScreenshotsTest, ForgetNothingThatIsUnderWay)
{
    desktop.clock.move(60s);
    EXPECT_FALSE(isNewAfterARename());
    EXPECT_EQ(accepted.end(copy, false), renamed);
}

TEST_F(AcceptedScreenshotsTest, ForgetAtOnceWhatCameToNothing)
{
    EXPECT_EQ(accepted.end(copy, false), std::nullopt);
    EXPECT_TRUE(isNewAfterARename());
}

} // namespace
} // namespace tallowbay
