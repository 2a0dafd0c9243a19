#include "views/editor/EditorAccessibility.h"

#include "views/editor/AnnotationCanvasView.h"
#include "views/editor/SwatchCardView.h"
#include "views/editor/ToolRailView.h"
#include "views/editor/strip/StripView.h"

#include <QAccessibleWidget>

#include <algorithm>

namespace tallowbay::views {

namespace {

class AccessibleStrip final : public QAccessibleWidget {
public:
    explicit AccessibleStrip(StripView* strip)
        : QAccessibleWidget(strip, QAccessible::List)
    {
    }

    int childCount() const override { return static_cast<int>(cells().size()); }

    QAccessibleInterface* child(int place) const override
    {
        const auto index = static_cast<std::size_t>(place);
        return place >= 0 && index < cells().size()
            ? QAccessible::queryAccessibleInterface(cells()[index])
            : nullptr;
    }

    int indexOfChild(const QAccessibleInterface* child) const override
    {
        const auto found = std::ranges::find(
            cells(), child->object(), [](CellView* cell) { return static_cast<QObject*>(cell); });
        return found == cells().end() ? -1 : static_cast<int>(found - cells().begin());
    }

    // The arrows choose among the cells while the strip has the keyboard.
    QAccessibleInterface* focusChild() const override
    {
        const auto chosen =
            std::ranges::find_if(cells(), [](CellView* cell) { return cell->cell().selected; });
        return widget()->hasFocus() && chosen != cells().end()
            ? QAccessible::queryAccessibleInterface(*chosen)
            : QAccessibleWidget::focusChild();
    }

private:
    const std::vector<CellView*>& cells() const
    {
        return static_cast<StripView*>(object())->cellsInOrder();
    }
};

class AccessibleCell final : public QAccessibleWidget {
public:
    explicit AccessibleCell(CellView* cell)
        : QAccessibleWidget(cell, QAccessible::ListItem)
    {
    }

    // Not the widget in between, which only scrolls.
    QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface(widget()->parentWidget()->parentWidget());
    }

    QString text(QAccessible::Text kind) const override
    {
        const ThumbnailCell shown = cell().cell();
        if (kind == QAccessible::Name)
            return QString::fromStdString(shown.name);
        if (kind == QAccessible::Description)
            return QString::fromStdString(shown.checkboxLabel());
        return QAccessibleWidget::text(kind);
    }

    QAccessible::State state() const override
    {
        const ThumbnailCell shown = cell().cell();
        QAccessible::State state = QAccessibleWidget::state();
        state.selectable = state.checkable = true;
        state.selected = shown.selected;
        state.checked = shown.checked;
        state.focusable = true;
        state.focused = shown.selected && widget()->parentWidget()->parentWidget()->hasFocus();
        return state;
    }

    QStringList actionNames() const override { return {pressAction(), toggleAction()}; }

    void doAction(const QString& action) override
    {
        if (action == pressAction())
            cell().press();
        else if (action == toggleAction())
            cell().toggle();
    }

private:
    CellView& cell() const { return *static_cast<CellView*>(object()); }
};

QAccessibleInterface* interfaceOf(const QString&, QObject* object)
{
    if (auto* const canvas = dynamic_cast<AnnotationCanvasView*>(object))
        return new QAccessibleWidget(canvas, QAccessible::Canvas);
    if (auto* const tools = dynamic_cast<ToolRailView*>(object))
        return new QAccessibleWidget(tools, QAccessible::ToolBar);
    if (auto* const colors = dynamic_cast<SwatchCardView*>(object))
        return new QAccessibleWidget(colors, QAccessible::ToolBar);
    if (auto* const strip = dynamic_cast<StripView*>(object))
        return new AccessibleStrip(strip);
    if (auto* const cell = dynamic_cast<CellView*>(object))
        return new AccessibleCell(cell);
    return nullptr;
}

} // namespace

void makeEditorAccessible()
{
    QAccessible::installFactory(interfaceOf);
}

} // namespace tallowbay::views
