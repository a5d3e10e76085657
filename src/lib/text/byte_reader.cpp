#include "lib/text/byte_reader.h"

#include <bit>

float ByteReader::f32() {
    return std::bit_cast<float>(u32());
}

std::span<const std::byte> ByteReader::peek(std::size_t count) const {
    if (count > remaining()) return {};
    return bytes_.subspan(position_, count);
}

std::span<const std::byte> ByteReader::take(std::size_t count) {
    if (count > remaining()) {
        failed_ = true;
        return {};
    }
    const auto taken = bytes_.subspan(position_, count);
    position_ += count;
    return taken;
}

ByteReader ByteReader::block(std::size_t count) {
    const std::size_t start = offset();
    ByteReader inner(take(count), start);
    inner.failed_ = inner.bytes_.size() != count;
    return inner;
}

bool ByteReader::seek(std::size_t position) {
    if (position > bytes_.size()) {
        failed_ = true;
        return false;
    }
    position_ = position;
    return true;
}
