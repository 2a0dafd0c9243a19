#pragma once

#include "editor/AnnotationConstants.h"
#include "editor/saving/AnnotationSaver.h"
#include "editor/window/AnnotationWindow.h"
#include "platform/headless/Desktop.h"
#include "ui/ToastGate.h"
#include "ui/ToastWindow.h"
#include "views/headless/HeadlessViews.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay::test {

// The editor's window on a desktop in memory, without the program around it. Screenshots are named
// by single letters; each is a picture of 20 x 15 pixels. The canvas shows it at twenty times its
// size, from (48, 48) to (448, 348).
class EditorTest : public testing::Test {
protected:
    using Paths = AnnotationWindow::Paths;

    EditorTest()
    {
        desktop.files.create(desktop.tools.pngquant);
        desktop.processes.install(desktop.tools.pngquant, [this](const auto& arguments) {
            desktop.files.create(arguments.at(3), *desktop.files.read(arguments.back()));
            return 0;
        });
        saver.onWritten = [this](const auto& url, bool succeeded) {
            writesEnded.push_back(succeeded);
            if (window)
                window->fileWritten(url, succeeded);
        };
    }

    static std::filesystem::path file(char name)
    {
        return std::string("/home/u/Downloads/Tallowbay/optimized/") + name + ".png";
    }

    // Names as their letters: "ABC".
    static std::string names(const Paths& urls)
    {
        std::string letters;
        for (const auto& url : urls)
            letters += url.stem().string();
        return letters;
    }

    void createFiles(const std::string& letters)
    {
        for (const char letter : letters)
            desktop.files.create(file(letter), *desktop.imageCodec.encodePng(Bitmap({20, 15})));
    }

    void build()
    {
        window = std::make_unique<AnnotationWindow>(desktop.platform(), views, saver, toasts);
        window->onClipboardUpdate = [this](const Paths& urls) {
            clipboards.push_back(names(urls));
        };
        window->onConfirm = [this](const Paths& urls) { confirmed.push_back(names(urls)); };
        window->onWriteEnded = [this](const auto&, bool succeeded) {
            writesEnded.push_back(succeeded);
        };
        window->canvas().setSize({496, 396});
    }

    // New screenshots of the current batch; their pictures come.
    void take(const std::string& letters)
    {
        createFiles(letters);
        if (!window)
            build();
        for (const char letter : letters)
            window->addURL(file(letter));
        settle();
    }

    // The screenshots of a new batch.
    void takeAfterPaste(const std::string& letters)
    {
        window->setPendingDivider();
        take(letters);
    }

    void deleteFiles(const std::string& letters)
    {
        for (const char letter : letters)
            desktop.files.remove(file(letter));
        window->removeDeletedFiles();
        settle();
    }

    void restart()
    {
        window.reset();
        build();
        settle();
    }

    void settle() { desktop.dispatch.runUntilIdle(); }

    // The strip left to right: "D+|A-*B-" is a checked D, a divider, an A and a selected B that are
    // not checked.
    std::string strip() const
    {
        std::string text;
        for (const auto& slot : window->slots()) {
            if (!slot) {
                text += '|';
                continue;
            }
            const ThumbnailCell cell = window->cell(*slot);
            text += (cell.selected ? "*" : "") + nameOf(*slot) + (cell.checked ? "+" : "-");
        }
        return text;
    }
    std::string badges() const
    {
        std::string text;
        for (const auto& slot : window->slots())
            text += slot ? window->cell(*slot).badge : "|";
        return text;
    }
    std::string nameOf(std::size_t index) const { return window->url(index).stem().string(); }
    std::size_t indexOf(char name) const
    {
        for (std::size_t index = 0; index < window->count(); ++index) {
            if (nameOf(index) == std::string(1, name))
                return index;
        }
        ADD_FAILURE() << name << " is not in the strip";
        return 0;
    }
    void click(char name) { window->cellClicked(indexOf(name)); }
    void toggle(char name) { window->checkboxToggled(indexOf(name)); }

    // A highlight on the picture, at another place for each step.
    void draw(double step = 0)
    {
        AnnotationCanvas& canvas = window->canvas();
        canvas.mouseDown({60 + step * 60, 60});
        canvas.mouseDragged({100 + step * 60, 100});
        canvas.mouseUp({100 + step * 60, 100});
    }
    void moveFirst() // the item that was drawn first
    {
        AnnotationCanvas& canvas = window->canvas();
        canvas.mouseDown({80, 80});
        canvas.mouseDragged({80, 180});
        canvas.mouseUp({80, 180});
    }
    void typeText(const std::string& text) // into a field, which stays open
    {
        window->toolSelected(rawValue(AnnotationTool::text));
        window->canvas().mouseDown({200, 200});
        window->canvas().mouseUp({200, 200});
        editor().canvas.typed = text;
    }
    const std::vector<AnnotationItem>& items() const { return window->canvas().annotations(); }

    void press(KeyCode key, EventFlags flags = 0) { window->canvas().keyDown({key, flags}); }

    // Of every picture that was flattened for a file, in their order, the items.
    std::vector<std::size_t> flattened() const
    {
        std::vector<std::size_t> counts;
        for (const auto& drawing : desktop.offscreenGraphics.drawings())
            counts.push_back(drawing.lines.size() - 1);
        return counts;
    }

    headless::EditorRecord& editor() { return *views.editors.back(); }

    headless::Desktop desktop;
    headless::HeadlessViews views{desktop.dispatch};
    ToastPresenter presenter{desktop.dispatch, desktop.screens, desktop.textMeasurer, views};
    ToastGate toasts{desktop.defaults.standard(), presenter};
    AnnotationSaver saver{
        desktop.dispatch,
        AnnotationExporter(
            desktop.files, desktop.imageCodec, desktop.offscreenGraphics,
            ImageCompressor(desktop.files, desktop.processes, desktop.resources, desktop.tools))};
    std::vector<std::string> clipboards; // what was to be on the clipboard after each change
    std::vector<std::string> confirmed;
    std::vector<bool> writesEnded;
    std::unique_ptr<AnnotationWindow> window;
};

} // namespace tallowbay::test
