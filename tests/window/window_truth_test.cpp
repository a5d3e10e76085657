/// Geo-located truth in the pixels of a window: the memory display's tests look at every file, these at one
/// of each kind of grid.

#include <gtest/gtest.h>

#include "radar/pixel_truth.h"
#include "window/x_server.h"

namespace {

TEST(WindowTruth, PlacesHaveTheirColour) {
    SKIP_WITHOUT_REAL_FILES();
    XServer server("3200x3200x24");
    NEEDS_X_SERVER(server);
    prepare_truth("d");
    const auto files = truth_by_file();
    for (const char *const file :
         {"KLSX_SDUS53_N0RLSX_202105041639", "KLSX_SDUS53_NCRLSX_202112110215", "LSX_N0B_2022_03_30_15_40_41",
          "KLSX_SDUS53_DVLLSX_202112110152", "Level3_STL_TZL_20211211_0200.nids"}) {
        check_places_alike(file, files.at(file));
        check_places_apart(file, files.at(file));
    }
}

} // namespace
