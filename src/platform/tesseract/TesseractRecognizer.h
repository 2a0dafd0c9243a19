#pragma once

#include "platform/TextRecognizer.h"
#include "platform/tesseract/LanguageData.h"

#include <chrono>
#include <functional>
#include <memory>

namespace tallowbay {
class Dispatch;
}

namespace tallowbay::tesseract {

// Reads text with tesseract, after preparing what is on screens for an engine that learnt from
// scanned books: whatever its colours, text comes out dark on light, its lines are found and
// enlarged, and gaps and marks are put right by what the picture shows.
//
// The engine with its data of some ten megabytes is made by the first recognition and let go when
// none has come for a while. Recognitions at the same time have an engine each.
//
// Besides the failures of the seam: a picture of more than `mostPixels`.
class TesseractRecognizer final : public TextRecognizer {
public:
    using FindData = std::function<std::optional<LanguageData>()>;
    static constexpr std::int64_t mostPixels = 40'000'000; // a screen of 8K has 33 million
    static constexpr std::chrono::milliseconds warmFor{60'000};

    // The dispatch outlives the recogniser.
    explicit TesseractRecognizer(Dispatch&);
    TesseractRecognizer(Dispatch&, FindData);
    ~TesseractRecognizer() override;

    void recognize(Image, const RecognitionRequest&, RecognitionReply) override;

    // For those who watch over memory: engines that wait for work.
    std::size_t warmEngines() const;

private:
    class Engines;

    RecognitionResult read(const Bitmap&);
    void releaseLater();

    Dispatch& dispatch;
    FindData findData;
    std::shared_ptr<Engines> engines;
};

} // namespace tallowbay::tesseract
