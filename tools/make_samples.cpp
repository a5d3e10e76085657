/// Writes small, valid radar files of one simulated evening.
///   make_samples DIRECTORY
/// One file of each Level III kind, and a series of six base reflectivities, named
/// KLSX_<kind>_<YYYYMMDD>_<hhmm>.

#include <cstdio>
#include <cstdlib>
#include <string>

#include "lib/calendar.h"
#include "lib/stream.h"
#include "lib/text.h"
#include "samples/level3_products.h"

namespace {

constexpr int kSeriesLength = 6;

bool write_file(const std::string &directory, const samples::NamedProduct &named) {
    DateRecord date;
    const std::int64_t time = named.product.time;
    DATE_get_gmdate(&time, date);
    const std::string name = format_text("KLSX_%s_%04d%02d%02d_%02d%02d", named.kind.c_str(), date.year,
                                         date.month, date.day, date.hour, date.minute);
    const samples::Bytes bytes = samples::level3_file(named.product, named.framing, named.compression);
    Stream file = FILE_open(FILE_add_path(directory, name), "wb");
    const bool written =
        file && std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size() && file.close();
    if (!written)
        std::fprintf(stderr, "make_samples: cannot write %s in %s\n", name.c_str(), directory.c_str());
    return written;
}

} // namespace

int main(int argc, char *argv[]) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_samples DIRECTORY\n");
        return EXIT_FAILURE;
    }
    const std::string directory = argv[1];
    for (const samples::NamedProduct &named : samples::all_products(0))
        if (!write_file(directory, named)) return EXIT_FAILURE;
    for (int i = 1; i < kSeriesLength; ++i) {
        const double minutes = i * samples::kVolumeMinutes;
        if (!write_file(directory, {"N0R", samples::reflectivity(minutes), samples::Framing::wmo,
                                    samples::Compression::none}))
            return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
