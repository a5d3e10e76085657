#include "samples/level3.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include <bzlib.h>
#include <zlib.h>

#include "lib/system/calendar.h"
#include "lib/text/strings.h"

namespace samples {

namespace {

constexpr int kSecondsPerDay = 86400;
constexpr std::size_t kHeaderBytes = 18;
constexpr std::size_t kDescriptionBytes = 102;
constexpr std::size_t kZlibPiece = 4000; ///< decompressed bytes of one stream
constexpr std::string_view kTrailer = "\r\r\n\003";

/// Pairs of run length and level, runs of at most `longest`.
template <typename Put>
std::size_t each_run(const std::vector<std::uint8_t> &levels, std::size_t longest, Put put) {
    std::size_t runs = 0;
    for (std::size_t i = 0; i < levels.size();) {
        std::size_t end = i + 1;
        while (end < levels.size() && levels[end] == levels[i] && end - i < longest) ++end;
        put(static_cast<unsigned>(end - i), levels[i]);
        ++runs;
        i = end;
    }
    return runs;
}

Bytes nibble_runs(const std::vector<std::uint8_t> &levels) {
    ByteWriter out;
    each_run(levels, 15, [&](unsigned run, std::uint8_t level) { out.u8(run << 4 | (level & 0xFU)); });
    if (out.size() % 2 != 0) out.u8(0);
    return out.take();
}

int tenths(double degrees) {
    return static_cast<int>(std::lround(degrees * 10));
}

Bytes symbology_block(const std::vector<Bytes> &packets) {
    ByteWriter layer;
    for (const Bytes &packet : packets) layer.append(packet);
    ByteWriter out;
    out.i16(-1).u16(1).u32(static_cast<std::uint32_t>(layer.size() + 16)).u16(1);
    out.i16(-1).u32(static_cast<std::uint32_t>(layer.size())).append(layer.bytes());
    return out.take();
}

Bytes graphic_block(const std::vector<std::vector<Bytes>> &pages) {
    ByteWriter body;
    unsigned number = 0;
    for (const auto &packets : pages) {
        ByteWriter page;
        for (const Bytes &packet : packets) page.append(packet);
        body.u16(++number).u16(static_cast<unsigned>(page.size())).append(page.bytes());
    }
    ByteWriter out;
    out.i16(-1).u16(2).u32(static_cast<std::uint32_t>(body.size() + 10)).u16(number).append(body.bytes());
    return out.take();
}

void write_description(ByteWriter &out, const Level3Product &product, std::size_t symbology,
                       std::size_t graphic) {
    const auto days = static_cast<int>(product.time / kSecondsPerDay) + 1;
    const auto seconds = static_cast<std::int32_t>(product.time % kSecondsPerDay);
    out.i16(-1).i32(product.lat_millideg).i32(product.lon_millideg).i16(product.height_ft);
    out.i16(product.code).i16(product.mode).i16(product.pattern).i16(0).i16(product.volume);
    out.i16(days).i32(seconds).i16(days).i32(seconds + 60);
    out.i16(product.p[1]).i16(product.p[2]).i16(product.elevation_number).i16(product.p[3]);
    for (const unsigned word : product.thresholds) out.u16(word);
    for (std::size_t i = 4; i <= 10; ++i) out.i16(product.p[i]);
    out.i16(0)
        .u32(static_cast<std::uint32_t>(symbology / 2))
        .u32(static_cast<std::uint32_t>(graphic / 2))
        .u32(0);
}

std::string heading_lines(const Level3Product &product) {
    DateRecord date;
    const std::int64_t time = product.time;
    DATE_get_gmdate(&time, date);
    return format_text("%s %02d%02d%02d\r\r\n%s\r\r\n", product.wmo_heading.c_str(), date.day, date.hour,
                       date.minute, product.awips.c_str());
}

/// The message as several streams one after the other; each text header copy is 54 bytes, as readers expect.
Bytes zlib_streams(const Bytes &message) {
    constexpr std::size_t kTextCopy = 54;
    ByteWriter all;
    all.text(std::string(kTextCopy, ' ')).append(message);
    ByteWriter out;
    for (std::size_t at = 0; at < all.size(); at += kZlibPiece) {
        const std::size_t size = std::min(kZlibPiece, all.size() - at);
        const auto begin = all.bytes().begin() + static_cast<std::ptrdiff_t>(at);
        out.append(zlib_compressed(Bytes(begin, begin + static_cast<std::ptrdiff_t>(size))));
    }
    return out.take();
}

} // namespace

Bytes bzip2_compressed(const Bytes &bytes) {
    auto size = static_cast<unsigned>(bytes.size() + bytes.size() / 50 + 1000);
    std::vector<char> out(size);
    std::vector<char> in(bytes.size() + 1); // never without a place, also for no bytes
    std::transform(bytes.begin(), bytes.end(), in.begin(), [](std::byte b) { return static_cast<char>(b); });
    if (BZ2_bzBuffToBuffCompress(out.data(), &size, in.data(), static_cast<unsigned>(bytes.size()), 9, 0,
                                 0) != BZ_OK)
        throw std::runtime_error("bzip2 failed");
    Bytes result(size);
    std::transform(out.begin(), out.begin() + size, result.begin(),
                   [](char c) { return static_cast<std::byte>(c); });
    return result;
}

Bytes zlib_compressed(const Bytes &bytes) {
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    std::vector<Bytef> out(size);
    std::vector<Bytef> in(bytes.size());
    std::transform(bytes.begin(), bytes.end(), in.begin(),
                   [](std::byte b) { return std::to_integer<Bytef>(b); });
    if (compress(out.data(), &size, in.data(), static_cast<uLong>(in.size())) != Z_OK)
        throw std::runtime_error("zlib failed");
    Bytes result(size);
    std::transform(out.begin(), out.begin() + static_cast<std::ptrdiff_t>(size), result.begin(),
                   [](Bytef b) { return static_cast<std::byte>(b); });
    return result;
}

Bytes level3_message(const Level3Product &product) {
    const Bytes symbology = product.packets.empty() ? Bytes() : symbology_block(product.packets);
    const Bytes graphic = product.pages.empty() ? Bytes() : graphic_block(product.pages);
    const std::size_t body = kHeaderBytes + kDescriptionBytes;
    const std::size_t symbology_at = symbology.empty() ? 0 : body;
    const std::size_t graphic_at = graphic.empty() ? 0 : body + symbology.size();
    ByteWriter out;
    out.i16(product.code).i16(static_cast<int>(product.time / kSecondsPerDay) + 1);
    out.i32(static_cast<std::int32_t>(product.time % kSecondsPerDay));
    out.u32(static_cast<std::uint32_t>(body + symbology.size() + graphic.size()));
    out.i16(product.source)
        .i16(product.destination)
        .u16(2U + (symbology.empty() ? 0U : 1U) + (graphic.empty() ? 0U : 1U));
    write_description(out, product, symbology_at, graphic_at);
    out.append(symbology).append(graphic);
    return out.take();
}

Bytes level3_file(const Level3Product &product, Framing framing, Compression compression) {
    const Bytes message = level3_message(product);
    const std::size_t body = kHeaderBytes + kDescriptionBytes;
    ByteWriter out;
    if (framing == Framing::noaaport) out.text("\001\r\r\n123 \r\r\n");
    if (framing != Framing::none) out.text(heading_lines(product));
    switch (compression) {
    case Compression::none: out.append(message); break;
    case Compression::bzip2:
        out.append(std::span(message).first(body));
        out.append(
            bzip2_compressed(Bytes(message.begin() + static_cast<std::ptrdiff_t>(body), message.end())));
        break;
    case Compression::zlib: out.append(zlib_streams(message)); break;
    }
    if (framing == Framing::noaaport) out.text(kTrailer);
    return out.take();
}

Bytes radial_packet(const RadialData &data) {
    const std::size_t bins = data.radials.empty() ? 0 : data.radials.front().size();
    ByteWriter out;
    out.u16(0xAF1F).u16(0).u16(static_cast<unsigned>(bins)).u16(256).u16(280).u16(999);
    out.u16(static_cast<unsigned>(data.radials.size()));
    double start = data.start_deg;
    for (const auto &levels : data.radials) {
        const Bytes runs = nibble_runs(levels);
        out.u16(static_cast<unsigned>(runs.size() / 2))
            .i16(tenths(start))
            .i16(tenths(data.delta_deg))
            .append(runs);
        start = std::fmod(start + data.delta_deg, 360.0);
    }
    return out.take();
}

Bytes digital_radial_packet(const RadialData &data) {
    const std::size_t bins = data.radials.empty() ? 0 : data.radials.front().size();
    ByteWriter out;
    out.u16(16).u16(0).u16(static_cast<unsigned>(bins)).u16(0).u16(0).u16(1000);
    out.u16(static_cast<unsigned>(data.radials.size()));
    double start = data.start_deg;
    for (const auto &levels : data.radials) {
        out.u16(static_cast<unsigned>(levels.size() + levels.size() % 2))
            .i16(tenths(start))
            .i16(tenths(data.delta_deg));
        for (const std::uint8_t level : levels) out.u8(level);
        if (levels.size() % 2 != 0) out.u8(0);
        start = std::fmod(start + data.delta_deg, 360.0);
    }
    return out.take();
}

Bytes raster_packet(const std::vector<std::vector<std::uint8_t>> &rows, unsigned code) {
    ByteWriter out;
    out.u16(code).u16(0x8000).u16(0x00C0).u16(0).u16(0).u16(1).u16(0).u16(1).u16(0);
    out.u16(static_cast<unsigned>(rows.size())).u16(2);
    for (const auto &levels : rows) {
        const Bytes runs = nibble_runs(levels);
        out.u16(static_cast<unsigned>(runs.size())).append(runs);
    }
    return out.take();
}

Bytes precipitation_packet(const std::vector<std::vector<std::uint8_t>> &rows) {
    ByteWriter out;
    out.u16(17).u16(0).u16(0).u16(static_cast<unsigned>(rows.empty() ? 0 : rows.front().size()));
    out.u16(static_cast<unsigned>(rows.size()));
    for (const auto &levels : rows) {
        ByteWriter runs;
        each_run(levels, 255, [&](unsigned run, std::uint8_t level) { runs.u8(run).u8(level); });
        out.u16(static_cast<unsigned>(runs.size())).append(runs.bytes());
    }
    return out.take();
}

Bytes text_packet(int value, int i, int j, std::string_view text) {
    std::string even(text);
    if (even.size() % 2 != 0) even += ' ';
    ByteWriter out;
    out.u16(8).u16(static_cast<unsigned>(even.size() + 6)).i16(value).i16(i).i16(j).text(even);
    return out.take();
}

Bytes vector_packet(int value, const std::vector<Line> &lines) {
    ByteWriter out;
    out.u16(10).u16(static_cast<unsigned>(lines.size() * 8 + 2)).i16(value);
    for (const Line &line : lines) out.i16(line.i1).i16(line.j1).i16(line.i2).i16(line.j2);
    return out.take();
}

Bytes wind_packet(const std::vector<Barb> &barbs) {
    ByteWriter out;
    out.u16(4).u16(static_cast<unsigned>(barbs.size() * 10));
    for (const Barb &barb : barbs)
        out.i16(barb.value).i16(barb.i).i16(barb.j).i16(barb.direction).i16(barb.speed);
    return out.take();
}

} // namespace samples
