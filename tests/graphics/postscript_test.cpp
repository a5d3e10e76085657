// The PostScript device: what it writes, what it leaves out, and what a page renderer makes of it.

#include "graphics/devices/print/postscript.h"
#include "graphics/devices/print/postscript_options.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include "graphics/core/color_slots.h"
#include "graphics/core/state.h"
#include "graphics/devices/print/number_writer.h"
#include "graphics/devices/print/paper.h"
#include "lib/system/calendar.h"
#include "lib/text/strings.h"

namespace {

namespace fs = std::filesystem;

constexpr std::array kSquare{Point{10, 10}, Point{10, 20}, Point{20, 20}, Point{20, 10}};
constexpr std::array kLine{Point{0, 0}, Point{5, 5}};

std::size_t count_of(std::string_view text, std::string_view part) {
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + part.size()))
        ++count;
    return count;
}

std::string read_whole(const fs::path &path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// As the kernel does it.
void store(int index, const Rgb &color) {
    store_color(index, color);
    gps_set_color_rep(index, color);
}

class PostScript : public testing::Test {
protected:
    void SetUp() override {
        directory_ = fs::temp_directory_path() / ("vyx_ps_" + std::to_string(getpid()));
        fs::create_directories(directory_);
        gstate().kernel_open = true;
        gstate().title.clear();
        for (const char *name :
             {"vyxps_print", "PSPRINT", "vyxps_param", "vyxps_geometry", "PSGEOMETRY", "PSCOLOR"})
            unsetenv(name);
        gps_set_EPS(false);
        gps_set_orient(false);
        gps_set_colorPS(false);
        gps_set_reverse(false);
        gps_set_scale(1);
        gps_set_base_width(1);
        gstate().line_print_bold = 1;
        gstate().fill_print_solid = 0;
    }
    void TearDown() override { fs::remove_all(directory_); }

    [[nodiscard]] std::string file() const { return (directory_ / "x.ps").string(); }
    void open(const std::string &options = "") { ASSERT_EQ(gps_open(file() + options, page_), 0); }
    /// Closes and returns the whole file.
    std::string written() {
        EXPECT_EQ(gps_close(), 0);
        return read_whole(file());
    }
    /// What came between the prologue and the trailer.
    std::string drawn() {
        const std::string all = written();
        const auto begin = all.find('\n', all.find("%%VYX Plot:")) + 1;
        return all.substr(begin, all.find("%%End of plot") - begin);
    }

    fs::path directory_;
    DrawingArea page_;
};

TEST_F(PostScript, WritesTheWholePage) {
    setenv("TZ", "UTC", 1);
    DATE_fix_time(1057257000); // 2003-07-03 18:30:00
    gstate().title = "Radar\n of\x01 today";
    open();
    EXPECT_EQ(page_.width, 756);
    EXPECT_EQ(page_.height, 576);
    gps_polyline(kLine, 1, 1, 1);
    EXPECT_EQ(written(), "%!PS-Adobe-1.0\n%%Title: VYX Graphics Display: Radar of today\n"
                         "%%Creator: VYX Postscript Processor-2.0\n%%CreationDate: Thu Jul  3 18:30:00 2003\n"
                         "%%EndComments\n%%Postscript initialization\n30 dict begin\n/saveobj save def\n"
                         "/inch {72 mul} def\n/dot {.33 mul} def\n/mv {moveto} def\n/ln {lineto} def\n"
                         "/lw {setlinewidth} def\n/np {newpath} def\n/cp {closepath} def\n"
                         "90 rotate\n.25 inch -8.25 inch translate\n0 setgray\n2 setlinejoin\n1 dot lw\n"
                         "[] 0 setdash\n%%Begin plot\n%%VYX Plot: Radar of today\n"
                         "%%PL:2\nnp\n0.00 0.00 mv\n5.00 5.00 ln\nstroke\n"
                         "%%End of plot\nsaveobj restore\nshowpage\nend\n%%EOF\n");
}

TEST_F(PostScript, WritesInkOnChangeOnly) {
    store(3, {1, 0, 0});
    open(",color");
    EXPECT_EQ(gget_inverse(), 1);
    gps_polyline(kLine, 3, 2, 4);
    gps_polyline(kLine, 3, 2, 4);
    gps_fill_area(kSquare, 3);
    gps_polyline(kLine, 500, 1, 1); // black ends the colour, which must come back
    gps_polyline(kLine, 3, 1, 1);
    store(3, {0, 1, 0}); // the same index in another colour
    gps_polyline(kLine, 3, 1, 1);
    store(kBackgroundSlot, {1, 1, 1});
    gps_fill_area(kSquare, kBackgroundSlot);
    gps_fill_area(kSquare, kColorBackground); // the background has two numbers
    const std::string text = drawn();
    EXPECT_EQ(count_of(text, "1.00 1.00 1.00 setrgbcolor\n"), 1U);
    EXPECT_EQ(count_of(text, "1.00 0.00 0.00 setrgbcolor\n"), 2U);
    EXPECT_EQ(count_of(text, "0 setgray\n"), 1U);
    EXPECT_EQ(count_of(text, "0.00 1.00 0.00 setrgbcolor\n"), 1U);
    EXPECT_EQ(count_of(text, "2.0 dot lw\n"), 1U);
    EXPECT_EQ(count_of(text, "[6 6 3 6] 0 setdash\n"), 1U);
    EXPECT_EQ(count_of(text, "[] 0 setdash\n"), 1U);
}

TEST_F(PostScript, ChoosesGreysAndWidths) {
    open();
    store(7, {1, 0, 0});
    gps_fill_area(kSquare, 7);
    gps_fill_area(kSquare, 7);
    gps_polyline(kLine, 7, 1, 1); // lines are black in grey output
    gps_fill_area(kSquare, kColorBackground);
    gps_polyline(kLine, 507, 1.5F, 1);
    gps_polyline(kLine, 505, 1, 1);
    gstate().line_print_bold = 3;
    gps_polyline(kLine, 7, 0.5F, 1);
    gstate().fill_print_solid = 1;
    gps_fill_area(kSquare, 7); // already black
    gps_clear_region(kSquare); // white all the same
    const std::string path = "np\n10.00 10.00 mv\n10.00 20.00 ln\n20.00 20.00 ln\n20.00 10.00 ln\ncp\n";
    const std::string line = "np\n0.00 0.00 mv\n5.00 5.00 ln\nstroke\n";
    EXPECT_EQ(drawn(), "%%FA:4\n" + path + "0.333 setgray\nfill\n%%FA:4\n" + path +
                           "fill\n%%PL:2\n0 setgray\n" + line + "%%FA:4\n" + path +
                           "1 setgray\nfill\n%%PL:2\n3 dot lw\n.7 setgray\n" + line +
                           "%%PL:2\n4 dot lw\n1 setgray\n" + line + "%%PL:2\n1.5 dot lw\n0 setgray\n" + line +
                           "%%FA:4\n" + path + "fill\n%%FA:4\n" + path + "1 setgray\nfill\n");
    gps_set_reverse(true);
    store(7, {1, 0, 0});
    EXPECT_NEAR(gps_get_gray(7), 2.0F / 3, 1e-6F);
    for (const int index : {-2, 257, 500, 100000}) {
        gps_set_color_rep(index, {1, 1, 1});
        EXPECT_EQ(gps_get_gray(index), 0) << index;
    }
}

TEST_F(PostScript, NumbersAreThoseOfPrintf) {
    const fs::path path = directory_ / "numbers";
    PrintWriter out;
    std::string expected;
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    out.open(OutputFile::create(path.string()));
    const std::array values{0.0F,     1.0F, -1.5F,     0.125F, 0.375F,   -0.125F,  99.995F,
                            1234.56F, 1e5F, -100000.F, 0.01F,  3.14159F, 575.005F, 999999.94F};
    for (const float value : values) {
        for (int decimals = 0; decimals <= PrintWriter::kMaxDecimals; ++decimals) {
            out.fixed(value, decimals);
            out.text("\n");
            expected += format_text("%.*f\n", decimals, static_cast<double>(value));
        }
    }
    std::setlocale(LC_ALL, "C");
    for (const float value : {-0.0F, -0.004F}) out.fixed(value, 2);
    out.fixed(std::numeric_limits<float>::quiet_NaN(), 1);
    out.fixed(-std::numeric_limits<float>::infinity(), 0);
    out.text(std::string(200000, 'x')); // more than the buffer
    ASSERT_TRUE(out.close());
    fill_string(expected, ',', '.');
    const auto negative_zero = expected.find("\n-0\n");
    if (negative_zero != std::string::npos) expected.erase(negative_zero + 1, 1);
    EXPECT_EQ(read_whole(path), expected + "0.000.000.0-1000000000" + std::string(200000, 'x'));
}

TEST_F(PostScript, EncapsulatedFilesKeepTheirPageWhole) {
    store(3, {1, 0, 0});
    open(",eps,color");
    gps_clip({-0.1F, 755.1F, -0.1F, 575.1F});
    gps_polyline(kLine, 3, 2, 2);
    gps_clip({10, 20, 10, 20});
    gps_polyline(kLine, 3, 2, 2); // all three must be said again after a clip
    const std::string text = written();
    EXPECT_TRUE(text.starts_with("%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 576 756\n"));
    EXPECT_NE(text.find("90 rotate\n0. inch -8.50 inch translate\n"), std::string::npos);
    for (const char *operation :
         {"initclip", "saveobj", "begin\n", "\nend\n", "setpagedevice", "initgraphics"})
        EXPECT_EQ(text.find(operation), std::string::npos) << operation;
    EXPECT_EQ(count_of(text, "gsave\n"), 3U);
    EXPECT_EQ(count_of(text, "grestore\n"), 3U);
    EXPECT_EQ(count_of(text, "1.00 0.00 0.00 setrgbcolor\n"), 2U);
    EXPECT_EQ(count_of(text, "2.0 dot lw\n"), 2U);
    EXPECT_EQ(count_of(text, "[6] 0 setdash\n"), 2U);
    EXPECT_LT(text.find("2 setlinejoin"), text.find("gsave"));
    EXPECT_TRUE(text.ends_with("%%End of plot\ngrestore\nshowpage\n%%EOF\n"));
    open(",eps,port");
    EXPECT_NE(written().find("%%BoundingBox: 0 0 756 576\n"), std::string::npos);
}

TEST_F(PostScript, AnEncapsulatedPictureMayReachBeyondItsPage) {
    PostScriptOptions options;
    options.eps = options.portrait = true;
    options.page = kPostScriptPage;
    const DrawingArea page = postscript_area(options.page);
    const EpsLayout layout = eps_layout(options, {page.width, page.height, -40, -10});
    EXPECT_FLOAT_EQ(layout.shift_x, 40.5F);
    EXPECT_FLOAT_EQ(layout.shift_y, 10.5F);
    EXPECT_EQ(layout.width, page.width + 40);
    EXPECT_EQ(layout.height, page.height + 10);
}

TEST_F(PostScript, AppendedPlotsShareAPage) {
    const std::string ending = "saveobj restore\nshowpage\nend\n%%EOF\n";
    ASSERT_EQ(gps_open("+" + file(), page_), 0); // no such file yet: a whole one
    const std::string first = written();
    ASSERT_TRUE(first.starts_with("%!PS-Adobe-1.0\n"));
    ASSERT_TRUE(first.ends_with("%%End of plot\n" + ending));
    ASSERT_EQ(gps_open("+" + file(), page_), 0);
    gps_message("two\nlines");
    const std::string both = written();
    const std::string kept = first.substr(0, first.size() - ending.size());
    EXPECT_EQ(both, kept +
                        "0 setgray\n1 dot lw\n[] 0 setdash\n%%VYX Plot: \n%%Message: twolines\n"
                        "%%End of plot\n" +
                        ending);
    ASSERT_EQ(gps_open("+" + file() + ",scale=.5", page_), 0); // set up in another way
    EXPECT_EQ(gps_new_page(), 0) << "others may follow the shared page";
    const std::string all = written();
    EXPECT_EQ(count_of(all, "saveobj restore\n/saveobj save def\n"), 1U);
    EXPECT_EQ(count_of(all, "showpage\n"), 2U);
    EXPECT_EQ(count_of(all, "%!PS"), 1U);
    ASSERT_EQ(gps_open("+" + file() + ",scale=.5", page_), 0);
    EXPECT_EQ(count_of(written(), "saveobj restore\n/saveobj save def\n"), 1U) << "the last page is alike";
}

TEST_F(PostScript, WhatCannotBeAppendedIsRefusedOrTold) {
    const auto refused = [this](const std::string &options, const char *why) {
        const std::string before = read_whole(file());
        testing::internal::CaptureStderr();
        EXPECT_EQ(gps_open("+" + file() + options, page_), -1) << options;
        EXPECT_NE(testing::internal::GetCapturedStderr().find(why), std::string::npos) << options;
        EXPECT_EQ(read_whole(file()), before) << options;
    };
    open();
    written();
    refused(",eps", "An encapsulated picture cannot be appended");
    refused(",port", "A page of 792 612 points cannot be appended to one of 612 792");
    refused(",a4", "points cannot be appended to one of 612 792");
    open(",eps");
    written();
    refused("", "Nothing can be appended to an encapsulated picture");
    for (const char *foreign :
         {"hello", "%!PS-Adobe-1.0\n%%End of plot\nsaveobj restore\nshowpage\nend\n%%EOF\n"}) {
        std::ofstream(file()) << foreign;
        testing::internal::CaptureStderr();
        ASSERT_EQ(gps_open("+" + file(), page_), 0);
        EXPECT_EQ(gps_new_page(), -1);
        EXPECT_NE(testing::internal::GetCapturedStderr().find("Not a finished file"), std::string::npos);
        EXPECT_EQ(written(), std::string(foreign) + "0 setgray\n1 dot lw\n[] 0 setdash\n%%VYX Plot: \n"
                                                    "%%End of plot\n");
    }
}

TEST_F(PostScript, AFailedAppendingLeavesTheFileAsItWas) {
    open();
    const std::string first = written();
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(gps_open("+" + file(), page_), 0);
    const rlimit small{first.size() + 1000, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    for (int i = 0; i < 5000; ++i) gps_fill_area(kSquare, i % 200);
    EXPECT_EQ(gps_close(), -1);
    setrlimit(RLIMIT_FSIZE, &old);
    EXPECT_EQ(read_whole(file()), first);
}

TEST_F(PostScript, TakesNamesAndOptionsInOrder) {
    const fs::path other = directory_ / "other.ps";
    setenv("PSPRINT", other.c_str(), 1);
    setenv("vyxps_param", "A4,port,scale=0.5,SZ=banana,lwidth=-1,scale=0,scale=1e30,nonsense", 1);
    ASSERT_EQ(gps_open(",land,lwidth:2", page_), 0);
    EXPECT_EQ(page_.width, 805);
    EXPECT_EQ(page_.height, 558);
    gps_begin_text({1, -2.5F}, "Hi\nthere", 1, 1);
    gps_begin_markers(2, 1, 1);
    gps_stroke(std::array{Point{1, 2}}); // a dot, which a path of one point is not
    EXPECT_EQ(gps_close(), 0);
    const std::string text = read_whole(other);
    EXPECT_NE(text.find("90 rotate\n.25 inch -8.01 inch translate\n"), std::string::npos);
    EXPECT_NE(text.find("0.50 0.50 scale\n"), std::string::npos);
    EXPECT_NE(
        text.find(
            "%%TE:1.000000 -2.500000 Hithere\n2.0 dot lw\n%%PM:2\nnp\n1.00 2.00 mv\n1.33 2.00 ln\nstroke\n"),
        std::string::npos);
    setenv("vyxps_param", "sz=0.2x8,sz=2000x8,sz=7x", 1);
    ASSERT_EQ(gps_open(file(), page_), 0);
    EXPECT_EQ(page_.width, 756);
    EXPECT_EQ(gps_close(), 0);
    EXPECT_FALSE(find_paper("a"));
}

TEST_F(PostScript, PlacesTheDrawingAreaByGeometry) {
    const auto placed = [this](const char *geometry) {
        setenv("vyxps_geometry", geometry, 1);
        EXPECT_EQ(gps_open(file(), page_), 0);
        EXPECT_EQ(gps_close(), 0);
        return std::array{page_.width, page_.height, page_.x, page_.y};
    };
    using Area = std::array<int, 4>;
    EXPECT_EQ(placed("500x400+100-50"), (Area{360, 288, 72, -36}));
    EXPECT_EQ(placed("500x400"), (Area{360, 288, 0, 0}));
    EXPECT_EQ(placed("+100+50"), (Area{756, 576, 72, 36}));
    EXPECT_EQ(placed("P2x2+1+0"), (Area{378, 288, 378, 288})); // upper right quarter
    EXPECT_EQ(placed("P0.5x0.5+0.25+0"), (Area{378, 288, 189, 0}));
    EXPECT_EQ(placed("P99x1e9+0+7"), (Area{94, 72, 0, 0}));
    for (const char *bad : {"", "x", "5x"}) EXPECT_EQ(placed(bad), (Area{756, 576, 0, 0})) << bad;
    for (const char *empty : {"0x0", "-5x-5", "P0x0", "P-1x1", "99999999999999x1", "P1x2+0+1", "P2x2+5+5",
                              "P2x2-1+0", "P.5x.5+0+1", "500x400+2000+0", "+0-900"}) {
        setenv("vyxps_geometry", empty, 1);
        testing::internal::CaptureStderr();
        EXPECT_EQ(gps_open(file(), page_), -1) << empty;
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  std::string("geometry: Nothing of the page lies in: ") + empty + "\n");
    }
}

TEST_F(PostScript, WhatIsAbandonedHasNoEnd) {
    EXPECT_EQ(gps_open(file(), page_), 0);
    EXPECT_EQ(gps_close(), 0);
    const std::string old = read_whole(file());
    EXPECT_TRUE(old.ends_with("%%EOF\n"));
    const fs::path piped = directory_ / "piped";
    for (const std::string &output : {file(), "+" + file(), "|cat > " + piped.string()}) {
        EXPECT_EQ(gps_open(output, page_), 0);
        for (int i = 0; i < 5000; ++i) gps_fill_area(kSquare, i % 200);
        gps_abandon();
        EXPECT_EQ(gps_close(), 0) << "nothing is open";
    }
    EXPECT_EQ(read_whole(file()), old);
    EXPECT_GT(read_whole(piped).size(), 100000U);
    EXPECT_EQ(read_whole(piped).find("%%EOF"), std::string::npos);
}

TEST_F(PostScript, TellsOfFailedOpeningAndWriting) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(gps_open(directory_.string(), page_), -1); // a directory
    EXPECT_EQ(gps_open("/dev/full", page_), 0);
    for (int i = 0; i < 5000; ++i) gps_fill_area(kSquare, i % 200);
    EXPECT_EQ(gps_close(), -1);
    EXPECT_EQ(gps_open("/dev/full", page_), 0); // all of it still in the buffer at close
    EXPECT_EQ(gps_close(), -1);
    EXPECT_EQ(gps_open("|cat > /dev/null; false", page_), 0);
    EXPECT_EQ(gps_close(), -1);
    EXPECT_EQ(gps_open("|exit 0", page_), 0); // nobody reads
    for (int i = 0; i < 5000; ++i) gps_fill_area(kSquare, i % 200);
    EXPECT_EQ(gps_close(), -1);
    const std::string messages = testing::internal::GetCapturedStderr();
    EXPECT_EQ(count_of(messages, "gopen_ws: unable to open postscript file\n"), 1U);
    EXPECT_EQ(
        count_of(messages, "gps_close: Error writing postscript file: /dev/full: No space left on device\n"),
        2U);
    EXPECT_EQ(count_of(messages, "gps_close: Error writing postscript file: "), 4U);
    gps_fill_area(kSquare, 1); // closed: dropped
    EXPECT_EQ(gps_close(), 0);
}

