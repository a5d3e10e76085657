#pragma once
/// A page on which plotting code draws, and what it has drawn there, in world coordinates.

#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "graphics/core/object_list.h"
#include "graphics/kernel/kernel.h"
#include "lib/options/flags.h"
#include "lib/resources/database.h"
#include "lib/scratch_dir.h"
#include "plot/colour/named_colors.h"
#include "plot/map/current_map.h"

struct DrawnText {
    Point place;
    std::string text;
};

class DrawingTest : public testing::Test {
protected:
    using Line = std::vector<Point>;

    DrawingTest() {
        FLAG_setplot(12, 1);
        RES_put("file_path", files_.path());
        files_.write("vyx.clr",
                     "black 0 0 0\nwhite 1 1 1\nred 1 0 0\nyellow 1 1 0\nblue 0 0 1\nmagenta 1 0 1\n");
        (void)gopen_gks("", 0);
        (void)gopen_ws(1, files_.at("page.ps"), DeviceKind::ps);
        CLR_read_table("vyx.clr");
        forget();
    }
    ~DrawingTest() override {
        (void)gclose_ws(1);
        gclose_gks();
    }

    /// What was drawn so far does not count.
    static void forget() {
        gclear_objs();
        gset_redraw(1);
    }
    static std::vector<Line> drawn(ObjectType type) {
        std::vector<Line> found;
        for (const ObjectRecord *object = gfirst_obj(); object != nullptr; object = object->next) {
            if (object->type != type) continue;
            Line line(static_cast<std::size_t>(object->value));
            std::memcpy(line.data(), object->data(), object->size);
            found.push_back(std::move(line));
        }
        return found;
    }
    static std::vector<Line> lines() { return drawn(ObjectType::polyline); }
    static std::vector<Line> areas() { return drawn(ObjectType::fill_area); }
    static std::vector<DrawnText> texts() {
        std::vector<DrawnText> found;
        for (const ObjectRecord *object = gfirst_obj(); object != nullptr; object = object->next) {
            if (object->type != ObjectType::text) continue;
            DrawnText text;
            std::memcpy(&text.place, object->data(), sizeof text.place);
            text.text.assign(reinterpret_cast<const char *>(object->data()) + sizeof text.place,
                             object->size - sizeof text.place);
            found.push_back(std::move(text));
        }
        return found;
    }
    /// The colours that lines were given, in order.
    static std::vector<int> line_colors() {
        std::vector<int> found;
        for (const ObjectRecord *object = gfirst_obj(); object != nullptr; object = object->next)
            if (object->type == ObjectType::line_color) found.push_back(object->value);
        return found;
    }

    /// A latitude-longitude map, one unit a degree.
    static PlotDomain degrees(float clat, float clon, int width, int height) {
        PlotDomain domain;
        domain.proj = kProjLatLon;
        domain.clat = clat;
        domain.clon = clon;
        domain.dx = domain.dy = 1;
        domain.nx = width + 1;
        domain.ny = height + 1;
        return domain;
    }
    static PlotDomain polar(float clat, float clon, int nx, int ny, float spacing) {
        PlotDomain domain = degrees(clat, clon, nx - 1, ny - 1);
        domain.proj = kProjPolar;
        domain.dx = domain.dy = spacing;
        return domain;
    }

    template <typename Action> static std::string errors_of(Action action) {
        testing::internal::CaptureStderr();
        action();
        return testing::internal::GetCapturedStderr();
    }

    ScratchDir files_;
};
