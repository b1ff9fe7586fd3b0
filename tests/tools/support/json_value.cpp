#include "support/json_value.h"

#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace clitest {

namespace {

class Parser {
public:
    explicit Parser(const std::string &t) : _t(t) {}

    JsonValue document() {
        JsonValue v = value();
        space();
        if (_at != _t.size()) fail("text after the value");
        return v;
    }

private:
    [[noreturn]] void fail(const std::string &why) {
        throw std::runtime_error(why + " at offset " + std::to_string(_at));
    }
    void space() {
        while (_at < _t.size() && std::strchr(" \t\r\n", _t[_at])) ++_at;
    }
    bool take(const char *word) {
        size_t n = std::strlen(word);
        if (_t.compare(_at, n, word) != 0) return false;
        _at += n;
        return true;
    }
    void expect(char c) {
        space();
        if (_at >= _t.size() || _t[_at] != c) fail(std::string("expected '") + c + "'");
        ++_at;
    }

    JsonValue value() {
        space();
        if (_at >= _t.size()) fail("unexpected end");
        JsonValue v;
        char c = _t[_at];
        if (c == '{') {
            v.type = JsonValue::Object;
            ++_at;
            space();
            if (_at < _t.size() && _t[_at] == '}') {
                ++_at;
                return v;
            }
            for (;;) {
                space();
                if (_at >= _t.size() || _t[_at] != '"') fail("expected a key");
                std::string key = string();
                expect(':');
                v.members[key] = value();
                space();
                if (_at < _t.size() && _t[_at] == ',') {
                    ++_at;
                    continue;
                }
                expect('}');
                return v;
            }
        }
        if (c == '[') {
            v.type = JsonValue::Array;
            ++_at;
            space();
            if (_at < _t.size() && _t[_at] == ']') {
                ++_at;
                return v;
            }
            for (;;) {
                v.items.push_back(value());
                space();
                if (_at < _t.size() && _t[_at] == ',') {
                    ++_at;
                    continue;
                }
                expect(']');
                return v;
            }
        }
        if (c == '"') {
            v.type = JsonValue::String;
            v.text = string();
            return v;
        }
        if (take("true") || take("false")) {
            v.type = JsonValue::Bool;
            v.flag = _t[_at - 1] == 'e' && _t[_at - 2] == 'u';
            return v;
        }
        if (take("null")) return v;
        return number();
    }

    JsonValue number() {
        size_t start = _at;
        if (_at < _t.size() && _t[_at] == '-') ++_at;
        while (_at < _t.size() && std::strchr("0123456789.eE+-", _t[_at])) ++_at;
        if (_at == start) fail("unexpected character");
        JsonValue v;
        v.type = JsonValue::Number;
        std::string text = _t.substr(start, _at - start);
        char *end = nullptr;
        v.number = std::strtod(text.c_str(), &end);
        if (*end != 0) fail("bad number '" + text + "'");
        return v;
    }

    unsigned hex4() {
        if (_at + 4 > _t.size()) fail("short \\u escape");
        unsigned u = 0;
        for (int i = 0; i < 4; ++i) {
            char c = _t[_at++];
            u <<= 4;
            if (c >= '0' && c <= '9')
                u |= unsigned(c - '0');
            else if (c >= 'a' && c <= 'f')
                u |= unsigned(c - 'a' + 10);
            else if (c >= 'A' && c <= 'F')
                u |= unsigned(c - 'A' + 10);
            else
                fail("bad \\u escape");
        }
        return u;
    }

    static void utf8(std::string &out, unsigned u) {
        if (u < 0x80) {
            out += char(u);
        } else if (u < 0x800) {
            out += char(0xC0 | (u >> 6));
            out += char(0x80 | (u & 0x3F));
        } else if (u < 0x10000) {
            out += char(0xE0 | (u >> 12));
            out += char(0x80 | ((u >> 6) & 0x3F));
            out += char(0x80 | (u & 0x3F));
        } else {
            out += char(0xF0 | (u >> 18));
            out += char(0x80 | ((u >> 12) & 0x3F));
            out += char(0x80 | ((u >> 6) & 0x3F));
            out += char(0x80 | (u & 0x3F));
        }
    }

    std::string string() {
        ++_at; // the opening quote
        std::string out;
        for (;;) {
            if (_at >= _t.size()) fail("string not closed");
            char c = _t[_at++];
            if (c == '"') return out;
            if (static_cast<unsigned char>(c) < 0x20) fail("control character in a string");
            if (c != '\\') {
                out += c;
                continue;
            }
            if (_at >= _t.size()) fail("string not closed");
            char e = _t[_at++];
            const char *from = "\"\\/bfnrt", *to = "\"\\/\b\f\n\r\t";
            const char *hit = std::strchr(from, e);
            if (e != 0 && hit) {
                out += to[hit - from];
            } else if (e == 'u') {
                unsigned u = hex4();
                if (u >= 0xD800 && u < 0xDC00 && take("\\u")) {
                    unsigned low = hex4();
                    u = 0x10000 + ((u - 0xD800) << 10) + (low - 0xDC00);
                }
                utf8(out, u);
            } else {
                fail("bad escape");
            }
        }
    }

    const std::string &_t;
    size_t _at = 0;
};

} // namespace

const JsonValue &JsonValue::operator[](const std::string &key) const {
    static const JsonValue none;
    auto it = members.find(key);
    return it == members.end() ? none : it->second;
}

bool parseJson(const std::string &text, JsonValue &out, std::string &error) {
    try {
        out = Parser(text).document();
        return true;
    } catch (const std::exception &e) {
        error = e.what();
        return false;
    }
}

} // namespace clitest
