#pragma once
/// The drawing kernel: one workstation, six normalisation transforms, primitives with attributes. All
/// operations return 0 on success and -1 with a message (gerr_printf) when refused, unless said otherwise; a
/// refused call changes nothing. Points are world coordinates of the current transform. Conversions between
/// world, NDC and device come with core/transform.h, colour inquiries with core/color_table.h, the setting
/// that keeps what is drawn with core/object_list.h, error reports with core/error.h.
/// Sources: attributes, attribute_sets, colors, primitives, transforms, workstation, replay, argument_checks,
/// raster_ink, device_points, device, print_device, print_objects, window_device,
/// raster_device, foreign_device.

#include <span>
#include <string_view>
#include <vector>

#include "graphics/core/attribute_set.h"
#include "graphics/core/color_slots.h"
#include "graphics/core/error.h"
#include "graphics/core/object_list.h"
#include "graphics/core/transform.h"
#include "graphics/devices/common/raster_types.h"

// Opening and closing -------------------------------------------------------------

/// Opens the error channel: the named file, or standard error for an empty name. -1 when it cannot be opened.
[[nodiscard]] int gopen_gks(std::string_view file_name, int buffer_size);
int gclose_gks();
/// Opens the device: `device_spec` is "name,option,option,...". -1 when the device cannot be opened or is not
/// built.
[[nodiscard]] int gopen_ws(int ws_id, std::string_view device_spec, DeviceKind kind);
/// Closes the device. -1 when what was written to it is not complete (a write failed).
[[nodiscard]] int gclose_ws(int ws_id);
/// What is being written to a file device will not be whole: it is dropped, and closing will not end it.
void gabandon_ws();
int gactivate_ws(int ws_id);
int gdeactivate_ws(int ws_id);
int gclear_ws(int ws_id, int flag);
/// Begins a new page on a device that has pages, an empty picture in a window; attributes and transforms
/// stay. -1 where there can be no other page.
int gnew_page();
/// 1 when a workstation is open.
int gchk_graphics();

/// What a plot initialisation is for; the codes are fixed.
enum class PlotMode : int {
    none = -1,   ///< nothing is done
    window = 0,  ///< a new window
    resized = 1, ///< the window was resized
    postscript = 2,
    keep_view = 10 ///< transforms only: the device's size changed, transforms and workstation window stay
};
/// Size of a window's drawing area, pixels: of the one that is open (transforms stay, the view follows), else
/// of the next one without a geometry of its own.
void gset_win_size(int width, int height);
/// Resets the attributes and the transforms.
void ginit_plot(PlotMode mode);
/// Resets the transforms: all windows and viewports 0 to 1, transform 0 current, the whole device used.
void ginit_tran(PlotMode mode);

DeviceKind gget_win_type();
[[nodiscard]] bool gtype_is_WIN();
[[nodiscard]] bool gtype_is_WIN_PIX();
[[nodiscard]] bool gtype_is_PS();
/// A window of the process's own memory: there is nobody to look at it.
[[nodiscard]] bool gtype_is_memory();

// Transforms ----------------------------------------------------------------------

int gset_win(int transform, const Rect &world);
int gset_vp(int transform, const Rect &ndc);
int gsel_norm_tran(int transform);
int gset_ws_win(int ws, const Rect &ndc);
int gset_ws_vp(int ws, const Rect &device);
/// Window and viewport of a transform; -1 for a number outside 0 to 5.
int ginq_norm_tran(int transform, Rect &window, Rect &viewport);
/// Largest NDC view that keeps the device's aspect: the longer side is 1.
void ginq_maxview(int ws, float &xmax, float &ymax);
void ginq_disp_space_size(int ws, float &width_units, float &height_units, int &width, int &height);

// Primitives ----------------------------------------------------------------------

int gpolyline(std::span<const Point> points);
int gfill_area(std::span<const Point> points);
/// Many small areas that share corners are quicker in pixels: gfill_area of points that gto_pixels has
/// brought there gives the same picture. Only while gtakes_pixels is true: on a window that keeps no objects.
[[nodiscard]] bool gtakes_pixels();
void gto_pixels(std::span<const Point> world, std::vector<PixelPoint> &pixels);
void gfill_pixels(std::span<const PixelPoint> pixels);
/// Where points of the current transform lie on a raster, pixels: x_at + x * x_per, y_at + y * y_per; half
/// added and the fraction cut, they are those of gto_pixels.
struct PixelScale {
    float x_at = 0, x_per = 1, y_at = 0, y_per = 1;
};
PixelScale gpixel_scale();
int gpolymarker(std::span<const Point> points);
int gtext(const Point &position, std::string_view text);
/// Fills a world rectangle with the background.
int gclear_region(const Rect &world);
int gmessage(int level, std::string_view text);

// Attributes ----------------------------------------------------------------------

int gset_linetype(int type);
int gset_linewidth(float width);
int gset_line_colr_ind(int index);
int gset_line_print_bold(int factor);
int gset_marker_type(int type);
int gset_marker_size(float size);
int gset_marker_width(float width);
int gset_marker_colr_ind(int index);
int gset_text_colr_ind(int index);
int gset_text_width(float width);
int gset_char_ht(float height);
int gset_expan(float expansion);
int gset_space(float spacing);
int gset_char_space(float spacing);
int gset_text_align(int horizontal, int vertical);
int gset_char_up_vec(float x, float y);
/// Selects font `font` (from 1) of the font list; the precision is stored only.
int gset_fontprec(int font, int precision);
int gset_font_drop(int count);
int gset_fill_int_style(int style);
int gset_fill_style_ind(int index);
int gset_fill_colr_ind(int index);
int gset_fill_print_solid(int flag);
void greset_line();
void greset_marker();
void greset_text();
void greset_fill();

/// Every attribute, and the same put back: what differs is set, so that a record of the picture tells it.
AttributeSet gget_attributes();
void gset_attributes(const AttributeSet &wanted);

// Colours -------------------------------------------------------------------------

int gset_colr_rep(int ws, int index, const Rgb &color);
/// Stores a colour; a negative index asks for a near existing one or the next free one. Returns the index.
int galloc_colr(int index, const Rgb &color);
void gset_rw_colors(int flag);
void gset_local_colormap(int flag);
/// What knows colours by name; false for an unknown name.
using ColorLookup = bool (*)(std::string_view name, Rgb &color);
void gset_color_lookup(ColorLookup lookup);
/// A colour of that lookup, else one that the X server of the window knows.
[[nodiscard]] bool gnamed_color(std::string_view name, Rgb &color);
/// "none", "def" and "over": the display's own background.
[[nodiscard]] bool gis_default_background(std::string_view name);

// Object list ---------------------------------------------------------------------

/// Replays every recorded object through the kernel, with recording off.
void gredraw_objs();
/// Replays one record.
void gobj_redraw_funcs(const ObjectRecord &record);
/// Records transforms, colours and attributes as they are, so that what follows can be replayed anywhere.
void grecord_state();
/// Writes the kept objects as a text metafile: the file that "METAOUT" names, else "vyx.meta". -1 after a
/// message when there are none, or the file is not whole.
int gobj_print_meta();
