#include "lib/text/keyed_table.h"

#include <gtest/gtest.h>

TEST(Table, BucketsOfKnownKeys) {
    EXPECT_EQ(TAB_bucket("", 101), 0U);
    EXPECT_EQ(TAB_bucket("A", 35177), 65U);
    EXPECT_EQ(TAB_bucket("AB", 35177), 16771U); // 66 + 257 * 65
    EXPECT_EQ(TAB_bucket("KTLX", 997), 477U);
    EXPECT_EQ(TAB_bucket("\xE9", 35177),
              11717U); // (2^64 - 23) mod 35177, from arbitrary-precision arithmetic as the next
    EXPECT_EQ(TAB_bucket("z\351a", 997), 901U);
    EXPECT_EQ(TAB_bucket("any", 0), 0U);
}

TEST(Table, SearchesByEachKeyInTheOrderOfEntry) {
    struct City {
        int id;
    };
    Table<City> cities(3, 2); // few buckets, so that different keys meet in one
    for (int id = 0; id < 50; ++id)
        cities.enter({id}, {"city" + std::to_string(id), id % 2 == 0 ? "even" : "odd"});
    const City *seven = cities.search(1, "city7");
    ASSERT_NE(seven, nullptr);
    EXPECT_EQ(seven->id, 7);
    const auto odd = cities.searches(2, "odd", 3);
    ASSERT_EQ(odd.size(), 3U);
    EXPECT_EQ(odd[2]->id, 5);
    EXPECT_EQ(odd[0], cities.search(1, "city1")) << "one copy under all keys";
    EXPECT_EQ(cities.searches(2, "even", 1000).size(), 25U);

    EXPECT_EQ(cities.search(1, "CITY7"), nullptr) << "keys match exactly";
    EXPECT_EQ(cities.search(0, "city7"), nullptr);
    EXPECT_EQ(cities.search(3, "city7"), nullptr);

    int expected = 0;
    for (const City &city : cities) EXPECT_EQ(city.id, expected++);
    cities.clear();
    EXPECT_EQ(cities.size(), 0U);
    EXPECT_EQ(cities.search(1, "city7"), nullptr);
}

TEST(Table, MissingKeysAreNotEntered) {
    Table<int> table(0, 2);
    table.enter(5, {"only"});
    table.enter(6, {"a", "b", "too many"});
    EXPECT_EQ(*table.search(1, "only"), 5);
    EXPECT_EQ(table.search(2, ""), nullptr);
    EXPECT_EQ(*table.search(2, "b"), 6);
}
