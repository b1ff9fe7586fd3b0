// A progress line on stderr for long work, shown only when stderr is a
// terminal: "dumping sheet 'Data': row 12000 of 65536 (18%)", redrawn in place at
// most ten times a second and wiped when the work is done.
#ifndef TABRIX_CLI_PROGRESS_H
#define TABRIX_CLI_PROGRESS_H

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace cli {

class Progress {
public:
    // `total` steps (0 when unknown); `wanted` false keeps it silent, as
    // for work too small to bother.
    Progress(std::string label, long total, bool wanted = true);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

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

// A progress line for one long call that reports no steps, such as a book's
// load or save: while the call runs, a thread of the tool redraws
// "loading big.xls (48.2 MB) ... 3 s" once a second, on a terminal only.
// It stands around the book interface, so it serves every kind of book.
class Busy {
public:
    // `atOnce` draws the line at the start (work known to be long, such as
    // a large file); otherwise it first shows once the call has taken a
    // moment, so quick calls print nothing.
    Busy(std::string label, bool atOnce);
    ~Busy();
    Busy(const Busy &) = delete;
    Busy &operator=(const Busy &) = delete;

    // "label ...", and with whole seconds gone "label ... 3 s".
    static std::string line(const std::string &label, long seconds);

private:
    void run(bool atOnce);

    std::string _label;
    std::mutex _mutex;
    std::condition_variable _wake;
    bool _stop = false;
    std::thread _thread;
};

// "48.2 MB" for a byte count.
std::string sizeText(long long bytes);

} // namespace cli

#endif
