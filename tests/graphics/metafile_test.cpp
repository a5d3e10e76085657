/// Metafiles: the text form written, read back and written again; CGM as an element reader of its own sees
/// it.

#include "graphics/devices/print/metafile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/kernel/metafile_reader.h"
#include "lib/report/message.h"
#include "lib/scratch_dir.h"

namespace {

class Metafile : public testing::Test {
protected:
    Metafile() { unsetenv("vyxmeta_out"); }
    ~Metafile() override {
        if (gchk_graphics() == 1) (void)gclose_ws(1);
        gclose_gks();
    }
    void open(const std::string &name, DeviceKind kind = DeviceKind::meta) {
        (void)gopen_gks("", 0);
        const bool appends = name.starts_with('+');
        const std::string spec = (appends ? "+" : "") + files_.at(name.substr(appends ? 1 : 0));
        ASSERT_EQ(gopen_ws(1, spec, kind), 0);
    }
    void close() {
        EXPECT_EQ(gclose_ws(1), 0);
        gclose_gks();
    }
    /// What follows the header and what opening writes.
    std::string body(const std::string &name) const {
        const std::string text = files_.read(name);
        return text.substr(text.find("WIN 2 0.000000 0.000000 100"));
    }
    /// Every kind of record.
    static void draw() {
        gset_win(2, {0, 100, 0, 50});
        gset_vp(2, {0.1F, 0.9F, 0.1F, 0.7F});
        gsel_norm_tran(2);
        gset_colr_rep(1, 7, {0.25F, 0.5F, 1});
        gset_linetype(3);
        gset_linewidth(2.5F);
        gset_line_colr_ind(7);
        std::vector<Point> line;
        for (int i = 0; i < 9; ++i)
            line.push_back({static_cast<float>(i) * 10, static_cast<float>(i % 2) * 3});
        gpolyline(line);
        gpolyline(std::span(line).first(8));
        gset_fill_int_style(1);
        gset_fill_style_ind(4);
        gset_fill_colr_ind(7);
        gfill_area(std::array{Point{1, 1}, Point{9, 1}, Point{9, 9}, Point{1, 9}});
        gfill_area(std::array{Point{1, 1}, Point{9, 1}, Point{9, 9}});
        gset_marker_type(4);
        gset_marker_size(1.5F);
        gset_marker_width(2);
        gset_marker_colr_ind(7);
        gpolymarker(std::array{Point{20, 20}});
        gset_text_colr_ind(7);
        gset_char_ht(2);
        gset_char_up_vec(0, 1);
        gset_text_align(2, 3);
        gset_fontprec(1, 2);
        gset_expan(1.25F);
        gset_text_width(2);
        gset_space(0.5F);
        gset_char_space(0);
        gtext({30, 30}, "a text, with  blanks");
        gclear_region({5, 6, 7, 8});
        gmessage(1, "said");
    }
    std::string told(const std::string &name) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(gread_metafile(files_.at(name)), 0);
        return testing::internal::GetCapturedStderr();
    }
    ScratchDir files_;
};

TEST_F(Metafile, WhatIsReadBackIsWrittenTheSame) {
    open("a.meta");
    draw();
    close();
    const std::string text = files_.read("a.meta");
    EXPECT_TRUE(text.starts_with("VYXMETA\n#Title: VYX Graphics Display: "));
    EXPECT_NE(text.find("\n#Creator: VYX Metafile Processor-1.0\n#CreationDate: "), std::string::npos);
    EXPECT_NE(
        text.find("PL 8 0.000000,0.000000 10.000000,3.000000 20.000000,0.000000 30.000000,3.000000 \n   "
                  "40.000000,0.000000 50.000000,3.000000 60.000000,0.000000 70.000000,3.000000 \n"),
        std::string::npos);
    EXPECT_NE(
        text.find("FA 4 1.000000,1.000000 9.000000,1.000000 9.000000,9.000000 1.000000,9.000000 \n   FA 3 "),
        std::string::npos);
    EXPECT_NE(text.find("TE 30.000000,30.000000 a text, with  blanks\nCLR_REG 5.000000 7.000000 6.000000 "
                        "8.000000\nME said\n"),
              std::string::npos);
    open("b.meta");
    EXPECT_EQ(told("a.meta"), "");
    close();
    // What is not replayed (a cleared region, a message) is not there again.
    std::string first = body("a.meta"), second = body("b.meta");
    const std::size_t end = first.find("CLR_REG");
    EXPECT_EQ(second, first.substr(0, end));
    open("c.meta");
    EXPECT_EQ(told("b.meta"), "");
    close();
    EXPECT_EQ(body("c.meta"), second);
}

