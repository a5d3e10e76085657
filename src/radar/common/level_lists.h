#pragma once
/// Level lists, values and colours, that radar formats share.

#include <string_view>

/// Velocities and spectrum widths, in whatever unit the format draws them.
inline constexpr std::string_view kDopplerLevels =
    "-70:blue,-63:lblue,-49:cyan,-35:lcyan,-25:green,-19:lgreen,-9:dgray,0:off,1:lgray,10:yellow,20:brown,"
    "26:lred,36:red,50:lmagenta,64:magenta";

/// The six intensities of radar summaries, levels 1 to 6, with the base and interval of kSummaryBase.
inline constexpr std::string_view kSummaryLevels = "None,Blue,Cyan,Green,Yellow,Red,Magenta";
inline constexpr float kSummaryBase = -0.5F, kSummaryInterval = 1.0F;
inline constexpr int kSummaryTop = 6; ///< the highest level that is drawn

/// Reflectivity, dBZ in steps of 5; what has no echo is -100.
inline constexpr std::string_view kReflectivityLevels =
    "-100:off,5:blue,10:lblue,15:cyan,20:lcyan,25:green,30:lgreen,35:brown,40:yellow,45:red,50:lred,"
    "55:magenta,60:lmagenta,65:dgray,70:lgray,75:white";
