// Files by way of the desktop's file transfer, for programs in a sandbox.

#include "platform/headless/HeadlessFileTransfer.h"
#include "platform/x11/clipboard/X11TestClipboard.h"

namespace tallowbay::x11 {
namespace {

using test::XClient;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;
using Files = FileTransfer::Files;

const std::string form(TransferAnswers::form);

class X11PasteboardTransferTest : public X11PasteboardTest {
protected:
    X11PasteboardTransferTest() { pasteboard.offerTransfers(transfer); }

    headless::HeadlessFileTransfer transfer{desktop.dispatch};
};

TEST_F(X11PasteboardTransferTest, GivesAKeyToTheFiles)
{
    pasteboard.writeFiles({"/a", "/b"});
    EXPECT_EQ(targets().back(), form) << "after those that every program knows";
    EXPECT_EQ(transfer.begun, 0) << "nobody has asked for it yet";
    const auto key = paste(form);
    ASSERT_TRUE(key);
    EXPECT_EQ(transfer.open[*key], (Files{"/a", "/b"}));
    EXPECT_EQ(paste(form), key) << "it is made once";
    EXPECT_EQ(transfer.begun, 1);
    EXPECT_EQ(paste("text/uri-list"), "file:///a\r\nfile:///b\r\n");
}

TEST_F(X11PasteboardTransferTest, OffersNoKeyWhereItWouldOnlyFail)
{
    pasteboard.writeText("text");
    EXPECT_THAT(targets(), Not(Contains(form)));
    EXPECT_EQ(paste(form), std::nullopt);
    pasteboard.clear();
    EXPECT_THAT(targets(), Not(Contains(form)));
    pasteboard.writeFiles({"/a"});
    transfer.isAvailable = false;
    EXPECT_THAT(targets(), Not(Contains(form)));
    EXPECT_EQ(paste(form), std::nullopt);
    EXPECT_EQ(transfer.begun, 0);
}

TEST_F(X11PasteboardTransferTest, RefusesWhereNoKeyIsMadeAndTriesAgainForTheNext)
{
    pasteboard.writeFiles({"/a"});
    transfer.failing = true;
    EXPECT_EQ(paste(form), std::nullopt);
    transfer.failing = false;
    EXPECT_TRUE(paste(form));
}

TEST_F(X11PasteboardTransferTest, RefusesWhenTheKeyDoesNotComeInTimeAndAnswersOthersMeanwhile)
{
    pasteboard.writeFiles({"/a"});
    transfer.holding = true;
    XClient waiting(desktop.server.display());
    waiting.request(form);
    waiting.sync();
    desktop.settle();
    EXPECT_EQ(paste("text/uri-list"), "file:///a\r\n");
    EXPECT_FALSE(desktop.beside([&] { return waiting.granted(); }));

    transfer.answer();
    EXPECT_TRUE(paste(form)) << "it came at last";
    EXPECT_EQ(transfer.begun, 1);
}

// Where no reply came at all, only those who asked first were ever answered.
TEST_F(X11PasteboardTransferTest, RefusesEachRequestInItsOwnTimeWhereNoReplyComes)
{
    pasteboard.writeFiles({"/a"});
    transfer.holding = true;
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(paste(form), std::nullopt);
    EXPECT_EQ(transfer.begun, 1);
}

TEST_F(X11PasteboardTransferTest, TellsThatTheFilesAreTakenWhenTheKeyIsGiven)
{
    int told = 0;
    pasteboard.tellWhenFilesAreTaken([&] { ++told; });
    client.takeFocus();
    pasteboard.writeFiles({"/a"});
    transfer.holding = true;
    EXPECT_EQ(paste(form), std::nullopt);
    EXPECT_EQ(told, 0) << "it came too late";
    client.request(form);
    client.sync();
    desktop.settle();
    EXPECT_EQ(told, 0);
    transfer.answer();
    EXPECT_TRUE(granted());
    EXPECT_EQ(told, 1);
}

TEST_F(X11PasteboardTransferTest, EndsTheKeyWithItsContent)
{
    pasteboard.writeFiles({"/a"});
    const auto first = paste(form);
    pasteboard.writeFiles({"/a", "/b"});
    EXPECT_THAT(transfer.open, IsEmpty());
    EXPECT_NE(paste(form), first);
    EXPECT_EQ(transfer.open.size(), 1u);
    pasteboard.clear();
    EXPECT_THAT(transfer.open, IsEmpty());

    pasteboard.writeFiles({"/c"});
    EXPECT_TRUE(paste(form));
    client.own("CLIPBOARD");
    client.sync();
    desktop.settle();
    EXPECT_THAT(transfer.open, IsEmpty());
}

// A paste that came too early must insert nothing of before.
TEST_F(X11PasteboardTransferTest, GivesNoKeyToContentThatIsGone)
{
    pasteboard.writeFiles({"/a"});
    transfer.holding = true;
    client.request(form);
    client.sync();
    desktop.settle();
    EXPECT_EQ(transfer.begun, 1);
    pasteboard.clear();
    EXPECT_FALSE(granted());
    transfer.answer();
    desktop.settle();
    EXPECT_THAT(transfer.open, IsEmpty());
}

TEST_F(X11PasteboardTransferTest, RefusesARequestFromBeforeItWasTheOwner)
{
    const xcb_timestamp_t before = desktop.session->serverTime();
    ASSERT_TRUE(desktop.run([&] { return desktop.session->serverTime() > before + 1; }));
    pasteboard.writeFiles({"/a"});
    client.request(form, "PASTED", "CLIPBOARD", before);
    EXPECT_FALSE(granted());
    EXPECT_EQ(transfer.begun, 0);
}

} // namespace
} // namespace tallowbay::x11
