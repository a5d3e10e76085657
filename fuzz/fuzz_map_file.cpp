// Map database files, text and binary: whatever the bytes, the reader ends and gives no more than the file
// holds.

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "plot/background/line_file.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    if (size == 0) return 0;
    // The stream is only read.
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(
        fmemopen(const_cast<unsigned char *>(data), size, "rb"), &std::fclose);
    if (!file) return 0;
    MapReader reader(file.get());
    std::vector<MapPoint> points;
    std::size_t total = 0;
    while (reader.next(points) == MapReader::Result::record) total += points.size();
    if (2 * total > size) std::abort(); // a point takes two characters at least
    return 0;
}
