// A program that takes one file of a paste, whatever is offered, gets them all the same.

#include "desktop/program/Home.h"
#include "desktop/program/Tallowbay.h"
#include "desktop/support/Wait.h"
#include "desktop/support/XClient.h"
#include "desktop/support/XServer.h"

#include <gmock/gmock.h>

#include <stdexcept>

using namespace std::chrono_literals;
using namespace tallowbay::test;
using testing::AnyOf;
using testing::HasSubstr;

namespace {

class PasteRestTest : public testing::Test {
protected:
    PasteRestTest()
    {
        server.startWindowManager();
        program = std::make_unique<XClient>(server.display());
        const std::string names("Navigator\0firefox-esr\0", 22);
        program->setProperty(program->window(), "WM_CLASS", "STRING", names);
        program->sync();
        for (int i = 1; i <= 3; ++i) {
            home.takeScreenshot(i);
            if (!tallowbay.waitForLine(updated(i)))
                throw std::runtime_error("a screenshot is missing");
        }
        program->takeFocus(); // after all that appears at the start
    }

    static std::string updated(int count)
    {
        return "Clipboard updated: " + std::to_string(count) + " image(s)";
    }
    static std::string left(std::size_t count)
    {
        return ">>> Pasting one by one has ended — " + std::to_string(count) + " image(s) left";
    }
    void press(const std::string& keys) const { server.run({"xdotool", "key", keys}); }

    // Whether Ctrl+V is pressed in the program.
    bool isPasteKeyPressed(std::chrono::milliseconds limit = 20s) const
    {
        constexpr std::uint8_t v = 55;
        while (const auto event = program->nextOf(XCB_KEY_PRESS, limit)) {
            if (reinterpret_cast<xcb_key_press_event_t&>(*event).detail == v)
                return true;
        }
        return false;
    }

    // The first of what is there.
    std::string pastedFile() const
    {
        const auto list = program->paste("text/uri-list").value_or("nothing");
        return list.substr(0, list.find('\r'));
    }

    std::string fileOfNextPaste() const { return isPasteKeyPressed() ? pastedFile() : "no paste"; }

    // Answers each paste until the program says how it has ended; its words.
    std::string answersUntilTheEnd() const
    {
        std::string end;
        const auto hasEnded = [&] {
            for (const std::string& line : tallowbay.lines()) {
                if (line.starts_with(">>> Pasted one") || line.starts_with(">>> Pasting one"))
                    end = line;
            }
            return !end.empty();
        };
        waitUntil([&] {
            if (isPasteKeyPressed(10ms))
                pastedFile();
            return hasEnded();
        });
        return end;
    }

    XServer server;
    Home home;
    Tallowbay tallowbay{server, home};
    std::unique_ptr<XClient> program;
};

} // namespace

TEST_F(PasteRestTest, AProgramThatTakesOneFileOfAPasteGetsThemOneByOne)
{
    press("ctrl+v");
    EXPECT_THAT(fileOfNextPaste(), HasSubstr("10.31.01.png"));
    EXPECT_THAT(fileOfNextPaste(), HasSubstr("10.31.02.png"));
    EXPECT_THAT(fileOfNextPaste(), HasSubstr("10.31.03.png"));
    EXPECT_TRUE(tallowbay.waitForLine(">>> Pasted one by one: 3 image(s)"));
    EXPECT_TRUE(tallowbay.waitForLine(">>> resetBatch — clearing 3 URL(s), 0 OCR text(s)"));
    const auto all = program->paste("text/uri-list").value_or("");
    EXPECT_EQ(splitLines(all).size(), 3u) << all;
}

TEST_F(PasteRestTest, AKeyOfTheUsersEndsIt)
{
    press("ctrl+v");
    EXPECT_THAT(fileOfNextPaste(), HasSubstr("10.31.01.png"));
    ASSERT_TRUE(isPasteKeyPressed());
    press("a");
    pastedFile();
    const std::string end = answersUntilTheEnd();
    const auto rest = splitLines(program->paste("text/uri-list").value_or(""));
    EXPECT_THAT(rest.size(), AnyOf(1u, 2u));
    EXPECT_EQ(end, left(rest.size()));
}

TEST_F(PasteRestTest, AClickOfTheUsersEndsIt)
{
    press("ctrl+v");
    EXPECT_THAT(fileOfNextPaste(), HasSubstr("10.31.01.png"));
    ASSERT_TRUE(isPasteKeyPressed());
    const std::string window = std::to_string(program->window());
    server.run({"xdotool", "mousemove", "--window", window, "5", "5", "click", "1"});
    pastedFile();
    EXPECT_THAT(answersUntilTheEnd(), AnyOf(left(1), left(2)));
}
