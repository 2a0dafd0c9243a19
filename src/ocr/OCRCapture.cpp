#include "ocr/OCRCapture.h"

#include "platform/Clock.h"
#include "platform/Console.h"
#include "platform/Dispatch.h"
#include "platform/FileSystem.h"
#include "platform/ImageCodec.h"
#include "platform/Processes.h"
#include "platform/TextRecognizer.h"
#include "platform/ToolPaths.h"

#include <cstdint>
#include <exception>

namespace tallowbay {

namespace fs = std::filesystem;

namespace {

std::string captureName(const Clock& clock)
{
    const auto sinceEpoch = clock.wallNow().time_since_epoch();
    const std::int64_t seconds =
        std::chrono::duration_cast<std::chrono::seconds>(sinceEpoch).count();
    return "tallowbay_ocr_" + std::to_string(seconds) + ".png";
}

// The lines in the order of the recogniser, which knows the layout better than we do.
std::optional<std::string> joinedLines(const RecognitionResult& result)
{
    std::optional<std::string> text;
    const auto* observations = std::get_if<TextObservations>(&result);
    if (!observations)
        return text;
    for (const TextObservation& observation : *observations) {
        if (observation.candidates.empty())
            continue;
        const std::string& line = observation.candidates.front().string;
        text = text ? *text + "\n" + line : line;
    }
    return text;
}

} // namespace

void OCRCapture::run(
    const Platform& platform, std::function<void()> selectionEnded, Completion completion)
{
    platform.dispatch.globalAsync(
        QualityOfService::userInitiated,
        [platform, selectionEnded = std::move(selectionEnded), completion = std::move(completion)] {
            captureAndRecognize(platform, selectionEnded, completion);
        });
}

// Blocks until the user has selected one. False if there is no picture of it.
bool OCRCapture::selectRegion(const Platform& platform, const fs::path& file)
{
    return platform.processes.run(platform.tools.screencapture, {"-i", file})
        && platform.fileSystem.exists(file);
}

// In the background.
void OCRCapture::captureAndRecognize(
    const Platform& platform, const std::function<void()>& selectionEnded,
    const Completion& completion)
{
    // The name can be guessed: in a folder of our own nobody can have put a link there before us.
    const auto folder = platform.fileSystem.makeTemporaryFolder();
    const Completion finish = [platform, folder,
                               completion](const std::optional<std::string>& text) {
        if (folder)
            platform.fileSystem.remove(*folder);
        platform.dispatch.mainAsync([completion, text] { completion(text); });
    };
    if (!folder)
        platform.console.line("Text extraction failed: no folder can be made for the capture");
    const fs::path file = folder.value_or(fs::path()) / captureName(platform.clock);
    const bool selected = folder && selectRegion(platform, file);
    platform.dispatch.mainAsync(selectionEnded);
    if (selected)
        recognize(platform, file, finish);
    else
        finish(std::nullopt);
}

void OCRCapture::recognize(
    const Platform& platform, const fs::path& imageURL, Completion completion)
{
    RecognitionReply reply([completion = std::move(completion)](const RecognitionResult& result) {
        completion(joinedLines(result));
    });
    try {
        auto loaded = loadImage(platform.fileSystem, platform.imageCodec, imageURL);
        if (auto* bitmap = std::get_if<Bitmap>(&loaded))
            platform.textRecognizer.recognize(
                std::make_shared<const Bitmap>(std::move(*bitmap)),
                {RecognitionLevel::accurate, true}, std::move(reply));
    } catch (const std::exception&) {
        // A picture too large for the memory is one that cannot be read: the reply says so when it
        // is dropped.
    }
}

} // namespace tallowbay
