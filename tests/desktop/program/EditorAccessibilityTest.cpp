#include "desktop/program/AccessibleTree.h"
#include "desktop/program/EditorFixture.h"

using testing::Contains;
using testing::IsSupersetOf;
using testing::Not;

namespace tallowbay::test {
namespace {

// What a screen reader knows of the editor.
class EditorAccessibilityTest : public EditorFixture {
protected:
    EditorAccessibilityTest()
    {
        server.startWindowManager();
        launch({"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"});
        takeScreenshots(2);
        openEditor();
        EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[1]));
    }

    AccessibleNode window() const
    {
        const auto program = assistive.program("tallowbay");
        if (program)
            for (const AccessibleNode& each : program->children)
                if (each.name == "Tallowbay" && each.states.contains("showing"))
                    return each;
        return {};
    }
    const AccessibleNode* focused(const AccessibleNode& from) const
    {
        for (const AccessibleNode* node : from.all())
            if (node->states.contains("focused"))
                return node;
        return nullptr;
    }
    bool waitForFocus(const std::string& name) const
    {
        return waitUntil([&] {
            const AccessibleNode all = window();
            const AccessibleNode* node = focused(all);
            return node && node->name == name;
        });
    }

    const AssistiveBus assistive{environment()};
};

TEST_F(EditorAccessibilityTest, ToolsAndColoursSayWhatTheyAreAndWhichIsChosen)
{
    const AccessibleNode all = window();
    for (const char* name :
         {"Highlight", "Arrow", "Text", "Blur", "Yellow", "Green", "Blue", "Red", "Orange"}) {
        const AccessibleNode* button = all.find("check box", name);
        ASSERT_TRUE(button) << name;
        EXPECT_THAT(button->states, IsSupersetOf({"focusable", "showing"})) << name;
        const bool chosen = std::string(name) == "Highlight" || std::string(name) == "Yellow";
        EXPECT_EQ(button->states.contains("checked"), chosen) << name;
    }
    for (const char* name : {"Undo", "Redo"})
        ASSERT_TRUE(all.find("push button", name)) << name;
    EXPECT_TRUE(all.find("canvas", "Screenshot"));
    EXPECT_TRUE(all.find("tool bar", "Tools"));
    EXPECT_TRUE(all.find("tool bar", "Colours"));
}

TEST_F(EditorAccessibilityTest, TheStripIsAListThatSaysWhatIsSelectedAndChecked)
{
    editor.press("Up");
    ASSERT_TRUE(editor.waitForCheck(1, false));
    const AccessibleNode all = window();
    const AccessibleNode* list = all.find("list", "Screenshots");
    ASSERT_TRUE(list);
    EXPECT_THAT(list->states, Contains("focusable"));
    ASSERT_EQ(list->children.size(), 2u);
    const auto& [first, second] = std::tie(list->children[0], list->children[1]);
    EXPECT_EQ(first.role, "list item");
    EXPECT_EQ(first.name, "Screenshot 1, Jan 5");
    EXPECT_EQ(first.description, "Selected");
    EXPECT_THAT(first.states, IsSupersetOf({"checked", "selectable"}));
    EXPECT_THAT(first.states, Not(Contains("selected")));
    EXPECT_EQ(second.name, "Screenshot 2, Jan 5");
    EXPECT_EQ(second.description, "Unselected");
    EXPECT_THAT(second.states, IsSupersetOf({"selectable", "selected"}));
    EXPECT_THAT(second.states, Not(Contains("checked")));
}

TEST_F(EditorAccessibilityTest, TheTabKeyComesToEveryControlInTheirOrder)
{
    ASSERT_TRUE(waitForFocus("Screenshot")) << "the canvas";
    for (const char* name :
         {"Highlight", "Arrow", "Text", "Blur", "Undo", "Redo", "Yellow", "Green", "Blue", "Red",
          "Orange", "Screenshots", "Screenshot"}) {
        editor.press("Tab");
        EXPECT_TRUE(waitForFocus(name)) << name;
    }
    editor.press("shift+Tab");
    EXPECT_TRUE(waitForFocus("Screenshots"));
}

TEST_F(EditorAccessibilityTest, NothingThatCanBeUsedIsWithoutAName)
{
    const AccessibleNode all = window();
    for (const AccessibleNode* node : all.all()) {
        if (node->states.contains("focusable")) {
            EXPECT_NE(node->name, "") << node->role;
        }
    }
}

} // namespace
} // namespace tallowbay::test
