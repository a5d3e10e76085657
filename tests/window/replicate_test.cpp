#include <gtest/gtest.h>

#include "graphics/window/replicate.h"

namespace {

struct Layout {
    int bits;
    bool msb_first;
};

/// Reads and writes single pixels of any layout, bit by bit.
unsigned bit_of(const RasterImage &image, int x, int y, int bit) {
    const int at = x * image.bits_per_pixel + bit;
    const auto byte = static_cast<std::size_t>(y * image.bytes_per_line + at / 8);
    const int inside = image.bits_per_pixel < 8 && image.msb_first
                           ? 7 - (x * image.bits_per_pixel % 8) - (image.bits_per_pixel - 1 - bit)
                           : at % 8;
    return std::to_integer<unsigned>(image.data[byte]) >> inside & 1;
}

std::uint64_t pixel_of(const RasterImage &image, int x, int y) {
    std::uint64_t pixel = 0;
    for (int bit = image.bits_per_pixel - 1; bit >= 0; --bit) pixel = pixel << 1 | bit_of(image, x, y, bit);
    return pixel;
}

RasterImage noise(const Layout &layout, int width, int height) {
    RasterImage image;
    image.width = width;
    image.height = height;
    image.bits_per_pixel = layout.bits;
    image.msb_first = layout.msb_first;
    image.bytes_per_line = (width * layout.bits + 31) / 32 * 4;
    unsigned seed = 12345;
    image.data.resize(static_cast<std::size_t>(image.bytes_per_line) * static_cast<std::size_t>(height));
    for (std::byte &byte : image.data)
        byte = static_cast<std::byte>((seed = seed * 1664525U + 1013904223U) >> 24);
    return image;
}

class Replicate : public testing::TestWithParam<Layout> {};

TEST_P(Replicate, EveryPixelIsItsSource) {
    const RasterImage image = noise(GetParam(), 37, 23);
    struct Part {
        int left, top, zoom;
    };
    for (const Part &part : {Part{0, 0, 1}, Part{5, 3, 2}, Part{30, 20, 7}, Part{36, 22, 1024}}) {
        const RasterImage result = replicate_pixels(image, part.left, part.top, part.zoom);
        ASSERT_EQ(result.data.size(), image.data.size());
        for (int y = 0; y < image.height; ++y)
            for (int x = 0; x < image.width; ++x)
                ASSERT_EQ(pixel_of(result, x, y), pixel_of(image, std::min(part.left + x / part.zoom, 36),
                                                           std::min(part.top + y / part.zoom, 22)))
                    << x << "," << y << " zoom " << part.zoom;
    }
}

INSTANTIATE_TEST_SUITE_P(Layouts, Replicate,
                         testing::Values(Layout{1, false}, Layout{1, true}, Layout{4, false}, Layout{4, true},
                                         Layout{8, false}, Layout{16, false}, Layout{24, false},
                                         Layout{32, true}));

TEST(ReplicateBadImages, ComeBackAsTheyAre) {
    RasterImage image = noise({32, false}, 10, 10);
    image.data.resize(20);
    EXPECT_EQ(replicate_pixels(image, 0, 0, 2).data, image.data);
    RasterImage odd = noise({24, false}, 10, 10);
    odd.bits_per_pixel = 12;
    EXPECT_EQ(replicate_pixels(odd, 0, 0, 2).data, odd.data);
}

} // namespace
