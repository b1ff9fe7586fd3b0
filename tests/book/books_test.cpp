// XMLBookProxy against a test double of its implementations, and the books
// the creation entry points hand out.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "book/pending_book.h"
#include "book/tberror.h"
#include "ooxml/xml_book_proxy.h"
#include "tabrix.h"

using namespace tabrix;

namespace {

struct Script {
    std::vector<std::string> attempts; // "normal" / "strict", in call order
    bool normalLoads = false;
    bool strictLoads = false;
    bool throwOnLoad = false;
    bool framed = true;
    int live = 0;
    int created = 0;
};

// An implementation of one form that answers load as the script says and
// leaves a message naming its form.
class FakeBook : public PendingBookT<char> {
public:
    FakeBook(Script &script, bool strict)
        : PendingBookT<char>(strict ? "strict failed" : "normal failed"), _script(script),
          _strict(strict) {
        ++_script.live;
    }
    ~FakeBook() override { --_script.live; }
    bool load(const char *filename) override {
        _script.attempts.push_back(std::string(_strict ? "strict:" : "normal:") + filename);
        if (_script.throwOnLoad) throw tberror("thrown");
        if (_strict ? _script.strictLoads : _script.normalLoads) return true;
        return PendingBookT<char>::load(filename);
    }
    bool loadRaw(const char *, unsigned) override {
        _script.attempts.push_back(_strict ? "strict:raw" : "normal:raw");
        return false;
    }
    bool strict() const { return _strict; }

private:
    Script &_script;
    bool _strict;
};

class FakeFactory : public XMLBookFactory<char> {
public:
    explicit FakeFactory(Script &script) : _script(script) {}
    IBookT<char> *create(bool strict) override {
        ++_script.created;
        if (!_script.framed) return new FakeBook(_script, strict);
        return new FramedBookT<FakeBook>(_script, strict);
    }
    bool isNormal(IBookT<char> *book) override {
        auto *fake = dynamic_cast<FakeBook *>(book);
        return fake && !fake->strict();
    }

private:
    Script &_script;
};

TEST(XMLBookProxyTest, LoadTriesTheOtherFormOnceAndStaysInIt) {
    struct Case {
        bool startStrict, normalLoads, strictLoads;
        std::vector<std::string> attempts;
        bool result, endsNormal;
        const char *message;
    };
    const Case cases[] = {
        {false, true, false, {"normal:f"}, true, true, "ok"},
        {false, false, true, {"normal:f", "strict:f"}, true, false, "ok"},
        {false, false, false, {"normal:f", "strict:f"}, false, false, "strict failed"},
        {true, false, false, {"strict:f", "normal:f"}, false, true, "normal failed"},
        {true, true, false, {"strict:f", "normal:f"}, true, true, "ok"},
        {true, false, true, {"strict:f"}, true, false, "ok"},
    };
    for (const Case &c : cases) {
        Script script;
        script.normalLoads = c.normalLoads;
        script.strictLoads = c.strictLoads;
        FakeFactory factory(script);
        auto *proxy = new XMLBookProxy<char>(factory);
        EXPECT_TRUE(proxy->isNormalMode());
        if (c.startStrict) proxy->switchToStrictMode();
        script.attempts.clear();
        proxy->setLocale("UTF-8");
        EXPECT_EQ(proxy->load("f"), c.result);
        EXPECT_EQ(script.attempts, c.attempts);
        EXPECT_EQ(proxy->isNormalMode(), c.endsNormal);
        if (!c.result) {
            EXPECT_STREQ(proxy->errorMessage(), c.message);
        }
        EXPECT_EQ(script.live, 1); // a switch released the old implementation
        proxy->release();
        EXPECT_EQ(script.live, 0);
    }
}

TEST(XMLBookProxyTest, AnExceptionIsSwallowedAndLoadRawDoesNotRetry) {
    Script script;
    script.framed = false; // an implementation outside the failure frame
    FakeFactory factory(script);
    XMLBookProxy<char> proxy(factory);
    script.throwOnLoad = true;
    EXPECT_FALSE(proxy.load("f"));
    EXPECT_EQ(script.attempts, std::vector<std::string>{"normal:f"});

    script.attempts.clear();
    EXPECT_FALSE(proxy.loadRaw("x", 1));
    EXPECT_EQ(script.attempts, std::vector<std::string>{"normal:raw"});
    EXPECT_TRUE(proxy.isNormalMode());
}

// The wide twins of both kinds: an empty book's answers, a sheet name
// beyond the first plane, and a refused load.
TEST(CreatedBooks, WideBooksStartFresh) {
    for (void *made : {tbCreateBookW(), tbCreateXMLBookW()}) {
        auto *book = static_cast<IBookT<wchar_t> *>(made);
        ASSERT_NE(book, nullptr);
        EXPECT_EQ(book->sheetCount(), 0);
        EXPECT_EQ(book->getSheet(0), nullptr);
        EXPECT_STREQ(book->errorMessage(), L"index is out of range");
        ISheetT<wchar_t> *sheet = book->addSheet(L"\u0391\U0001F600", nullptr);
        ASSERT_NE(sheet, nullptr);
        EXPECT_STREQ(sheet->name(), L"\u0391\U0001F600");
        EXPECT_FALSE(book->loadRaw("x", 1));
        EXPECT_STRNE(book->errorMessage(), L"ok");
        book->release();
    }
}

} // namespace
