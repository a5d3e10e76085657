#pragma once
/// A window or pixmap of another program, which it has handed over by its numbers.

#include <optional>
#include <string_view>

#include "graphics/kernel/device.h"

extern const Device kForeignDevice;

/// What is asked of the window's owner, or done for it; the codes are fixed.
enum class PixMode : int {
    plain = 0,
    clear = 1,     ///< the drawing area is cleared before the picture
    new_frame = 2, ///< every picture gets a frame that the owner adds
    finish = 9     ///< the owner is told to end when the picture is done
};
void gset_pix_mode(PixMode mode);

/// Window parameters: "+WINDOW:DRAWABLE:WxH:COLORMAP", or "DRAWABLE:WxH:COLORMAP" in decimal, or with the
/// drawable in hexadecimal behind "0x"; what is left out at the end keeps its default, what cannot be read is
/// told. Nothing when no drawable is named.
[[nodiscard]] std::optional<ForeignPicture> parse_foreign_picture(std::string_view parameters);
