// The screencapture helper on real X servers, used with real mouse and key events.

#include "desktop/support/Rival.h"
#include "desktop/support/Wait.h"
#include "desktop/support/XServer.h"

#include <QDir>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace tallowbay::test {

namespace {

using Words = std::vector<std::string>;

class ScreencaptureTest : public testing::Test {
protected:
    void SetUp() override
    {
        // No two neighbouring parts of this background are alike.
        run({"xsetroot", "-mod", "16", "12", "-fg", "#203040", "-bg", "#d0c0a0"});
    }

    void run(const std::vector<std::string>& command)
    {
        const Finished result = server.run(command);
        ASSERT_EQ(result.status, 0) << command.front() << ": " << result.errors;
    }

    void xdotool(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "xdotool");
        run(arguments);
    }

    void dragTo(const std::string& x, const std::string& y)
    {
        xdotool({"mousedown", "1", "mousemove", x, y, "mouseup", "1"});
    }

    QImage wholeScreen()
    {
        run({SCREENCAPTURE, path("whole.png")});
        return QImage(QString::fromStdString(path("whole.png")));
    }

    void startSelecting(const std::vector<std::string>& environment = {})
    {
        std::vector<std::string> command{"env"};
        command.insert(command.end(), environment.begin(), environment.end());
        command.insert(command.end(), {SCREENCAPTURE, "-i", path("region.png")});
        capture = server.start(command);
        ASSERT_TRUE(waitUntil([this] { return rival.desktopIsCovered(); })) << capture->errors();
        ASSERT_TRUE(waitUntil([this] { return rival.keyboardIsHeldByAnother(); }));
    }

    void expectRegion(const QRect& region)
    {
        ASSERT_EQ(capture->wait(), 0) << capture->errors();
        const QImage result(QString::fromStdString(path("region.png")));
        EXPECT_EQ(result.size(), region.size());
        EXPECT_EQ(result, whole.copy(region));
        EXPECT_TRUE(waitUntil([this] { return !rival.desktopIsCovered(); }));
    }

    void expectCancelled()
    {
        EXPECT_EQ(capture->wait(), 1);
        EXPECT_FALSE(QFile::exists(QString::fromStdString(path("region.png"))));
        EXPECT_TRUE(waitUntil([this] { return !rival.desktopIsCovered(); }));
    }

    // Ends at once, without a window and with one line that tells why.
    void expectRefused(const Words& command, const std::string& reason, int status = 1)
    {
        const Finished result = server.run(command);
        EXPECT_EQ(result.status, status);
        EXPECT_TRUE(result.errors.starts_with("screencapture: ")) << result.errors;
        EXPECT_NE(result.errors.find(reason), std::string::npos) << result.errors;
        EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << result.errors;
    }

    static Words joined(Words list, const Words& more)
    {
        list.insert(list.end(), more.begin(), more.end());
        return list;
    }

    void writeText(const char* name, const std::string& text) const
    {
        std::ofstream(path(name)) << text;
    }
    std::string text(const char* name) const
    {
        std::ifstream file(path(name));
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string path(const char* name) const { return folder.filePath(name).toStdString(); }

    QTemporaryDir folder;
    XServer server;
    Rival rival{server.display()};
    QImage whole;
    std::unique_ptr<ChildProcess> capture;
};

TEST_F(ScreencaptureTest, TakesTheWholeScreen)
{
    run({"xsetroot", "-solid", "#123456"});
    whole = wholeScreen();
    EXPECT_EQ(whole.size(), QSize(1280, 800));
    EXPECT_EQ(whole.pixel(0, 0), qRgb(0x12, 0x34, 0x56));
    EXPECT_EQ(whole.pixel(1279, 799), qRgb(0x12, 0x34, 0x56));
}

TEST_F(ScreencaptureTest, LeavesNothingButTheFile)
{
    wholeScreen();
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList("whole.png"));
}

TEST_F(ScreencaptureTest, LetsNoOtherUserReadTheFile)
{
    wholeScreen();
    const auto permissions = QFile::permissions(QString::fromStdString(path("whole.png")));
    EXPECT_TRUE(permissions & QFile::ReadOwner);
    EXPECT_FALSE(permissions & (QFile::ReadGroup | QFile::ReadOther));
}

