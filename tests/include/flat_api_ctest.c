/* A plain C program against tabrix.h and libtabrix.so: it creates books of
 * both kinds, calls every book entry point, and takes each through a whole
 * write, save, load and read cycle in memory. */
#include <math.h>
#include <stdio.h>
#include <string.h>

#include "tabrix.h"

static int failures = 0;

#define CHECK(cond)                                                                                \
    do {                                                                                           \
        if (!(cond)) {                                                                             \
            fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #cond);               \
            ++failures;                                                                            \
        }                                                                                          \
    } while (0)

#define CHECK_MESSAGE(book, text)                                                                  \
    do {                                                                                           \
        const char *m_ = tbBookErrorMessageA(book);                                                \
        if (!m_ || strcmp(m_, text) != 0) {                                                        \
            fprintf(stderr, "%s:%d: message \"%s\", expected \"%s\"\n", __FILE__, __LINE__,        \
                    m_ ? m_ : "(null)", text);                                                     \
            ++failures;                                                                            \
        }                                                                                          \
    } while (0)

static const char *const kRange = "index is out of range";

/* One kind of book: what it answers without sheets, the settings it keeps,
 * and a sheet written, saved to memory, loaded into the second book `c` and
 * read back through the flat entry points alone.  `biff` is the kind's
 * binary version (0: none), `rows` and `cols` its sheet size. */
static void checkBook(TBBook b, TBBook c, int formats, int fonts, int biff, int rows, int cols) {
    const char *data = 0;
    unsigned size = 0;
    TBSheet s, t;
    TBFormat f = 0;
    int r;

    CHECK(tbBookSetLocaleA(b, "UTF-8") == 1);
    CHECK_MESSAGE(b, "ok");
    CHECK(tbBookGetSheetA(b, 0) == 0);
    CHECK_MESSAGE(b, kRange);
    CHECK(tbBookSheetTypeA(b, 0) == 2);
    CHECK(tbBookSheetTypeA(b, -1) == 2);
    CHECK_MESSAGE(b, kRange);
    CHECK(tbBookDelSheetA(b, 0) == 0);
    CHECK_MESSAGE(b, kRange);
    tbBookSetActiveSheetA(b, 0);
    CHECK_MESSAGE(b, kRange);
    CHECK(tbBookSetLocaleA(b, "no_such_LOCALE.xyz") == 0);
    CHECK_MESSAGE(b, "setlocale error");
    CHECK(tbBookSetLocaleA(b, "UTF-8") == 1);

    /* simple accessors leave the message alone */
    CHECK(tbBookSheetCountA(b) == 0);
    CHECK(tbBookFormatSizeA(b) == formats);
    CHECK(tbBookFontSizeA(b) == fonts);
    CHECK(tbBookPictureSizeA(b) == 0);
    CHECK(tbBookActiveSheetA(b) == 0);
    CHECK(tbBookVersionA(b) == 0x03050408);
    CHECK(tbBookBiffVersionA(b) == biff);

    /* a bool argument is any non-zero int, a bool result 0 or 1 */
    CHECK(tbBookRefR1C1A(b) == 0);
    tbBookSetRefR1C1A(b, -1);
    CHECK(tbBookRefR1C1A(b) == 1);
    tbBookSetRgbModeA(b, 2);
    CHECK(tbBookRgbModeA(b) == 1);
    tbBookSetRgbModeA(b, 0);
    CHECK(tbBookRgbModeA(b) == 0);
    tbBookSetTemplateA(b, 1);
    CHECK(tbBookIsTemplateA(b) == 1);
    tbBookSetTemplateA(b, 0);
    CHECK(tbBookIsTemplateA(b) == 0);
    tbBookSetDate1904A(b, 256);
    CHECK(tbBookIsDate1904A(b) == 1);
    CHECK_MESSAGE(b, "ok");

    s = tbBookAddSheetA(b, "Data \xc3\xa9t\xc3\xa9", 0);
    CHECK(s != 0);
    if (!s) return;
    for (r = 0; r < 100; ++r) {
        CHECK(tbSheetWriteNumA(s, r, 0, r * 1.5, 0) == 1);
        CHECK(tbSheetWriteStrA(s, r, 1, r % 2 ? "odd" : "even", 0) == 1);
    }
    CHECK(tbSheetWriteBoolA(s, rows - 1, cols - 1, 1, 0) == 1);
    CHECK(tbSheetWriteNumA(s, rows, 0, 1.0, 0) == 0);
    CHECK(tbBookSheetCountA(b) == 1);
    CHECK(tbBookSaveRawA(b, &data, &size) == 1);
    CHECK_MESSAGE(b, "ok");
    CHECK(data != 0 && size > 512);
    if (!data) return;

    CHECK(tbBookSetLocaleA(c, "UTF-8") == 1);
    CHECK(tbBookLoadRawA(c, data, size) == 1);
    CHECK_MESSAGE(c, "ok");
    CHECK(tbBookSheetCountA(c) == 1);
    CHECK(tbBookIsDate1904A(c) == 1);
    t = tbBookGetSheetA(c, 0);
    CHECK(t != 0);
    if (!t) return;
    CHECK(strcmp(tbSheetNameA(t), "Data \xc3\xa9t\xc3\xa9") == 0);
    CHECK(tbSheetFirstRowA(t) == 0 && tbSheetLastRowA(t) == rows);
    CHECK(tbSheetFirstColA(t) == 0 && tbSheetLastColA(t) == cols);
    for (r = 0; r < 100; ++r) {
        const char *text = tbSheetReadStrA(t, r, 1, &f);
        CHECK(tbSheetCellTypeA(t, r, 0) == 1);
        CHECK(fabs(tbSheetReadNumA(t, r, 0, &f) - r * 1.5) == 0.0);
        CHECK(text && strcmp(text, r % 2 ? "odd" : "even") == 0);
    }
    CHECK(f != 0);
    CHECK(tbSheetReadBoolA(t, rows - 1, cols - 1, 0) == 1);
    CHECK(tbSheetReadNumA(t, 1, 1, 0) == 0.0);
    CHECK_MESSAGE(c, "this cell doesn't contain a number");
    CHECK(tbBookLoadRawA(c, "abc", 3) == 0);
    CHECK(strcmp(tbBookErrorMessageA(c), "ok") != 0);
}

