#include "support/child_measure.h"

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace tabrix::bench {

namespace {

// A field of /proc/self/status in KiB ("VmRSS", "VmHWM"), 0 if unknown.
long statusKiB(const char *field) {
    long v = 0;
    if (FILE *f = std::fopen("/proc/self/status", "r")) {
        char line[256];
        size_t n = std::strlen(field);
        while (std::fgets(line, sizeof line, f))
            if (std::strncmp(line, field, n) == 0 && line[n] == ':') v = std::atol(line + n + 1);
        std::fclose(f);
    }
    return v;
}

// Starts the peak resident memory again from the current one.
void resetPeak() {
    if (FILE *f = std::fopen("/proc/self/clear_refs", "w")) {
        std::fputs("5", f);
        std::fclose(f);
    }
}

double cpuNow() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

} // namespace

Measure measure(const std::function<bool()> &work, int rounds) {
    Measure m;
    int fds[2];
    if (pipe(fds) != 0) return m;
    // Freed memory the child would reuse without growing.
    malloc_trim(0);
    pid_t pid = fork();
    if (pid == 0) {
        close(fds[0]);
        resetPeak();
        long start = statusKiB("VmRSS");
        Measure r;
        r.seconds = r.cpu = 1e30;
        for (int i = 0; i < rounds; ++i) {
            auto wall0 = std::chrono::steady_clock::now();
            double cpu0 = cpuNow();
            if (!work()) {
                r.seconds = r.cpu = -1;
                break;
            }
            std::chrono::duration<double> d = std::chrono::steady_clock::now() - wall0;
            r.seconds = std::min(r.seconds, d.count());
            r.cpu = std::min(r.cpu, cpuNow() - cpu0);
        }
        r.peakKiB = statusKiB("VmHWM") - start;
        ssize_t n = write(fds[1], &r, sizeof r);
        _exit(n == sizeof r ? 0 : 1);
    }
    close(fds[1]);
    if (pid > 0) {
        if (read(fds[0], &m, sizeof m) != sizeof m) m = Measure();
        int status = 0;
        waitpid(pid, &status, 0);
    }
    close(fds[0]);
    return m;
}

std::pair<Measure, Measure> measurePair(const std::function<bool()> &a,
                                        const std::function<bool()> &b, int rounds) {
    Measure best[2];
    const std::function<bool()> *work[2] = {&a, &b};
    for (int i = 0; i < rounds; ++i)
        for (int k = 0; k < 2; ++k) {
            const Measure m = measure(*work[k], 1);
            if (m.seconds < 0) return {Measure(), Measure()};
            Measure &t = best[k];
            t.seconds = t.seconds < 0 ? m.seconds : std::min(t.seconds, m.seconds);
            t.cpu = t.cpu < 0 ? m.cpu : std::min(t.cpu, m.cpu);
            t.peakKiB = std::max(t.peakKiB, m.peakKiB);
        }
    return {best[0], best[1]};
}

} // namespace tabrix::bench
