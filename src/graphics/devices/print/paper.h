#pragma once
/// Paper sizes by name, shared by the print devices.

#include <array>
#include <optional>
#include <string_view>

struct PaperSize {
    std::string_view name;
    float width_inch, height_inch;
};

inline constexpr std::array kPaperSizes{
    PaperSize{"letter", 11.0F, 8.5F}, PaperSize{"legal", 14.0F, 8.5F}, PaperSize{"11x17", 17.0F, 11.0F},
    PaperSize{"a4", 11.69F, 8.26F},   PaperSize{"a3", 16.54F, 11.69F}, PaperSize{"a2", 23.39F, 16.54F},
    PaperSize{"a1", 33.11F, 23.39F},  PaperSize{"b4", 14.33F, 10.12F}, PaperSize{"b3", 20.27F, 14.33F},
    PaperSize{"b2", 28.66F, 20.27F},  PaperSize{"b1", 40.55F, 28.66F}, PaperSize{"ansid", 34.0F, 22.0F}};

/// Case is ignored.
[[nodiscard]] std::optional<PaperSize> find_paper(std::string_view name);
