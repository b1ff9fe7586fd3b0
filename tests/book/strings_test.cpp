// Text crossing the library's border: UTF-8 and C-locale conversions, the
// two-sided XString, the text buffers and the failure frame.
#include <clocale>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "book/char_buffer.h"
#include "book/encoding.h"
#include "book/failure_frame.h"
#include "book/string_keeper.h"
#include "book/tberror.h"
#include "book/text_result.h"
#include "book/xstring.h"

using namespace tabrix;

namespace {

const char *const kWarning = "warning: some characters have not been converted properly";

// Runs a test body in the "C" locale and restores the previous one.
class CLocale {
public:
    CLocale() : _saved(std::setlocale(LC_ALL, nullptr)) { std::setlocale(LC_ALL, "C"); }
    ~CLocale() { std::setlocale(LC_ALL, _saved.c_str()); }

private:
    std::string _saved;
};

TEST(Utf8, InvalidInputIsReportedThroughTheFrame) {
    struct Case {
        std::string utf8;
        const char *message;
    };
    const Case cases[] = {
        {"\xFF", "Invalid UTF-8"},
        {"ab\x80", "Invalid UTF-8"},
        {"\xC0\xAF", "Invalid UTF-8"},          // overlong
        {"\xED\xA0\x80", "Invalid code point"}, // an encoded surrogate
        {"\xC3", "Not enough space"},           // cut short
        {"\xF0\x9F\x98", "Not enough space"},
    };
    for (const Case &c : cases) {
        XString message, x;
        x.assign(c.utf8.c_str());
        const wchar_t *w = guarded(message, static_cast<const wchar_t *>(nullptr),
                                   [&] { return x.c_str<wchar_t>(true); });
        EXPECT_EQ(w, nullptr);
        EXPECT_STREQ(message.c_str<char>(true), c.message) << c.utf8;
    }
    // a lone surrogate can't be written as UTF-8
    for (wchar_t lone : {wchar_t(0xD800), wchar_t(0xDC00)}) {
        XString message, x;
        const wchar_t text[] = {L'a', lone, 0};
        x.assign(text);
        guarded(message, [&] { x.c_str<char>(true); });
        EXPECT_STREQ(message.c_str<char>(true), "Invalid UTF-16");
    }
}

TEST(CLocaleFallback, UnconvertibleCharactersBecomeQuestionMarks) {
    CLocale c;
    struct Case {
        std::wstring wide;
        const char *narrow;
        bool failed;
    };
    const Case cases[] = {
        {L"plain", "plain", false},
        {L"\u00e9t\u00e9", "?t?", true},
        {L"", "", false},
    };
    for (const Case &k : cases) {
        XString x;
        x.assign(k.wide.c_str());
        EXPECT_STREQ(x.c_str<char>(false), k.narrow);
        EXPECT_EQ(x.conversionFailed(), k.failed);

        StringKeeper<char> keeper;
        EXPECT_EQ(keeper.assign(k.wide.c_str(), false), !k.failed);
        EXPECT_STREQ(keeper.c_str(), k.narrow);

        XString buffer, message;
        EXPECT_STREQ(textResult<char>(buffer, message, k.wide.c_str(), false), k.narrow);
        EXPECT_STREQ(message.c_str<char>(false), k.failed ? kWarning : "ok");
    }
}

TEST(XStringSides, AssignMarksTheOtherSideStale) {
    XString x;
    x.assign("one");
    EXPECT_STREQ(x.c_str<wchar_t>(true), L"one");
    x.assign(L"two");
    EXPECT_STREQ(x.c_str<char>(true), "two");
    x.assign(static_cast<const char *>(nullptr)); // changes nothing
    x.assign(static_cast<const wchar_t *>(nullptr));
    EXPECT_STREQ(x.c_str<char>(true), "two");
    EXPECT_STREQ(x.c_str<wchar_t>(true), L"two");
    x.clear();
    EXPECT_STREQ(x.c_str<char>(true), "");
    EXPECT_STREQ(x.c_str<wchar_t>(true), L"");

    XString buffer, message;
    message.assign("old");
    EXPECT_EQ(textResult<char>(buffer, message, nullptr, true), nullptr);
    EXPECT_STREQ(message.c_str<char>(true), "old");
    EXPECT_STREQ(textResult<wchar_t>(buffer, message, L"w", true), L"w");
    EXPECT_STREQ(message.c_str<char>(true), "ok");
}

TEST(Buffers, InlineUpTo999ThenHeapWithDoubling) {
    struct Case {
        size_t length;
        bool heap;
        size_t capacity;
    };
    const Case cases[] = {
        {0, false, 999}, {999, false, 999}, {1000, true, 1998}, {5000, true, 5000}};
    for (const Case &c : cases) {
        CharBuffer<wchar_t> b;
        std::wstring text(c.length, L'x');
        b.assign(text.c_str());
        EXPECT_EQ(b.onHeap(), c.heap) << c.length;
        EXPECT_EQ(b.capacity(), c.capacity) << c.length;
        EXPECT_EQ(std::wstring(b.c_str()), text);
    }
    CharBuffer<char> b;
    b.append("ab");
    std::string big(1500, 'y');
    b.append(big.c_str());
    b.append("z");
    EXPECT_EQ(std::string(b.c_str()), "ab" + big + "z");
    EXPECT_EQ(b.length(), 1503u);
    b.resize(1505);
    EXPECT_EQ(b[1504], 0);
    b.resize(2);
    EXPECT_STREQ(b.c_str(), "ab");
    b.clean();
    EXPECT_FALSE(b.onHeap());
    EXPECT_STREQ(b.c_str(), "");

    StringKeeper<char> keeper;
    keeper.assign(L"x", true);
    keeper.assign(nullptr, true);
    EXPECT_STREQ(keeper.c_str(), "");
}

TEST(Frame, MessagesAndNeutralValues) {
    XString m;
    auto text = [&] { return std::string(m.c_str<char>(true)); };
    m.assign("previous");
    EXPECT_EQ(guarded(m, -1, [] { return 5; }), 5);
    EXPECT_EQ(text(), "ok");
    EXPECT_EQ(guarded(m, -1, []() -> int { throw tberror("range is wrong"); }), -1);
    EXPECT_EQ(text(), "range is wrong");
    EXPECT_EQ(guarded(m, 2.5, []() -> double { throw std::bad_alloc(); }), 2.5);
    EXPECT_EQ(text(), "std::bad_alloc");
    EXPECT_FALSE(guarded(m, false, []() -> bool { throw 42; }));
    EXPECT_EQ(text(), "general failure");
    // the work may leave its own message on the way out
    EXPECT_FALSE(guarded(m, true, [&] {
        m.assign("this cell doesn't contain a number");
        return false;
    }));
    EXPECT_EQ(text(), "this cell doesn't contain a number");
    guarded(m, [] { throw "text"; });
    EXPECT_EQ(text(), "general failure");
    guarded(m, [] {});
    EXPECT_EQ(text(), "ok");
}

} // namespace
