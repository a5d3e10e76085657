/// Writes small, valid radar files of one simulated evening.
///   make_samples DIRECTORY
/// One file of each Level III kind, and a series of six base reflectivities, named
/// KLSX_<kind>_<YYYYMMDD>_<hhmm>; Level II volumes of each form, those of records in a series of three, named
/// KLSX_<form>_<YYYYMMDD>_<hhmm>; mosaics and coded messages, named
/// <format>_<YYYYMMDD>_<hhmm>, and site files, LSX_<format>_<YYYYMMDD>_<hhmm>; converted summaries in text
/// and netCDF, <form>_<YYYYMMDD>_<hhmm>.

#include <cstdio>
#include <cstdlib>
#include <string>

#include "lib/system/calendar.h"
#include "lib/system/stream.h"
#include "lib/text/strings.h"
#include "samples/level2.h"
#include "samples/level3_products.h"
#include "samples/mosaic.h"
#include "samples/rcm.h"
#include "samples/rrwds.h"
#include "samples/summary.h"

namespace {

constexpr int kSeriesLength = 6, kVolumes = 3;

/// `what` and the time make the name.
bool write_file(const std::string &directory, const std::string &what, std::int64_t time,
                const samples::Bytes &bytes) {
    DateRecord date;
    DATE_get_gmdate(&time, date);
    const std::string name = format_text("%s_%04d%02d%02d_%02d%02d", what.c_str(), date.year, date.month,
                                         date.day, date.hour, date.minute);
    Stream file = FILE_open(FILE_add_path(directory, name), "wb");
    const bool written =
        file && std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size() && file.close();
    if (!written)
        std::fprintf(stderr, "make_samples: cannot write %s in %s\n", name.c_str(), directory.c_str());
    return written;
}

bool write_product(const std::string &directory, const samples::NamedProduct &named) {
    return write_file(directory, "KLSX_" + named.kind, named.product.time,
                      samples::level3_file(named.product, named.framing, named.compression));
}

bool write_volume(const std::string &directory, const std::string &kind, samples::Level2Form form,
                  double minutes = 0) {
    const samples::Level2Volume volume =
        samples::level2_volume(minutes, form == samples::Level2Form::records);
    return write_file(directory, "KLSX_" + kind, volume.time, samples::level2_file(volume, form));
}

bool write_site_files(const std::string &directory) {
    using namespace samples;
    for (int i = 0; i < kVolumes; ++i) {
        const RrwdsFile file = rrwds(i * kVolumeMinutes, false);
        if (!write_file(directory, "LSX_rrwds", file.time, rrwds_file(file))) return false;
    }
    return write_file(directory, "LSX_rrwdsnear", kFirstVolume, rrwds_file(rrwds(0, true)));
}

bool write_coded_messages(const std::string &directory) {
    using namespace samples;
    const RcmBulletin bulletin = rcm(0);
    return write_file(directory, "rcm", kFirstVolume, rcm_bulletin(bulletin, RcmForm::lines)) &&
           write_file(directory, "rcmwrapped", kFirstVolume, rcm_bulletin(bulletin, RcmForm::wrapped));
}

bool write_mosaics(const std::string &directory) {
    using namespace samples;
    return write_file(directory, "nowrad", kFirstVolume, nowrad_file(nowrad_latlon(0))) &&
           write_file(directory, "nowradus", kFirstVolume, nowrad_file(nowrad_lambert(0))) &&
           write_file(directory, "kavrad", kFirstVolume, kavrad_file(kavrad(0, false, false))) &&
           write_file(directory, "kavradhalf", kFirstVolume, kavrad_file(kavrad(0, true, true)));
}

bool write_summaries(const std::string &directory) {
    using namespace samples;
    constexpr int kHours = 3;
    constexpr double kMinutesBetween = 30;
    for (int i = 0; i < kHours; ++i) {
        const DigitizedSummary summary = digitized(i * kMinutesBetween);
        if (!write_file(directory, "mdr", summary.time, digitized_text(summary, SummaryForm::text)))
            return false;
    }
    const DigitizedSummary first = digitized(0);
    const CodedSummary messages = coded(0);
    const auto write = [&directory](const char *name, const Bytes &bytes) {
        return !bytes.empty() && write_file(directory, name, kFirstVolume, bytes);
    };
    return write("mdrmarked", digitized_text(first, SummaryForm::marked)) &&
           write("mdrpackage", digitized_text(first, SummaryForm::package)) &&
           write("mdrstations", netcdf_file(digitized_stations(first))) &&
           write("mdrreports", netcdf_file(digitized_reports(first))) &&
           write("rcmcvt", coded_text(messages, SummaryForm::text));
}

} // namespace

int main(int argc, char *argv[]) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_samples DIRECTORY\n");
        return EXIT_FAILURE;
    }
    const std::string directory = argv[1];
    for (const samples::NamedProduct &named : samples::all_products(0))
        if (!write_product(directory, named)) return EXIT_FAILURE;
    for (int i = 1; i < kSeriesLength; ++i) {
        const double minutes = i * samples::kVolumeMinutes;
        if (!write_product(directory, {"N0R", samples::reflectivity(minutes), samples::Framing::wmo,
                                       samples::Compression::none}))
            return EXIT_FAILURE;
    }
    bool volumes = write_volume(directory, "legacy", samples::Level2Form::legacy) &&
                   write_volume(directory, "generic", samples::Level2Form::generic);
    for (int i = 0; i < kVolumes; ++i)
        volumes = volumes && write_volume(directory, "records", samples::Level2Form::records,
                                          i * samples::kVolumeMinutes);
    return volumes && write_mosaics(directory) && write_coded_messages(directory) &&
                   write_site_files(directory) && write_summaries(directory)
               ? EXIT_SUCCESS
               : EXIT_FAILURE;
}
