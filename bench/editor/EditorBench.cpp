#include "editor/AnnotationConstants.h"
#include "editor/CanvasRenderer.h"
#include "editor/saving/AnnotationExporter.h"
#include "platform/posix/LinuxResources.h"
#include "platform/posix/PosixProcesses.h"
#include "platform/posix/files/PosixFileSystem.h"
#include "platform/qt/graphics/BitmapImage.h"
#include "platform/qt/graphics/QtGraphicsContext.h"
#include "platform/qt/graphics/QtImageCodec.h"

#include <QGuiApplication>
#include <QPainter>

#include <benchmark/benchmark.h>

#include <cmath>

namespace tallowbay {
namespace {

constexpr PixelSize screenshotSize{3840, 2160};
constexpr Size canvasSize{1600, 1000};

// Flat areas, gradients and text, as on a screen.
Image screenshot()
{
    auto bitmap = std::make_shared<Bitmap>(screenshotSize);
    QImage picture = qt::imageOver(*bitmap);
    QPainter painter(&picture);
    QLinearGradient sky(0, 0, screenshotSize.width, screenshotSize.height);
    sky.setColorAt(0, QColor(250, 250, 255));
    sky.setColorAt(1, QColor(60, 90, 160));
    painter.fillRect(picture.rect(), sky);
    QFont font = painter.font();
    font.setPixelSize(22);
    painter.setFont(font);
    for (int y = 60; y < screenshotSize.height; y += 30) {
        painter.setPen(QColor(y * 7 % 256, y * 3 % 256, 40));
        for (int x = 40; x < screenshotSize.width - 400; x += 460)
            painter.drawText(x, y, QStringLiteral("The quick brown fox, line %1").arg(y * x));
    }
    return bitmap;
}

// Fifty of all kinds, spread over the canvas.
std::vector<AnnotationItem> fiftyItems()
{
    std::vector<AnnotationItem> items;
    for (int i = 0; i < 50; ++i) {
        const AnnotationTool tool = annotationToolForTag(i % 4);
        const Point place{80.0 + i * 97 % 1300, 100.0 + i * 61 % 750};
        AnnotationItem item{
            tool,
            {place, {120, 70}},
            std::nullopt,
            swatchColorValues[static_cast<std::size_t>(i % 5)]};
        if (tool == AnnotationTool::text) {
            item.rect.size = {};
            item.text = "A remark of some length";
        }
        items.push_back(item);
    }
    return items;
}

const Image& sharedScreenshot()
{
    static const Image image = screenshot();
    return image;
}

QImage canvasSurface()
{
    return {
        static_cast<int>(canvasSize.width), static_cast<int>(canvasSize.height),
        QImage::Format_ARGB32_Premultiplied};
}

// What no redraw can do without: the scaled picture on the screen.
void redrawBaseline(benchmark::State& state)
{
    QImage surface = canvasSurface();
    const QImage scaled = qt::imageOver(*sharedScreenshot())
                              .scaled(1504, 846, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                              .convertToFormat(QImage::Format_RGB32);
    for (auto iteration : state) {
        QPainter painter(&surface);
        painter.drawImage(48, 77, scaled);
    }
}
BENCHMARK(redrawBaseline)->Unit(benchmark::kMillisecond);

void redrawWithFiftyItems(benchmark::State& state)
{
    QImage surface = canvasSurface();
    const qt::GraphicsFonts fonts;
    qt::ScaledImageCache cache;
    CanvasState canvas;
    canvas.size = canvasSize;
    canvas.backgroundImage = sharedScreenshot();
    canvas.annotations = fiftyItems();
    canvas.selectedAnnotationIndex = 7;
    std::size_t hovered = 0;
    for (auto iteration : state) {
        canvas.hoveredIndex = hovered++ % canvas.annotations.size();
        QPainter painter(&surface);
        qt::QtGraphicsContext context(painter, canvasSize.height, fonts, cache);
        drawCanvas(context, canvas, std::nullopt);
    }
}
BENCHMARK(redrawWithFiftyItems)->Unit(benchmark::kMillisecond);

// A save's tools in a folder of their own.
struct Workshop {
    posix::PosixFileSystem files;
    posix::PosixProcesses processes;
    posix::LinuxResources resources{
        posix::runningProgramFolder(), [](const std::string&) { return false; }};
    qt::QtImageCodec codec;
    qt::QtOffscreenGraphics graphics{qt::GraphicsFonts()};
    std::filesystem::path folder = files.makeTemporaryFolder().value();
    ImageCompressor compressor =
        ImageCompressor(files, processes, resources, posix::linuxToolPaths(resources))
            .into(folder / "optimized");
    AnnotationExporter exporter{files, codec, graphics, compressor};
    std::filesystem::path source = folder / "Screenshot.png";
    std::string bytes = codec.encodePng(*sharedScreenshot()).value();

    Workshop() { files.writeAtomically(source, bytes); }
    ~Workshop() { files.remove(folder); }
};

// The same file decoded, encoded and compressed, without anything drawn.
void saveBaseline(benchmark::State& state)
{
    Workshop workshop;
    for (auto iteration : state) {
        const auto bitmap = std::get<Bitmap>(workshop.codec.decode(workshop.bytes));
        workshop.files.writeAtomically(workshop.source, workshop.codec.encodePng(bitmap).value());
        benchmark::DoNotOptimize(workshop.compressor.compress(workshop.source));
    }
}
BENCHMARK(saveBaseline)->Unit(benchmark::kMillisecond)->UseRealTime();

void saveWithFiftyItems(benchmark::State& state)
{
    Workshop workshop;
    const auto items = fiftyItems();
    for (auto iteration : state) {
        const auto flattened =
            workshop.exporter.flattenAnnotation(sharedScreenshot(), items, canvasSize, imageInset);
        const auto bytes = workshop.exporter.compressed(*flattened, workshop.source);
        workshop.exporter.writeFlattenedImage(*bytes, workshop.source);
    }
}
BENCHMARK(saveWithFiftyItems)->Unit(benchmark::kMillisecond)->UseRealTime();

void decode(benchmark::State& state)
{
    const Workshop workshop;
    for (auto iteration : state)
        benchmark::DoNotOptimize(workshop.codec.decode(workshop.bytes));
}
BENCHMARK(decode)->Unit(benchmark::kMillisecond);

// As the strip's files are: with a palette, of pngquant's making.
std::string compressedBytes(Workshop& workshop)
{
    const auto copy = workshop.compressor.compress(workshop.source);
    return *workshop.files.read(copy ? *copy : workshop.source);
}

void decodeCompressedBaseline(benchmark::State& state)
{
    Workshop workshop;
    const QByteArray bytes = QByteArray::fromStdString(compressedBytes(workshop));
    for (auto iteration : state)
        benchmark::DoNotOptimize(QImage::fromData(bytes, "png"));
}
BENCHMARK(decodeCompressedBaseline)->Unit(benchmark::kMillisecond);

void decodeCompressed(benchmark::State& state)
{
    Workshop workshop;
    const std::string bytes = compressedBytes(workshop);
    for (auto iteration : state)
        benchmark::DoNotOptimize(workshop.codec.decode(bytes));
}
BENCHMARK(decodeCompressed)->Unit(benchmark::kMillisecond);

void thumbnailOfCompressed(benchmark::State& state)
{
    Workshop workshop;
    const std::string bytes = compressedBytes(workshop);
    for (auto iteration : state)
        benchmark::DoNotOptimize(workshop.codec.decodeThumbnail(bytes, {184, 102}));
}
BENCHMARK(thumbnailOfCompressed)->Unit(benchmark::kMillisecond);

// What the first drawing of a screenshot takes on the main thread.
void fitToCanvas(benchmark::State& state)
{
    for (auto iteration : state) {
        qt::ScaledImageCache cache;
        benchmark::DoNotOptimize(cache.scaled(sharedScreenshot(), {1504, 846}));
    }
}
BENCHMARK(fitToCanvas)->Unit(benchmark::kMillisecond);

void flatten(benchmark::State& state)
{
    const Workshop workshop;
    const auto items = fiftyItems();
    for (auto iteration : state)
        benchmark::DoNotOptimize(
            workshop.exporter.flattenAnnotation(sharedScreenshot(), items, canvasSize, imageInset));
}
BENCHMARK(flatten)->Unit(benchmark::kMillisecond);

void encode(benchmark::State& state)
{
    const Workshop workshop;
    for (auto iteration : state)
        benchmark::DoNotOptimize(workshop.codec.encodePng(*sharedScreenshot()));
}
BENCHMARK(encode)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tallowbay

int main(int argumentCount, char** arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argumentCount, arguments);
    benchmark::Initialize(&argumentCount, arguments);
    benchmark::RunSpecifiedBenchmarks();
}
