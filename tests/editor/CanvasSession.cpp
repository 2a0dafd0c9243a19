#include "editor/CanvasSession.h"

#include "editor/AnnotationConstants.h"
#include "editor/AnnotationHistory.h"
#include "editor/ImagePlacement.h"
#include "editor/ShapeRenderer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tallowbay::test {

namespace {

constexpr KeyPress deletePress{51, 0};
constexpr int canvasSide = 400;

double distance(Point a, Point b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

bool contains(const Rect& rect, Point point)
{
    return point.x >= rect.minX() && point.x < rect.maxX() && point.y >= rect.minY()
        && point.y < rect.maxY();
}

// Takes down where one item is drawn, to tell whether a point meets it.
class DrawnPlace final : public GraphicsContext {
public:
    DrawnPlace(Point point, const TextMeasurer& measurer)
        : point(point)
        , measurer(measurer)
    {
    }

    void setCompositingOperation(CompositingOperation) override { }
    CompositingOperation compositingOperation() const override
    {
        return CompositingOperation::sourceOver;
    }
    void fill(const Shape& shape, Color) override
    {
        const auto* rect = std::get_if<Rect>(&shape);
        met = met || (rect && contains(*rect, point));
    }
    void stroke(const Shape& shape, Color, const StrokeStyle&) override
    {
        const auto& ends = std::get<Polyline>(shape).points;
        double nearest = distance(point, ends[0]);
        constexpr int samples = 4000;
        for (int i = 0; i <= samples; ++i) {
            const double t = static_cast<double>(i) / samples;
            nearest = std::min(
                nearest,
                distance(
                    point,
                    {ends[0].x + t * (ends[1].x - ends[0].x),
                     ends[0].y + t * (ends[1].y - ends[0].y)}));
        }
        constexpr double samplingError = 0.5;
        met = nearest < arrowHitTolerance;
        unclear = std::abs(nearest - arrowHitTolerance) < samplingError;
    }
    void drawImage(const Image&, const Rect&) override { }
    void drawText(const std::string& text, const Point& origin, const TextStyle& style) override
    {
        met = contains({origin, measurer.measure(text, style.font)}, point);
    }

    bool met = false;
    bool unclear = false;

private:
    Point point;
    const TextMeasurer& measurer;
};

} // namespace

// The view's text fields contain what is said to be typed.
class CanvasSession::View final : public AnnotationCanvasPort {
public:
    explicit View(const std::string& typed)
        : typed(typed)
    {
    }
    void redraw() override { }
    void setCursor(CanvasCursor) override { }
    std::unique_ptr<InlineTextField> showTextField(const TextFieldLook&) override
    {
        return std::make_unique<Field>(typed);
    }
    void becomeFirstResponder() override { }

private:
    class Field final : public InlineTextField {
    public:
        explicit Field(const std::string& typed)
            : typed(typed)
        {
        }
        std::string text() const override { return typed; }
        void setFrame(const Rect&) override { }

    private:
        const std::string& typed;
    };

    const std::string& typed;
};

class CanvasSession::Screen final : public AnnotationCanvasHost {
public:
    std::unique_ptr<AnnotationCanvasPort> makeCanvasView(AnnotationCanvas&) override
    {
        return std::make_unique<View>(typed);
    }

    std::string typed;
};

class CanvasSession::Window final : public AnnotationCanvasDelegate {
public:
    Window(AnnotationCanvas& canvas, Tally& tally)
        : history(canvas)
        , tally(tally)
    {
    }

    AnnotationTool selectedTool() const override { return tool; }
    Color highlightColor() const override { return systemYellow; }
    void canvasDidAddAnnotation(const std::vector<AnnotationItem>& items) override
    {
        ++tally.added;
        history.canvasDidAddAnnotation(record(), items);
    }
    void annotationUpdated(std::size_t, const std::vector<AnnotationItem>& items) override
    {
        ++tally.moved;
        annotationsChanged(items);
    }
    void annotationsChanged(const std::vector<AnnotationItem>& items) override
    {
        history.annotationsChanged(record(), items);
    }
    void deleteAnnotation(std::size_t index) override
    {
        tally.deleted += history.deleteAnnotation(record(), index);
    }
    void handleKeyDown(const KeyPress&) override { }

    void undo() { tally.undone += history.undoAnnotation(record()); }
    void redo() { tally.redone += history.redoAnnotation(record()); }
    ScreenshotRecord& record() { return screenshots[selected]; }

