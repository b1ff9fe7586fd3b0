// Throughput of the binary sheet's cell store through ISheetT<char>:
// 650,000 cells (65,000 rows by 10 columns, half numbers, half texts drawn
// from 1,000 distinct strings) written into a new sheet, and the same cells
// read back with their types.  The target is 10 million cells per second
// each way.  The memory held per cell is reported for that sheet and for a
// dense sheet of numbers in all 256 columns.
#include "biff/sheet_impl.h"
#include "biff/sheet_owner.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

using namespace tabrix;

namespace {

const int kRows = 65000;
const int kCols = 10;
const int kStrings = 1000;

// The least a sheet needs from a book: message, pool, strings, styles.
class BenchOwner : public ISheetOwner<char> {
public:
    BenchOwner() { _styles.init(); }
    XString &message() override { return _message; }
    bool utf8Mode() const override { return true; }
    MemPool &pool() override { return _pool; }
    SST &sst() override { return _sst; }
    StyleTable<char> &styles() override { return _styles; }
    int sheetCount() override { return 1; }
    SheetImplT<char> *sheetAt(int index) override { return index == 0 ? sheet : nullptr; }
    int getTabIndex(const SheetImplT<char> *) override { return 0; }
    bool refR1C1() override { return false; }
    bool isDate1904() override { return false; }
    SheetImplT<char> *sheet = nullptr;

private:
    XString _message;
    MemPool _pool;
    SST _sst{_pool};
    StyleTable<char> _styles;
};

const std::vector<std::string> &texts() {
    static std::vector<std::string> t = [] {
        std::vector<std::string> v;
        for (int i = 0; i < kStrings; ++i) v.push_back("item number " + std::to_string(i));
        return v;
    }();
    return t;
}

// Even columns numbers (integers and fractions that need a full double),
// odd columns texts.
void fill(ISheetT<char> &sheet) {
    const std::vector<std::string> &t = texts();
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < kCols; ++c) {
            if (c % 2 == 0)
                sheet.writeNum(r, c, c % 4 == 0 ? double(r) : r * 0.1, nullptr);
            else
                sheet.writeStr(r, c, t[size_t(r * kCols + c) % kStrings].c_str(), nullptr);
        }
}

struct Book {
    BenchOwner owner;
    std::unique_ptr<SheetImplT<char>> sheet{new BinarySheetT<char>(owner, L"Bench")};
    Book() { owner.sheet = sheet.get(); }
};

void BM_WriteCells(benchmark::State &state) {
    size_t memory = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::unique_ptr<Book> book(new Book);
        state.ResumeTiming();
        fill(*book->sheet);
        state.PauseTiming();
        memory = book->sheet->cellMemory();
        book.reset();
        state.ResumeTiming();
    }
    const double cells = double(kRows) * kCols;
    state.SetItemsProcessed(int64_t(state.iterations()) * kRows * kCols);
    state.counters["bytes_per_cell"] = double(memory) / cells;
}

void BM_ReadCells(benchmark::State &state) {
    Book book;
    fill(*book.sheet);
    ISheetT<char> &sheet = *book.sheet;
    double sum = 0;
    size_t chars = 0;
    for (auto _ : state) {
        for (int r = 0; r < kRows; ++r)
            for (int c = 0; c < kCols; ++c) {
                if (sheet.cellType(r, c) == CELLTYPE_NUMBER) {
                    sum += sheet.readNum(r, c, nullptr);
                } else {
                    const char *s = sheet.readStr(r, c, nullptr);
                    chars += s ? s[0] : 0;
                }
            }
    }
    benchmark::DoNotOptimize(sum);
    benchmark::DoNotOptimize(chars);
    state.SetItemsProcessed(int64_t(state.iterations()) * kRows * kCols);
}

// Numbers in every column of 4,000 rows: the index pages are full.
void BM_DenseSheetMemory(benchmark::State &state) {
    const int rows = 4000;
    size_t memory = 0;
    for (auto _ : state) {
        Book book;
        for (int r = 0; r < rows; ++r)
            for (int c = 0; c < 256; ++c) book.sheet->writeNum(r, c, r * 0.5 + c, nullptr);
        memory = book.sheet->cellMemory();
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * rows * 256);
    state.counters["bytes_per_cell"] = double(memory) / (rows * 256.0);
}

BENCHMARK(BM_WriteCells)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadCells)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DenseSheetMemory)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
