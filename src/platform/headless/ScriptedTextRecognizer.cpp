#include "platform/headless/ScriptedTextRecognizer.h"

#include <new>

namespace tallowbay::headless {

TextObservations observationsOf(const std::vector<std::string>& lines)
{
    TextObservations observations;
    for (const std::string& line : lines)
        observations.push_back({{{line, 1.0}}});
    return observations;
}

void ScriptedTextRecognizer::willFind(TextObservations observations)
{
    script.push_back(RecognitionResult(std::move(observations)));
}

void ScriptedTextRecognizer::willFindLines(const std::vector<std::string>& lines)
{
    willFind(observationsOf(lines));
}

void ScriptedTextRecognizer::willFail(const std::string& reason)
{
    script.push_back(RecognitionResult(RecognitionFailure{reason}));
}

void ScriptedTextRecognizer::willThrow()
{
    script.push_back(Throws{});
}

ScriptedTextRecognizer::Step ScriptedTextRecognizer::nextStep()
{
    if (script.empty())
        return RecognitionResult(TextObservations{});
    Step step = std::move(script.front());
    script.pop_front();
    return step;
}

void ScriptedTextRecognizer::recognize(
    Image image, const RecognitionRequest& request, RecognitionReply reply)
{
    journal.push_back({image, request});
    const Step step = nextStep();
    if (std::holds_alternative<Throws>(step))
        throw std::bad_alloc();
    RecognitionResult result = std::get<RecognitionResult>(step);
    if (!image)
        result = RecognitionFailure{"no picture"};
    if (holding)
        held.emplace_back(std::move(reply), std::move(result));
    else
        reply.answer(result);
}

void ScriptedTextRecognizer::answerHeld()
{
    holding = false;
    for (auto& [reply, result] : std::exchange(held, {}))
        reply.answer(result);
}

} // namespace tallowbay::headless
