// Throughput of the "csv" store: a 50 MB file of numbers, texts and booleans
// is opened for writing through the loaded module (so it is read into the
// store) and closed (so it is written back).  Prints MB/s for each half and
// the heap held per stored cell.
#include "refhost.h"
#include "sheetfile.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <ctime>

namespace {

const size_t kTargetBytes = 50u << 20;
const int kColumns = 12;

// Writes the input file and answers the number of non-empty fields.
long long makeInput(const std::string &path) {
    FILE *f = fopen(path.c_str(), "wb");
    if (!f) return -1;
    long long cells = 0;
    size_t bytes = 0;
    unsigned seed = 12345;
    char line[1024];
    for (long row = 0; bytes < kTargetBytes; ++row) {
        int n = 0;
        for (int c = 0; c < kColumns; ++c) {
            seed = seed * 1103515245u + 12345u;
            unsigned r = seed >> 8;
            const char *sep = c + 1 < kColumns ? "," : "\n";
            switch (c % 6) {
            case 0: n += snprintf(line + n, sizeof line - n, "%ld%s", row, sep); break;
            case 1:
                n += snprintf(line + n, sizeof line - n, "%u.%03u%s", r % 100000, r % 1000, sep);
                break;
            case 2: n += snprintf(line + n, sizeof line - n, "item%u%s", r % 1000000, sep); break;
            case 3:
                n += snprintf(line + n, sizeof line - n, "%s%s", (r & 1) ? "TRUE" : "FALSE", sep);
                break;
            case 4:
                n += snprintf(line + n, sizeof line - n, "\"a, \"\"q\"\" %u\"%s", r % 1000, sep);
                break;
            default: n += snprintf(line + n, sizeof line - n, "-%u.5e-3%s", r % 10000, sep); break;
            }
            ++cells;
        }
        fwrite(line, 1, (size_t)n, f);
        bytes += (size_t)n;
    }
    fclose(f);
    return cells;
}

double seconds(std::chrono::steady_clock::time_point a, std::chrono::steady_clock::time_point b) {
    return std::chrono::duration<double>(b - a).count();
}

// CPU time of the process, which a busy machine disturbs less than the clock.
double cpuSeconds() {
    timespec ts;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return ts.tv_sec + ts.tv_nsec / 1e9;
}

long peakRssKiB() {
    rusage ru;
    getrusage(RUSAGE_SELF, &ru);
    return ru.ru_maxrss;
}

long fileSize(const std::string &path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 ? (long)st.st_size : -1;
}

} // namespace

int main() {
    const char *tmp = getenv("TMPDIR");
    std::string dir = tmp && *tmp ? tmp : "/tmp";
    std::string name = "qdsheet_csv_store_bench.csv";
    std::string path = dir + "/" + name;
    long long cells = makeInput(path);
    if (cells < 0) {
        fprintf(stderr, "cannot write %s\n", path.c_str());
        return 1;
    }
    long inBytes = fileSize(path);

    qdhost::Host host;
    if (!host.loaded()) {
        fprintf(stderr, "module not loaded: %s\n", host.loadError().c_str());
        return 1;
    }
    qdhost::Context ctx(dir);

    size_t heapBefore = mallinfo2().uordblks;
    long peakBefore = peakRssKiB();
    double c0 = cpuSeconds();
    auto t0 = std::chrono::steady_clock::now();
    void *file = host.open(ctx, "csv", name, true);
    auto t1 = std::chrono::steady_clock::now();
    double c1 = cpuSeconds();
    if (!file) {
        fprintf(stderr, "open failed: %s\n", ctx.allErrors().c_str());
        return 1;
    }
    size_t heapHeld = mallinfo2().uordblks - heapBefore;
    long peakGrowth = peakRssKiB() - peakBefore;
    double c2 = cpuSeconds();
    auto t2 = std::chrono::steady_clock::now();
    int rc = host.close(ctx, "csv", file);
    auto t3 = std::chrono::steady_clock::now();
    double c3 = cpuSeconds();
    long outBytes = fileSize(path);
    remove(path.c_str());
    if (rc != 0) {
        fprintf(stderr, "close failed\n");
        return 1;
    }

    double readRate = inBytes / 1048576.0 / seconds(t0, t1);
    double writeRate = outBytes / 1048576.0 / seconds(t2, t3);
    printf("csv store: %lld cells, %.1f MB in, %.1f MB out\n", cells, inBytes / 1048576.0,
           outBytes / 1048576.0);
    printf("read  (open for writing): %8.1f MB/s, %8.1f MB/s of CPU time  (target 100)\n", readRate,
           inBytes / 1048576.0 / (c1 - c0));
    printf("write (last close):       %8.1f MB/s, %8.1f MB/s of CPU time  (target 50)\n", writeRate,
           outBytes / 1048576.0 / (c3 - c2));
    printf("heap held per stored cell: %.1f bytes; peak resident growth per cell: %.1f bytes\n",
           (double)heapHeld / (double)cells, peakGrowth * 1024.0 / (double)cells);
    return 0;
}
