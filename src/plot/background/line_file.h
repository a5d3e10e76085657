#pragma once
/// Map database files: a row of records, binary (big-endian) or text, each a line of points. Beside the
/// source: only the map background and its tests read them.

#include <cstddef>
#include <cstdio>
#include <span>
#include <vector>

/// Degrees, north and east positive, as they stand in the file.
struct MapPoint {
    float lat, lon;
};

/// Reads the records of an open map file one by one. The stream must outlive the reader.
class MapReader {
public:
    enum class Result {
        record, ///< a whole record was read
        last,   ///< a record without points ends the map
        end     ///< the file ended, or what follows is no record
    };

    explicit MapReader(std::FILE *file) : file_(file), buffer_(kBufferSize) {}
    Result next(std::vector<MapPoint> &points);

private:
    enum class Form { unknown, text, binary };
    static constexpr std::size_t kBufferSize = 65536;

    [[nodiscard]] std::size_t available() const { return end_ - begin_; }
    [[nodiscard]] bool want(std::size_t bytes);
    Form detect();
    Result next_binary(std::vector<MapPoint> &points);
    Result next_text(std::vector<MapPoint> &points);
    [[nodiscard]] bool text_number(float &number);
    [[nodiscard]] std::span<const std::byte> unread() const;

    std::FILE *file_;
    std::vector<char> buffer_;
    std::size_t begin_ = 0, end_ = 0; ///< what is read and not yet used
    Form form_ = Form::unknown;
};
