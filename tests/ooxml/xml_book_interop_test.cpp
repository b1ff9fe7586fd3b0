// Open XML books against independent software: a book made here opens in
// openpyxl and LibreOffice with its sheets in order, and books those
// programs write load, save with every part and open in them again.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/oracle.h"
#include "support/package_round_trip.h"
#include "support/xml_parts.h"
#include "tabrix.h"
#include "tabrix/IBookT.h"

using namespace tabrix;
namespace fs = std::filesystem;

namespace {

fs::path scratch(const std::string &name) {
    const fs::path dir = fs::path(TABRIX_TEST_TMP) / "xml_book_interop";
    fs::create_directories(dir);
    return dir / name;
}

// Sheets added, inserted, copied, renamed, hidden and deleted.
TEST(XMLBookInterop, NewBookOpensWithItsSheets) {
    if (!oracle::has("openpyxl")) GTEST_SKIP() << "python3-openpyxl is not installed";
    auto *book = static_cast<IBookT<char> *>(tbCreateXMLBookA());
    book->setLocale("UTF-8");
    ASSERT_NE(book->addSheet("First", nullptr), nullptr);
    ASSERT_NE(book->addSheet("Gone", nullptr), nullptr);
    ASSERT_NE(book->addSheet("Ünïcödé ✓", nullptr), nullptr);
    ASSERT_NE(book->insertSheet(1, "Inserted", nullptr), nullptr);
    ASSERT_NE(book->addSheet("Copy", book->getSheet(0)), nullptr);
    ASSERT_TRUE(book->delSheet(2));
    book->getSheet(3)->setName("Renamed");
    ASSERT_TRUE(book->getSheet(1)->setHidden(SHEETSTATE_HIDDEN));
    ASSERT_TRUE(book->getSheet(3)->setHidden(SHEETSTATE_VERYHIDDEN));
    book->setActiveSheet(2);
    const fs::path path = scratch("new_book.xlsx");
    ASSERT_TRUE(book->save(path.string().c_str())) << book->errorMessage();
    book->release();

    EXPECT_EQ(oracle::dump("openpyxl-sheets", path.string(), true),
              (oracle::Lines{"SHEET First visible", "SHEET Inserted hidden",
                             "SHEET Ünïcödé ✓ visible", "SHEET Renamed veryHidden"}));
    if (!oracle::has("soffice")) GTEST_SKIP() << "LibreOffice is not installed";
    const oracle::Lines lo = oracle::dump("libreoffice-sheets", path.string(), true);
    ASSERT_EQ(lo.size(), 4u) << oracle::firstDifference(lo, {});
    const char *names[] = {"SHEET First ", "SHEET Inserted ", "SHEET Ünïcödé ✓ ", "SHEET Renamed "};
    for (size_t i = 0; i < 4; ++i) EXPECT_EQ(lo[i].rfind(names[i], 0), 0u) << lo[i];
}

// Books of LibreOffice, gnumeric, openpyxl and xlsxwriter (each that is
// installed) keep every part through a load and a save, and open again.
TEST(XMLBookInterop, ProducerBooksKeepTheirParts) {
    if (!oracle::has("openpyxl")) GTEST_SKIP() << "python3-openpyxl is not installed";
    const fs::path dir = scratch("producers");
    fs::remove_all(dir);
    fs::create_directories(dir);
    xmlparts::makeProducerBooks(dir);
    int checked = 0;
    for (const auto &e : fs::recursive_directory_iterator(dir)) {
        if (e.path().extension() != ".xlsx") continue;
        const fs::path saved = scratch("saved_" + e.path().filename().string());
        EXPECT_EQ(packageRoundTrip(e.path(), saved), "") << e.path();
        const oracle::Lines before = oracle::dump("openpyxl-sheets", e.path().string(), true);
        EXPECT_EQ(oracle::dump("openpyxl-sheets", saved.string(), true), before) << e.path();
        if (oracle::has("soffice")) {
            EXPECT_FALSE(oracle::failed(oracle::dump("libreoffice", saved.string(), true)))
                << saved;
        }
        ++checked;
    }
    EXPECT_GE(checked, 3);
}

} // namespace
