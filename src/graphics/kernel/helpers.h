#pragma once
/// The thin layer over the kernel that plotting code calls.
/// Sources: helper_drawing, helper_fonts.

#include <string>
#include <string_view>

#include "graphics/core/types.h"

/// Opens the kernel and the workstation (id 1). With DeviceKind::none the user is asked for display or
/// PostScript. Failures print a message at kError and end the program with kExitGraphics.
int GPH_begin(int &ws_id, std::string_view device_spec, DeviceKind &device);
/// Closes workstation and kernel and puts the device flag back to what GPH_begin was given. -1 when what was
/// written to a file device is not complete.
[[nodiscard]] int GPH_end(int ws_id);
/// Lets the user look at the picture: only a window waits.
int GPH_hold(int flag);

/// Fractions of the view used by the plot: size and offset, at first 1, 1, 0, 0.
void GPH_set_view_size(float size_x, float size_y, float offset_x, float offset_y);
/// The used view in NDC.
Rect GPH_get_view_size();
/// Sets workstation window and kViewTransform to the whole view; first step of a new frame.
void GPH_set_maxview(int ws_id);
/// `panel`: in, margins left, right, bottom, top as fractions of the used view; out, the fitted rectangle in
/// NDC. Sets kDataTransform and kSecondTransform to it and resets the attributes. Aspect 0 means that of the
/// used view.
int GPH_panel(int ws_id, Rect &panel, float aspect);

/// Transforms: NDC itself; the view; the panel, in which a plot's data and map are drawn; the panel once
/// more, for what needs a scale of its own.
inline constexpr int kNdcTransform = 0, kViewTransform = 1, kDataTransform = 2, kSecondTransform = 3;
/// Selects the transform that coordinates are given in.
int GPH_trans(int transform);
/// Window of a transform.
Rect GPH_get_win(int transform);

int GPH_line(float x1, float y1, float x2, float y2);
int GPH_mark(float x, float y);
int GPH_rect(float x1, float y1, float x2, float y2);
int GPH_frect(float x1, float y1, float x2, float y2);
int GPH_border(const Rect &r);
int GPH_circle(float x, float y, float radius);
int GPH_fcircle(float x, float y, float radius);
int GPH_pprint(const Point &position, std::string_view text);
int GPH_pprintf(const Point &position, const char *format, ...) __attribute__((format(printf, 2, 3)));
int GPH_printf(float x, float y, const char *format, ...) __attribute__((format(printf, 3, 4)));

/// Apply an attribute record; null gives the primitive's plain defaults.
int GPH_line_attr(const Attribute *record);
int GPH_mark_attr(const Attribute *record, float scale);
/// Character height = record height x `height`, or `height` itself when the record has none.
int GPH_text_attr(const Attribute *record, float height);
int GPH_fill_attr(const Attribute *record);
int GPH_text_align(int horizontal, int vertical);
void GPH_get_text_align(int &horizontal, int &vertical);
/// Defines a colour index; a negative index asks for a free one. Returns the index.
int GPH_set_color(int index, float red, float green, float blue);
