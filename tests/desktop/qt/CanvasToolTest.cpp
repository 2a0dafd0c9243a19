#include "desktop/support/Wait.h"
#include "desktop/support/XServer.h"
#include "platform/qt/graphics/QtImageCodec.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

using namespace std::chrono_literals;
using testing::HasSubstr;

namespace tallowbay::test {
namespace {

// The development tool as a program of its own.
class CanvasToolTest : public testing::Test {
protected:
    CanvasToolTest()
    {
        Bitmap bitmap({200, 150});
        for (int y = 0; y < 150; ++y)
            std::fill_n(bitmap.row(y), 200, 0xFFFFFFFFu);
        put(image, *codec.encodePng(bitmap));
        put(items, R"([{"tool": 3, "rect": {"x": 68, "y": 88, "width": 100, "height": 100}}])");
    }

    static void put(const std::filesystem::path& path, const std::string& bytes)
    {
        std::ofstream(path, std::ios::binary) << bytes;
    }
    std::variant<Bitmap, ImageError> load(const std::filesystem::path& path)
    {
        std::ostringstream bytes;
        bytes << std::ifstream(path, std::ios::binary).rdbuf();
        return codec.decode(bytes.str());
    }

    // Runs to the end: the exit status, and what it complained about.
    int run(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), TALLOWBAY_CANVAS);
        ChildProcess tool(arguments, {{"DISPLAY", std::nullopt}, {"HOME", folder.path.native()}});
        const auto status = tool.wait();
        complaint = tool.errors();
        return status.value_or(-1);
    }
    int flatten(const std::filesystem::path& from)
    {
        return run({"--flatten", items, "496x396", from, output});
    }

    qt::QtImageCodec codec;
    test::TemporaryFolder folder;
    const std::filesystem::path image = folder.path / "shot.png";
    const std::filesystem::path items = folder.path / "items.json";
    const std::filesystem::path output = folder.path / "out.png";
    std::string complaint;
};

TEST_F(CanvasToolTest, BurnsItemsIntoACopyOfThePicture)
{
    ASSERT_EQ(flatten(image), 0) << complaint;
    const auto flat = std::get<Bitmap>(load(output));
    EXPECT_EQ(flat.size(), (PixelSize{200, 150}));
    // 50 x 50 pixels from (10, 20), with cells of 8
    EXPECT_EQ(flat.pixel(10, 129), 0xFF2E2E2Eu);
    EXPECT_EQ(flat.pixel(18, 129), 0xFF1F1F1Fu);
    EXPECT_EQ(flat.pixel(59, 80), 0xFF2E2E2Eu);
    EXPECT_EQ(flat.pixel(60, 80), 0xFFFFFFFFu);
    EXPECT_EQ(std::get<Bitmap>(load(image)).pixel(10, 129), 0xFFFFFFFFu);
}

TEST_F(CanvasToolTest, DrawsWhatTheCanvasShowsAtAnyScale)
{
    for (const int scale : {1, 2}) {
        ASSERT_EQ(run({"--render", items, "496x396", image, output, std::to_string(scale)}), 0)
            << complaint;
        const auto shown = std::get<Bitmap>(load(output));
        EXPECT_EQ(shown.size(), (PixelSize{496 * scale, 396 * scale}));
        // 100 x 100 points from (68, 88), with cells of 12.5
        EXPECT_EQ(shown.pixel(72 * scale, (396 - 92) * scale), 0xFF2E2E2Eu);
        EXPECT_EQ(shown.pixel(85 * scale, (396 - 92) * scale), 0xFF1F1F1Fu);
        EXPECT_EQ(shown.pixel(50 * scale, (396 - 50) * scale - 1), 0xFFFFFFFFu);
        EXPECT_EQ(shown.pixel(10 * scale, 10 * scale), 0u);
    }
}

TEST_F(CanvasToolTest, SaysWhatItCannotDo)
{
    const auto bad = folder.path / "bad.png";
    EXPECT_EQ(flatten(folder.path / "absent.png"), 1);
    EXPECT_THAT(complaint, HasSubstr("cannot be read"));
    put(bad, "no picture");
    EXPECT_EQ(flatten(bad), 1);
    EXPECT_THAT(complaint, HasSubstr("neither PNG nor JPEG"));
    put(bad, codec.encodePng(Bitmap({50, 50}))->substr(0, 100));
    EXPECT_EQ(flatten(bad), 1);
    EXPECT_THAT(complaint, HasSubstr("damaged"));
    put(items, "[{}]");
    EXPECT_EQ(flatten(image), 1);
    EXPECT_THAT(complaint, HasSubstr("items.json"));
    put(items, "[]");
    EXPECT_EQ(run({"--flatten", items, "90x396", image, output}), 1);
    EXPECT_THAT(complaint, HasSubstr("no room"));
    EXPECT_EQ(run({"--flatten", items, "wide", image, output}), 1);
    EXPECT_THAT(complaint, HasSubstr("not a size"));
    EXPECT_EQ(run({"--print", image}), 1);
    EXPECT_THAT(complaint, HasSubstr("usage"));
    EXPECT_FALSE(std::filesystem::exists(output));
}

TEST_F(CanvasToolTest, SavesWhatIsDrawnInItsWindow)
{
    XServer server;
    server.startWindowManager();
    auto environment = server.environment();
    environment["HOME"] = folder.path.native();
    ChildProcess tool({TALLOWBAY_CANVAS, image}, environment);
    const std::vector<std::string> search{
        "xdotool", "search", "--onlyvisible", "--name", "tallowbay-canvas"};
    ASSERT_TRUE(waitUntil([&] { return server.run(search).status == 0; })) << tool.errors();

    auto drag = search;
    for (const char* word :
         {"windowfocus", "--sync",   "mousemove", "--window", "%1",  "300",     "250",
          "mousedown",   "1",        "mousemove", "--window", "%1",  "500",     "400",
          "mousemove",   "--window", "%1",        "700",      "500", "mouseup", "1"})
        drag.emplace_back(word);
    server.run(drag);

    // Yellow at 0.35 over white
    const auto isSaved = [&] {
        const auto loaded = load(image);
        const auto* bitmap = std::get_if<Bitmap>(&loaded);
        return bitmap && (bitmap->pixel(100, 75) & 0xFF) < 0xC0;
    };
    EXPECT_TRUE(waitUntil(isSaved)) << tool.errors();
    server.run({"xdotool", "key", "Escape"});
    EXPECT_EQ(tool.wait(), 0);
    EXPECT_EQ(std::get<Bitmap>(load(image)).size(), (PixelSize{200, 150}));
}

} // namespace
} // namespace tallowbay::test
