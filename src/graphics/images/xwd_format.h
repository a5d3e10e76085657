#pragma once
/// Inside of the image room: the window dump format, which its writer and its reader share. Version 7 of the
/// X Window System's dump file.

#include <cstdint>

/// Words of the header, 32 bits, the most significant byte first.
enum XwdWord : int {
    kXwdHeaderSize,
    kXwdVersion,
    kXwdPixmapFormat,
    kXwdDepth,
    kXwdWidth,
    kXwdHeight,
    kXwdXOffset,
    kXwdByteOrder,
    kXwdBitmapUnit,
    kXwdBitOrder,
    kXwdBitmapPad,
    kXwdBitsPerPixel,
    kXwdBytesPerLine,
    kXwdVisualClass,
    kXwdRedMask,
    kXwdGreenMask,
    kXwdBlueMask,
    kXwdBitsPerRgb,
    kXwdMapEntries,
    kXwdColors,
    kXwdWindowWidth,
    kXwdWindowHeight,
    kXwdWindowX,
    kXwdWindowY,
    kXwdBorder,
    kXwdWords
};
inline constexpr std::uint32_t kXwdHeaderBytes = 4 * kXwdWords;
inline constexpr std::uint32_t kXwdFileVersion = 7;
inline constexpr std::uint32_t kXwdZPixmap = 2;
inline constexpr std::uint32_t kXwdPseudoColor = 3, kXwdTrueColor = 4, kXwdDirectColor = 5;
inline constexpr std::uint32_t kXwdUnit = 32;        ///< bitmap unit and pad, bits
inline constexpr std::uint32_t kXwdColorBytes = 12;  ///< pixel, three components, flags, pad
inline constexpr std::uint8_t kXwdAllComponents = 7; ///< flags of a colour entry
