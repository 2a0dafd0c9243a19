#pragma once

#include <QSize>

#include <filesystem>
#include <string>

class QPainter;

namespace tallowbay::bench {

// A desktop with windows full of text, different for each number.
void drawDesktop(QPainter&, const QSize&, int number);

// Of the same a PNG.
std::string screenshotOf(const QSize&, int number);

// Compresses a file as the program does; how long that took, in milliseconds. Throws
// std::runtime_error if it fails.
double barePngquant(const std::filesystem::path& input, const std::filesystem::path& output);

} // namespace tallowbay::bench
