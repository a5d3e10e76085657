#pragma once
/// The netCDF library, loaded when the first such file is read: a run that reads none does not wait for it.
/// Beside the source: only NetcdfFile calls it.

#include <netcdf.h>
#include <netcdf_mem.h>

/// Functions of the library, by their own names.
struct NetcdfLibrary {
    decltype(&::nc_open_mem) open_mem = nullptr;
    decltype(&::nc_close) close = nullptr;
    decltype(&::nc_inq_dimid) inq_dimid = nullptr;
    decltype(&::nc_inq_dimlen) inq_dimlen = nullptr;
    decltype(&::nc_inq_varid) inq_varid = nullptr;
    decltype(&::nc_inq_vartype) inq_vartype = nullptr;
    decltype(&::nc_inq_varndims) inq_varndims = nullptr;
    decltype(&::nc_inq_vardimid) inq_vardimid = nullptr;
    decltype(&::nc_inq_att) inq_att = nullptr;
    decltype(&::nc_get_att_text) get_att_text = nullptr;
    decltype(&::nc_get_att_float) get_att_float = nullptr;
    decltype(&::nc_get_vara_text) get_vara_text = nullptr;
    decltype(&::nc_get_vara_schar) get_vara_schar = nullptr;
    decltype(&::nc_get_vara_float) get_vara_float = nullptr;
    decltype(&::nc_strerror) strerror = nullptr;
};

/// Null, with `why` set, when there is no such library on this machine.
const NetcdfLibrary *load_netcdf(const char *&why);
