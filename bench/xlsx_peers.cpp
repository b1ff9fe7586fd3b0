// Our Open XML book beside independent programs, in one run: one million
// cells (100,000 rows by 10 columns; even columns numbers, odd columns
// texts, half of those from a pool of 1,000 repeated texts, half distinct)
// written and saved by us and by libxlsxwriter in its normal mode; then our
// file loaded and every cell read, by us and by the reference reader of
// support/ (zlib and a pugixml document).  The same two measures for
// 100,000 formula cells.  Each round runs in its own child process, so its
// peak memory is its own, and the two sides of a comparison take turns
// (best of five rounds each).  Targets: writing at
// least 3x faster than libxlsxwriter with a file no larger, reading at
// least 2x faster than the reference reader with at most 120 MB at peak.
// A timed tool: bench_xlsx_peers [dir [write|read [values|formulas]]];
// with a step named, only our side of that step runs, unmeasured, for a
// profiler (the read step reads what the write step left).
#include "support/child_measure.h"
#include "support/reference_xlsx_reader.h"
#include "tabrix.h"
#include "tabrix/IBookT.h"

#ifdef TABRIX_HAVE_XLSXWRITER
#include <xlsxwriter.h>
#endif

#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

using namespace tabrix;
using tabrix::bench::Measure;
using tabrix::bench::measure;
using tabrix::bench::measurePair;

