#include "radar/rcm/coded_text.h"

#include <algorithm>
#include <array>
#include <optional>

#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

constexpr int kBoxCells = 4;    ///< cells of a box of the national grid to each side
constexpr char kLastCell = 'P'; ///< of the sixteen cells of a box
constexpr std::string_view kBlanks = " \t\r\n";

bool is_capital(char c) {
    return c >= 'A' && c <= 'Z';
}

/// A cursor over the text. What does not fit is left where it stands.
class Cursor {
public:
    explicit Cursor(std::string_view text) : text_(text) {}

    void skip_blanks() { text_.remove_prefix(std::min(text_.find_first_not_of(kBlanks), text_.size())); }
    /// Up to the next "/".
    void skip_to_item() { text_.remove_prefix(std::min(text_.find('/'), text_.size())); }
    [[nodiscard]] char peek() const { return text_.empty() ? '\0' : text_.front(); }
    [[nodiscard]] bool at_end() const { return text_.empty(); }
    char next() {
        const char c = peek();
        if (!text_.empty()) text_.remove_prefix(1);
        return c;
    }
    /// White space, then the word.
    bool literal(std::string_view word) {
        skip_blanks();
        return here(word);
    }
    bool here(std::string_view word) {
        if (!text_.starts_with(word)) return false;
        text_.remove_prefix(word.size());
        return true;
    }
    /// So many characters as they are; empty when fewer are left.
    std::string_view take(std::size_t count) {
        if (text_.size() < count) return {};
        const std::string_view taken = text_.substr(0, count);
        text_.remove_prefix(count);
        return taken;
    }
    std::optional<int> number(std::size_t width = Scanner::kAnyWidth) {
        Scanner scan(text_);
        const auto value = scan.integer(width);
        if (value) text_.remove_prefix(scan.position());
        return value;
    }
    std::string_view word() {
        skip_blanks();
        return take(std::min(text_.find_first_of(kBlanks), text_.size()));
    }

private:
    std::string_view text_;
};

class Parts {
public:
    Parts(std::string_view text, RcmReport &report, RcmFaults &faults)
        : text_(text), report_(report), faults_(faults) {}

    bool read() {
        if (!read_heading()) return false;
        read_part_a();
        read_part_b();
        read_part_c();
        return true;
    }

private:
    void fault(std::string sentence) { faults_.push_back(std::move(sentence)); }
    bool read_heading();
    void read_part_a();
    void read_intensities(int count);
    void read_group();
    void set_cell(int column, int row, std::uint8_t level);
    void read_centroids();
    void read_part_b();
    void read_part_c();
    void read_features(std::string_view item, std::string_view mark, std::size_t most,
                       std::vector<RcmFeature> &features);
    void read_severities();
    bool read_place(RcmFeature &feature);
    std::optional<int> read_count(std::string_view item);
    bool keeps(std::size_t have, std::size_t most, std::string_view what);
    void tell_count(std::string_view item, std::optional<int> count, int read);

    Cursor text_;
    RcmReport &report_;
    RcmFaults &faults_;
    bool beyond_ = false; ///< cells beyond the grid were left out
};

/// Three letters: two name a box, one of its sixteen cells.
bool Parts::read_place(RcmFeature &feature) {
    std::array<char, 3> letters{};
    for (char &letter : letters) {
        text_.skip_blanks(); // a line may end anywhere
        if (!is_capital(text_.peek())) return false;
        letter = text_.next();
    }
    if (letters[2] > kLastCell) return false;
    const int cell = letters[2] - 'A', right = cell / kBoxCells, down = cell % kBoxCells;
    feature.column = static_cast<float>(kBoxCells * (letters[1] - 'A') + right);
    feature.row = static_cast<float>(kBoxCells * (letters[0] - 'A') + down);
    return true;
}

/// An item's count and its colon.
std::optional<int> Parts::read_count(std::string_view item) {
    if (!text_.literal(item)) return {};
    const auto count = text_.number();
    if (!text_.literal(":"))
        fault(format_text("%.*s has no count", static_cast<int>(item.size()), item.data()));
    return count.value_or(0);
}

/// False, told once, when a table is full.
bool Parts::keeps(std::size_t have, std::size_t most, std::string_view what) {
    if (have < most) return true;
    const std::string sentence =
        format_text("More than %zu %.*s are left out", most, static_cast<int>(what.size()), what.data());
    if (std::ranges::find(faults_, sentence) == faults_.end()) fault(sentence);
    return false;
}

