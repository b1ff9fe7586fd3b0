// Writing and reading back a sparse 3-dimensional array of 1,000,000 stored
// entries through the "csv" driver of the loaded module, in the default
// layout (one row for each entry).  Reports entries per second for each
// direction and, at the end, the peak memory of the process.
#include "refhost.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

using namespace qdhost;

namespace {

const int kSizes[3] = {100, 100, 1000}; // 10,000,000 cells
const int kEntries = 1000000;

struct Fixture {
    Host host;
    Context ctx;
    Array *array = nullptr;
    std::string path;

    Fixture() {
        path = "/tmp/bench_csv_array_" + std::to_string(getpid()) + ".csv";
        std::vector<Set *> sets;
        for (int d = 0; d < 3; d++) {
            Set *s = ctx.newSet(QD_INT);
            for (int k = 0; k < kSizes[d]; k++) s->add(qdInt(1000 * (d + 1) + k));
            sets.push_back(s);
        }
        array = ctx.newArray(QD_REAL, sets);
        std::mt19937 random(7);
        while (array->entryCount() < kEntries) {
            int at[3] = {(int)(random() % kSizes[0]), (int)(random() % kSizes[1]),
                         (int)(random() % kSizes[2])};
            array->set({at[0], at[1], at[2]}, qdReal((double)(random() % 100000) / 4.0));
        }
    }
    ~Fixture() { std::remove(path.c_str()); }
};

Fixture &fixture() {
    static Fixture f;
    return f;
}

void BM_WriteSparse3D(benchmark::State &state) {
    Fixture &f = fixture();
    if (!f.host.loaded()) {
        state.SkipWithError(f.host.loadError().c_str());
        return;
    }
    for (auto _ : state) {
        // A file opened for writing loads what it holds first: start empty.
        state.PauseTiming();
        std::remove(f.path.c_str());
        state.ResumeTiming();
        int rc = f.host.writeItem(f.ctx, "csv", f.path, "grow;[A1:D1]", f.array->type(), f.array);
        if (rc != 0) {
            state.SkipWithError(f.ctx.allErrors().c_str());
            return;
        }
    }
    state.counters["entries/s"] =
        benchmark::Counter((double)kEntries * state.iterations(), benchmark::Counter::kIsRate);
}

void BM_ReadSparse3D(benchmark::State &state) {
    Fixture &f = fixture();
    if (!f.host.loaded()) {
        state.SkipWithError(f.host.loadError().c_str());
        return;
    }
    std::remove(f.path.c_str());
    if (f.host.writeItem(f.ctx, "csv", f.path, "grow;[A1:D1]", f.array->type(), f.array) != 0) {
        state.SkipWithError(f.ctx.allErrors().c_str());
        return;
    }
    long stored = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto ctx = std::make_unique<Context>();
        Array *read =
            ctx->newArray(QD_REAL, {ctx->newSet(QD_INT), ctx->newSet(QD_INT), ctx->newSet(QD_INT)});
        state.ResumeTiming();
        int counter = 0;
        if (f.host.readItem(*ctx, "csv", f.path, "[]", read->type(), read, &counter) != 0) {
            state.SkipWithError(ctx->allErrors().c_str());
            return;
        }
        stored = read->entryCount();
        state.PauseTiming();
        ctx.reset();
        state.ResumeTiming();
    }
    if (stored != kEntries) state.SkipWithError("entries lost on the way back");
    state.counters["entries/s"] =
        benchmark::Counter((double)kEntries * state.iterations(), benchmark::Counter::kIsRate);
}

BENCHMARK(BM_WriteSparse3D)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ReadSparse3D)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

int main(int argc, char **argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    struct rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    std::printf("peak memory (ru_maxrss): %ld KiB\n", usage.ru_maxrss);
    return 0;
}
