#pragma once

#include "platform/TextRecognizer.h"

namespace tallowbay::tesseract {

class TesseractEngine;

// The lines of text in a picture of a screen, in reading order.
TextObservations readPage(const Bitmap&, TesseractEngine&);

} // namespace tallowbay::tesseract
