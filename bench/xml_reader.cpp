// The XML reader over a generated worksheet part of 1,000,000 cells (numbers
// and shared-string cells, about 40 MB) held in memory: our event loop
// visiting every element and every attribute value, and, when installed,
// pugixml parsing a copy of the same buffer in place and walking the tree.
#include <cstring>
#include <string>

#include <benchmark/benchmark.h>

#include "ooxml/lmx/xml_reader.h"

#ifdef TABRIX_HAVE_PUGIXML
#include <pugixml.hpp>
#endif

namespace {

const std::string &worksheet() {
    static const std::string doc = [] {
        std::string s =
            "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
            "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" "
            "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\" "
            "xmlns:x14ac=\"http://schemas.microsoft.com/office/spreadsheetml/2009/9/ac\">"
            "<dimension ref=\"A1:J100000\"/><sheetData>";
        s.reserve(42u << 20);
        unsigned seed = 12345;
        for (int row = 1; row <= 100000; ++row) {
            const std::string r = std::to_string(row);
            s += "<row r=\"" + r + "\" spans=\"1:10\" x14ac:dyDescent=\"0.25\">";
            for (int col = 0; col < 10; ++col) {
                seed = seed * 1103515245u + 12345u;
                const std::string ref = std::string(1, char('A' + col)) + r;
                if (col % 3 == 2)
                    s += "<c r=\"" + ref + "\" t=\"s\"><v>" + std::to_string(seed % 5000) +
                         "</v></c>";
                else
                    s += "<c r=\"" + ref + "\" s=\"1\"><v>" + std::to_string(seed % 100000) + "." +
                         std::to_string(seed % 997) + "</v></c>";
            }
            s += "</row>";
        }
        s += "</sheetData></worksheet>";
        return s;
    }();
    return doc;
}

void BM_LmxEvents(benchmark::State &state) {
    const std::string &doc = worksheet();
    size_t sum = 0;
    for (auto _ : state) {
        lmx::c_xml_reader r(doc.data(), doc.size());
        size_t elements = 0;
        for (int e; (e = r.next()) > lmx::EV_ERROR;) {
            if (e == lmx::EV_START) {
                ++elements;
                for (size_t i = 0; i < r.attribute_count(); ++i) {
                    std::string_view v;
                    r.attribute_value(r.attribute(i), v);
                    sum += v.size();
                }
            } else if (e == lmx::EV_TEXT) {
                sum += r.text().size();
            }
        }
        if (r.error()) state.SkipWithError("reader error");
        benchmark::DoNotOptimize(elements);
    }
    benchmark::DoNotOptimize(sum);
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(doc.size()));
}
BENCHMARK(BM_LmxEvents)->Unit(benchmark::kMillisecond);

#ifdef TABRIX_HAVE_PUGIXML
size_t walk(const pugi::xml_node &n) {
    size_t sum = 0;
    for (pugi::xml_node c = n.first_child(); c; c = c.next_sibling()) {
        if (c.type() == pugi::node_element) {
            for (pugi::xml_attribute a = c.first_attribute(); a; a = a.next_attribute())
                sum += std::strlen(a.value());
            sum += walk(c);
        } else if (c.type() == pugi::node_pcdata) {
            sum += std::strlen(c.value());
        }
    }
    return sum;
}

void BM_PugixmlInPlace(benchmark::State &state) {
    const std::string &doc = worksheet();
    std::string copy;
    size_t sum = 0;
    for (auto _ : state) {
        state.PauseTiming();
        copy = doc;
        state.ResumeTiming();
        pugi::xml_document d;
        if (!d.load_buffer_inplace(copy.data(), copy.size())) state.SkipWithError("pugixml error");
        sum += walk(d);
    }
    benchmark::DoNotOptimize(sum);
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(doc.size()));
}
BENCHMARK(BM_PugixmlInPlace)->Unit(benchmark::kMillisecond);
#endif

} // namespace

BENCHMARK_MAIN();
