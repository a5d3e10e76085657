/// The city database: entries, lookups, the stored table and its selection.

#include <string>

#include <gtest/gtest.h>

#include "lib/resources/database.h"
#include "lib/scratch_dir.h"
#include "plot/places/city.h"
#include "plot/places/city_selection.h"

namespace {

constexpr const char *kCities = "St._Louis            MO US KSTL      *3* 38.75 -90.37 172 72434 7\n"
                                "\n"
                                "Milwaukee            WI US MKXA      2 42.95 -87.90 211 72640 0\n"
                                "Sullivan             WI US mkx       5* 42.97 -88.55 9999 99999 0\n"
                                "Twice                MO US KSTL      1 10 10 0 1 0\n"
                                "Buoy                 -- B_ ---       4 39 -91 0 720 0\n"
                                "Nowhere              TX US\n"
                                "Far_East             -- JP RJTT      0 35.5 139.8 8 47671";

/// Databases in a directory that "file_path" names.
class City : public testing::Test {
protected:
    City() {
        RES_put("file_path", files.path());
        files.write("sao.cty", kCities);
    }
    static std::string name_of(const char *id) {
        CityEntry entry;
        return CTY_get(nullptr, id, entry) == 1 ? entry.name : "";
    }
    /// Names of what a selection stores, in the order of the file.
    static std::string stored(const char *identifier, int priority) {
        RES_put("identifier", identifier);
        PlotDomain domain;
        domain.proj = kProjLatLon;
        domain.clat = 40;
        domain.clon = -90;
        domain.plat = 0;
        domain.plon = -90;
        domain.dx = domain.dy = 1;
        domain.nx = domain.ny = 20;
        EXPECT_GT(CTY_store(nullptr, 1, domain, priority), 0);
        std::string names;
        CityStation station;
        for (const char *id : {"KSTL", "MKXA", "mkx", "---", "RJTT"})
            if (CTY_search(id, station) == 1) names += station.entry.name + " ";
        return names;
    }
    ScratchDir files;
};

} // namespace

TEST_F(City, DecodesEntries) {
    int count = 0;
    const int fd = CTY_open_file(nullptr, count);
    ASSERT_GT(fd, 0);
    EXPECT_EQ(count, static_cast<int>(std::string(kCities).size() / 59));
    CityEntry entry;
    EXPECT_EQ(CTY_read(fd, entry), 10);
    EXPECT_EQ(entry.name, "St._Louis");
    EXPECT_EQ(entry.state + entry.country + entry.id, "MOUSKSTL");
    EXPECT_EQ(entry.priority, 3);
    EXPECT_EQ(entry.star_before, '*');
    EXPECT_EQ(entry.star_after, '*');
    EXPECT_FLOAT_EQ(entry.lon, -90.37F);
    EXPECT_EQ(entry.wmo, 72434);
    EXPECT_EQ(entry.extra, 7);
    (void)CTY_read(fd, entry);
    EXPECT_EQ(CTY_read(fd, entry), 10);
    EXPECT_EQ(entry.elevation, kMissingF);
    EXPECT_EQ(entry.priority, 5);
    EXPECT_EQ(entry.star_before, ' ');
    EXPECT_EQ(entry.star_after, '*');
    EXPECT_EQ(CTY_rewind(fd), 0);
    EXPECT_EQ(CTY_read(fd, entry), 10);
    EXPECT_EQ(entry.id, "KSTL");
    int read = 1;
    while (CTY_read(fd, entry) > 0) ++read;
    EXPECT_EQ(read, 7);
    EXPECT_EQ(CTY_close(fd), 0);
    EXPECT_EQ(CTY_close(fd), -1);
    EXPECT_EQ(CTY_read(fd, entry), -1);
    EXPECT_EQ(CTY_open(files.at("sao.cty"), 2, 0), -1);
}

TEST_F(City, FindsByIdentifierNameAndNumber) {
    EXPECT_EQ(name_of("MKX"), "Sullivan"); // case aside exact: not MKXA
    EXPECT_EQ(name_of("kstl"), "St._Louis");
    EXPECT_EQ(name_of("milwaukee"), "Milwaukee");
    EXPECT_EQ(name_of("72640"), "Milwaukee");
    EXPECT_EQ(name_of("00720"), "Buoy");
    EXPECT_EQ(name_of("0720"), "");
    EXPECT_EQ(name_of("720"), "");
    EXPECT_EQ(name_of(""), "");
    float lat = 1, lon = 2;
    EXPECT_EQ(CTY_get_loc(nullptr, "Nowhere", lat, lon), 0); // has no position
    EXPECT_EQ(lat, 1);
    EXPECT_EQ(CTY_get_loc("sao.cty", "RJTT", lat, lon), 1);
    EXPECT_FLOAT_EQ(lon, 139.8F);
}

