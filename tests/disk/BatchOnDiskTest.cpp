// Which files of a real disk are new screenshots.

#include "app/ScreenshotBatch.h"
#include "editor/EditorSlot.h"
#include "platform/headless/Desktop.h"
#include "platform/posix/files/PosixFileSystem.h"
#include "support/TemporaryFolder.h"
#include "ui/ToastGate.h"
#include "ui/ToastWindow.h"
#include "views/headless/HeadlessViews.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include <fcntl.h>
#include <sys/stat.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

// The files are real, and their dates; the clock stands at the present time unless it is moved.
class BatchOnDiskTest : public testing::Test {
protected:
    BatchOnDiskTest()
    {
        fs::create_directory(screenshots);
        desktop.clock.setWall(std::chrono::system_clock::now());
        desktop.processes.install(pngquant, [](const auto& arguments) {
            std::ofstream(arguments.at(3)) << "small";
            return 0;
        });
    }

    static fs::path make(const fs::path& file)
    {
        std::ofstream(file) << "data";
        return file;
    }

    // As a backup, an archive or `cp -p` leaves it.
    static fs::path restore(const fs::path& file, std::chrono::seconds age)
    {
        make(file);
        const auto date = std::chrono::system_clock::now() - age;
        const timespec times[] = {{0, UTIME_OMIT}, {std::chrono::system_clock::to_time_t(date), 0}};
        EXPECT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
        return file;
    }

    std::vector<std::string> namesAfter(const fs::path& reported)
    {
        batch.acceptScreenshot(reported);
        desktop.dispatch.runUntilIdle();
        std::vector<std::string> names;
        for (const auto& url : batch.urls())
            names.push_back(url.filename());
        return names;
    }

    static posix::PosixFileSystem filesAt(const fs::path& home)
    {
        setenv("HOME", home.c_str(), 1);
        return {};
    }

    test::TemporaryFolder home;
    const fs::path screenshots = home.path / "Desktop";
    headless::Desktop desktop;
    const fs::path pngquant = desktop.tools.pngquant = make(home.path / "pngquant");
    posix::PosixFileSystem files = filesAt(home.path);
    headless::HeadlessViews views{desktop.dispatch};
    EditorSlot slot;
    ToastPresenter toastPresenter{desktop.dispatch, desktop.screens, desktop.textMeasurer, views};
    ToastGate toasts{desktop.defaults.standard(), toastPresenter};
    ScreenshotBatch batch{desktop.platformWith(files, desktop.pasteboard), toasts, slot, [] {}};
};

TEST_F(BatchOnDiskTest, TakesAFileThatWasJustWritten)
{
    EXPECT_THAT(
        namesAfter(make(screenshots / "Screenshot 1.png")), ElementsAre("Screenshot 1.png"));
}

TEST_F(BatchOnDiskTest, IgnoresAFileThatIsRestoredWithTheDateThatItHad)
{
    EXPECT_THAT(namesAfter(restore(screenshots / "Screenshot 1.png", 120s)), IsEmpty());
    EXPECT_THAT(namesAfter(restore(screenshots / "Screenshot 2.png", 24h * 365)), IsEmpty());
    EXPECT_THAT(desktop.processes.journal, IsEmpty());
}

TEST_F(BatchOnDiskTest, IgnoresWhatAToolCopiesWithItsDates)
{
    const auto old = restore(home.path / "Screenshot 1.png", 120s);
    ASSERT_EQ(
        std::system(("cp -p '" + old.native() + "' '" + screenshots.native() + "'").c_str()), 0);
    EXPECT_THAT(namesAfter(screenshots / "Screenshot 1.png"), IsEmpty());
}

TEST_F(BatchOnDiskTest, TakesARestoredFileThatIsLessThanAMinuteOld)
{
    EXPECT_THAT(
        namesAfter(restore(screenshots / "Screenshot 1.png", 30s)),
        ElementsAre("Screenshot 1.png"));
}

TEST_F(BatchOnDiskTest, IgnoresAnOldFileThatIsWrittenAgain)
{
    const auto file = make(screenshots / "Screenshot 1.png");
    struct statx status { };
    ASSERT_EQ(statx(AT_FDCWD, file.c_str(), 0, STATX_BTIME, &status), 0);
    if (!(status.stx_mask & STATX_BTIME))
        GTEST_SKIP() << "The file system does not know when a file was made";
    desktop.clock.move(61s);
    EXPECT_THAT(namesAfter(restore(file, -61s)), IsEmpty());
}

TEST_F(BatchOnDiskTest, TakesARenamedFileForTheOneThatItWas)
{
    const auto file = make(screenshots / "Screenshot 1.png");
    namesAfter(file);
    fs::rename(file, screenshots / "Screenshot of a bug.png");
    EXPECT_THAT(
        namesAfter(screenshots / "Screenshot of a bug.png"), ElementsAre("Screenshot 1.png"));
}

TEST_F(BatchOnDiskTest, TakesACopyOrAFurtherNameForAnotherScreenshot)
{
    const auto file = make(screenshots / "Screenshot 1.png");
    namesAfter(file);
    fs::copy_file(file, screenshots / "Screenshot 2.png");
    namesAfter(screenshots / "Screenshot 2.png");
    fs::create_hard_link(file, screenshots / "Screenshot 3.png");
    EXPECT_THAT(
        namesAfter(screenshots / "Screenshot 3.png"),
        ElementsAre("Screenshot 1.png", "Screenshot 2.png", "Screenshot 3.png"));
}

TEST_F(BatchOnDiskTest, TakesANewFileWithTheNumberOfOneThatIsGone)
{
    const auto numberOf = [](const fs::path& file) {
        struct stat status { };
        EXPECT_EQ(::stat(file.c_str(), &status), 0);
        return status.st_ino;
    };
    const auto file = make(screenshots / "Screenshot 1.png");
    namesAfter(file);
    const auto number = numberOf(file);
    const auto date = files.creationDate(file);
    const auto next = screenshots / "Screenshot 2.png";
    fs::remove(file);
    do
        fs::remove(next), make(next);
    while (files.creationDate(next) == date); // files are dated by a clock that ticks slowly
    if (numberOf(next) != number)
        GTEST_SKIP() << "The file system gives a number to one file only";
    EXPECT_THAT(namesAfter(next), ElementsAre("Screenshot 1.png", "Screenshot 2.png"));
}

} // namespace
} // namespace tallowbay
