#include "lib/text/keyed_table.h"

std::uint64_t TAB_bucket(std::string_view key, std::uint64_t buckets) {
    std::uint64_t hash = 0;
    for (const char c : key) {
        // A negative character wraps round in 64 bits before the remainder is taken.
        const auto value = static_cast<std::uint64_t>(static_cast<std::int64_t>(static_cast<signed char>(c)));
        hash = (value + 257 * hash) % 35177;
    }
    return buckets < 1 ? 0 : hash % buckets;
}
