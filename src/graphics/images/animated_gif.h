#pragma once
/// A looping GIF.

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "graphics/images/gif_format.h"
#include "graphics/images/image.h"
#include "graphics/images/palette.h"

/// Pictures of one size as a looping GIF: only changed rectangles are stored, and each picture is compressed
/// as it comes, so that their number has no limit. Delays in seconds (0 to 655).
class AnimatedGif {
public:
    /// Said before the first picture: from the last one the loop goes back the way it came.
    void rock() { rocks_ = true; }
    void add(const ImageRecord &record, float delay_seconds);
    void set_last_delay(float seconds);
    [[nodiscard]] std::size_t frames() const { return frames_.size(); }
    /// 1 on success, 0 after a message: no frame, sizes that differ, a file that cannot be written.
    int write(std::string_view path) const;

private:
    struct Picture {
        std::vector<std::uint8_t> pixels;
        std::vector<Rgb> own_colors; ///< empty: slots of the shared table
    };
    struct Frame {
        float delay;
        std::string forward;  ///< what changes the picture before it into this one
        std::string backward; ///< what changes the picture behind it into this one; only when rocking
    };
    Picture take_colors(PaletteImage image);
    void put(std::string &out, const Picture &picture, const GifRect &rect) const;

    int width_ = 0, height_ = 0;
    bool rocks_ = false, sizes_differ_ = false;
    std::vector<Rgb> colors_;                              ///< the shared table
    std::unordered_map<std::uint32_t, std::size_t> slots_; ///< of colours as 0xRRGGBB
    std::vector<Frame> frames_;
    Picture last_;
};
