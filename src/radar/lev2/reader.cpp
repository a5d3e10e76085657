/// The described procedures: faces of the reader of the open volume.

#include "radar/lev2/reader.h"

#include "radar/lev2/volume_reader.h"

Lev2Reader &LEV2_reader() {
    static Lev2Reader reader;
    return reader;
}

void LEV2_set_compress(int flag) {
    LEV2_reader().stream.expect_records(flag != 0);
}
int LEV2_open_file(std::string_view name) {
    return LEV2_reader().open(name) ? 1 : 0;
}
int LEV2_close_file() {
    LEV2_reader().close();
    return 1;
}
int LEV2_rewind_file() {
    return LEV2_reader().rewind() ? 1 : 0;
}
int LEV2_get_header(Lev2Info &info) {
    return LEV2_reader().read_header(info) ? 0 : -1;
}
int LEV2_get_block(Lev2Radial &radial) {
    return LEV2_reader().next_block(radial) ? 1 : 0;
}
int LEV2_next_block() {
    LEV2_reader().end_block();
    return 1;
}
int LEV2_set_data_type(int type) {
    return LEV2_reader().select(type) ? 1 : 0;
}
float LEV2_get_data() {
    return LEV2_reader().next_value();
}
const Lev2Gates &LEV2_get_gates(int type) {
    return LEV2_reader().gates(type);
}
float LEV2_first_gate_km(int type) {
    return LEV2_reader().first_gate_km(type);
}
std::vector<Lev2Cut> LEV2_list_cuts() {
    return LEV2_reader().list_cuts();
}
