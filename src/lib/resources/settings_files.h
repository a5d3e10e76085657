#pragma once
/// Entries of resource files: reading lines, matching their keys with a program's resources.

#include <string_view>

#include "lib/resources/sections.h"
#include "lib/resources/sources.h"

/// True when key and target are the same text, ignoring case, where a "*" in the key stands for any run of
/// characters.
[[nodiscard]] bool RES_key_matches(std::string_view key, std::string_view target);

/// All lines of a text that holds a resource file. Sections left open end with it; tags stay.
void RES_read_entries(std::string_view text, ResourceSections &sections, const ResourceProgram &program);
