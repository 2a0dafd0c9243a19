#include "platform/x11/clipboard/X11TestClipboard.h"

#include <csignal>

namespace tallowbay::x11 {
namespace {

using namespace std::chrono_literals;
using std::filesystem::path;
using test::XClient;
using SelectionTransfersTest = X11PasteboardTest;

TEST_F(SelectionTransfersTest, SendsLongListsInPieces)
{
    for (const int count : {1000, 20000}) {
        const std::vector<path> files = manyFiles(count);
        pasteboard.writeFiles(files);
        client.request("text/uri-list");
        ASSERT_TRUE(granted());
        ASSERT_EQ(client.look().type, client.atom("INCR"));
        const auto list = desktop.beside([&] { return client.takePieces(); });
        EXPECT_EQ(filesOf(list.value_or(""), "\r\n"), files);
        desktop.settle();
        EXPECT_EQ(pasteboard.transferCount(), 0u);
    }
}

TEST_F(SelectionTransfersTest, SendsLongListsToXclip)
{
    const std::vector<path> files = manyFiles(20000);
    pasteboard.writeFiles(files);
    const auto shown =
        desktop.runProgram({"xclip", "-o", "-selection", "clipboard", "-t", "text/uri-list"});
    EXPECT_EQ(filesOf(shown.output, "\r\n"), files);
}

TEST_F(SelectionTransfersTest, SendsAVeryLongText)
{
    std::string text;
    while (text.size() < 20'000'000)
        text += "All work and no play makes a long text. ";
    pasteboard.writeText(text);
    EXPECT_TRUE(paste("UTF8_STRING") == text);
}

TEST_F(SelectionTransfersTest, ServesOthersWhileOneIsSlow)
{
    const std::vector<path> files = manyFiles(20000);
    pasteboard.writeFiles(files);
    XClient slow(desktop.server.display());
    slow.request("text/uri-list");
    ASSERT_TRUE(desktop.beside([&] { return slow.granted(); }));
    slow.take();
    ASSERT_TRUE(desktop.run([&] { return slow.look().bytes.size() > 4; }));

    EXPECT_EQ(filesOf(paste("text/uri-list").value_or(""), "\r\n"), files);
    EXPECT_EQ(pasteboard.transferCount(), 1u);

    // The slow one goes on, and gets what it asked for, though the content is another by now.
    pasteboard.writeText("other");
    const std::string first = slow.take().bytes;
    std::string list = first;
    while (true) {
        XClient::Property piece;
        ASSERT_TRUE(desktop.run([&] { return (piece = slow.take()).type != XCB_ATOM_NONE; }));
        if (piece.bytes.empty())
            break;
        list += piece.bytes;
    }
    EXPECT_EQ(filesOf(list, "\r\n"), files);
    EXPECT_EQ(pasteboard.transferCount(), 0u);
}

TEST_F(SelectionTransfersTest, ServesTwoPropertiesOfOneWindowAtATime)
{
    const std::vector<path> files = manyFiles(5000);
    pasteboard.writeFiles(files);
    client.request("text/uri-list", "ONE");
    client.request("x-special/gnome-copied-files", "TWO");
    ASSERT_TRUE(granted());
    ASSERT_TRUE(granted());
    EXPECT_EQ(pasteboard.transferCount(), 2u);
    const auto two = desktop.beside([&] { return client.takePieces("TWO"); });
    const auto one = desktop.beside([&] { return client.takePieces("ONE"); });
    EXPECT_EQ(filesOf(one.value_or(""), "\r\n"), files);
    EXPECT_EQ(filesOf(two.value_or("").substr(5), "\n"), files);
    desktop.settle();
    EXPECT_EQ(pasteboard.transferCount(), 0u);
}

TEST_F(SelectionTransfersTest, BeginsAgainForOneThatAsksTwice)
{
    const std::vector<path> files = manyFiles(5000);
    pasteboard.writeFiles(files);
    client.request("text/uri-list");
    ASSERT_TRUE(granted());
    client.take();
    ASSERT_TRUE(desktop.run([&] { return client.look().bytes.size() > 4; }));

    EXPECT_EQ(filesOf(paste("text/uri-list").value_or(""), "\r\n"), files);
    desktop.settle();
    EXPECT_EQ(pasteboard.transferCount(), 0u);
}

// A piece of the list that was given up would come in the place of the removed answer.
TEST_F(SelectionTransfersTest, GivesUpALongListForOneThatAsksForSomethingElseInItsPlace)
{
    pasteboard.writeFiles(manyFiles(20000));
    client.request("text/uri-list");
    ASSERT_TRUE(granted());
    ASSERT_EQ(client.look().type, client.atom("INCR"));

    client.request("TARGETS");
    ASSERT_TRUE(granted());
    EXPECT_EQ(client.take().type, client.atom("ATOM"));
    desktop.settle();
    EXPECT_EQ(client.look().type, xcb_atom_t(XCB_ATOM_NONE));
    EXPECT_EQ(pasteboard.transferCount(), 0u);
}

TEST_F(SelectionTransfersTest, ForgetsARequestorThatDies)
{
    pasteboard.writeFiles(manyFiles(20000));
    {
        XClient dying(desktop.server.display());
        dying.request("text/uri-list");
        ASSERT_TRUE(desktop.beside([&] { return dying.granted(); }));
        EXPECT_EQ(pasteboard.transferCount(), 1u);
    }
    EXPECT_TRUE(desktop.run([&] { return pasteboard.transferCount() == 0; }));
}

TEST_F(SelectionTransfersTest, SurvivesARequestorThatIsGoneBeforeTheAnswer)
{
    pasteboard.writeFiles(manyFiles(20000));
    {
        XClient dying(desktop.server.display());
        dying.request("text/uri-list");
        dying.request("TARGETS");
        dying.sync();
    }
    desktop.settle();
    EXPECT_EQ(pasteboard.transferCount(), 0u);
    EXPECT_FALSE(targets().empty());
}

TEST_F(SelectionTransfersTest, SurvivesARequestorThatIsKilledMidTransfer)
{
    pasteboard.writeFiles(manyFiles(20000));
    auto pasting =
        desktop.server.start({"xclip", "-o", "-selection", "clipboard", "-t", "text/uri-list"});
    ASSERT_TRUE(desktop.run([&] { return pasteboard.transferCount() == 1; }));
    pasting->signal(SIGKILL);
    EXPECT_TRUE(desktop.run([&] { return pasteboard.transferCount() == 0; }));
}

} // namespace
} // namespace tallowbay::x11