TEST_F(Metafile, ReadOntoAPageItIsThePicture) {
    open("a.meta");
    draw();
    close();
    const auto page = [this](const std::string &name, auto drawing) {
        open(name, DeviceKind::ps);
        drawing();
        close();
        const std::string text = files_.read(name);
        return text.substr(text.find("%%PL:9"), text.find("%%Message") - text.find("%%PL:9"));
    };
    const std::string direct = page("direct.ps", [] { draw(); });
    const std::string read = page("read.ps", [this] { told("a.meta"); });
    EXPECT_EQ(direct.substr(0, direct.find("%%TE")), read.substr(0, read.find("%%TE")));
    EXPECT_NE(read.find("a text, with  blanks"), std::string::npos);
}

TEST_F(Metafile, DamageIsToldAndDrawsWhatIsThere) {
    open("out.meta");
    const auto read = [this](const std::string &content) {
        files_.write("bad.meta", content);
        return told("bad.meta");
    };
    EXPECT_EQ(read(""), "");
    EXPECT_EQ(read("VYXMETA"), "");
    EXPECT_EQ(read("VYXMETA\nWHAT is this\nWS_VP 1 2 3\nME said\n#x\n"), "");
    for (const char *cut : {"PL 2000000000 1,1 2,2 ", "PL -5", "FA x", "PM 3 1,1 2", "TE 1", "CLR 1 2 0.5",
                            "WIN 2 0 0", "TE_UP 1", "TE_ALGN 2", "PL_TYPE", "PL_LW x"})
        EXPECT_NE(read(std::string("VYXMETA\n") + cut).find("1 records are cut"), std::string::npos) << cut;
    EXPECT_NE(read("VYXMETA\nTE 1,1 " + std::string(500, 'x') + "\n").find("1 records"), std::string::npos);
    EXPECT_NE(told("missing").find("gread_metafile: Unable to open image file: "), std::string::npos);
    close();
    EXPECT_NE(files_.read("out.meta").find("PL 2 1.000000,1.000000 2.000000,2.000000 \n"), std::string::npos);
}

struct Element {
    unsigned element_class, id;
    std::string data;
};

/// The elements of a binary metafile; parts of a long one joined.
std::vector<Element> elements_of(const std::string &bytes) {
    std::vector<Element> elements;
    std::size_t at = 0;
    const auto word = [&] {
        if (at + 2 > bytes.size()) return 0U;
        const auto high = static_cast<unsigned char>(bytes[at]),
                   low = static_cast<unsigned char>(bytes[at + 1]);
        at += 2;
        return high * 256U + low;
    };
    while (at < bytes.size()) {
        const unsigned head = word();
        Element element{head >> 12U, head >> 5U & 0x7FU, {}};
        bool more = (head & 31U) == 31;
        std::size_t length = head & 31U;
        do {
            if ((head & 31U) == 31) {
                const unsigned part = word();
                more = (part & 0x8000U) != 0;
                length = part & 0x7FFFU;
            }
            EXPECT_LE(at + length, bytes.size());
            element.data += bytes.substr(at, length);
            at += length + length % 2;
        } while (more);
        elements.push_back(std::move(element));
    }
    return elements;
}

