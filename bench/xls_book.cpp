// Load and save of a whole binary book: 65,000 rows by 10 columns (even
// columns numbers, odd columns texts), written into a new book and saved,
// to memory and to disk, then loaded back and every cell read; once with
// every text distinct and once with 1,000 texts used over and over.  Reports cells per second and
// the peak resident memory, and reads the same file with FreeXL, when it is installed, for the
// ratio. Targets: reading faster than FreeXL; writing at least 5 million cells a second, the save
// included.
#include "support/child_measure.h"
#include "tabrix.h"
#include "tabrix/IBookT.h"

#include <benchmark/benchmark.h>

#ifdef TABRIX_HAVE_FREEXL
#include <freexl.h>
#endif

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

using namespace tabrix;
using tabrix::bench::Measure;
using tabrix::bench::measure;

namespace {

const int kRows = 65000;
const int kCols = 10;
const double kCells = double(kRows) * kCols;
const int kRounds = 3;

using Book = IBookT<char>;

struct Release {
    void operator()(Book *b) const {
        if (b) b->release();
    }
};
using BookPtr = std::unique_ptr<Book, Release>;

BookPtr newBook() {
    BookPtr b(static_cast<Book *>(tbCreateBookA()));
    if (b) b->setLocale("UTF-8");
    return b;
}

// The texts of the odd columns in cell order: all distinct, or 1,000
// distinct ones repeated.
std::vector<std::string> g_texts;

void makeTexts(bool distinct) {
    g_texts.clear();
    g_texts.reserve(size_t(kRows) * kCols / 2);
    for (int r = 0; r < kRows; ++r)
        for (int c = 1; c < kCols; c += 2)
            g_texts.push_back(distinct ? "text " + std::to_string(r) + "/" + std::to_string(c)
                                       : "item " + std::to_string((r * kCols + c) % 1000));
}

const std::vector<std::string> &texts() { return g_texts; }

bool fill(Book &b) {
    ISheetT<char> *s = b.addSheet("Data", nullptr);
    if (!s) return false;
    const std::vector<std::string> &t = texts();
    size_t k = 0;
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < kCols; ++c) {
            bool ok = c % 2 == 0 ? s->writeNum(r, c, r * 1.25 + c, nullptr)
                                 : s->writeStr(r, c, t[k++].c_str(), nullptr);
            if (!ok) return false;
        }
    return true;
}

// Reads every cell; false when one has the wrong type.
bool readAll(Book &b) {
    ISheetT<char> *s = b.getSheet(0);
    if (!s) return false;
    double sum = 0;
    size_t chars = 0;
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < kCols; ++c) {
            if (c % 2 == 0) {
                if (s->cellType(r, c) != CELLTYPE_NUMBER) return false;
                sum += s->readNum(r, c, nullptr);
            } else {
                const char *t = s->readStr(r, c, nullptr);
                if (!t) return false;
                chars += t[0] != 0;
            }
        }
    benchmark::DoNotOptimize(sum);
    benchmark::DoNotOptimize(chars);
    return true;
}

void report(const char *what, const Measure &m) {
    if (m.seconds < 0) {
        std::printf("%-34s failed\n", what);
        return;
    }
    std::printf("%-34s %8.1f ms %8.2f M cells/s   peak memory +%.1f MiB\n", what, m.seconds * 1e3,
                kCells / m.seconds / 1e6, m.peakKiB / 1024.0);
}

