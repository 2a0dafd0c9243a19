#include "tools/canvas/ItemsFile.h"

#include "editor/AnnotationConstants.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cmath>

namespace tallowbay {

namespace {

using Json = nlohmann::json;

// Further out, a mask would have more cells than anyone could wait for.
constexpr double farthest = 1e6;

AnnotationTool toolOf(const Json& value)
{
    constexpr std::array names{"highlight", "arrow", "text", "blur"};
    if (value.is_string())
        for (const AnnotationTool tool : annotationTools)
            if (value.get<std::string>() == names[static_cast<std::size_t>(rawValue(tool))])
                return tool;
    if (value.is_number_integer())
        if (const auto tool = annotationToolFromRawValue(value.get<int>()))
            return *tool;
    throw ItemsProblem{"there is no such tool: " + value.dump()};
}

// Numbers by their names or by their order.
template <std::size_t count>
std::array<double, count> numbersOf(
    const Json& value, const std::array<const char*, count>& names, const char* what)
{
    if (!value.is_object() && !(value.is_array() && value.size() == count))
        throw ItemsProblem{std::string("not a ") + what + ": " + value.dump()};
    std::array<double, count> numbers{};
    for (std::size_t i = 0; i < count; ++i) {
        const Json& number = value.is_array() ? value[i] : value.at(names[i]);
        numbers[i] = number.get<double>();
        if (!(std::abs(numbers[i]) <= farthest))
            throw ItemsProblem{std::string("too far out, in a ") + what + ": " + value.dump()};
    }
    return numbers;
}

Rect rectOf(const Json& value)
{
    if (value.is_object() && value.contains("origin") && value.contains("size")) {
        const auto origin = numbersOf<2>(value.at("origin"), {"x", "y"}, "point");
        const auto size = numbersOf<2>(value.at("size"), {"width", "height"}, "size");
        return {{origin[0], origin[1]}, {size[0], size[1]}};
    }
    const auto numbers = numbersOf<4>(value, {"x", "y", "width", "height"}, "rectangle");
    return {{numbers[0], numbers[1]}, {numbers[2], numbers[3]}};
}

Color colorOf(Json value)
{
    if (value.is_array() && value.size() == 3)
        value.push_back(1);
    if (value.is_object() && !value.contains("alpha"))
        value["alpha"] = 1;
    const auto numbers = numbersOf<4>(value, {"red", "green", "blue", "alpha"}, "colour");
    return {numbers[0], numbers[1], numbers[2], numbers[3]};
}

AnnotationItem itemOf(const Json& value)
{
    AnnotationItem item{toolOf(value.at("tool")), rectOf(value.at("rect")), {}, systemYellow};
    if (value.contains("text") && !value.at("text").is_null())
        item.text = value.at("text").get<std::string>();
    if (value.contains("color") && !value.at("color").is_null())
        item.color = colorOf(value.at("color"));
    return item;
}

} // namespace

std::variant<std::vector<AnnotationItem>, ItemsProblem> parseItems(std::string_view json)
try {
    const Json document = Json::parse(json);
    const Json& list = document.is_object() ? document.at("items") : document;
    if (!list.is_array())
        return ItemsProblem{"the items are no list"};
    std::vector<AnnotationItem> items;
    for (const Json& value : list)
        items.push_back(itemOf(value));
    return items;
} catch (const ItemsProblem& problem) {
    return problem;
} catch (const Json::exception& problem) {
    return ItemsProblem{problem.what()};
}

} // namespace tallowbay
