// Load and save of a whole binary book: 65,000 rows by 10 columns (even
// columns numbers, odd columns texts, every text distinct), written into a
// new book and saved, to memory and to disk, then loaded back and every
// cell read.  Reports cells per second and the peak resident memory, and
// reads the same file with FreeXL, when it is installed, for the ratio.
// Targets: reading faster than FreeXL; writing at least 5 million cells a
// second, the save included.
#include "tabrix.h"
#include "tabrix/IBookT.h"

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#ifdef TABRIX_HAVE_FREEXL
#include <freexl.h>
#endif

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

using namespace tabrix;

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

long peakKiB() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return u.ru_maxrss;
}

// The best of kRounds runs of `work`, in seconds; a failing run stops all.
double best(const std::function<bool()> &work) {
    double t = 1e30;
    for (int i = 0; i < kRounds; ++i) {
        auto start = std::chrono::steady_clock::now();
        if (!work()) return -1;
        std::chrono::duration<double> d = std::chrono::steady_clock::now() - start;
        t = std::min(t, d.count());
    }
    return t;
}

const std::vector<std::string> &texts() {
    static std::vector<std::string> t = [] {
        std::vector<std::string> v;
        v.reserve(size_t(kRows) * kCols / 2);
        for (int r = 0; r < kRows; ++r)
            for (int c = 1; c < kCols; c += 2) v.push_back("text " + std::to_string(r) + "/" + std::to_string(c));
        return v;
    }();
    return t;
}

bool fill(Book &b) {
    ISheetT<char> *s = b.addSheet("Data", nullptr);
    if (!s) return false;
    const std::vector<std::string> &t = texts();
    size_t k = 0;
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < kCols; ++c) {
            bool ok = c % 2 == 0 ? s->writeNum(r, c, r * 1.25 + c, nullptr) : s->writeStr(r, c, t[k++].c_str(), nullptr);
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

void report(const char *what, double seconds, long kibBefore) {
    if (seconds < 0) {
        std::printf("%-34s failed\n", what);
        return;
    }
    std::printf("%-34s %8.1f ms %8.2f M cells/s   peak RSS %7.1f MiB (+%.1f)\n", what, seconds * 1e3,
                kCells / seconds / 1e6, peakKiB() / 1024.0, (peakKiB() - kibBefore) / 1024.0);
}

#ifdef TABRIX_HAVE_FREEXL
bool freexlReadAll(const std::string &path) {
    const void *h = nullptr;
    bool ok = freexl_open(path.c_str(), &h) == FREEXL_OK && freexl_select_active_worksheet(h, 0) == FREEXL_OK;
    unsigned int rows = 0;
    unsigned short cols = 0;
    ok = ok && freexl_worksheet_dimensions(h, &rows, &cols) == FREEXL_OK && rows == unsigned(kRows);
    double sum = 0;
    size_t chars = 0;
    for (unsigned r = 0; ok && r < rows; ++r)
        for (unsigned short c = 0; ok && c < cols; ++c) {
            FreeXL_CellValue v;
            if (freexl_get_cell_value(h, r, c, &v) != FREEXL_OK) ok = false;
            else if (v.type == FREEXL_CELL_DOUBLE) sum += v.value.double_value;
            else if (v.type == FREEXL_CELL_INT) sum += v.value.int_value;
            else if (v.type == FREEXL_CELL_TEXT || v.type == FREEXL_CELL_SST_TEXT) chars += v.value.text_value[0] != 0;
        }
    if (h) freexl_close(h);
    benchmark::DoNotOptimize(sum);
    benchmark::DoNotOptimize(chars);
    return ok;
}
#endif

} // namespace

int main(int argc, char **argv) {
    std::string path = argc > 1 ? argv[1] : "/tmp/tabrix_bench_xls_book.xls";
    std::printf("binary book of %d x %d cells (half numbers, half distinct texts), best of %d\n", kRows, kCols,
                kRounds);
    texts();
    long base = peakKiB();

    // Writing: cells into a new book, then the save.
    std::string saved;
    double tWriteMem = best([&] {
        BookPtr b = newBook();
        if (!b || !fill(*b)) return false;
        const char *data = nullptr;
        unsigned size = 0;
        if (!b->saveRaw(&data, &size)) return false;
        saved.assign(data, size);
        return true;
    });
    report("write cells + save to memory", tWriteMem, base);
    double tWriteDisk = best([&] {
        BookPtr b = newBook();
        return b && fill(*b) && b->save(path.c_str());
    });
    report("write cells + save to disk", tWriteDisk, base);
    std::printf("%-34s %8.1f MiB\n", "file size", saved.size() / 1048576.0);

    // Saving alone, of a book already filled.
    {
        BookPtr b = newBook();
        double t = b && fill(*b) ? best([&] {
            const char *data = nullptr;
            unsigned size = 0;
            return b->saveRaw(&data, &size);
        })
                                 : -1;
        report("save to memory only", t, base);
    }

    // Reading: the load and every cell.
    double tLoadMem = best([&] {
        BookPtr b = newBook();
        return b && b->loadRaw(saved.data(), unsigned(saved.size())) && readAll(*b);
    });
    report("load from memory + read cells", tLoadMem, base);
    double tLoadDisk = best([&] {
        BookPtr b = newBook();
        return b && b->load(path.c_str()) && readAll(*b);
    });
    report("load from disk + read cells", tLoadDisk, base);

#ifdef TABRIX_HAVE_FREEXL
    double tFree = best([&] { return freexlReadAll(path); });
    report("FreeXL open + read cells (disk)", tFree, base);
    if (tFree > 0 && tLoadDisk > 0)
        std::printf("%-34s %8.2f x (above 1: we read faster)\n", "FreeXL time / our time", tFree / tLoadDisk);
#else
    std::printf("FreeXL is absent: install libfreexl-dev (pkg-config freexl) for the comparison\n");
#endif
    if (tWriteMem > 0)
        std::printf("%-34s %s (target 5 M cells/s, save included)\n", "write target",
                    kCells / tWriteMem >= 5e6 ? "met" : "NOT met");
    std::remove(path.c_str());
    return tWriteMem > 0 && tLoadMem > 0 ? 0 : 1;
}
