#pragma once
/// Metafiles: the package's own text, a line for each attribute and primitive in world coordinates, which the
/// kernel can read back; and CGM (see cgm.h).
/// Sources: metafile_record.

#include <cstddef>
#include <span>
#include <string_view>

#include "graphics/core/object_list.h"
#include "graphics/devices/print/number_writer.h"
#include "graphics/devices/print/print_ink.h"

extern const PrintInk kMetafileInk;

/// Writes the kept objects as a text metafile of that name, which may be "+FILE" or "|COMMAND". -1 after a
/// message when it is not whole.
int gmeta_write_objects(std::string_view name);

/// Writes the record of one object in the text form: its data as the object list keeps them. Objects that
/// have none (the boldness of printed lines, solid printing) write nothing.
void meta_write_record(PrintWriter &out, ObjectType type, int value, std::span<const std::byte> data);
