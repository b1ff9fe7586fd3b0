// The TextSheet store: row table, 64-column pages, cursor walks, setters and
// readers.
#include "text_sheet.h"

#include <climits>
#include <cstdlib>
#include <cstring>

namespace {

const int kFirstCapacity = 256;
const int kDoublingLimit = 8192;

void outOfMemory(TextSheet *s) {
    if (g_host && g_host->dispatchError)
        g_host->dispatchError(s->context, "%s", tr("SHEET: Out of memory error"));
}

// Makes rows[row] exist.  Answers false when memory runs out.
bool growRows(TextSheet *s, int row) {
    if (row < s->rowCapacity) return true;
    long long cap;
    if (row == s->rowCapacity)
        cap = row == 0               ? kFirstCapacity
              : row < kDoublingLimit ? 2LL * row
                                     : (long long)row + kDoublingLimit;
    else
        cap = ((long long)row + 256) & ~255LL;
    if (cap > INT_MAX) cap = INT_MAX;
    TextRow *rows = static_cast<TextRow *>(realloc(s->rows, (size_t)cap * sizeof(TextRow)));
    if (!rows) return false;
    for (long long r = s->rowCapacity; r < cap; ++r) {
        rows[r].firstCol = TEXT_NO_COLUMN;
        rows[r].lastCol = 0;
        rows[r].cursor = nullptr;
    }
    s->rows = rows;
    s->rowCapacity = (int)cap;
    return true;
}

// Walks from the row's cursor towards page p: answers the page with number
// p, or the last page passed (the neighbour next to p's place).
TextPage *walkTo(TextPage *cur, int p) {
    if (p < cur->pageNumber) {
        while (cur->lower && cur->lower->pageNumber >= p) cur = cur->lower;
    } else {
        while (cur->higher && cur->higher->pageNumber <= p) cur = cur->higher;
    }
    return cur;
}

// The existing page of (row, col), moving the cursor; NULL outside the
// extents or without a page.
TextPage *findCell(TextSheet *s, int row, int col) {
    if (row < s->firstRow || row > s->lastRow || row >= s->rowCapacity || row < 0) return nullptr;
    TextRow *r = &s->rows[row];
    if (col < r->firstCol || col > r->lastCol || !r->cursor) return nullptr;
    int p = col >> TEXT_PAGE_SHIFT;
    TextPage *page = walkTo(r->cursor, p);
    if (page->pageNumber != p) return nullptr;
    r->cursor = page;
    return page;
}

void freeOldText(TextPage *page, int index) {
    if (page->kinds[index] == CELL_STRING) {
        free(page->values[index].text);
        page->values[index].text = nullptr;
    }
}

} // namespace

void resetStore(TextSheet *s) {
    s->firstRow = TEXT_NO_COLUMN;
    s->lastRow = 0;
    s->firstCol = TEXT_NO_COLUMN;
    s->lastCol = 0;
    s->rowCapacity = 0;
    s->rows = nullptr;
}

TextPage *cellSlot(TextSheet *s, int row, int col, int *index) {
    if (row < 0 || col < 0 || row >= TEXT_NO_COLUMN || col >= TEXT_NO_COLUMN || !growRows(s, row)) {
        outOfMemory(s);
        return nullptr;
    }
    TextRow *r = &s->rows[row];
    int p = col >> TEXT_PAGE_SHIFT;
    TextPage *page;
    if (!r->cursor) {
        page = static_cast<TextPage *>(calloc(1, sizeof(TextPage)));
        if (!page) {
            outOfMemory(s);
            return nullptr;
        }
        page->pageNumber = p;
    } else {
        TextPage *near = walkTo(r->cursor, p);
        if (near->pageNumber == p) {
            page = near;
        } else {
            page = static_cast<TextPage *>(calloc(1, sizeof(TextPage)));
            if (!page) {
                outOfMemory(s);
                return nullptr;
            }
            page->pageNumber = p;
            if (p < near->pageNumber) { // between near->lower and near
                page->lower = near->lower;
                page->higher = near;
                if (near->lower) near->lower->higher = page;
                near->lower = page;
            } else { // between near and near->higher
                page->higher = near->higher;
                page->lower = near;
                if (near->higher) near->higher->lower = page;
                near->higher = page;
            }
        }
    }
    r->cursor = page;

    if (row < s->firstRow) s->firstRow = row;
    if (row > s->lastRow) s->lastRow = row;
    if (col < r->firstCol) {
        r->firstCol = col;
        if (col < s->firstCol) s->firstCol = col;
    }
    if (col > r->lastCol) {
        r->lastCol = col;
        if (col > s->lastCol) s->lastCol = col;
    }
    *index = col & (TEXT_PAGE_COLUMNS - 1);
    return page;
}

