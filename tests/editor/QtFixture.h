#pragma once

#include "platform/qt/graphics/QtGraphicsContext.h"
#include "platform/qt/graphics/QtImageCodec.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace tallowbay::test {

// Fonts need an application object. A program has only one, so it stays; no screen is wanted.
struct QtApplicationForFonts {
    QtApplicationForFonts()
    {
        static int count = 1;
        static char name[] = "test";
        static char* arguments[] = {name, nullptr};
        ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
        static const QGuiApplication application(count, arguments);
    }
};

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
