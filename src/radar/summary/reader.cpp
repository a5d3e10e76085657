#include "radar/summary/reader.h"

#include <memory>
#include <optional>

#include "lib/report/message.h"
#include "radar/common/input.h"
#include "radar/summary/netcdf_summary.h"
#include "radar/summary/text_file.h"

namespace {

constexpr int kTheFile = 1;
constexpr std::size_t kMostBytes = 64U << 20; ///< of a summary; the largest real ones have a few megabytes

/// The open file: one of both.
struct OpenFile {
    RadFileKind kind = kRadUnknown;
    SummaryText text;
    std::unique_ptr<SummaryNetcdf> netcdf;
    int report = -1; ///< index of the report that was read last; -1 before the first
    bool at_table = false;
    bool longer = false; ///< than what is read
};

struct State {
    std::optional<OpenFile> open;
    std::string fault;
};
State state;

/// What the first byte tells; netCDF files are told apart by what is in them.
RadFileKind kind_of(char first) {
    switch (first) {
    case '*': return kRadMarked;
    case ' ':
    case '0':
    case '1':
    case '2': return kRadText;
    case 'W':
    case 'V': return kRadPackage;
    default: return kRadUnknown;
    }
}

/// The header line of the package's own files begins with "W", or is this.
bool is_package(const std::vector<std::byte> &bytes) {
    constexpr std::string_view kHead = "VYXRAD";
    const std::string_view text(reinterpret_cast<const char *>(bytes.data()), bytes.size());
    return text.starts_with('W') || text.starts_with(kHead);
}

bool has_reports(const OpenFile &file) {
    return file.kind == kRadText || file.kind == kRadPackage;
}

OpenFile *open_file(int file) {
    return file == kTheFile && state.open ? &*state.open : nullptr;
}

bool open_netcdf(std::vector<std::byte> bytes, OpenFile &file) {
    file.netcdf = std::make_unique<SummaryNetcdf>(std::move(bytes));
    file.kind = file.netcdf->kind();
    if (file.kind == kRadUnknown) state.fault = file.netcdf->fault();
    return file.kind != kRadUnknown;
}

bool open_bytes(std::vector<std::byte> bytes, OpenFile &file) {
    if (bytes.empty()) {
        state.fault = "the file is empty";
        return false;
    }
    const char first = std::to_integer<char>(bytes.front());
    if (first == 'C') return open_netcdf(std::move(bytes), file);
    file.kind = kind_of(first);
    if (file.kind == kRadPackage && !is_package(bytes)) file.kind = kRadUnknown;
    if (file.kind == kRadUnknown) {
        state.fault = "the file is no radar summary";
        return false;
    }
    file.text = SummaryText(bytes, file.kind);
    return true;
}

std::optional<OpenFile> open_named(std::string_view name) {
    state.fault.clear();
    Stream stream = RADAR_open_input(std::string(name));
    if (!stream) return std::nullopt;
    std::vector<std::byte> bytes = stream.read_all(kMostBytes + 1);
    OpenFile file;
    file.longer = bytes.size() > kMostBytes;
    if (file.longer) bytes.resize(kMostBytes);
    if (!open_bytes(std::move(bytes), file)) return std::nullopt;
    return file;
}

} // namespace

RadFileKind RAD_chktype(std::string_view name) {
    const auto file = open_named(name);
    return file ? file->kind : kRadUnknown;
}

int RAD_open(std::string_view name, int &kind) {
    state.open.reset();
    auto file = open_named(name);
    if (!file || (kind != 0 && kind != file->kind)) return -1;
    kind = file->kind;
    state.open = std::move(file);
    return kTheFile;
}

const std::string &RAD_fault() {
    return state.fault;
}

int RAD_getinfo(int number, RadarInfo &record) {
    OpenFile *const file = open_file(number);
    if (file == nullptr) return -1;
    file->at_table = false;
    if (file->netcdf) return file->netcdf->read_info(record) ? 0 : -1;
    return file->text.read_info(record) ? 0 : -1;
}

int RCM_read(int number, RcmRecord &record) {
    OpenFile *const file = open_file(number);
    if (file == nullptr || !has_reports(*file)) return -1;
    return file->text.next_record(record) ? 1 : -1;
}

namespace {

/// Reads the text report at an index, from where the file stands or from its first one.
bool read_text_report(OpenFile &file, MdrReport &record, bool header_only, int index) {
    if (!file.at_table || index <= file.report) (void)RAD_rewind(kTheFile); // it is open
    while (file.report + 1 < index) {
        if (!file.text.next_report(record, true)) return false;
        ++file.report;
    }
    if (!file.text.next_report(record, header_only)) return false;
    ++file.report;
    return true;
}

} // namespace

int MDR_read(int number, MdrReport &record, bool header_only, int &index) {
    OpenFile *const file = open_file(number);
    if (file == nullptr) return -1;
    const int wanted = index == -1 ? file->report + 1 : index;
    if (wanted < 0) return -1;
    if (file->netcdf) {
        if (static_cast<std::size_t>(wanted) >= file->netcdf->count()) return -1;
        if (!header_only && !file->netcdf->read_report(static_cast<std::size_t>(wanted), record)) return -1;
        file->report = wanted;
    } else if (!has_reports(*file) || !read_text_report(*file, record, header_only, wanted)) {
        return -1;
    }
    index = wanted;
    return 0;
}

int RAD_close(int number) {
    if (open_file(number) == nullptr) return -1;
    state.open.reset();
    return 0;
}

int RAD_rewind(int number) {
    OpenFile *const file = open_file(number);
    if (file == nullptr) return -1;
    file->report = -1;
    file->at_table = true;
    file->text.seek_reports();
    return 0;
}

std::vector<std::string> RAD_faults(int number) {
    const OpenFile *const file = open_file(number);
    if (file == nullptr) return {};
    std::vector<std::string> faults = file->text.faults();
    if (file->netcdf && !file->netcdf->fault().empty()) faults.push_back(file->netcdf->fault());
    if (file->longer) faults.emplace_back("the file is longer than what is read");
    return faults;
}
