#pragma once
/// Lists of fill levels as users write them: "-100:off,5:blue,red-lblue,30:white:la=hail", or a file of such
/// elements.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "graphics/core/types.h"

inline constexpr int kMaxLevels = 256;

/// One level of a list.
struct LevelElement {
    Attribute attribute;
    float value = kMissingF;  ///< kMissing when the element names none
    bool keeps_value = false; ///< an element without value leaves the level the one it had
    std::string label;        ///< at most 9 characters; empty when the value is to be formatted
};

/// Tells what in a level list of a resource, or in a line of a level file, means nothing or is not read.
void check_level_element(std::string_view resource, std::string_view element);
/// Decodes the elements of a list, at most kMaxLevels; the colour "end" ends it.
std::vector<LevelElement> decode_level_list(const std::vector<std::string> &elements);
/// One element a line; lines that begin with "@" or "#" are comments. Nothing when the file cannot be opened.
[[nodiscard]] std::optional<std::vector<LevelElement>> read_level_file(std::string_view name);
