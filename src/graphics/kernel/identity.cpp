#include "graphics/kernel/identity.h"

#include "graphics/core/state.h"
#include "graphics/devices/x11/display.h"

void GPH_set_win_title(std::string_view title) {
    gstate().title = title;
    gx11_set_title(title);
}

const std::string &gget_win_title() {
    return gstate().title;
}

void gset_prog_name(std::string_view name) {
    gstate().program = name;
}
