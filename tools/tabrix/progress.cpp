#include "progress.h"

#include <cstdio>
#include <utility>
#include <unistd.h>

namespace cli {

namespace {
const auto kFirstDelay = std::chrono::milliseconds(300);
const auto kRedraw = std::chrono::milliseconds(100);
} // namespace

Progress::Progress(std::string label, long total, bool wanted)
    : _label(std::move(label)), _total(total), _active(wanted && isatty(STDERR_FILENO) == 1),
      _start(std::chrono::steady_clock::now()), _last(_start) {}

Progress::~Progress() { done(); }

std::string Progress::line(const std::string &label, long done, long total) {
    if (total <= 0) return done > 0 ? label + " " + std::to_string(done) : label + " ...";
    long percent = long(100.0 * double(done) / double(total));
    return label + " " + std::to_string(done) + " of " + std::to_string(total) + " (" +
           std::to_string(percent) + "%)";
}

void Progress::update(long done) {
    if (!_active) return;
    auto now = std::chrono::steady_clock::now();
    if (now - _start < kFirstDelay || now - _last < kRedraw) return;
    _last = now;
    draw(done);
}

void Progress::draw(long done) {
    std::string text = line(_label, done, _total);
    // Carriage return, the line, and "erase to end of line".
    std::fprintf(stderr, "\r%s\x1b[K", text.c_str());
    std::fflush(stderr);
    _drawn = true;
}

void Progress::done() {
    if (_drawn) {
        std::fputs("\r\x1b[K", stderr);
        std::fflush(stderr);
        _drawn = false;
    }
}

Busy::Busy(std::string label, bool atOnce) : _label(std::move(label)) {
    if (isatty(STDERR_FILENO) == 1) _thread = std::thread(&Busy::run, this, atOnce);
}

Busy::~Busy() {
    if (!_thread.joinable()) return;
    {
        std::lock_guard<std::mutex> lock(_mutex);
        _stop = true;
    }
    _wake.notify_one();
    _thread.join();
}

std::string Busy::line(const std::string &label, long seconds) {
    return seconds > 0 ? label + " ... " + std::to_string(seconds) + " s" : label + " ...";
}

// Draws at the start or after the first delay, then once a second, and wipes
// the line when told to stop.
void Busy::run(bool atOnce) {
    auto start = std::chrono::steady_clock::now();
    auto next = atOnce ? start : start + kFirstDelay;
    bool drawn = false;
    std::unique_lock<std::mutex> lock(_mutex);
    while (!_wake.wait_until(lock, next, [this] { return _stop; })) {
        auto now = std::chrono::steady_clock::now();
        long seconds = long(std::chrono::duration_cast<std::chrono::seconds>(now - start).count());
        std::fprintf(stderr, "\r%s\x1b[K", line(_label, seconds).c_str());
        std::fflush(stderr);
        drawn = true;
        next = start + std::chrono::seconds(seconds + 1);
    }
    if (drawn) {
        std::fputs("\r\x1b[K", stderr);
        std::fflush(stderr);
    }
}

std::string sizeText(long long bytes) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f MB", double(bytes) / 1e6);
    return text;
}

} // namespace cli