/* Every sheet entry point is declared and exported. */
#define TB_SHEET_ADDRESS(ret, Name, op, params, args) (void (*)(void)) tbSheet##Name##A,
static void (*const sheetEntries[])(void) = {TB_SHEET_ENTRIES(TB_SHEET_ADDRESS)(void (*)(void))
                                                 tbSheetAddrToRowColA,
                                             (void (*)(void))tbSheetRowColToAddrA};

int main(void) {
    size_t i;
    TBBook b = tbCreateBookA();
    TBBook c = tbCreateBookCA();
    TBBook x = tbCreateXMLBookA();
    TBBook xc = tbCreateXMLBookCA();

    CHECK(b != 0 && c != 0 && x != 0 && xc != 0);
    if (!b || !c || !x || !xc) return 1;

    checkBook(b, c, 21, 5, 0x0600, 65536, 256);
    checkBook(x, xc, 1, 1, 0, 1048576, 16384);

    CHECK(sizeof(sheetEntries) / sizeof(sheetEntries[0]) == 112);
    for (i = 0; i < sizeof(sheetEntries) / sizeof(sheetEntries[0]); ++i)
        CHECK(sheetEntries[i] != 0);

    tbBookReleaseA(b);
    tbBookReleaseA(c);
    tbBookReleaseA(x);
    tbBookReleaseA(xc);
    if (failures) fprintf(stderr, "%d checks failed\n", failures);
    return failures ? 1 : 0;
}
