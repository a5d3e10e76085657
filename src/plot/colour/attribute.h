#pragma once
/// Attribute strings such as "red:w2:s4".

#include <string_view>

#include "graphics/core/types.h"

void ATTRIB_init(Attribute &record);
/// Sets the fields that the text names; others are left alone.
void ATTRIB_parse(std::string_view text, Attribute &record);
/// Tells what in an attribute string of a resource means nothing.
void ATTRIB_check(std::string_view resource, std::string_view text);
/// Parses the default text, then the resource's value over it. 1 when the resource is set, else 0.
int ATTRIB_get(std::string_view resource, std::string_view default_text, Attribute &record);
/// Copies every field of `source` that is set.
void ATTRIB_update(Attribute &target, const Attribute &source);
void ATTRIB_print(const Attribute &record);
int ATTR_parse_fill_pat(std::string_view text);
[[nodiscard]] bool ATTR_is_fill_pat(std::string_view text);
int ATTR_parse_marker(std::string_view text);
/// "black" on an inverse (white-background) display, else "white": the default of texts and outlines. The
/// other of the two where the background of a window hides that one.
const char *ATTRIB_text_default();