    AnnotationTool tool = AnnotationTool::highlight;
    std::size_t selected = 0;
    ScreenshotRecord screenshots[2];

private:
    AnnotationHistory history;
    Tally& tally;
};

CanvasSession::CanvasSession()
    : screen(std::make_unique<Screen>())
    , canvas(*screen, measurer)
{
    window = std::make_unique<Window>(canvas, tally);
    canvas.setDelegate(window.get());
    canvas.setSize({canvasSide, canvasSide});
    canvas.setBackgroundImage(std::make_shared<Bitmap>(PixelSize{37, 53}));
}

CanvasSession::~CanvasSession() = default;

Point CanvasSession::somewhere(const Choose& choose) const
{
    // Half of the time near an item's corner or inside of one, since most of the canvas is empty.
    const auto& items = canvas.annotations();
    const double jitter = choose(41) / 2.0 - 10;
    if (!items.empty() && choose(2) == 0) {
        const Rect& rect = items[choose(static_cast<std::uint32_t>(items.size()))].rect;
        const double share = choose(3) / 2.0;
        return {
            rect.origin.x + share * rect.size.width + jitter,
            rect.origin.y + (choose(3) / 2.0) * rect.size.height + jitter};
    }
    constexpr std::uint32_t outside = 100;
    return {
        choose(canvasSide + 2 * outside) - static_cast<double>(outside),
        choose(canvasSide + 2 * outside) - static_cast<double>(outside)};
}

void CanvasSession::step(const Choose& choose)
{
    switch (choose(16)) {
    case 0:
        window->tool = annotationToolForTag(static_cast<int>(choose(5)));
        break;
    case 1:
    case 2:
        edit(choose);
        break;
    case 3:
        if (choose(8) == 0)
            switchPicture(choose);
        break;
    case 5:
        if (choose(8) == 0)
            resizeCanvas(choose);
        break;
    case 4:
        canvas.keyDown(choose(2) ? deletePress : KeyPress{6, eventFlag::command});
        break;
    case 6: {
        constexpr const char* texts[] = {"", "  ", " a ", "text", "\xC3\xA4\n"};
        screen->typed = texts[choose(5)];
        if (choose(2))
            canvas.commitTextIfNeeded();
        break;
    }
    default:
        mouse(choose);
    }
}

void CanvasSession::mouse(const Choose& choose)
{
    if (choose(4) != 0)
        mousePlace = somewhere(choose);
    switch (choose(4)) {
    case 0:
        canvas.mouseDown(mousePlace);
        break;
    case 1:
        canvas.mouseUp(mousePlace);
        break;
    case 2:
        canvas.mouseDragged(mousePlace);
        break;
    default:
        canvas.mouseMoved(mousePlace);
    }
}

void CanvasSession::edit(const Choose& choose)
{
    if (choose(2))
        window->undo();
    else
        window->redo();
}

void CanvasSession::switchPicture(const Choose& choose)
{
    ++tally.switched;
    window->selected = choose(2);
    canvas.setBackgroundImage(
        choose(4) == 0 ? nullptr : std::make_shared<Bitmap>(PixelSize{90, 20}));
    canvas.setAnnotations(window->record().annotations, window->record().canvasSize);
}

void CanvasSession::resizeCanvas(const Choose& choose)
{
    ++tally.resized;
    const auto side = [&] { return choose(4) == 0 ? 50.0 : 200.0 + choose(400); };
    canvas.setSize({side(), side()});
}

std::string CanvasSession::violation(const Choose& choose) const
{
    for (const auto& words : {brokenIndices(), brokenItems(), brokenMapping(choose)})
        if (!words.empty())
            return words;
    return brokenHitTest(choose);
}

std::string CanvasSession::brokenIndices() const
{
    const CanvasState& state = canvas.state();
    for (const auto& index :
         {state.movingIndex, state.resizingIndex, state.hoveredIndex,
          state.selectedAnnotationIndex})
        if (index && *index >= state.annotations.size())
            return "an index lies outside of the list";
    if (state.moveLastPoint && !state.movingIndex)
        return "the last point of a move without the move";
    if (state.resizingIndex.has_value() != state.resizeHandle.has_value())
        return "a resize without its handle, or the other way round";
    if (state.dragStart.has_value() != state.liveRect.has_value())
        return "a new shape without its start, or the other way round";
    if (window->record().annotations != canvas.annotations())
        return "the window's record is not what the canvas shows";
    return {};
}

std::string CanvasSession::brokenItems() const
{
    for (const AnnotationItem& item : canvas.annotations()) {
        const bool isText = item.tool == AnnotationTool::text;
        if (isText != item.text.has_value())
            return "only a text has a text";
        if (isText && item.rect.size != Size{})
            return "a text has a size";
        if (isText && !item.hasVisibleText())
            return "a blank text became an item";
        if (!std::isfinite(item.rect.maxX()) || !std::isfinite(item.rect.maxY()))
            return "an item has no finite place";
    }
    return {};
}

std::string CanvasSession::brokenMapping(const Choose& choose) const
{
    const auto placement = ImagePlacement::fit(
        {200.0 + choose(2000), 200.0 + choose(2000)},
        {static_cast<int>(1 + choose(8000)), static_cast<int>(1 + choose(8000))}, imageInset);
    const Point point = somewhere(choose);
    const Point back = placement.toCanvas(placement.toImage(point));
    if (distance(point, back) > 1e-9 * (1 + std::abs(point.x) + std::abs(point.y)))
        return "a point mapped to the image does not come back";
    return {};
}

std::string CanvasSession::brokenHitTest(const Choose& choose) const
{
    const Point point = somewhere(choose);
    std::optional<std::size_t> topmost;
    for (std::size_t index = 0; index < canvas.annotations().size(); ++index) {
        DrawnPlace place(point, measurer);
        drawItem(place, canvas.annotations()[index], ShapeStyle::forCanvas());
        if (place.unclear)
            return {};
        if (place.met)
            topmost = index;
    }
    if (canvas.hitTestAnnotation(point) != topmost)
        return "the item that is hit is not the one that is drawn there";
    return {};
}

} // namespace tallowbay::test
