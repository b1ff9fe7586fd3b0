// Formula throughput: one million formulas of mixed shapes (arithmetic,
// comparisons, strings, calls with fixed and variable arguments, nested
// calls, absolute and mixed references, areas, references to other sheets)
// compiled from text to tokens, and the tokens printed back to text.  The
// targets are 1 million formulas per second to tokens and 2 million back to
// text.  Also the load time of a book of 100,000 formula cells against the
// same book holding numbers.  Rates are per CPU second, as the machine may
// be shared.
#include "biff/book_impl.h"
#include "formula/formula_parser.h"
#include "formula/formula_printer.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

using namespace tabrix;

namespace {

const int kFormulas = 1000000;
const int kBookCells = 100000;

class BenchBook : public FormulaBook {
public:
    int sheetIndex(const std::wstring &name) override { return name == L"Data" ? 0 : -1; }
    uint16_t sheetRef(int, int) override { return 0; }
    bool sheetRange(uint16_t, std::wstring &first, std::wstring &last, bool &bad) override {
        first = last = L"Data";
        bad = false;
        return true;
    }
    bool definedName(uint32_t, std::wstring &) override { return false; }
};

std::wstring shape(int i) {
    const std::wstring n = std::to_wstring(i % 60000 + 1), m = std::to_wstring(i % 900 + 2);
    switch (i % 10) {
    case 0: return L"A" + n + L"+B" + n + L"*2";
    case 1: return L"SUM(A1:C" + m + L")";
    case 2: return L"IF(A" + n + L">=0,\"pos\",\"neg\")";
    case 3: return L"ROUND(AVERAGE(B1:B" + m + L"),2)-$C$1";
    case 4: return L"Data!A" + n + L"*1.5";
    case 5: return L"CONCATENATE(\"x, \",A" + n + L")";
    case 6: return L"(A1+B2)/(C3-D" + m + L")^2";
    case 7: return L"MAX(A" + n + L",B" + n + L",C$" + n + L")+MIN(1,2)";
    case 8: return L"A" + n + L"<>B" + n;
    default: return L"-A" + n + L"^2+0.25%";
    }
}

const std::vector<std::wstring> &texts() {
    static std::vector<std::wstring> t = [] {
        std::vector<std::wstring> v;
        v.reserve(kFormulas);
        for (int i = 0; i < kFormulas; ++i) v.push_back(shape(i));
        return v;
    }();
    return t;
}

struct Compiled {
    std::vector<uint8_t> bytes;
    std::vector<size_t> starts;
};

const Compiled &compiled() {
    static Compiled c = [] {
        Compiled out;
        FormulaParser parser;
        BenchBook book;
        std::vector<uint8_t> tokens;
        for (const std::wstring &t : texts()) {
            parser.compile(t, &book, tokens);
            out.starts.push_back(out.bytes.size());
            out.bytes.insert(out.bytes.end(), tokens.begin(), tokens.end());
        }
        out.starts.push_back(out.bytes.size());
        return out;
    }();
    return c;
}

void TextToTokens(benchmark::State &state) {
    const std::vector<std::wstring> &t = texts();
    FormulaParser parser;
    BenchBook book;
    std::vector<uint8_t> tokens;
    for (auto _ : state) {
        for (const std::wstring &text : t) {
            parser.compile(text, &book, tokens);
            benchmark::DoNotOptimize(tokens.data());
        }
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * kFormulas);
}
BENCHMARK(TextToTokens)->Unit(benchmark::kMillisecond);

void TokensToText(benchmark::State &state) {
    const Compiled &c = compiled();
    FormulaPrinter printer;
    BenchBook book;
    for (auto _ : state) {
        for (size_t i = 0; i + 1 < c.starts.size(); ++i) {
            const std::wstring &text =
                printer.print(c.bytes.data() + c.starts[i], c.starts[i + 1] - c.starts[i], &book);
            benchmark::DoNotOptimize(text.data());
        }
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * kFormulas);
}
BENCHMARK(TokensToText)->Unit(benchmark::kMillisecond);

struct BookDeleter {
    void operator()(BookImplT<char> *b) const { b->release(); }
};

// A saved book of kBookCells cells in one sheet: formulas or numbers.
const std::string &savedBook(bool formulas) {
    static std::string saved[2];
    std::string &s = saved[formulas];
    if (s.empty()) {
        std::unique_ptr<BookImplT<char>, BookDeleter> b(new BinaryBookT<char>());
        b->setLocale("UTF-8");
        ISheetT<char> *sheet = b->addSheet("Data", nullptr);
        for (int i = 0; i < kBookCells; ++i) {
            const int row = i / 10, col = i % 10;
            if (formulas) {
                const std::wstring w = shape(i);
                sheet->writeFormula(row, col, std::string(w.begin(), w.end()).c_str(), nullptr);
            } else {
                sheet->writeNum(row, col, i * 0.5, nullptr);
            }
        }
        const char *data = nullptr;
        unsigned size = 0;
        b->saveRaw(&data, &size);
        s.assign(data, size);
    }
    return s;
}

void LoadBook(benchmark::State &state) {
    const std::string &bytes = savedBook(state.range(0) != 0);
    for (auto _ : state) {
        std::unique_ptr<BookImplT<char>, BookDeleter> b(new BinaryBookT<char>());
        b->setLocale("UTF-8");
        benchmark::DoNotOptimize(b->loadRaw(bytes.data(), unsigned(bytes.size())));
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * kBookCells);
    state.SetLabel(state.range(0) ? "100,000 formulas" : "100,000 numbers");
}
BENCHMARK(LoadBook)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
