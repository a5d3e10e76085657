#include "radar/kavrad/plot.h"

#include "radar/kavrad/decoder.h"

namespace {

RadarSteps steps() {
    RadarSteps steps{[](std::string_view name) { return KAVRAD_driver().open(name); },
                     [] { KAVRAD_driver().close(); }, [] { return KAVRAD_driver().info().domain; },
                     [] { KAVRAD_driver().plot_frame(); }};
    steps.mouse = KAVRAD_callback;
    steps.plot = KAVRAD_plot;
    steps.next_file = [](PlotDomain &) {
        KAVRAD_driver().next_file(::steps());
        return 0;
    };
    return steps;
}

} // namespace

MosaicDriver &KAVRAD_driver() {
    static MosaicDriver driver(kKavradFormat);
    return driver;
}

int KAVRAD_open_file(std::string_view name) {
    return KAVRAD_driver().open(name) ? 1 : 0;
}
int KAVRAD_close_file() {
    KAVRAD_driver().close();
    return 1;
}
int KAVRAD_rewind_file() {
    return KAVRAD_driver().rewind() ? 1 : 0;
}
void KAVRAD_set_date(const DateRecord *date) {
    KAVRAD_driver().set_date(date);
}
void KAVRAD_plot_param() {
    KAVRAD_driver().take_params();
}
int KAVRAD_plot(PlotDomain &domain) {
    KAVRAD_driver().plot(domain, steps());
    return 0;
}
int KAVRAD_plot_summary() {
    KAVRAD_driver().draw();
    return 0;
}
void KAVRAD_callback(int /*kind*/, std::string_view event, float x, float y) {
    MosaicDriver::on_event(event, x, y, [](const std::string &file, RadarReading &reading) {
        return KAVRAD_driver().read_place(file, reading);
    });
}
