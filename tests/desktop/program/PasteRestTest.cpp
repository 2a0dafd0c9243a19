// A program that takes one file of a paste, whatever is offered, gets them all the same.

#include "desktop/program/Home.h"
#include "desktop/program/Tallowbay.h"
#include "desktop/support/Wait.h"
#include "desktop/support/XClient.h"
#include "desktop/support/XServer.h"

#include <gmock/gmock.h>

#include <stdexcept>

using namespace tallowbay::test;
using testing::ElementsAre;
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
    void press(const std::string& keys) const { server.run({"xdotool", "key", keys}); }

    // The first of what is there when Ctrl+V is pressed in the program.
    std::string fileOfNextPaste() const
    {
        constexpr std::uint8_t v = 55;
        while (const auto event = program->nextOf(XCB_KEY_PRESS)) {
            if (reinterpret_cast<xcb_key_press_event_t&>(*event).detail != v)
                continue;
            const auto list = program->paste("text/uri-list").value_or("nothing");
            return list.substr(0, list.find('\r'));
        }
        return "no paste";
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
    press("a");
    EXPECT_TRUE(tallowbay.waitForLine(">>> Pasting one by one has ended — 2 image(s) left"));
    const auto rest = program->paste("text/uri-list").value_or("");
    EXPECT_EQ(splitLines(rest).size(), 2u) << rest;
}

TEST_F(PasteRestTest, AClickOfTheUsersEndsIt)
{
    press("ctrl+v");
    EXPECT_THAT(fileOfNextPaste(), HasSubstr("10.31.01.png"));
    server.run({"xdotool", "click", "1"});
    EXPECT_TRUE(tallowbay.waitForLine(">>> Pasting one by one has ended — 2 image(s) left"));
}
