// sips --resampleHeightWidthMax N IN --out OUT
//
// Writes IN to OUT, scaled down so that its longer side is at most N pixels. OUT has the format of
// IN, whatever the names say. An image that is small enough comes out as it went in. OUT is
// complete or untouched; it may be the same file as IN. Ends with status 0 exactly if OUT was
// written.

#include "platform/qt/graphics/ImageFileStructure.h"

#include <QBuffer>
#include <QColorSpace>
#include <QCoreApplication>
#include <QFile>
#include <QImageReader>
#include <QImageWriter>
#include <QSaveFile>

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

constexpr auto usage = "usage: sips --resampleHeightWidthMax N IN --out OUT\n";
constexpr int largestBitmapMebibytes = 512;
constexpr qint64 largestFileBytes = 512 << 20;
constexpr int jpegQuality = 90;

struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Request {
    int longerSide = 0;
    QString input;
    QString output;
};

Request parsed(const QStringList& arguments)
{
    Request request;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (argument == "--resampleHeightWidthMax")
            request.longerSide = arguments.value(++i).toInt();
        else if (argument == "--out")
            request.output = arguments.value(++i);
        else if (request.input.isEmpty() && !argument.startsWith("--"))
            request.input = argument;
        else
            throw Failure("cannot understand " + argument.toStdString() + "\n" + usage);
    }
    if (request.longerSide < 1 || request.input.isEmpty() || request.output.isEmpty())
        throw Failure(usage);
    return request;
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(path.toStdString() + ": " + file.errorString().toStdString());
    QByteArray content = file.read(largestFileBytes + 1);
    if (content.size() > largestFileBytes)
        throw Failure(path.toStdString() + ": too large");
    return content;
}

// The decoder fills up what is missing of a JPEG file and calls it a success. The end marker cannot
// occur inside the picture's data, but does occur in a preview before it.
bool isCutOff(const QByteArray& format, const QByteArray& content)
{
    return format == "jpeg" && content.lastIndexOf("\xff\xd9") < content.lastIndexOf("\xff\xda");
}

std::string_view textOf(const QByteArray& content)
{
    return {content.data(), static_cast<std::size_t>(content.size())};
}

struct Picture {
    QByteArray format;
    QImage image;
};

Picture decoded(const QByteArray& content)
{
    QBuffer buffer;
    buffer.setData(content);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(
        true); // what stands upright by a note in the file does so in its pixels
    Picture picture{reader.format(), reader.read()};
    if (picture.image.isNull())
        throw Failure(reader.errorString().toStdString());
    if (isCutOff(picture.format, content))
        throw Failure("the file is cut off");
    // Else the writer makes a profile of the gamma, by which dark tones come out darker than they
    // were. Without any, a picture is sRGB.
    if (picture.format == "png" && tallowbay::qt::isSrgbByItsGamma(textOf(content)))
        picture.image.setColorSpace({});
    return picture;
}

QByteArray encoded(const Picture& picture)
{
    QBuffer buffer;
    QImageWriter writer(&buffer, picture.format);
    if (picture.format == "jpeg")
        writer.setQuality(jpegQuality);
    if (!writer.write(picture.image))
        throw Failure(writer.errorString().toStdString());
    return buffer.data();
}

QByteArray resampled(const QByteArray& content, int longerSide)
{
    Picture picture = decoded(content);
    const QSize size = picture.image.size();
    if (std::max(size.width(), size.height()) <= longerSide)
        return content;
    const QSize fitted =
        size.scaled(longerSide, longerSide, Qt::KeepAspectRatio).expandedTo({1, 1});
    picture.image = picture.image.scaled(fitted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return encoded(picture);
}

void write(const QByteArray& content, const QString& path)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
        throw Failure(path.toStdString() + ": " + file.errorString().toStdString());
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    if (application.arguments().contains("--help"))
        return std::fputs(usage, stdout) < 0;
    QImageReader::setAllocationLimit(largestBitmapMebibytes);
    try {
        const Request request = parsed(application.arguments());
        write(resampled(contentOf(request.input), request.longerSide), request.output);
        return 0;
    } catch (const Failure& failure) {
        std::fprintf(stderr, "sips: %s\n", failure.what());
        return 1;
    }
}
