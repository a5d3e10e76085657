#pragma once
/// Map files drawn on the plane of the current projection.

#include <cstdio>

enum class MapStyle { lines, areas };
/// Draws the records of a map file as lines or as filled areas, see MAP_map.
int draw_map_file(std::FILE *file, MapStyle style);
