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
    {Qt::Key_Z, keyCode::z},
    {Qt::Key_Return, keyCode::returnKey},
    {Qt::Key_Enter, keyCode::returnKey},
    {Qt::Key_Backspace, keyCode::backspace},
    {Qt::Key_Delete, keyCode::backspace},
    {Qt::Key_Escape, keyCode::escape},
    {Qt::Key_Left, keyCode::left},
    {Qt::Key_Right, keyCode::right},
    {Qt::Key_Down, keyCode::down},
    {Qt::Key_Up, keyCode::up},
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
