// The real program, real files, real keys and a second program that really pastes.

#include "desktop/program/Home.h"
#include "desktop/program/Tallowbay.h"
#include "desktop/support/SessionBus.h"
#include "desktop/support/Wait.h"
#include "desktop/support/XServer.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <iterator>
#include <thread>

using namespace tallowbay::test;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Paths = std::vector<std::filesystem::path>;

namespace {

std::string read(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// As mozjpeg writes them, and most others do not.
bool isProgressiveJpeg(const std::string& bytes)
{
    return bytes.starts_with("\xff\xd8") && bytes.find("\xff\xc2") != bytes.npos;
}

bool isPng(const std::string& bytes)
{
    return bytes.starts_with("\x89PNG");
}

// As pngquant writes them, and the fallback does not.
bool hasPalette(const std::string& png)
{
    constexpr std::size_t colourType = 25;
    return isPng(png) && png.size() > colourType && png[colourType] == 3;
}

std::string updated(int count)
{
    return "Clipboard updated: " + std::to_string(count) + " image(s)";
}

class PipelineTest : public testing::Test {
protected:
    PipelineTest() { server.startWindowManager(); }

    // For another program of the same user on the same desktop.
    Environment environment() const
    {
        Environment all = server.environment();
        all.merge(home.environment());
        return all;
    }

    // For one that needs a message bus, and would start more programs for the accessibility.
    Environment environmentWith(const SessionBus& bus) const
    {
        Environment all = environment();
        all["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
        all["NO_AT_BRIDGE"] = "1";
        return all;
    }

    std::filesystem::path copyOf(const std::filesystem::path& screenshot) const
    {
        return home.optimized() / screenshot.filename();
    }

    // Takes a screenshot and waits until it has joined the batch as its Nth.
    std::filesystem::path take(const Tallowbay& tallowbay, int second, int inBatch)
    {
        const auto path = home.takeScreenshot(second);
        EXPECT_TRUE(waitUntil([&] {
            const auto lines = tallowbay.lines();
            const auto done = std::ranges::find_if(lines, [&](const std::string& line) {
                return line.starts_with("✓ " + path.filename().string());
            });
            return std::find(done, lines.end(), updated(inBatch)) != lines.end();
        })) << tallowbay.process.output()
            << tallowbay.process.errors();
        return copyOf(path);
    }

    // What a second program is offered, and what it gets.
    std::string offeredTargets() const
    {
        return server.run({"xclip", "-o", "-selection", "clipboard", "-t", "TARGETS"}).output;
    }
    std::string pastedUris() const
    {
        return server.run({"xclip", "-o", "-selection", "clipboard", "-t", "text/uri-list"}).output;
    }

    XServer server;
    Home home;
};

TEST_F(PipelineTest, ThreeScreenshotsArriveInOrderWithOnePaste)
{
    Tallowbay tallowbay(server, home);
    PasteWindow target(server, home);
    const Paths copies{take(tallowbay, 1, 1), take(tallowbay, 2, 2), take(tallowbay, 3, 3)};

    target.pressPaste();
    ASSERT_TRUE(target.waitForPastes(1));
    EXPECT_THAT(target.pastes(), ElementsAre(copies));
    EXPECT_TRUE(tallowbay.waitForLine(">>> resetBatch — clearing 3 URL(s), 0 OCR text(s)"));
}

TEST_F(PipelineTest, AFileManagerTakesThemAllWithOnePaste)
{
    const auto folder = home.folder() / "pasted";
    std::filesystem::create_directory(folder);
    Tallowbay tallowbay(server, home);
    const Paths copies{take(tallowbay, 1, 1), take(tallowbay, 2, 2), take(tallowbay, 3, 3)};
    const SessionBus bus(environment());
    ChildProcess fileManager({"pcmanfm", folder}, environmentWith(bus));
    ASSERT_TRUE(waitUntil([&] {
        const auto active = server.run({"xdotool", "getactivewindow", "getwindowname"});
        return active.output == "pasted\n";
    })) << fileManager.errors();

    // A file manager takes keys some time after its window is active.
    const auto arrived = [&](const std::filesystem::path& copy) {
        return read(folder / copy.filename()) == read(copy);
    };
    EXPECT_TRUE(waitUntil([&] {
        if (std::filesystem::is_empty(folder))
            server.run({"xdotool", "key", "ctrl+v"});
        return waitUntil(
            [&] { return std::ranges::all_of(copies, arrived); }, std::chrono::seconds(1));
    }));
}

// It may not read the folder of the copies.
TEST_F(PipelineTest, AProgramInASandboxGetsThemByTheDocumentPortal)
{
    const SessionBus bus(home.environment());
    const std::string onBus = "DBUS_SESSION_BUS_ADDRESS=" + bus.address();
    const auto portal = server.start({"env", onBus, DOCUMENT_PORTAL});
    const Tallowbay tallowbay(server, home, {"env", onBus});
    const Paths copies{take(tallowbay, 1, 1), take(tallowbay, 2, 2)};
    const std::string form = "application/vnd.portal.filetransfer";
    ASSERT_TRUE(waitUntil([&] { return offeredTargets().ends_with("\n" + form + "\n"); }));
    const auto key = server.run({"xclip", "-o", "-selection", "clipboard", "-t", form}).output;
    const auto files = server.run(
        {"env", onBus, "gdbus", "call", "--session", "--dest", "org.freedesktop.portal.Documents",
         "--object-path", "/org/freedesktop/portal/documents", "--method",
         "org.freedesktop.portal.FileTransfer.RetrieveFiles", key, "{}"});
    EXPECT_EQ(files.output, "(['" + copies[0].string() + "', '" + copies[1].string() + "'],)\n")
        << files.errors;
}

TEST_F(PipelineTest, TheCopiesAreCompressedAndTheOriginalsAreUntouched)
{
    Tallowbay tallowbay(server, home);
    const auto copy = take(tallowbay, 1, 1);
    const auto original = home.screenshots() / copy.filename();
    EXPECT_TRUE(read(original) == screenPicture(1));
    EXPECT_LT(read(copy).size(), read(original).size());
    EXPECT_TRUE(hasPalette(read(copy)));
}

TEST_F(PipelineTest, APasteEndsTheBatchAndTheNextScreenshotBeginsAnother)
{
    Tallowbay tallowbay(server, home);
    PasteWindow target(server, home);
    take(tallowbay, 1, 1);
    target.pressPaste();
    ASSERT_TRUE(target.waitForPastes(1));
    ASSERT_TRUE(tallowbay.waitForLine(">>> resetBatch — clearing 1 URL(s), 0 OCR text(s)"));

    const auto next = take(tallowbay, 2, 1);
    target.pressPaste();
    ASSERT_TRUE(target.waitForPastes(2));
    EXPECT_THAT(target.pastes().back(), ElementsAre(next));
}

TEST_F(PipelineTest, APasteDuringCompressionInsertsNothingStaleAndIsFiredWhenTheBatchIsComplete)
{
    home.addGate("pngquant");
    Tallowbay tallowbay(server, home);
    PasteWindow target(server, home);
    const auto first = take(tallowbay, 1, 1);
    home.closeGate();
    const auto second = copyOf(home.takeScreenshot(2));
    ASSERT_TRUE(waitForCompression(server, home));

    target.pressPaste();
    ASSERT_TRUE(target.waitForPastes(1));
    EXPECT_THAT(target.pastes().front(), IsEmpty());
    ASSERT_TRUE(
        tallowbay.waitForLine(">>> CMD+V QUEUED — clipboard cleared, waiting for compression"));

    home.openGate();
    ASSERT_TRUE(target.waitForPastes(2));
    EXPECT_THAT(target.pastes(), ElementsAre(IsEmpty(), ElementsAre(first, second)));
    EXPECT_TRUE(tallowbay.waitForLine(">>> resetBatch — clearing 2 URL(s), 0 OCR text(s)"));
    auto lines = tallowbay.lines();
    lines.erase(lines.begin(), lines.begin() + 3); // the start, and the first screenshot
    EXPECT_THAT(
        lines,
        ElementsAre(
            ">>> CMD+V QUEUED — clipboard cleared, waiting for compression",
            testing::StartsWith("✓ Screenshot 2026-01-05 at 10.31.02.png → "), updated(2),
            ">>> Firing queued paste with 2 image(s)",
            ">>> resetBatch — clearing 2 URL(s), 0 OCR text(s)"));
}

TEST_F(PipelineTest, TwoPressesDuringOneCompressionFireOnePaste)
{
    home.addGate("pngquant");
    Tallowbay tallowbay(server, home);
    PasteWindow target(server, home);
    home.closeGate();
    const auto copy = copyOf(home.takeScreenshot(1));
    ASSERT_TRUE(waitForCompression(server, home));
    target.pressPaste();
    target.pressPaste();
    ASSERT_TRUE(target.waitForPastes(2));
    home.openGate();
    ASSERT_TRUE(target.waitForPastes(3));

    // A second synthetic paste would arrive before this one does.
    const auto next = take(tallowbay, 2, 1);
    target.pressPaste();
    ASSERT_TRUE(target.waitForPastes(4));
    EXPECT_THAT(
        target.pastes(), ElementsAre(IsEmpty(), IsEmpty(), ElementsAre(copy), ElementsAre(next)));
}

TEST_F(PipelineTest, ItsLinesComeAtOnceAndInOrder)
{
    Tallowbay tallowbay(server, home);
    PasteWindow target(server, home);
    take(tallowbay, 1, 1);
    take(tallowbay, 2, 2);
    target.pressPaste();
    ASSERT_TRUE(tallowbay.waitForLine(">>> resetBatch — clearing 2 URL(s), 0 OCR text(s)"));
    EXPECT_THAT(
        tallowbay.lines(),
        ElementsAre(
            "Paste watcher running (Cmd+V resets batch)",
            testing::MatchesRegex("✓ Screenshot 2026-01-05 at 10.31.01.png → [0-9]+KB → [0-9]+KB"),
            updated(1),
            testing::MatchesRegex("✓ Screenshot 2026-01-05 at 10.31.02.png → [0-9]+KB → [0-9]+KB"),
            updated(2), ">>> resetBatch — clearing 2 URL(s), 0 OCR text(s)"));
}

TEST_F(PipelineTest, FilesAreOfferedAsFilesAndAsNothingElse)
{
    Tallowbay tallowbay(server, home);
    const auto copy = take(tallowbay, 1, 1);
    const auto targets = splitLines(offeredTargets());
    EXPECT_THAT(targets, Contains("text/uri-list"));
    EXPECT_THAT(targets, Contains("x-special/gnome-copied-files"));
    EXPECT_THAT(targets, Not(Contains("text/plain")));
    EXPECT_THAT(targets, Not(Contains("UTF8_STRING")));
    EXPECT_THAT(targets, Not(Contains(HasSubstr("image/"))));
    EXPECT_THAT(
        pastedUris(),
        testing::AllOf(
            HasSubstr("Screenshot%202026-01-05%20at%2010.31.01.png"), testing::EndsWith("\r\n")));
}

TEST_F(PipelineTest, ARenamedScreenshotIsInTheBatchOnce)
{
    Tallowbay tallowbay(server, home);
    const auto first = take(tallowbay, 1, 1);
    std::filesystem::rename(
        home.screenshots() / first.filename(), home.screenshots() / "Screenshot renamed.png");
    // The report of the new name comes before that of the next screenshot.
    take(tallowbay, 2, 2);
    EXPECT_FALSE(std::filesystem::exists(home.optimized() / "Screenshot renamed.png"));
}

TEST_F(PipelineTest, ARestoredScreenshotIsNoNewOne)
{
    Tallowbay tallowbay(server, home);
    const auto old = home.folder() / "Screenshot old.png";
    writeFile(old, screenPicture(7));
    using namespace std::chrono_literals;
    std::filesystem::last_write_time(old, std::filesystem::file_time_type::clock::now() - 2min);
    ASSERT_EQ(server.run({"cp", "-p", old, home.screenshots()}).status, 0);
    take(tallowbay, 1, 1);
    EXPECT_FALSE(std::filesystem::exists(home.optimized() / "Screenshot old.png"));
}

TEST_F(PipelineTest, ADeletedCopyLeavesTheBatch)
{
    Tallowbay tallowbay(server, home);
    const auto first = take(tallowbay, 1, 1);
    take(tallowbay, 2, 2);
    std::filesystem::remove(first);
    take(tallowbay, 3, 2);
}

TEST_F(PipelineTest, AChangedFolderIsFollowed)
{
    Tallowbay tallowbay(server, home);
    std::filesystem::create_directories(home.folder() / "elsewhere");
    Environment environment = home.environment();
    ChildProcess defaults(
        {DEFAULTS_PROGRAM, "write", "com.apple.screencapture", "location",
         home.folder() / "elsewhere"},
        environment);
    ASSERT_EQ(defaults.wait(), 0) << defaults.errors();

    // New screenshots in the new folder go unseen until the change is noticed.
    int shots = 0;
    const auto changed = std::chrono::steady_clock::now();
    ASSERT_TRUE(waitUntil([&] {
        const auto file = "elsewhere/Screenshot " + std::to_string(++shots) + ".png";
        writeFile(home.folder() / file, screenPicture(shots));
        return tallowbay.waitForLine(updated(1), 1, std::chrono::milliseconds(50));
    }));
    EXPECT_LT(std::chrono::steady_clock::now() - changed, std::chrono::seconds(5));
}

TEST_F(PipelineTest, TheFolderAndTheNamesOfTheDesktopsOwnToolsAreKnown)
{
    home.runDesktop("GNOME");
    const auto folder = home.folder() / "Pictures/Screenshots";
    std::filesystem::create_directories(folder);
    Tallowbay tallowbay(server, home);
    writeFile(folder / "Screenshot from 2026-01-05 10-31-12.png", screenPicture(1));
    EXPECT_TRUE(tallowbay.waitForLine(updated(1)));
    writeFile(folder / "Screenshot_20260105_103113.png", screenPicture(2));
    EXPECT_TRUE(tallowbay.waitForLine(updated(2)));
}

TEST_F(PipelineTest, AFolderThatIsRemovedAndComesBackIsWatchedAgain)
{
    Tallowbay tallowbay(server, home);
    take(tallowbay, 1, 1);
    std::filesystem::remove_all(home.screenshots());
    std::filesystem::create_directories(home.screenshots());
    take(tallowbay, 2, 2);
}

TEST_F(PipelineTest, ScreenshotsThatGoToTheClipboardRaiseTheAlertAndItsButtonChangesTheFolder)
{
    writeFile(home.preferences("com.apple.screencapture"), R"({"target": "Clipboard"})");
    Tallowbay tallowbay(server, home);
    const auto alertShown = [&] { return server.search({"--name", "Tallowbay"}).status == 0; };
    ASSERT_TRUE(waitUntil(alertShown));
    ASSERT_TRUE(waitUntil([&] {
        return server.search({"--name", "Tallowbay", "windowfocus", "--sync", "key", "Return"})
                   .status
            == 0
            && !alertShown();
    }));
    ASSERT_TRUE(waitUntil([&] {
        const auto written = read(home.preferences("com.apple.screencapture"));
        return written.find((home.folder() / "Downloads").string()) != written.npos
            && written.find("target") == written.npos;
    })) << read(home.preferences("com.apple.screencapture"));

    int shots = 0;
    EXPECT_TRUE(waitUntil([&] {
        const auto file = "Downloads/Screenshot " + std::to_string(++shots) + ".png";
        writeFile(home.folder() / file, screenPicture(shots));
        return tallowbay.waitForLine(updated(1), 1, std::chrono::milliseconds(50));
    }));
}

TEST_F(PipelineTest, QuittingTakesTheBatchOffTheClipboard)
{
    Tallowbay tallowbay(server, home);
    take(tallowbay, 1, 1);
    ASSERT_THAT(pastedUris(), Not(IsEmpty()));
    EXPECT_EQ(tallowbay.quit(), 0);
    EXPECT_EQ(pastedUris(), "");
}

// It brought the batch back every time.
TEST_F(PipelineTest, AfterQuittingAClipboardManagerDoesNotBringTheBatchBack)
{
    using namespace std::chrono_literals;
    const SessionBus bus(environment());
    const ChildProcess manager({"xfce4-clipman"}, environmentWith(bus));
    int second = 0;
    const auto takeAndLetItBeRead = [&](const Tallowbay& tallowbay) {
        take(tallowbay, ++second, 1);
        std::this_thread::sleep_for(300ms);
    };
    const auto filesCome = [&] {
        return waitUntil(
            [&] {
                const auto files = server.run(
                    {"xclip", "-o", "-selection", "clipboard", "-t",
                     "x-special/gnome-copied-files"});
                return !files.output.empty();
            },
            500ms);
    };
    // What a program leaves behind it does bring back, once it has come up and read it.
    ASSERT_TRUE(waitUntil([&] {
        Tallowbay killed(server, home);
        takeAndLetItBeRead(killed);
        killed.process.signal(SIGKILL);
        killed.process.wait();
        return filesCome();
    })) << manager.errors();

    Tallowbay tallowbay(server, home);
    takeAndLetItBeRead(tallowbay);
    EXPECT_EQ(tallowbay.quit(), 0);
    EXPECT_FALSE(filesCome());
}

TEST_F(PipelineTest, QuittingLeavesWhatWasCopiedElsewhere)
{
    Tallowbay tallowbay(server, home);
    take(tallowbay, 1, 1);
    const auto other =
        server.start({"xclip", "-i", "-quiet", "-selection", "clipboard"}, "copied elsewhere");
    const auto clipboard = [&] {
        return server.run({"xclip", "-o", "-selection", "clipboard"}).output;
    };
    ASSERT_TRUE(waitUntil([&] { return clipboard() == "copied elsewhere"; }));
    EXPECT_EQ(tallowbay.quit(), 0);
    EXPECT_EQ(clipboard(), "copied elsewhere");
}

TEST_F(PipelineTest, InterruptingItIsQuittingToo)
{
    Tallowbay tallowbay(server, home);
    take(tallowbay, 1, 1);
    tallowbay.process.signal(SIGINT);
    EXPECT_EQ(tallowbay.process.wait(), 0);
    EXPECT_EQ(pastedUris(), "");
}

TEST_F(PipelineTest, QuittingDuringACompressionEndsItWithoutAWord)
{
    home.addGate("pngquant");
    Tallowbay tallowbay(server, home);
    home.closeGate();
    const auto copy = copyOf(home.takeScreenshot(1));
    ASSERT_TRUE(waitForCompression(server, home));
    EXPECT_EQ(tallowbay.quit(), 0);
    EXPECT_THAT(tallowbay.lines(), ElementsAre("Paste watcher running (Cmd+V resets batch)"));
    EXPECT_FALSE(std::filesystem::exists(copy));
}

TEST_F(PipelineTest, TheEndOfTheXServerIsNoCrash)
{
    Tallowbay tallowbay(server, home);
    server.kill();
    const auto status = tallowbay.process.wait();
    ASSERT_TRUE(status);
    EXPECT_LT(*status, 128);
}

// Bad input.

TEST_F(PipelineTest, ADamagedOrEmptyPictureIsSkippedAndStaysWhereItIs)
{
    Tallowbay tallowbay(server, home);
    const auto damaged = home.screenshots() / "Screenshot damaged.png";
    const auto empty = home.screenshots() / "Screenshot empty.png";
    writeFile(damaged, screenPicture(1).substr(0, 300));
    writeFile(empty, "");
    EXPECT_TRUE(tallowbay.waitForLine("Compression failed for Screenshot damaged.png"));
    EXPECT_TRUE(tallowbay.waitForLine("Compression failed for Screenshot empty.png"));
    take(tallowbay, 2, 1);
    EXPECT_TRUE(read(damaged) == screenPicture(1).substr(0, 300));
    EXPECT_TRUE(std::filesystem::exists(empty));
    EXPECT_FALSE(std::filesystem::exists(copyOf(damaged)));
}

TEST_F(PipelineTest, ATextThatIsCalledAPictureIsSkipped)
{
    Tallowbay tallowbay(server, home);
    writeFile(home.screenshots() / "Screenshot 1.png", "no picture at all");
    writeFile(home.screenshots() / "Screenshot 1.jpg", "no picture at all");
    EXPECT_TRUE(tallowbay.waitForLine("Compression failed for Screenshot 1.png"));
    EXPECT_TRUE(tallowbay.waitForLine("Compression failed for Screenshot 1.jpg"));
    take(tallowbay, 2, 1);
    EXPECT_FALSE(std::filesystem::exists(home.optimized() / "Screenshot 1.png"));
    EXPECT_FALSE(std::filesystem::exists(home.optimized() / "Screenshot 1.jpg"));
}

TEST_F(PipelineTest, EveryByteOfANameArrives)
{
    Tallowbay tallowbay(server, home);
    PasteWindow target(server, home);
    const Paths copies{copyOf(home.takeScreenshot("Screenshot 'a' \"b\" #%?&.png"))};
    ASSERT_TRUE(tallowbay.waitForLine(updated(1)));
    target.pressPaste();
    ASSERT_TRUE(target.waitForPastes(1));
    EXPECT_THAT(target.pastes(), ElementsAre(copies));
}

TEST_F(PipelineTest, NamesWithLineFeedsAndOtherBytesAreOfferedPercentEncoded)
{
    Tallowbay tallowbay(server, home);
    home.takeScreenshot("Screenshot \n\xff\xfe.png");
    ASSERT_TRUE(tallowbay.waitForLine(updated(1)));
    EXPECT_THAT(pastedUris(), testing::EndsWith("/Screenshot%20%0A%FF%FE.png\r\n"));
}

TEST_F(PipelineTest, AFailingToolGivesWayToTheFallback)
{
    home.breakTool("pngquant");
    Tallowbay tallowbay(server, home);
    const auto copy = take(tallowbay, 1, 1);
    EXPECT_TRUE(isPng(read(copy)));
    EXPECT_FALSE(hasPalette(read(copy)));
}

TEST_F(PipelineTest, AMissingToolGivesWayToTheFallback)
{
    home.hideMachinesTools();
    Tallowbay tallowbay(server, home);
    const auto copy = take(tallowbay, 1, 1);
    EXPECT_TRUE(isPng(read(copy)));
    EXPECT_FALSE(hasPalette(read(copy)));
}

TEST_F(PipelineTest, AJpegIsCompressedByMozjpeg)
{
    Tallowbay tallowbay(server, home);
    const auto png = home.folder() / "picture.png";
    const auto baseline = home.folder() / "picture.jpg";
    writeFile(png, screenPicture(1));
    ASSERT_EQ(server.run({"convert", png, "-quality", "95", baseline}).status, 0);
    std::filesystem::rename(baseline, home.screenshots() / "Screenshot 1.jpg");
    ASSERT_TRUE(tallowbay.waitForLine(updated(1)));

    EXPECT_FALSE(isProgressiveJpeg(read(home.screenshots() / "Screenshot 1.jpg")));
    EXPECT_TRUE(isProgressiveJpeg(read(home.optimized() / "Screenshot 1.jpg")));
}

TEST_F(PipelineTest, ADiskThatIsFullIsReportedAndNothingIsLost)
{
    // Every file that would grow beyond eight kilobytes fails, as on a full disk.
    Tallowbay tallowbay(server, home, {"sh", "-c", "ulimit -f 16; exec \"$0\""});
    const auto original = home.takeScreenshot("Screenshot 1.png");
    ASSERT_GT(std::filesystem::file_size(original), 16384u);
    EXPECT_TRUE(tallowbay.waitForLine("Compression failed for Screenshot 1.png"));
    EXPECT_TRUE(read(original) == screenPicture(1));
    EXPECT_FALSE(std::filesystem::exists(copyOf(original)));
    EXPECT_TRUE(tallowbay.process.running());
}

TEST_F(PipelineTest, AnOutputFolderThatCannotBeWrittenIsReportedAndNothingIsLost)
{
    // A file where the folder should be stops everyone, root too.
    writeFile(home.folder() / "Downloads/Tallowbay", "in the way");
    Tallowbay tallowbay(server, home);
    const auto original = home.takeScreenshot("Screenshot 1.png");
    EXPECT_TRUE(tallowbay.waitForLine("Compression failed for Screenshot 1.png"));
    EXPECT_TRUE(read(original) == screenPicture(1));
    std::filesystem::remove(home.folder() / "Downloads/Tallowbay");
    take(tallowbay, 2, 1);
}

TEST_F(PipelineTest, DamagedPreferencesReadAsNone)
{
    writeFile(home.preferences("com.apple.screencapture"), R"({"location": )");
    Tallowbay tallowbay(server, home);
    EXPECT_THAT(
        tallowbay.process.errors(),
        HasSubstr("com.apple.screencapture.json cannot be read or understood"));
    take(tallowbay, 1, 1);
}

TEST_F(PipelineTest, AHundredScreenshotsAtOnceAllJoinTheBatchOnce)
{
    writeFile(
        home.preferences("com.quarnel.tallowbay"),
        R"({"onboardingCompleted": true, "toastsDisabled": true})");
    Tallowbay tallowbay(server, home);
    PasteWindow target(server, home);
    const std::string picture = screenPicture(1);
    Paths copies;
    for (int shot = 0; shot < 100; ++shot) {
        const auto path = home.screenshots() / ("Screenshot " + std::to_string(shot) + ".png");
        writeFile(path, picture);
        copies.push_back(copyOf(path));
    }
    ASSERT_TRUE(tallowbay.waitForLine(updated(100), 1, std::chrono::seconds(60)));
    target.pressPaste();
    ASSERT_TRUE(target.waitForPastes(1));
    EXPECT_THAT(target.pastes().front(), testing::UnorderedElementsAreArray(copies));
}

} // namespace
