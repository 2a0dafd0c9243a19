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

    explicit EditorFixture(const XServer::Options& screen = {})
        : server(screen)
    {
    }

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

    // A rectangle of that colour on black, as the desktop's background.
    void paintDesktop(const xcb_rectangle_t& rect, std::uint32_t color) const
    {
        XClient painter(server.display());
        xcb_connection_t* const screen = painter.connection();
        const xcb_pixmap_t picture = xcb_generate_id(screen);
        const xcb_gcontext_t brush = xcb_generate_id(screen);
        constexpr xcb_rectangle_t all{0, 0, 1280, 800};
        constexpr std::uint32_t black = 0;
        xcb_create_pixmap(screen, 24, picture, painter.root(), all.width, all.height);
        xcb_create_gc(screen, brush, picture, XCB_GC_FOREGROUND, &black);
        xcb_poly_fill_rectangle(screen, picture, brush, 1, &all);
        xcb_change_gc(screen, brush, XCB_GC_FOREGROUND, &color);
        xcb_poly_fill_rectangle(screen, picture, brush, 1, &rect);
        xcb_change_window_attributes(screen, painter.root(), XCB_CW_BACK_PIXMAP, &picture);
        xcb_clear_area(screen, 0, painter.root(), 0, 0, 0, 0);
        painter.sync();
    }

    void xrandr(Words arguments) const
    {
        arguments.insert(arguments.begin(), "xrandr");
        const Finished done = server.run(arguments);
        ASSERT_EQ(done.status, 0) << done.errors;
    }
    void setMode(int width, int height) const
    {
        const std::string w = std::to_string(width);
        const std::string h = std::to_string(height);
        const std::string name = w + "x" + h + "new";
        xrandr({"--newmode", name, "0", w, "0", "0", w, h, "0", "0", h});
        xrandr({"--addmode", "screen", name});
        xrandr({"--output", "screen", "--mode", name});
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
