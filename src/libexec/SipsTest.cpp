// Runs the executable itself: its command line is its interface.

#include <QColorSpace>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/resource.h>

namespace {

class SipsTest : public testing::Test {
protected:
    QString path(const QString& name) const { return folder.filePath(name); }

    // A picture with fine detail, so that no encoder makes it trivial.
    QImage pattern(int width, int height, QImage::Format format = QImage::Format_RGB32) const
    {
        QImage image(width, height, format);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                image.setPixel(x, y, qRgba(x * 7 % 256, y * 5 % 256, (x + y) % 256, 255));
        return image;
    }

    QByteArray bytes(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void write(const QString& name, const QByteArray& content) const
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    int run(const QStringList& arguments)
    {
        QProcess process;
        process.start(SIPS, arguments);
        process.waitForFinished(-1);
        complaint = process.readAllStandardError();
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    int resample(int longerSide, const QString& input, const QString& output)
    {
        return run(
            {"--resampleHeightWidthMax", QString::number(longerSide), path(input), "--out",
             path(output)});
    }

    QImage result(const QString& name) const
    {
        QImageReader reader(path(name));
        reader.setDecideFormatFromContent(true);
        return reader.read();
    }

    QByteArray formatOf(const QString& name) const { return QImageReader::imageFormat(path(name)); }

    // As other programs write it, behind the head.
    void insertGamma(const QString& name, const char* chunk) const
    {
        QByteArray content = bytes(name);
        write(name, content.insert(33, QByteArray::fromHex(chunk)));
    }
    static constexpr auto gammaOfSrgb = "0000000467414d410000b18f0bfc6105";
    static constexpr auto linearGamma = "0000000467414d41000186a031e8965f";

    void expectRefused(const QString& input)
    {
        EXPECT_GT(resample(1400, input, "out.png"), 0);
        EXPECT_FALSE(complaint.isEmpty());
        EXPECT_FALSE(QFile::exists(path("out.png")));
    }

    QTemporaryDir folder;
    QByteArray complaint;
};

TEST_F(SipsTest, ScalesAWideImageByItsWidth)
{
    pattern(2800, 700).save(path("in.png"));
    EXPECT_EQ(resample(1400, "in.png", "out.png"), 0);
    EXPECT_EQ(result("out.png").size(), QSize(1400, 350));
}

TEST_F(SipsTest, ScalesATallImageByItsHeight)
{
    pattern(700, 2800).save(path("in.png"));
    EXPECT_EQ(resample(1400, "in.png", "out.png"), 0);
    EXPECT_EQ(result("out.png").size(), QSize(350, 1400));
}

TEST_F(SipsTest, KeepsALineOneThickVisible)
{
    pattern(5000, 1).save(path("in.png"));
    EXPECT_EQ(resample(1400, "in.png", "out.png"), 0);
    EXPECT_EQ(result("out.png").size(), QSize(1400, 1));
}

TEST_F(SipsTest, LeavesASmallImageAsItIs)
{
    pattern(1400, 900).save(path("in.png"));
    EXPECT_EQ(resample(1400, "in.png", "out.png"), 0);
    EXPECT_EQ(bytes("out.png"), bytes("in.png"));
}

TEST_F(SipsTest, SmoothsRatherThanDropsPixels)
{
    QImage stripes(2800, 100, QImage::Format_RGB32);
    for (int y = 0; y < 100; ++y)
        for (int x = 0; x < 2800; ++x)
            stripes.setPixel(x, y, x % 2 ? qRgb(255, 255, 255) : qRgb(0, 0, 0));
    stripes.save(path("in.png"));
    EXPECT_EQ(resample(1400, "in.png", "out.png"), 0);
    EXPECT_NEAR(qGray(result("out.png").pixel(700, 25)), 127, 3);
}

TEST_F(SipsTest, KeepsAPngOne)
{
    pattern(2000, 1000).save(path("in.PNG"), "png");
    EXPECT_EQ(resample(1400, "in.PNG", "out.PNG"), 0);
    EXPECT_EQ(formatOf("out.PNG"), "png");
}

TEST_F(SipsTest, KeepsAJpegOne)
{
    pattern(2000, 1000).save(path("in.JPeG"), "jpeg");
    EXPECT_EQ(resample(1400, "in.JPeG", "out.JPeG"), 0);
    EXPECT_EQ(formatOf("out.JPeG"), "jpeg");
}

TEST_F(SipsTest, GoesByTheContentAndNotByTheName)
{
    pattern(2000, 1000).save(path("in.png"), "jpeg");
    EXPECT_EQ(resample(1400, "in.png", "out.png"), 0);
    EXPECT_EQ(formatOf("out.png"), "jpeg");
}

TEST_F(SipsTest, KeepsTransparency)
{
    QImage image = pattern(2000, 1000, QImage::Format_ARGB32);
    image.fill(qRgba(200, 100, 50, 128));
    image.save(path("in.png"));
    EXPECT_EQ(resample(1400, "in.png", "out.png"), 0);
    EXPECT_EQ(qAlpha(result("out.png").pixel(700, 350)), 128);
    EXPECT_NEAR(qRed(result("out.png").pixel(700, 350)), 200, 2);
}

// Bug: the gamma came out as a profile, by which dark tones are darker than in every other program.
TEST_F(SipsTest, TakesAGammaOf22ForSrgb)
{
    for (const auto format : {QImage::Format_RGB32, QImage::Format_Grayscale8}) {
        pattern(2000, 1000).convertToFormat(format).save(path("in.png"));
        EXPECT_EQ(resample(1400, "in.png", "plain.png"), 0);
        insertGamma("in.png", gammaOfSrgb);
        EXPECT_EQ(resample(1400, "in.png", "out.png"), 0);
        EXPECT_TRUE(bytes("out.png") == bytes("plain.png")) << format;
    }
}

TEST_F(SipsTest, KeepsEveryOtherGamma)
{
    pattern(2000, 1000).save(path("in.png"));
    insertGamma("in.png", linearGamma);
    EXPECT_EQ(resample(1400, "in.png", "out.png"), 0);
    EXPECT_NEAR(result("out.png").colorSpace().gamma(), 1, 0.01F);
}

// Orientation 6: the picture is stored lying on its side.
TEST_F(SipsTest, KeepsAPictureUprightThatANoteTurns)
{
    pattern(2000, 1000).save(path("in.jpg"), "jpeg");
    const QByteArray note = QByteArray::fromHex("ffe10022457869660000"
                                                "4d4d002a00000008"
                                                "0001011200030000000100060000"
                                                "00000000");
    QByteArray turned = bytes("in.jpg");
    turned.insert(2, note);
    write("in.jpg", turned);
    EXPECT_EQ(resample(1400, "in.jpg", "out.jpg"), 0);
    QImageReader reader(path("out.jpg"));
    reader.setAutoTransform(true);
    EXPECT_EQ(reader.read().size(), QSize(700, 1400));
}

TEST_F(SipsTest, MayReplaceItsOwnInput)
{
    pattern(2800, 1400).save(path("in.png"));
    EXPECT_EQ(resample(1400, "in.png", "in.png"), 0);
    EXPECT_EQ(result("in.png").size(), QSize(1400, 700));
}

TEST_F(SipsTest, LeavesNothingElseBehind)
{
    pattern(2800, 1400).save(path("in.png"));
    EXPECT_EQ(resample(1400, "in.png", "out.png"), 0);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 2);
}

TEST_F(SipsTest, RefusesAMissingFile)
{
    expectRefused("absent.png");
}

TEST_F(SipsTest, RefusesAFolder)
{
    QDir(folder.path()).mkdir("in.png");
    expectRefused("in.png");
}

TEST_F(SipsTest, RefusesAnEmptyFile)
{
    write("in.png", {});
    expectRefused("in.png");
}

TEST_F(SipsTest, RefusesWhatIsNoImage)
{
    write("in.png", "#!/bin/sh\nexit 0\n");
    expectRefused("in.png");
}

TEST_F(SipsTest, RefusesAPngThatIsCutOff)
{
    pattern(2000, 1000).save(path("in.png"));
    write("in.png", bytes("in.png").chopped(100));
    expectRefused("in.png");
}

TEST_F(SipsTest, RefusesAJpegThatIsCutOff)
{
    pattern(2000, 1000).save(path("in.jpg"));
    write("in.jpg", bytes("in.jpg").chopped(100));
    expectRefused("in.jpg");
}

TEST_F(SipsTest, LeavesAnEarlierResultAloneWhenItFails)
{
    write("in.png", "no image");
    write("out.png", "earlier");
    EXPECT_GT(resample(1400, "in.png", "out.png"), 0);
    EXPECT_EQ(bytes("out.png"), "earlier");
}

TEST_F(SipsTest, RefusesAnAbsurdSizeWithoutReservingIt)
{
    pattern(16, 16).save(path("in.png"));
    QByteArray absurd = bytes("in.png");
    absurd.replace(16, 8, QByteArray::fromHex("000f4240000f4240")); // a million by a million
    absurd.replace(29, 4, QByteArray::fromHex("d30faf2a")); // the header's checksum
    write("in.png", absurd);
    expectRefused("in.png");
    rusage children{};
    getrusage(RUSAGE_CHILDREN, &children);
    EXPECT_LT(children.ru_maxrss, 700 * 1024);
}

TEST_F(SipsTest, RefusesAFolderThatItCannotWriteTo)
{
    pattern(16, 16).save(path("in.png"));
    EXPECT_GT(resample(1400, "in.png", "absent/out.png"), 0);
    EXPECT_FALSE(complaint.isEmpty());
}

TEST_F(SipsTest, RefusesCommandLinesThatItDoesNotKnow)
{
    pattern(16, 16).save(path("in.png"));
    EXPECT_GT(run({}), 0);
    EXPECT_GT(run({path("in.png"), "--out", path("out.png")}), 0);
    EXPECT_GT(
        run({"--resampleHeightWidthMax", "wide", path("in.png"), "--out", path("out.png")}), 0);
    EXPECT_GT(run({"--resampleHeightWidthMax", "0", path("in.png"), "--out", path("out.png")}), 0);
    EXPECT_GT(run({"--resampleHeightWidthMax", "9", path("in.png"), "--out"}), 0);
    EXPECT_GT(run({"--resampleHeightWidthMax", "9", path("in.png"), path("out.png")}), 0);
    EXPECT_GT(run({"--rotate", "90", path("in.png"), "--out", path("out.png")}), 0);
    EXPECT_FALSE(QFile::exists(path("out.png")));
}

TEST_F(SipsTest, SaysHowToUseIt)
{
    EXPECT_EQ(run({"--help"}), 0);
}

} // namespace
