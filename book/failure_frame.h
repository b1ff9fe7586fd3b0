// The frame every public operation of a book, sheet, format or font runs in.
// The message is set to "ok" first, so that the work may still leave its own
// text (a warning, or a wrong argument reported without an exception); a
// standard exception leaves its `what` text, anything else "general
// failure", and the operation answers its neutral value.
#ifndef TABRIX_FAILURE_FRAME_H
#define TABRIX_FAILURE_FRAME_H

#include <exception>

namespace tabrix {

extern const char *const kGeneralFailure;

// Message is anything with assign(const char*), e.g. XString.
template <class Message, class R, class Work>
R guarded(Message &message, R neutral, Work &&work) {
    message.assign("ok");
    try {
        return work();
    } catch (const std::exception &e) {
        message.assign(e.what());
    } catch (...) {
        message.assign(kGeneralFailure);
    }
    return neutral;
}

// The same for operations without a result.
template <class Message, class Work> void guarded(Message &message, Work &&work) {
    message.assign("ok");
    try {
        work();
    } catch (const std::exception &e) {
        message.assign(e.what());
    } catch (...) {
        message.assign(kGeneralFailure);
    }
}

} // namespace tabrix

#endif
