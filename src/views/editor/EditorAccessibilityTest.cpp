#include "support/EditorViewFixture.h"

#include <QAccessible>

#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

#include <algorithm>
#include <vector>

namespace tallowbay::views {
namespace {

using testing::Contains;
using testing::Each;
using testing::Not;

struct Told {
    QAccessible::Event what = QAccessible::InvalidEvent;
    QObject* of = nullptr;
    bool operator==(const Told&) const = default;
};
std::vector<Told> told;

void takeDown(QAccessibleEvent* event)
{
    if (dynamic_cast<CellView*>(event->object()))
        told.push_back({event->type(), event->object()});
}

// What assistive programs are told, while the strip has the keyboard.
class EditorAccessibilityTest : public test::EditorViewTest {
protected:
    EditorAccessibilityTest()
    {
        setActive(true);
        former = QAccessible::installUpdateHandler(takeDown);
        take("ABC");
        open();
        stripView().setFocus();
        told.clear();
    }
    ~EditorAccessibilityTest() override
    {
        QAccessible::installUpdateHandler(former);
        setActive(false);
    }

    // As the first assistive program that comes makes it.
    static void setActive(bool active)
    {
        QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(active);
    }

    CellView* cellOf(char name)
    {
        for (CellView* cell : stripView().cellsInOrder())
            if (cell->index() == indexOf(name))
                return cell;
        return nullptr;
    }

    QAccessible::UpdateHandler former = nullptr;
};

TEST_F(EditorAccessibilityTest, AMarkThatChangesIsTold)
{
    toggle('A');
    CellView* const cell = cellOf('A');
    EXPECT_THAT(told, Contains(Told{QAccessible::StateChanged, cell}));
    EXPECT_THAT(told, Contains(Told{QAccessible::DescriptionChanged, cell}));
    EXPECT_THAT(told, Each(testing::Field(&Told::of, cell)));
    EXPECT_THAT(told, Not(Contains(Told{QAccessible::NameChanged, cell})));
}

TEST_F(EditorAccessibilityTest, TheCellThatTheArrowsReachIsTold)
{
    window->handleKeyDown({keyCode::left, 0});
    CellView* const reached = cellOf('B');
    EXPECT_THAT(told, Contains(Told{QAccessible::Selection, reached}));
    EXPECT_THAT(told, Contains(Told{QAccessible::Focus, reached}));
    EXPECT_THAT(told, Not(Contains(Told{QAccessible::Focus, cellOf('C')})));
    const auto* strip = QAccessible::queryAccessibleInterface(&stripView());
    ASSERT_NE(strip->focusChild(), nullptr);
    EXPECT_EQ(strip->focusChild()->object(), reached);
    EXPECT_TRUE(strip->focusChild()->state().focused);
}

TEST_F(EditorAccessibilityTest, CellsThatMoveAndComeAreTold)
{
    const std::vector<CellView*> former = stripView().cellsInOrder();
    std::vector<std::string> names;
    for (const CellView* cell : former)
        names.push_back(cell->cell().name);
    takeAfterPaste("D");
    int renamed = 0;
    for (std::size_t place = 0; place < former.size(); ++place) {
        const bool isRenamed = former[place]->cell().name != names[place];
        const Told news{QAccessible::NameChanged, former[place]};
        EXPECT_EQ(std::ranges::count(told, news), isRenamed ? 1 : 0);
        renamed += isRenamed;
    }
    EXPECT_GT(renamed, 0);
    CellView* const added = stripView().cellsInOrder().back();
    EXPECT_THAT(told, Contains(Told{QAccessible::ObjectCreated, added}));
}

TEST_F(EditorAccessibilityTest, CellsThatGoAreTold)
{
    CellView* const last = stripView().cellsInOrder().back();
    deleteFiles("A");
    EXPECT_THAT(told, Contains(Told{QAccessible::ObjectDestroyed, last}));
}

} // namespace
} // namespace tallowbay::views
