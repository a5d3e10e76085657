#pragma once
/// The city database: named places found by identifier, name or WMO number.

#include <string>
#include <string_view>

#include "plot/domain/plot_domain.h"
#include "plot/places/city_entry.h"

/// A stored station: what the searches of the stored table give back.
struct CityStation {
    std::string name; ///< name text by the identifier type, at most 12 characters
    int wmo = kMissing;
    float x = kMissingF, y = kMissingF; ///< plane coordinates
    float elevation = kMissingF;
    int priority = 0;
    CityEntry entry; ///< the full entry (mode 1)
};

/// Opens the database (resource "city_file" first); `count` receives an estimate of its entries. Descriptor,
/// or -1.
[[nodiscard]] int CTY_open_file(const char *name, int &count);
[[nodiscard]] int CTY_open(std::string_view path, int mode, int type);
/// Number of fields converted; -1 at the end of the file or without an open file.
[[nodiscard]] int CTY_read(int fd, CityEntry &entry);
[[nodiscard]] int CTY_rewind(int fd);
int CTY_close(int fd);
/// Finds an entry by identifier, name or five-digit WMO number, case ignored. 1 or 0.
int CTY_get(const char *file, std::string_view id, CityEntry &entry);
int CTY_get_loc(const char *file, std::string_view id, float &lat, float &lon);
/// The resource "stat_prior" as a number, default 10.
int CTY_get_prior();
/// 0 identifier, 1 WMO number, 2 coded WMO number: what names stored stations.
void CTY_set_id_type(int type);
/// Reads the database into the stored table; descriptor, or 0 when it cannot be opened. Modes 1 to 3.
[[nodiscard]] int CTY_store(const char *file, int mode, const PlotDomain &domain, int priority);
/// Looks a station up in the stored table. 1 with the station copied out, 0 when it is not there.
[[nodiscard]] int CTY_search(std::string_view text, CityStation &station);
