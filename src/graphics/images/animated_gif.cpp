#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "graphics/images/animated_gif.h"
#include "graphics/images/gif_format.h"
#include "graphics/images/image.h"
#include "graphics/images/image_file.h"
#include "graphics/images/palette.h"
#include "graphics/images/pixels.h"
#include "lib/report/message.h"

namespace {

constexpr std::size_t kSlots = 256;
constexpr float kLongestDelay = 655.35F; ///< seconds
constexpr int kLeaveInPlace = 1;         ///< disposal: the next frame is drawn over this one

std::uint32_t key_of(const Rgb &color) {
    return static_cast<std::uint32_t>(color_byte(color.red) << 16 | color_byte(color.green) << 8 |
                                      color_byte(color.blue));
}

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

/// The picture in slots of the shared table while that has room for its colours, else with a table of its
/// own.
AnimatedGif::Picture AnimatedGif::take_colors(PaletteImage image) {
    const auto is_new = [this](const Rgb &color) { return !slots_.contains(key_of(color)); };
    const auto news = std::count_if(image.colors.begin(), image.colors.end(), is_new);
    if (colors_.size() + static_cast<std::size_t>(news) > kSlots)
        return {std::move(image.pixels), std::move(image.colors)};
    std::array<std::uint8_t, kSlots> slots{};
    for (std::size_t i = 0; i < image.colors.size(); ++i) {
        const auto [place, added] = slots_.try_emplace(key_of(image.colors[i]), colors_.size());
        if (added) colors_.push_back(image.colors[i]);
        slots[i] = static_cast<std::uint8_t>(place->second);
    }
    for (std::uint8_t &pixel : image.pixels) pixel = slots[pixel];
    return {std::move(image.pixels), {}};
}

void AnimatedGif::put(std::string &out, const Picture &picture, const GifRect &rect) const {
    const std::size_t colors = picture.own_colors.empty() ? colors_.size() : picture.own_colors.size();
    gif_put_image(out, rect, false, gif_index_bits(colors), cut(picture.pixels, width_, rect),
                  picture.own_colors);
}

void AnimatedGif::add(const ImageRecord &record, float delay_seconds) {
    PaletteImage image = IMG_palette(record);
    if (frames_.empty()) {
        width_ = image.width;
        height_ = image.height;
    }
    if (image.width == 0 || image.width != width_ || image.height != height_) {
        sizes_differ_ = true;
        return;
    }
    Picture picture = take_colors(std::move(image));
    const bool alike = !frames_.empty() && last_.own_colors.empty() && picture.own_colors.empty();
    const GifRect rect = alike ? changed_rectangle(last_.pixels, picture.pixels, width_, height_)
                               : GifRect{0, 0, width_, height_};
    if (rocks_ && frames_.size() > 1) put(frames_.back().backward, last_, rect);
    frames_.push_back({delay_seconds, {}, {}});
    put(frames_.back().forward, picture, rect);
    last_ = std::move(picture);
}

void AnimatedGif::set_last_delay(float seconds) {
    if (!frames_.empty()) frames_.back().delay = seconds;
}

int AnimatedGif::write(std::string_view path) const {
    if (frames_.empty() || sizes_differ_) {
        MESS_print(kWarn, "AnimatedGif: No frames, or frames of different sizes\n");
        return 0;
    }
    OutputFile file = create_image("AnimatedGif", path);
    if (!file) {
        MESS_print(kWarn, "Unable to open GIF file\n");
        return 0;
    }
    const auto put_to_file = [&file](const std::string &bytes) { file.write(bytes); };
    const auto put_frame = [&](float delay, const std::string &image) {
        std::string control;
        gif_put_control(control, kLeaveInPlace, hundredths(delay), -1);
        put_to_file(control);
        put_to_file(image);
    };
    std::string head;
    gif_put_header(head, width_, height_, colors_);
    put_endless_loop(head);
    put_to_file(head);
    for (const Frame &frame : frames_) put_frame(frame.delay, frame.forward);
    // The loop begins again with the first picture, so the way back ends at the second.
    for (std::size_t i = frames_.size(); rocks_ && i-- > 0;)
        if (!frames_[i].backward.empty()) put_frame(frames_[i].delay, frames_[i].backward);
    return write_and_close("AnimatedGif", path, file, std::string(1, static_cast<char>(kGifTrailer))) ? 1 : 0;
}
