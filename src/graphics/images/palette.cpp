#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>
#include <unordered_map>
#include <vector>

#include "graphics/images/image.h"
#include "graphics/images/palette.h"
#include "graphics/images/pixels.h"
#include "lib/report/message.h"

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

/// Gives each value a slot as it comes, as long as there are slots.
class PaletteBuilder {
public:
    PaletteBuilder(const ImageRecord &record, PaletteImage &image)
        : record_(record), colors_(record), image_(image) {}

    /// SlotTable::kFree when every slot is taken.
    int slot(std::uint32_t value) {
        std::size_t place = 0;
        const int known = table_.find(value, place);
        if (known != SlotTable::kFree || image_.colors.size() == kSlots) return known;
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

using Bytes = std::array<int, 3>;

Bytes bytes_of(const Rgb &color) {
    return {color_byte(color.red), color_byte(color.green), color_byte(color.blue)};
}

int distance(const Bytes &a, const Bytes &b) {
    int sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) sum += (a[i] - b[i]) * (a[i] - b[i]);
    return sum;
}

/// Calls `take` with each pixel value, rows from the top.
template <typename Take> void for_each_pixel(const ImageRecord &record, Take take) {
    std::vector<std::uint32_t> values(static_cast<std::size_t>(record.width));
    for (int row = 0; row < record.height; ++row) {
        read_row(record, row, values);
        for (const std::uint32_t value : values) take(value);
    }
}

/// Chooses the slots when all values are known and are more than the slots.
class CrowdedPalette {
public:
    explicit CrowdedPalette(const ImageRecord &record) : record_(record) {
        for_each_pixel(record, [this](std::uint32_t value) {
            const auto [place, added] = places_.try_emplace(value, entries_.size());
            if (added) entries_.push_back({value, 0, 0});
            ++entries_[place->second].pixels;
        });
    }

    void fill(PaletteImage &image) {
        choose(image);
        std::uint8_t *out = image.pixels.data();
        for_each_pixel(record_, [&](std::uint32_t value) { *out++ = entries_[places_.at(value)].slot; });
    }

private:
    struct Entry {
        std::uint32_t value;
        std::size_t pixels;
        std::uint8_t slot;
    };

    void choose(PaletteImage &image) {
        std::vector<std::size_t> order(entries_.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        const auto weight = [this](const Entry &entry) {
            return record_.background == static_cast<long>(entry.value) ? record_.bytes().size()
                                                                        : entry.pixels;
        };
        std::ranges::stable_sort(
            order, [&](std::size_t a, std::size_t b) { return weight(entries_[a]) > weight(entries_[b]); });
        std::sort(order.begin(), order.begin() + kSlots);
        const PixelColors colors(record_);
        std::vector<Bytes> chosen;
        for (std::size_t i = 0; i < order.size(); ++i) {
            Entry &entry = entries_[order[i]];
            const Rgb color = colors.color(entry.value);
            if (i >= kSlots) {
                entry.slot = nearest(chosen, bytes_of(color));
                continue;
            }
            entry.slot = static_cast<std::uint8_t>(i);
            chosen.push_back(bytes_of(color));
            image.colors.push_back(color);
            if (record_.background == static_cast<long>(entry.value)) image.transparent = static_cast<int>(i);
        }
    }
    static std::uint8_t nearest(const std::vector<Bytes> &chosen, const Bytes &wanted) {
        const auto found = std::ranges::min_element(
            chosen, {}, [&wanted](const Bytes &bytes) { return distance(bytes, wanted); });
        return static_cast<std::uint8_t>(found - chosen.begin());
    }

    const ImageRecord &record_;
    std::unordered_map<std::uint32_t, std::size_t> places_;
    std::vector<Entry> entries_;
};

void trace_masks(const ImageRecord &record) {
    const MaskField red(record.red_mask), green(record.green_mask), blue(record.blue_mask);
    MESS_print(kDebug, "mask: %d-%d %d-%d %d-%d\n", red.position, red.width, green.position, green.width,
               blue.position, blue.width);
}

/// The picture without pixels yet; width 0 when the record holds no whole one.
PaletteImage empty_picture(const ImageRecord &record) {
    PaletteImage image;
    if (!is_complete(record)) return image;
    if (!record.mapped) trace_masks(record);
    image.width = record.width;
    image.height = record.height;
    image.pixels.resize(static_cast<std::size_t>(record.width) * static_cast<std::size_t>(record.height));
    return image;
}

} // namespace

std::optional<PaletteImage> IMG_exact_palette(const ImageRecord &record) {
    PaletteImage image = empty_picture(record);
    if (image.width == 0) return image;
    PaletteBuilder builder(record, image);
    std::vector<std::uint32_t> values(static_cast<std::size_t>(record.width));
    std::uint8_t *out = image.pixels.data();
    for (int row = 0; row < record.height; ++row) {
        read_row(record, row, values);
        // Neighbours are mostly alike.
        std::uint32_t last = values[0];
        int slot = builder.slot(last);
        for (const std::uint32_t value : values) {
            if (value != last) {
                last = value;
                slot = builder.slot(value);
            }
            if (slot == SlotTable::kFree) return std::nullopt;
            *out++ = static_cast<std::uint8_t>(slot);
        }
    }
    return image;
}

PaletteImage IMG_palette(const ImageRecord &record) {
    if (auto exact = IMG_exact_palette(record)) return *std::move(exact);
    PaletteImage image = empty_picture(record);
    CrowdedPalette(record).fill(image);
    return image;
}
