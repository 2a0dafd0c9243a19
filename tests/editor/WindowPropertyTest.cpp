#include "support/EditorFixture.h"
#include "support/Sanitizers.h"

#include <map>
#include <random>

namespace tallowbay {
namespace {

// The window under random use: background work ends at any moment and in any order. What it must
// hold is kept beside it in the plainest way.
class WindowPropertyTest : public test::EditorTest, public testing::WithParamInterface<unsigned> {
protected:
    // Items by their colours.
    struct Plain {
        std::vector<std::size_t> items;
        std::vector<std::size_t> redo;
        std::size_t written = 0; // items of the last state that was not empty; 0: never edited
    };

    WindowPropertyTest()
    {
        build();
        window->show();
    }

    std::size_t pick(std::size_t below) { return random() % below; }
    bool hasPicture() { return window->canvas().backgroundImage() != nullptr; }
    char shown() const { return nameOf(window->selectedIndex())[0]; }
    Plain& current() { return plain[shown()]; }
    char anyShown() { return nameOf(pick(window->count()))[0]; }

    void step()
    {
        switch (pick(18)) {
        case 0:
            return takeNew();
        case 1:
            if (window->showsImages())
                window->setPendingDivider();
            return;
        case 2:
            return removeOne();
        case 3:
            return settle();
        case 4:
        case 5:
            if (const auto jobs = desktop.dispatch.backgroundCount())
                desktop.dispatch.runBackground(pick(jobs));
            return;
        case 6:
            return confirmAndShow();
        case 7:
            window->canvas().setSize({300.0 + double(pick(400)), 300.0 + double(pick(300))});
            return;
        default:
            if (window->showsImages())
                use();
        }
    }

    // Of a strip that is not empty.
    void use()
    {
        switch (pick(10)) {
        case 0:
            return window->cellClicked(pick(window->count()));
        case 1:
            return press(pick(2) ? keyCode::left : keyCode::right);
        case 2:
            return pick(2) ? press(keyCode::up) : window->checkboxToggled(pick(window->count()));
        case 3:
        case 4:
            return undo();
        case 5:
            return redo();
        case 6:
            window->uncheckLastURL();
            return;
        default:
            return drawOne();
        }
    }

    void takeNew()
    {
        const char name = static_cast<char>('A' + pick(20));
        if (plain.contains(name))
            return;
        createFiles(std::string(1, name));
        window->addURL(file(name));
        plain[name] = {};
        EXPECT_EQ(shown(), name);
    }
    void removeOne()
    {
        if (!window->showsImages() || pick(3) > 0)
            return;
        const char name = anyShown();
        if (window->isBeingWritten(file(name)))
            return; // or it would come back
        desktop.files.remove(file(name));
        window->removeDeletedFiles();
        plain.erase(name);
    }
    void drawOne()
    {
        const std::size_t color = pick(swatchColorValues.size());
        window->swatchSelected(color);
        const Size size = window->canvas().placedOn();
        const Point middle{size.width / 2, size.height / 2};
        window->canvas().gestureLost();
        // Beside what lies there; a click on an item would move it.
        const double offset = double(current().items.size() % 7) * 12 - 40;
        if (window->canvas().hitTestAnnotation({middle.x + offset, middle.y})
            || window->canvas().hitTestResizeHandle({middle.x + offset, middle.y}))
            return;
        window->canvas().mouseDown({middle.x + offset, middle.y});
        window->canvas().mouseDragged({middle.x + offset + 8, middle.y + 8});
        window->canvas().mouseUp({middle.x + offset + 8, middle.y + 8});
        if (hasPicture()) {
            current().items.push_back(color);
            current().redo.clear();
            current().written = current().items.size();
        }
    }
    void undo()
    {
        window->undoAnnotation();
        moveTop(current().items, current().redo);
    }
    void redo()
    {
        window->redoAnnotation();
        moveTop(current().redo, current().items);
    }
    void moveTop(std::vector<std::size_t>& from, std::vector<std::size_t>& to)
    {
        if (from.empty())
            return;
        to.push_back(from.back());
        from.pop_back();
        if (!current().items.empty())
            current().written = current().items.size();
    }
    void confirmAndShow()
    {
        window->confirmAndDismiss();
        if (window->showsImages()) {
            EXPECT_EQ(confirmed.back(), clipboardNow());
        }
        desktop.dispatch.advance(std::chrono::milliseconds(150));
        EXPECT_FALSE(window->visible());
        window->show();
    }

    std::string clipboardNow() const
    {
        const std::string checked = names(window->checkedURLs());
        if (!checked.empty())
            return checked;
        std::string all;
        for (std::size_t index = 0; index < window->count(); ++index)
            all += nameOf(index);
        return all;
    }

    void expectSound()
    {
        ASSERT_EQ(window->count(), plain.size());
        std::size_t selected = 0;
        for (std::size_t index = 0; index < window->count(); ++index)
            selected += window->cell(index).selected;
        ASSERT_EQ(selected, window->showsImages() ? 1u : 0u);
        expectItems();
        if (!window->showsImages()) {
            ASSERT_FALSE(hasPicture());
        }
    }
    void expectItems()
    {
        std::vector<std::size_t> colors;
        for (const AnnotationItem& item : items())
            colors.push_back(static_cast<std::size_t>(
                std::ranges::find(swatchColorValues, item.color) - swatchColorValues.begin()));
        ASSERT_EQ(colors, window->showsImages() ? current().items : std::vector<std::size_t>{});
    }

    // With nothing under way.
    void expectSettled()
    {
        settle();
        for (const auto& [name, expected] : plain) {
            ASSERT_FALSE(window->isBeingWritten(file(name))) << name;
            ASSERT_EQ(itemsIn(name), expected.written) << name;
        }
        ASSERT_EQ(hasPicture(), window->showsImages());
        if (const auto saved = SessionStore::load(desktop.files)) {
            ASSERT_EQ(saved->size(), window->slots().size());
        }
        ASSERT_TRUE(views.messages().empty());
    }

    // The recording backend numbers its drawings in their first pixel.
    std::size_t itemsIn(char name) const
    {
        const auto bytes = desktop.files.read(file(name)).value_or("");
        const auto line = bytes.find("\nff");
        return line == std::string::npos
            ? 0
            : flattened().at(
                static_cast<std::size_t>(std::stoi(bytes.substr(line + 3, 6), nullptr, 16)) - 1);
    }

    std::mt19937 random{GetParam()};
    std::map<char, Plain> plain;
};

// A hundred thousand steps in all.
constexpr int stepsOfASeed = test::isSanitized ? 1'000 : 10'000;

TEST_P(WindowPropertyTest, RandomUseLeavesEveryItemAndEveryFileAsItIsExpected)
{
    for (int step = 0; step < stepsOfASeed && !HasFailure(); ++step) {
        SCOPED_TRACE("step " + std::to_string(step));
        WindowPropertyTest::step();
        expectSound();
        if (step % 50 == 49)
            expectSettled();
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, WindowPropertyTest, testing::Range(1u, 11u));

} // namespace
} // namespace tallowbay