/// What is drawn on a page, without what opening and closing write.
std::string ink_of(const std::string &page) {
    const std::size_t begin = page.find("%%VYX Plot"), end = page.find("%%End of plot");
    return page.substr(begin, end - begin);
}

TEST_F(Metafile, APictureThatIsKeptBeginsWithWhatIsInForce) {
    (void)gopen_gks("", 0);
    ASSERT_EQ(gopen_ws(1, "memory", DeviceKind::win), 0);
    gset_redraw(1);
    gset_colr_rep(1, 7, {1, 0, 0});
    gset_line_colr_ind(7);
    gset_linetype(4);
    gset_char_ht(0.5F);
    gclear_ws(1, 1); // the next picture sets nothing again
    gpolyline(std::array{Point{0, 0}, Point{1, 1}});
    setenv("METAOUT", files_.at("kept.meta").c_str(), 1);
    EXPECT_EQ(gobj_print_meta(), 0);
    unsetenv("METAOUT");
    const std::string text = files_.read("kept.meta");
    const std::size_t line = text.find("\nPL 2 ");
    for (const char *record : {"\nCLR 1 7 1.000000 0.000000 0.000000\n", "\nPL_CLR 7\n", "\nPL_TYPE 4\n",
                               "\nTE_HGHT 0.500000\n", "\nTE_FNT 1 2\n", "\nWS_WIN 1 ", "\nVP 5 "})
        EXPECT_LT(text.find(record), line) << record;
    gset_redraw(0);
    gclear_objs();
    EXPECT_EQ(gobj_print_meta(), -1);
}

TEST_F(Metafile, ADrawingAppendedIsDrawnAsAlone) {
    const auto second = [] { gpolyline(std::array{Point{0, 0}, Point{1, 1}}); };
    open("a.meta");
    draw();
    close();
    open("+a.meta");
    second();
    close();
    const std::string text = files_.read("a.meta");
    EXPECT_EQ(text.find("VYXMETA", 1), std::string::npos);
    open("read.ps,color", DeviceKind::ps);
    told("a.meta");
    close();
    // Behind the first drawing the second is a plain line in the first colour through the whole device.
    const std::string read = ink_of(files_.read("read.ps"));
    const std::string tail = read.substr(read.rfind("%%PL:2"));
    EXPECT_NE(tail.find("0.00 0.00 mv\n"), std::string::npos) << tail;
    EXPECT_EQ(read.substr(read.rfind("setdash") - 5, 5), "[] 0 ");
    EXPECT_NE(tail.find("1.0 dot lw\n"), std::string::npos) << tail;
}

TEST_F(Metafile, ADrawingJoinsAFinishedCgmOrNone) {
    const auto line = [] { gpolyline(std::array{Point{0, 0}, Point{1, 1}}); };
    for (int i = 0; i < 2; ++i) {
        open("+a.cgm,cgm");
        line();
        close();
    }
    const std::string joined = files_.read("a.cgm");
    const std::vector<Element> elements = elements_of(joined);
    const auto count = [&](unsigned element_class, unsigned id) {
        return std::ranges::count_if(
            elements, [=](const Element &e) { return e.element_class == element_class && e.id == id; });
    };
    EXPECT_EQ(count(0, 3), 1);
    EXPECT_EQ(count(4, 1), 2);
    EXPECT_EQ(count(0, 2), 1);
    EXPECT_EQ(elements.back().id, 2U);
    // What would follow the end of another one nobody would see.
    testing::internal::CaptureStderr();
    (void)gopen_gks("", 0);
    EXPECT_EQ(gopen_ws(1, "+" + files_.at("a.cgm") + ",cgm,full", DeviceKind::meta), -1);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Nothing can be appended"), std::string::npos);
    EXPECT_EQ(files_.read("a.cgm"), joined);
}

