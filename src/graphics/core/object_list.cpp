#include "graphics/core/object_list.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>
#include <vector>

#include "graphics/core/error.h"
#include "lib/system/large_memory.h"
#include "lib/text/strings.h"

namespace {

constexpr std::size_t kChunkBytes = std::size_t{2} << 20; // a large page
constexpr std::size_t kObjectsPerPump = 500;

struct State {
    std::vector<LargeMemory> chunks;
    std::size_t used = 0;     ///< bytes taken of the last chunk
    std::size_t capacity = 0; ///< size of the last chunk
    std::size_t taken = 0;    ///< bytes of all records
    ObjectRecord *first = nullptr;
    ObjectRecord *last = nullptr;
    std::size_t count = 0;
    bool recording = false;
    bool incomplete = false; ///< pixels were drawn that no record tells
    EventPump pump = nullptr;
    ObjectWatcher watcher = nullptr;
} state;

std::size_t rounded_up(std::size_t size) {
    constexpr std::size_t kAlign = alignof(ObjectRecord);
    return (size + kAlign - 1) / kAlign * kAlign;
}

/// Room in the arena; null when memory is out.
std::byte *take(std::size_t size) {
    const std::size_t rounded = rounded_up(size);
    if (rounded > state.capacity - state.used) {
        const std::size_t bytes = std::max(kChunkBytes, rounded);
        LargeMemory chunk(bytes);
        if (chunk.bytes().empty()) return nullptr;
        state.chunks.push_back(std::move(chunk));
        state.capacity = bytes;
        state.used = 0;
    }
    std::byte *const block = state.chunks.back().bytes().data() + state.used;
    state.used += rounded;
    state.taken += rounded;
    return block;
}

/// A list with a hole is of no use: what was kept is freed, and one message tells of it.
void give_up() {
    gclear_objs();
    state.recording = false;
}

/// A record's place; null after a message when there is none.
std::byte *place_of(std::size_t size) {
    if (rounded_up(size) > kMostObjectBytes - state.taken) {
        gerr_printf("newobj", "the picture takes more than %zu MB and is not kept for a replay\n",
                    kMostObjectBytes >> 20);
        give_up();
        return nullptr;
    }
    std::byte *const place = take(size);
    if (place == nullptr) {
        gerr_printf("newobj", "malloc error\n");
        give_up();
    }
    return place;
}

} // namespace

void ginit_objs(bool recording) {
    gclear_objs();
    state.count = 0;
    const char *const wish = std::getenv("vyxredraw");
    state.recording = recording && (wish == nullptr || stricmp(wish, "no") != 0);
}

void gclear_objs() {
    state.chunks.clear();
    state.used = state.capacity = state.taken = 0;
    state.first = state.last = nullptr;
    state.incomplete = false;
}

std::byte *gnew_obj(ObjectType type, int value, std::size_t size, const void *data) {
    ++state.count;
    if (state.count % kObjectsPerPump == 0 && state.pump != nullptr) state.pump();
    if (state.watcher != nullptr && (data != nullptr || size == 0))
        state.watcher(type, value, {static_cast<const std::byte *>(data), size});
    if (!state.recording) return nullptr;
    std::byte *const place = place_of(sizeof(ObjectRecord) + size);
    if (place == nullptr) return nullptr;
    auto *const record = new (place) ObjectRecord{type, value, size, nullptr};
    std::byte *const block = place + sizeof(ObjectRecord);
    if (data != nullptr && size > 0) std::memcpy(block, data, size);
    if (state.last == nullptr)
        state.first = record;
    else
        state.last->next = record;
    state.last = record;
    return block;
}

void record_value(ObjectType type, int value) {
    gnew_obj(type, value, 0, nullptr);
}
void record_ints(ObjectType type, int first, int second) {
    const std::array<int, 2> pair{first, second};
    gnew_obj(type, 1, sizeof pair, pair.data());
}

void record_float(ObjectType type, float value) {
    gnew_obj(type, 1, sizeof value, &value);
}
void record_rect(ObjectType type, int value, const Rect &r) {
    gnew_obj(type, value, sizeof r, &r);
}

void record_points(ObjectType type, std::span<const Point> points) {
    gnew_obj(type, static_cast<int>(points.size()), points.size_bytes(), points.data());
}

void record_text(ObjectType type, int value, const Point &position, std::string_view text) {
    if (state.watcher != nullptr) {
        std::vector<std::byte> data(sizeof position + text.size());
        std::memcpy(data.data(), &position, sizeof position);
        std::copy_n(reinterpret_cast<const std::byte *>(text.data()), text.size(),
                    data.begin() + sizeof position);
        state.watcher(type, value, data);
    }
    std::byte *const block = gnew_obj(type, value, sizeof position + text.size(), nullptr);
    if (block == nullptr) return;
    std::memcpy(block, &position, sizeof position);
    std::copy_n(reinterpret_cast<const std::byte *>(text.data()), text.size(), block + sizeof position);
}

void gobj_note_incomplete() {
    state.incomplete = true;
}

bool gobj_is_incomplete() {
    return state.incomplete;
}

void gset_object_watcher(ObjectWatcher watcher) {
    state.watcher = watcher;
}

int gset_redraw(int flag) {
    const int previous = gget_redraw();
    state.recording = flag != 0;
    return previous;
}

int gget_redraw() {
    return state.recording ? 1 : 0;
}
std::size_t gget_num_objs() {
    return state.count;
}
const ObjectRecord *gfirst_obj() {
    return state.first;
}
EventPump gset_event_pump(EventPump pump) {
    return std::exchange(state.pump, pump);
}
