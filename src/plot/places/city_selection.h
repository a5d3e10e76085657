#pragma once
/// Selection of stations by the words of the resource "identifier".

#include <string>
#include <vector>

#include "plot/domain/plot_domain.h"
#include "plot/places/city_entry.h"

/// Words, their names compared ignoring case:
///   Name=, ST=, CN=, ID=   text; a trailing "*" stands for any rest
///   P=, P<, P>             priority digit
///   WMO=, Lat=, Lon=, Elev= a number, or "from:to" with both ends included and either left open
///   RA<km                  distance from the domain's centre
///   anything else          an identifier, as with ID=
/// Words of one kind are alternatives; a station must meet every kind that is named. Nothing, or the single
/// word "all", selects everything.
class CitySelection {
public:
    CitySelection(const std::vector<std::string> &words, const PlotDomain &domain);
    [[nodiscard]] bool passes(const CityEntry &entry) const;

private:
    enum class Kind {
        name,
        state,
        country,
        id,
        priority,
        priority_below,
        priority_above,
        wmo,
        lat,
        lon,
        elevation,
        distance
    };
    struct Criterion {
        Kind kind;
        std::string text; ///< pattern of the text kinds
        double from, to;  ///< range of the number kinds, ends included
    };
    static Criterion parse(const std::string &word);
    [[nodiscard]] bool meets(const Criterion &criterion, const CityEntry &entry) const;

    std::vector<Criterion> criteria_;
    float center_lat_, center_lon_;
};
