#include <algorithm>
#include <cmath>

#include "lib/report/message.h"
#include "radar/nids/product_reader.h"

namespace {

/// Lowest level of a digital packet that carries a value (ICD 2620001, thresholds of digital products); 0 is
/// below threshold, 1 missing or range folded.
constexpr int kFirstDigitalLevel = 2;
constexpr int kMissingPrecipitation = 255;
constexpr std::size_t kTextLimit = 99;

int number(std::byte byte) {
    return std::to_integer<int>(byte);
}

/// Minimum plus steps as the decimal number that it is: a value on a level's edge must belong to the level,
/// where the sum of two rounded numbers may fall short of it.
float stepped_value(const NidsBlocks &blocks, int level, double divisor) {
    const auto &words = blocks.description.threshold;
    const int minimum = static_cast<std::int16_t>(words[0]), step = static_cast<std::int16_t>(words[1]);
    return static_cast<float>((minimum + level * step) / divisor);
}

float digital_value(const NidsBlocks &blocks, int level) {
    if (level < kFirstDigitalLevel) return kMissingF;
    const auto &t = blocks.thresholds;
    const auto l = static_cast<float>(level);
    switch (blocks.product().scale) {
    case NidsScale::minimum_step: return stepped_value(blocks, level, 10);
    case NidsScale::thousandths: return stepped_value(blocks, level, 1000);
    case NidsScale::hundredths: return stepped_value(blocks, level, 100);
    case NidsScale::liquid: return l < t[2] ? (l - t[1]) / t[0] : std::exp((l - t[4]) / t[3]);
    case NidsScale::echo_tops: {
        const unsigned mask = blocks.description.threshold[0] & 0xFF;
        return static_cast<float>(static_cast<unsigned>(level) & mask) / t[1] - t[2];
    }
    case NidsScale::scale_offset: return (l - t[2]) / t[0];
    case NidsScale::levels:
    case NidsScale::minimum_step_kt:
    case NidsScale::terminal_long_range: break;
    }
    return l * t[1] + t[0];
}

float level_value(const NidsBlocks &blocks, const NidsRasterHeader &raster, int packet, int level) {
    const auto &thresholds = blocks.thresholds;
    const float run_value = blocks.threshold_of(level & 0xF);
    switch (packet) {
    case kPacketDigitalRadial: {
        const float value = digital_value(blocks, level);
        return blocks.product().values_in_hundredths ? value / 100 : value;
    }
    case kPacketDigitalPrecip:
        return level == kMissingPrecipitation ? kMissingF
                                              : static_cast<float>(level) * thresholds[1] + thresholds[0];
    case kPacketRaster:
        if (raster.packing == kPackingPairs) return static_cast<float>(level >> 4) * 100 + run_value;
        return run_value;
    default: return run_value;
    }
}

bool holds_pairs(const NidsPacketState &packet) {
    return packet.code == kPacketDigitalPrecip ||
           (packet.code == kPacketRaster && packet.raster.packing == kPackingPairs);
}

/// What a reader says where fewer bytes than it needs are left, because the file ends or not.
NidsRead none_left(bool cut) {
    return cut ? NidsRead::exhausted : NidsRead::none;
}

} // namespace

/// Takes the bytes of a radial or row: `length` in the file, of which the first `used` are data.
void NidsReader::begin_element(std::size_t length, std::size_t used) {
    const auto there = stream.take(length);
    packet.element = there.first(std::min(used, there.size()));
    packet.element_cut = packet.element.size() < used;
    --packet.elements_left;
}

/// Ends an element list: nothing more can be read.
NidsRead NidsReader::end_elements() {
    packet.elements_left = 0;
    packet.element = {};
    packet.element_cut = true;
    stream.exhaust();
    return NidsRead::exhausted;
}

void NidsReader::level_values(int code, std::span<float, 256> values) const {
    for (int level = 0; level < 256; ++level) {
        // Scales of zero or not-a-number from the file make no value.
        const float value = level_value(blocks, packet.raster, code, level);
        values[static_cast<std::size_t>(level)] = std::isfinite(value) ? value : kMissingF;
    }
}

