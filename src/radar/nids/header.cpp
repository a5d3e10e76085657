#include "radar/nids/header.h"

#include <bit>
#include <cmath>
#include <string_view>

#include "lib/report/message.h"
#include "radar/nids/product_reader.h"

namespace {

constexpr std::size_t kDescriptionSize = 102;
constexpr int kDivider = -1;
/// The general status message has the source of a radar but describes no product.
constexpr int kStatusMessage = 2;

/// 3600 / 1852, rounded.
constexpr float kKnotsPerMetreSecond = 1.944F;

/// Text in front of the message, told by its first two bytes: bulletin headings of the Manual on the Global
/// Telecommunication System (WMO-No. 386), with or without what networks put before them.
struct Framing {
    unsigned char first, second;
    int lines;
};
constexpr auto kFramings = std::to_array<Framing>({
    {0x01, 0x0D, 4}, // start of heading: start line, sequence number, heading, identifier
    {'*', '*', 2},   // heading and identifier
    {0x0A, '*', 2},
    {'S', 'D', 2},
    {'D', 'S', 2},
    {0x40, 0x0C, 2}, // communication control block in front of the heading
});

int text_lines(unsigned word) {
    for (const Framing &framing : kFramings)
        if (word == (unsigned{framing.first} << 8 | framing.second)) return framing.lines;
    return 0;
}

/// Words of a threshold as numbers of their own.
float signed_word(unsigned word) {
    return static_cast<float>(static_cast<std::int16_t>(word));
}

void minimum_and_step(NidsBlocks &blocks, float divisor) {
    const auto &words = blocks.description.threshold;
    blocks.thresholds[0] = signed_word(words[0]) / divisor;
    blocks.thresholds[1] = signed_word(words[1]) / divisor;
    blocks.thresholds[2] = signed_word(words[2]);
}

void single_values(NidsBlocks &blocks) {
    for (std::size_t i = 0; i < kThresholds; ++i)
        blocks.thresholds[i] = NIDS_threshold_value(blocks.description.threshold[i]);
}

void fill_thresholds(NidsBlocks &blocks) {
    const auto &words = blocks.description.threshold;
    auto &values = blocks.thresholds;
    values = {};
    switch (blocks.product().scale) {
    case NidsScale::levels: single_values(blocks); break;
    case NidsScale::minimum_step: minimum_and_step(blocks, 10); break;
    case NidsScale::minimum_step_kt:
        minimum_and_step(blocks, 10);
        for (const std::size_t i : {0U, 1U})
            if (!is_missing(values[i])) values[i] *= kKnotsPerMetreSecond;
        break;
    case NidsScale::thousandths: minimum_and_step(blocks, 1000); break;
    case NidsScale::hundredths: minimum_and_step(blocks, 100); break;
    case NidsScale::liquid:
        values[0] = NIDS_float16(words[0]);
        values[1] = NIDS_float16(words[1]);
        values[2] = signed_word(words[2]);
        values[3] = NIDS_float16(words[3]);
        values[4] = NIDS_float16(words[4]);
        break;
    case NidsScale::echo_tops:
        for (std::size_t i = 0; i < 4; ++i) values[i] = static_cast<float>(words[i]);
        break;
    case NidsScale::scale_offset:
        values[0] = NIDS_float32(words[0], words[1]);
        values[2] = NIDS_float32(words[2], words[3]);
        if (values[0] == 0) values[0] = 1;
        break;
    case NidsScale::terminal_long_range:
        single_values(blocks);
        values[0] = -32;
        values[1] = 0.5F;
        values[2] = 256;
        break;
    }
}

void trace_description(const NidsBlocks &blocks, std::size_t position) {
    const NidsDescription &d = blocks.description;
    MESS_print(kOut4, "Divider: %d\n", d.divider);
    MESS_print(kOut4, "Latitude: %d\n", d.latitude);
    MESS_print(kOut4, "Longitude: %d\n", d.longitude);
    MESS_print(kOut4, "Height: %d\n", d.height_ft);
    MESS_print(kOut4, "Code: %d\n", d.code);
    MESS_print(kOut4, "Operational Mode: %d\n", d.mode);
    MESS_print(kOut4, "Volume Coverage Pattern: %d\n", d.pattern);
    MESS_print(kOut4, "Sequence Number: %d\n", d.sequence);
    MESS_print(kOut4, "Volume Scan Number: %d\n", d.volume);
    MESS_print(kOut4, "Volume Scan date: %d\n", d.scan_days);
    MESS_print(kOut4, "Volume Scan time: %d\n", d.scan_seconds);
    MESS_print(kOut4, "Product Generation date: %d\n", d.generation_days);
    MESS_print(kOut4, "Product Generation time: %d\n", d.generation_seconds);
    MESS_print(kOut4, "Elevation: %d\n", d.elevation_number);
    for (std::size_t i = 0; i < kThresholds; ++i)
        MESS_print(kOut4, "Threshold[%d]: %d %f\n", static_cast<int>(i), static_cast<int>(d.threshold[i]),
                   static_cast<double>(blocks.thresholds[i]));
    MESS_print(kOut4, "Number of Maps: %d\n", d.maps);
    MESS_print(kOut4, "Offset to Symbolics: %d\n", static_cast<int>(d.symbology));
    MESS_print(kOut4, "Offset to Graphics: %d\n", static_cast<int>(d.graphic));
    MESS_print(kOut4, "Offset to Tabular: %d\n", static_cast<int>(d.tabular));
    MESS_print(kOut4, "POS: %d\n", static_cast<int>(position));
}

NidsDescription read_description(ByteReader &bytes) {
    NidsDescription d;
    d.divider = bytes.i16();
    d.latitude = bytes.i32();
    d.longitude = bytes.i32();
    d.height_ft = bytes.i16();
    d.code = bytes.u16();
    d.mode = bytes.u16();
    d.pattern = bytes.u16();
    d.sequence = bytes.i16();
    d.volume = bytes.u16();
    d.scan_days = bytes.u16();
    d.scan_seconds = bytes.i32();
    d.generation_days = bytes.u16();
    d.generation_seconds = bytes.i32();
    d.p[1] = bytes.i16();
    d.p[2] = bytes.i16();
    d.elevation_number = bytes.u16();
    d.p[3] = bytes.i16();
    for (std::size_t i = 0; i < kThresholds; ++i) {
        d.threshold[i] = bytes.u16();
        MESS_print(kDebug, "THRES #%d: %2X\n", static_cast<int>(i + 1), d.threshold[i]);
    }
    for (std::size_t i = 4; i < d.p.size(); ++i) d.p[i] = bytes.i16();
    d.maps = bytes.u16();
    d.symbology = bytes.u32();
    d.graphic = bytes.u32();
    d.tabular = bytes.u32();
    return d;
}

} // namespace