int setText(TextSheet *s, int row, int col, const char *text) {
    int i;
    TextPage *page = cellSlot(s, row, col, &i);
    if (!page) return 1;
    freeOldText(page, i);
    if (!text || !*text) {
        page->kinds[i] = CELL_EMPTY;
        return 0;
    }
    char *copy = strdup(text);
    if (!copy) {
        page->kinds[i] = CELL_EMPTY;
        outOfMemory(s);
        return 1;
    }
    page->kinds[i] = CELL_STRING;
    page->values[i].text = copy;
    return 0;
}

int setNumber(TextSheet *s, int row, int col, double value) {
    int i;
    TextPage *page = cellSlot(s, row, col, &i);
    if (!page) return 1;
    freeOldText(page, i);
    page->kinds[i] = CELL_NUMBER;
    page->values[i].number = value;
    return 0;
}

int setBool(TextSheet *s, int row, int col, int value) {
    int i;
    TextPage *page = cellSlot(s, row, col, &i);
    if (!page) return 1;
    freeOldText(page, i);
    page->kinds[i] = CELL_BOOL;
    page->values[i].boolean = value;
    return 0;
}

int cellKind(TextSheet *s, int row, int col) {
    TextPage *p = findCell(s, row, col);
    return p ? (int)p->kinds[col & (TEXT_PAGE_COLUMNS - 1)] : (int)CELL_EMPTY;
}

// A number cell reads as a boolean by being non-zero, a boolean as a number
// by 1 or 0; other kinds read as 0.
int cellBool(TextSheet *s, int row, int col) {
    TextPage *p = findCell(s, row, col);
    if (!p) return 0;
    int i = col & (TEXT_PAGE_COLUMNS - 1);
    if (p->kinds[i] == CELL_BOOL) return p->values[i].boolean;
    return p->kinds[i] == CELL_NUMBER && p->values[i].number != 0.0;
}

const char *cellBoolText(TextSheet *s, int row, int col) {
    TextPage *p = findCell(s, row, col);
    if (!p) return nullptr;
    return cellBool(s, row, col) > 0 ? s->trueText : s->falseText;
}

double cellNumber(TextSheet *s, int row, int col) {
    TextPage *p = findCell(s, row, col);
    if (!p) return 0.0;
    int i = col & (TEXT_PAGE_COLUMNS - 1);
    if (p->kinds[i] == CELL_NUMBER) return p->values[i].number;
    return p->kinds[i] == CELL_BOOL ? (double)p->values[i].boolean : 0.0;
}

const char *cellText(TextSheet *s, int row, int col) {
    TextPage *p = findCell(s, row, col);
    if (!p) return "";
    int i = col & (TEXT_PAGE_COLUMNS - 1);
    return p->kinds[i] == CELL_STRING && p->values[i].text ? p->values[i].text : "";
}

namespace {
void freePage(TextPage *p) {
    for (int i = 0; i < TEXT_PAGE_COLUMNS; ++i)
        if (p->kinds[i] == CELL_STRING) free(p->values[i].text);
    free(p);
}
} // namespace

void clearStore(TextSheet *s) {
    for (int row = 0; row < s->rowCapacity; ++row) {
        TextPage *cur = s->rows[row].cursor;
        if (!cur) continue;
        TextPage *down = cur->lower;
        while (cur) {
            TextPage *next = cur->higher;
            freePage(cur);
            cur = next;
        }
        while (down) {
            TextPage *next = down->lower;
            freePage(down);
            down = next;
        }
    }
    free(s->rows);
    resetStore(s);
}
