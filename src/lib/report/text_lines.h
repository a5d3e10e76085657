#pragma once
/// The lines of a text file whose format says how long a line may be.

#include <string>
#include <string_view>
#include <utility>

#include "lib/system/stream.h"

class TextLines {
public:
    /// `name` is the file's, for messages.
    TextLines(Stream stream, std::string_view name, std::size_t most)
        : stream_(std::move(stream)), name_(name), most_(most) {}

    /// False when the file could not be opened.
    explicit operator bool() const { return static_cast<bool>(stream_); }
    /// The next line without its line end, cut at the longest length; what is cut off a line that is no
    /// comment ("#") is told. False at the end of the stream.
    [[nodiscard]] bool next(std::string &line);
    /// Back to the first line.
    void restart();
    /// Tells `<file>, line <n>: <sentence>`, once in a run, of some lines and that there are more.
    void tell(std::string_view sentence) const;

private:
    Stream stream_;
    std::string name_;
    std::size_t most_;
    int number_ = 0;       ///< of the line last read, from 1
    mutable int told_ = 0; ///< sentences so far
};