/// Ink of a rendered page in points, and the page's size: from the P5 picture that ghostscript makes.
struct Rendered {
    int width = 0, height = 0, left = 0, right = -1, top = 0, bottom = -1;
    std::string messages;
};

Rendered render(const std::string &file, const std::string &options) {
    const std::string command = "gs -q -dBATCH -dNOPAUSE -dSAFER -sDEVICE=pgmraw -r72 " + options +
                                " -sOutputFile=" + file + ".pgm " + file + " > " + file + ".log 2>&1";
    Rendered page;
    const int status = std::system(command.c_str());
    page.messages = read_whole(file + ".log") + (status == 0 ? "" : "status not 0");
    const std::string picture = read_whole(file + ".pgm");
    int header = 0;
    if (std::sscanf(picture.c_str(), "P5 #%*[^\n] %d %d 255%n", &page.width, &page.height, &header) != 2)
        return page;
    page.left = page.width;
    page.top = page.height;
    for (int y = 0; y < page.height; ++y) {
        for (int x = 0; x < page.width; ++x) {
            const auto at = static_cast<std::size_t>(header + 1 + y * page.width + x);
            if (static_cast<unsigned char>(picture.at(at)) > 200) continue;
            page.left = std::min(page.left, x);
            page.right = std::max(page.right, x);
            page.top = std::min(page.top, y);
            page.bottom = std::max(page.bottom, y);
        }
    }
    return page;
}

