#pragma once

#include "platform/x11/X11TestDesktop.h"
#include "platform/x11/clipboard/X11Pasteboard.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include <xcb/xfixes.h>

namespace tallowbay::x11 {

// The percent-encoding undone by someone else than the code under test.
inline std::string decoded(const std::string& text)
{
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '%') {
            bytes += text[at];
            continue;
        }
        bytes += char(std::stoi(text.substr(at + 1, 2), nullptr, 16));
        at += 2;
    }
    return bytes;
}

inline std::vector<std::filesystem::path> filesOf(
    const std::string& list, const std::string& lineEnd)
{
    const std::string scheme = "file://";
    std::vector<std::filesystem::path> files;
    for (std::size_t begin = 0; begin < list.size();) {
        const std::size_t end = std::min(list.find(lineEnd, begin), list.size());
        const std::string line = list.substr(begin, end - begin);
        EXPECT_EQ(line.substr(0, scheme.size()), scheme);
        files.push_back(decoded(line.substr(scheme.size())));
        begin = end + lineEnd.size();
    }
    return files;
}

inline std::vector<std::filesystem::path> manyFiles(int count)
{
    std::vector<std::filesystem::path> files;
    for (int i = 0; i < count; ++i)
        files.push_back(
            "/home/someone/Pictures/Screenshots/Screenshot from the desktop " + std::to_string(i)
            + ".png");
    return files;
}

// A clipboard manager, which keeps what programs that end hand over to it.
class Keeper {
public:
    explicit Keeper(const std::string& display, bool answers = true)
        : client(display)
        , answers(answers)
    {
        client.own("CLIPBOARD_MANAGER");
        thread = std::thread([this] { run(); });
    }
    ~Keeper()
    {
        ended = true;
        thread.join();
    }
    std::string kept; // valid once the hand-over is done

private:
    void run()
    {
        while (!ended) {
            const auto event = client.nextOf(XCB_SELECTION_REQUEST, std::chrono::milliseconds(10));
            if (!event || !answers)
                continue;
            kept = client.paste("UTF8_STRING").value_or("");
            client.answer(reinterpret_cast<xcb_selection_request_event_t&>(*event), true);
        }
    }

    test::XClient client;
    bool answers;
    std::atomic<bool> ended = false;
    std::thread thread;
};

// A clipboard manager that reads what each new owner offers, one form after the other, and is in no
// hurry.
class SlowReader {
public:
    SlowReader(
        const std::string& display, int questions,
        std::chrono::milliseconds pause = std::chrono::milliseconds(10))
        : client(display)
        , questions(questions)
        , pause(pause)
    {
        client.own("CLIPBOARD_MANAGER");
        watchOwners();
        thread = std::thread([this] { run(); });
    }
    ~SlowReader()
    {
        ended = true;
        thread.join();
    }
    std::atomic<int> readings = 0; // that were answered to the end

private:
    void watchOwners()
    {
        auto* server = client.connection();
        std::free(xcb_xfixes_query_version_reply(
            server, xcb_xfixes_query_version(server, 5, 0), nullptr));
        xcb_xfixes_select_selection_input(
            server, client.root(), client.atom("CLIPBOARD"),
            XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
        client.sync();
    }

    void run()
    {
        const auto* fixes = xcb_get_extension_data(client.connection(), &xcb_xfixes_id);
        const auto ownerChanged = std::uint8_t(fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY);
        while (!ended) {
            if (client.nextOf(ownerChanged, std::chrono::milliseconds(10)) && read())
                ++readings;
        }
    }

    bool read()
    {
        bool answered = true;
        for (int i = 0; i < questions && answered && !ended; ++i) {
            std::this_thread::sleep_for(pause);
            client.request("TARGETS");
            answered = client.nextOf(XCB_SELECTION_NOTIFY, std::chrono::seconds(1)) != nullptr;
        }
        return answered;
    }

    test::XClient client;
    const int questions;
    const std::chrono::milliseconds pause;
    std::atomic<bool> ended = false;
    std::thread thread;
};

// Our clipboard beside another program.
class X11PasteboardTest : public testing::Test {
protected:
    X11TestDesktop desktop;
    X11Pasteboard pasteboard{*desktop.session, desktop.dispatch};
    test::XClient client{desktop.server.display()};

    std::vector<std::string> targets()
    {
        return desktop.beside([&] { return client.targets(); });
    }

    std::optional<std::string> paste(const std::string& form)
    {
        return desktop.beside([&] { return client.paste(form); });
    }

    void dispatchFor(std::chrono::milliseconds time)
    {
        desktop.dispatch.runUntil([] { return false; }, time);
    }

    bool granted()
    {
        return desktop.beside([&] { return client.granted(); });
    }
};

} // namespace tallowbay::x11