TEST_F(ScreencaptureTest, TakesTheRegionThatIsDragged)
{
    whole = wholeScreen();
    startSelecting();
    xdotool({"mousemove", "301", "203"});
    dragTo("700", "449");
    expectRegion(QRect(QPoint(301, 203), QPoint(700, 449)));
}

TEST_F(ScreencaptureTest, TakesTheSamePixelsAtEveryScale)
{
    whole = wholeScreen();
    for (const char* scale : {"QT_SCALE_FACTOR=1.5", "QT_SCALE_FACTOR=2"}) {
        startSelecting({scale});
        xdotool({"mousemove", "301", "203"});
        dragTo("700", "449");
        expectRegion(QRect(QPoint(301, 203), QPoint(700, 449)));
    }
}

TEST_F(ScreencaptureTest, TakesARegionOverTwoScreensOfDifferentScale)
{
    run({"xrandr", "--setmonitor", "left", "800/211x800/211+0+0", "screen"});
    run({"xrandr", "--setmonitor", "right", "480/127x600/158+800+0", "none"});
    whole = wholeScreen();
    startSelecting({"QT_SCREEN_SCALE_FACTORS=1;1.5"});
    xdotool({"mousemove", "700", "100"});
    dragTo("1099", "399");
    expectRegion(QRect(QPoint(700, 100), QPoint(1099, 399)));
}

TEST_F(ScreencaptureTest, TakesARegionByKeyboardAlone)
{
    whole = wholeScreen();
    xdotool({"mousemove", "100", "100"});
    startSelecting();
    xdotool({"key", "Right", "space", "shift+Right", "shift+Right", "Down", "Down", "Return"});
    expectRegion(QRect(101, 100, 21, 3));
}

TEST_F(ScreencaptureTest, MovesTheRealPointerWithTheArrows)
{
    xdotool({"mousemove", "100", "100"});
    startSelecting();
    xdotool({"key", "shift+Down"});
    EXPECT_TRUE(waitUntil([this] {
        return server.run({"xdotool", "getmouselocation"}).output.starts_with("x:100 y:110 ");
    }));
}

TEST_F(ScreencaptureTest, IsCancelledByEsc)
{
    startSelecting();
    xdotool({"mousemove", "100", "100", "mousedown", "1", "mousemove", "200", "200"});
    xdotool({"key", "Escape"});
    expectCancelled();
}

TEST_F(ScreencaptureTest, IsCancelledByTheRightButton)
{
    startSelecting();
    xdotool({"click", "3"});
    expectCancelled();
}

TEST_F(ScreencaptureTest, GoesOnAfterAPlainClick)
{
    whole = wholeScreen();
    startSelecting();
    xdotool({"mousemove", "100", "100", "click", "1", "mousemove", "10", "10"});
    dragTo("19", "19");
    expectRegion(QRect(10, 10, 10, 10));
}

TEST_F(ScreencaptureTest, GetsAKeyboardThatAnotherProgramHeldWhenItStarted)
{
    ASSERT_TRUE(rival.grabKeyboard());
    capture = server.start({SCREENCAPTURE, "-i", path("region.png")});
    ASSERT_TRUE(waitUntil([this] { return rival.desktopIsCovered(); }));
    rival.releaseKeyboard();
    ASSERT_TRUE(waitUntil([this] { return rival.keyboardIsHeldByAnother(); }));
    xdotool({"key", "Escape"});
    expectCancelled();
}

TEST_F(ScreencaptureTest, KeepsTheKeyThatEndsItFromOtherPrograms)
{
    startSelecting();
    xdotool({"keydown", "Escape"});
    EXPECT_FALSE(capture->wait(std::chrono::milliseconds(200)));
    xdotool({"keyup", "Escape"});
    expectCancelled();
}

TEST_F(ScreencaptureTest, IsGoneFromTheScreenAfterATerminationSignal)
{
    startSelecting();
    capture->signal(SIGTERM);
    EXPECT_EQ(capture->wait(), 128 + SIGTERM);
    EXPECT_TRUE(waitUntil([this] { return !rival.desktopIsCovered(); }));
    EXPECT_FALSE(QFile::exists(QString::fromStdString(path("region.png"))));
}

