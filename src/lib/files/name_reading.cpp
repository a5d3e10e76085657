/// Reading file names back: template and name are walked together.

#include <algorithm>
#include <utility>

#include "lib/files/name_template.h"
#include "lib/system/stream.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "lib/time/date.h"

namespace {

using Kind = NameToken::Kind;

constexpr std::size_t kMonthLetters = 3;

class NameReader {
public:
    /// `known` gives the date codes between braces, which no name tells at their place.
    NameReader(std::string_view text, std::string_view name, const NameContext &context,
               const DateRecord &known)
        : tokens_(FILE_split_template(text)), name_(name), rest_(name), context_(context), known_(known),
          full_(FILE_fullpath(name) != 0) {
        reading_.date = context.set_time;
        reading_.extension = context.extension;
    }

    NameReading read() {
        for (index_ = 0; index_ < tokens_.size() && !ended_; ++index_) take(tokens_[index_]);
        // Without a date only a whole fit says that the name is one of this template.
        reading_.fits = reading_.dated || ((!ended_ || star_) && !other_key_);
        if (!reading_.fits) return as_it_stands();
        reading_.name += rest_;
        complete_date();
        return reading_;
    }

private:
    NameReading as_it_stands() const {
        NameReading plain;
        plain.name = name_;
        plain.date = context_.set_time;
        plain.extension = context_.extension;
        return plain;
    }

    void take(const NameToken &token) {
        const bool after_path = std::exchange(path_inserted_, false);
        // A full name brings its own directory in the place of the text that short names leave out.
        if (token.braced && full_ && token.kind != Kind::path && token.kind != Kind::resource) return;
        switch (token.kind) {
        case Kind::literal: literal(token, after_path); break;
        case Kind::date: date(token); break;
        case Kind::extension: extension(token); break;
        case Kind::path:
        case Kind::resource: path(token); break;
        case Kind::key: key(token); break;
        }
    }

    void literal(const NameToken &token, bool after_path) {
        std::string_view text = token.text;
        if (after_path && text.starts_with('/')) {
            if (!reading_.name.ends_with('/')) reading_.name += '/';
            text.remove_prefix(1);
        }
        for (const char c : text) {
            if (token.braced || (rest_.empty() && reading_.dated)) {
                reading_.name += c;
            } else if (c != '*' && rest_.starts_with(c)) {
                reading_.name += c;
                rest_.remove_prefix(1);
            } else {
                star_ = c == '*';
                ended_ = true; // at a mismatch too the rest of the name follows as it stands
                return;
            }
        }
    }

    void path(const NameToken &token) {
        if (!full_) {
            reading_.name += FILE_path_text(token);
            path_inserted_ = true;
            return;
        }
        if (std::exchange(path_copied_, true)) return;
        const bool slash_follows = !token.braced && index_ + 1 < tokens_.size() &&
                                   tokens_[index_ + 1].kind == Kind::literal &&
                                   tokens_[index_ + 1].text.starts_with('/');
        const std::size_t separators = FILE_count_separators(tokens_, index_ + 1, false);
        if (const auto part = FILE_directory_part(rest_, separators, slash_follows)) copy(part->size());
    }

    void extension(const NameToken &token) {
        if (token.braced) {
            reading_.name += reading_.extension;
            return;
        }
        const std::string_view literal = next_literal();
        const std::string_view text = rest_.substr(0, literal.empty() ? rest_.npos : rest_.find(literal));
        rest_.remove_prefix(text.size());
        if (reading_.extension.empty()) reading_.extension = text;
        reading_.name += context_.extension.empty() ? std::string(text) : context_.extension;
    }

    void key(const NameToken &token) {
        const std::string value = FILE_key_text(token, context_);
        const bool unset = context_.keys[static_cast<unsigned char>(token.letter) % kKeyCount].empty();
        // The name may tell what no one set. "0" is what this program writes for it.
        if (unset && !token.braced && !rest_.starts_with(value)) {
            const std::size_t end = next_literal().empty() ? rest_.npos : rest_.find(next_literal());
            if (end != rest_.npos) copy(end);
            return;
        }
        reading_.name += value;
        other_key_ = other_key_ || (!token.braced && !rest_.starts_with(value));
        if (!token.braced) rest_.remove_prefix(std::min(value.size(), rest_.size()));
    }

    void date(const NameToken &token) {
        if (token.braced) {
            reading_.name += FILE_expand_template(std::string("%") + token.letter, known_, context_).name;
            return;
        }
        if (token.letter == 'b') {
            month_name();
            return;
        }
        const std::size_t most = token.letter == 'Y' ? 4 : token.letter == 'j' ? 3 : 2;
        Scanner scan(rest_);
        // Neither blanks nor a sign stand before the digits of a name.
        const auto value = !rest_.empty() && is_digit(rest_.front()) ? scan.integer(most) : std::nullopt;
        if (!value) {
            ended_ = true;
            return;
        }
        copy(scan.position());
        store(token.letter, *value);
        reading_.dated = true;
    }

    void month_name() {
        const std::string_view letters = rest_.substr(0, kMonthLetters);
        const int month = DATE_decode_month(letters);
        if (month == 0 && letters != "xxx") {
            ended_ = true;
            return;
        }
        if (month != 0) reading_.date.month = month;
        copy(letters.size());
        reading_.dated = true;
    }

    /// A field that was unknown when the name was written stands there as zeros.
    void store(char letter, int value) {
        DateRecord &date = reading_.date;
        switch (letter) {
        case 'Y': date.year = value == 0 ? kMissing : value; break;
        case 'y': date.year = value + (value < 50 ? 2000 : 1900); break;
        case 'm': date.month = value == 0 ? kMissing : value; break;
        case 'd': date.day = value == 0 ? kMissing : value; break;
        case 'j': date.julian = value == 0 ? kMissing : value; break;
        case 'h': date.hour = value; break;
        default: date.minute = value; break;
        }
    }

    void complete_date() {
        DateRecord &date = reading_.date;
        if (date.year > 0 && date.julian > 0 && (date.month < 0 || date.day < 0))
            DATE_julian_monday(date.year, date.julian, date.month, date.day);
    }

    /// The literal text of the template behind the current token, up to its next code.
    [[nodiscard]] std::string_view next_literal() const {
        for (std::size_t i = index_ + 1; i < tokens_.size(); ++i)
            if (tokens_[i].kind == Kind::literal && !tokens_[i].braced) return tokens_[i].text;
        return {};
    }

    void copy(std::size_t count) {
        reading_.name += rest_.substr(0, count);
        rest_.remove_prefix(std::min(count, rest_.size()));
    }

    std::vector<NameToken> tokens_;
    std::string_view name_;
    std::string_view rest_; ///< of the name, not yet read
    const NameContext &context_;
    DateRecord known_;
    bool full_;
    std::size_t index_ = 0;
    bool path_inserted_ = false; ///< by the token before
    bool path_copied_ = false;
    bool star_ = false;      ///< ended by a "*" of the template
    bool other_key_ = false; ///< the name has other text where a key stands
    bool ended_ = false;
    NameReading reading_;
};

} // namespace

NameReading FILE_read_by_template(std::string_view text, std::string_view name, const NameContext &context) {
    NameReading first = NameReader(text, name, context, DateRecord{}).read();
    if (!first.fits) return first;
    return NameReader(text, name, context, first.date).read();
}
