// Runs a piece of work in a child process, so that its time and peak
// memory are its own and not mixed with what the benchmark made before.
#pragma once

#include <functional>
#include <utility>

namespace tabrix::bench {

struct Measure {
    double seconds = -1; // the best round's wall time; below 0 when a round failed
    double cpu = -1;     // the best round's processor time (all threads)
    long peakKiB = 0;    // the peak resident memory above the child's start
};

// The best of `rounds` runs of `work` in one child; a failing run stops all.
Measure measure(const std::function<bool()> &work, int rounds = 3);

// Two pieces of work measured in turns, one round a child each, so that a
// busy spell of the machine falls on both alike; the best round of each.
std::pair<Measure, Measure> measurePair(const std::function<bool()> &a,
                                        const std::function<bool()> &b, int rounds = 5);

} // namespace tabrix::bench
