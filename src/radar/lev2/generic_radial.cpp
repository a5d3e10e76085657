// Message type 31 (ICD 2620002, generic format): data blocks found by their names, wherever the pointers
// lead.

#include <algorithm>
#include <cmath>
#include <string_view>

#include "lib/report/message.h"
#include "lib/text/byte_reader.h"
#include "radar/lev2/radial.h"

namespace {

constexpr std::size_t kNameBytes = 4;
constexpr int kMostPointers = 32; ///< files hold up to ten
constexpr int kHalfDegree = 1;    ///< code of the azimuth resolution

struct MomentName {
    std::string_view name;
    Lev2Type type;
};
constexpr std::array kMomentNames{MomentName{"DREF", kLev2Reflectivity}, MomentName{"DVEL", kLev2Velocity},
                                  MomentName{"DSW ", kLev2Width},        MomentName{"DZDR", kLev2Zdr},
                                  MomentName{"DPHI", kLev2Phi},          MomentName{"DRHO", kLev2Rho},
                                  MomentName{"DCFP", kLev2Cfp}};

std::string text_of(std::span<const std::byte> bytes) {
    std::string text;
    for (const std::byte b : bytes) text += static_cast<char>(std::to_integer<unsigned char>(b));
    return text;
}

/// A number that a scale can be; the level itself is the value when a block has none.
float usable_scale(float scale) {
    return std::isfinite(scale) && scale != 0 ? scale : 1.0F;
}

Lev2Gates read_moment(std::span<const std::byte> block) {
    constexpr std::size_t kGateNumbersAt = 8, kWordSizeAt = 19, kGatesAt = 28;
    Lev2Gates gates;
    ByteReader reader(block);
    reader.seek(kGateNumbersAt);
    const int count = reader.u16();
    gates.first_km = static_cast<float>(reader.i16()) / 1000.0F;
    gates.gate_km = static_cast<float>(reader.u16()) / 1000.0F;
    reader.seek(kWordSizeAt);
    const int bits = reader.u8();
    const float scale = reader.f32(), offset = reader.f32();
    MESS_print(kDebug, "bits: %d\n", bits);
    MESS_print(kDebug, "scale: %f\n", static_cast<double>(scale));
    MESS_print(kDebug, "offset: %f\n", static_cast<double>(offset));
    if (reader.failed() || (bits != 8 && bits != 16)) return {};
    gates.word_bits = bits;
    gates.scale = usable_scale(scale);
    gates.offset = std::isfinite(offset) ? offset : 0.0F;
    gates.count = count;
    const std::size_t there =
        std::min(static_cast<std::size_t>(count) * gates.word_bytes(), block.size() - kGatesAt);
    gates.bytes = block.subspan(kGatesAt, there / gates.word_bytes() * gates.word_bytes());
    return gates;
}

/// Above sea level. Terminal radars give it twice; of others the feed horn is so high above the ground.
float antenna_height(int site, int feed) {
    constexpr int kHighestTower = 100; ///< metres; what is more is damaged
    return static_cast<float>(feed == site || feed > kHighestTower ? site : site + feed);
}

void read_volume(std::span<const std::byte> block, Lev2Radial &radial) {
    constexpr std::size_t kPlaceAt = 8, kPatternAt = 40;
    ByteReader reader(block);
    reader.seek(kPlaceAt);
    const float lat = reader.f32(), lon = reader.f32();
    const int height = reader.i16();
    const int feed = reader.u16();
    reader.seek(kPatternAt);
    const int pattern = reader.u16();
    if (reader.failed()) return;
    radial.pattern = pattern;
    if (!(std::abs(lat) <= 90 && std::abs(lon) <= 360)) return;
    radial.lat = lat;
    radial.lon = lon;
    radial.site_height = static_cast<float>(height);
    radial.antenna_height = antenna_height(height, feed);
}

void read_elevation(std::span<const std::byte> block, Lev2Radial &radial) {
    ByteReader reader(block);
    reader.seek(6);
    const int attenuation = reader.i16();
    if (!reader.failed()) radial.attenuation = static_cast<float>(attenuation) / 1000.0F;
}

void read_radial_block(std::span<const std::byte> block, Lev2Radial &radial) {
    ByteReader reader(block);
    reader.seek(6);
    const int range = reader.u16();
    reader.seek(16);
    const int nyquist = reader.u16();
    if (reader.failed()) return;
    radial.unambiguous_range = static_cast<float>(range) / 10.0F;
    radial.nyquist = static_cast<float>(nyquist) / 100.0F;
}

void read_block_at(std::span<const std::byte> body, std::uint32_t pointer, Lev2Radial &radial,
                   Lev2Moments &moments) {
    if (pointer == 0 || pointer > body.size() || body.size() - pointer < kNameBytes) return;
    const auto block = body.subspan(pointer);
    const std::string name = text_of(block.first(kNameBytes));
    const int place = static_cast<int>(pointer);
    if (name == "RVOL") {
        radial.vol_ptr = place;
        read_volume(block, radial);
    } else if (name == "RELV") {
        radial.elev_ptr = place;
        read_elevation(block, radial);
    } else if (name == "RRAD") {
        radial.rad_ptr = place;
        read_radial_block(block, radial);
    } else {
        const auto *found = std::ranges::find(kMomentNames, name, &MomentName::name);
        if (found == kMomentNames.end()) return;
        moments[static_cast<std::size_t>(found->type)] = read_moment(block);
        if (found->type == kLev2Reflectivity) radial.refl_ptr = place;
        if (found->type == kLev2Velocity) radial.vel_ptr = place;
        if (found->type == kLev2Width) radial.spect_ptr = place;
    }
}

void describe_gates(const Lev2Moments &moments, Lev2Radial &radial) {
    const auto take = [](const Lev2Gates &gates, float &first, float &size, int &count) {
        if (gates.bytes.empty()) return;
        first = gates.first_km;
        size = gates.gate_km;
        count = gates.count;
    };
    take(moments[kLev2Reflectivity], radial.first_refl_km, radial.refl_size_km, radial.refl_gates);
    take(moments[kLev2Velocity], radial.first_vel_km, radial.vel_size_km, radial.vel_gates);
}

void trace(const Lev2Radial &r) {
    if (MESS_check(kDebug) == 0) return;
    MESS_print(kDebug, "Rad azimuth: %.2f\n", static_cast<double>(r.azimuth));
    MESS_print(kDebug, "Rad num: %d\n", r.azimuth_number);
    MESS_print(kDebug, "Rad status: %d\n", r.status);
    MESS_print(kDebug, "Elev ang: %.2f\n", static_cast<double>(r.elevation));
    MESS_print(kDebug, "Elev num: %d\n", r.elevation_number);
    MESS_print(kDebug, "Sector num within cut: %d\n", r.sector);
    MESS_print(kDebug, "Refl data ptr: %d\n", r.refl_ptr);
    MESS_print(kDebug, "Dop data ptr: %d\n", r.vel_ptr);
    MESS_print(kDebug, "Spect data ptr: %d\n", r.spect_ptr);
    MESS_print(kDebug, "Coverage patt: %d\n", r.pattern);
}

/// A number of degrees; damaged ones count as 0.
float angle(float degrees) {
    constexpr float kMost = 1000;
    return std::abs(degrees) < kMost ? degrees : 0.0F;
}

} // namespace

bool LEV2_read_generic(std::span<const std::byte> body, Lev2Radial &radial, Lev2Moments &moments) {
    ByteReader reader(body);
    radial.id = text_of(reader.take(kNameBytes));
    radial.collection_time = reader.i32();
    radial.collection_date = reader.u16();
    radial.azimuth_number = reader.u16();
    radial.azimuth = angle(reader.f32());
    radial.compression = reader.u8();
    reader.u8();
    radial.length = reader.u16();
    radial.azimuth_resolution = reader.u8() == kHalfDegree ? 0.5F : 1.0F;
    radial.status = reader.u8();
    radial.elevation_number = reader.u8();
    radial.sector = reader.u8();
    radial.elevation = angle(reader.f32());
    radial.spot_blanking = reader.u8();
    radial.indexing_mode = reader.u8();
    radial.block_count = reader.u16();
    if (reader.failed()) return false;
    const int pointers = std::min(radial.block_count, kMostPointers);
    for (int i = 0; i < pointers; ++i) {
        const std::uint32_t pointer = reader.u32();
        if (reader.failed()) break;
        read_block_at(body, pointer, radial, moments);
    }
    describe_gates(moments, radial);
    trace(radial);
    return true;
}
