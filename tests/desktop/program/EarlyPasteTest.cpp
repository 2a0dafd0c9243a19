// A paste that comes before its screenshot is compressed arrives in the window it was meant for.

#include "desktop/program/Home.h"
#include "desktop/program/Tallowbay.h"
#include "desktop/support/SessionBus.h"
#include "desktop/support/Wait.h"
#include "desktop/support/XClient.h"
#include "desktop/support/XServer.h"

#include <gmock/gmock.h>

#include <algorithm>

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