bool NidsReader::message_header() {
    const std::size_t start = stream.bytes().offset();
    std::int16_t word = 0;
    if (stream.read_short(word) != NidsRead::done) return false;
    const int lines = text_lines(static_cast<std::uint16_t>(word));
    if (lines == 0) {
        stream.set_message_start(start);
    } else {
        for (int i = 0; i < lines; ++i)
            if (stream.skip_line() != NidsRead::done) return false;
        NidsCompression found{};
        if (!stream.test_compression(found)) return false;
        // A message deflated as a whole brings along a copy of the text in front of it.
        constexpr std::size_t kHeadingCopy = 54;
        if (found == NidsCompression::zlib && stream.take(kHeadingCopy).size() < kHeadingCopy) return false;
        stream.set_message_start(stream.bytes().offset());
        if (stream.read_short(word) != NidsRead::done) return false;
    }
    ByteReader &bytes = stream.bytes();
    NidsMessageHeader message;
    message.code = static_cast<std::uint16_t>(word);
    message.days = bytes.u16();
    message.seconds = bytes.i32();
    message.length = bytes.i32();
    message.source = bytes.u16();
    message.destination = bytes.u16();
    message.blocks = bytes.u16();
    blocks.set_message(message);
    MESS_print(kOut4, "Message Header: %d %d\n", static_cast<int>(start), lines);
    MESS_print(kOut4, "Code: %d\n", message.code);
    MESS_print(kOut4, "Date: %d\n", message.days);
    MESS_print(kOut4, "Time: %d\n", message.seconds);
    MESS_print(kOut4, "Length: %d\n", message.length);
    MESS_print(kOut4, "Source: %d\n", message.source);
    MESS_print(kOut4, "Destination: %d\n", message.destination);
    MESS_print(kOut4, "Number of blocks : %d\n", message.blocks);
    return true;
}

bool NidsReader::product_description() {
    ByteReader &bytes = stream.bytes();
    MESS_print(kOut4, "Product Description: %d\n", static_cast<int>(bytes.offset()));
    if (bytes.remaining() < kDescriptionSize) {
        stream.exhaust();
        return false;
    }
    blocks.description = read_description(bytes);
    fill_thresholds(blocks);
    trace_description(blocks, bytes.offset());
    const bool product = blocks.message.code != kStatusMessage || blocks.message.source > kLastRadarSource;
    return blocks.description.divider == kDivider && product;
}

float NIDS_float16(unsigned word) {
    const int exponent = static_cast<int>(word >> 10 & 0x1F);
    const float fraction = static_cast<float>(word & 0x3FF) / 1024.0F;
    const float value = exponent == 0 ? 2 * fraction : std::ldexp(1 + fraction, exponent - 16);
    return (word & 0x8000) != 0 ? -value : value;
}

float NIDS_float32(unsigned high, unsigned low) {
    return std::bit_cast<float>(std::uint32_t{(high & 0xFFFF) << 16 | (low & 0xFFFF)});
}

float NIDS_threshold_value(unsigned word) {
    // The bits beside the number (ICD 2620001, product description block, data level thresholds).
    constexpr unsigned kSpecial = 0x8000, kTwentieths = 0x2000, kTenths = 0x1000, kGreater = 0x800,
                       kLess = 0x400, kNegative = 0x100;
    constexpr float kBelowAll = -100, kSpecialValue = -90, kHair = 0.01F;
    const int low = static_cast<int>(word & 0xFF);
    float value = static_cast<float>(low);
    if ((word & kSpecial) != 0) {
        MESS_print(kDebug, "THRES: %d MISS-%2X\n", low, word);
        if ((word & 3) == 0) return kBelowAll;
        value = kSpecialValue;
    }
    if ((word & kTwentieths) != 0) {
        MESS_print(kDebug, "THRES: %d - %d/20\n", low, low);
        value /= 20;
    }
    if ((word & kTenths) != 0) {
        MESS_print(kDebug, "THRES: %d - %d/10\n", low, low);
        value /= 10;
    }
    if ((word & kGreater) != 0) {
        MESS_print(kDebug, "THRES: %d - >%d\n", low, low);
        value += kHair;
    }
    if ((word & kLess) != 0) {
        MESS_print(kDebug, "THRES: %d - <%d\n", low, low);
        value -= kHair;
    }
    if ((word & kNegative) != 0) value = -value;
    return value;
}
