// The schema binding on a worksheet part of one million cells (100 000 rows
// of ten: numbers, shared strings, and with argument 1 a formula in every
// row): unmarshal and marshal speed in MB/s of XML, and heap bytes per cell
// of the bound tree.
#include <malloc.h>

#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "ooxml/binding/engine/document.h"

namespace {

std::string make_sheet_xml(bool formulas) {
    std::string s =
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
        "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">"
        "<dimension ref=\"A1:J100000\"/><sheetData>";
    for (int r = 1; r <= 100000; ++r) {
        s += "<row r=\"" + std::to_string(r) + "\" spans=\"1:10\">";
        for (int c = 0; c < 10; ++c) {
            const std::string ref = std::string(1, static_cast<char>('A' + c)) + std::to_string(r);
            if (c == 9 && formulas)
                s += "<c r=\"" + ref + "\" s=\"2\"><f>SUM(A" + std::to_string(r) + ":C" +
                     std::to_string(r) + ")</f><v>" + std::to_string(r * 3) + "</v></c>";
            else if (c % 3 == 1)
                s += "<c r=\"" + ref + "\" t=\"s\"><v>" + std::to_string(r % 977) + "</v></c>";
            else
                s += "<c r=\"" + ref + "\"><v>" + std::to_string(r * 0.25 + c) + "</v></c>";
        }
        s += "</row>";
    }
    return s + "</sheetData></worksheet>";
}

const std::string &sheet_xml(const benchmark::State &state) {
    static const std::string plain = make_sheet_xml(false), formulas = make_sheet_xml(true);
    return state.range(0) ? formulas : plain;
}

void BM_BindingUnmarshal(benchmark::State &state) {
    const std::string &xml = sheet_xml(state);
    for (auto _ : state) {
        binding::c_document d;
        if (d.unmarshal(xml.data(), xml.size(), binding::TRANSITIONAL, binding::PART_WORKSHEET))
            state.SkipWithError("unmarshal failed");
        benchmark::DoNotOptimize(d);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * xml.size()));
    // Heap held by one bound tree, per cell.
    const size_t before = mallinfo2().uordblks;
    {
        auto d = std::make_unique<binding::c_document>();
        d->unmarshal(xml.data(), xml.size(), binding::TRANSITIONAL, binding::PART_WORKSHEET);
        state.counters["heap_bytes_per_cell"] =
            static_cast<double>(mallinfo2().uordblks - before) / 1e6;
    }
    state.counters["xml_bytes_per_cell"] = static_cast<double>(xml.size()) / 1e6;
}
BENCHMARK(BM_BindingUnmarshal)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_BindingMarshal(benchmark::State &state) {
    const std::string &xml = sheet_xml(state);
    binding::c_document d;
    d.unmarshal(xml.data(), xml.size(), binding::TRANSITIONAL, binding::PART_WORKSHEET);
    size_t bytes = 0;
    for (auto _ : state) {
        std::string out;
        out.reserve(xml.size() + 1024);
        d.marshal(out);
        bytes = out.size();
        benchmark::DoNotOptimize(out);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}
BENCHMARK(BM_BindingMarshal)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

BENCHMARK_MAIN();
