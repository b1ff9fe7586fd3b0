#include "support/oracle.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace tabrix;

namespace oracle {

namespace {
// The distribution's interpreter: the one first on PATH may lack its modules.
const char *kPython = "/usr/bin/python3";

Lines run(const std::string &cmd) {
    Lines lines;
    FILE *p = popen(cmd.c_str(), "r");
    if (!p) return {"ERROR popen"};
    std::string cur;
    for (int ch; (ch = std::fgetc(p)) != EOF;) {
        if (ch != '\n') {
            cur += char(ch);
            continue;
        }
        lines.push_back(cur);
        cur.clear();
    }
    if (!cur.empty()) lines.push_back(cur);
    pclose(p);
    return lines;
}
} // namespace

bool has(const std::string &module) {
    std::string cmd = module == "soffice"
                          ? "command -v soffice >/dev/null 2>&1"
                          : std::string(kPython) + " -c 'import " + module + "' 2>/dev/null";
    return std::system(cmd.c_str()) == 0;
}

Lines dump(const std::string &reader, const std::string &path, bool utf8) {
    return run(std::string(kPython) + " " TABRIX_SOURCE_DIR "/tests/support/oracle.py " + reader +
               " '" + path + "'" + (utf8 ? " utf8" : "") + " 2>/dev/null");
}

bool failed(const Lines &l) { return l.empty() || l[0].compare(0, 5, "ERROR") == 0; }

std::string hex(const wchar_t *t) {
    static const char *d = "0123456789abcdef";
    std::string out;
    auto unit = [&](unsigned v) {
        for (unsigned b : {v & 0xFF, (v >> 8) & 0xFF}) {
            out += d[b >> 4];
            out += d[b & 15];
        }
    };
    for (; t && *t; ++t) {
        unsigned c = unsigned(*t);
        if (c > 0xFFFF && c <= 0x10FFFF) {
            unit(0xD800 + ((c - 0x10000) >> 10));
            unit(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            unit(c);
        }
    }
    return out.empty() ? "-" : out;
}

std::string cellText(ISheetT<wchar_t> &s, int r, int c) {
    char buf[64];
    switch (s.cellType(r, c)) {
    case CELLTYPE_NUMBER:
        std::snprintf(buf, sizeof buf, "n %.17g", s.readNum(r, c, nullptr));
        return buf;
    case CELLTYPE_STRING: {
        const wchar_t *t = s.readStr(r, c, nullptr);
        return t && *t ? "s " + hex(t) : std::string();
    }
    case CELLTYPE_BOOLEAN: return std::string("b ") + (s.readBool(r, c, nullptr) ? "1" : "0");
    case CELLTYPE_ERROR: return "e " + std::to_string(int(s.readError(r, c)));
    default: return std::string();
    }
}

Lines sheetLines(ISheetT<wchar_t> &s, int rows, int cols) {
    Lines out;
    int rowEnd = std::min(s.lastRow(), rows), colEnd = std::min(s.lastCol(), cols);
    for (int r = std::max(s.firstRow(), 0); r < rowEnd; ++r)
        for (int c = std::max(s.firstCol(), 0); c < colEnd; ++c) {
            std::string v = cellText(s, r, c);
            if (!v.empty()) out.push_back(std::to_string(r) + " " + std::to_string(c) + " " + v);
        }
    return out;
}

Lines bookLines(IBookT<wchar_t> &b) {
    Lines out;
    for (int i = 0; i < b.sheetCount(); ++i) {
        if (b.sheetType(i) != SHEETTYPE_SHEET) continue;
        ISheetT<wchar_t> *s = b.getSheet(i);
        if (!s) {
            out.push_back("ERROR no sheet " + std::to_string(i));
            continue;
        }
        out.push_back("SHEET " + hex(s->name()));
        Lines cells = sheetLines(*s, 65536, 256);
        out.insert(out.end(), cells.begin(), cells.end());
    }
    return out;
}

std::string firstDifference(const Lines &a, const Lines &b) {
    size_t n = std::min(a.size(), b.size());
    for (size_t i = 0; i < n; ++i)
        if (a[i] != b[i]) return "line " + std::to_string(i) + ": '" + a[i] + "' vs '" + b[i] + "'";
    if (a.size() != b.size())
        return "lengths " + std::to_string(a.size()) + " vs " + std::to_string(b.size()) +
               ", next: '" + (a.size() > n ? a[n] : b[n]) + "'";
    return "";
}

} // namespace oracle
