#include "tools/canvas/CanvasTool.h"

#include <QApplication>

#include <charconv>
#include <iostream>
#include <string>
#include <vector>

using namespace tallowbay;

namespace {

constexpr const char* usage =
    "usage: tallowbay-canvas FILE\n"
    "       tallowbay-canvas --flatten ITEMS.json WIDTHxHEIGHT IMAGE OUT\n"
    "       tallowbay-canvas --render ITEMS.json WIDTHxHEIGHT IMAGE OUT [PIXELS-PER-POINT]\n";

std::optional<double> positiveNumber(std::string_view text)
{
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    constexpr double largest = 32767;
    const bool isNumber = error == std::errc() && end == text.data() + text.size();
    return isNumber && value > 0 && value <= largest ? std::optional(value) : std::nullopt;
}

Size parseSize(std::string_view text)
{
    const auto middle = text.find('x');
    const auto width = positiveNumber(text.substr(0, middle));
    const auto height =
        middle == std::string_view::npos ? std::nullopt : positiveNumber(text.substr(middle + 1));
    if (!width || !height)
        throw CanvasToolProblem("not a size such as 1600x1000: " + std::string(text));
    return {*width, *height};
}

int run(const std::vector<std::string>& arguments)
{
    const std::string& mode = arguments.at(0);
    const bool isRender = mode == "--render";
    if (arguments.size() == 1 && !mode.starts_with("--"))
        return CanvasTool().edit(mode);
    const bool hasScale = isRender && arguments.size() == 6;
    if ((mode != "--flatten" && !isRender) || (arguments.size() != 5 && !hasScale))
        throw CanvasToolProblem(std::string("cannot do that\n") + usage);
    const CanvasJob job{arguments[1], parseSize(arguments[2]), arguments[3], arguments[4]};
    if (!isRender) {
        CanvasTool().flatten(job);
        return 0;
    }
    const auto scale = hasScale ? positiveNumber(arguments[5]) : 1.0;
    if (!scale)
        throw CanvasToolProblem("not a number of pixels: " + arguments[5]);
    CanvasTool().render(job, *scale);
    return 0;
}

} // namespace

int main(int argumentCount, char** argumentTexts)
try {
    const std::vector<std::string> arguments(argumentTexts + 1, argumentTexts + argumentCount);
    if (arguments.empty() || arguments[0] == "--help") {
        std::cout << usage;
        return arguments.empty() ? 2 : 0;
    }
    // Without a window no display is needed.
    if (arguments.size() > 1)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argumentCount, argumentTexts);
    return run(arguments);
} catch (const CanvasToolProblem& problem) {
    std::cerr << "tallowbay-canvas: " << problem.what() << std::endl;
    return 1;
}
