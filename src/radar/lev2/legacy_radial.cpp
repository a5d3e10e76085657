// Message type 1 (ICD 2620002, digital radar data): fixed frames with reflectivity, velocity and spectrum
// width.

#include <algorithm>

#include "lib/report/message.h"
#include "lib/text/byte_reader.h"
#include "radar/lev2/radial.h"

namespace {

/// Coded angles: eighths of 180 / 4096 degrees.
constexpr float kDegreesPerStep = 0.125F * 0.0439453125F;
constexpr int kFineVelocity = 2; ///< resolution code of 0.5 m/s
/// dBZ = (level - 66) / 2, m/s = (level - 129) / 2 or, coarse, level - 129.
constexpr float kReflectivityOffset = 66, kDopplerOffset = 129;

float km(int metres) {
    return static_cast<float>(metres) / 1000.0F;
}

Lev2Gates gates_at(std::span<const std::byte> body, int pointer, int count, float first_km, float gate_km) {
    Lev2Gates gates;
    const auto at = static_cast<std::size_t>(pointer);
    if (pointer <= 0 || count <= 0 || at >= body.size()) return gates;
    gates.count = count;
    gates.bytes = body.subspan(at, std::min(static_cast<std::size_t>(count), body.size() - at));
    gates.first_km = first_km;
    gates.gate_km = gate_km;
    return gates;
}

void trace(const Lev2Radial &r) {
    if (MESS_check(kDebug) == 0) return;
    MESS_print(kDebug, "Range: %.1f\n", static_cast<double>(r.unambiguous_range));
    MESS_print(kDebug, "Rad azimuth: %.2f\n", static_cast<double>(r.azimuth));
    MESS_print(kDebug, "Rad num: %d\n", r.azimuth_number);
    MESS_print(kDebug, "Rad status: %d\n", r.status);
    MESS_print(kDebug, "Elev ang: %.2f\n", static_cast<double>(r.elevation));
    MESS_print(kDebug, "Elev num: %d\n", r.elevation_number);
}

void trace_gates(const Lev2Radial &r, int first_refl, int first_vel, int refl_size, int vel_size) {
    if (MESS_check(kDebug) == 0) return;
    MESS_print(kDebug, "Range to first refl: %d\n", first_refl);
    MESS_print(kDebug, "Range to first vel: %d\n", first_vel);
    MESS_print(kDebug, "Refl data size: %d\n", refl_size);
    MESS_print(kDebug, "Doppler data size: %d\n", vel_size);
    MESS_print(kDebug, "Num refl gates: %d\n", r.refl_gates);
    MESS_print(kDebug, "Num vel gates: %d\n", r.vel_gates);
    MESS_print(kDebug, "Sector num within cut: %d\n", r.sector);
    MESS_print(kDebug, "Refl data ptr: %d\n", r.refl_ptr);
    MESS_print(kDebug, "Dop data ptr: %d\n", r.vel_ptr);
    MESS_print(kDebug, "Spect data ptr: %d\n", r.spect_ptr);
    MESS_print(kDebug, "Doppler res: %d\n", static_cast<int>(r.doppler_resolution));
    MESS_print(kDebug, "Coverage patt: %d\n", r.pattern);
}

} // namespace

bool LEV2_read_legacy(std::span<const std::byte> body, Lev2Radial &radial, Lev2Moments &moments) {
    ByteReader reader(body);
    radial.collection_time = reader.i32();
    radial.collection_date = reader.u16();
    radial.unambiguous_range = static_cast<float>(reader.u16()) / 10.0F;
    radial.azimuth = static_cast<float>(reader.u16()) * kDegreesPerStep;
    radial.azimuth_number = reader.u16();
    radial.status = reader.u16();
    radial.elevation = static_cast<float>(reader.i16()) * kDegreesPerStep;
    radial.elevation_number = reader.u16();
    const int first_refl = reader.i16(), first_vel = reader.i16();
    const int refl_size = reader.u16(), vel_size = reader.u16();
    radial.refl_gates = reader.u16();
    radial.vel_gates = reader.u16();
    radial.sector = reader.u16();
    reader.take(4); // calibration constant
    radial.refl_ptr = reader.u16();
    radial.vel_ptr = reader.u16();
    radial.spect_ptr = reader.u16();
    const int resolution = reader.u16();
    radial.pattern = reader.u16();
    reader.take(14);
    radial.nyquist = static_cast<float>(reader.u16()) / 100.0F;
    radial.attenuation = static_cast<float>(reader.i16()) / 1000.0F;
    radial.threshold = static_cast<float>(reader.i16()) / 10.0F;
    if (reader.failed()) return false;

    radial.azimuth_resolution = 1.0F;
    radial.doppler_resolution = static_cast<float>(resolution);
    radial.first_refl_km = km(first_refl);
    radial.first_vel_km = km(first_vel);
    radial.refl_size_km = km(refl_size);
    radial.vel_size_km = km(vel_size);
    trace(radial);
    trace_gates(radial, first_refl, first_vel, refl_size, vel_size);

    Lev2Gates &refl = moments[kLev2Reflectivity];
    refl = gates_at(body, radial.refl_ptr, radial.refl_gates, km(first_refl), km(refl_size));
    refl.offset = kReflectivityOffset;
    Lev2Gates &vel = moments[kLev2Velocity];
    vel = gates_at(body, radial.vel_ptr, radial.vel_gates, km(first_vel), km(vel_size));
    vel.scale = resolution == kFineVelocity ? 2.0F : 1.0F;
    vel.offset = kDopplerOffset;
    Lev2Gates &width = moments[kLev2Width];
    width = gates_at(body, radial.spect_ptr, radial.vel_gates, km(first_vel), km(vel_size));
    width.offset = kDopplerOffset;
    return true;
}
