// A test double of ISheetT<char> that writes each call, with its arguments,
// into a log, and answers values the test sets beforehand.  Int and bool out
// pointers receive outInt / outBool.
#ifndef TABRIX_TEST_RECORDING_SHEET_H
#define TABRIX_TEST_RECORDING_SHEET_H

#include <sstream>
#include <string>
#include <type_traits>

#include "book/operation_table.h"
#include "tabrix/ISheetT.h"

namespace tabrix {

class RecordingSheet : public ISheetT<char> {
public:
    using C = char;

    std::string log; // the last call, e.g. "writeBool(1,2,true,null)"
    bool answerBool = false;
    int answerInt = 0;
    double answerDouble = 0.0;
    const char *answerText = nullptr;
    void *answerPointer = nullptr;
    const void *marker = nullptr; // a pointer argument equal to it logs as "M"
    int outInt = 0;
    bool outBool = false;

private:
    void put(std::ostream &o, int v) { o << v; }
    void put(std::ostream &o, double v) { o << v; }
    void put(std::ostream &o, bool v) { o << (v ? "true" : "false"); }
    void put(std::ostream &o, const char *v) {
        if (v)
            o << '"' << v << '"';
        else
            o << "null";
    }
    void put(std::ostream &o, int *v) {
        putPointer(o, v);
        if (v) *v = outInt;
    }
    void put(std::ostream &o, bool *v) {
        putPointer(o, v);
        if (v) *v = outBool;
    }
    template <class T> void put(std::ostream &o, T v) {
        if constexpr (std::is_enum_v<T>)
            o << static_cast<int>(v);
        else
            putPointer(o, v);
    }
    void putPointer(std::ostream &o, const void *p) {
        o << (p == nullptr ? "null" : p == marker ? "M" : "p");
    }
    template <class... A> void record(const char *name, A... args) {
        std::ostringstream o;
        o << name << '(';
        int i = 0;
        ((o << (i++ ? "," : ""), put(o, args)), ...);
        o << ')';
        log = o.str();
    }
    template <class R, class... A> R call(const char *name, A... args) {
        record(name, args...);
        if constexpr (std::is_void_v<R>)
            return;
        else if constexpr (std::is_same_v<R, bool>)
            return answerBool;
        else if constexpr (std::is_same_v<R, int>)
            return answerInt;
        else if constexpr (std::is_same_v<R, double>)
            return answerDouble;
        else if constexpr (std::is_enum_v<R>)
            return static_cast<R>(answerInt);
        else if constexpr (std::is_same_v<R, const char *>)
            return answerText;
        else
            return static_cast<R>(answerPointer);
    }

    // The call of one operation: named<R>("op")(args...).
    template <class R> auto named(const char *name) {
        return [this, name](auto... args) -> R { return call<R>(name, args...); };
    }

public:
#define TABRIX_RECORD_OPERATION(R, name, params, args, neutral)                                    \
    R name params override { return named<R>(#name) args; }
    TABRIX_SHEET_OPERATIONS(TABRIX_RECORD_OPERATION)
#undef TABRIX_RECORD_OPERATION
};

} // namespace tabrix

#endif
