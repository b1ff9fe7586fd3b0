#include "support/csv_convert.h"
#include "support/interop_tools.h"

#include <dirent.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace bifftest {

namespace {

CsvRows parseCsv(const std::string &text) {
    CsvRows rows(1, std::vector<std::string>(1));
    bool quoted = false;
    for (size_t i = 0; i < text.size(); ++i) {
        const char ch = text[i];
        std::string &f = rows.back().back();
        if (quoted) {
            if (ch == '"' && i + 1 < text.size() && text[i + 1] == '"') {
                f += '"';
                ++i;
            } else if (ch == '"') {
                quoted = false;
            } else {
                f += ch;
            }
        } else if (ch == '"') {
            quoted = true;
        } else if (ch == ',') {
            rows.back().emplace_back();
        } else if (ch == '\n') {
            rows.emplace_back(1);
        } else if (ch != '\r') {
            f += ch;
        }
    }
    if (rows.back().size() == 1 && rows.back()[0].empty()) rows.pop_back();
    return rows;
}

} // namespace

std::map<std::string, CsvRows> convertToCsv(const std::string &path, const std::string &dir) {
    std::map<std::string, CsvRows> out;
    freshDir(dir + "/csv");
    // Comma, quote, UTF-8, raw values, every sheet.
    const std::string to =
        "'csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,true,false,false,false,-1'";
    convertWithLibreOffice(path, dir + "/csv", to, "csv");
    std::string base = path.substr(path.rfind('/') + 1);
    base = base.substr(0, base.rfind('.'));
    DIR *d = opendir((dir + "/csv").c_str());
    if (!d) return out;
    while (dirent *e = readdir(d)) {
        const std::string n = e->d_name;
        if (n.size() <= base.size() + 5 || n.compare(0, base.size() + 1, base + "-") != 0 ||
            n.compare(n.size() - 4, 4, ".csv") != 0)
            continue;
        std::ifstream in(dir + "/csv/" + n, std::ios::binary);
        std::stringstream ss;
        ss << in.rdbuf();
        out[n.substr(base.size() + 1, n.size() - base.size() - 5)] = parseCsv(ss.str());
    }
    closedir(d);
    return out;
}

std::string field(const CsvRows &rows, size_t row, size_t col) {
    if (row >= rows.size() || col >= rows[row].size()) return "";
    return rows[row][col];
}

} // namespace bifftest
