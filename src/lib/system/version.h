#pragma once
/// The version that the program tells of itself.

inline constexpr const char *VYX_version() {
    return "5.60-LINUX-X11";
}
