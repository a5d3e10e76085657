#pragma once
/// What resources exist: id, name, option, environment key, kind and help, one row each.

#include <span>
#include <string_view>

/// How a resource's text is converted.
enum class ResourceKind : int {
    switch_ = 1,
    integer = 2,
    short_integer = 3,
    long_integer = 4,
    real = 5,
    text = 6,
    text_copy = 7,
    directory = 8,
    message = 9,
    draw = 10,
    current = 11,
    hour = 12,
    region = 13,
    name_conv = 14,
    ingestor = 15,
    file_param = 16,
    device = 17,
    plot_type = 18,
    decimal = 19,
    domain = 20,
    list = 21,
    batch = 22,
    help = 23
};

struct ResourceDescriptor {
    int id;
    std::string_view name;
    std::string_view option; ///< abbreviation; empty for a positional resource
    int position;            ///< 0 keyed, 1 first positional argument, 10 all positional arguments
    std::string_view environment;
    ResourceKind kind;
    std::string_view option_text; ///< first field of the help line
    std::string_view description; ///< rest of the help line; '\n' starts a further line
};

/// The row of an id, or null.
const ResourceDescriptor *RES_descriptor(int id);

/// Ids that the program accepts as options, in help order, and as positional arguments.
std::span<const int> RES_keyed_ids();
std::span<const int> RES_positional_ids();
