#pragma once
/// Conversions between world, normalised device (NDC) and device coordinates with the current transform and
/// workstation, and the fitting of rectangles.

#include <span>

#include "graphics/core/types.h"

/// Placement of a fitted rectangle in one direction.
enum class AspectMode : int { origin = 0, centre = 2, maximum = 3 };
/// Fits a rectangle of aspect w:h into a region.
Rect gset_aspect(const Rect &region, AspectMode x_mode, AspectMode y_mode, float w, float h);

/// Workstation window 0 to 1 and all transforms 0 to 1, transform 0 current; `keep_view` leaves those alone.
/// Always: the workstation viewport becomes the whole device.
void reset_transforms(bool keep_view);
/// After the current transform's rectangles or the workstation's have changed.
void refresh_mapping();

float xW_NDC(float x);
float yW_NDC(float y);
float xW_p(float x);
float yW_p(float y);
float xp_W(float x);
float yp_W(float y);
float xNDC_p(float x);
float yNDC_p(float y);
float xW_ps(float x);
float yW_ps(float y);
float xNDC_ps(float x);
float yNDC_ps(float y);
/// World of one transform to world of another; kMissingF for a number that is no transform.
float xW_trans(int from, int to, float x);
float yW_trans(int from, int to, float y);
/// 1 when the bounding box of the points meets the current world window.
[[nodiscard]] int gpts_in_win(std::span<const Point> points);
