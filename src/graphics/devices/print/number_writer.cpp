#include "graphics/devices/print/number_writer.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

constexpr double kLargest = 1e9;
constexpr std::array<double, PrintWriter::kMaxDecimals + 1> kScale{1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6};

} // namespace

void PrintWriter::open(OutputFile file) {
    file_ = std::move(file);
    used_ = 0;
}

bool PrintWriter::close() {
    flush();
    // The buffered bytes are out of our hands only once the file is closed, so its result counts too.
    return file_.commit();
}

void PrintWriter::abandon() {
    used_ = 0;
    file_.discard();
}

void PrintWriter::flush() {
    if (used_ > 0) file_.write({buffer_.data(), used_});
    used_ = 0;
}

void PrintWriter::text(std::string_view text) {
    while (!text.empty()) {
        reserve(std::min(text.size(), kBufferBytes));
        const std::size_t count = std::min(text.size(), kBufferBytes - used_);
        std::memcpy(buffer_.data() + used_, text.data(), count);
        used_ += count;
        text.remove_prefix(count);
    }
}

void PrintWriter::comment_text(std::string_view text) {
    constexpr char first_printable = ' ', delete_character = 0x7F;
    for (const char c : text) {
        const bool control = (c >= 0 && c < first_printable) || c == delete_character;
        if (control) continue;
        reserve(1);
        buffer_[used_++] = c;
    }
}

void PrintWriter::integer(int value) {
    reserve(kNumberBytes);
    char *const at = buffer_.data() + used_;
    used_ += static_cast<std::size_t>(std::to_chars(at, at + kNumberBytes, value).ptr - at);
}

void PrintWriter::fixed(float value, int decimals) {
    reserve(kNumberBytes);
    put_fixed(value, decimals);
}

void PrintWriter::point(const Point &position, std::string_view after) {
    reserve(2 * kNumberBytes + 1);
    put_fixed(position.x, 2);
    buffer_[used_++] = ' ';
    put_fixed(position.y, 2);
    text(after);
}

// A float has 24 significant bits and 10^6 takes 20, so the product below is exact in double and rounding it
// to the nearest integer (ties to even) gives the very digits that printf gives.
void PrintWriter::put_fixed(float value, int decimals) {
    const double limited =
        std::isnan(value) ? 0.0 : std::clamp(static_cast<double>(value), -kLargest, kLargest);
    const auto places = static_cast<std::size_t>(decimals);
    const auto units = static_cast<std::int64_t>(std::nearbyint(limited * kScale[places]));
    auto rest = static_cast<std::uint64_t>(units < 0 ? -units : units);

    std::array<char, kNumberBytes> digits;
    std::size_t first = digits.size();
    for (std::size_t written = 0; written <= places || rest > 0; ++written) {
        if (written == places && places > 0) digits[--first] = '.';
        digits[--first] = static_cast<char>('0' + rest % 10);
        rest /= 10;
    }
    if (units < 0) digits[--first] = '-';
    std::memcpy(buffer_.data() + used_, digits.data() + first, digits.size() - first);
    used_ += digits.size() - first;
}
