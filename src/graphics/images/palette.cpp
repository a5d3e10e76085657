#include <array>
#include <cstddef>

#include "graphics/images/image.h"
#include "graphics/images/pixels.h"
#include "lib/message.h"

namespace {

constexpr int kSlots = 256;

/// Slot of each pixel value met so far. Four times as many places as values: a search ends after a step or
/// two, also for a value that found no slot.
class SlotTable {
public:
    SlotTable() { places_.fill({0, kFree}); }

    /// The value's slot, or kFree and the place where it belongs.
    int find(std::uint32_t value, std::size_t &place) const {
        place = value * 2654435761U >> (32 - kPlaceBits); // multiplicative hashing with 2^32 / golden ratio
        while (places_[place].slot != kFree && places_[place].value != value) place = (place + 1) % kPlaces;
        return places_[place].slot;
    }
    void put(std::size_t place, std::uint32_t value, int slot) {
        places_[place] = {value, static_cast<std::int16_t>(slot)};
    }
    static constexpr std::int16_t kFree = -1;

private:
    static constexpr unsigned kPlaceBits = 10;
    static constexpr std::size_t kPlaces = std::size_t{1} << kPlaceBits;
    struct Place {
        std::uint32_t value;
        std::int16_t slot;
    };
    std::array<Place, kPlaces> places_;
};

class PaletteBuilder {
public:
    PaletteBuilder(const ImageRecord &record, PaletteImage &image)
        : record_(record), colors_(record), image_(image) {}

    int slot(std::uint32_t value) {
        std::size_t place = 0;
        const int known = table_.find(value, place);
        if (known != SlotTable::kFree) return known;
        if (image_.colors.size() == kSlots) return 0;
        const int next = static_cast<int>(image_.colors.size());
        table_.put(place, value, next);
        image_.colors.push_back(colors_.color(value));
        if (record_.background == static_cast<long>(value)) image_.transparent = next;
        return next;
    }

private:
    const ImageRecord &record_;
    PixelColors colors_;
    PaletteImage &image_;
    SlotTable table_;
};

void trace_masks(const ImageRecord &record) {
    const MaskField red(record.red_mask), green(record.green_mask), blue(record.blue_mask);
    MESS_print(kDebug, "mask: %d-%d %d-%d %d-%d\n", red.position, red.width, green.position, green.width,
               blue.position, blue.width);
}

} // namespace

PaletteImage IMG_palette(const ImageRecord &record) {
    PaletteImage image;
    if (!is_complete(record)) return image;
    if (!record.mapped) trace_masks(record);
    image.width = record.width;
    image.height = record.height;
    const auto width = static_cast<std::size_t>(record.width);
    image.pixels.resize(width * static_cast<std::size_t>(record.height));

    PaletteBuilder builder(record, image);
    std::vector<std::uint32_t> values(width);
    std::uint8_t *out = image.pixels.data();
    for (int row = 0; row < record.height; ++row) {
        read_row(record, row, values);
        // Neighbours are mostly alike.
        std::uint32_t last = values[0];
        auto slot = static_cast<std::uint8_t>(builder.slot(last));
        for (const std::uint32_t value : values) {
            if (value != last) {
                last = value;
                slot = static_cast<std::uint8_t>(builder.slot(value));
            }
            *out++ = slot;
        }
    }
    return image;
}
