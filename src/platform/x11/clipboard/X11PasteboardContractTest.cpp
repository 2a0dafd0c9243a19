#include "platform/contract/PasteboardContract.h"
#include "platform/x11/clipboard/X11TestClipboard.h"

#include <array>
#include <cstdio>
#include <optional>

namespace tallowbay::x11 {
namespace {

using std::filesystem::path;

class X11PasteboardBackend {
public:
    X11PasteboardBackend() { inFront.takeFocus(); }

    Pasteboard& pasteboard() { return board; }

    std::vector<path> pastedFiles()
    {
        const std::string list = output("text/uri-list");
        const std::string copied = output("x-special/gnome-copied-files");
        const std::vector<path> files = filesOf(list, "\r\n");
        EXPECT_EQ(output("x-special/mate-copied-files"), copied);
        EXPECT_EQ(filesOf(copied.empty() ? "" : copied.substr(copied.find('\n') + 1), "\n"), files);
        return files;
    }

    std::string pastedText()
    {
        const std::string text = output("UTF8_STRING");
        for (const char* form : {"text/plain", "text/plain;charset=utf-8", "TEXT"})
            EXPECT_EQ(output(form), text);
        return text;
    }

    void copyFilesElsewhere(const std::vector<path>& files)
    {
        std::string list;
        for (const path& file : files)
            list += "file://" + encoded(file) + "\r\n";
        copyElsewhere("text/uri-list", list);
    }

    void copyTextElsewhere(const std::string& text) { copyElsewhere("UTF8_STRING", text); }

    void askForFiles()
    {
        answer.reset();
        inFront.request("text/uri-list");
        inFront.sync();
    }
    std::optional<std::vector<path>> given()
    {
        const auto event = inFront.nextOf(XCB_SELECTION_NOTIFY, std::chrono::milliseconds(0));
        if (event) {
            const bool granted =
                reinterpret_cast<xcb_selection_notify_event_t&>(*event).property != XCB_NONE;
            answer = granted ? filesOf(inFront.take().bytes, "\r\n") : std::vector<path>();
        }
        return answer;
    }
    bool runUntil(const std::function<bool()>& condition) { return desktop.run(condition); }
    void settle() { desktop.settle(); }
    void letTimePass()
    {
        desktop.dispatch.runUntil([] { return false; }, std::chrono::milliseconds(300));
    }

    void startKeeper() { keeper.emplace(desktop.server.display()); }
    std::string keptText() { return keeper->kept; }

private:
    static std::string encoded(const path& file)
    {
        std::string text;
        for (const char letter : file.native()) {
            std::array<char, 4> escape{};
            std::snprintf(escape.data(), escape.size(), "%%%02x", unsigned(letter) & 0xff);
            text += letter == '/' ? "/" : escape.data();
        }
        return text;
    }

    std::string output(const std::string& form)
    {
        return desktop.runProgram({"xclip", "-o", "-selection", "clipboard", "-t", form}).output;
    }

    void copyElsewhere(const std::string& form, const std::string& content)
    {
        const std::int64_t before = board.changeCount();
        owners.push_back(desktop.server.start(
            {"xclip", "-i", "-quiet", "-selection", "clipboard", "-t", form}, content));
        EXPECT_TRUE(desktop.run([&] { return board.changeCount() > before; }));
    }

    X11TestDesktop desktop;
    X11Pasteboard board{*desktop.session, desktop.dispatch};
    std::vector<std::unique_ptr<test::ChildProcess>> owners;
    std::optional<Keeper> keeper;
    test::XClient inFront{desktop.server.display()};
    std::optional<std::vector<path>> answer;
};

} // namespace
} // namespace tallowbay::x11

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(X11, PasteboardContract, x11::X11PasteboardBackend);
} // namespace tallowbay::contract
