#pragma once
/// The object list: a record of every kernel operation that made the picture, for replay on another device.
/// Records come from an arena of large chunks, so that recording a cell costs no allocation of its own. The
/// arena has a bound; a picture beyond it is told once and no longer kept.

#include <cstddef>
#include <span>
#include <string_view>

#include "graphics/core/types.h"

/// What a record replays; the codes are fixed.
enum class ObjectType : unsigned {
    message = 5,
    ws_viewport = 10,
    ws_window = 11,
    select_transform = 15,
    viewport = 16,
    window = 17,
    color = 20,
    clear_region = 25,
    polyline = 30,
    line_type = 33,
    line_width = 34,
    line_color = 35,
    line_print_bold = 36,
    polymarker = 40,
    marker_type = 43,
    marker_size = 44,
    marker_color = 45,
    marker_width = 46,
    text = 50,
    text_space = 53,
    text_char_space = 54,
    text_expansion = 55,
    text_color = 56,
    text_height = 57,
    text_up = 58,
    text_font = 59,
    text_align = 60,
    text_width = 61,
    fill_area = 70,
    fill_interior = 73,
    fill_style = 74,
    fill_color = 75,
    fill_print_solid = 76
};

/// What the records may take together: the busiest picture, a super-resolution product over a full map, stays
/// below it (about 45 MB).
inline constexpr std::size_t kMostObjectBytes = std::size_t{64} << 20;

struct ObjectRecord {
    ObjectType type;
    int value; ///< a count, a number or an index, by type
    std::size_t size;
    const ObjectRecord *next;
    /// The record's data, `size` bytes, aligned like the record.
    [[nodiscard]] const std::byte *data() const { return reinterpret_cast<const std::byte *>(this + 1); }
};

/// Empties count and list and switches recording on when `recording` is set, unless the environment variable
/// "vyxredraw" is "no".
void ginit_objs(bool recording);
/// Frees every record. The count of objects ever created stays.
void gclear_objs();

/// Counts an object, pumps events on every 500th, and keeps a record with a copy of `data` (bytes left unset
/// when null) when recording is on. The record's data block, or null when nothing was kept.
std::byte *gnew_obj(ObjectType type, int value, std::size_t size, const void *data);
/// The same for the kinds of data that occur.
void record_value(ObjectType type, int value);
void record_ints(ObjectType type, int first, int second);
void record_float(ObjectType type, float value);
void record_rect(ObjectType type, int value, const Rect &r);
void record_points(ObjectType type, std::span<const Point> points);
void record_text(ObjectType type, int value, const Point &position, std::string_view text);

/// Something is drawn that no object tells, until the list is emptied.
void gobj_note_incomplete();
[[nodiscard]] bool gobj_is_incomplete();

/// Sees every object as it is made, kept or not; null for none.
using ObjectWatcher = void (*)(ObjectType type, int value, std::span<const std::byte> data);
void gset_object_watcher(ObjectWatcher watcher);

/// Whether records are kept. Setting returns the previous setting.
int gset_redraw(int flag);
int gget_redraw();
/// Objects created since the workstation was opened, kept or not.
std::size_t gget_num_objs();
/// First kept record, null when there is none.
const ObjectRecord *gfirst_obj();

/// What lets a window stay responsive during a long drawing; null for none.
using EventPump = void (*)();
/// Returns the previous pump.
EventPump gset_event_pump(EventPump pump);
