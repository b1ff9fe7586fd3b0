// The Open XML cell store against the binary book, in one run: 62,500 rows
// by 32 columns (even columns numbers, odd columns texts; half the texts
// from a pool of 1,000, half distinct) written in ascending order, saved,
// loaded again and every cell read.  Reports each step's time, the saved
// bytes (the XML parts also deflated, as an archive would hold them) and
// the heap held per cell by the loaded sheet.  Times are processor
// time.  A timed tool.
#include <malloc.h>
#include <zlib.h>

#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tabrix.h"
#include "tabrix/IBookT.h"
#include "tests/support/xml_sheet_fake.h"

using namespace tabrix;

namespace {

const int kRows = 62500;
const int kCols = 32;
const double kCells = double(kRows) * kCols;

const std::vector<std::string> &texts() {
    static const std::vector<std::string> t = [] {
        std::vector<std::string> v;
        for (int i = 0; i < 1000; ++i) v.push_back("pooled text number " + std::to_string(i));
        return v;
    }();
    return t;
}

template <class Sheet> void fill(Sheet &sheet) {
    std::string distinct;
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < kCols; ++c) {
            if (c % 2 == 0) {
                sheet.writeNum(r, c, c % 4 == 0 ? double(r) : r * 0.1 + c, nullptr);
            } else if (c % 4 == 1) {
                sheet.writeStr(r, c, texts()[size_t(r * 7 + c) % 1000].c_str(), nullptr);
            } else {
                distinct = "distinct " + std::to_string(r) + "/" + std::to_string(c);
                sheet.writeStr(r, c, distinct.c_str(), nullptr);
            }
        }
}

template <class Sheet> double readAll(Sheet &sheet) {
    double sum = 0;
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < kCols; ++c) {
            if (sheet.cellType(r, c) == CELLTYPE_NUMBER) {
                sum += sheet.readNum(r, c, nullptr);
            } else {
                const char *s = sheet.readStr(r, c, nullptr);
                sum += s ? double(s[0]) : -1e9;
            }
        }
    return sum;
}

// Processor time of the process: the machine is shared, so wall time says
// more about the neighbours than about the work.
double cpuNow() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

double seconds(const std::function<void()> &work) {
    const double t0 = cpuNow();
    work();
    return cpuNow() - t0;
}

size_t heapInUse() {
    const struct mallinfo2 m = mallinfo2();
    return m.uordblks + m.hblkhd;
}

size_t deflated(const std::string &bytes) {
    uLongf n = compressBound(uLong(bytes.size()));
    std::vector<Bytef> out(n);
    compress2(out.data(), &n, reinterpret_cast<const Bytef *>(bytes.data()), uLong(bytes.size()),
              6);
    return size_t(n);
}

void report(const char *what, double write, double save, double load, double read, size_t bytes,
            size_t heap) {
    std::printf("%-18s write %6.3f s  save %6.3f s  load %6.3f s  read %6.3f s  "
                "(%5.1f M cells/s read)  file %9zu B (%5.2f B/cell)  heap %6.1f B/cell\n",
                what, write, save, load, read, kCells / read / 1e6, bytes, double(bytes) / kCells,
                double(heap) / kCells);
}

void xmlBook() {
    std::string sheetBytes, tableBytes;
    double tWrite = 0, tSave = 0;
    {
        xmlfake::Book<char> book;
        xmlfake::Sheet<char> sheet(book);
        tWrite = seconds([&] { fill(sheet); });
        tSave = seconds([&] {
            sheetBytes = sheet.save();
            book.sst->save(tableBytes);
        });
    }
    const size_t before = heapInUse();
    xmlfake::Book<char> book;
    std::unique_ptr<xmlfake::Sheet<char>> sheet;
    const double tLoad = seconds([&] {
        book.sst = std::make_unique<SharedStrings>(binding::TRANSITIONAL, tableBytes.data(),
                                                   tableBytes.size());
        sheet = std::make_unique<xmlfake::Sheet<char>>(book, sheetBytes);
    });
    const size_t heap = heapInUse() - before;
    double sum = 0;
    const double tRead = seconds([&] { sum = readAll(*sheet); });
    report("Open XML (parts)", tWrite, tSave, tLoad, tRead, sheetBytes.size() + tableBytes.size(),
           heap);
    std::printf("%-18s parts deflated %zu B (%5.2f B/cell); checksum %.1f\n", "",
                deflated(sheetBytes) + deflated(tableBytes),
                double(deflated(sheetBytes) + deflated(tableBytes)) / kCells, sum);
}

struct Release {
    void operator()(IBookT<char> *b) const {
        if (b) b->release();
    }
};

void binaryBook() {
    std::string bytes;
    double tWrite = 0, tSave = 0;
    {
        std::unique_ptr<IBookT<char>, Release> book(static_cast<IBookT<char> *>(tbCreateBookA()));
        book->setLocale("UTF-8");
        ISheetT<char> *sheet = book->addSheet("Bench", nullptr);
        tWrite = seconds([&] { fill(*sheet); });
        tSave = seconds([&] {
            const char *data = nullptr;
            unsigned size = 0;
            book->saveRaw(&data, &size);
            bytes.assign(data, size);
        });
    }
    const size_t before = heapInUse();
    std::unique_ptr<IBookT<char>, Release> book(static_cast<IBookT<char> *>(tbCreateBookA()));
    book->setLocale("UTF-8");
    const double tLoad = seconds([&] { book->loadRaw(bytes.data(), unsigned(bytes.size())); });
    const size_t heap = heapInUse() - before;
    double sum = 0;
    const double tRead = seconds([&] { sum = readAll(*book->getSheet(0)); });
    report("binary book", tWrite, tSave, tLoad, tRead, bytes.size(), heap);
    std::printf("%-18s checksum %.1f\n", "", sum);
}

} // namespace

int main() {
    std::printf("%d rows x %d columns = %.0f cells\n", kRows, kCols, kCells);
    xmlBook();
    binaryBook();
    return 0;
}
