#pragma once
/// Buffered writing of print files: text and numbers with a fixed count of decimals.

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "graphics/core/types.h"
#include "lib/files/output_file.h"

/// Owns the output of a print device. A failed write is remembered, later writes are dropped, and close()
/// tells. Without a stream everything is dropped.
class PrintWriter {
public:
    static constexpr int kMaxDecimals = 6;

    void open(OutputFile file);
    [[nodiscard]] bool is_open() const { return static_cast<bool>(file_); }
    /// Writes what is buffered, closes, and puts the file in its place. False when any write since open()
    /// failed, or a piped command did; fault() says why.
    [[nodiscard]] bool close();
    /// Closes what will not be whole: a file written aside is gone, what else there is ends where it is.
    void abandon();
    [[nodiscard]] std::string fault() const { return file_.fault(); }

    void text(std::string_view text);
    /// For one-line comments: control characters, line ends among them, are left out.
    void comment_text(std::string_view text);
    void integer(int value);
    /// "%.<decimals>f" in the C locale, without negative zero. A value that is not a number is written as 0,
    /// a magnitude above 1e9 as 1e9.
    void fixed(float value, int decimals);
    /// Both coordinates with two decimals and a blank between, then `after`.
    void point(const Point &position, std::string_view after);

private:
    static constexpr std::size_t kBufferBytes = std::size_t{1} << 16;
    /// Room that fixed() may need: sign, 10 digits, point and decimals.
    static constexpr std::size_t kNumberBytes = 24;

    void flush();
    void reserve(std::size_t bytes) {
        if (kBufferBytes - used_ < bytes) flush();
    }
    void put_fixed(float value, int decimals);

    std::array<char, kBufferBytes> buffer_{};
    std::size_t used_ = 0;
    OutputFile file_;
};
