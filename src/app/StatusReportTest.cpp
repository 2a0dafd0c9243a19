#include "app/StatusReport.h"

#include "hotkeys/HotkeyTarget.h"

#include <gmock/gmock.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

class StatusReportTest : public testing::Test {
protected:
    StatusReportTest()
    {
        status.home = "/home/u";
        status.now = WallTime(1'000'000s);
        status.places = {
            {{"/home/u/Pictures/Shots", true, "set in a tool"}},
            {{"/home/u", false, "for others"}}};
    }

    std::string report() const { return statusReport(status); }

    std::string hotkeyLine(
        HotkeyTarget target, const std::optional<HotkeyConfig>& working, const std::string& purpose)
    {
        status.hotkeys = {{purpose, traitsOf(target).defaultConfig, working}};
        const std::string text = report();
        const auto end = text.find(purpose);
        const auto begin = text.rfind('\n', end) + 1;
        return text.substr(begin, text.find('\n', begin) - begin);
    }

    ProgramStatus status;
};

TEST_F(StatusReportTest, TellsWhatIsWatchedAndWhy)
{
    EXPECT_THAT(
        report(),
        HasSubstr("Watched for screenshots:\n"
                  "  ~/Pictures/Shots  set in a tool, with all below\n"
                  "  ~                 for others\n"));
}

TEST_F(StatusReportTest, TellsWhatBecameOfAFolder)
{
    status.places[0].coverage = FileEvents::Coverage::nearestFolders;
    status.places[1].isIdle = true;
    EXPECT_THAT(report(), HasSubstr("with all below (too many folders: the deepest are not"));
    EXPECT_THAT(report(), HasSubstr("for others (cannot be watched)\n"));
    status.places[1].isIdle = false;
    status.places[1].coverage = FileEvents::Coverage::nothing;
    EXPECT_THAT(report(), HasSubstr("for others (cannot be watched)\n"));
    status.places[1].coverage = FileEvents::Coverage::whole;
    status.absentPlaces = {"/home/u"};
    EXPECT_THAT(report(), HasSubstr("for others (not there yet)\n"));
}

TEST_F(StatusReportTest, TellsWhatWasNoticedLast)
{
    EXPECT_THAT(report(), HasSubstr("No screenshot has been noticed yet.\n"));
    const auto noticed = [this](std::chrono::seconds ago) {
        status.lastNoticed = {"/home/u/shot.png", status.now - ago};
        return report();
    };
    EXPECT_THAT(noticed(1s), HasSubstr("Noticed last: ~/shot.png, 1 second ago\n"));
    EXPECT_THAT(noticed(119s), HasSubstr("119 seconds ago"));
    EXPECT_THAT(noticed(120s), HasSubstr("2 minutes ago"));
    EXPECT_THAT(noticed(3h), HasSubstr("3 hours ago"));
    EXPECT_THAT(noticed(-5s), HasSubstr("0 seconds ago")) << "the clock was set back";
}

TEST_F(StatusReportTest, TellsWhichHotkeysWork)
{
    const auto wanted = traitsOf(HotkeyTarget::openClose).defaultConfig;
    const auto second = *traitsOf(HotkeyTarget::openClose).secondChoice;
    EXPECT_EQ(
        hotkeyLine(HotkeyTarget::openClose, wanted, "the editor"),
        "  Alt+Space  the editor: works");
    EXPECT_EQ(
        hotkeyLine(HotkeyTarget::openClose, second, "the editor"),
        "  Ctrl+Alt+Space  the editor: instead of Alt+Space, which another program owns");
    EXPECT_EQ(
        hotkeyLine(HotkeyTarget::undoLast, std::nullopt, "undo"),
        "  Super+Ctrl+Z  undo: does not work: another program owns these keys");
}

TEST_F(StatusReportTest, TellsWhatTheSessionCannotDo)
{
    EXPECT_THAT(report(), HasSubstr("Everything else works in this session.\n"));
    status.troubles = {"Pastes are not seen", "The screen is hidden"};
    EXPECT_THAT(
        report(),
        HasSubstr("What does not work:\n  Pastes are not seen\n  The screen is hidden\n"));
}

TEST_F(StatusReportTest, TellsThatNothingWorksBeforeTheSetup)
{
    status.setupDone = false;
    EXPECT_THAT(report(), HasSubstr("No folder is watched before the first-run window is done.\n"));
    EXPECT_THAT(report(), HasSubstr("No hotkey works before the first-run window is done.\n"));
    EXPECT_THAT(report(), Not(HasSubstr("Pictures")));
}

} // namespace
} // namespace tallowbay
