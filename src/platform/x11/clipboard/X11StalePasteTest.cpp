#include "platform/x11/clipboard/X11Pasteboard.h"
#include "platform/x11/keys/X11KeyTap.h"
#include "platform/x11/keys/X11TestKeys.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace tallowbay::x11 {
namespace {

using namespace std::chrono_literals;

// A program that has the keyboard and, at Ctrl+V, asks for the clipboard as fast as it can.
class FastPaster {
public:
    explicit FastPaster(const std::string& display)
        : client(display)
    {
        client.takeFocus();
        client.atom("text/uri-list");
        thread = std::thread([this] { run(); });
    }
    ~FastPaster()
    {
        ended = true;
        thread.join();
    }

    std::atomic<int> pastes = 0;
    std::atomic<int> received = 0; // with content

private:
    void run()
    {
        while (!ended) {
            const auto event = client.nextOf(XCB_KEY_PRESS, 10ms);
            if (!event)
                continue;
            const auto& press = reinterpret_cast<xcb_key_press_event_t&>(*event);
            if (isModifierKey(press.detail))
                continue;
            if (client.paste("text/uri-list"))
                ++received;
            ++pastes;
        }
    }

    test::XClient client;
    std::atomic<bool> ended = false;
    std::thread thread;
};

class X11StalePasteTest : public testing::Test {
protected:
    X11TestDesktop desktop;
    X11Pasteboard pasteboard{*desktop.session, desktop.dispatch};
    X11Keyboard keyboard{*desktop.session};
    X11KeyTap tap{*desktop.session, keyboard};
    FastPaster paster{desktop.server.display()};

    // What the program does: the tap's thread posts, the main queue clears.
    Subscription clearAtPaste(std::chrono::milliseconds delay)
    {
        return *tap.start([this, delay](const KeyPress& press) {
            if (press != KeyPress{keyCode::v, eventFlag::command})
                return;
            const auto clear = [this] { pasteboard.clear(); };
            if (delay == 0ms)
                desktop.dispatch.mainAsync(clear);
            else
                desktop.dispatch.mainAfter(delay, clear);
        });
    }

    void pasteTimes(int count, std::chrono::milliseconds busy)
    {
        for (int i = 1; i <= count; ++i) {
            pasteboard.writeFiles({"/stale.png"});
            const auto typist = desktop.server.start({"xdotool", "key", "--delay", "0", "ctrl+v"});
            ASSERT_TRUE(desktop.run([&] {
                std::this_thread::sleep_for(busy);
                return paster.pastes == i;
            }));
            ASSERT_EQ(typist->wait(), 0);
        }
    }
};

} // namespace

TEST_F(X11StalePasteTest, APasteReceivesNothingOnceItsOwnKeyHasClearedTheClipboard)
{
    const auto running = clearAtPaste(0ms);
    pasteTimes(200, 0ms);
    EXPECT_EQ(paster.pastes, 200);
    EXPECT_EQ(paster.received, 0);
}

TEST_F(X11StalePasteTest, NotEvenWhileTheMainQueueIsBusy)
{
    const auto running = clearAtPaste(0ms);
    pasteTimes(200, 20ms);
    EXPECT_EQ(paster.pastes, 200);
    EXPECT_EQ(paster.received, 0);
}

// What the two tests above rule out does happen where the order is not kept.
TEST_F(X11StalePasteTest, APasteReceivesWhatIsClearedTooLate)
{
    const auto running = clearAtPaste(100ms);
    pasteTimes(1, 0ms);
    EXPECT_EQ(paster.received, 1);
}

} // namespace tallowbay::x11