TEST_F(City, MissingDatabases) {
    testing::internal::CaptureStderr();
    float lat = 0, lon = 0;
    EXPECT_EQ(CTY_get_loc("none.cty", "KSTL", lat, lon), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "CTY_open_file: Database file not found: " + files.at("none.cty") + "\n");
    RES_put("city_file", "none");
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    EXPECT_EQ(CTY_get_loc("sao.cty", "KSTL", lat, lon), 0);
    EXPECT_EQ(CTY_store(nullptr, 1, PlotDomain{}, 10), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr() + testing::internal::GetCapturedStdout(), "");
    files.write("other.cty", "Elsewhere XX US KSTL 1 1 2 3 4 5\n");
    RES_put("city_file", "other.cty");
    EXPECT_EQ(name_of("KSTL"), "Elsewhere");
}

TEST_F(City, StoresWhatIsInsideImportantAndSelected) {
    const std::string inside = "St._Louis Milwaukee Sullivan Buoy ";
    EXPECT_EQ(stored("all", 10), inside);
    EXPECT_EQ(stored("", 10), inside);
    EXPECT_EQ(stored("all", 3), "St._Louis Milwaukee ");
    EXPECT_EQ(stored("ST=WI", 10), "Milwaukee Sullivan ");
    EXPECT_EQ(stored("ST=WI,st=mo", 10), "St._Louis Milwaukee Sullivan ");
    EXPECT_EQ(stored("ST=WI,P<5", 10), "Milwaukee ");
    EXPECT_EQ(stored("P>2,P<5", 10), "St._Louis Buoy ");
    EXPECT_EQ(stored("ID=mk*", 10), "Milwaukee Sullivan ");
    EXPECT_EQ(stored("KSTL,mkx", 10), "St._Louis Sullivan ");
    EXPECT_EQ(stored("Name=Buoy", 10), "Buoy ");
    EXPECT_EQ(stored("WMO=72000:73000", 10), "St._Louis Milwaukee ");
    EXPECT_EQ(stored("Lat=38.75", 10), "St._Louis ");
    EXPECT_EQ(stored("Lat=:39,Lon=-90.5:", 10), "St._Louis ");
    EXPECT_EQ(stored("Elev=100:", 10), "St._Louis Milwaukee ");
    EXPECT_EQ(stored("RA<150", 10), "St._Louis Buoy ");
    // As far to the west as to the north: a degree of longitude is shorter.
    PlotDomain north;
    north.clat = 60;
    north.clon = 0;
    CityEntry east, pole;
    east.lat = 60;
    east.lon = 1;
    pole.lat = 61;
    pole.lon = 0;
    EXPECT_TRUE(CitySelection({"RA<60"}, north).passes(east));
    EXPECT_FALSE(CitySelection({"RA<54"}, north).passes(east));
    EXPECT_FALSE(CitySelection({"RA<60"}, north).passes(pole));
    EXPECT_EQ(stored("CN=CA", 10), "");
    EXPECT_EQ(stored("Lat=north", 10), "");
}

TEST_F(City, StoredStationsAreNamedByTheIdentifierType) {
    PlotDomain everywhere;
    CityStation station;
    const auto name = [&](int type, const char *key) {
        CTY_set_id_type(type);
        EXPECT_GT(CTY_store(nullptr, 2, everywhere, 10), 0);
        return CTY_search(key, station) == 1 ? station.name : "";
    };
    EXPECT_EQ(name(0, "72434"), "KSTL");
    EXPECT_EQ(station.x, 38.75F);
    EXPECT_EQ(station.priority, 3);
    EXPECT_EQ(name(0, "b00720"), "b00720");
    EXPECT_EQ(name(1, "72434"), "72434");
    EXPECT_EQ(name(1, "99999"), "mkx");
    EXPECT_EQ(name(2, "H2434"), "KSTL"); // a coded number
    EXPECT_EQ(name(0, "Z9"), "");
}

TEST(CityData, ShippedDatabasesKnowStationsAndRadars) {
    RES_put("file_path", VYX_SOURCE_DIR "/data");
    float lat = 0, lon = 0;
    for (const char *id : {"KSTL", "KORD", "KLSX", "72434"})
        EXPECT_EQ(CTY_get_loc("sao.cty", id, lat, lon), 1) << id;
    for (const char *id : {"KLSX", "LSX"}) {
        EXPECT_EQ(CTY_get_loc("rad.cty", id, lat, lon), 1) << id;
        EXPECT_NEAR(lat, 38.699, 0.01);
        EXPECT_NEAR(lon, -90.683, 0.01);
    }
}
