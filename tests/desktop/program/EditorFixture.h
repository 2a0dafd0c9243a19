#pragma once

#include "desktop/program/EditorScreen.h"
#include "desktop/program/Home.h"
#include "desktop/program/Tallowbay.h"
#include "desktop/support/SessionBus.h"
#include "desktop/support/Wait.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace tallowbay::test {

// The real program with its editor, on a desktop of its own.
class EditorFixture : public testing::Test {
protected:
    using Words = std::vector<std::string>;

    void launch(const Words& moreEnvironment = {})
    {
        Words launcher{"env", "DBUS_SESSION_BUS_ADDRESS=" + bus.address()};
        launcher.insert(launcher.end(), moreEnvironment.begin(), moreEnvironment.end());
        program = std::make_unique<Tallowbay>(server, home, launcher);
    }

    // They are on the clipboard then, and their copies stand still.
    void takeScreenshots(int count)
    {
        for (int i = 0; i < count; ++i) {
            screenshots.push_back(home.takeScreenshot(++taken).filename());
            ASSERT_TRUE(waitForClipboard(long(screenshots.size()))) << clipboard();
        }
    }

    void openEditor()
    {
        ASSERT_EQ(command("open"), 0);
        ASSERT_TRUE(waitUntil([this] { return editor.isShown(); })) << program->process.errors();
    }

    // With so many screenshots, the last of which is on the canvas.
    void openEditorWith(int count)
    {
        launch();
        takeScreenshots(count);
        openEditor();
        ASSERT_TRUE(editor.waitForHeader(EditorScreen::headers[std::size_t(count - 1) % 5]));
        ASSERT_TRUE(editor.waitForPixel(editor.canvas(0, clearRow), pictureColor()));
    }

    // So far below the middle of the canvas, the test's pictures have no ink.
    static constexpr int clearRow = 4;
    static constexpr Rgb pictureColor() { return 0xf4f4f4; }

    std::optional<int> command(const std::string& verb) const
    {
        ChildProcess child({TALLOWBAY_PROGRAM, verb}, environment());
        return child.wait();
    }

    Environment environment() const
    {
        Environment result = server.environment();
        for (const auto& [name, value] : home.environment())
            result[name] = value;
        result["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
        return result;
    }

    // The files on the clipboard, as any other program is told.
    std::string clipboard() const
    {
        return server.run({"xclip", "-selection", "clipboard", "-o", "-t", "text/uri-list"}).output;
    }
    bool waitForClipboard(long count) const
    {
        return waitUntil([&] { return std::ranges::count(clipboard(), '\n') == count; });
    }
    bool clipboardHas(const std::filesystem::path& name) const
    {
        std::string encoded;
        for (const char letter : name.string())
            encoded += letter == ' ' ? std::string("%20") : std::string(1, letter);
        return clipboard().find(encoded) != std::string::npos;
    }

    std::string activeWindow() const
    {
        const std::string name = server.run({"xdotool", "getwindowfocus", "getwindowname"}).output;
        return name.substr(0, name.find('\n'));
    }
    bool waitForActive(const std::string& name) const
    {
        return waitUntil([&] { return activeWindow() == name; });
    }

    XServer server;
    SessionBus bus;
    Home home;
    EditorScreen editor{server};
    int taken = 0;
    std::vector<std::filesystem::path> screenshots; // their names
    std::unique_ptr<Tallowbay> program;
};

} // namespace tallowbay::test
