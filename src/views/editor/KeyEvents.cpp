#include "views/editor/KeyEvents.h"

#include <QKeyEvent>

namespace tallowbay::views {

namespace {

struct KnownKey {
    int key;
    KeyCode code;
};

// What the editor has a use for.
constexpr KnownKey knownKeys[] = {
    {Qt::Key_Z, 6},       {Qt::Key_Return, 36}, {Qt::Key_Enter, 36}, {Qt::Key_Backspace, 51},
    {Qt::Key_Delete, 51}, {Qt::Key_Escape, 53}, {Qt::Key_Left, 123}, {Qt::Key_Right, 124},
    {Qt::Key_Down, 125},  {Qt::Key_Up, 126},
};

} // namespace

KeyPress keyPressOf(const QKeyEvent& event)
{
    KeyPress press{unknownKeyCode, 0};
    for (const auto& [key, code] : knownKeys)
        if (event.key() == key)
            press.keyCode = code;
    const Qt::KeyboardModifiers held = event.modifiers();
    if (held & Qt::ShiftModifier)
        press.flags |= eventFlag::shift;
    if (held & Qt::ControlModifier)
        press.flags |= eventFlag::command;
    if (held & Qt::AltModifier)
        press.flags |= eventFlag::option;
    if (held & Qt::MetaModifier)
        press.flags |= eventFlag::control;
    return press;
}

} // namespace tallowbay::views
