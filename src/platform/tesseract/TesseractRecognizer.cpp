#include "platform/tesseract/TesseractRecognizer.h"

#include "platform/Dispatch.h"
#include "platform/tesseract/PageReader.h"
#include "platform/tesseract/TesseractEngine.h"

#include <cstdio>
#include <mutex>

#include <malloc.h>

namespace tallowbay::tesseract {

// Keeps an engine warm between recognitions. Thread: any.
class TesseractRecognizer::Engines {
public:
    // Null if there is none.
    std::unique_ptr<TesseractEngine> take()
    {
        const std::lock_guard lock(mutex);
        ++uses;
        return std::move(idle);
    }

    // One is enough to keep.
    void giveBack(std::unique_ptr<TesseractEngine> engine)
    {
        const std::lock_guard lock(mutex);
        ++uses;
        if (!idle)
            idle = std::move(engine);
    }

    // A number that every use changes.
    std::uint64_t useCount() const
    {
        const std::lock_guard lock(mutex);
        return uses;
    }

    void releaseUnlessUsedSince(std::uint64_t useCount)
    {
        std::unique_ptr<TesseractEngine> released;
        {
            const std::lock_guard lock(mutex);
            if (uses == useCount)
                released = std::move(idle);
        }
        if (!released)
            return;
        released.reset();
        TesseractEngine::forgetSharedData();
        ::malloc_trim(0); // what the engine held in small pieces goes back to the system, too
    }

    std::size_t idleCount() const
    {
        const std::lock_guard lock(mutex);
        return idle ? 1 : 0;
    }

private:
    mutable std::mutex mutex;
    std::unique_ptr<TesseractEngine> idle;
    std::uint64_t uses = 0;
};

TesseractRecognizer::TesseractRecognizer(Dispatch& dispatch)
    : TesseractRecognizer(
        dispatch, [] { return findLanguageData(languageDataFolders(), localeOfMessages()); })
{
}

TesseractRecognizer::TesseractRecognizer(Dispatch& dispatch, FindData findData)
    : dispatch(dispatch)
    , findData(std::move(findData))
    , engines(std::make_shared<Engines>())
{
}

TesseractRecognizer::~TesseractRecognizer() = default;

std::size_t TesseractRecognizer::warmEngines() const
{
    return engines->idleCount();
}

void TesseractRecognizer::recognize(Image image, const RecognitionRequest&, RecognitionReply reply)
{
    if (!image) {
        reply.answer(RecognitionFailure{"there is no picture"});
        return;
    }
    const PixelSize size = image->size();
    if (std::int64_t{size.width} * size.height > mostPixels) {
        reply.answer(RecognitionFailure{"the picture is too large"});
        return;
    }
    const RecognitionResult result = read(*image);
    if (const auto* failure = std::get_if<RecognitionFailure>(&result))
        std::fprintf(stderr, "text recognition: %s\n", failure->reason.c_str());
    reply.answer(result);
}

RecognitionResult TesseractRecognizer::read(const Bitmap& bitmap)
{
    auto engine = engines->take();
    if (!engine) {
        const auto data = findData();
        if (!data)
            return RecognitionFailure{"there is no language data of tesseract for English"};
        auto made = TesseractEngine::create(*data);
        if (const auto* failure = std::get_if<RecognitionFailure>(&made))
            return *failure;
        engine = std::move(std::get<std::unique_ptr<TesseractEngine>>(made));
    }
    TextObservations observations = readPage(bitmap, *engine);
    engines->giveBack(std::move(engine));
    releaseLater();
    return observations;
}

void TesseractRecognizer::releaseLater()
{
    dispatch.mainAfter(warmFor, [engines = std::weak_ptr(engines), useCount = engines->useCount()] {
        if (const auto kept = engines.lock())
            kept->releaseUnlessUsedSince(useCount);
    });
}

} // namespace tallowbay::tesseract
