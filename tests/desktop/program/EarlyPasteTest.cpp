// A paste that comes before its screenshot is compressed arrives in the window it was meant for.

#include "desktop/program/Home.h"
#include "desktop/program/Tallowbay.h"
#include "desktop/support/SessionBus.h"
#include "desktop/support/Wait.h"
#include "desktop/support/XClient.h"
#include "desktop/support/XServer.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <stdexcept>

using namespace tallowbay::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const std::string queued = ">>> CMD+V QUEUED — clipboard cleared, waiting for compression";
const std::string notFired = ">>> Queued paste not fired — another window is active";

class EarlyPasteTest : public testing::Test {
protected:
    EarlyPasteTest()
    {
        server.startWindowManager();
        home.addGate("pngquant");
        std::filesystem::create_directory(folder);
    }

    // A paste is held where the clipboard was ours already.
    void takeFirst(const Tallowbay& tallowbay) const
    {
        home.takeScreenshot(0);
        ASSERT_TRUE(tallowbay.waitForLine("Clipboard updated: 1 image(s)"));
    }

    void startThunar(const Tallowbay& tallowbay)
    {
        takeFirst(tallowbay); // without files on the clipboard it ignores the key
        Environment environment = server.environment();
        environment.merge(home.environment());
        environment["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
        environment["NO_AT_BRIDGE"] = "1";
        thunar =
            std::make_unique<ChildProcess>(std::vector<std::string>{"thunar", folder}, environment);
        ASSERT_TRUE(waitForActive("pasted - Thunar")) << thunar->errors();
        // It takes keys some time after its window is active.
        ASSERT_TRUE(waitUntil([&] {
            press("ctrl+shift+n");
            return waitForActive("New Folder", std::chrono::seconds(1))
                || waitForActive("Create New Folder", std::chrono::seconds(1));
        })) << activeWindow();
        press("Escape");
        ASSERT_TRUE(waitForActive("pasted - Thunar"));
    }

    std::string activeWindow() const
    {
        const auto name = server.run({"xdotool", "getactivewindow", "getwindowname"}).output;
        return name.substr(0, name.find('\n'));
    }
    bool waitForActive(
        const std::string& name, std::chrono::milliseconds limit = std::chrono::seconds(20)) const
    {
        return waitUntil([&] { return activeWindow() == name; }, limit);
    }
    void press(const std::string& keys) const { server.run({"xdotool", "key", keys}); }

    // Its name; its compression waits.
    std::string beginScreenshot(int second) const
    {
        home.closeGate();
        const auto path = home.takeScreenshot(second);
        EXPECT_TRUE(waitForCompression(server, home)) << path;
        return path.filename();
    }

    // Among the lines after the first so many.
    static bool hasLine(const Tallowbay& tallowbay, const std::string& beginning, std::size_t after)
    {
        const auto lines = tallowbay.lines();
        return std::any_of(
            lines.begin() + std::ptrdiff_t(after), lines.end(),
            [&](const std::string& line) { return line.starts_with(beginning); });
    }

    // What came to a program before F9 was pressed in it.
    struct Received {
        int keys = 0; // V alone
        int grants = 0;
    };
    static Received receivedBeforeF9(XClient& target)
    {
        constexpr std::uint8_t v = 55;
        constexpr std::uint8_t f9 = 75;
        Received received;
        while (const auto event = target.next(std::chrono::seconds(20))) {
            const int type = event->response_type & 0x7f;
            const auto key = reinterpret_cast<xcb_key_press_event_t&>(*event).detail;
            const auto& answer = reinterpret_cast<xcb_selection_notify_event_t&>(*event);
            if (type == XCB_KEY_PRESS && key == f9)
                return received;
            received.keys += type == XCB_KEY_PRESS && key == v;
            received.grants += type == XCB_SELECTION_NOTIFY && answer.property != XCB_NONE;
        }
        throw std::runtime_error("F9 has not arrived");
    }

    bool hasArrived(const std::string& name) const
    {
        return std::filesystem::exists(folder / name);
    }

    XServer server;
    Home home;
    const std::filesystem::path folder = home.folder() / "pasted";
    const SessionBus bus{home.environment()};
    std::unique_ptr<ChildProcess> thunar;
};

} // namespace

// It said that there is nothing to paste, and the batch was gone.
TEST_F(EarlyPasteTest, AFileManagerWaitsForTheScreenshot)
{
    Tallowbay tallowbay(server, home);
    startThunar(tallowbay);
    int attempt = 0;
    std::size_t missed = 0;
    // It waits for less than a second, which a busy machine may need for the compression alone.
    EXPECT_TRUE(waitUntil([&] {
        const auto name = beginScreenshot(++attempt);
        press("ctrl+v");
        EXPECT_TRUE(tallowbay.waitForLine(queued, std::size_t(attempt)));
        home.openGate();
        EXPECT_TRUE(waitUntil([&] {
            return hasArrived(name)
                || tallowbay.waitForLine(notFired, missed + 1, std::chrono::seconds(0));
        }));
        press("Escape"); // closes what it may have said
        missed += !hasArrived(name);
        return hasArrived(name);
    })) << tallowbay.process.output()
        << activeWindow();
    EXPECT_EQ(activeWindow(), "pasted - Thunar");
}

