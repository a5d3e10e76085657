#pragma once
/// Writing a raster as a text grid file ("VYXGRID").

#include <optional>

#include "lib/files/output_file.h"
#include "radar/nids/product.h"

class NidsGridFile {
public:
    NidsGridFile(OutputFile file, std::string name, const NidsInfo &info);
    NidsGridFile(NidsGridFile &&) = default;
    NidsGridFile &operator=(NidsGridFile &&) = delete;
    /// Writes a value once for each box of a run.
    void write(float value, int count);
    /// Puts the file in its place. One that could not be written whole is told, and missed. Without this the
    /// old file stays.
    void finish();

private:
    OutputFile file_;
    std::string name_;
};

/// Opens the grid file that the resource "out_file" asks for ("vyx", or "vyx:key" with a naming key, in which
/// %s is the site's number and %p the product's code unless the user gives these keys), for the `number`th
/// raster of the current file. Nothing when none is asked for, or, told and missed, when it cannot be created
/// or would write over another of this run.
[[nodiscard]] std::optional<NidsGridFile> NIDS_grd_out_file(const NidsInfo &info, int number);
