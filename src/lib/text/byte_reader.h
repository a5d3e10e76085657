#pragma once
/// The only code that turns bytes into numbers: a cursor that cannot leave its bytes.

#include <cstddef>
#include <cstdint>
#include <span>

/// Reads big-endian numbers from a span. When the bytes run out a read gives 0 (or an empty span), the reader
/// stays where it is and failed() is true from then on.
class ByteReader {
public:
    ByteReader() = default;
    /// `base` is the offset of the first byte within the whole file, for messages.
    explicit ByteReader(std::span<const std::byte> bytes, std::size_t base = 0)
        : bytes_(bytes), base_(base) {}

    std::uint8_t u8() { return static_cast<std::uint8_t>(number<1>()); }
    std::uint16_t u16() { return static_cast<std::uint16_t>(number<2>()); }
    std::uint32_t u32() { return static_cast<std::uint32_t>(number<4>()); }
    std::int16_t i16() { return static_cast<std::int16_t>(u16()); }
    std::int32_t i32() { return static_cast<std::int32_t>(u32()); }
    /// IEEE single precision.
    float f32();

    /// The next `count` bytes; empty and failed() when fewer remain.
    std::span<const std::byte> take(std::size_t count);
    /// The next `count` bytes without moving; empty (and no failure) when fewer remain.
    [[nodiscard]] std::span<const std::byte> peek(std::size_t count) const;
    /// A reader of its own for the next `count` bytes, which are taken from this one.
    ByteReader block(std::size_t count);
    /// Moves to `position`, counted from the first byte of this reader.
    bool seek(std::size_t position);

    [[nodiscard]] bool failed() const { return failed_; }
    [[nodiscard]] std::size_t remaining() const { return bytes_.size() - position_; }
    /// Offset of the next byte within the whole file.
    [[nodiscard]] std::size_t offset() const { return base_ + position_; }

private:
    template <std::size_t Width> std::uint32_t number() {
        if (remaining() < Width) {
            failed_ = true;
            return 0;
        }
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < Width; ++i)
            value = value << 8 | std::to_integer<std::uint32_t>(bytes_[position_ + i]);
        position_ += Width;
        return value;
    }

    std::span<const std::byte> bytes_;
    std::size_t base_ = 0;
    std::size_t position_ = 0;
    bool failed_ = false;
};
