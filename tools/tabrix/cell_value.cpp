#include "cell_value.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace cli {

namespace {

struct ErrorName {
    int code;
    const char *text;
};

const ErrorName kErrors[] = {
    {0x00, "#NULL!"}, {0x07, "#DIV/0!"}, {0x0F, "#VALUE!"}, {0x17, "#REF!"},
    {0x1D, "#NAME?"}, {0x24, "#NUM!"},   {0x2A, "#N/A"},
};

const char *const kKinds[] = {"empty", "number", "string", "boolean", "blank", "error"};

std::string text(const char *p) { return p ? p : ""; }

} // namespace

const char *kindName(tabrix::CellType kind) {
    int k = int(kind);
    return k >= 0 && k < 6 ? kKinds[k] : "unknown";
}

const char *errorText(int code) {
    for (const ErrorName &e : kErrors)
        if (e.code == code) return e.text;
    return "#ERR";
}

std::string numberText(double value) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
    char buf[40];
    if (value == std::floor(value) && std::fabs(value) < 1e15) {
        std::snprintf(buf, sizeof buf, "%.0f", value);
        return std::string(buf) == "-0" ? "0" : buf;
    }
    for (int precision = 1; precision <= 17; ++precision) {
        std::snprintf(buf, sizeof buf, "%.*g", precision, value);
        if (std::strtod(buf, nullptr) == value) break;
    }
    return buf;
}

std::string dateText(Book *book, double serial) {
    int y = 0, mo = 0, d = 0, h = 0, mi = 0, s = 0, ms = 0;
    if (!std::isfinite(serial) || serial < 0 ||
        !book->dateUnpack(serial, &y, &mo, &d, &h, &mi, &s, &ms))
        return "";
    char buf[64];
    bool hasTime = h != 0 || mi != 0 || s != 0 || ms != 0;
    if (serial < 1 && hasTime)
        std::snprintf(buf, sizeof buf, "%02d:%02d:%02d", h, mi, s);
    else if (hasTime)
        std::snprintf(buf, sizeof buf, "%04d-%02d-%02d %02d:%02d:%02d", y, mo, d, h, mi, s);
    else
        std::snprintf(buf, sizeof buf, "%04d-%02d-%02d", y, mo, d);
    std::string out = buf;
    if (ms != 0) {
        std::snprintf(buf, sizeof buf, ".%03d", ms);
        out += buf;
    }
    return out;
}

CellValue readCell(Workbook &book, Sheet *sheet, int row, int col) {
    CellValue v;
    v.kind = sheet->cellType(row, col);
    if (v.kind == tabrix::CELLTYPE_EMPTY) return v;
    Format *format = nullptr;
    switch (v.kind) {
    case tabrix::CELLTYPE_NUMBER:
        v.number = sheet->readNum(row, col, &format);
        v.isDate = sheet->isDate(row, col);
        v.text = v.isDate ? dateText(book.book(), v.number) : "";
        if (v.text.empty()) {
            v.isDate = false;
            v.text = numberText(v.number);
        }
        break;
    case tabrix::CELLTYPE_STRING: v.text = text(sheet->readStr(row, col, &format)); break;
    case tabrix::CELLTYPE_BOOLEAN:
        v.flag = sheet->readBool(row, col, &format);
        v.text = v.flag ? "TRUE" : "FALSE";
        break;
    case tabrix::CELLTYPE_ERROR:
        v.error = int(sheet->readError(row, col));
        v.text = errorText(v.error);
        format = sheet->cellFormat(row, col);
        break;
    default: format = sheet->cellFormat(row, col); break;
    }
    if (sheet->isFormula(row, col)) {
        // A formula the library cannot print keeps an empty text.
        const char *f = sheet->readFormula(row, col, nullptr);
        v.hasFormula = true;
        v.formula = text(f);
        if (!v.formula.empty() && v.formula[0] == '=') v.formula.erase(0, 1);
    }
    v.format = book.formatIndex(format);
    if (format) {
        v.numFormat = format->numFormat();
        // Built-in formats have only their identifier; the book's own have text.
        if (v.numFormat >= 164) v.numFormatText = text(book.book()->customNumFormat(v.numFormat));
    }
    return v;
}

} // namespace cli
