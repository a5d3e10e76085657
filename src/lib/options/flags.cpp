#include "lib/options/flags.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace {

struct State {
    std::array<std::int64_t, kFlagCount> slots{};
    /// The two sums are 1 like the rest until the first change of a component.
    std::array<int, kPlotComponentCount> components{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
};
State state;

bool is_slot(int id) {
    return id >= 0 && id < kFlagCount;
}
bool is_component(int index) {
    return index >= 0 && index < kPlotComponentCount;
}

} // namespace

int FLAG_get(int id) {
    return static_cast<int>(static_cast<std::uint32_t>(FLAG_getl(id)));
}

std::int64_t FLAG_getl(int id) {
    return is_slot(id) ? state.slots[static_cast<std::size_t>(id)] : 0;
}

void FLAG_set(FlagId id, int value) {
    static_assert(kFlagHelp < kFlagCount);
    state.slots[static_cast<std::size_t>(id)] = value;
}

int FLAG_set(int id, int value) {
    return FLAG_setl(id, value);
}

int FLAG_setl(int id, std::int64_t value) {
    if (!is_slot(id)) return -1;
    state.slots[static_cast<std::size_t>(id)] = value;
    return 0;
}

void FLAG_reset(int value) {
    FLAG_resetl(value);
}

void FLAG_resetl(std::int64_t value) {
    state.slots.fill(value);
}

int FLAG_batch() {
    return FLAG_get(kFlagBatch) > 0 ? 1 : 0;
}

int FLAG_help() {
    return FLAG_get(kFlagHelp) > 0 ? 1 : 0;
}

void FLAG_set_batch(int value) {
    FLAG_set(kFlagBatch, value);
}

void FLAG_setplot(int index, int value) {
    if (!is_component(index)) return;
    auto &components = state.components;
    components[static_cast<std::size_t>(index)] = value;
    if (index == kPlotAny) std::fill_n(components.begin(), kPlotAny, value);
    if (index == kPlotText) std::fill_n(components.begin() + kPlotTextUL, 6, value);
    components[kPlotText] =
        std::accumulate(components.begin() + kPlotTextUL, components.begin() + kPlotData, 0);
    components[kPlotAny] = std::accumulate(components.begin(), components.begin() + kPlotAny, 0);
}

int FLAG_getplot(int index) {
    return is_component(index) ? state.components[static_cast<std::size_t>(index)] : 0;
}

void FLAG_resetplot(int value) {
    state.components.fill(value);
}
