#include "platform/x11/windows/XSettings.h"

#include <gtest/gtest.h>

namespace tallowbay::x11 {
namespace {

using namespace std::string_literals;

std::string number(unsigned value, int size, bool bigEndian)
{
    std::string bytes;
    for (int index = 0; index < size; ++index)
        bytes += static_cast<char>(value >> 8 * (bigEndian ? size - 1 - index : index));
    return bytes;
}

std::string padded(std::string text)
{
    text.resize((text.size() + 3) / 4 * 4);
    return text;
}

// A number, a colour and two texts.
std::string settings(bool bigEndian)
{
    const auto head = [&](int type, const std::string& name) {
        return number(type, 1, bigEndian) + "\0"s + number(name.size(), 2, bigEndian) + padded(name)
            + number(7, 4, bigEndian);
    };
    const auto text = [&](const std::string& name, const std::string& value) {
        return head(1, name) + number(value.size(), 4, bigEndian) + padded(value);
    };
    return number(bigEndian, 1, bigEndian) + "\0\0\0"s + number(9, 4, bigEndian)
        + number(4, 4, bigEndian) + head(0, "Xft/DPI") + number(98304, 4, bigEndian)
        + head(2, "Some/Color") + "12345678"s + text("Gtk/FontName", "Sans 10")
        + text("Net/ThemeName", "Adwaita-dark");
}

TEST(XSettingsTest, FindsATextInEitherByteOrder)
{
    for (bool bigEndian : {false, true}) {
        EXPECT_EQ(textOfXSettings(settings(bigEndian), "Net/ThemeName"), "Adwaita-dark");
        EXPECT_EQ(textOfXSettings(settings(bigEndian), "Gtk/FontName"), "Sans 10");
    }
}

TEST(XSettingsTest, FindsNothingThatIsNoTextOrNotThere)
{
    EXPECT_EQ(textOfXSettings(settings(false), "Xft/DPI"), std::nullopt);
    EXPECT_EQ(textOfXSettings(settings(false), "Some/Color"), std::nullopt);
    EXPECT_EQ(textOfXSettings(settings(false), "Net/IconThemeName"), std::nullopt);
    EXPECT_EQ(textOfXSettings("", "Net/ThemeName"), std::nullopt);
}

TEST(XSettingsTest, SurvivesAPropertyThatIsCutOffAnywhere)
{
    const auto whole = settings(false);
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_EQ(textOfXSettings(whole.substr(0, length), "Net/ThemeName"), std::nullopt);
}

TEST(XSettingsTest, SurvivesLengthsThatLie)
{
    auto lying = settings(false);
    for (std::size_t index = 8; index < lying.size(); ++index) {
        auto damaged = lying;
        damaged[index] = '\xff';
        textOfXSettings(damaged, "Net/ThemeName"); // no crash, no endless loop
    }
    SUCCEED();
}

} // namespace
} // namespace tallowbay::x11
