// A small json reader for checking the tool's output: the whole grammar,
// numbers as double, \u escapes to UTF-8 (surrogate pairs joined).
#ifndef TABRIX_TEST_JSON_VALUE_H
#define TABRIX_TEST_JSON_VALUE_H

#include <map>
#include <string>
#include <vector>

namespace clitest {

struct JsonValue {
    enum Type { Null, Bool, Number, String, Array, Object } type = Null;
    bool flag = false;
    double number = 0.0;
    std::string text;
    std::vector<JsonValue> items;
    std::map<std::string, JsonValue> members;

    bool has(const std::string &key) const { return members.count(key) != 0; }
    // The member `key`; a null value when there is none.
    const JsonValue &operator[](const std::string &key) const;
};

// Parses a whole document; false with `error` set when it is not json.
bool parseJson(const std::string &text, JsonValue &out, std::string &error);

} // namespace clitest

#endif
