#pragma once
/// Reading the tab-separated fact tables of the real samples.

#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

/// Rows of a table by column name.
using TsvRow = std::map<std::string, std::string>;

inline std::vector<std::string> split_tabs(const std::string &line) {
    std::vector<std::string> cells;
    std::stringstream stream(line);
    for (std::string cell; std::getline(stream, cell, '\t');) cells.push_back(cell);
    return cells;
}

inline std::vector<TsvRow> read_tsv(const std::string &path) {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    const std::vector<std::string> names = split_tabs(line);
    std::vector<TsvRow> rows;
    while (std::getline(file, line)) {
        const std::vector<std::string> cells = split_tabs(line);
        TsvRow row;
        for (std::size_t i = 0; i < names.size(); ++i) row[names[i]] = i < cells.size() ? cells[i] : "";
        rows.push_back(row);
    }
    return rows;
}
