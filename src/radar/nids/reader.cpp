/// The described procedures: faces of the reader of the open product.

#include "radar/nids/reader.h"

#include <utility>

#include "radar/nids/product_reader.h"

NidsReader &NIDS_reader() {
    static NidsReader reader;
    return reader;
}

void NIDS_set_bytes(std::vector<std::byte> bytes) {
    NIDS_reader().stream.set_bytes(std::move(bytes));
}
bool NIDS_open_stream(std::string_view name) {
    return NIDS_reader().stream.open(name);
}
void NIDS_close_stream() {
    NIDS_set_bytes({});
}
int NIDS_read(std::span<std::byte> buffer) {
    return static_cast<int>(NIDS_reader().stream.read(buffer));
}
int NIDS_read_short(std::int16_t &value) {
    return static_cast<int>(NIDS_reader().stream.read_short(value));
}
int NIDS_read_long(std::int32_t &value) {
    return static_cast<int>(NIDS_reader().stream.read_long(value));
}
int NIDS_skip_line() {
    return static_cast<int>(NIDS_reader().stream.skip_line());
}
void NIDS_set_ext_info(std::string_view text) {
    NIDS_reader().stream.set_selection(text);
}

int NIDS_mess_header() {
    return NIDS_reader().message_header() ? 1 : 0;
}
int NIDS_prod_desc() {
    return NIDS_reader().product_description() ? 1 : 0;
}
int NIDS_get_header(NidsInfo &record) {
    return NIDS_reader().read_header(record) ? 1 : 0;
}
const NidsMessageHeader &NIDS_get_mess() {
    return NIDS_reader().blocks.message;
}
const NidsDescription &NIDS_get_prod_desc() {
    return NIDS_reader().blocks.description;
}
const std::array<float, kThresholds> &NIDS_get_thres() {
    return NIDS_reader().blocks.thresholds;
}

int NIDS_prod_symb() {
    return NIDS_reader().symbology() ? 1 : 0;
}
int NIDS_prod_symb_layer() {
    return NIDS_reader().symbology_layer() ? 1 : 0;
}
int NIDS_packet(int &code) {
    return static_cast<int>(NIDS_reader().next_packet(code));
}
int NIDS_get_radial(float &start, float &delta) {
    return static_cast<int>(NIDS_reader().next_radial(start, delta));
}
int NIDS_get_rastor() {
    return static_cast<int>(NIDS_reader().next_row());
}
int NIDS_get_data(NidsRun &run) {
    return static_cast<int>(NIDS_reader().next_run(run));
}
std::span<const std::byte> NIDS_get_data_bytes() {
    return NIDS_reader().data_bytes();
}
void NIDS_level_values(int packet, std::span<float, 256> values) {
    NIDS_reader().level_values(packet, values);
}
int NIDS_get_vector(NidsVector &vector) {
    return static_cast<int>(NIDS_reader().next_vector(vector));
}
int NIDS_get_wind(NidsWind &wind) {
    return static_cast<int>(NIDS_reader().next_wind(wind));
}
int NIDS_get_text(NidsText &text) {
    return static_cast<int>(NIDS_reader().next_text(text));
}
int NIDS_graphic() {
    return NIDS_reader().graphic() ? 1 : 0;
}
int NIDS_graphic_layer() {
    return NIDS_reader().next_page();
}
