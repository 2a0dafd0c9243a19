#include "platform/tesseract/TesseractEngine.h"

#include <omp.h>
#include <tesseract/baseapi.h>

namespace tallowbay::tesseract {

namespace {

constexpr int letterResolution = 300; // dots an inch, as if the enlarged line had been scanned

Symbol symbolAt(const ::tesseract::ResultIterator& results, const LineImage& image)
{
    using ::tesseract::RIL_SYMBOL;
    using ::tesseract::RIL_WORD;
    const std::unique_ptr<char[]> text(results.GetUTF8Text(RIL_SYMBOL));
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    results.BoundingBox(RIL_SYMBOL, &left, &top, &right, &bottom);
    return {
        text ? text.get() : "", image.sourceColumn((left + right) / 2.0),
        results.IsAtBeginningOf(RIL_WORD),
        static_cast<double>(results.Confidence(RIL_SYMBOL)) / 100};
}

} // namespace

TesseractEngine::TesseractEngine(std::unique_ptr<::tesseract::TessBaseAPI> api)
    : api(std::move(api))
{
}

TesseractEngine::~TesseractEngine() = default;

std::variant<std::unique_ptr<TesseractEngine>, RecognitionFailure> TesseractEngine::create(
    const LanguageData& data)
{
    // Our lines are dark on light already. The engine's own remarks are not for the user's eyes.
    const std::vector<std::string> names{"debug_file", "tessedit_do_invert"};
    const std::vector<std::string> values{"/dev/null", "0"};
    auto api = std::make_unique<::tesseract::TessBaseAPI>();
    if (api->Init(
            data.folder.c_str(), data.languages.c_str(), ::tesseract::OEM_LSTM_ONLY, nullptr, 0,
            &names, &values, false)
        != 0)
        return RecognitionFailure{"tesseract cannot use its data for " + data.languages};
    api->SetPageSegMode(::tesseract::PSM_SINGLE_LINE);
    return std::unique_ptr<TesseractEngine>(new TesseractEngine(std::move(api)));
}

void TesseractEngine::forgetSharedData()
{
    ::tesseract::TessBaseAPI::ClearPersistentCache();
}

std::vector<Symbol> TesseractEngine::read(const LineImage& image)
{
    // In this thread: several cost more than they save on one line, and the engine asks for four.
    ::omp_set_max_active_levels(0);
    const PixelSize size = image.picture.size;
    api->SetImage(image.picture.values.data(), size.width, size.height, 1, size.width);
    api->SetSourceResolution(letterResolution);
    std::vector<Symbol> symbols;
    if (api->Recognize(nullptr) != 0)
        return symbols;
    const std::unique_ptr<::tesseract::ResultIterator> results(api->GetIterator());
    if (!results || results->Empty(::tesseract::RIL_SYMBOL))
        return symbols;
    do
        symbols.push_back(symbolAt(*results, image));
    while (results->Next(::tesseract::RIL_SYMBOL));
    return symbols;
}

} // namespace tallowbay::tesseract
