#pragma once

#include "platform/Platform.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace tallowbay {

// Reads the text in a region of the screen that the user selects.
class OCRCapture {
public:
    using Completion = std::function<void(const std::optional<std::string>& text)>;

    // Lets the user select a region, and calls the completion exactly once, on the main queue: with
    // the lines of text in the region, separated by single line feeds, or without text if the user
    // cancelled, nothing could be captured or nothing was recognised. Before that it tells there,
    // once, that the selection has left the screen. Returns at once; the backend outlives the
    // capture. The captured picture lies in a folder that no other user can enter; both are gone by
    // the time of the completion.
    //
    // Thread: any.
    static void run(const Platform&, std::function<void()> selectionEnded, Completion);

private:
    static bool selectRegion(const Platform&, const std::filesystem::path& file);
    static void captureAndRecognize(
        const Platform&, const std::function<void()>& selectionEnded, const Completion&);
    static void recognize(
        const Platform&, const std::filesystem::path& imageURL, Completion completion);
};

} // namespace tallowbay
