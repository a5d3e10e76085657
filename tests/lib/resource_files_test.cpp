#include "lib/resources/settings_files.h"

#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "lib/report/message.h"
#include "lib/resources/data_files.h"
#include "lib/resources/database.h"
#include "lib/resources/start.h"
#include "lib/scratch_dir.h"

namespace {

std::string text(const char *name) {
    const char *value = RES_get(name);
    return value == nullptr ? "(unset)" : value;
}

/// The resources of a program named radar.
ResourceProgram radar() {
    ResourceProgram program;
    program.name = "radar";
    for (const int id : RES_keyed_ids()) program.descriptors.push_back(*RES_descriptor(id));
    return program;
}

ResourceSections read(std::string_view entries) {
    ResourceSections sections;
    RES_read_entries(entries, sections, radar());
    return sections;
}

} // namespace

TEST(ResourceFiles, KeysMatchByTheirStars) {
    EXPECT_TRUE(RES_key_matches("*plot_domain", "radar.plot_domain"));
    EXPECT_TRUE(RES_key_matches("*.plot_domain", "radar.plot_domain"));
    EXPECT_TRUE(RES_key_matches("radar.plot_domain", "Radar.plot_domain"));
    EXPECT_TRUE(RES_key_matches("r*.p*n", "radar.plot_domain"));
    EXPECT_TRUE(RES_key_matches("*a", "radar.a"));
    EXPECT_FALSE(RES_key_matches("plot_domain", "radar.plot_domain"));
    EXPECT_FALSE(RES_key_matches("*plot", "radar.plot_domain"));
    EXPECT_FALSE(RES_key_matches("radar.plot_domain2", "radar.plot_domain"));
    const std::string stars(200, '*');
    EXPECT_FALSE(RES_key_matches(stars + "x", std::string(200, 'y')));
}

TEST(ResourceFiles, Entries) {
    read("# *plot_domain comment\n"
         "*Plot_Domain: us and more\r\n"
         "*title \"two words\" rest\n"
         "*icon\n"
         "plot_scale 3\n"
         "other.label no\n"
         "*label found\n"
         "*my.own.thing 5\n"
         "other.thing2 6\n"
         "*geometry \"open");
    EXPECT_EQ(text("plot_domain"), "us");
    EXPECT_EQ(text("title"), "two words");
    EXPECT_EQ(text("icon"), "(unset)") << "a key without value is skipped";
    EXPECT_EQ(text("plot_scale"), "(unset)");
    EXPECT_EQ(text("label"), "found");
    EXPECT_EQ(text("color_label"), "(unset)") << "only the first name that fits is meant";
    EXPECT_EQ(text("thing"), "(unset)") << "the key has more in it than this program's name";
    EXPECT_EQ(text("thing2"), "(unset)");
    EXPECT_EQ(text("geometry"), "open");

    read("*.thing 5\nradar.region " + std::string(300, 'x'));
    EXPECT_EQ(text("thing"), "5") << "a name of no descriptor is kept when the key fits the program";
    EXPECT_EQ(text("region").size(), 249U - std::string("radar.region ").size());
}

