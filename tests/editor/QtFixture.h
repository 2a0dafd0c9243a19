#pragma once

#include "platform/qt/QtGraphicsContext.h"
#include "platform/qt/QtImageCodec.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace tallowbay::test {

// Fonts need an application object; a program has only one, and no screen is wanted.
class QtTest : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        static int count = 1;
        static char name[] = "test";
        static char* arguments[] = {name, nullptr};
        ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
        if (!qApp)
            static QGuiApplication application(count, arguments);
    }

    static Image plainImage(PixelSize size, std::uint32_t word)
    {
        auto bitmap = std::make_shared<Bitmap>(size);
        for (int y = 0; y < size.height; ++y)
            std::fill_n(bitmap->row(y), size.width, word);
        return bitmap;
    }

    qt::GraphicsFonts fonts;
    qt::QtOffscreenGraphics graphics{fonts};
    qt::QtImageCodec codec;
};

} // namespace tallowbay::test
