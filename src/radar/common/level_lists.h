#pragma once
/// Level lists, values and colours, that radar formats share.

#include <string_view>

/// Velocities and spectrum widths, in whatever unit the format draws them.
inline constexpr std::string_view kDopplerLevels =
    "-70:blue,-63:lblue,-49:cyan,-35:lcyan,-25:green,-19:lgreen,-9:dgray,0:off,1:lgray,10:yellow,20:brown,"
    "26:lred,36:red,50:lmagenta,64:magenta";
