#include "platform/qt/Artwork.h"

#include <gtest/gtest.h>

namespace tallowbay::qt {

// The file that was asked for used to be a pattern: there was a picture named "*".
TEST(ArtworkTest, TakesNoPatternForAName)
{
    EXPECT_TRUE(Artwork().has(QStringLiteral("MenubarIcon")));
    for (const char* name : {"", "*", "Menubar*", "MenubarIco?", "[M]enubarIcon", "menubaricon"})
        EXPECT_FALSE(Artwork().has(QString::fromLatin1(name))) << name;
}

} // namespace tallowbay::qt
