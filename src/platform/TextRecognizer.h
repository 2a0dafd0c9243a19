#pragma once

#include "base/Bitmap.h"

#include <functional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace tallowbay {

struct TextCandidate {
    std::string string; // UTF-8, without a line feed
    double confidence = 0; // 0 to 1
};

// A line of text in a picture, read in one or more ways: the likeliest first. May have none.
struct TextObservation {
    std::vector<TextCandidate> candidates;
};

enum class RecognitionLevel { accurate = 0, fast = 1 };

// What the caller would like. A backend that can work in one way only works in that way.
struct RecognitionRequest {
    RecognitionLevel recognitionLevel = RecognitionLevel::accurate;
    bool usesLanguageCorrection = true; // whether known words may settle what a letter is
};

struct RecognitionFailure {
    std::string reason; // for the person who looks for the cause, in English
};

// In reading order; no observation for a picture without text.
using TextObservations = std::vector<TextObservation>;
using RecognitionResult = std::variant<TextObservations, RecognitionFailure>;

// The way back from a recogniser to its caller, which is used exactly once whatever happens: one
// that is destroyed unused, as when an exception passes, answers with a failure.
//
// Thread: whichever uses or destroys it; the handler runs inside that and must not throw.
class RecognitionReply {
public:
    using Handler = std::function<void(const RecognitionResult&)>;

    explicit RecognitionReply(Handler handler)
        : handler(std::move(handler))
    {
    }
    RecognitionReply(RecognitionReply&& other) noexcept
        : handler(std::exchange(other.handler, nullptr))
    {
    }
    RecognitionReply& operator=(RecognitionReply&&) = delete;
    ~RecognitionReply() { answer(RecognitionFailure{"recognition ended without a result"}); }

    // The first call counts.
    void answer(const RecognitionResult& result)
    {
        if (auto once = std::exchange(handler, nullptr))
            once(result);
    }

private:
    Handler handler;
};

// Reads the text in pictures.
//
// Thread: recognize() may be called from any thread but the main one and may block until the text
// is read; several calls may run at once. The reply is used on any thread, perhaps inside the call.
// Memory stays bounded whatever the picture: one that would take too much is a failure.
class TextRecognizer {
public:
    virtual ~TextRecognizer() = default;

    // Failures: no picture (null), too large a picture, no language data, the engine's own. May
    // throw only what a lack of memory throws; the reply is used all the same.
    virtual void recognize(Image, const RecognitionRequest&, RecognitionReply) = 0;
};

} // namespace tallowbay
