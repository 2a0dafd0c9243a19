#pragma once

#include "editor/AnnotationCanvas.h"
#include "editor/AnnotationConstants.h"
#include "platform/headless/HeadlessTextMeasurer.h"
#include "platform/headless/RecordingGraphics.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace tallowbay::test {

inline AnnotationItem highlightAt(Rect rect, Color color = systemYellow)
{
    return {AnnotationTool::highlight, rect, std::nullopt, color};
}
inline AnnotationItem arrowAt(Rect rect, Color color = systemYellow)
{
    return {AnnotationTool::arrow, rect, std::nullopt, color};
}
inline AnnotationItem textAt(Point point, std::string text, Color color = systemYellow)
{
    return {AnnotationTool::text, {point, {}}, std::move(text), color};
}
inline AnnotationItem blurAt(Rect rect, Color color = systemYellow)
{
    return {AnnotationTool::blur, rect, std::nullopt, color};
}

// How a blur's fills end in a recording.
inline const std::string blurBase = " color(0.12 0.12 0.12 1)";
inline const std::string blurCell = " color(0.18 0.18 0.18 1)";

// The view in memory: a field whose text the test types, and a journal of what the canvas asked
// for, such as "redraw", "cursor crosshair", "field shown".
class JournalCanvasPort final : public AnnotationCanvasPort {
public:
    void redraw() override
    {
        ++redraws;
        journal.emplace_back("redraw");
    }
    void setCursor(CanvasCursor wanted) override { cursor = wanted; }
    std::unique_ptr<InlineTextField> showTextField(const TextFieldLook& look) override
    {
        journal.emplace_back("field shown");
        shownFields.push_back(look);
        typed.clear();
        return std::make_unique<Field>(*this);
    }
    void becomeFirstResponder() override { journal.emplace_back("canvas focused"); }

    std::vector<std::string> journal;
    std::vector<TextFieldLook> shownFields;
    std::string typed;
    std::optional<CanvasCursor> cursor;
    int redraws = 0;

private:
    class Field final : public InlineTextField {
    public:
        explicit Field(JournalCanvasPort& port)
            : port(port)
        {
        }
        ~Field() override { port.journal.emplace_back("field removed"); }
        std::string text() const override { return port.typed; }
        void setFrame(const Rect& frame) override { port.shownFields.back().frame = frame; }

    private:
        JournalCanvasPort& port;
    };
};

class JournalCanvasHost final : public AnnotationCanvasHost {
public:
    std::unique_ptr<AnnotationCanvasPort> makeCanvasView(AnnotationCanvas&) override
    {
        auto made = std::make_unique<JournalCanvasPort>();
        view = made.get();
        return made;
    }

    JournalCanvasPort* view = nullptr;
};

// The window in memory: it keeps what it was told.
class JournalDelegate : public AnnotationCanvasDelegate {
public:
    AnnotationTool selectedTool() const override { return tool; }
    Color highlightColor() const override { return color; }
    void canvasDidAddAnnotation(const std::vector<AnnotationItem>& items) override
    {
        added.push_back(items.back());
        told = items;
    }
    void annotationUpdated(std::size_t index, const std::vector<AnnotationItem>& items) override
    {
        updated.emplace_back(index, items.at(index));
        told = items;
    }
    void annotationsChanged(const std::vector<AnnotationItem>& items) override { told = items; }
    void deleteAnnotation(std::size_t index) override { deleted.push_back(index); }
    void handleKeyDown(const KeyPress& key) override { keys.push_back(key); }

    AnnotationTool tool = AnnotationTool::highlight;
    Color color = systemYellow;
    std::vector<AnnotationItem> told; // all items, as it heard of them last
    std::vector<AnnotationItem> added;
    std::vector<std::pair<std::size_t, AnnotationItem>> updated;
    std::vector<std::size_t> deleted;
    std::vector<KeyPress> keys;
};

// A canvas of 496 x 396 points over a picture of 200 x 150 pixels: twice its size, from (48, 48) to
// (448, 348).
class CanvasTest : public testing::Test {
protected:
    CanvasTest()
    {
        canvas.setDelegate(&window);
        canvas.setSize({496, 396});
        canvas.setBackgroundImage(std::make_shared<Bitmap>(PixelSize{200, 150}));
        canvas.setAnnotations({});
        view.journal.clear();
        view.redraws = 0;
    }

    void drag(Point from, Point to)
    {
        canvas.mouseDown(from);
        canvas.mouseDragged(to);
        canvas.mouseUp(to);
    }

    const AnnotationItem& only() const { return canvas.annotations().at(0); }

    std::vector<std::string> drawn() const
    {
        headless::RecordingGraphics context;
        canvas.draw(context);
        return context.lines;
    }

    // Without the two lines of the background.
    std::vector<std::string> drawnItems() const
    {
        auto lines = drawn();
        lines.erase(lines.begin(), lines.begin() + 2);
        return lines;
    }

    headless::HeadlessTextMeasurer measurer; // eight points a character, twenty high
    JournalCanvasHost host;
    JournalDelegate window;
    AnnotationCanvas canvas{host, measurer};
    JournalCanvasPort& view = *host.view;
};

} // namespace tallowbay::test
