#include "desktop/qt/QtDesktop.h"
#include "platform/qt/QtDispatch.h"
#include "platform/qt/X11Connection.h"
#include "platform/x11/clipboard/X11Pasteboard.h"
#include "platform/x11/windows/X11Queries.h"

#include <QClipboard>
#include <QLineEdit>

#include <gtest/gtest.h>

#include <chrono>

using namespace std::chrono_literals;

namespace tallowbay::test {
namespace {

// A text field of ours beside the clipboard of ours, which Qt takes for another program's.
class ClipboardFieldTest : public testing::Test {
protected:
    ClipboardFieldTest()
    {
        const auto own = x11::resourceNumbersOf(*qt::x11Connection());
        pasteboard.answerOwnToolkit(own.base, own.mask);
        field.show();
    }

    // The text that the field then holds.
    std::string paste()
    {
        const auto begin = std::chrono::steady_clock::now();
        field.clear();
        field.paste();
        EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
        return field.text().toStdString();
    }

    QtDesktop desktop;
    qt::QtDispatch dispatch;
    std::unique_ptr<x11::X11Session> session = x11::X11Session::create(
                                                   dispatch, [] {}, desktop.server().display())
                                                   .session;
    x11::X11Pasteboard pasteboard{*session, dispatch};
    QLineEdit field;
};

// It took fifteen seconds, and then pasted nothing: Qt kept the main queue from answering.
TEST_F(ClipboardFieldTest, PastesTheTextThatWeWrote)
{
    pasteboard.writeText("recognised text");
    EXPECT_EQ(paste(), "recognised text");
}

TEST_F(ClipboardFieldTest, PastesNothingAfterClear)
{
    pasteboard.writeText("text");
    pasteboard.clear();
    EXPECT_EQ(paste(), "");
}

TEST_F(ClipboardFieldTest, TextThatTheFieldCopiedIsNoListOfFiles)
{
    pasteboard.writeFiles({"/a.png"});
    field.setText("copied");
    field.selectAll();
    field.copy();
    EXPECT_TRUE(desktop.runUntil([this] { return pasteboard.readFiles().empty(); }));
    EXPECT_EQ(paste(), "copied");
}

} // namespace
} // namespace tallowbay::test
