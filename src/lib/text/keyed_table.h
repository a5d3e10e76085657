#pragma once
/// Keyed hash table: records entered once under several text keys.

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

/// Bucket of a key: h = (c + 257 h) mod 35177 over its signed bytes in 64-bit arithmetic, then mod `buckets`.
std::uint64_t TAB_bucket(std::string_view key, std::uint64_t buckets);

/// A table of `Data` with `key_count` keys a record. Records keep their place in memory.
template <typename Data> class Table {
public:
    /// TAB_create. At least one bucket.
    Table(std::size_t buckets, std::size_t key_count)
        : keys_(key_count, std::vector<std::vector<Entry>>(buckets < 1 ? 1 : buckets)) {}

    /// TAB_enter: copies the data once and enters it under each key; missing keys are not entered.
    Data &enter(Data data, std::initializer_list<std::string_view> keys) {
        Data &stored = records_.emplace_back(std::move(data));
        std::size_t k = 0;
        for (std::string_view key : keys) {
            if (k >= keys_.size()) break;
            auto &buckets = keys_[k++];
            buckets[TAB_bucket(key, buckets.size())].push_back({std::string(key), &stored});
        }
        return stored;
    }
    /// TAB_search: first exact match of key `index` (from 1), or null.
    Data *search(std::size_t index, std::string_view key) {
        auto found = searches(index, key, 1);
        return found.empty() ? nullptr : found.front();
    }
    /// TAB_searches: up to `most` matches.
    std::vector<Data *> searches(std::size_t index, std::string_view key, std::size_t most) {
        std::vector<Data *> found;
        if (index < 1 || index > keys_.size()) return found;
        auto &buckets = keys_[index - 1];
        for (const Entry &entry : buckets[TAB_bucket(key, buckets.size())])
            if (found.size() < most && entry.key == key) found.push_back(entry.data);
        return found;
    }
    /// TAB_first, TAB_next: all records in insertion order.
    auto begin() { return records_.begin(); }
    auto end() { return records_.end(); }
    [[nodiscard]] std::size_t size() const { return records_.size(); }
    /// TAB_clear
    void clear() {
        records_.clear();
        for (auto &buckets : keys_)
            for (auto &bucket : buckets) bucket.clear();
    }

private:
    struct Entry {
        std::string key;
        Data *data;
    };
    std::vector<std::vector<std::vector<Entry>>> keys_;
    std::deque<Data> records_;
};
