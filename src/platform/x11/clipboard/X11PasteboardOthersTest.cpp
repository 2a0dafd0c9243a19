#include "platform/x11/clipboard/X11TestClipboard.h"

namespace tallowbay::x11 {
namespace {

using namespace std::chrono_literals;
using std::filesystem::path;
using test::XClient;
using testing::ElementsAre;

// Other owners, clipboard managers, and what is read from them.
using X11PasteboardOthersTest = X11PasteboardTest;

TEST_F(X11PasteboardOthersTest, AnswersNothingOnceAnotherProgramOwnsTheClipboard)
{
    pasteboard.writeFiles({"/a"});
    client.own("CLIPBOARD");
    desktop.settle();
    EXPECT_EQ(pasteboard.readFiles(), std::vector<path>());

    pasteboard.writeFiles({"/b"});
    XClient other(desktop.server.display());
    EXPECT_EQ(desktop.beside([&] { return other.paste("text/uri-list"); }), "file:///b\r\n");
}

TEST_F(X11PasteboardOthersTest, CountsAChangeThatCameBeforeItsOwnWriteOnlyWithThat)
{
    pasteboard.writeFiles({"/a"});
    const std::int64_t first = pasteboard.changeCount();
    client.own("CLIPBOARD"); // told to us, but not handled yet
    pasteboard.writeFiles({"/b"});
    EXPECT_EQ(pasteboard.changeCount(), first + 1);
    desktop.settle();
    EXPECT_EQ(pasteboard.changeCount(), first + 1);
    XClient other(desktop.server.display());
    EXPECT_EQ(desktop.beside([&] { return other.paste("text/uri-list"); }), "file:///b\r\n");
}

TEST_F(X11PasteboardOthersTest, CountsThatAnotherOwnerGoesAway)
{
    std::optional<XClient> other(desktop.server.display());
    other->own("CLIPBOARD");
    desktop.settle();
    const std::int64_t owned = pasteboard.changeCount();
    other.reset();
    EXPECT_TRUE(desktop.run([&] { return pasteboard.changeCount() > owned; }));
}

TEST_F(X11PasteboardOthersTest, StaysEmptyUnderAManagerThatBringsBackWhatIsGone)
{
    const auto manager = desktop.server.start({"parcellite", "-n"});
    const auto others = desktop.server.start(
        {"xclip", "-i", "-quiet", "-selection", "clipboard", "-t", "UTF8_STRING"}, "of others");
    ASSERT_TRUE(desktop.run([&] { return pasteboard.changeCount() > 0; }));
    // It reads every half second; once it has the text, it does bring it back.
    dispatchFor(1500ms);
    others->end();
    ASSERT_TRUE(desktop.run([&] { return paste("UTF8_STRING") == "of others"; }))
        << manager->errors();

    pasteboard.writeText("ours");
    dispatchFor(1500ms);
    pasteboard.clear();
    dispatchFor(1500ms);
    EXPECT_THAT(targets(), ElementsAre("TARGETS", "TIMESTAMP"));
    EXPECT_TRUE(manager->running()) << manager->errors();
}

TEST_F(X11PasteboardOthersTest, ReadsLongListsThatComeInPieces)
{
    const std::vector<path> files = manyFiles(20000);
    std::string list;
    for (const path& file : files)
        list += "file://" + file.native() + "\r\n";
    const auto owner = desktop.server.start(
        {"xclip", "-i", "-quiet", "-selection", "clipboard", "-t", "text/uri-list"}, list);
    ASSERT_TRUE(desktop.run([&] { return pasteboard.changeCount() > 0; }));
    EXPECT_EQ(pasteboard.readFiles(), files);
}

TEST_F(X11PasteboardOthersTest, ReadsTheFormOfFileManagersIfThereIsNoOther)
{
    const auto owner = desktop.server.start(
        {"xclip", "-i", "-quiet", "-selection", "clipboard", "-t", "x-special/gnome-copied-files"},
        "cut\nfile:///a\nfile://localhost/b\nfile://elsewhere/c\nhttps://example.com/d");
    ASSERT_TRUE(desktop.run([&] { return pasteboard.changeCount() > 0; }));
    EXPECT_THAT(pasteboard.readFiles(), ElementsAre("/a", "/b"));
}

TEST_F(X11PasteboardOthersTest, WaitsHalfASecondForAnOwnerThatDoesNotAnswer)
{
    client.own("CLIPBOARD");
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(pasteboard.readFiles().empty());
    const auto taken = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(taken, 490ms);
    EXPECT_LT(taken, 1500ms);
}

TEST_F(X11PasteboardOthersTest, GivesUpOnAnOwnerThatStopsInTheMiddle)
{
    client.own("CLIPBOARD");
    auto files = std::async(std::launch::async, [&] { return pasteboard.readFiles(); });
    const auto event = client.nextOf(XCB_SELECTION_REQUEST);
    ASSERT_TRUE(event);
    const auto& request = reinterpret_cast<xcb_selection_request_event_t&>(*event);
    xcb_change_property(
        client.connection(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
        client.atom("INCR"), 32, 1, "\1\0\0\0");
    client.answer(request, true);
    EXPECT_TRUE(files.get().empty());
}

TEST_F(X11PasteboardOthersTest, WaitsNoLongerThanItMayForAKeeperThatDoesNotAnswer)
{
    const Keeper keeper(desktop.server.display(), false);
    pasteboard.writeText("text");
    auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(pasteboard.handOver(100ms));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 900ms);

    begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(pasteboard.handOver(1h));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
}

TEST_F(X11PasteboardOthersTest, StaysUntilAManagerHasReadThatThereIsNothing)
{
    pasteboard.writeFiles({"/a"});
    pasteboard.clear();
    const SlowReader manager(desktop.server.display(), 5);
    EXPECT_FALSE(pasteboard.handOver(1s));
    EXPECT_EQ(manager.readings, 1);
}

TEST_F(X11PasteboardOthersTest, DoesNotStayForAManagerThatNeverAsksOrNeverEnds)
{
    pasteboard.clear();
    // A busy machine may take its time once.
    const auto handsOverWithin = [&](std::chrono::milliseconds limit) {
        return test::waitUntil([&] {
            const auto begin = std::chrono::steady_clock::now();
            EXPECT_FALSE(pasteboard.handOver(1s));
            return std::chrono::steady_clock::now() - begin < limit;
        });
    };
    EXPECT_TRUE(handsOverWithin(400ms)) << "there is none";
    {
        const Keeper neverAsks(desktop.server.display(), false);
        EXPECT_TRUE(handsOverWithin(900ms));
    }
    // Its fourth question comes shortly before the second is over.
    const SlowReader neverEnds(desktop.server.display(), 1000, 235ms);
    EXPECT_TRUE(handsOverWithin(1100ms)) << "a second, and not one more question";
}

TEST_F(X11PasteboardOthersTest, HandsALongTextOverInPieces)
{
    Keeper keeper(desktop.server.display());
    const std::string text(2'000'000, 'x');
    pasteboard.writeText(text);
    EXPECT_TRUE(pasteboard.handOver(1s));
    EXPECT_TRUE(keeper.kept == text);
}

} // namespace
} // namespace tallowbay::x11
