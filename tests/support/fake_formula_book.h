// A book for formula tests and fuzz targets: three sheets, external sheet
// entries made on demand (a bounded number), one defined name.
#ifndef TABRIX_TESTS_FAKE_FORMULA_BOOK_H
#define TABRIX_TESTS_FAKE_FORMULA_BOOK_H

#include "book/str_util.h"
#include "book/tberror.h"
#include "formula/formula_book.h"

#include <string>
#include <utility>
#include <vector>

class FakeFormulaBook : public tabrix::FormulaBook {
public:
    std::vector<std::wstring> sheets{L"Sheet1", L"My Sheet", L"it's"};
    std::vector<std::pair<int, int>> refs;

    int sheetIndex(const std::wstring &name) override {
        for (size_t i = 0; i < sheets.size(); ++i)
            if (tabrix::sicmp(sheets[i], name) == 0) return int(i);
        return -1;
    }
    uint16_t sheetRef(int first, int last) override {
        for (size_t i = 0; i < refs.size(); ++i)
            if (refs[i] == std::make_pair(first, last)) return uint16_t(i);
        if (refs.size() >= 0xFFFF) throw tabrix::tberror("too many references to sheets");
        refs.emplace_back(first, last);
        return uint16_t(refs.size() - 1);
    }
    bool sheetRange(uint16_t index, std::wstring &first, std::wstring &last, bool &bad) override {
        bad = index >= refs.size() || refs[index].first < 0 || refs[index].second < 0;
        if (!bad) {
            first = sheets[size_t(refs[index].first)];
            last = sheets[size_t(refs[index].second)];
        }
        return true;
    }
    bool definedName(uint32_t index, std::wstring &name) override {
        if (index != 1) return false;
        name = L"Rate";
        return true;
    }
};

#endif