TEST_F(EarlyPasteTest, WhereAFileManagerHasGivenUpTheBatchStaysForTheNextPaste)
{
    Tallowbay tallowbay(server, home);
    startThunar(tallowbay);
    const auto name = beginScreenshot(1);
    press("ctrl+v");
    ASSERT_TRUE(waitUntil([&] { return activeWindow() != "pasted - Thunar"; }));
    home.openGate();
    ASSERT_TRUE(tallowbay.waitForLine(notFired)) << tallowbay.process.output() << activeWindow();
    EXPECT_FALSE(hasArrived(name));

    // It takes no keys in the moment in which its window comes to the front.
    ASSERT_TRUE(waitUntil([&] {
        press("Escape");
        return activeWindow() == "pasted - Thunar";
    }));
    EXPECT_TRUE(waitUntil([&] {
        press("ctrl+v");
        return waitUntil([&] { return hasArrived(name); }, std::chrono::seconds(2));
    }));
    EXPECT_TRUE(tallowbay.waitForLine(">>> resetBatch — clearing 2 URL(s), 0 OCR text(s)"));
}

// The files arrived in the wrong place.
TEST_F(EarlyPasteTest, NothingArrivesInAWindowThatTheUserHasGoneToMeanwhile)
{
    Tallowbay tallowbay(server, home);
    PasteWindow first(server, home);
    const auto copy = home.optimized() / beginScreenshot(1);
    first.pressPaste();
    ASSERT_TRUE(first.waitForPastes(1)) << "it waits no longer";
    EXPECT_THAT(first.pastes(), ElementsAre(IsEmpty()));
    PasteWindow second(server, home);
    home.openGate();
    ASSERT_TRUE(tallowbay.waitForLine(notFired)) << tallowbay.process.output() << activeWindow();

    second.pressPaste();
    ASSERT_TRUE(second.waitForPastes(1));
    EXPECT_THAT(second.pastes(), ElementsAre(ElementsAre(copy)));
    EXPECT_EQ(first.pastes().size(), 1u);
    EXPECT_TRUE(tallowbay.waitForLine(">>> resetBatch — clearing 1 URL(s), 0 OCR text(s)"));
}

TEST_F(EarlyPasteTest, AProgramThatWaitsGetsTheWholeBatchWithItsOwnPaste)
{
    Tallowbay tallowbay(server, home);
    takeFirst(tallowbay);
    XClient target(server.display());
    target.takeFocus();
    std::size_t attempt = 0;
    const auto linesThatBegin = [&](const char* text) {
        const auto lines = tallowbay.lines();
        return std::size_t(std::ranges::count_if(
            lines, [&](const std::string& line) { return line.starts_with(text); }));
    };
    // It waits for less than a second, which a busy machine may need for the compression alone.
    EXPECT_TRUE(waitUntil([&] {
        const auto name = beginScreenshot(static_cast<int>(++attempt));
        press("ctrl+v");
        EXPECT_TRUE(tallowbay.waitForLine(queued, attempt));
        target.request("text/uri-list");
        target.sync();
        home.openGate();
        EXPECT_TRUE(waitUntil([&] { return linesThatBegin(">>> resetBatch") >= attempt; }));
        const auto endOfName = name.substr(name.rfind(' ') + 1);
        return target.granted() && target.take().bytes.find(endOfName) != std::string::npos;
    }));
    EXPECT_EQ(linesThatBegin(">>> Queued paste has waited"), 1u);
}

// Bug: a paste was posted beside its own, and all arrived twice.
TEST_F(EarlyPasteTest, AProgramThatAsksJustAfterTheBatchIsCompleteGetsItOnce)
{
    Tallowbay tallowbay(server, home);
    takeFirst(tallowbay);
    XClient target(server.display());
    target.takeFocus();
    target.sync();
    int attempt = 0;
    // It has less than a second, which a busy machine may need for the compression alone.
    EXPECT_TRUE(waitUntil([&] {
        const auto lines = tallowbay.lines().size();
        beginScreenshot(++attempt);
        press("ctrl+v");
        EXPECT_TRUE(tallowbay.waitForLine(queued, std::size_t(attempt)));
        home.openGate();
        EXPECT_TRUE(waitUntil([&] { return hasLine(tallowbay, "Clipboard updated", lines); }));
        target.request("text/uri-list");
        target.sync();
        EXPECT_TRUE(waitUntil([&] { return hasLine(tallowbay, ">>> resetBatch", lines); }));
        press("F9");
        const Received received = receivedBeforeF9(target);
        EXPECT_EQ(received.grants, 1);
        const bool waited = hasLine(tallowbay, ">>> Queued paste has waited", lines);
        EXPECT_EQ(received.keys, waited ? 1 : 2);
        return waited;
    })) << tallowbay.process.output();
}

// Bug: it was asked whether to replace what it had just inserted.
TEST_F(EarlyPasteTest, AFileManagerThatIsBusyWhenTheBatchIsCompleteInsertsItOnce)
{
    Tallowbay tallowbay(server, home);
    startThunar(tallowbay);
    int attempt = 0;
    EXPECT_TRUE(waitUntil([&] {
        const auto lines = tallowbay.lines().size();
        const auto name = beginScreenshot(++attempt);
        thunar->signal(SIGSTOP);
        press("ctrl+v");
        EXPECT_TRUE(tallowbay.waitForLine(queued, std::size_t(attempt)));
        home.openGate();
        EXPECT_TRUE(waitUntil([&] { return hasLine(tallowbay, "Clipboard updated", lines); }));
        thunar->signal(SIGCONT);
        EXPECT_TRUE(waitUntil([&] { return hasArrived(name); }));
        if (hasLine(tallowbay, ">>> Queued paste has waited", lines))
            return true;
        press("Escape"); // it took too long, and the paste was posted
        return false;
    }));
    press("ctrl+shift+n");
    EXPECT_TRUE(waitUntil([&] { return activeWindow().ends_with("New Folder"); }))
        << activeWindow();
}
