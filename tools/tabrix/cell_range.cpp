#include "cell_range.h"

#include "cli.h"

#include <cctype>
#include <utility>

namespace cli {

namespace {

// One end of a range: a column, a row, or both.
struct Corner {
    int row = -1; // -1 when absent
    int col = -1;
};

[[noreturn]] void bad(const std::string &text, const std::string &why) {
    throw UsageError("bad range '" + text + "': " + why);
}

Corner parseCorner(const std::string &text, const std::string &part) {
    Corner corner;
    size_t i = 0;
    if (i < part.size() && part[i] == '$')
        ++i;
    size_t lettersAt = i;
    long col = 0;
    while (i < part.size() && std::isalpha(static_cast<unsigned char>(part[i]))) {
        col = col * 26 + (std::toupper(static_cast<unsigned char>(part[i])) - 'A' + 1);
        ++i;
        if (col > kMaxCols) {
            while (i < part.size() && std::isalpha(static_cast<unsigned char>(part[i])))
                ++i;
            bad(text, "column " + part.substr(lettersAt, i - lettersAt) +
                          " is beyond the last column XFD");
        }
    }
    bool hasCol = i > lettersAt;
    if (i < part.size() && part[i] == '$') {
        if (!hasCol && lettersAt == 1)
            bad(text, "'" + part + "' is not a cell address");
        ++i;
    }
    size_t digitsAt = i;
    long row = 0;
    while (i < part.size() && std::isdigit(static_cast<unsigned char>(part[i]))) {
        row = row * 10 + (part[i] - '0');
        ++i;
        if (row > kMaxRows) {
            while (i < part.size() && std::isdigit(static_cast<unsigned char>(part[i])))
                ++i;
            bad(text, "row " + part.substr(digitsAt, i - digitsAt) +
                          " is beyond the last row 1048576");
        }
    }
    bool hasRow = i > digitsAt;
    if (i != part.size() || (!hasCol && !hasRow))
        bad(text, "'" + part + "' is not a cell address");
    if (hasRow && row == 0)
        bad(text, "rows count from 1");
    if (hasCol)
        corner.col = int(col - 1);
    if (hasRow)
        corner.row = int(row - 1);
    return corner;
}

} // namespace

CellRange CellRange::clampTo(int usedLastRow, int usedLastCol) const {
    CellRange r = *this;
    if (openRows)
        r.lastRow = usedLastRow;
    if (openCols)
        r.lastCol = usedLastCol;
    return r;
}

std::string columnName(int col) {
    std::string name;
    for (int n = col + 1; n > 0; n = (n - 1) / 26)
        name.insert(name.begin(), char('A' + (n - 1) % 26));
    return name;
}

std::string cellName(int row, int col) { return columnName(col) + std::to_string(row + 1); }

std::string rangeName(int firstRow, int lastRow, int firstCol, int lastCol) {
    std::string first = cellName(firstRow, firstCol);
    if (firstRow == lastRow && firstCol == lastCol)
        return first;
    return first + ":" + cellName(lastRow, lastCol);
}

CellRange parseRange(const std::string &text) {
    if (text.empty())
        bad(text, "it is empty");
    size_t colon = text.find(':');
    if (colon != std::string::npos && text.find(':', colon + 1) != std::string::npos)
        bad(text, "a range has one ':' between its two corners");
    std::string firstText = text.substr(0, colon);
    std::string lastText = colon == std::string::npos ? firstText : text.substr(colon + 1);
    if (firstText.empty() || lastText.empty())
        bad(text, "a corner is missing");
    Corner a = parseCorner(text, firstText);
    Corner b = parseCorner(text, lastText);
    bool aCell = a.row >= 0 && a.col >= 0, bCell = b.row >= 0 && b.col >= 0;
    bool aCol = a.row < 0, bCol = b.row < 0;
    bool aRow = a.col < 0, bRow = b.col < 0;
    CellRange r;
    if (aCell && bCell) {
        r.firstRow = a.row, r.lastRow = b.row, r.firstCol = a.col, r.lastCol = b.col;
    } else if (aCol && bCol && colon != std::string::npos) {
        r.firstCol = a.col, r.lastCol = b.col, r.openRows = true;
    } else if (aRow && bRow && colon != std::string::npos) {
        r.firstRow = a.row, r.lastRow = b.row, r.openCols = true;
    } else {
        bad(text, "use corners such as A1:D10, whole columns A:C or whole rows 2:5");
    }
    if (r.firstRow > r.lastRow)
        std::swap(r.firstRow, r.lastRow);
    if (r.firstCol > r.lastCol)
        std::swap(r.firstCol, r.lastCol);
    return r;
}

} // namespace cli
