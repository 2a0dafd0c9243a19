#pragma once

#include "platform/tesseract/Plane.h"

namespace tallowbay::tesseract {

// How far every pixel is from the background it lies on: 0 is background, larger is ink. Light text
// on a dark ground and dark text on a light one come out alike, side by side in one picture, too.
Plane inkOf(const Bitmap&);

// Takes out what is long and thin: underlines, rules, frames.
void removeRules(Plane& ink, int textHeight);

// The usual height of a small letter, in pixels; 0 if nothing looks like text.
int letterHeight(const Plane& ink);

// Makes faint text as strong as any other, word by word.
void levelContrast(Plane& ink, int textHeight);

} // namespace tallowbay::tesseract