/// Fewer entries than an item counts cannot be read, or are not there.
void Parts::tell_count(std::string_view item, std::optional<int> count, int read) {
    if (count && read < *count)
        fault(format_text("Of %d entries behind %.*s %d can be read", *count, static_cast<int>(item.size()),
                          item.data(), read));
}

/// "/NEXRAA 0308 1112210245": number, then day, month, year, hour and minute.
bool Parts::read_heading() {
    if (!text_.literal("/NEXRAA")) return false;
    constexpr std::size_t kTwo = 2;
    constexpr int kThisCentury = 49, kTwoDigits = 199;
    const auto number = text_.number();
    std::array<std::optional<int>, 5> fields;
    for (auto &field : fields) field = text_.number(kTwo);
    report_.status = RcmStatus::normal;
    if (number) report_.number = *number;
    const auto [day, month, year, hour, minute] = fields;
    DateRecord time;
    if (day && month && year && hour && minute) {
        time.day = *day;
        time.month = *month;
        time.year = *year + (*year <= kThisCentury ? 2000 : *year <= kTwoDigits ? 1900 : 0);
        time.hour = *hour;
        time.minute = *minute;
    }
    if (is_missing(time.year) || !DATE_is_possible(time))
        fault("It has no time");
    else
        report_.date = time;
    return true;
}

void Parts::read_part_a() {
    (void)(text_.literal("EDITED") || text_.literal("UNEDITED")); // of no effect here
    if (text_.literal("RADNE")) report_.status = RcmStatus::no_echoes;
    if (text_.literal("RADOM")) report_.status = RcmStatus::maintenance;
    if (text_.literal("/MD")) {
        const std::string_view mode = text_.take(4);
        if (mode == "PCPN") report_.mode = RcmMode::precipitation;
        if (mode == "CLAR") report_.mode = RcmMode::clear_air;
        if (report_.mode == RcmMode::unknown) fault("Its mode is not known");
    }
    if (text_.literal("/SC")) (void)text_.number();
    bool counted = true;
    if (const auto count = read_count("/NI")) {
        const std::size_t before = faults_.size();
        read_intensities(*count);
        counted = faults_.size() == before;
    }
    if (text_.literal("/MT")) {
        const auto top = text_.number();
        RcmFeature place;
        if (top && text_.literal(":") && read_place(place)) {
            report_.max_top = *top;
            report_.top_column = place.column;
            report_.top_row = place.row;
        } else {
            fault("Its maximum top cannot be read");
        }
    }
    read_centroids();
    text_.skip_to_item();
    const bool ended = text_.literal("/ENDAA");
    if (!ended) fault("It is cut off before the end of part A");
    report_.whole = ended && counted;
}

void Parts::set_cell(int column, int row, std::uint8_t level) {
    if (column >= kRcmGridSize || row >= kRcmGridSize) {
        beyond_ = true;
        return;
    }
    report_.cells[static_cast<std::size_t>(column)][static_cast<std::size_t>(row)] = level;
}

/// "ELK880B8": a place, then levels eastwards; a letter repeats the level before it.
void Parts::read_group() {
    RcmFeature start;
    if (!read_place(start)) {
        fault("A group of cells has no place");
        return;
    }
    int column = static_cast<int>(start.column);
    const int row = static_cast<int>(start.row);
    std::optional<std::uint8_t> level;
    for (;;) {
        const char c = text_.peek();
        if (is_digit(c)) {
            level = static_cast<std::uint8_t>(c - '0');
            set_cell(column++, row, *level);
        } else if (is_capital(c) && level) {
            for (int i = 0; i <= c - 'A'; ++i) set_cell(column++, row, *level);
        } else if (kBlanks.find(c) == kBlanks.npos) {
            return;
        }
        text_.next();
    }
}

void Parts::read_intensities(int count) {
    text_.skip_blanks();
    std::size_t groups = 0;
    for (; is_capital(text_.peek()) && keeps(groups, kRcmMostGroups, "groups of cells"); ++groups) {
        read_group();
        while (text_.peek() == ',' || (!text_.at_end() && kBlanks.find(text_.peek()) != kBlanks.npos))
            text_.next();
    }
    text_.skip_to_item(); // past the groups that are left out
    if (beyond_) fault("Cells beyond the grid are left out");
    int coded = 0;
    for (const auto &column : report_.cells)
        coded += static_cast<int>(std::ranges::count_if(
            column, [](std::uint8_t level) { return level != 0 && level != kRcmNoReport; }));
    if (coded != count) fault(format_text("It counts %d cells and has %d", count, coded));
}