// A plot that joins a page stands where it would stand on a page of its own.
TEST_F(PostScript, JoinedPlotsLieWhereTheyBelong) {
    if (std::system("command -v gs > /dev/null 2>&1") != 0) GTEST_SKIP() << "ghostscript is not installed";
    struct Case {
        const char *first, *second;
    };
    for (const Case &c : {Case{"", ",scale=.5"}, Case{",scale=.5", ""}, Case{"", ",port,sz=8.5x11"},
                          Case{",a4,port", ",a4,port,scale=.25"}}) {
        const auto draw = [this](const std::string &name, const std::string &options, bool line) {
            ASSERT_EQ(gps_open(name + options, page_), 0);
            const auto right = static_cast<float>(page_.width - 1),
                       top = static_cast<float>(page_.height - 1);
            gps_clip({-0.1F, right + 0.1F, -0.1F, top + 0.1F});
            const Point corner{right, top};
            if (line) gps_polyline(std::array{Point{100, 50}, corner}, 1, 3, 1);
            EXPECT_EQ(gps_close(), 0);
        };
        draw(file(), c.second, true);
        const Rendered alone = render(file(), "");
        fs::remove(file());
        draw(file(), c.first, false);
        draw("+" + file(), c.second, true);
        const Rendered joined = render(file(), "");
        EXPECT_EQ(joined.messages, "");
        // Sheets may differ where nothing asked for one: they lie on each other with their lower left
        // corners.
        const auto ink = [](const Rendered &page) {
            return std::array{page.left, page.right, page.height - page.top, page.height - page.bottom};
        };
        EXPECT_EQ(ink(joined), ink(alone)) << c.first << c.second;
        EXPECT_GT(alone.right, alone.left);
    }
}

