#include "editor/window/ThumbnailCell.h"

#include "editor/window/EditorLook.h"
#include "platform/Graphics.h"

namespace tallowbay {

Color ThumbnailCell::checkboxTint() const
{
    return checked ? systemBlue : uncheckedTint;
}

} // namespace tallowbay
