#pragma once
/// Inside of the image room: what the writers and readers of all formats do alike, and the readers
/// themselves.

#include <cstddef>
#include <span>
#include <string_view>

#include "graphics/images/image.h"
#include "lib/files/output_file.h"

/// False after a message when the record holds no whole picture.
[[nodiscard]] bool can_write(const char *operation, const ImageRecord &record);
/// Opens the file of an image. Not open after a message that names it and says why.
OutputFile create_image(const char *operation, std::string_view path);
/// Writes the whole content and closes. False after a message.
[[nodiscard]] bool write_and_close(const char *operation, std::string_view path, OutputFile &file,
                                   std::string_view content);
/// Closes a file that others wrote to. False after a message when a write failed.
[[nodiscard]] bool close_written(const char *operation, std::string_view path, OutputFile &file);

// Readers of the bytes of a file: 1, or 0 after a message with the record in any state.
[[nodiscard]] int GIF_read(std::span<const std::byte> bytes, ImageRecord &record);
[[nodiscard]] int PNG_read(std::span<const std::byte> bytes, ImageRecord &record);
[[nodiscard]] int XWD_read(std::span<const std::byte> bytes, ImageRecord &record);
[[nodiscard]] int IMG_read_vyx(std::span<const std::byte> bytes, ImageRecord &record);

/// False after a message when a size is out of range.
[[nodiscard]] bool check_size(const char *operation, std::int64_t width, std::int64_t height);
/// False after a message when a pixel of an 8-bit record stands for no entry of its colour table.
[[nodiscard]] bool check_indices(const char *operation, const ImageRecord &record);
