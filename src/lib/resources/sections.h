#pragma once
/// Tags and the conditional sections of resource files (DEF, UNDEF, IF, ELIF, ELSE, END).

#include <string>
#include <string_view>
#include <vector>

class ResourceSections {
public:
    static constexpr std::size_t kMostTags = 10;
    static constexpr std::size_t kDeepest = 10;

    /// Tags compare ignoring case. Beyond kMostTags a further one is ignored.
    void define(std::string_view tag);
    void undefine(std::string_view tag);
    [[nodiscard]] bool defined(std::string_view tag) const;

    /// Carries out a line that begins with one of the section words; false for any other line. A stray ELIF,
    /// ELSE or END gives a warning.
    [[nodiscard]] bool directive(std::string_view word, std::string_view tag);
    /// True while every open section is active.
    [[nodiscard]] bool active() const;
    /// Closes all sections; tags stay.
    void end_file();

private:
    enum class Branch { waiting, active, done }; ///< done: an earlier branch was active
    void open(bool holds);
    [[nodiscard]] bool next_branch(bool holds);

    std::vector<std::string> tags_;
    std::vector<Branch> open_;
    std::size_t too_deep_ = 0; ///< sections opened beyond kDeepest; what stands in them is not active
};
