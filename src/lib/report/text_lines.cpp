#include "lib/report/text_lines.h"

#include <cstdio>

#include "lib/report/misfits.h"
#include "lib/text/strings.h"

bool TextLines::next(std::string &line) {
    if (!stream_.get_line(line)) return false;
    ++number_;
    if (line.size() <= most_) return true;
    const bool blank_rest = trimmed(std::string_view(line).substr(most_)).empty();
    if (!blank_rest && !line.starts_with('#'))
        tell(format_text("Of %zu characters only the first %zu are read", line.size(), most_));
    line.resize(most_);
    return true;
}

void TextLines::restart() {
    if (stream_) std::rewind(stream_.get());
    number_ = 0;
}

void TextLines::tell(std::string_view sentence) const {
    constexpr int kMostTold = 5;
    if (told_ <= kMostTold) ++told_;
    if (told_ <= kMostTold)
        WORD_tell(format_text("%s, line %d", name_.c_str(), number_), sentence);
    else
        WORD_tell(name_, "Further lines are not as they should be");
}
