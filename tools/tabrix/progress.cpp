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

void Progress::show() {
    if (_active) draw(0);
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

} // namespace cli
