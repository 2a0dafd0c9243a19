#include "editor/strip/ThumbnailCaption.h"

#include "platform/headless/FixedCalendar.h"

#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using namespace std::chrono;

class ThumbnailCaptionTest : public testing::Test {
protected:
    // On the fifth of January 2026.
    std::string captionOf(const std::string& name, hours today = 12h)
    {
        return ThumbnailCaption(calendar, further)
            .parseTime("/home/u/optimized/" + name, sys_days(2026y / 1 / 5) + today);
    }
    std::string captionOfTime(const std::string& time)
    {
        return captionOf("Screenshot 2026-01-05 at " + time + ".png");
    }

    headless::FixedCalendar calendar;
    NameDatePatterns further;
};

TEST_F(ThumbnailCaptionTest, SaysTheTimeOfToday)
{
    EXPECT_EQ(captionOfTime("14.05.09"), "2:05 PM");
    EXPECT_EQ(captionOfTime("09.30.00"), "9:30 AM");
}

TEST_F(ThumbnailCaptionTest, CallsMidnightAndNoonTwelve)
{
    EXPECT_EQ(captionOfTime("00.30.00"), "12:30 AM");
    EXPECT_EQ(captionOfTime("12.00.59"), "12:00 PM");
}

TEST_F(ThumbnailCaptionTest, SaysYesterdayWithoutATime)
{
    EXPECT_EQ(captionOf("Screenshot 2026-01-04 at 14.05.09.png"), "Yesterday");
}

TEST_F(ThumbnailCaptionTest, SaysTheDayOfAnythingElse)
{
    EXPECT_EQ(captionOf("Screenshot 2026-01-02 at 14.05.09.png"), "Jan 2");
    EXPECT_EQ(captionOf("Screenshot 2025-12-31 at 14.05.09.png"), "Dec 31");
}

TEST_F(ThumbnailCaptionTest, SaysTheDayOfAFutureDate)
{
    EXPECT_EQ(captionOf("Screenshot 2026-01-06 at 14.05.09.png"), "Jan 6");
}

TEST_F(ThumbnailCaptionTest, CountsDaysInTheUsersTimeZone)
{
    calendar.eastOfUtc = 60min;
    EXPECT_EQ(captionOf("Screenshot 2026-01-05 at 22.00.00.png", 22h), "10:00 PM");
    EXPECT_EQ(captionOf("Screenshot 2026-01-05 at 22.00.00.png", 23h), "Yesterday");
}

TEST_F(ThumbnailCaptionTest, FindsTheDateAnywhereInTheName)
{
    EXPECT_EQ(captionOf("copy of Screen Shot 2026-01-05 at 14.05.09 (2).jpg"), "2:05 PM");
}

TEST_F(ThumbnailCaptionTest, SaysNothingForANameWithoutADate)
{
    EXPECT_EQ(captionOf("picture.png"), "");
    EXPECT_EQ(captionOf("Screenshot 2026-01-05 at 1x.05.09.png"), "");
    EXPECT_EQ(captionOf("Screenshot 2026-01-05.png"), "");
}

TEST_F(ThumbnailCaptionTest, SaysNothingForADayThatDoesNotExist)
{
    EXPECT_EQ(captionOf("Screenshot 2026-02-30 at 14.05.09.png"), "");
    EXPECT_EQ(captionOf("Screenshot 2026-13-01 at 14.05.09.png"), "");
    EXPECT_EQ(captionOf("Screenshot 2025-02-29 at 14.05.09.png"), "");
    EXPECT_EQ(captionOf("Screenshot 2024-02-29 at 14.05.09.png"), "Feb 29");
}

TEST_F(ThumbnailCaptionTest, ReadsTheSpellingsOfThePlatform)
{
    further = {R"((\d{4})(\d{2})(\d{2})_(\d{2})(\d{2})\d{2})"};
    EXPECT_EQ(captionOf("Screenshot_20260105_140509.png"), "2:05 PM");
    EXPECT_EQ(captionOf("Screenshot 2026-01-05 at 14.05.09.png"), "2:05 PM");
}

TEST_F(ThumbnailCaptionTest, PassesOverAPatternThatIsNone)
{
    further = {"(", "no groups", R"((\w+)-(\d+)-(\d+)-(\d+)-(\d+))"};
    EXPECT_EQ(captionOf("no groups.png"), "");
    EXPECT_EQ(captionOf("year-01-05-14-05.png"), "");
    EXPECT_EQ(captionOf("2026-01-05-14-05.png"), "2:05 PM");
}

TEST_F(ThumbnailCaptionTest, PutsUpWithANameThatIsNoText)
{
    EXPECT_EQ(captionOf("\xff\xfe Screenshot 2026-01-05 at 14.05.09\n.png"), "2:05 PM");
}

// A cell asks at each of its paintings.
TEST_F(ThumbnailCaptionTest, IsWorkedOutOnceADay)
{
    struct CountingCalendar final : headless::FixedCalendar {
        std::string monthAndDay(year_month_day day) const override
        {
            ++spelled;
            return FixedCalendar::monthAndDay(day);
        }
        mutable int spelled = 0;
    };
    const CountingCalendar counting;
    const ThumbnailCaption caption(counting, further);
    const auto at = [&](hours time) {
        return caption.parseTime(
            "/o/Screenshot 2026-01-04 at 14.05.09.png", sys_days(2026y / 1 / 5) + time);
    };
    EXPECT_EQ(at(1h), "Yesterday");
    EXPECT_EQ(at(25h), "Jan 4");
    EXPECT_EQ(at(47h), "Jan 4");
    EXPECT_EQ(counting.spelled, 1);
    EXPECT_EQ(at(1h), "Yesterday") << "a clock that was set back";
}

} // namespace
} // namespace tallowbay
