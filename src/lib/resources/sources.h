#pragma once
/// What the four sources of resources share: the program's list of descriptors, its names, and storing a
/// value.
/// Sources: command_line, environment.

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lib/options/table.h"

/// A source knows the resources of one program. The position of a descriptor in the list is its record's
/// index.
struct ResourceProgram {
    std::vector<ResourceDescriptor> descriptors; ///< keyed, then positional, in list order
    std::string name;                            ///< base name of argv[0]
    std::string title;                           ///< from the "-name" option; empty when none was given
    bool path_is_option = false;                 ///< the search path was given with "-df"

    /// What stands before a resource's name in resource files and environment variables: the title, else the
    /// name; a title that begins with "+" is added to the name ("radar.title").
    [[nodiscard]] std::string qualifier() const;
};

/// The descriptor's row, or (its id printed at level kPrint) a row without a name.
ResourceDescriptor RES_descriptor_or_report(int id);

/// Sets the resource of a descriptor; a null value is a switch without value.
void RES_store(const ResourceProgram &program, std::size_t index, const char *value);

/// An option of the command line, split but not yet matched.
struct CommandOption {
    std::string_view key; ///< at most 49 characters
    const char *value;    ///< null when there is none
    bool value_is_next;   ///< the value stands in the next argument
};

/// First pass over the command line: the "name" and "default" resources and the program's title.
void RES_scan_command(std::span<const char *const> arguments, ResourceProgram &program);
/// Second pass: everything else.
void RES_read_command(std::span<const char *const> arguments, const ResourceProgram &program);

/// The environment variables of every descriptor.
void RES_read_environment(const ResourceProgram &program);

/// The resource files along the search path. Returns the directory (with "/" at its end) that stands in for
/// an unset "file_path", or an empty text.
std::string RES_read_search_path(const ResourceProgram &program);

/// Tells which resource files were read, at level kMess.
void RES_tell_settings();

/// Carries out the records that act on global state: message level, batch, help, draw, plot type, ...
void RES_convert_all();
