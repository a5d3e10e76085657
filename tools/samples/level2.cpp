#include "samples/level2.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "samples/level3.h"
#include "samples/level3_products.h"
#include "samples/scene.h"

namespace samples {

namespace {

constexpr int kSecondsPerDay = 86400;
constexpr std::size_t kChannelBytes = 12, kFrameBytes = 2420, kHeaderBytes = 16;
constexpr std::size_t kRadialsOfRecord = 120;

std::uint32_t float_bits(double value) {
    return std::bit_cast<std::uint32_t>(static_cast<float>(value));
}

unsigned coded_angle(double degrees) {
    return static_cast<unsigned>(std::lround(degrees / 180 * 4096)) * 8;
}

unsigned days(const Level2Volume &volume) {
    return static_cast<unsigned>(volume.time / kSecondsPerDay) + 1;
}

std::uint32_t milliseconds(const Level2Volume &volume) {
    return static_cast<std::uint32_t>(volume.time % kSecondsPerDay * 1000);
}

const Level2Moment *moment(const Level2Radial &radial, std::string_view name) {
    const auto found = std::ranges::find(radial.moments, name, &Level2Moment::name);
    return found == radial.moments.end() ? nullptr : &*found;
}

/// A message of a type with its header in front of the body.
Bytes message(int type, const Level2Volume &volume, const Bytes &body) {
    ByteWriter out;
    const std::size_t size = kHeaderBytes + body.size();
    for (std::size_t i = 0; i < kChannelBytes; ++i) out.u8(0);
    out.u16(static_cast<unsigned>(size / 2)).u8(0).u8(static_cast<unsigned>(type)).u16(1);
    out.u16(days(volume)).u32(milliseconds(volume)).u16(1).u16(1).append(body);
    if (type != 31)
        while (out.size() < kChannelBytes + kFrameBytes) out.u8(0);
    return out.take();
}

Bytes moment_block(const Level2Moment &moment) {
    ByteWriter out;
    out.u8('D').text(moment.name).u32(0).u16(static_cast<unsigned>(moment.levels.size()));
    out.i16(moment.first_m).i16(moment.gate_m).u16(50).u16(16).u8(0);
    out.u8(static_cast<unsigned>(moment.word_bits));
    out.u32(float_bits(moment.scale)).u32(float_bits(moment.offset));
    for (const unsigned level : moment.levels) {
        if (moment.word_bits == 16) out.u16(level);
        if (moment.word_bits != 16) out.u8(level);
    }
    while (out.size() % 4 != 0) out.u8(0);
    return out.take();
}

std::vector<Bytes> data_blocks(const Level2Volume &volume, const Level2Radial &radial) {
    ByteWriter site;
    site.text("RVOL").u16(44).u8(1).u8(0).u32(float_bits(volume.lat)).u32(float_bits(volume.lon));
    site.i16(volume.height_m).u16(20);
    for (int i = 0; i < 5; ++i) site.u32(0);
    site.u16(static_cast<unsigned>(volume.pattern)).u16(0);
    ByteWriter elevation;
    elevation.text("RELV").u16(12).i16(-12).u32(0);
    ByteWriter ray;
    ray.text("RRAD").u16(20).u16(4660).u32(0).u32(0).u16(static_cast<unsigned>(volume.nyquist_cms)).u16(0);
    std::vector<Bytes> blocks{site.take(), elevation.take(), ray.take()};
    for (const Level2Moment &moment : radial.moments) blocks.push_back(moment_block(moment));
    return blocks;
}

} // namespace

Bytes level2_header(const Level2Volume &volume) {
    ByteWriter out;
    out.text(volume.archive).u32(days(volume)).u32(milliseconds(volume)).text(volume.id);
    return out.take();
}

Bytes legacy_message(const Level2Volume &volume, const Level2Radial &radial) {
    constexpr unsigned kFirstPointer = 100;
    const Level2Moment *ref = moment(radial, "REF"), *vel = moment(radial, "VEL"),
                       *width = moment(radial, "SW ");
    unsigned at = kFirstPointer;
    const auto place = [&](const Level2Moment *m) {
        const unsigned pointer = m != nullptr ? at : 0;
        if (m != nullptr) at += static_cast<unsigned>(m->levels.size());
        return pointer;
    };
    const auto count = [](const Level2Moment *m) {
        return m != nullptr ? static_cast<unsigned>(m->levels.size()) : 0;
    };
    const Level2Moment none;
    const Level2Moment &r = ref != nullptr ? *ref : none;
    const Level2Moment &v = vel != nullptr ? *vel : none;
    ByteWriter body;
    body.u32(milliseconds(volume)).u16(days(volume)).u16(4660).u16(coded_angle(radial.azimuth));
    body.i16(radial.number)
        .i16(radial.status)
        .u16(coded_angle(radial.elevation))
        .i16(radial.elevation_number);
    body.i16(r.first_m).i16(v.first_m).i16(r.gate_m).i16(v.gate_m).u16(count(ref)).u16(count(vel)).u16(1);
    body.u32(0).u16(place(ref)).u16(place(vel)).u16(place(width)).u16(v.scale == 1 ? 4 : 2);
    body.i16(volume.pattern);
    for (int i = 0; i < 7; ++i) body.u16(0);
    body.i16(volume.nyquist_cms).i16(-12).i16(50);
    while (body.size() < kFirstPointer) body.u8(0);
    for (const Level2Moment *m : {ref, vel, width})
        if (m != nullptr)
            for (const unsigned level : m->levels) body.u8(level);
    return message(1, volume, body.take());
}

Bytes generic_message(const Level2Volume &volume, const Level2Radial &radial) {
    constexpr std::size_t kFixedBytes = 32;
    const std::vector<Bytes> blocks = data_blocks(volume, radial);
    ByteWriter body;
    body.text(volume.id).u32(milliseconds(volume)).u16(days(volume)).i16(radial.number);
    body.u32(float_bits(radial.azimuth)).u8(0).u8(0).u16(0).u8(radial.half_degree ? 1 : 2);
    body.u8(static_cast<unsigned>(radial.status)).u8(static_cast<unsigned>(radial.elevation_number)).u8(0);
    body.u32(float_bits(radial.elevation)).u8(0).u8(0).u16(static_cast<unsigned>(blocks.size()));
    std::size_t at = kFixedBytes + 4 * blocks.size();
    for (const Bytes &block : blocks) {
        body.u32(static_cast<std::uint32_t>(at));
        at += block.size();
    }
    for (const Bytes &block : blocks) body.append(block);
    if (body.size() % 2 != 0) body.u8(0);
    return message(31, volume, body.take());
}

Bytes filler_message(int type) {
    return message(type, Level2Volume{}, {});
}

Bytes level2_record(const Bytes &messages, bool negative) {
    const Bytes packed = bzip2_compressed(messages);
    const auto size = static_cast<std::int32_t>(packed.size());
    ByteWriter out;
    out.i32(negative ? -size : size).append(packed);
    return out.take();
}

Bytes level2_file(const Level2Volume &volume, Level2Form form) {
    const auto message_of = form == Level2Form::legacy ? legacy_message : generic_message;
    ByteWriter out;
    out.append(level2_header(volume));
    ByteWriter messages;
    for (const int type : {15, 0, 5, 2}) messages.append(filler_message(type));
    const auto end_record = [&] {
        if (messages.size() == 0) return;
        const Bytes bytes = messages.take();
        out.append(form == Level2Form::records ? level2_record(bytes) : bytes);
        messages = ByteWriter();
    };
    end_record();
    std::size_t count = 0;
    for (const Level2Radial &radial : volume.radials) {
        messages.append(message_of(volume, radial));
        if (++count % kRadialsOfRecord == 0) end_record();
    }
    end_record();
    return out.take();
}

namespace {

unsigned level_of(double value, double scale, double offset, unsigned most) {
    return static_cast<unsigned>(
        std::clamp(std::lround(value * scale + offset), 2L, static_cast<long>(most)));
}

/// Fills the moments of a radial gate by gate.
void fill_radial(const Scene &scene, Level2Radial &radial) {
    const double east = std::sin(radial.azimuth * 3.14159265358979 / 180);
    const double north = std::cos(radial.azimuth * 3.14159265358979 / 180);
    for (Level2Moment &m : radial.moments) {
        for (unsigned &level : m.levels) {
            const auto gate = static_cast<double>(&level - m.levels.data());
            const double range = (m.first_m + gate * m.gate_m) / 1000;
            const double x = range * east, y = range * north;
            const double dbz = scene.dbz(x, y);
            if (dbz < 5) continue;
            const auto put = [&](double value) {
                level = level_of(value, static_cast<double>(m.scale), static_cast<double>(m.offset),
                                 m.word_bits == 16 ? 1023 : 255);
            };
            if (m.name == "REF") put(dbz);
            if (m.name == "VEL") put(scene.radial_velocity(x, y));
            if (m.name == "SW ") put(2 + dbz / 30);
            if (m.name == "ZDR") put(dbz / 15 - 0.5);
            if (m.name == "PHI") put(40 + range / 3);
            if (m.name == "RHO") put(0.985 - std::max(0.0, dbz - 52) * 0.004);
        }
    }
}

} // namespace

Level2Volume level2_volume(double minutes, bool half_degree) {
    constexpr std::size_t kGates = 460;
    constexpr int kGateMetres = 500;
    const Scene scene(minutes);
    const Site site;
    Level2Volume volume;
    volume.time = kFirstVolume + static_cast<std::int64_t>(minutes * 60);
    volume.lat = static_cast<float>(site.lat);
    volume.lon = static_cast<float>(site.lon);
    volume.height_m = 220;
    const std::vector<unsigned> empty(kGates, 0);
    const auto moment_of = [&](const char *name, float scale, float offset, int bits = 8) {
        return Level2Moment{name, 250, kGateMetres, bits, scale, offset, empty};
    };
    const std::vector<Level2Moment> surveillance{moment_of("REF", 2, 66), moment_of("ZDR", 16, 128),
                                                 moment_of("PHI", 2.8361F, 2, 16),
                                                 moment_of("RHO", 300, -60.5F)};
    const std::vector<Level2Moment> doppler{moment_of("REF", 2, 66), moment_of("VEL", 2, 129),
                                            moment_of("SW ", 2, 129)};
    const int radials = half_degree ? 720 : 360;
    for (int cut = 1; cut <= 2; ++cut) {
        for (int i = 0; i < radials; ++i) {
            Level2Radial radial;
            radial.number = i + 1;
            radial.azimuth = (i + 0.5) * 360.0 / radials;
            radial.elevation_number = cut;
            radial.half_degree = half_degree;
            radial.status = i == 0 ? (cut == 1 ? 3 : 0) : 1;
            if (i == radials - 1) radial.status = cut == 2 ? 4 : 2;
            radial.moments = cut == 1 ? surveillance : doppler;
            fill_radial(scene, radial);
            volume.radials.push_back(std::move(radial));
        }
    }
    return volume;
}

} // namespace samples
