#include "radar/nowrad/plot.h"

#include "radar/nowrad/decoder.h"

namespace {

RadarSteps steps() {
    RadarSteps steps{[](std::string_view name) { return NOWRad_driver().open(name); },
                     [] { NOWRad_driver().close(); }, [] { return NOWRad_driver().info().domain; },
                     [] { NOWRad_driver().plot_frame(); }};
    steps.mouse = NOWRad_callback;
    steps.plot = NOWRad_plot;
    steps.next_file = [](PlotDomain &) {
        NOWRad_driver().next_file(::steps());
        return 0;
    };
    return steps;
}

} // namespace

MosaicDriver &NOWRad_driver() {
    static MosaicDriver driver(kNowradFormat);
    return driver;
}

int NOWRad_open_file(std::string_view name) {
    return NOWRad_driver().open(name) ? 1 : 0;
}
int NOWRad_close_file() {
    NOWRad_driver().close();
    return 1;
}
int NOWRad_rewind_file() {
    return NOWRad_driver().rewind() ? 1 : 0;
}
void NOWRad_set_date(const DateRecord *date) {
    NOWRad_driver().set_date(date);
}
void NOWRad_plot_param() {
    NOWRad_driver().take_params();
}
int NOWRad_plot(PlotDomain &domain) {
    NOWRad_driver().plot(domain, steps());
    return 0;
}
int NOWRad_plot_summary() {
    NOWRad_driver().draw();
    return 0;
}
void NOWRad_callback(int /*kind*/, std::string_view event, float x, float y) {
    MosaicDriver::on_event(event, x, y, [](const std::string &file, RadarReading &reading) {
        return NOWRad_driver().read_place(file, reading);
    });
}
