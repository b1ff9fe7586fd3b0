// `tabrix info FILE`: what a workbook holds, as the library sees it.
#include "args.h"
#include "cell_range.h"
#include "cli.h"
#include "sheet_drawings.h"
#include "workbook.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string>

namespace cli {

namespace {

const char *const kSheetTypes[] = {"sheet", "chart", "unknown"};
const char *const kSheetStates[] = {"visible", "hidden", "very hidden"};

const char *sheetTypeName(int type) {
    return type >= 0 && type < 3 ? kSheetTypes[type] : "unknown";
}
const char *sheetStateName(int state) {
    return state >= 0 && state < 3 ? kSheetStates[state] : "unknown";
}

std::string formatText(Workbook &wb) {
    if (wb.kind() == FileKind::Zip) return "Open XML workbook (zip package)";
    int biff = wb.book()->biffVersion();
    char hex[16];
    std::snprintf(hex, sizeof hex, "0x%04X", unsigned(biff) & 0xFFFF);
    std::string name = biff == 0x0600 ? "BIFF8" : biff == 0x0500 ? "BIFF5" : "BIFF";
    return "binary workbook (compound file, " + name + " " + hex + ")";
}

std::string usedRange(Sheet *s) {
    int fr = s->firstRow(), lr = s->lastRow(), fc = s->firstCol(), lc = s->lastCol();
    if (lr <= fr || lc <= fc || fr < 0 || fc < 0) return "empty";
    // The last row and column the library answers are one past the last used.
    return rangeName(fr, lr - 1, fc, lc - 1);
}

// The kinds of the book's getPicture codes.
const char *const kPictureKinds[] = {"png", "jpeg", "wmf", "dib", "emf", "pict", "tiff"};

std::string pictureKind(Book *book, int id) {
    const char *data = nullptr;
    unsigned size = 0;
    int code = book->getPicture(id, &data, &size);
    return data && code >= 0 && code < 7 ? kPictureKinds[code] : "unknown";
}

// A comment's text on one line: backslashes and line breaks escaped.
std::string oneLine(const char *text) {
    std::string out;
    for (const char *p = text; *p; ++p)
        out += *p == '\\' ? "\\\\" : *p == '\n' ? "\\n" : *p == '\r' ? "" : std::string(1, *p);
    return out;
}

std::string padded(const std::string &s, size_t width) {
    return s.size() >= width ? s : s + std::string(width - s.size(), ' ');
}

} // namespace

int runInfo(const Args &args) {
    const std::string path = args.positional()[0];
    FileKind kind = Workbook::sniff(path);
    if (!isWorkbook(kind))
        throw Failure(path + " is " + describeKind(kind) +
                      ", not a workbook; 'tabrix convert' turns it into one");
    Workbook wb(kind);
    wb.load(path);
    Book *book = wb.book();
    std::ostream &out = std::cout;
    int count = book->sheetCount();
    out << "file:          " << path << "\n";
    out << "format:        " << formatText(wb) << "\n";
    out << "library:       " << versionText(book->version()) << "\n";
    out << "date system:   " << (book->isDate1904() ? "1904" : "1900") << "\n";
    out << "sheets:        " << count;
    if (count > 0) out << " (active: " << book->activeSheet() + 1 << ")";
    out << "\n";

    size_t nameWidth = 4;
    for (int i = 0; i < count; ++i) {
        Sheet *s = book->getSheet(i);
        if (s && s->name()) nameWidth = std::max(nameWidth, std::string(s->name()).size());
    }
    int namedRanges = 0, sheetPictures = 0, comments = 0;
    std::string namesText, picturesText, commentsText;
    for (int i = 0; i < count; ++i) {
        Sheet *s = wb.sheet(i);
        std::string name = s->name() ? s->name() : "";
        out << "  " << padded(std::to_string(i + 1), 3) << padded(name, nameWidth + 2)
            << padded(sheetTypeName(book->sheetType(i)), 9)
            << padded(sheetStateName(s->hidden()), 13) << usedRange(s) << "\n";
        const int placed = s->pictureSize();
        sheetPictures += placed;
        for (int p = 0; p < placed; ++p) {
            int row = 0, col = 0, width = 0, height = 0;
            int id =
                s->getPicture(p, &row, &col, nullptr, nullptr, &width, &height, nullptr, nullptr);
            picturesText += "  " + name + "!" + cellName(row, col) + "  " + pictureKind(book, id) +
                            "  " + std::to_string(width) + "x" + std::to_string(height) + "\n";
        }
        forEachComment(s, [&](int r, int c, const char *text) {
            ++comments;
            commentsText += "  " + name + "!" + cellName(r, c) + "  " + oneLine(text) + "\n";
        });
        int names = s->namedRangeSize();
        for (int n = 0; n < names; ++n) {
            int rf = 0, rl = 0, cf = 0, cl = 0, scope = -1;
            bool hidden = false;
            const char *text = s->namedRange(n, &rf, &rl, &cf, &cl, &scope, &hidden);
            if (!text) continue;
            ++namedRanges;
            std::string area =
                rf < 0 || cf < 0 || rl < rf || cl < cf ? "?" : rangeName(rf, rl, cf, cl);
            std::string where = scope < 0 ? "book" : "sheet " + std::to_string(scope + 1);
            namesText += "  " + std::string(text) + "  " + name + "!" + area +
                         "  (scope: " + where + ")" + (hidden ? " hidden" : "") + "\n";
        }
    }
    out << "named ranges:  " << namedRanges << "\n" << namesText;
    out << "pictures:      " << book->pictureSize();
    if (sheetPictures > 0) out << " (placed on sheets: " << sheetPictures << ")";
    out << "\n" << picturesText;
    out << "comments:      " << comments << "\n" << commentsText;
    return EXIT_OK;
}

} // namespace cli
