#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>

#include "graphics/images/gif_format.h"
#include "graphics/images/image.h"
#include "graphics/images/image_file.h"
#include "graphics/images/pixels.h"
#include "lib/message.h"

namespace {

constexpr std::size_t kSlots = 256;
constexpr float kLongestDelay = 655.35F; ///< seconds
constexpr int kLeaveInPlace = 1;         ///< disposal: the next frame is drawn over this one

using Bytes = std::array<std::uint8_t, 3>;

Bytes bytes_of(const Rgb &color) {
    return {color_byte(color.red), color_byte(color.green), color_byte(color.blue)};
}

std::uint32_t key_of(const Bytes &bytes) {
    return static_cast<std::uint32_t>(bytes[0] << 16 | bytes[1] << 8 | bytes[2]);
}

int distance(const Bytes &a, const Bytes &b) {
    int sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) sum += (a[i] - b[i]) * (a[i] - b[i]);
    return sum;
}

/// The colours of all frames. Where they are more than the slots, the most frequent ones have one and every
/// other is shown in the nearest of these.
class SharedPalette {
public:
    void count(const PaletteImage &image) {
        std::array<std::size_t, kSlots> pixels{};
        for (const std::uint8_t pixel : image.pixels) ++pixels[pixel];
        for (std::size_t i = 0; i < image.colors.size(); ++i) {
            const Bytes bytes = bytes_of(image.colors[i]);
            const auto [found, is_new] = places_.try_emplace(key_of(bytes), entries_.size());
            if (is_new) entries_.push_back({bytes, 0, 0});
            entries_[found->second].pixels += pixels[i];
        }
    }

    void choose() {
        std::vector<std::size_t> order(entries_.size());
        for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
        if (order.size() > kSlots)
            std::stable_sort(order.begin(), order.end(), [this](std::size_t a, std::size_t b) {
                return entries_[a].pixels > entries_[b].pixels;
            });
        for (const std::size_t i : order) {
            const Bytes &bytes = entries_[i].bytes;
            if (colors_.size() < kSlots) {
                entries_[i].slot = static_cast<std::uint8_t>(colors_.size());
                chosen_.push_back(bytes);
                colors_.push_back(color_of_bytes(bytes[0], bytes[1], bytes[2]));
            } else {
                entries_[i].slot = nearest(bytes);
            }
        }
    }

    [[nodiscard]] const std::vector<Rgb> &colors() const { return colors_; }
    /// The pixels of a counted frame as slots of this palette.
    [[nodiscard]] std::vector<std::uint8_t> slots_of(const PaletteImage &image) const {
        std::array<std::uint8_t, kSlots> slots{};
        for (std::size_t i = 0; i < image.colors.size(); ++i)
            slots[i] = entries_[places_.at(key_of(bytes_of(image.colors[i])))].slot;
        std::vector<std::uint8_t> pixels(image.pixels.size());
        std::transform(image.pixels.begin(), image.pixels.end(), pixels.begin(),
                       [&](std::uint8_t pixel) { return slots[pixel]; });
        return pixels;
    }

private:
    struct Entry {
        Bytes bytes;
        std::size_t pixels; ///< in all frames
        std::uint8_t slot;
    };
    [[nodiscard]] std::uint8_t nearest(const Bytes &bytes) const {
        const auto found =
            std::min_element(chosen_.begin(), chosen_.end(), [&](const Bytes &a, const Bytes &b) {
                return distance(a, bytes) < distance(b, bytes);
            });
        return static_cast<std::uint8_t>(found - chosen_.begin());
    }

    std::unordered_map<std::uint32_t, std::size_t> places_;
    std::vector<Entry> entries_;
    std::vector<Bytes> chosen_;
    std::vector<Rgb> colors_;
};

/// What differs between two pictures of one size; one pixel where they are alike, so that the frame stays.
GifRect changed_rectangle(const std::vector<std::uint8_t> &before, const std::vector<std::uint8_t> &after,
                          int width, int height) {
    int left = width, right = -1, top = height, bottom = -1;
    for (int row = 0; row < height; ++row) {
        const auto start = static_cast<std::ptrdiff_t>(row) * width;
        const auto begin = after.begin() + start, end = begin + width;
        const auto first = std::mismatch(begin, end, before.begin() + start).first;
        if (first == end) continue;
        top = std::min(top, row);
        bottom = row;
        left = std::min(left, static_cast<int>(first - begin));
        int last = width - 1;
        while (last > right && begin[last] == before[static_cast<std::size_t>(start + last)]) --last;
        right = std::max(right, last);
    }
    if (bottom < 0) return {0, 0, 1, 1};
    return {left, top, right - left + 1, bottom - top + 1};
}

std::vector<std::uint8_t> cut(const std::vector<std::uint8_t> &pixels, int width, const GifRect &rect) {
    std::vector<std::uint8_t> part;
    part.reserve(static_cast<std::size_t>(rect.width) * static_cast<std::size_t>(rect.height));
    for (int row = rect.top; row < rect.top + rect.height; ++row) {
        const auto start = pixels.begin() + static_cast<std::ptrdiff_t>(row) * width + rect.left;
        part.insert(part.end(), start, start + rect.width);
    }
    return part;
}

int hundredths(float seconds) {
    if (std::isnan(seconds)) return 0;
    return static_cast<int>(std::lround(std::clamp(seconds, 0.0F, kLongestDelay) * 100.0F));
}

/// The pictures follow one another for ever.
void put_endless_loop(std::string &out) {
    out += static_cast<char>(kGifExtension);
    out += static_cast<char>(kGifApplication);
    out += "\13NETSCAPE2.0\3\1";
    gif_put_u16(out, 0);
    out += '\0';
}

} // namespace

void AnimatedGif::add(const ImageRecord &record, float delay_seconds) {
    frames_.push_back({IMG_palette(record), delay_seconds});
}

int AnimatedGif::write(std::string_view path) const {
    const auto is_other_size = [this](const Frame &frame) {
        return frame.image.width != frames_[0].image.width || frame.image.height != frames_[0].image.height;
    };
    if (frames_.empty() || frames_[0].image.width == 0 ||
        std::any_of(frames_.begin(), frames_.end(), is_other_size)) {
        MESS_print(kWarn, "AnimatedGif: No frames, or frames of different sizes\n");
        return 0;
    }
    Stream file = FILE_open(path, "wb");
    if (!file) {
        MESS_print(kWarn, "Unable to open GIF file\n");
        return 0;
    }
    SharedPalette palette;
    for (const Frame &frame : frames_) palette.count(frame.image);
    palette.choose();

    const int width = frames_[0].image.width, height = frames_[0].image.height;
    const int bits = gif_index_bits(palette.colors().size());
    std::string out;
    gif_put_header(out, width, height, palette.colors());
    put_endless_loop(out);
    std::vector<std::uint8_t> shown;
    for (const Frame &frame : frames_) {
        std::vector<std::uint8_t> pixels = palette.slots_of(frame.image);
        const GifRect rect =
            shown.empty() ? GifRect{0, 0, width, height} : changed_rectangle(shown, pixels, width, height);
        gif_put_control(out, kLeaveInPlace, hundredths(frame.delay), -1);
        gif_put_image(out, rect, false, bits, cut(pixels, width, rect));
        shown = std::move(pixels);
    }
    out += static_cast<char>(kGifTrailer);
    return write_and_close("AnimatedGif", path, file, out) ? 1 : 0;
}
