/* hello: a C program built against an installed tabrix with pkg-config.
 *   cc hello.c $(pkg-config --cflags --libs tabrix) -o hello
 *   ./hello out.xls
 * Writes a two-cell book, loads the file back and prints both cells. */
#include <tabrix.h>

#include <stdio.h>

int main(int argc, char **argv) {
    const char *path = argc > 1 ? argv[1] : "hello.xls";
    TBBook book = tbCreateBookCA();
    TBBook back = tbCreateBookCA();
    TBSheet sheet;
    int ok;
    if (!book || !back) return 1;
    tbBookSetLocaleA(book, "UTF-8");
    sheet = tbBookAddSheetA(book, "Hello", 0);
    ok = sheet && tbSheetWriteStrA(sheet, 0, 0, "answer", 0) &&
         tbSheetWriteNumA(sheet, 0, 1, 42, 0) && tbBookSaveA(book, path) && tbBookLoadA(back, path);
    if (ok) {
        /* A text the book answers lasts until its next text: print each at once. */
        sheet = tbBookGetSheetA(back, 0);
        printf("%s ", tbSheetNameA(sheet));
        printf("%s=%g\n", tbSheetReadStrA(sheet, 0, 0, 0), tbSheetReadNumA(sheet, 0, 1, 0));
    } else {
        fprintf(stderr, "hello: %s\n", tbBookErrorMessageA(back));
    }
    tbBookReleaseA(book);
    tbBookReleaseA(back);
    return ok ? 0 : 1;
}
