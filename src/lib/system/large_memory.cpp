#include "lib/system/large_memory.h"

#include <cstdint>
#include <limits>
#include <sys/mman.h>

namespace {

constexpr std::size_t kLargePage = std::size_t{2} << 20;

} // namespace

LargeMemory::LargeMemory(std::size_t bytes) {
    if (bytes == 0 || bytes > std::numeric_limits<std::size_t>::max() - 2 * kLargePage) return;
    const bool large = bytes >= kLargePage / 2;
    // Large pages begin at multiples of their size; what is mapped beyond is never touched.
    const std::size_t mapped = large ? bytes + 2 * kLargePage : bytes;
    void *const place = mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (place == MAP_FAILED) return;
    mapped_ = {static_cast<std::byte *>(place), mapped};
    const std::size_t beyond = reinterpret_cast<std::uintptr_t>(place) % kLargePage;
    bytes_ = mapped_.subspan(large && beyond != 0 ? kLargePage - beyond : 0, bytes);
    // Only a wish: without large pages all is as well, but slower.
    if (large) madvise(bytes_.data(), (bytes + kLargePage - 1) / kLargePage * kLargePage, MADV_HUGEPAGE);
}

LargeMemory::~LargeMemory() {
    if (!mapped_.empty()) munmap(mapped_.data(), mapped_.size());
}
