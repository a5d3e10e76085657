#include "radar/lev2/painter.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "plot/colour/levels.h"

namespace {

/// Nothing is seen beyond this range; gates there come from damaged files.
constexpr float kMostRangeKm = 2000.0F;

} // namespace

std::span<const std::uint8_t> Lev2Levels::of(const Lev2Gates &gates) {
    changed_ = gates.scale != scale_ || gates.offset != offset_ || gates.word_bits != word_bits_;
    scale_ = gates.scale;
    offset_ = gates.offset;
    word_bits_ = gates.word_bits;
    return word_bits_ == 8 ? bytes_of(gates) : words_of(gates);
}

void Lev2Levels::note_range(const Lev2Gates &gates, unsigned low, unsigned high) {
    for (const unsigned level : {low, high}) {
        const float value = gates.value(level);
        largest_ = std::max(largest_, value);
        if (value > kLev2RangeFolded) smallest_ = std::min(smallest_, value);
    }
}

std::span<const std::uint8_t> Lev2Levels::bytes_of(const Lev2Gates &gates) {
    const std::span<const std::uint8_t> levels{reinterpret_cast<const std::uint8_t *>(gates.bytes.data()),
                                               gates.bytes.size()};
    if (changed_) {
        std::array<float, kCellLevels> values{};
        for (unsigned level = 0; level < kCellLevels; ++level) values[level] = gates.value(level);
        ink_ = CELL_ink(values);
    }
    // A level below 2 counts as no measurement; taken as 255 it cannot be the lowest one.
    std::uint8_t low = 255, high = 0;
    for (const std::uint8_t level : levels) {
        low = std::min(low, level < 2 ? std::uint8_t{255} : level);
        high = std::max(high, level);
    }
    note_range(gates, std::min<unsigned>(low, high), high);
    return levels;
}

/// Gives every level below `levels` an ink; levels of one look share it.
void Lev2Levels::make_table(const Lev2Gates &gates, std::size_t levels) {
    index_.resize(levels);
    std::size_t used = 0;
    std::array<float, kCellLevels> values{};
    for (std::size_t from = 0; from < levels; from += kCellLevels) {
        const std::size_t count = std::min(kCellLevels, levels - from);
        for (std::size_t i = 0; i < count; ++i) values[i] = gates.value(static_cast<unsigned>(from + i));
        const LevelInk part = CELL_ink(values);
        for (std::size_t i = 0; i < count; ++i) {
            const auto *end = ink_.cbegin() + used;
            const auto *known = std::find_if(
                ink_.cbegin(), end, [&](const Attribute &ink) { return CELL_same_ink(ink, part[i]); });
            if (known == end && used < kCellLevels) ink_[used++] = part[i];
            index_[from + i] =
                static_cast<std::uint8_t>(std::min<std::ptrdiff_t>(known - ink_.cbegin(), 255));
        }
    }
    changed_ = true;
}

std::span<const std::uint8_t> Lev2Levels::words_of(const Lev2Gates &gates) {
    unsigned low = 65535, high = 0;
    row_.resize(gates.size());
    for (std::size_t i = 0; i < row_.size(); ++i) {
        const unsigned level = gates.level(i);
        if (level >= 2) low = std::min(low, level);
        high = std::max(high, level);
    }
    note_range(gates, std::min(low, high), high);
    if (changed_ || high >= index_.size())
        make_table(gates, std::max<std::size_t>(kCellLevels, std::bit_ceil(std::size_t{high} + 1)));
    for (std::size_t i = 0; i < row_.size(); ++i) row_[i] = index_[gates.level(i)];
    return row_;
}

Lev2Strip LEV2_strip(float azimuth, float width, float first_km, float clutter_km, const Lev2Gates &gates) {
    const auto gate_at = [&](float km) {
        return static_cast<std::size_t>(
            std::clamp(std::ceil((km - first_km) / gates.gate_km), 0.0F, 65536.0F));
    };
    Lev2Strip strip;
    strip.azimuth_a = azimuth - width / 2;
    strip.azimuth_b = strip.azimuth_a + width + kRadialOverlapDeg;
    strip.first = first_km / kKmPerPlaneUnit;
    strip.step = gates.gate_km / kKmPerPlaneUnit;
    strip.skip = gate_at(std::max(0.0F, clutter_km));
    strip.gates = std::min(gates.size(), gate_at(kMostRangeKm));
    return strip;
}

void Lev2Painter::draw(float azimuth, float width, float first_km, const Lev2Gates &gates) {
    if (gates.gate_km <= 0) return;
    const std::span<const std::uint8_t> levels = levels_.of(gates);
    if (levels_.changed() || !filler_) filler_.emplace(levels_.ink());
    const Lev2Strip strip = LEV2_strip(azimuth, width, first_km, clutter_km_, gates);
    cells_.draw(strip.azimuth_a, strip.azimuth_b, strip.first, strip.step, levels.first(strip.gates),
                strip.skip, levels_.ink(), sink_ != nullptr ? *sink_ : filler_->sink());
}
