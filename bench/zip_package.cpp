// Saving and loading, in memory, a package of one generated worksheet part
// (about 40 MB) and a shared strings part (about 10 MB) through the package
// layer, beside raw deflate and inflate of the same two parts with zlib at
// level 6.  Throughput counts the uncompressed bytes.
#include <cstdlib>
#include <string>

#include <benchmark/benchmark.h>
#include <zlib.h>

#include "ooxml/package/zip_package.h"

namespace {

struct Parts {
    std::string sheet, sst;
};

const Parts &parts() {
    static const Parts p = [] {
        Parts out;
        unsigned seed = 12345;
        out.sheet =
            "<worksheet "
            "xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\"><sheetData>";
        for (int row = 1; out.sheet.size() < (40u << 20); ++row) {
            const std::string r = std::to_string(row);
            out.sheet += "<row r=\"" + r + "\" spans=\"1:10\">";
            for (int col = 0; col < 10; ++col) {
                seed = seed * 1103515245u + 12345u;
                const std::string ref = std::string(1, char('A' + col)) + r;
                out.sheet += col % 3 == 2 ? "<c r=\"" + ref + "\" t=\"s\"><v>" +
                                                std::to_string(seed % 200000) + "</v></c>"
                                          : "<c r=\"" + ref + "\" s=\"1\"><v>" +
                                                std::to_string(seed % 100000) + "." +
                                                std::to_string(seed % 997) + "</v></c>";
            }
            out.sheet += "</row>";
        }
        out.sheet += "</sheetData></worksheet>";
        out.sst = "<sst xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">";
        while (out.sst.size() < (10u << 20)) {
            seed = seed * 1103515245u + 12345u;
            out.sst += "<si><t>item " + std::to_string(seed % 1000003) + " of lot " +
                       std::to_string(seed % 977) + "</t></si>";
        }
        out.sst += "</sst>";
        return out;
    }();
    return p;
}

int64_t total() { return static_cast<int64_t>(parts().sheet.size() + parts().sst.size()); }

std::string savePackage() {
    tabrix::ZipWriter w;
    w.add(L"/xl/worksheets/sheet1.xml", parts().sheet.data(), parts().sheet.size());
    w.add(L"/xl/sharedStrings.xml", parts().sst.data(), parts().sst.size());
    w.close();
    char *raw = nullptr;
    size_t n = 0;
    w.getRaw(raw, n);
    std::string out(raw, n);
    std::free(raw);
    return out;
}

void BM_PackageSave(benchmark::State &state) {
    size_t size = 0;
    for (auto _ : state) size = savePackage().size();
    state.SetBytesProcessed(state.iterations() * total());
    state.counters["archive_MB"] = static_cast<double>(size) / 1e6;
}

void BM_PackageLoad(benchmark::State &state) {
    const std::string zip = savePackage();
    for (auto _ : state) {
        tabrix::ZipReader r(zip.data(), zip.size());
        for (size_t i = 0; i < r.size(); ++i) {
            char *bytes = nullptr;
            size_t n = 0;
            r.data(i, bytes, n);
            benchmark::DoNotOptimize(bytes);
            std::free(bytes);
        }
    }
    state.SetBytesProcessed(state.iterations() * total());
}

std::string zlibDeflate(const std::string &in) {
    z_stream z{};
    deflateInit2(&z, 6, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY);
    std::string out(deflateBound(&z, in.size()), '\0');
    z.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(in.data()));
    z.avail_in = static_cast<uInt>(in.size());
    z.next_out = reinterpret_cast<Bytef *>(&out[0]);
    z.avail_out = static_cast<uInt>(out.size());
    deflate(&z, Z_FINISH);
    out.resize(z.total_out);
    deflateEnd(&z);
    return out;
}

void zlibInflate(const std::string &in, std::string &out) {
    z_stream z{};
    inflateInit2(&z, -15);
    z.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(in.data()));
    z.avail_in = static_cast<uInt>(in.size());
    z.next_out = reinterpret_cast<Bytef *>(&out[0]);
    z.avail_out = static_cast<uInt>(out.size());
    inflate(&z, Z_FINISH);
    inflateEnd(&z);
}

void BM_ZlibDeflate6(benchmark::State &state) {
    size_t size = 0;
    for (auto _ : state) size = zlibDeflate(parts().sheet).size() + zlibDeflate(parts().sst).size();
    state.SetBytesProcessed(state.iterations() * total());
    state.counters["archive_MB"] = static_cast<double>(size) / 1e6;
}

void BM_ZlibInflate(benchmark::State &state) {
    const std::string a = zlibDeflate(parts().sheet), b = zlibDeflate(parts().sst);
    for (auto _ : state) {
        std::string x(parts().sheet.size(), '\0'), y(parts().sst.size(), '\0');
        zlibInflate(a, x);
        zlibInflate(b, y);
        benchmark::DoNotOptimize(x.data());
    }
    state.SetBytesProcessed(state.iterations() * total());
}

} // namespace

BENCHMARK(BM_PackageSave)->Unit(benchmark::kMillisecond)->MinTime(2);
BENCHMARK(BM_ZlibDeflate6)->Unit(benchmark::kMillisecond)->MinTime(2);
BENCHMARK(BM_PackageLoad)->Unit(benchmark::kMillisecond)->MinTime(2);
BENCHMARK(BM_ZlibInflate)->Unit(benchmark::kMillisecond)->MinTime(2);
BENCHMARK_MAIN();
