#pragma once
/// The resource database: named text values, set by resource files, environment and command line.

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "lib/options/table.h"

/// Value text; "" for a resource given without value, null when it was never set. Names compare exactly. The
/// text is valid until the resource is set again.
const char *RES_get(std::string_view name);

/// The value split at commas (at newlines for the list kind); empty when unset.
std::vector<std::string> RES_getvals(std::string_view name);

/// Converts the value. 1 when converted, 0 when unset or not fitting (target unchanged).
[[nodiscard]] int RES_getval(std::string_view name, int &target, ResourceKind kind = ResourceKind::integer);
[[nodiscard]] int RES_getval(std::string_view name, float &target);
/// Text kinds: text, text_copy, directory (with "/" added, "none" gives empty), device (sets the device flag
/// from the first letter; the target receives what follows the first comma).
[[nodiscard]] int RES_getval(std::string_view name, std::string &target, ResourceKind kind);

/// Sets a text resource that belongs to no descriptor.
int RES_put(std::string_view name, std::string_view value);
/// Set, or append behind a newline. `index` is the descriptor's position in the program's list or kMissing; a
/// null value is a switch without value. Return 0.
int RES_new(int index, std::string_view name, const char *value, ResourceKind kind);
int RES_append(int index, std::string_view name, const char *value, ResourceKind kind);

/// Prints every resource as "name: value" at level 8.
void RES_list();

/// Device code of a device text's first letter, see DeviceKind: p 4, h or q 5, m 3, w 6, else 1.
int RES_set_device(std::string_view text);

/// Base name of the program, and argv[0].
const std::string &RES_get_progname();
const std::string &RES_get_prog();

/// One database record, for the sources that fill it.
struct ResourceRecord {
    int index;
    std::string name;
    std::string value;
    bool has_value;
    ResourceKind kind;
};
/// All records in the order of their creation. Records keep their place in memory.
const std::deque<ResourceRecord> &RES_records();
/// Forgets every record.
void RES_clear();
/// Takes argv[0] for RES_get_prog and its base name for RES_get_progname.
void RES_set_program(std::string_view argv0);
