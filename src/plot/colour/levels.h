#pragma once
/// Level values and the fill attributes that a value gets. Every data plotter looks its colours up here.

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "graphics/core/types.h"
#include "lib/resources/list_words.h"
#include "plot/colour/level_list.h"

enum ContourType : int {
    kContourLines = 12,
    kContourFill = 15,
    kContourFillLines = 16,
    kContourValues = 17,
    kContourFillOld = 52,
    kContourNone = 99
};
inline constexpr int kBarOff = -2; ///< colour bar switched off by the user

void CONT_init();
/// Ignored (-1) once fill colours have been chosen. Copies until kMissing or the end.
int CONT_set_values(std::span<const float> values);
void CONT_reset_values();
std::span<const float> CONT_get_values();
int CONT_get_num_cont();
/// The explicit label of a level; empty when its value is to be formatted.
std::string CONT_get_label(int level);

/// Chooses fill colours from a list or level file; with flag 0 the resource "color_fill" replaces it. -1 when
/// already chosen, else 0 (an unreadable level file leaves them unchosen).
int CONT_set_fill_colors(std::string_view spec, int flag);
void CONT_reset_fill_set();
void CONT_set_fill_pat(int pattern);
int CONT_get_fill_pat();
int CONT_get_color_num();

void CONT_set_base(float value);
float CONT_get_base();
void CONT_set_intrvl(float value);
float CONT_get_intrvl();
void CONT_set_range(float max, float min);
void CONT_get_range(float &max, float &min);
void CONT_set_bar_range(float max, float min);
void CONT_get_bar_range(float &max, float &min);
/// Values below are not drawn by levels without values of their own; kMissing, as after
/// CONT_reset_fill_set: no floor.
void CONT_set_floor(float value);
/// kMissing leaves a cut-off unchanged.
void CONT_set_cutoff(float max, float min);
void CONT_get_cutoff(float &max, float &min);
void CONT_set_type(int type);
int CONT_get_type();
void CONT_set_dash(int rule);
int CONT_get_dash();
void CONT_set_skip(int x, int y);
struct GridSkip {
    int x, y;
};
GridSkip CONT_get_skip();
void CONT_set_plot_offset(float x, float y);

/// How contour lines are labelled, and what is drawn with them.
struct LineLook {
    int skip = 2;   ///< every so many levels have labels; 0: none
    int radius = 2; ///< grid lengths between a label and the next, at least
    float x_spacing = kMissingF, y_spacing = kMissingF; ///< of labels, hundredths of the plot's height
    bool rotated = false;                               ///< labels lie along their lines
    bool grid = false;                                  ///< grid points are marked
    bool over_map = false;                              ///< the map's overlay is drawn first
};
const LineLook &CONT_get_line_look();

/// Fill attributes of a value; colour kColorBackground: draw nothing.
void CONT_get_fill_attrib(Attribute &record, float value);
void CONT_get_fill_attrib_ind(int index, Attribute &record);
/// Position of a value among the fill attributes when levels are base + k x interval; nothing without colours
/// or interval.
[[nodiscard]] std::optional<std::size_t> CONT_level_index(float value, float base, float interval);
/// Applies the resource "plot_param".
void CONT_param_decode();
/// The words that it takes.
std::span<const WordRule> CONT_param_words();
/// A rounded interval for about `count` levels.
float CONT_calc_intrvl(int count, float max, float min);

/// Colour bar switch: above 0 draw, kBarOff the user has switched it off.
void CONT_set_bar(int value);
int CONT_get_bar();
