#pragma once
/// Global integer flags through which start-up resources reach the modules that act on them, and the switches
/// of the plot components.

#include <cstdint>

/// Flag slots in use. kMissing in a slot means unset.
enum FlagId : int {
    kFlagDevice = 2,      ///< workstation type, see DeviceKind
    kFlagDomain = 5,      ///< result of the domain decoding
    kFlagPlotType = 11,   ///< plot type code, see flag_words.cpp
    kFlagInputType = 14,  ///< input type code 31 to 38
    kFlagFileParam = 15,  ///< 1 recalculate or overwrite, 2 append, 3 use existing
    kFlagRawForm = 16,    ///< 0 raw, 1 converted
    kFlagFileFormat = 17, ///< 3 the package's own format, 12 netCDF
    kFlagBatch = 19,
    kFlagHelp = 20
};
inline constexpr int kFlagCount = 30;
inline constexpr int kPlotTypeNone = 99;

/// Plot components, each switched by FLAG_setplot.
enum PlotComponent : int {
    kPlotText = 0, ///< sum of the six labels
    kPlotTextUL = 1,
    kPlotTextUC = 2,
    kPlotTextUR = 3,
    kPlotTextLL = 4,
    kPlotTextLC = 5,
    kPlotTextLR = 6,
    kPlotData = 7,
    kPlotMap = 8,
    kPlotGrid = 9,
    kPlotSummary = 10,
    kPlotBorder = 11,
    kPlotAny = 12 ///< sum of all others
};
inline constexpr int kPlotComponentCount = 13;

/// Low 32 bits of a slot; 0 for an id outside 0 to 29.
int FLAG_get(int id);
std::int64_t FLAG_getl(int id);
/// Sets a flag that has a name; this cannot fail.
void FLAG_set(FlagId id, int value);
/// 0, or -1 for an id outside 0 to 29.
[[nodiscard]] int FLAG_set(int id, int value);
[[nodiscard]] int FLAG_setl(int id, std::int64_t value);
void FLAG_reset(int value);
void FLAG_resetl(std::int64_t value);
/// 1 when the batch (help) slot is above 0.
[[nodiscard]] int FLAG_batch();
[[nodiscard]] int FLAG_help();
void FLAG_set_batch(int value);

/// Component switches; setting 12 sets 0 to 11, setting 0 sets 0 to 6; the sums 0 and 12 follow every change.
void FLAG_setplot(int index, int value);
int FLAG_getplot(int index);
void FLAG_resetplot(int value);
