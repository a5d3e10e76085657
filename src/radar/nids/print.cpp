#include "lib/report/message.h"
#include "lib/time/date.h"
#include "plot/places/region.h"
#include "radar/nids/reader.h"

void NIDS_print_info(const NidsInfo &info) {
    const double latitude = static_cast<double>(info.domain.clat),
                 longitude = static_cast<double>(info.domain.clon);
    MESS_print(kMess, "Product type: %s\n", info.name.c_str());
    MESS_print(kMess, "Product date: %s\n", DATE_make_label(info.date).c_str());
    MESS_print(kMess, "Product location: %5.2f %5.2f\n", latitude, longitude);
    MESS_print(kOut2, "Product domain: ");
    DOM_print(kOut1, info.domain);
    MESS_print(kMess, "Threshold values: ");
    for (std::size_t i = 0; i < info.thresholds.size(); ++i) {
        const double value = static_cast<double>(info.thresholds[i]);
        if (i % 8 == 7)
            MESS_print(kMess, "%.1f\n%18s", value, "");
        else if (i % 4 == 3)
            MESS_print(kMess, "%.1f|", value);
        else
            MESS_print(kMess, "%.1f ", value);
    }
    MESS_print(kMess, "\n");
}
