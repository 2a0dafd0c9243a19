#pragma once

#include <QGuiApplication>

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

} // namespace tallowbay::test
