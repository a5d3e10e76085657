#pragma once
/// Metafiles: the package's own text, a line for each attribute and primitive in world coordinates, which the
/// kernel can read back; and CGM (ISO 8632-3, binary encoding), which holds polylines and clips.
/// Sources: metafile_record.

#include <cstddef>
#include <span>

#include "graphics/core/object_list.h"
#include "graphics/devices/print/number_writer.h"
#include "graphics/devices/print/print_ink.h"

extern const PrintInk kMetafileInk;

/// Writes the record of one object in the text form: its data as the object list keeps them. Objects that
/// have none (the boldness of printed lines, solid printing) write nothing.
void meta_write_record(PrintWriter &out, ObjectType type, int value, std::span<const std::byte> data);
