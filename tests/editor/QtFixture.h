#pragma once

#include "platform/qt/graphics/QtGraphicsContext.h"
#include "platform/qt/graphics/QtImageCodec.h"
#include "platform/qt/graphics/TestApplication.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tallowbay::test {

class QtTest : public testing::Test {
protected:
    static Image plainImage(PixelSize size, std::uint32_t word)
    {
        auto bitmap = std::make_shared<Bitmap>(size);
        for (int y = 0; y < size.height; ++y)
            std::fill_n(bitmap->row(y), size.width, word);
        return bitmap;
    }

    QtApplicationForFonts application;
    qt::GraphicsFonts fonts;
    qt::QtOffscreenGraphics graphics{fonts};
    qt::QtImageCodec codec;
};

} // namespace tallowbay::test
