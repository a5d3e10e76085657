#pragma once
/// The end of a finished file, taken off so that a further drawing joins what stands before it.

#include <string>
#include <string_view>

/// True for a plain file that ends with these bytes and begins with those.
[[nodiscard]] bool file_is_finished(const std::string &name, std::string_view begin, std::string_view end);
/// True when there is no such file, or nothing in it.
[[nodiscard]] bool file_is_absent(const std::string &name);
/// Takes so many bytes off. False when the file cannot be changed, for the reason in errno.
[[nodiscard]] bool file_take_off(const std::string &name, std::size_t bytes);