namespace {

struct Release {
    void operator()(IBookT<char> *b) const {
        if (b) b->release();
    }
};
using BookPtr = std::unique_ptr<IBookT<char>, Release>;

// Texts go in and out as UTF-8, as most callers of the narrow interface want.
BookPtr newBook() {
    BookPtr b(static_cast<IBookT<char> *>(tbCreateXMLBookA()));
    if (b) b->setLocale("UTF-8");
    return b;
}

// One shape of sheet: its size and what goes into each cell.
struct Layout {
    const char *name;
    int rows, cols;
    bool formulas;
};

const Layout kValues{"1,000,000 value cells", 100000, 10, false};
const Layout kFormulas{"100,000 formula cells", 10000, 10, true};

const std::vector<std::string> &pool() {
    static const std::vector<std::string> t = [] {
        std::vector<std::string> v;
        for (int i = 0; i < 1000; ++i) v.push_back("pooled text number " + std::to_string(i));
        return v;
    }();
    return t;
}

// Calls one of the three writers for each cell of the layout, in row order.
struct CellSink {
    std::function<bool(int, int, double)> number;
    std::function<bool(int, int, const char *)> text, formula;
};

// The texts are made in a stack buffer, so that the harness costs both
// sides as little as it can.
bool fill(const Layout &l, const CellSink &sink) {
    char s[64];
    for (int r = 0; r < l.rows; ++r)
        for (int c = 0; c < l.cols; ++c) {
            bool ok;
            if (l.formulas) {
                const int row = r + 1;
                if (c % 3 == 0)
                    std::snprintf(s, sizeof s, "SUM(K%d:M%d)", row, row);
                else if (c % 3 == 1)
                    std::snprintf(s, sizeof s, "IF(K%d>0,\"yes\",\"no\")", row);
                else
                    std::snprintf(s, sizeof s, "ROUND(L%d*1.5,2)", row);
                ok = sink.formula(r, c, s);
            } else if (c % 2 == 0) {
                ok = sink.number(r, c, c % 4 == 0 ? double(r) : r * 0.1 + c);
            } else if (c % 4 == 1) {
                ok = sink.text(r, c, pool()[size_t(r * 7 + c) % 1000].c_str());
            } else {
                std::snprintf(s, sizeof s, "distinct %d/%d", r, c);
                ok = sink.text(r, c, s);
            }
            if (!ok) return false;
        }
    return true;
}

// An empty path writes the cells and leaves the save out.
bool ourWrite(const Layout &l, const std::string &path) {
    BookPtr b = newBook();
    ISheetT<char> *s = b ? b->addSheet("Data", nullptr) : nullptr;
    if (!s) return false;
    // Both writers take the same formula texts, without a leading "=".
    CellSink sink{[&](int r, int c, double v) { return s->writeNum(r, c, v, nullptr); },
                  [&](int r, int c, const char *t) { return s->writeStr(r, c, t, nullptr); },
                  [&](int r, int c, const char *f) { return s->writeFormula(r, c, f, nullptr); }};
    if (fill(l, sink) && (path.empty() || b->save(path.c_str()))) return true;
    std::fprintf(stderr, "our write failed: %s\n", b->errorMessage());
    return false;
}

#ifdef TABRIX_HAVE_XLSXWRITER
bool peerWrite(const Layout &l, const std::string &path) {
    lxw_workbook *wb = workbook_new(path.c_str());
    lxw_worksheet *ws = wb ? workbook_add_worksheet(wb, "Data") : nullptr;
    if (!ws) return false;
    CellSink sink{
        [&](int r, int c, double v) {
            return worksheet_write_number(ws, r, lxw_col_t(c), v, nullptr) == LXW_NO_ERROR;
        },
        [&](int r, int c, const char *t) {
            return worksheet_write_string(ws, r, lxw_col_t(c), t, nullptr) == LXW_NO_ERROR;
        },
        [&](int r, int c, const char *f) {
            return worksheet_write_formula(ws, r, lxw_col_t(c), f, nullptr) == LXW_NO_ERROR;
        }};
    const bool filled = fill(l, sink);
    return workbook_close(wb) == LXW_NO_ERROR && filled;
}
#endif

// Loads the file and reads every cell of the layout, summing as the
// reference reader does; the sums are checked against it.  Without sums
// the reading is left out.
bool ourRead(const Layout &l, const std::string &path, bench::ReferenceSums *sums) {
    BookPtr b = newBook();
    if (!b || !b->load(path.c_str())) {
        std::fprintf(stderr, "our load failed: %s\n", b ? b->errorMessage() : "no book");
        return false;
    }
    ISheetT<char> *s = b->getSheet(0);
    if (!s) return false;
    if (!sums) return true;
    for (int r = 0; r < l.rows; ++r)
        for (int c = 0; c < l.cols; ++c) {
            ++sums->cells;
            if (l.formulas) {
                const char *f = s->readFormula(r, c, nullptr);
                if (!f) return false;
                sums->formulaChars += std::strlen(f) - (f[0] == '=');
            } else if (s->cellType(r, c) == CELLTYPE_NUMBER) {
                sums->numbers += s->readNum(r, c, nullptr);
            } else {
                const char *t = s->readStr(r, c, nullptr);
                if (!t) return false;
                sums->textChars += std::strlen(t);
            }
        }
    return true;
}

long fileSize(const std::string &path) {
    struct stat st {};
    return stat(path.c_str(), &st) == 0 ? long(st.st_size) : -1;
}

void line(const char *what, const Measure &m, double cells) {
    if (m.seconds < 0) {
        std::printf("  %-40s failed\n", what);
        return;
    }
    std::printf("  %-40s wall %7.1f ms  cpu %7.1f ms  %6.2f M cells/s  peak +%.1f MiB\n", what,
                m.seconds * 1e3, m.cpu * 1e3, cells / m.cpu / 1e6, m.peakKiB / 1024.0);
}

void ratio(const char *what, const Measure &peer, const Measure &ours, double target) {
    if (peer.cpu <= 0 || ours.cpu <= 0) return;
    const double r = peer.cpu / ours.cpu, rw = peer.seconds / ours.seconds;
    std::printf("  %-40s %5.2fx cpu, %5.2fx wall (target %.0fx: %s)\n", what, r, rw, target,
                r >= target ? "met" : "NOT met");
}

// `only` names one of our steps ("write", "read") to run alone, for a profiler.
bool run(const Layout &l, const std::string &dir, const std::string &only) {
    const double cells = double(l.rows) * l.cols;
    const std::string ours = dir + "/tabrix_bench_ours.xlsx";
    std::printf("\n%s (%d rows x %d columns)\n", l.name, l.rows, l.cols);

    if (!only.empty()) {
        bench::ReferenceSums sums;
        return only == "write" ? ourWrite(l, ours) : ourRead(l, ours, &sums);
    }
    const auto ourWriting = [&] { return ourWrite(l, ours); };
#ifdef TABRIX_HAVE_XLSXWRITER
    const std::string theirs = dir + "/tabrix_bench_peer.xlsx";
    const auto [ourW, peerW] = measurePair(ourWriting, [&] { return peerWrite(l, theirs); });
    line("tabrix: write cells + save", ourW, cells);
    line("libxlsxwriter: write cells + save", peerW, cells);
    ratio("writing, libxlsxwriter / tabrix", peerW, ourW, 3);
    std::printf("  %-40s tabrix %ld B, libxlsxwriter %ld B (%s)\n", "file size", fileSize(ours),
                fileSize(theirs), fileSize(ours) <= fileSize(theirs) ? "met" : "NOT met");
    std::remove(theirs.c_str());
#else
    const Measure ourW = measure(ourWriting);
    line("tabrix: write cells + save", ourW, cells);
    std::printf("  libxlsxwriter is absent: install libxlsxwriter-dev for the comparison\n");
#endif
    line("tabrix: write cells only", measure([&] { return ourWrite(l, ""); }), cells);

    const auto ourReading = [&] {
        bench::ReferenceSums sums;
        return ourRead(l, ours, &sums);
    };
#ifdef TABRIX_HAVE_PUGIXML
    std::string error;
    const auto [ourR, refR] = measurePair(ourReading, [&] {
        bench::ReferenceSums sums;
        return bench::referenceRead(ours, sums, error);
    });
    line("tabrix: load + read every cell", ourR, cells);
    line("reference (zlib + pugixml): same", refR, cells);
    ratio("reading, reference / tabrix", refR, ourR, 2);
    // The two readers must agree on what they read.
    bench::ReferenceSums a, b;
    if (ourRead(l, ours, &a) && bench::referenceRead(ours, b, error) &&
        (a.numbers != b.numbers || a.textChars != b.textChars || a.formulaChars != b.formulaChars ||
         a.cells != b.cells)) {
        std::printf("  the two readers disagree: %zu/%zu cells, %zu/%zu text bytes\n", a.cells,
                    b.cells, a.textChars, b.textChars);
        return false;
    }
#else
    const Measure ourR = measure(ourReading);
    line("tabrix: load + read every cell", ourR, cells);
    std::printf("  pugixml is absent: install libpugixml-dev for the comparison\n");
#endif
    std::printf("  %-40s %s (target 120 MB)\n", "peak memory",
                ourR.peakKiB * 1024.0 <= 120e6 ? "met" : "NOT met");
    line("tabrix: load only", measure([&] { return ourRead(l, ours, nullptr); }), cells);
    std::remove(ours.c_str());
    return ourW.seconds > 0 && ourR.seconds > 0;
}

} // namespace

int main(int argc, char **argv) {
    const std::string dir = argc > 1 ? argv[1] : "/tmp";
    const std::string only = argc > 2 ? argv[2] : "";
    const std::string layout = argc > 3 ? argv[3] : "";
    bool ok = layout == "formulas" || run(kValues, dir, only);
    ok = (layout == "values" || run(kFormulas, dir, only)) && ok;
    return ok ? 0 : 1;
}
