// write_book: makes a small workbook through the C++ interfaces and saves it.
//   write_book out.xls
// A header row in bold, three rows of orders with a date, a quantity and a
// price, and their total.  Exits 1 with the book's message when anything
// fails.
#include "tabrix.h"
#include "tabrix/IBookT.h"

#include <cstdio>

using namespace tabrix;

int main(int argc, char **argv) {
    const char *path = argc > 1 ? argv[1] : "orders.xls";
    auto *book = static_cast<IBookT<char> *>(tbCreateBookA());
    if (!book) return 1;
    ISheetT<char> *sheet = book->addSheet("Orders", nullptr);

    IFontT<char> *bold = book->addFont(nullptr);
    bold->setBold(true);
    IFormatT<char> *header = book->addFormat(nullptr);
    header->setFont(bold);
    IFormatT<char> *date = book->addFormat(nullptr);
    date->setNumFormat(NUMFORMAT_DATE);
    IFormatT<char> *money = book->addFormat(nullptr);
    money->setNumFormat(NUMFORMAT_NUMBER_SEP_D2);

    const char *titles[] = {"Date", "Item", "Quantity", "Price"};
    for (int col = 0; col < 4; ++col) sheet->writeStr(0, col, titles[col], header);
    struct Order {
        int day;
        const char *item;
        int quantity;
        double price;
    } const orders[] = {
        {3, "bolts", 200, 0.15}, {9, "nuts", 350, 0.08}, {21, "washers", 500, 0.02}};
    int row = 1;
    double total = 0.0;
    bool ok = true;
    for (const Order &o : orders) {
        // Each write answers false (and sets the message) when it fails.
        ok = ok && sheet->writeNum(row, 0, book->datePack(2024, 5, o.day, 0, 0, 0, 0), date) &&
             sheet->writeStr(row, 1, o.item, nullptr) &&
             sheet->writeNum(row, 2, o.quantity, nullptr) &&
             sheet->writeNum(row, 3, o.price, money);
        total += o.quantity * o.price;
        ++row;
    }
    ok = ok && sheet->writeStr(row, 1, "Total", header) && sheet->writeNum(row, 3, total, money) &&
         sheet->setCol(0, 0, 12.0, nullptr, false) && book->save(path);
    if (!ok) std::fprintf(stderr, "write_book: %s\n", book->errorMessage());
    book->release();
    return ok ? 0 : 1;
}
