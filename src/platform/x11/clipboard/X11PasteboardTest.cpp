#include "platform/x11/clipboard/X11TestClipboard.h"

namespace tallowbay::x11 {
namespace {

using namespace std::chrono_literals;
using std::filesystem::path;
using test::XClient;
using testing::ElementsAre;

TEST_F(X11PasteboardTest, OffersFilesAsFilesAndAsNothingElse)
{
    pasteboard.writeFiles({"/a"});
    EXPECT_THAT(
        targets(),
        ElementsAre(
            "TARGETS", "TIMESTAMP", "MULTIPLE", "text/uri-list", "x-special/gnome-copied-files",
            "x-special/mate-copied-files"));
}

TEST_F(X11PasteboardTest, OffersTextAsTextAndAsNothingElse)
{
    pasteboard.writeText("text");
    EXPECT_THAT(
        targets(),
        ElementsAre(
            "TARGETS", "TIMESTAMP", "MULTIPLE", "UTF8_STRING", "text/plain;charset=utf-8",
            "text/plain", "STRING", "TEXT"));
}

TEST_F(X11PasteboardTest, OwnsAnEmptySelectionAfterClear)
{
    pasteboard.writeFiles({"/a"});
    pasteboard.clear();
    EXPECT_THAT(targets(), ElementsAre("TARGETS", "TIMESTAMP"));
    EXPECT_EQ(paste("text/uri-list"), std::nullopt);
}

TEST_F(X11PasteboardTest, ShowsItsTargetsToXclip)
{
    pasteboard.writeFiles({"/a"});
    const auto shown =
        desktop.runProgram({"xclip", "-o", "-selection", "clipboard", "-t", "TARGETS"});
    EXPECT_EQ(
        shown.output,
        "TARGETS\nTIMESTAMP\nMULTIPLE\ntext/uri-list\nx-special/gnome-copied-files\n"
        "x-special/mate-copied-files\n");
}

TEST_F(X11PasteboardTest, WritesTheFormsOfFilesToTheByte)
{
    pasteboard.writeFiles({"/a b", "/c"});
    EXPECT_EQ(paste("text/uri-list"), "file:///a%20b\r\nfile:///c\r\n");
    EXPECT_EQ(paste("x-special/gnome-copied-files"), "copy\nfile:///a%20b\nfile:///c");
    EXPECT_EQ(paste("x-special/mate-copied-files"), "copy\nfile:///a%20b\nfile:///c");
    EXPECT_EQ(paste("text/plain"), std::nullopt);
    EXPECT_EQ(paste("image/png"), std::nullopt);
}

TEST_F(X11PasteboardTest, WritesLatin1WhereAStringIsWanted)
{
    pasteboard.writeText("\u00fc \u00ff \u65e5\u672c \U0001f47b.");
    EXPECT_EQ(paste("STRING"), "\xfc \xff ?? ?.");
}

TEST_F(X11PasteboardTest, TellsTheTypeOfEachForm)
{
    const auto typeOf = [&](const char* form) {
        client.request(form);
        EXPECT_TRUE(granted());
        return client.atomName(client.take().type);
    };
    pasteboard.writeText("text");
    EXPECT_EQ(typeOf("TARGETS"), "ATOM");
    EXPECT_EQ(typeOf("TIMESTAMP"), "INTEGER");
    EXPECT_EQ(typeOf("UTF8_STRING"), "UTF8_STRING");
    EXPECT_EQ(typeOf("TEXT"), "UTF8_STRING");
    EXPECT_EQ(typeOf("STRING"), "STRING");
    EXPECT_EQ(typeOf("text/plain"), "text/plain");
}

TEST_F(X11PasteboardTest, TellsTheServerTimeOfTheWrite)
{
    const auto before = desktop.session->serverTime();
    pasteboard.writeFiles({"/a"});
    const auto after = desktop.session->serverTime();
    client.request("TIMESTAMP");
    ASSERT_TRUE(granted());
    const auto values = client.take().values();
    ASSERT_EQ(values.size(), 1u);
    EXPECT_GE(values[0], before);
    EXPECT_LE(values[0], after);
}

TEST_F(X11PasteboardTest, RefusesARequestFromBeforeItBecameTheOwner)
{
    const auto before = desktop.session->serverTime();
    ASSERT_TRUE(test::waitUntil([&] { return desktop.session->serverTime() != before; }));
    pasteboard.writeFiles({"/a"});
    client.request("text/uri-list", "PASTED", "CLIPBOARD", before);
    EXPECT_FALSE(granted());
}

TEST_F(X11PasteboardTest, AnswersARequestFromBeforeItsLastWriteWithTheNewContent)
{
    pasteboard.writeFiles({"/old"});
    const auto before = desktop.session->serverTime();
    ASSERT_TRUE(test::waitUntil([&] { return desktop.session->serverTime() != before; }));
    pasteboard.writeFiles({"/new"});
    client.request("text/uri-list", "PASTED", "CLIPBOARD", before);
    EXPECT_TRUE(granted());
    EXPECT_EQ(client.take().bytes, "file:///new\r\n");
}

TEST_F(X11PasteboardTest, AnswersAnObsoleteRequestorInThePropertyOfTheTarget)
{
    pasteboard.writeText("text");
    const auto target = client.atom("UTF8_STRING");
    xcb_convert_selection(
        client.connection(), client.window(), client.atom("CLIPBOARD"), target, XCB_ATOM_NONE,
        XCB_CURRENT_TIME);
    EXPECT_TRUE(granted());
    EXPECT_EQ(client.take("UTF8_STRING").bytes, "text");
}

TEST_F(X11PasteboardTest, AnswersManyFormsAtOnce)
{
    pasteboard.writeFiles({"/a"});
    client.setValues(
        client.window(), "PAIRS", "ATOM_PAIR",
        {client.atom("text/uri-list"), client.atom("FIRST"), client.atom("image/png"),
         client.atom("SECOND"), client.atom("x-special/gnome-copied-files"), client.atom("THIRD")});
    client.request("MULTIPLE", "PAIRS");
    ASSERT_TRUE(granted());
    const auto pairs = client.take("PAIRS").values();
    EXPECT_THAT(
        pairs,
        ElementsAre(
            client.atom("text/uri-list"), client.atom("FIRST"), client.atom("image/png"),
            XCB_ATOM_NONE, client.atom("x-special/gnome-copied-files"), client.atom("THIRD")));
    EXPECT_EQ(client.take("FIRST").bytes, "file:///a\r\n");
    EXPECT_EQ(client.take("THIRD").bytes, "copy\nfile:///a");
}

TEST_F(X11PasteboardTest, RefusesManyFormsThatAreNotListed)
{
    pasteboard.writeFiles({"/a"});
    client.request("MULTIPLE", "NO_SUCH_PROPERTY");
    EXPECT_FALSE(granted());
}

TEST_F(X11PasteboardTest, IsReadAfterTheFocusHasMoved)
{
    desktop.server.startWindowManager();
    pasteboard.writeFiles({"/a"});
    client.takeFocus();
    XClient other(desktop.server.display());
    other.takeFocus();
    EXPECT_EQ(paste("text/uri-list"), "file:///a\r\n");
    EXPECT_EQ(desktop.beside([&] { return other.paste("text/uri-list"); }), "file:///a\r\n");
}

// A toolkit of our own process asks, and waits on this thread: nothing of the main queue runs.
TEST_F(X11PasteboardTest, AnswersItsOwnToolkitWhileTheMainQueueStands)
{
    const auto* ids = xcb_get_setup(client.connection());
    pasteboard.answerOwnToolkit(ids->resource_id_base, ids->resource_id_mask);
    const std::vector<path> files = manyFiles(20000);
    pasteboard.writeFiles(files);
    EXPECT_EQ(client.targets().size(), 6u);
    EXPECT_EQ(filesOf(client.paste("text/uri-list").value_or(""), "\r\n"), files);
    EXPECT_EQ(client.paste("UTF8_STRING"), std::nullopt);
    pasteboard.clear();
    EXPECT_THAT(client.targets(), ElementsAre("TARGETS", "TIMESTAMP"));

    desktop.settle();
    client.sync();
    EXPECT_EQ(client.nextOf(XCB_SELECTION_NOTIFY, 0ms), nullptr) << "answered twice";
    XClient other(desktop.server.display());
    pasteboard.writeText("text");
    EXPECT_EQ(desktop.beside([&] { return other.paste("UTF8_STRING"); }), "text");
}

TEST_F(X11PasteboardTest, DoesNotWaitForItsOwnToolkitToGiveFiles)
{
    const auto* ids = xcb_get_setup(client.connection());
    pasteboard.answerOwnToolkit(ids->resource_id_base, ids->resource_id_mask);
    client.own("CLIPBOARD");
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(pasteboard.readFiles().empty());
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 400ms);
}

TEST_F(X11PasteboardTest, SurvivesTheEndOfTheServer)
{
    pasteboard.writeFiles({"/a"});
    desktop.server.kill();
    EXPECT_TRUE(desktop.run([&] { return desktop.lostCount == 1; }));
    pasteboard.writeFiles({"/b"});
    pasteboard.writeText("text");
    EXPECT_TRUE(pasteboard.readFiles().empty());
    EXPECT_FALSE(pasteboard.handOver(1s));
    pasteboard.clear();
    desktop.dispatch.runUntil([] { return false; }, 20ms);
    EXPECT_EQ(desktop.lostCount, 1);
}

} // namespace
} // namespace tallowbay::x11