// What another user had planted at a guessable name was followed, and the user's file overwritten.
TEST_F(ScreencaptureTest, FollowsNoLink)
{
    writeText("precious", "precious");
    for (const char* target : {"precious", "made"}) {
        std::filesystem::create_symlink(path(target), path("region.png"));
        expectRefused({SCREENCAPTURE, path("region.png")}, "symbolic link");
        expectRefused({SCREENCAPTURE, "-i", path("region.png")}, "symbolic link");
        EXPECT_TRUE(std::filesystem::is_symlink(path("region.png")));
        std::filesystem::remove(path("region.png"));
    }
    EXPECT_EQ(text("precious"), "precious");
    EXPECT_FALSE(std::filesystem::exists(path("made")));
}

TEST_F(ScreencaptureTest, FollowsNoLinkThatComesWhileTheUserSelects)
{
    writeText("precious", "precious");
    startSelecting();
    std::filesystem::create_symlink(path("precious"), path("region.png"));
    xdotool({"mousemove", "100", "100"});
    dragTo("200", "200");
    EXPECT_EQ(capture->wait(), 1);
    EXPECT_NE(capture->errors().find("symbolic link"), std::string::npos) << capture->errors();
    EXPECT_EQ(text("precious"), "precious");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 2);
}

TEST_F(ScreencaptureTest, OpensNoPipeAndNoFolder)
{
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    expectRefused({SCREENCAPTURE, path("pipe")}, "no regular file");
    expectRefused({SCREENCAPTURE, folder.path().toStdString()}, "no regular file");
}

TEST_F(ScreencaptureTest, ReplacesAFileAndNeverWritesToIt)
{
    writeText("precious", "precious");
    std::filesystem::create_hard_link(path("precious"), path("whole.png"));
    EXPECT_EQ(wholeScreen().size(), QSize(1280, 800));
    EXPECT_EQ(text("precious"), "precious");
}

// It wrote a black picture and said that all went well, or covered the screen with black.
TEST_F(ScreencaptureTest, SaysThatAWaylandSessionHidesItsScreen)
{
    for (const char* sign : {"WAYLAND_DISPLAY=wayland-0", "XDG_SESSION_TYPE=wayland"}) {
        for (const char* without : {"DISPLAY", "NOTHING"}) {
            const Words start{"env", "-u", without, sign, SCREENCAPTURE};
            expectRefused(joined(start, {path("whole.png")}), "Wayland session", 69);
            expectRefused(joined(start, {"-i", path("region.png")}), "Wayland session", 69);
        }
    }
    EXPECT_TRUE(QDir(folder.path()).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot));
}

// As in a window of a Wayland session.
TEST_F(ScreencaptureTest, CapturesAnXServerThatTheUserHasDecidedFor)
{
    for (const char* sign : {"WAYLAND_DISPLAY=wayland-0", "XDG_SESSION_TYPE=wayland"})
        run({"env", sign, "TALLOWBAY_DESKTOP=x11", SCREENCAPTURE, path("whole.png")});
    EXPECT_EQ(QImage(QString::fromStdString(path("whole.png"))), wholeScreen());
}

TEST_F(ScreencaptureTest, SaysThatThereIsNoDisplay)
{
    const Finished result = server.run({"env", "-u", "DISPLAY", SCREENCAPTURE, path("whole.png")});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.errors.find("no X display"), std::string::npos);
}

TEST_F(ScreencaptureTest, SaysThatItCannotWrite)
{
    const Finished result = server.run({SCREENCAPTURE, path("absent/whole.png")});
    EXPECT_EQ(result.status, 1);
    EXPECT_FALSE(result.errors.empty());
}

TEST_F(ScreencaptureTest, SaysHowToUseIt)
{
    EXPECT_EQ(server.run({SCREENCAPTURE, "--help"}).status, 0);
    EXPECT_EQ(server.run({SCREENCAPTURE}).status, 1);
    EXPECT_EQ(server.run({SCREENCAPTURE, "-x", path("whole.png")}).status, 1);
}

} // namespace

} // namespace tallowbay::test
