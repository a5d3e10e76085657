// Level II volumes through the whole program: pages, tables of cuts, pictures of real volumes.

#include <array>
#include <cmath>
#include <map>

#include <gtest/gtest.h>

#include "app/program_run.h"
#include "graphics/images/formats.h"
#include "graphics/images/image.h"
#include "lib/text/strings.h"
#include "real_files.h"
#include "samples/level2.h"
#include "tsv.h"

namespace {

class Lev2Program : public testing::Test {
protected:
    std::string volume(const std::string &name, samples::Level2Form form, std::size_t cut_every = 1) const {
        samples::Level2Volume whole = samples::level2_volume(0, false);
        samples::Level2Volume thin = whole;
        thin.radials.clear();
        for (std::size_t i = 0; i < whole.radials.size(); i += cut_every)
            thin.radials.push_back(whole.radials[i]);
        const samples::Bytes bytes = samples::level2_file(thin, form);
        run.dir.write(name, {reinterpret_cast<const char *>(bytes.data()), bytes.size()});
        return name;
    }
    ProgramRun run;
};

TEST_F(Lev2Program, StatusesAndMessages) {
    volume("legacy", samples::Level2Form::legacy);
    volume("records", samples::Level2Form::records);
    run.product("n0r", samples::reflectivity(0));
    run.dir.write("empty", "");
    const struct {
        const char *arguments;
        int status;
        const char *out, *err;
    } cases[]{
        {"-ba -inp lev2 -va list records", 0, "LSX  2200Z  4 JUL 03\nCut  Angle", ""},
        {"-ba -inp lev2z -va list legacy", 0,
         "  2    0.5      360    1.0     26.0  22:00:00  ref 460x0.500  vel ", ""},
        {"-ba -inp lev2 -va list none", 10, "", "LEV2_open_file: Unable to open file:none\n"},
        {"-ba -inp lev2 empty", 10, "", "LEV2_open_file: Unable to read file:empty\n"},
        {"-ba -inp lev2 -va rho1 -de p,a.ps legacy", 0, "", "LEV2_plot: elevation 1 has no rho"},
        {"-ba -inp lev2 -va cfp@3 -de p,a.ps records", 0, "", "LEV2_plot: the volume has no cfp\n"},
        {"-ba -inp lev2 -de p,a.ps n0r", 10, "", "LEV2_open_file: Unable to read file:n0r\n"},
        {"-ba -inp auto -va vel2 -de p,a.ps records", 0, "", ""},
        {"-ba -inp auto -de p,a.ps n0r", 0, "", ""},
        {"-ba -inp auto -de p,a.ps empty", 10, "", "RAD_cvt_in_file: Kind of file not recognised: empty\n"},
    };
    for (const auto &c : cases) {
        const RunResult result = run(c.arguments);
        EXPECT_EQ(result.status, c.status) << c.arguments << "\n" << result.err;
        EXPECT_TRUE(contains(result.out, c.out)) << c.arguments << "\n" << result.out;
        EXPECT_TRUE(contains(result.err, c.err)) << c.arguments << "\n" << result.err;
    }
    const std::string page = file_text(run.dir.at("a.ps"));
    EXPECT_TRUE(contains(page, "Base reflectivity (Dbz)\n")) << "a Level III file, recognised";
}

TEST_F(Lev2Program, OneSweepTheSameInEveryForm) {
    for (const char *variable : {"ref1", "vel2"}) {
        std::array<std::string, 3> pages;
        for (std::size_t form = 0; form < pages.size(); ++form) {
            volume("v", static_cast<samples::Level2Form>(form));
            EXPECT_EQ(run(std::string("-ba -inp lev2 -de p,a.ps,color -va ") + variable + " v v").status, 0);
            const std::string page = file_text(run.dir.at("a.ps"));
            pages[form] = page.substr(page.find('\n', page.find("%%CreationDate:")));
            EXPECT_EQ(count_of(pages[form], "\nshowpage\n"), 2);
            EXPECT_GT(count_of(pages[form], "%%FA:5\n"), 10000);
        }
        EXPECT_TRUE(pages[1] == pages[2]);
        EXPECT_TRUE(
            contains(pages[0], variable[0] == 'r' ? "Md=pr Sc=1 El=0.5 Mx=" : "Md=pr Sc=2 El=0.5 Rng="));
    }
}

TEST_F(Lev2Program, ACutVolumeDrawsWhatIsThere) {
    for (const auto form : {samples::Level2Form::generic, samples::Level2Form::records}) {
        volume("whole", form, 30);
        const std::string bytes = file_text(run.dir.at("whole"));
        EXPECT_GT(cells_of_growing_parts(run, bytes, bytes.size() / 50, "-ba -inp lev2"), 500);
    }
}

/// Colours of level bands: each has one of its own, which no map and no label has.
constexpr std::array kBands{-101.0F, -95.0F, -80.0F, -30.0F, -19.0F, -9.0F, 0.0F,  5.0F, 10.0F,
                            15.0F,   20.0F,  25.0F,  30.0F,  36.0F,  45.0F, 50.0F, 60.0F};

unsigned band_color(std::size_t band) {
    return 0x100020 + static_cast<unsigned>(band) * 0x0A0500;
}

std::string band_list() {
    std::string list;
    for (std::size_t i = 0; i < kBands.size(); ++i)
        list += format_text("%s%g:#%06X", i > 0 ? "," : "", static_cast<double>(kBands[i]), band_color(i));
    return list;
}

unsigned expected_color(float value) {
    std::size_t band = 0;
    while (band + 1 < kBands.size() && value >= kBands[band + 1]) ++band;
    return band_color(band);
}

unsigned pixel_color(const ImageRecord &image, int x, int y) {
    const auto at = static_cast<std::size_t>(y * image.bytes_per_line + x * image.bits_per_pixel / 8);
    const auto bytes = image.bytes();
    if (!image.mapped) return bytes[at + 1] * 65536U + bytes[at + 2] * 256U + bytes[at + 3];
    const Rgb &rgb = image.colors.at(bytes[at]);
    const auto byte = [](float part) { return static_cast<unsigned>(std::lround(part * 255)); };
    return byte(rgb.red) * 65536 + byte(rgb.green) * 256 + byte(rgb.blue);
}

struct Window {
    double degrees_high, near_km, far_km; ///< what is shown, and the places looked at
};
/// Close to the radar a radial is narrower than a pixel of a picture of the whole range.
constexpr std::array kWindows{Window{9, 60, 400}, Window{0.8, 5, 42}};

/// Compares the pixels at the places of one sweep; numbers of those seen and of those that agree.
std::pair<int, int> compare_pixels(const ImageRecord &image, const Window &window,
                                   const std::vector<TsvRow> &rows) {
    int seen = 0, right = 0;
    for (const TsvRow &row : rows) {
        const auto number = [&](const char *name) { return std::stod(row.at(name)); };
        const double degrees_wide = window.degrees_high * image.width / image.height;
        const double x =
            image.width * (0.5 + (number("longitude") - number("site_longitude")) / degrees_wide);
        const double y =
            image.height * (0.5 - (number("latitude") - number("site_latitude")) / window.degrees_high);
        const double range = number("range_km");
        if (range < window.near_km || range > window.far_km) continue;
        if (x < 0 || y < 0 || x >= image.width || y >= image.height) continue;
        ++seen;
        const unsigned color = pixel_color(image, static_cast<int>(x), static_cast<int>(y));
        if (color == expected_color(static_cast<float>(number("value_formula_A")))) ++right;
    }
    return {seen, right};
}

TEST_F(Lev2Program, PixelsOfRealVolumesHaveTheColoursOfTheirGates) {
    SKIP_WITHOUT_REAL_FILES();
    std::map<std::string, std::vector<TsvRow>> sweeps;
    for (const TsvRow &row : read_tsv(shared_dir() + "/samples/level2-points.tsv"))
        if (row.at("neighbours") == "same") sweeps[row.at("file") + " " + row.at("moment")].push_back(row);
    for (const auto &[name, rows] : sweeps) {
        SCOPED_TRACE(name);
        const std::string variable =
            (rows[0].at("moment") == "REF" ? "ref" : "vel") + rows[0].at("elevation_number");
        int seen = 0, right = 0;
        for (const Window &window : kWindows) {
            const double step = window.degrees_high / 800;
            const RunResult result = run(
                "-ba -inp lev2 -id KLOT -fp " VYX_SOURCE_DIR "/data -dr=-all,sum -pp png=a.png,full,nobar " +
                format_text("-de d,memory -ge 2000x1600 -pd latlon,%s,%s,1001,801,%f,%f ",
                            rows[0].at("site_latitude").c_str(), rows[0].at("site_longitude").c_str(), step,
                            step) +
                "-va " + variable + " -cof " + band_list() + " " + shared_dir() + "/samples/level2/" +
                rows[0].at("file"));
            ASSERT_EQ(result.status, 0) << result.err;
            ImageRecord image;
            ASSERT_EQ(IMG_read(run.dir.at("a.png"), image, 0), 1);
            ASSERT_EQ(image.width, 2000);
            const auto [some, agree] = compare_pixels(image, window, rows);
            seen += some;
            right += agree;
        }
        EXPECT_GT(seen, static_cast<int>(rows.size()) / 2);
        EXPECT_GE(right, 0.99 * seen) << "of " << seen;
    }
}

} // namespace
