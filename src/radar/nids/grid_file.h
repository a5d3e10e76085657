#pragma once
/// Writing a raster as a text grid file ("VYXGRID").

#include <optional>

#include "lib/stream.h"
#include "radar/nids/product.h"

class NidsGridFile {
public:
    NidsGridFile(Stream stream, const NidsInfo &info);
    NidsGridFile(NidsGridFile &&) = default;
    NidsGridFile &operator=(NidsGridFile &&) = delete;
    /// Reports a file that could not be written whole.
    ~NidsGridFile();
    /// Writes a value once for each box of a run.
    void write(float value, int count);

private:
    Stream stream_;
};

/// Opens the grid file that the resource "out_file" asks for ("vyx", or "vyx:key" with a naming key); nothing
/// when none is asked for or it cannot be created.
std::optional<NidsGridFile> NIDS_grd_out_file(const NidsInfo &info);
