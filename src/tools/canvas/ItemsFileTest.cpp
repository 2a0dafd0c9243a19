#include "tools/canvas/ItemsFile.h"

#include "platform/Graphics.h"

#include <gtest/gtest.h>

namespace tallowbay {
namespace {

std::vector<AnnotationItem> items(std::string_view json)
{
    const auto result = parseItems(json);
    const auto* problem = std::get_if<ItemsProblem>(&result);
    EXPECT_EQ(problem, nullptr) << problem->sentence;
    return problem ? std::vector<AnnotationItem>{} : std::get<0>(result);
}

TEST(ItemsFile, ReadsItemsAsTheModelHasThem)
{
    const auto read = items(R"([
        {"tool": 0, "rect": {"x": 1, "y": 2.5, "width": -3, "height": 4},
         "color": {"red": 0.1, "green": 0.2, "blue": 0.3, "alpha": 0.4}},
        {"tool": 2, "rect": {"x": 5, "y": 6, "width": 0, "height": 0}, "text": "é",
         "color": {"red": 1, "green": 0, "blue": 0}},
        {"tool": 3, "rect": {"x": 7, "y": 8, "width": 9, "height": 10}, "text": null}])");
    const std::vector<AnnotationItem> expected{
        {AnnotationTool::highlight, {{1, 2.5}, {-3, 4}}, {}, {0.1, 0.2, 0.3, 0.4}},
        {AnnotationTool::text, {{5, 6}, {0, 0}}, "\xC3\xA9", {1, 0, 0, 1}},
        {AnnotationTool::blur, {{7, 8}, {9, 10}}, {}, systemYellow}};
    EXPECT_EQ(read, expected);
}

TEST(ItemsFile, ReadsTheShortForms)
{
    const auto read = items(R"({"items": [
        {"tool": "arrow", "rect": [1, 2, 3, 4], "color": [0.5, 0.6, 0.7]},
        {"tool": "blur", "rect": {"origin": [1, 2], "size": {"width": 3, "height": 4}}}]})");
    const std::vector<AnnotationItem> expected{
        {AnnotationTool::arrow, {{1, 2}, {3, 4}}, {}, {0.5, 0.6, 0.7, 1}},
        {AnnotationTool::blur, {{1, 2}, {3, 4}}, {}, systemYellow}};
    EXPECT_EQ(read, expected);
}

TEST(ItemsFile, SaysWhatItCannotRead)
{
    for (const char* json :
         {"", "nothing", "1", "{}", "[1]", R"([{"tool": 4, "rect": [0, 0, 1, 1]}])",
          R"([{"tool": "pen", "rect": [0, 0, 1, 1]}])", R"([{"tool": 0}])",
          R"([{"tool": 0, "rect": [0, 0, 1]}])", R"([{"tool": 0, "rect": [0, 0, 1, "1"]}])",
          R"([{"tool": 0, "rect": [0, 0, 1, 1e300]}])", R"([{"tool": 0, "rect": {"x": 1}}])",
          R"([{"tool": 0, "rect": [0, 0, 1, 1], "text": 5}])",
          R"([{"tool": 0, "rect": [0, 0, 1, 1], "color": "red"}])"}) {
        const auto result = parseItems(json);
        ASSERT_TRUE(std::holds_alternative<ItemsProblem>(result)) << json;
        EXPECT_FALSE(std::get<ItemsProblem>(result).sentence.empty());
    }
}

} // namespace
} // namespace tallowbay
