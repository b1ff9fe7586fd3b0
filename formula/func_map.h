// FuncMap: the worksheet functions a token string can call — name, number,
// which arguments go by reference and, for functions of fixed arity, how
// many arguments the call token stands for.  The table never changes after
// construction, so one instance serves every book.
#ifndef TABRIX_FORMULA_FUNC_MAP_H
#define TABRIX_FORMULA_FUNC_MAP_H

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace tabrix {

class FuncMap {
public:
    struct FI {
        uint16_t funcCode = 255;
        uint32_t refMask = 0;
        uint8_t fixedArgs = 0;
    };
    // Every argument by reference, and every one but the first.
    static constexpr uint32_t kAllArgs = 0x3FFFFFFF;
    static constexpr uint32_t kAllButFirst = 0x3FFFFFFE;
    // The number no function has; the answer of a failed look-up.
    static constexpr uint16_t kNotFound = 255;
    static constexpr int kRows = 371;

    FuncMap();
    static const FuncMap &instance();

    // The name of function number `code`, "?" for an unknown number.
    // `fixedArgs`, when given, is zeroed and then set from the row.
    const wchar_t *name(unsigned code, int *fixedArgs = nullptr) const;
    // The number of a name (upper case, exact), kNotFound when unknown.
    uint16_t code(std::wstring_view name) const;
    // Number in the low 32 bits, reference mask in the high 32 bits; an
    // unknown name gives kNotFound and a zero mask.
    uint64_t codeRef(std::wstring_view name) const;
    // The row of a name, or null.
    const FI *find(std::wstring_view name) const;
    size_t size() const { return _byName.size(); }

private:
    static constexpr size_t kHashSize = 1024;
    static size_t hash(std::wstring_view name);

    std::map<std::wstring, FI, std::less<>> _byName;
    // Open addressing over the rows, by name: the look-up path.
    const std::pair<const std::wstring, FI> *_hash[kHashSize] = {};
    // Rows by function number: name and row, null for numbers without one.
    const wchar_t *_names[512] = {};
    FI _rows[512];
};

// Counts the arguments of a call in formula text that begins at the call's
// opening parenthesis (blanks may come first).  (1,2) counts 2, () 0,
// (1,) 2, (,1) 1, ((1,2),3) 2.  Fails with "error: function name without
// open parenthesis" when something else comes before the parenthesis, and
// with "error: function parentheses not found" when the call isn't closed.
int getFuncParamCount(std::wstring_view text);

} // namespace tabrix

#endif