TEST_F(Metafile, AFullCgmHasAreasTextsAndColours) {
    open("a.cgm,cgm,full");
    GPH_set_maxview(1);
    draw();
    gset_line_colr_ind(kColorPrintFirst + 3); // white, plain
    gpolyline(std::array{Point{0, 0}, Point{50, 40}});
    EXPECT_EQ(gnew_page(), 0);
    gpolyline(std::array{Point{0, 0}, Point{50, 40}});
    close();
    const std::vector<Element> elements = elements_of(files_.read("a.cgm"));
    std::string order; // the looks and figures, one letter each
    std::vector<std::string> colors;
    std::vector<int> types;
    for (const Element &e : elements) {
        if (e.element_class == 5 && e.id == 2) types.push_back(e.data.at(1));
        if (e.element_class == 5 && (e.id == 4 || e.id == 23)) colors.push_back(e.data);
        const char last = order.empty() ? ' ' : order.back();
        if (e.element_class == 4 && e.id == 7) order += 'A';
        if (e.element_class == 4 && e.id == 1 && last != 'L') order += 'L'; // a text has any number
        if (e.element_class == 0 && e.id == 3) order += '|';
    }
    // Lines, two areas, a marker and a text, a cleared region, a line; the second picture.
    EXPECT_EQ(order, "|LAALAL|L");
    EXPECT_EQ(types, (std::vector<int>{2, 1, 2, 2})); // dashes, of strokes solid
    // 7 is the same for lines and areas; the background is white; then the white line, known anew.
    EXPECT_EQ(colors, (std::vector<std::string>{"\x40\x80\xFF", "\x40\x80\xFF", "\xFF\xFF\xFF",
                                                "\xFF\xFF\xFF", "\xFF\xFF\xFF"}));
}

TEST_F(Metafile, CgmHasTheElementsOfTheStandard) {
    open("a.cgm,cgm");
    GPH_set_maxview(1);
    gset_win(2, {0, 100, 0, 80});
    gset_vp(2, {0, 1, 0, 0.8F});
    gsel_norm_tran(2);
    gpolyline(std::array{Point{0, 0}, Point{50, 40}});
    std::vector<Point> many(20000);
    for (std::size_t i = 0; i < many.size(); ++i) many[i] = {static_cast<float>(i) / 200, 3};
    gpolyline(many);
    gfill_area(std::array{Point{1, 1}, Point{9, 1}, Point{9, 9}});
    EXPECT_EQ(gnew_page(), 0);
    gpolyline(std::array{Point{0, 0}, Point{50, 40}});
    close();
    const std::vector<Element> elements = elements_of(files_.read("a.cgm"));
    const auto is = [&](std::size_t i, unsigned element_class, unsigned id) {
        return elements[i].element_class == element_class && elements[i].id == id;
    };
    ASSERT_GT(elements.size(), 12U);
    EXPECT_TRUE(is(0, 0, 1) && is(1, 1, 1) && is(2, 1, 2) && is(3, 1, 11) && is(4, 1, 9) && is(5, 2, 6) &&
                is(6, 0, 3) && is(7, 0, 4));
    EXPECT_EQ(elements[2].data, "\x0AVYXCGM-1.0");
    EXPECT_TRUE(is(elements.size() - 2, 0, 5) && is(elements.size() - 1, 0, 2));
    std::vector<std::size_t> lines;
    int pictures = 0;
    for (const Element &element : elements) {
        if (element.element_class == 4) lines.push_back(element.data.size() / 4);
        pictures += element.element_class == 0 && element.id == 3 ? 1 : 0;
    }
    EXPECT_EQ(lines, (std::vector<std::size_t>{2, 20000, 2}));
    EXPECT_EQ(pictures, 2);
    // The middle of the window is that of the extent.
    for (const Element &element : elements)
        if (element.element_class == 4 && element.data.size() == 8) {
            const auto coordinate = [&](std::size_t at) {
                return static_cast<unsigned char>(element.data[at]) * 256 +
                       static_cast<unsigned char>(element.data[at + 1]);
            };
            EXPECT_NEAR(coordinate(4), 5000, 20);
            EXPECT_NEAR(coordinate(6), 4000, 20);
        }
}

} // namespace
