/* read_book: prints every cell of every sheet of a workbook, from C.
 *   read_book file.xls
 * Texts, numbers (dates as year-month-day), booleans and formulas with their
 * last value.  Exits 1 with the book's message when the file cannot be read. */
#include "tabrix.h"

#include <stdio.h>

static void printCell(TBBook book, TBSheet sheet, int row, int col) {
    int year, month, day;
    printf("%s: ", tbSheetRowColToAddrA(sheet, row, col, 1, 1));
    switch (tbSheetCellTypeA(sheet, row, col)) {
    case 1: /* number */
        if (tbSheetIsDateA(sheet, row, col) &&
            tbBookDateUnpackA(book, tbSheetReadNumA(sheet, row, col, 0), &year, &month, &day, 0, 0,
                              0, 0))
            printf("%04d-%02d-%02d", year, month, day);
        else
            printf("%g", tbSheetReadNumA(sheet, row, col, 0));
        break;
    case 2: printf("\"%s\"", tbSheetReadStrA(sheet, row, col, 0)); break;
    case 3: printf("%s", tbSheetReadBoolA(sheet, row, col, 0) ? "TRUE" : "FALSE"); break;
    case 5: printf("error %d", tbSheetReadErrorA(sheet, row, col)); break;
    default: printf("(blank)"); break;
    }
    /* Read after the value: a text result lasts until the next text call. */
    if (tbSheetIsFormulaA(sheet, row, col))
        printf("  = %s", tbSheetReadFormulaA(sheet, row, col, 0));
    printf("\n");
}

int main(int argc, char **argv) {
    TBBook book = tbCreateBookA();
    int i, row, col, failed = 0;
    if (!book) return 1;
    if (argc < 2 || !tbBookLoadA(book, argv[1])) {
        fprintf(stderr, "read_book: %s\n",
                argc < 2 ? "usage: read_book FILE" : tbBookErrorMessageA(book));
        failed = 1;
    }
    for (i = 0; !failed && i < tbBookSheetCountA(book); ++i) {
        TBSheet sheet = tbBookGetSheetA(book, i);
        printf("sheet %s\n", tbSheetNameA(sheet));
        /* lastRow and lastCol answer one past the last used row and column. */
        for (row = tbSheetFirstRowA(sheet); row < tbSheetLastRowA(sheet); ++row)
            for (col = tbSheetFirstColA(sheet); col < tbSheetLastColA(sheet); ++col)
                if (tbSheetCellTypeA(sheet, row, col) != 0) printCell(book, sheet, row, col);
    }
    tbBookReleaseA(book);
    return failed;
}
