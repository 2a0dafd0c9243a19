// A paste must never insert what an edit was to hide, however early it comes.

#include "desktop/program/EditorFixture.h"

#include <png.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace tallowbay::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Empty if it is no picture.
Bytes channelsOf(const std::filesystem::path& path)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str()))
        return {};
    image.format = PNG_FORMAT_RGB;
    Bytes channels(PNG_IMAGE_SIZE(image));
    if (!png_image_finish_read(&image, nullptr, channels.data(), 0, nullptr))
        return {};
    return channels;
}

// The compression of edits can be held, and a program waits for what is confirmed.
class EditorPasteTest : public EditorFixture {
protected:
    EditorPasteTest()
    {
        server.startWindowManager();
        home.addGate("pngquant");
        target = std::make_unique<PasteWindow>(server, home);
        targetsName = activeWindow();
    }

    // From beyond one corner of the picture to beyond the other.
    void maskAll()
    {
        const Place middle = editor.canvas(0, clearRow);
        editor.click(editor.tool(3));
        editor.drag(editor.canvas(-400, -205), editor.canvas(400, 205));
        ASSERT_TRUE(waitUntil([&] { return isOfMask(editor.pixel(middle) & 0xff); }));
    }

    void confirmAndPaste()
    {
        editor.press("Return");
        ASSERT_TRUE(editor.waitUntilGone());
        ASSERT_TRUE(waitForActive(targetsName));
        target->pressPaste();
        ASSERT_TRUE(target->waitForPastes(1));
    }

    void expectMaskWithTheNextPaste()
    {
        const auto copy = home.optimized() / screenshots[0];
        ASSERT_TRUE(waitForCompression(server, home));
        ASSERT_FALSE(isMasked(copy)) << "what a paste is held for";
        ASSERT_THAT(target->pastes(), ElementsAre(IsEmpty()));
        home.openGate();
        ASSERT_TRUE(target->waitForPastes(2));
        EXPECT_THAT(target->pastes(), ElementsAre(IsEmpty(), ElementsAre(copy)));
        EXPECT_TRUE(isMasked(copy));
        const Bytes all = channelsOf(copy);
    }

    static bool isMasked(const std::filesystem::path& copy)
    {
        const Bytes channels = channelsOf(copy);
        return !channels.empty() && std::ranges::all_of(channels, isOfMask);
    }

    // Its two greys and what lies between; the paper is brighter, and so is most of the ink.
    static bool isOfMask(Rgb channel) { return channel > 0x1a && channel < 0x34; }

    std::unique_ptr<PasteWindow> target;
    std::string targetsName;
};

TEST_F(EditorPasteTest, APasteDuringTheWriteOfAMaskComesByItselfWithTheMaskAlone)
{
    openEditorWith(1);
    home.closeGate();
    maskAll();
    confirmAndPaste();
    expectMaskWithTheNextPaste();
}

TEST_F(EditorPasteTest, AMaskThatWasTakenBackAndBroughtAgainIsPastedAlone)
{
    openEditorWith(1);
    home.closeGate();
    maskAll();
    editor.press("ctrl+z");
    editor.press("ctrl+shift+z");
    confirmAndPaste();
    expectMaskWithTheNextPaste();
}

} // namespace
} // namespace tallowbay::test
