#include "platform/x11/clipboard/X11TestClipboard.h"

namespace tallowbay::x11 {
namespace {

using namespace std::chrono_literals;
using test::XClient;
using testing::ElementsAre;

// A paste that waits, in the program that has the keyboard.
class X11HeldPasteTest : public X11PasteboardTest {
protected:
    X11HeldPasteTest() { client.takeFocus(); }

    void release()
    {
        pasteboard.releasePaste([this](bool given) { taken = given; });
    }
    std::optional<bool> end()
    {
        EXPECT_TRUE(desktop.run([this] { return taken.has_value(); }));
        return taken;
    }

    std::optional<bool> taken;
};

// A program that hears of each new owner.
class OwnerWatch {
public:
    explicit OwnerWatch(const std::string& display)
        : client(display)
    {
        auto* server = client.connection();
        std::free(xcb_xfixes_query_version_reply(
            server, xcb_xfixes_query_version(server, 5, 0), nullptr));
        xcb_xfixes_select_selection_input(
            server, client.root(), client.atom("CLIPBOARD"),
            XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
        client.sync();
    }

    // Whether it has, since it was asked last.
    bool hasHeard()
    {
        const auto* fixes = xcb_get_extension_data(client.connection(), &xcb_xfixes_id);
        client.sync();
        bool heard = false;
        while (client.nextOf(std::uint8_t(fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY), 0ms))
            heard = true;
        return heard;
    }

private:
    XClient client;
};

// It would have been taken for a paste.
TEST_F(X11HeldPasteTest, TellsTheProgramAtOnceThatThereWillBeFiles)
{
    pasteboard.writeFiles({"/old"});
    pasteboard.holdPaste(1h);
    EXPECT_THAT(targets(), testing::Contains("x-special/gnome-copied-files"));
    pasteboard.writeFiles({"/a"});
    release();
    EXPECT_EQ(taken, std::nullopt);
    EXPECT_EQ(paste("text/uri-list"), "file:///a\r\n");
    EXPECT_EQ(end(), true);
}

// It may be answered already, and a program that reads each new clipboard would be taken for the
// paste.
TEST_F(X11HeldPasteTest, GivesNothingToAPasteThatBeganBeforeWeOwnedTheClipboard)
{
    XClient other(desktop.server.display());
    other.own("CLIPBOARD");
    pasteboard.holdPaste(1h);
    client.request("text/uri-list");
    EXPECT_FALSE(granted());
    pasteboard.writeFiles({"/a"});
    // Bug: it was given what it came too late for, and the paste was posted beside it.
    client.request("text/uri-list");
    EXPECT_FALSE(granted());
    release();
    client.request("text/uri-list");
    EXPECT_FALSE(granted());
    EXPECT_EQ(taken, std::nullopt);
}

TEST_F(X11HeldPasteTest, GivesTheFilesOnceAPasteThatBeganBeforeWeOwnedTheClipboardIsOver)
{
    XClient other(desktop.server.display());
    other.own("CLIPBOARD");
    pasteboard.holdPaste(50ms);
    pasteboard.writeFiles({"/a"});
    release();
    EXPECT_EQ(end(), false);
    EXPECT_EQ(paste("text/uri-list"), "file:///a\r\n");
}

// The batch would be over, and nothing inserted.
TEST_F(X11HeldPasteTest, TakesNoQuestionForAnotherFormForThePaste)
{
    pasteboard.writeFiles({"/old"});
    pasteboard.holdPaste(50ms);
    client.request("UTF8_STRING");
    EXPECT_FALSE(granted());
    pasteboard.writeFiles({"/a"});
    release();
    EXPECT_EQ(end(), false);
}

TEST_F(X11HeldPasteTest, KeepsNobodyWaitingButTheProgramInFront)
{
    pasteboard.writeFiles({"/a"});
    pasteboard.holdPaste(1h);
    XClient other(desktop.server.display());
    EXPECT_EQ(desktop.beside([&] { return other.paste("text/uri-list"); }), std::nullopt);
    EXPECT_THAT(
        desktop.beside([&] { return other.targets(); }), ElementsAre("TARGETS", "TIMESTAMP"));
}

TEST_F(X11HeldPasteTest, GivesNothingOnceAnotherProgramOwnsTheClipboard)
{
    pasteboard.writeFiles({"/old"});
    pasteboard.holdPaste(1h);
    client.request("text/uri-list");
    desktop.settle();
    XClient other(desktop.server.display());
    other.own("CLIPBOARD");
    EXPECT_FALSE(granted());
    release();
    EXPECT_EQ(end(), false);
}

TEST_F(X11HeldPasteTest, IsTakenByNobodyButTheProgramInFront)
{
    pasteboard.writeFiles({"/old"});
    pasteboard.holdPaste(1s);
    pasteboard.writeFiles({"/a"});
    release();
    XClient other(desktop.server.display());
    EXPECT_EQ(desktop.beside([&] { return other.paste("text/uri-list"); }), "file:///a\r\n");
    EXPECT_EQ(end(), false);
}

// Bug: it was asked on hearing of the new content, and taken for pasting it.
TEST_F(X11HeldPasteTest, LetsNobodyHearOfTheContentBeforeTheEnd)
{
    OwnerWatch watch(desktop.server.display());
    pasteboard.writeFiles({"/old"});
    EXPECT_TRUE(watch.hasHeard());
    pasteboard.holdPaste(1h);
    pasteboard.writeFiles({"/a"});
    release();
    pasteboard.writeFiles({"/a", "/b"});
    EXPECT_FALSE(watch.hasHeard());
    EXPECT_EQ(paste("text/uri-list"), "file:///a\r\nfile:///b\r\n");
    EXPECT_EQ(end(), true);
    EXPECT_TRUE(watch.hasHeard());
    EXPECT_EQ(paste("text/uri-list"), "file:///a\r\nfile:///b\r\n") << "it is there as before";
}

TEST_F(X11HeldPasteTest, LetsAllHearOfTheContentIfNobodyHasPasted)
{
    OwnerWatch watch(desktop.server.display());
    pasteboard.writeFiles({"/old"});
    pasteboard.holdPaste(10ms);
    pasteboard.writeFiles({"/a"});
    EXPECT_TRUE(watch.hasHeard()) << "of what was old";
    bool heardBefore = false;
    pasteboard.releasePaste([&](bool given) {
        taken = given;
        heardBefore = watch.hasHeard();
    });
    EXPECT_EQ(end(), false);
    EXPECT_TRUE(heardBefore) << "a program that believes that there is nothing ignores the key";
}

// A dialog that says so takes its time.
TEST_F(X11HeldPasteTest, EndsOnlySomeTimeAfterItWasToldThatThereIsNothing)
{
    pasteboard.writeFiles({"/old"});
    client.request("text/uri-list");
    EXPECT_TRUE(granted());
    const auto begin = std::chrono::steady_clock::now();
    pasteboard.holdPaste(1s);
    client.request("text/uri-list");
    EXPECT_FALSE(granted());
    pasteboard.writeFiles({"/a"});
    release();
    EXPECT_EQ(end(), false);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 1250ms);
}

// It had one form of it then, and the paste was posted beside it.
TEST_F(X11HeldPasteTest, IsToldOfEveryFormThatThereIsNothing)
{
    pasteboard.writeFiles({"/old"});
    pasteboard.holdPaste(1h);
    client.request("text/uri-list");
    client.sync();
    desktop.settle();
    pasteboard.holdPaste(1h);
    EXPECT_FALSE(granted());
    pasteboard.writeFiles({"/a"});
    release();
    for (const char* form : {"text/uri-list", "x-special/gnome-copied-files", "MULTIPLE"}) {
        client.request(form);
        EXPECT_FALSE(granted()) << form;
    }
    EXPECT_EQ(taken, std::nullopt);
}

TEST(X11PasteboardsEndTest, KeepsNobodyWaiting)
{
    X11TestDesktop desktop;
    auto pasteboard = std::make_unique<X11Pasteboard>(*desktop.session, desktop.dispatch);
    XClient client(desktop.server.display());
    client.takeFocus();
    pasteboard->writeFiles({"/old"});
    pasteboard->holdPaste(1h);
    client.request("text/uri-list");
    client.sync();
    desktop.settle();
    pasteboard.reset();
    EXPECT_FALSE(client.granted());
}

} // namespace
} // namespace tallowbay::x11
