#include "support/EditorFixture.h"

namespace tallowbay {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr EventFlags everyModifier =
    eventFlag::shift | eventFlag::control | eventFlag::option | eventFlag::command;

class WindowKeysTest : public test::EditorTest {
protected:
    WindowKeysTest()
    {
        take("AB");
        window->show();
    }
};

TEST_F(WindowKeysTest, ConfirmsWithReturnEscapeAndTheEnterOfTheKeypad)
{
    for (const KeyCode key : {keyCode::returnKey, keyCode::escape, keyCode::keypadEnter}) {
        confirmed.clear();
        window->show();
        press(key);
        EXPECT_THAT(confirmed, ElementsAre("AB")) << key;
        EXPECT_TRUE(window->isClosing());
    }
}

TEST_F(WindowKeysTest, MindsNoModifierOfKeysThatAreNoLetters)
{
    press(keyCode::left, everyModifier);
    EXPECT_EQ(strip(), "*A+B+");
    press(keyCode::right, everyModifier);
    EXPECT_EQ(strip(), "A+*B+");
    press(keyCode::up, everyModifier);
    EXPECT_EQ(strip(), "A+*B-");
    press(keyCode::returnKey, everyModifier);
    EXPECT_TRUE(window->isClosing());
    window->show();
    press(keyCode::escape, everyModifier);
    EXPECT_TRUE(window->isClosing());
}

TEST_F(WindowKeysTest, ClosesTheTextFieldWithReturnAndStays)
{
    typeText("typed");
    window->handleKeyDown({keyCode::returnKey, 0});
    EXPECT_FALSE(editor().canvas.fieldIsOpen);
    EXPECT_EQ(items().at(0).text, "typed");
    EXPECT_THAT(confirmed, IsEmpty());
    EXPECT_FALSE(window->isClosing());
}

TEST_F(WindowKeysTest, ClosesAnEmptyTextFieldWithReturnWithoutAnItem)
{
    typeText("");
    window->handleKeyDown({keyCode::keypadEnter, 0});
    EXPECT_FALSE(editor().canvas.fieldIsOpen);
    EXPECT_THAT(items(), IsEmpty());
    EXPECT_FALSE(window->isClosing());
}

TEST_F(WindowKeysTest, CommitsTheTextWithEscapeAndCloses)
{
    typeText("typed");
    window->handleKeyDown({keyCode::escape, 0});
    EXPECT_EQ(items().at(0).text, "typed");
    EXPECT_TRUE(window->isClosing());
}

TEST_F(WindowKeysTest, UndoesWithCommandZWhateverElseIsHeldButShift)
{
    for (const EventFlags flags :
         {eventFlag::command, eventFlag::command | eventFlag::control | eventFlag::option}) {
        draw();
        press(keyCode::z, flags);
        EXPECT_THAT(items(), IsEmpty());
    }
}

TEST_F(WindowKeysTest, RedoesWithCommandShiftZWhateverElseIsHeld)
{
    for (const EventFlags flags : {eventFlag::command | eventFlag::shift, everyModifier}) {
        draw();
        press(keyCode::z, eventFlag::command);
        press(keyCode::z, flags);
        EXPECT_EQ(items().size(), 1u);
        press(keyCode::z, eventFlag::command);
    }
}

TEST_F(WindowKeysTest, DoesNothingWithAZWithoutCommand)
{
    draw();
    press(keyCode::z, eventFlag::command);
    draw();
    for (const EventFlags flags :
         {EventFlags{0}, eventFlag::shift, eventFlag::control, eventFlag::option})
        press(keyCode::z, flags);
    EXPECT_EQ(items().size(), 1u);
}

TEST_F(WindowKeysTest, IgnoresEveryOtherKey)
{
    draw();
    settle();
    const auto writes = flattened();
    clipboards.clear();
    for (KeyCode key = 0; key < 128; ++key) {
        const bool means = key == keyCode::returnKey || key == keyCode::keypadEnter
            || key == keyCode::escape || key == keyCode::left || key == keyCode::right
            || key == keyCode::up || key == keyCode::z;
        if (!means) {
            press(key);
            press(key, eventFlag::command);
        }
    }
    settle();
    EXPECT_EQ(strip(), "A+*B+");
    EXPECT_EQ(items().size(), 1u);
    EXPECT_TRUE(window->tools().at(0).selected);
    EXPECT_EQ(window->selectedSwatch(), 0u);
    EXPECT_THAT(clipboards, IsEmpty());
    EXPECT_EQ(flattened(), writes);
    EXPECT_FALSE(window->isClosing());
}

TEST_F(WindowKeysTest, DeletesOnlyASelectedItem)
{
    draw();
    press(keyCode::backspace);
    EXPECT_EQ(items().size(), 1u);
    window->canvas().mouseDown({80, 80});
    window->canvas().mouseUp({80, 80});
    press(keyCode::backspace);
    EXPECT_THAT(items(), IsEmpty());
}

} // namespace
} // namespace tallowbay
