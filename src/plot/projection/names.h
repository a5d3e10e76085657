#pragma once
/// Projection names: what a domain string may say, and what is printed.

#include <string_view>

/// Code of a projection name by case-insensitive prefix, first match of the table; kProjUnknown when there is
/// none.
[[nodiscard]] int DOM_proj_str(std::string_view name);
[[nodiscard]] int MAP_proj_str(std::string_view name);
/// Name as printed; "" for codes without one.
std::string_view projection_name(int code);
