/// Geo-located truth in the pixels of the memory display.

#include <gtest/gtest.h>

#include "radar/pixel_truth.h"

namespace {

constexpr float kKmPerDegree = 111.2F;

class NidsPixels : public testing::Test {
protected:
    void SetUp() override {
        SKIP_WITHOUT_REAL_FILES();
        FLAG_resetplot(1);
        FLAG_set(kFlagDevice, 1);
        RES_put("plot_param", "full,nobar");
        RES_put("device", "d,memory");
        RES_put("file_path", std::string(VYX_SOURCE_DIR) + "/data");
    }
    static void set_side(float pixels) {
        const std::string side = std::to_string(static_cast<int>(pixels));
        RES_put("geometry", side + "x" + side);
    }
    static std::string path_of(const std::string &file) { return shared_dir() + "/samples/level3/" + file; }
};

/// The whole picture, a pixel half a bin wide where memory allows; and the middle of it enlarged, where bins
/// are narrower than such a pixel.
TEST_F(NidsPixels, PlacesAmongTheirLikeHaveTheirColour) {
    constexpr float kMostPixels = 3000;
    constexpr float kNarrowPixels = 40; ///< range at which three radials are two pixels wide
    for (const auto &[file, places] : truth_by_file()) {
        std::vector<TruthPlace> alike;
        std::ranges::copy_if(places, std::back_inserter(alike), &TruthPlace::same);
        ASSERT_EQ(NIDS_open_file(path_of(file)), 1);
        const NidsInfo info = NIDS_get_info();
        const float reach = std::ranges::max(alike, {}, &TruthPlace::range_km).range_km;
        const float side = std::clamp(4.4F * reach / alike[0].bin_km, 600.0F, kMostPixels);
        set_side(side);
        const auto middle = std::ranges::partition(
            alike, [&](const TruthPlace &p) { return p.range_km > kNarrowPixels * 2.9F * reach / side; });
        std::vector<TruthPlace> near(middle.begin(), middle.end());
        alike.resize(alike.size() - near.size());
        const float degrees = 2.9F * reach / kKmPerDegree;
        int looked = 0, wrong = 0;
        for (const auto &[part, width] : {std::pair{&alike, degrees}, std::pair{&near, degrees / 4}}) {
            if (part->empty()) continue;
            const PlotDomain domain = square_domain(info.domain.clat, info.domain.clon, width);
            const TruthCount count = look_at_pixels(path_of(file), domain, *part);
            EXPECT_EQ(count.looked, static_cast<int>(part->size())) << file;
            looked += count.looked;
            wrong += count.wrong;
        }
        EXPECT_LE(wrong * 100, looked) << file << ": " << wrong << " of " << looked;
    }
}

/// A picture whose pixels are a third of a bin, around the densest of the other places. Nearer to the radar
/// its bins are narrower than that.
TEST_F(NidsPixels, PlacesAmongOthersHaveTheirColourWhenACellIsThreePixelsWide) {
    constexpr float kSide = 1800;
    constexpr int kHalfDegreeProduct = 153;
    set_side(kSide);
    for (const auto &[file, places] : truth_by_file()) {
        std::vector<TruthPlace> others;
        std::ranges::copy_if(places, std::back_inserter(others), [](const TruthPlace &p) {
            const float bins_as_wide_as_long = p.code == kHalfDegreeProduct ? 115 : 58;
            return !p.same && p.range_km > bins_as_wide_as_long * p.bin_km;
        });
        if (others.empty()) continue;
        const float degrees = kSide * others[0].bin_km / 3 / kKmPerDegree;
        const auto near = [&](const TruthPlace &middle) {
            return std::ranges::count_if(others, [&](const TruthPlace &p) {
                return std::fabs(p.lat - middle.lat) < degrees / 2 &&
                       std::fabs(p.lon - middle.lon) < degrees / 2;
            });
        };
        const TruthPlace middle = *std::ranges::max_element(others, {}, near);
        const TruthCount count =
            look_at_pixels(path_of(file), square_domain(middle.lat, middle.lon, degrees), others);
        EXPECT_GT(count.looked, 3) << file;
        EXPECT_LE(count.wrong * 100, count.looked) << file << ": " << count.wrong << " of " << count.looked;
    }
}

} // namespace
