#include "support/csv_convert.h"

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

std::string soffice(const std::string &dir, const std::string &to, const std::string &path) {
    return "cd '" + dir + "' && soffice --headless --norestore -env:UserInstallation=file://" +
           dir + "/profile --convert-to " + to + " --outdir '" + dir + "' '" + path +
           "' >/dev/null 2>&1";
}

std::string baseName(const std::string &path) {
    std::string base = path.substr(path.rfind('/') + 1);
    return base.substr(0, base.rfind('.'));
}

} // namespace

bool haveLibreOffice() { return std::system("command -v soffice >/dev/null 2>&1") == 0; }

std::map<std::string, CsvRows> convertToCsv(const std::string &path, const std::string &dir) {
    std::map<std::string, CsvRows> out;
    std::system(("rm -rf '" + dir + "/csv' && mkdir -p '" + dir + "/csv'").c_str());
    // Comma, quote, UTF-8, raw values, every sheet.
    const std::string to =
        "'csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,true,false,false,false,-1'";
    if (std::system(soffice(dir + "/csv", to, path).c_str()) != 0) return out;
    const std::string base = baseName(path);
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

std::string convertToXls(const std::string &path, const std::string &dir) {
    std::system(("rm -rf '" + dir + "/xls' && mkdir -p '" + dir + "/xls'").c_str());
    if (std::system(soffice(dir + "/xls", "xls", path).c_str()) != 0) return "";
    const std::string out = dir + "/xls/" + baseName(path) + ".xls";
    return std::ifstream(out).good() ? out : "";
}

std::string field(const CsvRows &rows, size_t row, size_t col) {
    if (row >= rows.size() || col >= rows[row].size()) return "";
    return rows[row][col];
}

} // namespace bifftest
