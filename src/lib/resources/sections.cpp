#include "lib/resources/sections.h"

#include <algorithm>

#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/text/strings.h"

namespace {

auto find_tag(auto &tags, std::string_view tag) {
    return std::find_if(tags.begin(), tags.end(),
                        [tag](const std::string &known) { return stricmp(known, tag) == 0; });
}

} // namespace

void ResourceSections::define(std::string_view tag) {
    if (tag.empty() || defined(tag)) return;
    if (tags_.size() < kMostTags)
        tags_.emplace_back(tag);
    else
        WORD_tell("DEF", format_text("Tag %s is not taken, there is room for %zu", std::string(tag).c_str(),
                                     kMostTags));
}

void ResourceSections::undefine(std::string_view tag) {
    if (const auto found = find_tag(tags_, tag); found != tags_.end()) tags_.erase(found);
}

bool ResourceSections::defined(std::string_view tag) const {
    return find_tag(tags_, tag) != tags_.end();
}

bool ResourceSections::active() const {
    return too_deep_ == 0 &&
           std::all_of(open_.begin(), open_.end(), [](Branch branch) { return branch == Branch::active; });
}

void ResourceSections::end_file() {
    open_.clear();
    too_deep_ = 0;
}

void ResourceSections::open(bool holds) {
    if (open_.size() >= kDeepest) {
        ++too_deep_;
        WORD_tell("IF", format_text("Sections lie in each other no more than %zu deep; what lies deeper is "
                                    "not read",
                                    kDeepest));
    } else {
        open_.push_back(holds ? Branch::active : Branch::waiting);
    }
}

/// False when no section is open.
bool ResourceSections::next_branch(bool holds) {
    if (too_deep_ > 0) return true;
    if (open_.empty()) return false;
    Branch &branch = open_.back();
    if (branch != Branch::waiting)
        branch = Branch::done;
    else if (holds)
        branch = Branch::active;
    return true;
}

bool ResourceSections::directive(std::string_view word, std::string_view tag) {
    if (word == "DEF") {
        if (active()) define(tag);
    } else if (word == "UNDEF") {
        if (active()) undefine(tag);
    } else if (word == "IF") {
        open(defined(tag));
    } else if (word == "ELIF") {
        if (!next_branch(defined(tag))) MESS_print(kWarn, "DEF_get: elif without an if\n");
    } else if (word == "ELSE") {
        if (!next_branch(true)) MESS_print(kWarn, "DEF_get: else without an if\n");
    } else if (word == "END") {
        if (too_deep_ > 0)
            --too_deep_;
        else if (open_.empty())
            MESS_print(kWarn, "DEF_get: end without an if\n");
        else
            open_.pop_back();
    } else {
        return false;
    }
    return true;
}
