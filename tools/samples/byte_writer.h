#pragma once
/// Big-endian numbers appended to bytes.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace samples {

using Bytes = std::vector<std::byte>;

class ByteWriter {
public:
    ByteWriter &u8(unsigned value) {
        bytes_.push_back(static_cast<std::byte>(value & 0xFFU));
        return *this;
    }
    ByteWriter &u16(unsigned value) { return u8(value >> 8).u8(value); }
    ByteWriter &i16(int value) { return u16(static_cast<unsigned>(value)); }
    ByteWriter &u32(std::uint32_t value) { return u16(value >> 16).u16(value & 0xFFFFU); }
    ByteWriter &i32(std::int32_t value) { return u32(static_cast<std::uint32_t>(value)); }
    ByteWriter &text(std::string_view text) {
        for (const char c : text) u8(static_cast<unsigned char>(c));
        return *this;
    }
    ByteWriter &append(std::span<const std::byte> more) {
        bytes_.insert(bytes_.end(), more.begin(), more.end());
        return *this;
    }
    [[nodiscard]] std::size_t size() const { return bytes_.size(); }
    [[nodiscard]] const Bytes &bytes() const { return bytes_; }
    Bytes take() { return std::move(bytes_); }

private:
    Bytes bytes_;
};

} // namespace samples