TEST(ResourceFiles, Sections) {
    ResourceSections sections = read("DEF a\n"
                                     "IF A\n*label in_a\n"
                                     "  IF b\n*label in_b\n  ELSE\n*title not_b\n  END\n"
                                     "ELIF a\n*label second\n"
                                     "ELSE\n*label third\nDEF c\nEND\n"
                                     "UNDEF a\nUNDEF never\n"
                                     "IF a\n*region a\nELIF c\n*region c\nELSE\n*region neither\nEND\n"
                                     "IF c\n*variable never_closed\n");
    EXPECT_EQ(text("label"), "in_a");
    EXPECT_EQ(text("title"), "not_b");
    EXPECT_EQ(text("region"), "neither");
    EXPECT_EQ(text("variable"), "(unset)");
    EXPECT_TRUE(sections.active()) << "a section ends with its file";

    for (int i = 0; i < 20; ++i) sections.define("tag" + std::to_string(i));
    EXPECT_TRUE(sections.defined("TAG9"));
    EXPECT_FALSE(sections.defined("tag10"));

    testing::internal::CaptureStderr();
    read("ELIF a\nELSE\nEND\n*label after\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "DEF_get: elif without an if\n"
                                                      "DEF_get: else without an if\n"
                                                      "DEF_get: end without an if\n");
    EXPECT_EQ(text("label"), "after");

    std::string deep;
    for (int i = 0; i < 12; ++i) deep += "IF nowhere\nELSE\n";
    deep += "*label too_deep\nEND\nEND\n*label ten_deep\n";
    read(deep);
    EXPECT_EQ(text("label"), "ten_deep");
}

TEST(ResourceFiles, SearchPath) {
    const ScratchDir dir;
    dir.write("etc/vyx.cfg", "IF test\nradar.plot_domain tagged\nEND\n*label cfg\n");
    dir.write("etc/.vyxdef", "*label def\n");
    dir.write("second/.vyxdef", "*label second\n*title second\n");
    const std::string path = "+test:#7:" + dir.at("etc") + ":" + dir.at("none") + ":" + dir.at("second");
    setenv("vyxdefault", path.c_str(), 1);
    testing::internal::CaptureStderr();
    const std::array arguments{"radar"};
    RES_init(1, arguments.data(), RES_keyed_ids(), RES_positional_ids());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "VYXloop window: 7 not running or no message queue exists\n");
    EXPECT_EQ(text("plot_domain"), "tagged");
    EXPECT_EQ(text("label"), "second");
    EXPECT_EQ(text("title"), "second");
    EXPECT_TRUE(text("file_path").ends_with("/data/"))
        << "no directory given holds data: " << text("file_path");

    // An empty element, and an empty list, read the plain file of the current directory.
    dir.write(".vyxdef", "*region here\n");
    std::filesystem::current_path(dir.path());
    setenv("vyxdefault", "", 1);
    RES_init(1, arguments.data(), RES_keyed_ids(), RES_positional_ids());
    EXPECT_EQ(text("region"), "here");
}

TEST(ResourceFiles, DataThatAreNotInTheFilePathAreTakenFromBesideTheProgram) {
    const ScratchDir dir;
    const std::string own = dir.write("own/vyx.clr", "black 0 0 0\n");
    const std::string path = dir.at("own/");
    const std::array arguments{"radar", "-fp", path.c_str()};
    RES_init(static_cast<int>(arguments.size()), arguments.data(), RES_keyed_ids(), RES_positional_ids());
    EXPECT_EQ(FILE_find_data("vyx.clr"), own);
    EXPECT_TRUE(FILE_find_data("states.map").ends_with("/data/states.map")) << FILE_find_data("states.map");
    EXPECT_EQ(FILE_find_data("none.map"), dir.at("own/none.map"));
    EXPECT_EQ(FILE_find_data("./states.map"), "./states.map");
    EXPECT_TRUE(FILE_open_data("vyx.reg"));
    EXPECT_FALSE(FILE_open_data("-"));
}

TEST(ResourceFiles, DirectoryWithTheDataStandsInForTheFilePath) {
    const ScratchDir dir;
    dir.write("vyx.cfg", "*label here\n");
    dir.write("vyx.clr", "black 0 0 0\n");
    std::filesystem::current_path(dir.path());
    const std::array arguments{"radar"};
    RES_init(1, arguments.data(), RES_keyed_ids(), RES_positional_ids());
    EXPECT_EQ(text("label"), "here");
    EXPECT_EQ(text("file_path"), "./");

    setenv("vyxfile", "told", 1);
    RES_init(1, arguments.data(), RES_keyed_ids(), RES_positional_ids());
    EXPECT_EQ(text("file_path"), "told");
}