#ifdef TABRIX_HAVE_FREEXL
bool freexlReadAll(const std::string &path) {
    const void *h = nullptr;
    bool ok = freexl_open(path.c_str(), &h) == FREEXL_OK &&
              freexl_select_active_worksheet(h, 0) == FREEXL_OK;
    unsigned int rows = 0;
    unsigned short cols = 0;
    ok = ok && freexl_worksheet_dimensions(h, &rows, &cols) == FREEXL_OK && rows == unsigned(kRows);
    double sum = 0;
    size_t chars = 0;
    for (unsigned r = 0; ok && r < rows; ++r)
        for (unsigned short c = 0; ok && c < cols; ++c) {
            FreeXL_CellValue v;
            if (freexl_get_cell_value(h, r, c, &v) != FREEXL_OK)
                ok = false;
            else if (v.type == FREEXL_CELL_DOUBLE)
                sum += v.value.double_value;
            else if (v.type == FREEXL_CELL_INT)
                sum += v.value.int_value;
            else if (v.type == FREEXL_CELL_TEXT || v.type == FREEXL_CELL_SST_TEXT)
                chars += v.value.text_value[0] != 0;
        }
    if (h) freexl_close(h);
    benchmark::DoNotOptimize(sum);
    benchmark::DoNotOptimize(chars);
    return ok;
}
#endif

// One table of measures; answers false when the book failed.
bool run(const std::string &path, bool distinct) {
    makeTexts(distinct);
    std::printf("\nbinary book of %d x %d cells (half numbers, half %s texts), best of %d\n", kRows,
                kCols, distinct ? "distinct" : "1,000 repeated", kRounds);

    // The file the reading measures load, made once beforehand.
    std::string saved;
    {
        BookPtr b = newBook();
        const char *data = nullptr;
        unsigned size = 0;
        if (!b || !fill(*b) || !b->saveRaw(&data, &size) || !b->save(path.c_str())) {
            std::printf("the book could not be written: %s\n", b ? b->errorMessage() : "no book");
            return false;
        }
        saved.assign(data, size);
    }
    std::printf("%-34s %8.1f MiB\n", "file size", saved.size() / 1048576.0);

    // Writing: cells into a new book, then the save.
    Measure writeMem = measure([&] {
        BookPtr b = newBook();
        const char *data = nullptr;
        unsigned size = 0;
        return b && fill(*b) && b->saveRaw(&data, &size);
    });
    report("write cells + save to memory", writeMem);
    report("write cells + save to disk", measure([&] {
               BookPtr b = newBook();
               return b && fill(*b) && b->save(path.c_str());
           }));
    report("write cells only", measure([&] {
               BookPtr b = newBook();
               return b && fill(*b);
           }));

    // Reading: the load and every cell.
    Measure loadMem = measure([&] {
        BookPtr b = newBook();
        return b && b->loadRaw(saved.data(), unsigned(saved.size())) && readAll(*b);
    });
    report("load from memory + read cells", loadMem);
    Measure loadDisk = measure([&] {
        BookPtr b = newBook();
        return b && b->load(path.c_str()) && readAll(*b);
    });
    report("load from disk + read cells", loadDisk);
    report("load from memory only", measure([&] {
               BookPtr b = newBook();
               return b && b->loadRaw(saved.data(), unsigned(saved.size()));
           }));

#ifdef TABRIX_HAVE_FREEXL
    Measure freexl = measure([&] { return freexlReadAll(path); });
    report("FreeXL open + read cells (disk)", freexl);
    if (freexl.seconds > 0 && loadDisk.seconds > 0)
        std::printf("%-34s %8.2f x (above 1: we read faster)\n", "FreeXL time / our time",
                    freexl.seconds / loadDisk.seconds);
#else
    std::printf("FreeXL is absent: install libfreexl-dev (pkg-config freexl) for the comparison\n");
#endif
    if (writeMem.seconds > 0)
        std::printf("%-34s %s (target 5 M cells/s, save included)\n", "write target",
                    kCells / writeMem.seconds >= 5e6 ? "met" : "NOT met");
    std::remove(path.c_str());
    return writeMem.seconds > 0 && loadMem.seconds > 0;
}

} // namespace

int main(int argc, char **argv) {
    std::string path = argc > 1 ? argv[1] : "/tmp/tabrix_bench_xls_book.xls";
    bool ok = run(path, true);
    ok = run(path, false) && ok;
    return ok ? 0 : 1;
}