NidsRead NidsReader::next_radial(float &start, float &delta) {
    if (packet.code != kPacketRadial && packet.code != kPacketDigitalRadial) return NidsRead::none;
    if (packet.elements_left <= 0) return none_left(packet.element_cut);
    ByteReader &bytes = stream.bytes();
    constexpr std::size_t kHeader = 6;
    if (bytes.remaining() < kHeader) return end_elements();
    std::size_t length = bytes.u16();
    start = static_cast<float>(bytes.i16()) / 10;
    delta = static_cast<float>(bytes.i16()) / 10;
    MESS_print(kOut4, "Length: %d\n", static_cast<int>(length));
    MESS_print(kOut4, "Start angle: %.1f\n", static_cast<double>(start));
    MESS_print(kOut4, "Angle delta: %.1f\n", static_cast<double>(delta));
    std::size_t used = length;
    if (packet.code == kPacketRadial) {
        used = length *= 2;
    } else if (length % 2 == 0 && static_cast<int>(length) == packet.radial.bins + 1) {
        --used; // an odd number of bins is padded to whole halfwords
    }
    begin_element(length, used);
    return NidsRead::done;
}

NidsRead NidsReader::next_row() {
    if (packet.code != kPacketRaster && packet.code != kPacketDigitalPrecip) return NidsRead::none;
    if (packet.elements_left <= 0) return none_left(packet.element_cut);
    ByteReader &bytes = stream.bytes();
    if (bytes.remaining() < 2) return end_elements();
    std::size_t length = bytes.u16();
    if (packet.raster.packing != kPackingPairs) length += length % 2;
    MESS_print(kOut4, "Row: %d\n", packet.raster.rows - packet.elements_left);
    MESS_print(kOut4, "Length: %d\n", static_cast<int>(length));
    MESS_print(kOut4, "POS: %d\n", static_cast<int>(bytes.offset()));
    begin_element(length, length);
    return NidsRead::done;
}

NidsRead NidsReader::next_run(NidsRun &run) {
    auto &element = packet.element;
    const std::size_t width = holds_pairs(packet) ? 2 : 1;
    if (element.size() < width) return none_left(packet.element_cut);
    const int first = number(element[0]);
    if (width == 2) {
        run.length = static_cast<float>(first);
        run.level = number(element[1]);
    } else if (packet.code == kPacketDigitalRadial) {
        run.length = 1;
        run.level = first;
    } else {
        run.length = static_cast<float>(first >> 4);
        run.level = first & 0xF;
    }
    run.value = packet.values[static_cast<std::size_t>(run.level)];
    element = element.subspan(width);
    return NidsRead::done;
}

std::span<const std::byte> NidsReader::data_bytes() {
    const auto bytes = packet.element;
    packet.element = {};
    return bytes;
}

NidsRead NidsReader::next_vector(NidsVector &vector) {
    constexpr std::size_t kSize = 8;
    if (packet.code != kPacketVector && packet.code != kPacketVectorValue) return NidsRead::none;
    if (!packet.body || packet.body->remaining() < kSize) return none_left(packet.body_cut);
    ByteReader &body = *packet.body;
    vector.value = static_cast<float>(packet.value_word);
    vector.i1 = body.i16();
    vector.j1 = body.i16();
    vector.i2 = body.i16();
    vector.j2 = body.i16();
    return NidsRead::done;
}

NidsRead NidsReader::next_wind(NidsWind &wind) {
    constexpr std::size_t kSize = 10;
    if (packet.code != kPacketWind) return NidsRead::none;
    if (!packet.body || packet.body->remaining() < kSize) return none_left(packet.body_cut);
    ByteReader &body = *packet.body;
    // A value outside the sixteen thresholds selects none: it is missing.
    wind.value = blocks.threshold_of(body.i16());
    wind.i = body.i16();
    wind.j = body.i16();
    wind.direction = body.i16();
    wind.speed = body.i16();
    MESS_print(kOut4, "WIND: %7.2f %7.2f = %7.2f %7.2f = %7.2f\n", static_cast<double>(wind.i),
               static_cast<double>(wind.j), static_cast<double>(wind.direction),
               static_cast<double>(wind.speed), static_cast<double>(wind.value));
    return NidsRead::done;
}

NidsRead NidsReader::next_text(NidsText &text) {
    if (packet.code != kPacketText && packet.code != kPacketTextValue) return NidsRead::none;
    if (!packet.body) return none_left(packet.body_cut);
    const auto characters = packet.body->take(std::min(kTextLimit, packet.body->remaining()));
    packet.body.reset();
    text.value = blocks.threshold_of(packet.value_word);
    text.i = static_cast<float>(packet.text_i);
    text.j = static_cast<float>(packet.text_j);
    text.text.clear();
    for (const std::byte byte : characters) {
        // Binary zeros fill some texts up; they end them.
        if (byte == std::byte{0}) break;
        text.text += std::to_integer<char>(byte);
    }
    MESS_print(kOut4, "TEXT: %s\n", text.text.c_str());
    return NidsRead::done;
}
