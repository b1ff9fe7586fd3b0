// A progress line on stderr for long work, shown only when stderr is a
// terminal: "dumping sheet 'Data': row 12000 of 65536 (18%)", redrawn in place at
// most ten times a second and wiped when the work is done.
#ifndef TABRIX_CLI_PROGRESS_H
#define TABRIX_CLI_PROGRESS_H

#include <chrono>
#include <string>

namespace cli {

class Progress {
public:
    // `total` steps (0 when unknown); `wanted` false keeps it silent, as
    // for work too small to bother.
    Progress(std::string label, long total, bool wanted = true);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    // Draws the line now, without waiting for the first step.
    void show();
    // Step `done` of the total; redraws when the last draw is old enough
    // and the work has run for a moment already.
    void update(long done);
    // Wipes the line.
    void done();

    // The line for a step: "label 5 of 10 (50%)"; with no total "label 5",
    // or "label ..." before the first step.
    static std::string line(const std::string &label, long done, long total);

private:
    void draw(long done);

    std::string _label;
    long _total;
    bool _active;
    bool _drawn = false;
    std::chrono::steady_clock::time_point _start, _last;
};

} // namespace cli

#endif
