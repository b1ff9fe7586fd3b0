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
// The text of an operation a back end does not have.
extern const char *const kNotSupportedYet;

// Any message resets to "ok" by assign; a message type may offer a
// cheaper markOk of its own (XString does).
template <class Message> void markOk(Message &message) { message.assign("ok"); }

// Message is anything with assign(const char*), e.g. XString.
template <class Message, class R, class Work> R guarded(Message &message, R neutral, Work &&work) {
    markOk(message);
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
    markOk(message);
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
