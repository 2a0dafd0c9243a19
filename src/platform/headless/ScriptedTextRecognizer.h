#pragma once

#include "platform/TextRecognizer.h"

#include <deque>
#include <string>
#include <vector>

namespace tallowbay::headless {

// Reads what the test has scripted, whatever the picture shows. With nothing scripted it finds no
// text.
class ScriptedTextRecognizer final : public TextRecognizer {
public:
    void recognize(Image, const RecognitionRequest&, RecognitionReply) override;

    // What the next recognition that has no other script does. Scripts are used up in their order.
    void willFind(TextObservations observations);
    void willFindLines(const std::vector<std::string>& lines);
    void willFail(const std::string& reason);
    void willThrow();

    // From now on replies are kept until answerHeld().
    void hold() { holding = true; }
    void answerHeld();

    struct Call {
        Image image;
        RecognitionRequest request;
    };
    std::vector<Call> journal;

private:
    struct Throws { };
    using Step = std::variant<RecognitionResult, Throws>;

    Step nextStep();

    std::deque<Step> script;
    std::deque<std::pair<RecognitionReply, RecognitionResult>> held;
    bool holding = false;
};

// An observation with one sure candidate for each line.
TextObservations observationsOf(const std::vector<std::string>& lines);

} // namespace tallowbay::headless
