/// Geo-located truth in the pixels of the memory display.

#include <gtest/gtest.h>

#include "radar/pixel_truth.h"

namespace {

class NidsPixels : public testing::Test {
protected:
    void SetUp() override {
        SKIP_WITHOUT_REAL_FILES();
        prepare_truth("d,memory");
    }
};

TEST_F(NidsPixels, PlacesAmongTheirLikeHaveTheirColour) {
    for (const auto &[file, places] : truth_by_file()) check_places_alike(file, places);
}

TEST_F(NidsPixels, PlacesAmongOthersHaveTheirColourWhenACellIsThreePixelsWide) {
    for (const auto &[file, places] : truth_by_file()) check_places_apart(file, places);
}

} // namespace
