#include "support/EditorViewFixture.h"

#include <QCloseEvent>

namespace tallowbay::views {
namespace {

class EditorWindowViewTest : public test::EditorViewTest {
protected:
    bool closes()
    {
        QCloseEvent close;
        QCoreApplication::sendEvent(&view(), &close);
        return close.isAccepted();
    }
};

TEST_F(EditorWindowViewTest, ClosingItConfirms)
{
    take("AB");
    open();
    EXPECT_FALSE(closes()) << "it fades out first";
    EXPECT_EQ(confirmed, std::vector<std::string>{"AB"});
}

TEST_F(EditorWindowViewTest, ClosingAHiddenOneDoesNothing)
{
    take("AB");
    open();
    window->confirmAndDismiss();
    ASSERT_TRUE(runUntil([this] {
        settle();
        return !view().isVisible();
    }));
    confirmed.clear();
    clipboards.clear();
    EXPECT_TRUE(closes());
    settle();
    EXPECT_TRUE(confirmed.empty());
    EXPECT_TRUE(clipboards.empty());
}

} // namespace
} // namespace tallowbay::views
