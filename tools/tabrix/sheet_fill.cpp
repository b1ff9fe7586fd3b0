#include "sheet_fill.h"

#include "cell_range.h"
#include "cell_value.h"
#include "cli.h"
#include "csv_reader.h"
#include "progress.h"

#include <cstring>
#include <vector>

namespace cli {

namespace {

// Built-in number formats: 14 a date, 21 a time, 22 a date with a time.
const int kDateFormat = 14;
const int kTimeFormat = 21;
const int kDateTimeFormat = 22;
// Custom number formats of a book have identifiers from here on.
const int kFirstCustomFormat = 164;
// Copies of more cells than this may take a moment: show progress.
const long kLargeCopy = 200000;

[[noreturn]] void writeFailed(Workbook &wb, int row, int col) {
    throw Failure("cannot write cell " + cellName(row, col) + ": " + wb.message());
}

void check(bool ok, Workbook &wb, int row, int col) {
    if (!ok) writeFailed(wb, row, col);
}

} // namespace

Format *NumFormats::builtIn(int id) {
    if (id <= 0) return nullptr;
    auto it = _builtIn.find(id);
    if (it != _builtIn.end()) return it->second;
    Format *f = _target.book()->addFormat(nullptr);
    if (f) f->setNumFormat(id);
    _builtIn[id] = f;
    return f;
}

Format *NumFormats::from(Workbook &source, int id) {
    if (id < kFirstCustomFormat) return builtIn(id);
    const char *text = source.book()->customNumFormat(id);
    if (!text) return nullptr;
    auto it = _custom.find(text);
    if (it != _custom.end()) return it->second;
    Format *f = nullptr;
    int targetId = _target.book()->addCustomNumFormat(text);
    if (targetId > 0) {
        f = _target.book()->addFormat(nullptr);
        if (f) f->setNumFormat(targetId);
    }
    _custom[text] = f;
    return f;
}

void copyMergesAndNames(Sheet *from, int fromIndex, Sheet *to, bool allSheets) {
    const int lastRow = from->lastRow() - 1, lastCol = from->lastCol() - 1;
    for (int row = 0; row <= lastRow; ++row)
        for (int col = 0; col <= lastCol; ++col) {
            int rf = 0, rl = 0, cf = 0, cl = 0;
            if (from->getMerge(row, col, &rf, &rl, &cf, &cl) && rf == row && cf == col)
                to->setMerge(rf, rl, cf, cl);
        }
    // Names are read first: setting one on `to` may be seen from `from`
    // when both are one book.
    struct Name {
        std::string text;
        int rf, rl, cf, cl, scope;
    };
    std::vector<Name> names;
    for (int i = 0, n = from->namedRangeSize(); i < n; ++i) {
        Name nm{};
        const char *text = from->namedRange(i, &nm.rf, &nm.rl, &nm.cf, &nm.cl, &nm.scope, nullptr);
        if (!text) continue;
        nm.text = text;
        names.push_back(nm);
    }
    for (Name &nm : names) {
        const std::string builtIn = "_xlnm.";
        if (nm.text.compare(0, builtIn.size(), builtIn) == 0) nm.text.erase(0, builtIn.size());
        // A missing part of a reference (whole rows or columns) reads as -1
        // in one format and as the full span in the other.
        const bool wholeRows = nm.cf < 0 || (nm.cf == 0 && nm.cl >= 255);
        const bool wholeCols = nm.rf < 0 || (nm.rf == 0 && nm.rl >= 65535);
        if (nm.text == "Print_Area") {
            to->setPrintArea(nm.rf, nm.rl, nm.cf, nm.cl);
        } else if (nm.text == "Print_Titles") {
            if (wholeRows && nm.rf >= 0) to->setPrintRepeatRows(nm.rf, nm.rl);
            if (wholeCols && nm.cf >= 0) to->setPrintRepeatCols(nm.cf, nm.cl);
        } else if (nm.scope == -1 || nm.scope == fromIndex || allSheets) {
            const int scope = nm.scope == fromIndex ? -2 : nm.scope;
            to->setNamedRange(nm.text.c_str(), nm.rf, nm.rl, nm.cf, nm.cl, scope);
        }
    }
}

long copySheet(Workbook &source, Sheet *from, Workbook &target, Sheet *to, NumFormats &formats) {
    int lastRow = from->lastRow() - 1, lastCol = from->lastCol() - 1;
    if (lastRow >= target.maxRows() || lastCol >= target.maxCols())
        throw Failure("sheet '" + std::string(from->name() ? from->name() : "") + "' reaches " +
                      cellName(lastRow, lastCol) + ", beyond the last cell of the target format");
    long changed = 0;
    long long cells = (long long)(lastRow + 1) * (lastCol + 1);
    Progress progress("copying sheet '" + std::string(from->name() ? from->name() : "") + "': row",
                      lastRow + 1, cells > kLargeCopy);
    for (int row = 0; row <= lastRow; ++row) {
        progress.update(row);
        for (int col = 0; col <= lastCol; ++col) {
            CellValue v = readCell(source, from, row, col);
            if (v.kind == tabrix::CELLTYPE_EMPTY) continue;
            Format *f = v.numFormat > 0 ? formats.from(source, v.numFormat) : nullptr;
            if (v.hasFormula && !v.formula.empty() &&
                to->writeFormula(row, col, v.formula.c_str(), f))
                continue;
            if (v.hasFormula) ++changed;
            switch (v.kind) {
            case tabrix::CELLTYPE_NUMBER:
                check(to->writeNum(row, col, v.number, f), target, row, col);
                break;
            case tabrix::CELLTYPE_STRING:
                check(to->writeStr(row, col, v.text.c_str(), f), target, row, col);
                break;
            case tabrix::CELLTYPE_BOOLEAN:
                check(to->writeBool(row, col, v.flag, f), target, row, col);
                break;
            case tabrix::CELLTYPE_ERROR:
                // The interface writes an error only as a formula of it.
                if (!to->writeFormula(row, col, v.text.c_str(), f)) {
                    ++changed;
                    check(to->writeStr(row, col, v.text.c_str(), f), target, row, col);
                }
                break;
            default: check(to->writeBlank(row, col, f), target, row, col); break;
            }
        }
    }
    return changed;
}

void importText(std::istream &in, bool tabs, bool allText, const std::string &name,
                Workbook &target, Sheet *to) {
    NumFormats formats(target);
    CsvReader reader(in, tabs, name);
    std::vector<std::string> fields;
    Progress progress("reading " + name + ": record", 0);
    int row = 0;
    while (reader.next(fields)) {
        progress.update(row);
        std::string where = name + " line " + std::to_string(reader.line()) + ": ";
        if (row >= target.maxRows())
            throw Failure(where + "row " + std::to_string(row + 1) +
                          " is beyond the last row this workbook format holds (" +
                          std::to_string(target.maxRows()) + ")");
        if (int(fields.size()) > target.maxCols())
            throw Failure(where + std::to_string(fields.size()) +
                          " fields, more than the columns this workbook format holds (" +
                          std::to_string(target.maxCols()) + ")");
        for (int col = 0; col < int(fields.size()); ++col) {
            const std::string &text = fields[size_t(col)];
            FieldValue v = classifyField(text);
            if (allText && v.kind != FieldValue::Empty) v.kind = FieldValue::Text;
            bool ok = true;
            switch (v.kind) {
            case FieldValue::Empty: break;
            case FieldValue::Number: ok = to->writeNum(row, col, v.number, nullptr); break;
            case FieldValue::Boolean: ok = to->writeBool(row, col, v.flag, nullptr); break;
            case FieldValue::Date: {
                double serial =
                    v.hasDate
                        ? target.book()->datePack(v.year, v.month, v.day, v.hour, v.minute,
                                                  v.second, v.msec)
                        : (v.hour * 3600000.0 + v.minute * 60000.0 + v.second * 1000.0 + v.msec) /
                              86400000.0;
                int id = !v.hasDate ? kTimeFormat : v.hasTime ? kDateTimeFormat : kDateFormat;
                ok = to->writeNum(row, col, serial, formats.builtIn(id));
                break;
            }
            case FieldValue::Text: ok = to->writeStr(row, col, text.c_str(), nullptr); break;
            }
            if (!ok)
                throw Failure(where + "cannot write cell " + cellName(row, col) + ": " +
                              target.message());
        }
        ++row;
    }
}

std::string sheetNameFor(const std::string &path) {
    size_t slash = path.find_last_of('/');
    std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
    size_t dot = base.find_last_of('.');
    if (dot != std::string::npos && dot > 0) base.resize(dot);
    for (char &c : base)
        if (std::strchr("[]:*?/\\", c)) c = '_';
    // At most 31 characters, cut between UTF-8 sequences.
    size_t chars = 0, at = 0;
    for (; at < base.size(); ++at) {
        if ((static_cast<unsigned char>(base[at]) & 0xC0) != 0x80 && ++chars > 31) break;
    }
    base.resize(at);
    return base.empty() ? "Sheet1" : base;
}

} // namespace cli
