#pragma once

#include "platform/TextRecognizer.h"
#include "platform/tesseract/LanguageData.h"
#include "platform/tesseract/LineImage.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tesseract {
class TessBaseAPI;
}

namespace tallowbay::tesseract {

// A character as the engine saw it, with its column in the plane of ink.
struct Symbol {
    std::string text; // UTF-8
    double centre = 0;
    bool spaceBefore = false;
    double confidence = 0; // 0 to 1
};

// Whether it is a single one of these ASCII characters.
inline bool isOneOf(const Symbol& symbol, std::string_view characters)
{
    return symbol.text.size() == 1 && characters.find(symbol.text[0]) != std::string_view::npos;
}

// Tesseract with the data of some languages, ready to read.
//
// Thread: one at a time.
class TesseractEngine {
public:
    // Fails if the data is missing or damaged.
    static std::variant<std::unique_ptr<TesseractEngine>, RecognitionFailure> create(
        const LanguageData&);

    ~TesseractEngine();

    // What all engines share, mostly dictionaries, outlives them; this lets go of what none uses.
    // Thread: any.
    static void forgetSharedData();

    // From left to right.
    std::vector<Symbol> read(const LineImage&);

private:
    explicit TesseractEngine(std::unique_ptr<::tesseract::TessBaseAPI>);

    std::unique_ptr<::tesseract::TessBaseAPI> api;
};

} // namespace tallowbay::tesseract
