#include "lib/system/memory_reserve.h"

#include <cstdlib>
#include <memory>
#include <new>

namespace {

/// Messages, buffers of the files that are closed, the end of a page.
constexpr std::size_t kReserve = std::size_t{1} << 20;

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};

struct State {
    std::unique_ptr<void, Free> reserve;
};
State state;

void give_reserve() {
    state.reserve.reset();
    throw std::bad_alloc();
}

} // namespace

void VYX_reserve_memory() {
    // Not by new, which would call the handler.
    if (state.reserve == nullptr) state.reserve.reset(std::malloc(kReserve));
    std::set_new_handler(give_reserve);
}
