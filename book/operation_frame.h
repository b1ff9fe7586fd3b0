// The failure frame around a back end, generated from the operation tables.
// FramedBookT<Impl> and FramedSheetT<Impl> are the final classes a book
// hands out: every operation of the table runs the back end's method of the
// same name inside guarded(), so the back end writes plain methods that
// throw tberror.  Impl provides frameMessage(), the message the frame sets.
#ifndef TABRIX_OPERATION_FRAME_H
#define TABRIX_OPERATION_FRAME_H

#include "book/failure_frame.h"
#include "book/operation_table.h"
#include "tabrix/IBookT.h"

#include <utility>

namespace tabrix {

// The neutral result of a failed operation, or nothing for one without a
// result.
template <class R> struct Neutral { R value; };
template <> struct Neutral<void> {};

template <class Message, class R, class Work>
R framed(Message &message, Neutral<R> neutral, Work &&work) {
    return guarded(message, neutral.value, std::forward<Work>(work));
}
template <class Message, class Work> void framed(Message &message, Neutral<void>, Work &&work) {
    guarded(message, std::forward<Work>(work));
}

#define TABRIX_FRAME_OPERATION(R, name, params, args, neutral)                                     \
    R name params override {                                                                       \
        return framed(this->frameMessage(), Neutral<R>{TABRIX_UNPAREN neutral},                    \
                      [&]() -> R { return Impl::name args; });                                     \
    }

template <class Impl> class FramedBookT final : public Impl {
public:
    using C = typename Impl::CharType;
    template <class... A> explicit FramedBookT(A &&...args) : Impl(std::forward<A>(args)...) {}
    TABRIX_BOOK_OPERATIONS(TABRIX_FRAME_OPERATION, TABRIX_FRAME_OPERATION)
};

template <class Impl> class FramedSheetT final : public Impl {
public:
    using C = typename Impl::CharType;
    template <class... A> explicit FramedSheetT(A &&...args) : Impl(std::forward<A>(args)...) {}
    TABRIX_SHEET_OPERATIONS(TABRIX_FRAME_OPERATION)
};

#undef TABRIX_FRAME_OPERATION

} // namespace tabrix

#endif
