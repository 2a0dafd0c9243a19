#pragma once

#include "app/ScreenshotBatch.h"
#include "app/TestEditorStrip.h"
#include "editor/EditorSlot.h"
#include "platform/headless/Desktop.h"
#include "ui/ToastGate.h"
#include "ui/ToastWindow.h"
#include "views/headless/HeadlessViews.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace tallowbay {

// A batch on a headless desktop whose compressor makes copies of 231 KB.
class ScreenshotBatchFixture : public testing::Test {
protected:
    using Paths = std::vector<std::filesystem::path>;
    using Arguments = std::vector<std::string>;

    ScreenshotBatchFixture()
    {
        desktop.files.create(desktop.tools.pngquant);
        desktop.processes.install(desktop.tools.pngquant, [this](const Arguments& arguments) {
            if (compressionFails
                || (compressionNeedsItsInput && !desktop.files.exists(arguments.at(5))))
                return 99;
            desktop.files.create(arguments.at(3), std::string(231 * 1024 + 1023, 's'));
            return 0;
        });
    }

    static std::filesystem::path copyOf(const std::string& name)
    {
        return "/home/u/Downloads/Tallowbay/optimized/" + name;
    }

    void accept(const std::string& name)
    {
        const auto file = std::filesystem::path("/home/u/Desktop") / name;
        if (!desktop.files.exists(file))
            desktop.files.create(file, std::string(812 * 1024, 'l'));
        batch.acceptScreenshot(file);
        desktop.dispatch.runMain();
    }

    void rename(const std::string& from, const std::string& to)
    {
        const std::filesystem::path folder = "/home/u/Desktop";
        desktop.files.rename(folder / from, folder / to);
    }

    // Accepts a screenshot and ends its compression.
    void take(const std::string& name)
    {
        accept(name);
        desktop.dispatch.runUntilIdle();
    }

    void openEditor() { slot.fill(editor); }

    void beginEdit(const std::string& name)
    {
        openEditor();
        editor.beingWritten.insert(copyOf(name));
    }
    void endEdit(const std::string& name, bool succeeded = true)
    {
        editor.beingWritten.erase(copyOf(name));
        batch.editWritten(copyOf(name), succeeded);
    }

    headless::Desktop desktop;
    headless::HeadlessViews views{desktop.dispatch};
    bool compressionFails = false;
    bool compressionNeedsItsInput = false;
    // What each paste at any moment would have found.
    class WatchedPasteboard final : public Pasteboard {
    public:
        explicit WatchedPasteboard(headless::MemoryPasteboard& real)
            : real(real)
        {
        }
        void clear() override { real.clear(); }
        void holdPaste(std::chrono::milliseconds limit) override { real.holdPaste(limit); }
        void releasePaste(std::function<void(bool)> ended) override
        {
            real.releasePaste(std::move(ended));
        }
        void dropPaste() override { real.dropPaste(); }
        void tellWhenFilesAreTaken(std::function<void()> taken) override
        {
            real.tellWhenFilesAreTaken(std::move(taken));
        }
        void writeFiles(const Paths& files) override
        {
            published.push_back(files);
            real.writeFiles(files);
        }
        void writeText(const std::string& text) override { real.writeText(text); }
        Paths readFiles() const override
        {
            ++reads;
            return real.readFiles();
        }
        std::int64_t changeCount() const override { return real.changeCount(); }
        bool handOver(std::chrono::milliseconds limit) override { return real.handOver(limit); }

        std::vector<Paths> published;
        mutable int reads = 0;

    private:
        headless::MemoryPasteboard& real;
    } watched{desktop.pasteboard};

    TestEditorStrip editor;
    EditorSlot slot; // empty until the editor is opened
    std::vector<Paths> pasted; // what each synthetic paste inserted
    ToastPresenter toastPresenter{desktop.dispatch, desktop.screens, desktop.textMeasurer, views};
    ToastGate toasts{desktop.defaults.standard(), toastPresenter};
    ScreenshotBatch batch{desktop.platformWith(desktop.files, watched), toasts, slot, [this] {
                              pasted.push_back(desktop.pasteboard.files);
                          }};
};

} // namespace tallowbay
