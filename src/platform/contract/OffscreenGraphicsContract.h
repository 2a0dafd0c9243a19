#pragma once

#include "platform/Graphics.h"
#include "platform/OffscreenGraphics.h"

#include <gtest/gtest.h>

namespace tallowbay::contract {

// Every offscreen graphics keeps its header's promises. A backend offers:
//   const OffscreenGraphics& graphics();
template <typename Backend> class OffscreenGraphicsContract : public testing::Test {
protected:
    Backend backend;
    const OffscreenGraphics& graphics = backend.graphics();
};

TYPED_TEST_SUITE_P(OffscreenGraphicsContract);

TYPED_TEST_P(OffscreenGraphicsContract, CallsTheDrawingOnceWithASurfaceOfThatSize)
{
    for (const PixelSize size : {PixelSize{1, 1}, PixelSize{300, 7}, PixelSize{32767, 1}}) {
        int calls = 0;
        const auto bitmap = this->graphics.draw(size, 2, [&](GraphicsContext& context) {
            ++calls;
            EXPECT_EQ(context.compositingOperation(), CompositingOperation::sourceOver);
        });
        ASSERT_TRUE(bitmap);
        EXPECT_EQ(bitmap->size(), size);
        EXPECT_EQ(calls, 1);
    }
}

TYPED_TEST_P(OffscreenGraphicsContract, CallsNoDrawingWithoutASurface)
{
    for (const PixelSize size :
         {PixelSize{0, 5}, PixelSize{5, 0}, PixelSize{5, -1}, PixelSize{32768, 1},
          PixelSize{1, 40000}})
        EXPECT_FALSE(this->graphics.draw(size, 1, [](GraphicsContext&) { FAIL(); }));
}

TYPED_TEST_P(OffscreenGraphicsContract, KeepsTheCompositingOperationUntilItIsSetAgain)
{
    EXPECT_TRUE(this->graphics.draw({2, 2}, 1, [](GraphicsContext& context) {
        context.setCompositingOperation(CompositingOperation::copy);
        context.fill(Rect{{0, 0}, {1, 1}}, Color::white(1));
        context.drawText("a", {0, 0}, {});
        EXPECT_EQ(context.compositingOperation(), CompositingOperation::copy);
        context.setCompositingOperation(CompositingOperation::sourceOver);
        EXPECT_EQ(context.compositingOperation(), CompositingOperation::sourceOver);
    }));
}

REGISTER_TYPED_TEST_SUITE_P(
    OffscreenGraphicsContract, CallsTheDrawingOnceWithASurfaceOfThatSize,
    CallsNoDrawingWithoutASurface, KeepsTheCompositingOperationUntilItIsSetAgain);

} // namespace tallowbay::contract
