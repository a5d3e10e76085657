#pragma once
/// The system-wide mark of a missing value or an unset field.

inline constexpr int kMissing = -9999;
inline constexpr float kMissingF = -9999.0F;

inline bool is_missing(int value) {
    return value == kMissing;
}
inline bool is_missing(float value) {
    return value == kMissingF;
}
