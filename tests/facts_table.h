#pragma once
/// Tab-separated tables of facts about the real samples: rows of named columns.

#include <fstream>
#include <map>
#include <string>
#include <vector>

using FactsRow = std::map<std::string, std::string>;

inline std::vector<std::string> split_tabs(const std::string &line) {
    std::vector<std::string> fields;
    std::size_t start = 0;
    for (std::size_t tab = line.find('\t'); tab != std::string::npos; tab = line.find('\t', start)) {
        fields.push_back(line.substr(start, tab - start));
        start = tab + 1;
    }
    fields.push_back(line.substr(start));
    return fields;
}

/// All rows of a table whose first line names the columns; missing fields at the end of a row are empty.
inline std::vector<FactsRow> read_facts(const std::string &path) {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    const std::vector<std::string> columns = split_tabs(line);
    std::vector<FactsRow> rows;
    while (std::getline(file, line)) {
        const std::vector<std::string> fields = split_tabs(line);
        FactsRow row;
        for (std::size_t i = 0; i < columns.size(); ++i) row[columns[i]] = i < fields.size() ? fields[i] : "";
        rows.push_back(row);
    }
    return rows;
}
