#pragma once

namespace tallowbay {

class EditorStrip;

// Where the editor is found once there is one: empty until it is opened for the first time, which
// may never be, and filled from then on.
//
// Thread: main queue.
class EditorSlot {
public:
    // Null while there is no editor.
    EditorStrip* strip() const { return editor; }

    // A later one takes the place of an earlier.
    void fill(EditorStrip& opened) { editor = &opened; }

    // Before the editor goes.
    void empty() { editor = nullptr; }

private:
    EditorStrip* editor = nullptr;
};

} // namespace tallowbay
