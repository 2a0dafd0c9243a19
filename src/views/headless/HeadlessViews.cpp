#include "views/headless/HeadlessViews.h"

#include "base/Lifetime.h"

namespace tallowbay::headless {

namespace {

template <typename Port> class RecordedWindow : public Port {
public:
    RecordedWindow(std::shared_ptr<WindowRecord> record, Dispatch& dispatch)
        : record(std::move(record))
        , dispatch(dispatch)
    {
    }
    ~RecordedWindow() override
    {
        record->alive = false;
        record->onScreen = false;
    }

    void orderFront() override
    {
        record->onScreen = true;
        record->journal.push_back("front");
    }
    void setAlpha(double alpha) override
    {
        ++changes;
        record->alpha = alpha;
        record->journal.push_back("alpha " + std::to_string(static_cast<int>(alpha)));
    }
    void animateAlpha(
        double to, std::chrono::milliseconds duration, std::function<void()> completion) override
    {
        record->journal.push_back(
            "animate to " + std::to_string(static_cast<int>(to)) + " in "
            + std::to_string(duration.count()) + " ms");
        const auto complete = [this, to, completion = std::move(completion), change = ++changes] {
            if (change == changes)
                record->alpha = to;
            if (completion)
                completion();
        };
        dispatch.mainAfter(duration, lifetime.guard(complete));
    }
    void close() override
    {
        record->onScreen = false;
        record->journal.push_back("close");
    }

private:
    std::shared_ptr<WindowRecord> record;
    Dispatch& dispatch;
    int changes = 0; // the number of the last one who was asked to set the alpha
    Lifetime lifetime;
};

class RecordedLoader final : public RecordedWindow<LoaderPort> {
public:
    RecordedLoader(const std::shared_ptr<LoaderRecord>& record, Dispatch& dispatch)
        : RecordedWindow(record, dispatch)
        , record(record)
    {
    }
    void setOrigin(Point origin) override { record->origin = origin; }
    void startPulse() override { pulse(true); }
    void stopPulse() override { pulse(false); }

private:
    void pulse(bool on)
    {
        record->pulses = on;
        record->journal.emplace_back(on ? "pulse" : "no pulse");
    }

    std::shared_ptr<LoaderRecord> record;
};

class RecordedCanvas final : public AnnotationCanvasPort {
public:
    explicit RecordedCanvas(std::shared_ptr<EditorRecord> editor)
        : editor(std::move(editor))
    {
    }
    void redraw() override { ++editor->canvas.redraws; }
    void setCursor(CanvasCursor) override { }
    std::unique_ptr<InlineTextField> showTextField(const TextFieldLook&) override
    {
        return std::make_unique<Field>(editor);
    }
    void becomeFirstResponder() override
    {
        editor->canvas.hasFocus = true;
        editor->canvas.journal.emplace_back("focus");
    }

private:
    class Field final : public InlineTextField {
    public:
        explicit Field(std::shared_ptr<EditorRecord> editor)
            : editor(std::move(editor))
        {
            canvas().typed.clear();
            canvas().fieldIsOpen = true;
            canvas().hasFocus = false;
            canvas().journal.emplace_back("field shown");
        }
        ~Field() override
        {
            canvas().fieldIsOpen = false;
            canvas().journal.emplace_back("field removed");
        }
        std::string text() const override { return editor->canvas.typed; }
        void setFrame(const Rect&) override { }

    private:
        CanvasRecord& canvas() { return editor->canvas; }

        std::shared_ptr<EditorRecord> editor;
    };

    std::shared_ptr<EditorRecord> editor;
};

class RecordedEditor final : public RecordedWindow<AnnotationWindowPort> {
public:
    RecordedEditor(const std::shared_ptr<EditorRecord>& record, Dispatch& dispatch)
        : RecordedWindow(record, dispatch)
        , record(record)
    {
    }
    ~RecordedEditor() override { record->logic = nullptr; }

    std::unique_ptr<AnnotationCanvasPort> makeCanvasView(AnnotationCanvas&) override
    {
        return std::make_unique<RecordedCanvas>(record);
    }
    void makeKeyAndOrderFront() override
    {
        record->onScreen = true;
        record->journal.emplace_back("key and front");
    }
    void returnKeyboard() override { record->journal.emplace_back("return the keyboard"); }
    void setIgnoresMouseEvents(bool ignores) override
    {
        record->ignoresMouseEvents = ignores;
        record->journal.emplace_back(ignores ? "ignore the mouse" : "hear the mouse");
    }
    void lookAgain() override
    {
        ++record->looks;
        record->swatchCardAlpha = record->logic->swatchCardAlpha();
    }
    void animateSwatchCard(double alpha, std::chrono::milliseconds duration) override
    {
        const auto whole = [](double value) { return std::to_string(static_cast<int>(value)); };
        record->journal.push_back(
            "swatches from " + whole(record->swatchCardAlpha) + " to " + whole(alpha) + " in "
            + std::to_string(duration.count()) + " ms");
        record->swatchCardAlpha = alpha;
    }
    void stripChanged() override { ++record->stripChanges; }
    void cellChanged(std::size_t index) override { record->changedCells.push_back(index); }
    void scrollToVisible(std::size_t index) override { record->scrolledTo.push_back(index); }

private:
    std::shared_ptr<EditorRecord> record;
};

class RecordedOnboarding final : public OnboardingPort {
public:
    explicit RecordedOnboarding(std::shared_ptr<OnboardingRecord> record)
        : record(std::move(record))
    {
    }
    ~RecordedOnboarding() override
    {
        record->logic = nullptr;
        record->alive = false;
        record->onScreen = false;
    }

    void makeKeyAndOrderFront() override
    {
        record->onScreen = true;
        record->journal.push_back("key and front");
    }

private:
    std::shared_ptr<OnboardingRecord> record;
};

} // namespace

std::unique_ptr<AnnotationWindowPort> HeadlessViews::makeAnnotationWindow(AnnotationWindow& logic)
{
    editors.push_back(std::make_shared<EditorRecord>());
    editors.back()->logic = &logic;
    return std::make_unique<RecordedEditor>(editors.back(), dispatch);
}

std::unique_ptr<LoaderPort> HeadlessViews::makeLoader(const TallowLoaderPanel&)
{
    loaders.push_back(std::make_shared<LoaderRecord>());
    return std::make_unique<RecordedLoader>(loaders.back(), dispatch);
}

std::unique_ptr<OnboardingPort> HeadlessViews::makeOnboardingWindow(OnboardingWindow& logic)
{
    onboardingWindows.push_back(std::make_shared<OnboardingRecord>());
    onboardingWindows.back()->logic = &logic;
    return std::make_unique<RecordedOnboarding>(onboardingWindows.back());
}

std::unique_ptr<WindowPort> HeadlessViews::makeToast(const ToastContent& content)
{
    toasts.push_back(std::make_shared<ToastRecord>());
    toasts.back()->content = content;
    return std::make_unique<RecordedWindow<WindowPort>>(toasts.back(), dispatch);
}

std::vector<std::string> HeadlessViews::messages() const
{
    std::vector<std::string> texts;
    for (const auto& toast : toasts)
        texts.push_back(toast->content.message);
    return texts;
}

} // namespace tallowbay::headless
