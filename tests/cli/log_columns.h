#pragma once
// A CSV log read back as a spreadsheet would: the rows by kind, and whether every DATA row has
// exactly the columns of the HEADER above it.

#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace zv::test {

struct LogShape {
    std::map<std::string, int> rows; // by the first field: "DATA", "HEADER", "HEADER [D]", ...
    std::vector<std::string> mismatches; // DATA rows whose width differs from their header's
    bool everyRowEndsInCrLf = true;
};

inline LogShape logShape(const std::string& path, char delimiter = ',')
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream all;
    all << in.rdbuf();
    const std::string text = all.str();
    LogShape shape;
    std::size_t headerWidth = 0;
    std::size_t start = 0;
    while (start < text.size()) {
        auto end = text.find("\r\n", start);
        if (end == std::string::npos) {
            shape.everyRowEndsInCrLf = false;
            end = text.size();
        }
        const std::string line = text.substr(start, end - start);
        start = end + 2;
        if (line.empty())
            continue;
        std::vector<std::string> fields;
        std::stringstream in(line);
        for (std::string field; std::getline(in, field, delimiter);)
            fields.push_back(field);
        if (line.back() == delimiter)
            fields.emplace_back();
        ++shape.rows[fields.front()];
        if (fields.front().starts_with("HEADER"))
            headerWidth = fields.size();
        else if (fields.front() == "DATA" && fields.size() != headerWidth)
            shape.mismatches.push_back(line);
    }
    return shape;
}

} // namespace zv::test