// Whatever the paper, a frame round the drawing area must lie on the page, all of it.
TEST_F(PostScript, PicturesLieOnTheirPage) {
    if (std::system("command -v gs > /dev/null 2>&1") != 0) GTEST_SKIP() << "ghostscript is not installed";
    const std::array cases{
        "",          ",port",         ",a4",           ",legal,port",       ",sz=5x7,port",
        ",eps",      ",eps,port",     ",eps,scale=.5", ",eps,b4,scale=1.5", ",eps,port,sz=5x7",
        ",scale=.5", ",a4,port,color"};
    for (const std::string options : cases) {
        const bool eps = options.find("eps") != std::string::npos;
        open(options);
        const auto right = static_cast<float>(page_.width - 1), top = static_cast<float>(page_.height - 1);
        gps_clip({-0.1F, right + 0.1F, -0.1F, top + 0.1F});
        gps_polyline(std::array{Point{0, 0}, Point{right, 0}, Point{right, top}, Point{0, top}, Point{0, 0}},
                     1, 3, 1);
        EXPECT_EQ(gps_close(), 0);
        const Rendered page = render(file(), eps ? "-dEPSCrop" : "");
        EXPECT_EQ(page.messages, "") << options;
        const bool portrait = options.find("port") != std::string::npos;
        const float scale = options.find("=.5") != std::string::npos    ? 0.5F
                            : options.find("=1.5") != std::string::npos ? 1.5F
                                                                        : 1;
        const float wide = scale * (portrait ? right : top), high = scale * (portrait ? top : right);
        EXPECT_NEAR(static_cast<float>(page.right - page.left), wide, 1.6F) << options;
        EXPECT_NEAR(static_cast<float>(page.bottom - page.top), high, 1.6F) << options;
        if (eps) {
            EXPECT_LE(static_cast<float>(page.width), wide + 3) << options;
            EXPECT_LE(static_cast<float>(page.height), high + 3) << options;
        }
    }
}

} // namespace
