#pragma once
/// Memory for large and short-lived work, all 0 at first, in pages as large as the system has: touching a few
/// megabytes page by small page costs more than many a computation on them.

#include <cstddef>
#include <span>
#include <utility>

class LargeMemory {
public:
    LargeMemory() = default;
    /// Empty when memory is out.
    explicit LargeMemory(std::size_t bytes);
    LargeMemory(LargeMemory &&other) noexcept
        : mapped_(std::exchange(other.mapped_, {})), bytes_(std::exchange(other.bytes_, {})) {}
    LargeMemory &operator=(LargeMemory other) noexcept {
        std::swap(mapped_, other.mapped_);
        std::swap(bytes_, other.bytes_);
        return *this;
    }
    LargeMemory(const LargeMemory &) = delete;
    ~LargeMemory();

    /// Aligned for any type.
    [[nodiscard]] std::span<std::byte> bytes() const { return bytes_; }

private:
    std::span<std::byte> mapped_, bytes_;
};
