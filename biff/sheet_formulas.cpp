// SheetImplT: formula cells — writing text as tokens, printing tokens back
// as text (a shared formula relative to the reading cell), and the book's
// side of three-dimensional references.
#include "biff/sheet_frame.h"

#include "biff/sheet_names.h"
#include "book/str_util.h"
#include "formula/formula_parser.h"
#include "formula/formula_printer.h"
#include "formula/xml_formula.h"

#include <algorithm>

namespace tabrix {

namespace {

// The book as the formula code sees it: sheets by name, the external sheet
// entries of the self-reference, defined names.
template <class C> class OwnerFormulaBook : public FormulaBook {
public:
    explicit OwnerFormulaBook(ISheetOwner<C> &owner) : _owner(owner) {}

    int sheetIndex(const std::wstring &name) override {
        for (int i = 0; i < _owner.sheetCount(); ++i) {
            SheetImplT<C> *s = _owner.sheetAt(i);
            if (s && sicmp(s->wideName(), name) == 0) return i;
        }
        return -1;
    }

    uint16_t sheetRef(int first, int last) override {
        SheetNames names(_owner.names(), _owner.supBooks(), _owner.pool(), 0, _owner.sheetCount());
        return names.sheetRef(first, last, true);
    }

    bool sheetRange(uint16_t index, std::wstring &first, std::wstring &last, bool &bad) override {
        std::vector<SupBookBlock> *books = supBooks();
        if (!books || books->empty()) return false;
        const SupBookBlock *ext = SheetNames::externSheetBlock(*books);
        bad = true;
        if (!ext || index >= ext->externSheet.rgXTI.size()) return true;
        const XTI &x = ext->externSheet.rgXTI[index];
        if (x.iSupBook >= books->size() || !(*books)[x.iSupBook].isSelfRef()) return true;
        SheetImplT<C> *a = _owner.sheetAt(x.itabFirst), *b = _owner.sheetAt(x.itabLast);
        if (!a || !b) return true;
        first = a->wideName();
        last = b->wideName();
        bad = false;
        return true;
    }

    bool definedName(uint32_t index, std::wstring &name) override {
        try {
            std::vector<Lbl> &names = _owner.names();
            if (index == 0 || index > names.size()) return false;
            name = names[index - 1].nameText();
            return true;
        } catch (const tberror &) {
            return false;
        }
    }

private:
    std::vector<SupBookBlock> *supBooks() {
        try {
            return &_owner.supBooks();
        } catch (const tberror &) {
            return nullptr;
        }
    }
    ISheetOwner<C> &_owner;
};

FormulaParser &parser() {
    static thread_local FormulaParser p;
    return p;
}

FormulaPrinter &printer() {
    static thread_local FormulaPrinter p;
    return p;
}

// Offsets in a shared formula record: RefU, reserved byte, use count, then
// the token count and the tokens.
const size_t kShrFmlaCce = 8;

} // namespace

template <class C> const C *SheetImplT<C>::readFormula(int row, int col, IFormatT<C> **format) {
    _wideResult = L"?";
    const uint32_t code = lookup(row, col, format);
    if (!SheetIndex::exists(code) || SheetIndex::kind(code) != SheetIndex::kFormula) {
        fail("cell doesn't contain a formula");
        return nullptr;
    }
    const FormulaBlock &block = _formulas[SheetIndex::position(code)];
    OwnerFormulaBook<C> book(*_owner);
    int ar = 0, ac = 0;
    uint32_t anchor = 0;
    if (block.formula.isExp(&ar, &ac) && ar < SheetIndex::kRows && ac < SheetIndex::kCols &&
        SheetIndex::exists(anchor = codeAt(ar, ac)) &&
        SheetIndex::kind(anchor) == SheetIndex::kFormula) {
        // A shared formula, printed relative to this cell; an array
        // formula has no shared record and so no tokens to print.
        const FormulaBlock &a = _formulas[SheetIndex::position(anchor)];
        const uint8_t *tokens = nullptr;
        size_t n = 0;
        const std::vector<uint8_t> &d = a.shrFmla.data;
        if (a.hasSharedFormula && d.size() >= kShrFmlaCce + 2) {
            tokens = d.data() + kShrFmlaCce + 2;
            n = std::min<size_t>(size_t(d[kShrFmlaCce] | d[kShrFmlaCce + 1] << 8),
                                 d.size() - kShrFmlaCce - 2);
        }
        _wideResult = printer().print(tokens, n, &book, true, row, col);
    } else {
        size_t n = 0;
        const uint8_t *tokens = block.formula.tokens(n);
        _wideResult = printer().print(tokens, n, &book);
    }
    if (_owner->refR1C1()) XMLFormula::toRefR1C1(_wideResult, row, col);
    return textResult(_wideResult.c_str());
}

template <class C>
bool SheetImplT<C>::writeFormula(int row, int col, const C *expr, IFormatT<C> *format) {
    checkRanges(row, col);
    const uint32_t code = codeAt(row, col);
    const bool exists = SheetIndex::exists(code);
    const uint16_t xf = resolveFormat(format, exists ? xfOf(code) : 15);
    std::wstring text = wideArg(expr);
    if (_owner->refR1C1()) XMLFormula::toRefA1(text, row, col, true);
    std::vector<uint8_t> tokens;
    OwnerFormulaBook<C> book(*_owner);
    parser().compile(text, &book, tokens);
    if (exists) delSharedFormula(row, col);
    FormulaBlock fresh;
    fresh.formula.rw = uint16_t(row);
    fresh.formula.colIndex = uint16_t(col);
    fresh.formula.xf = xf;
    fresh.formula.setTokens(tokens);
    if (exists && SheetIndex::kind(code) == SheetIndex::kFormula) {
        _formulas[SheetIndex::position(code)] = std::move(fresh);
    } else {
        const uint32_t pos = appendPosition(_formulas.size());
        _formulas.push_back(std::move(fresh));
        _index.at(unsigned(row), unsigned(col)) = SheetIndex::code(SheetIndex::kFormula, pos);
    }
    _dimensions.update(uint32_t(row), uint16_t(col));
    return true;
}

template class SheetImplT<char>;
template class SheetImplT<wchar_t>;

} // namespace tabrix
