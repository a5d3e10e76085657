#include <cstdlib>

#include "graphics/devices/print/metafile.h"
#include "graphics/kernel/kernel.h"
#include "lib/report/message.h"

int gobj_print_meta() {
    constexpr const char *kFallback = "vyx.meta";
    if (gfirst_obj() == nullptr) {
        MESS_print(kWarn, "gobj_print_meta: No redraw data to make metafile from\n");
        return -1;
    }
    if (gobj_is_incomplete())
        MESS_print(kWarn, "gobj_print_meta: Images over the map do not come into a metafile\n");
    const char *const named = std::getenv("METAOUT");
    return gmeta_write_objects(named != nullptr && *named != '\0' ? named : kFallback);
}
