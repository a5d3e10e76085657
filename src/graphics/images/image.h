#pragma once
/// The image record that every image file is written from and read into.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "graphics/core/types.h"
#include "lib/system/calendar.h"

/// The map domain of a picture, as the package format carries it; proj kMissing: none. Values and meaning are
/// those of the plot domain record.
struct ImageDomain {
    int proj = kMissing;
    float plat = kMissingF, plon = kMissingF, p3 = kMissingF, p4 = kMissingF, p5 = kMissingF;
    float clat = kMissingF, clon = kMissingF, dx = kMissingF, dy = kMissingF;
    int nx = kMissing, ny = kMissing;
};

/// A rectangle of a picture, in pixels from the upper left corner.
struct GifRect {
    int left = 0, top = 0, width = 0, height = 0;
};

struct ImageRecord {
    std::string label; ///< date/time label of the package format
    DateRecord date;   ///< decoded from it
    std::string title;
    int width = 0, height = 0;
    int depth = 0, bits_per_pixel = 0, bytes_per_line = 0;
    int byte_order = 1;  ///< 0 least significant byte first
    bool mapped = false; ///< pixels are indices into `colors`
    std::uint32_t red_mask = 0, green_mask = 0, blue_mask = 0;
    std::vector<Rgb> colors;
    long background = -1; ///< pixel value of the background or of what is transparent, -1 when unknown
    ImageDomain domain;
    std::vector<std::uint8_t> data; ///< height * bytes_per_line
    /// Instead of `data`: pixels that belong to a display, which stay as they are until something is drawn.
    std::span<const std::uint8_t> lent;
    [[nodiscard]] std::span<const std::uint8_t> bytes() const { return lent.empty() ? data : lent; }
};

/// Largest picture that is written or read (pixels in one direction, and in all).
inline constexpr int kMaxImageSide = 32767;
inline constexpr std::size_t kMaxImagePixels = 100U << 20;

/// An empty record. Both leave nothing of what the record held.
void IMG_init(ImageRecord &record);
void IMG_free(ImageRecord &record);

// Writers of a record; 1 on success, 0 after a message. A file whose writing failed (full disk) is not there,
// or the old one still is. The XWD writer's messages go to standard error.
int GIF_write(std::string_view path, const ImageRecord &record);
int PNG_write(std::string_view path, const ImageRecord &record);
int XWD_write(std::string_view path, const ImageRecord &record);
/// A domain whose grid size is not that of the picture is written with its spacing changed to fit. `compress`
/// 1 compresses pictures of 8 bits without a colour table; the others are stored as brightness, plain.
int IMG_write(std::string_view path, const ImageRecord &record, int compress);
/// Rows in four passes; off at the start.
void GIF_interlace(int flag);
/// The background's colour is transparent; off at the start.
void GIF_transparent(int flag);

// Readers; 1 on success, 0 after a message with the record empty. IMG_read recognises the format by its first
// bytes and skips a first line that begins with "** ". Palette and grey pictures come with 8 bits a pixel and
// a colour table, others with 32 bits, the most significant byte first; window dumps keep their layout; the
// package format has 8 bits and no table. `flag` is accepted from callers that pass it and changes nothing.
int IMG_read(std::string_view path, ImageRecord &record, int flag);
int gread_image_file(std::string_view path, ImageRecord &record);

/// A palette picture: one index a pixel.
struct PaletteImage {
    int width = 0, height = 0;
    std::vector<Rgb> colors;          ///< at most 256
    int transparent = 0;              ///< slot of the background colour, 0 when it does not occur
    std::vector<std::uint8_t> pixels; ///< width * height
};
/// Slots in the order in which the colours first occur, rows from the top. Of more than 256 the most frequent
/// ones (and the background) have a slot, and every other is shown in the nearest of these. Empty (width 0)
/// when the record holds no whole picture.
PaletteImage IMG_palette(const ImageRecord &record);
/// The same, but nothing where the colours are more than the slots.
std::optional<PaletteImage> IMG_exact_palette(const ImageRecord &record);

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
