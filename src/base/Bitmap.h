#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

namespace tallowbay {

struct PixelSize {
    int width = 0;
    int height = 0;
    bool operator==(const PixelSize&) const = default;
};

// Memory that is zero from the start, where the system has such at hand: it is touched only when it
// is written, and not twice.
template <typename T> struct ZeroedMemory {
    using value_type = T;

    ZeroedMemory() = default;
    template <typename U> explicit ZeroedMemory(const ZeroedMemory<U>&) { }
    T* allocate(std::size_t count)
    {
        void* const memory = std::calloc(count, sizeof(T));
        if (!memory)
            throw std::bad_alloc();
        return static_cast<T*>(memory);
    }
    void deallocate(T* memory, std::size_t) { std::free(memory); }
    void construct(T*) { } // it is zero already
    bool operator==(const ZeroedMemory&) const = default;
};

// A picture in memory, in the sRGB colour space.
//
// A pixel is one 32-bit word 0xAARRGGBB with the colour premultiplied by alpha, so a fully
// transparent pixel holds no colour. The first row is the topmost one; the stride is the width, no
// bytes lie between the rows. Both sides are positive.
class Bitmap {
public:
    // Fully transparent.
    explicit Bitmap(PixelSize size)
        : dimensions(size)
        , words(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height))
    {
    }

    PixelSize size() const { return dimensions; }
    std::size_t bytesPerRow() const { return static_cast<std::size_t>(dimensions.width) * 4; }

    // x from the left, y from the top.
    std::uint32_t pixel(int x, int y) const { return row(y)[x]; }
    const std::uint32_t* row(int y) const { return words.data() + offset(y); }
    std::uint32_t* row(int y) { return words.data() + offset(y); }

    bool isOpaque() const
    {
        return std::all_of(
            words.begin(), words.end(), [](std::uint32_t word) { return word >= 0xFF000000u; });
    }
    bool operator==(const Bitmap&) const = default;

private:
    std::size_t offset(int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(dimensions.width);
    }

    PixelSize dimensions;
    std::vector<std::uint32_t, ZeroedMemory<std::uint32_t>> words;
};

// A picture that several owners and threads may read. Null is "no picture".
using Image = std::shared_ptr<const Bitmap>;

} // namespace tallowbay
