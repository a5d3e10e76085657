#pragma once
/// How stroke text reaches the device: the text room turns a string into runs of world points, the kernel,
/// which stands above it, registers where they go.

#include <span>
#include <string_view>

#include "graphics/core/types.h"

struct StrokeOutput {
    void (*begin)(const Point &world, std::string_view text) = nullptr;
    void (*run)(std::span<const Point> world) = nullptr;
};

/// Set by the kernel when a workstation opens; an empty record when it closes.
void gset_stroke_output(const StrokeOutput &output);

/// Begins a string at a world point: colour, width and solid type come from the text attributes. Nothing
/// without a workstation.
void gstroke_begin(const Point &world, std::string_view text);
/// One connected run of strokes, world coordinates of the current transform.
void gstroke_run(std::span<const Point> world);
