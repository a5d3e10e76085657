#include "radar/summary/netcdf_library.h"

#include <dlfcn.h>

namespace {

/// The version whose header the program was built with.
constexpr const char *kLibrary = VYX_NETCDF_LIBRARY;

template <typename Function> bool find(void *library, const char *name, Function &function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    return function != nullptr;
}

bool find_all(void *from, NetcdfLibrary &nc) {
    return find(from, "nc_open_mem", nc.open_mem) && find(from, "nc_close", nc.close) &&
           find(from, "nc_inq_dimid", nc.inq_dimid) && find(from, "nc_inq_dimlen", nc.inq_dimlen) &&
           find(from, "nc_inq_varid", nc.inq_varid) && find(from, "nc_inq_vartype", nc.inq_vartype) &&
           find(from, "nc_inq_varndims", nc.inq_varndims) && find(from, "nc_inq_vardimid", nc.inq_vardimid) &&
           find(from, "nc_inq_att", nc.inq_att) && find(from, "nc_get_att_text", nc.get_att_text) &&
           find(from, "nc_get_att_float", nc.get_att_float) &&
           find(from, "nc_get_vara_text", nc.get_vara_text) &&
           find(from, "nc_get_vara_schar", nc.get_vara_schar) &&
           find(from, "nc_get_vara_float", nc.get_vara_float) && find(from, "nc_strerror", nc.strerror);
}

struct Loaded {
    NetcdfLibrary functions;
    const char *why = nullptr;
    Loaded() {
        // It stays: what it set up ends with the process.
        void *const library = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr)
            why = "the netCDF library " VYX_NETCDF_LIBRARY " is not on this machine";
        else if (!find_all(library, functions))
            why = "the netCDF library lacks a function";
    }
};

} // namespace

const NetcdfLibrary *load_netcdf(const char *&why) {
    static const Loaded loaded;
    why = loaded.why;
    return why == nullptr ? &loaded.functions : nullptr;
}