/// "/NCEN12: CM9KOH 243051,": identifier, place, direction and speed.
void Parts::read_centroids() {
    const auto count = read_count("/NCEN");
    int i = 0;
    for (; count && i < *count && text_.literal("C"); ++i) {
        RcmStorm storm;
        storm.id = text_.take(2);
        if (!read_place(storm)) break;
        storm.direction = text_.number(3).value_or(kMissing);
        storm.speed = text_.number(3).value_or(kMissing);
        text_.literal(",");
        if (!keeps(report_.storms.size(), kRcmMostStorms, "storms")) continue;
        report_.storms.push_back(storm);
    }
    tell_count("/NCEN", count, i);
}

/// "020B227038,": height, letter of a level, direction and speed.
void Parts::read_part_b() {
    text_.skip_to_item();
    if (!text_.literal("/NEXRBB")) return;
    text_.word();
    text_.word();
    constexpr std::array levels{2, 4, 6, 8, 10, 12, 15};
    for (text_.skip_blanks(); is_digit(text_.peek()); text_.skip_blanks()) {
        RcmEntry entry;
        entry.height = text_.number().value_or(kMissing);
        const char letter = text_.next();
        const auto index = static_cast<std::size_t>(letter - 'A');
        if (!is_capital(letter) || index >= levels.size()) {
            fault("An entry of part B cannot be read");
            break;
        }
        entry.level = levels[index];
        entry.direction = text_.number(3).value_or(kMissing);
        entry.speed = text_.number(3).value_or(kMissing);
        text_.literal(",");
        if (keeps(report_.entries.size(), kRcmMostEntries, "entries of part B"))
            report_.entries.push_back(entry);
    }
    text_.skip_to_item();
    if (!text_.literal("/ENDBB")) fault("It is cut off before the end of part B");
}

/// "/NTVS01: TVS01LOE": a mark, identifier and place each.
void Parts::read_features(std::string_view item, std::string_view mark, std::size_t most,
                          std::vector<RcmFeature> &features) {
    text_.skip_to_item();
    const auto count = read_count(item);
    int i = 0;
    for (; count && i < *count && text_.literal(mark); ++i) {
        RcmFeature feature;
        feature.id = text_.take(2);
        if (!read_place(feature)) break;
        text_.literal(",");
        if (keeps(features.size(), most, mark == "M" ? "mesocyclones" : "vortices"))
            features.push_back(feature);
    }
    tell_count(item, count, i);
}

/// "/NCEN12: CM9KOH S361HP,": severe value and hail of the storms of part A, or of others.
void Parts::read_severities() {
    text_.skip_to_item();
    const auto count = read_count("/NCEN");
    int i = 0;
    for (; count && i < *count && text_.literal("C"); ++i) {
        RcmStorm found;
        found.id = text_.take(2);
        if (!read_place(found)) break;
        if (text_.literal("S")) found.severe = text_.number(3).value_or(kMissing);
        if (text_.here("H")) {
            constexpr std::string_view letters = "UNPH";
            const std::size_t index = letters.find(text_.next());
            if (index == letters.npos)
                fault("A hail letter is not known");
            else
                found.hail = static_cast<RcmHail>(static_cast<int>(index) - 1);
        }
        text_.literal(",");
        const auto known = std::ranges::find(report_.storms, found.id, &RcmStorm::id);
        if (known != report_.storms.end()) {
            known->severe = found.severe;
            known->hail = found.hail;
        } else if (keeps(report_.storms.size(), kRcmMostStorms, "storms")) {
            report_.storms.push_back(found);
        }
    }
    tell_count("/NCEN", count, i);
}

void Parts::read_part_c() {
    text_.skip_to_item();
    if (!text_.literal("/NEXRCC")) return;
    text_.word();
    text_.word();
    read_features("/NTVS", "TVS", kRcmMostVortices, report_.vortices);
    read_features("/NMES", "M", kRcmMostMesocyclones, report_.mesocyclones);
    read_severities();
}

} // namespace

bool RCM_read_text(std::string_view text, RcmReport &report, RcmFaults &faults) {
    return Parts(text, report, faults).read();
}
