// The workbook driver against independent software: a workbook written
// through the driver is read by Debian's python3-xlrd, and a workbook that
// LibreOffice writes (converted from an Open XML file made with openpyxl)
// gives its date, time and date-time cells to the driver as texts (the
// oracle script makes that workbook).
#include "refhost.h"
#include "support/oracle.h"
#include "support/tout_support.h"
#include "tabrix.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <sys/stat.h>
#include <vector>

using namespace qdhost;
using tout::host;

namespace {

std::string scratchDir() {
    mkdir(TABRIX_TEST_TMP, 0777);
    std::string dir = std::string(TABRIX_TEST_TMP) + "/xls_driver_interop";
    mkdir(dir.c_str(), 0777);
    return dir;
}

std::string pathOf(const std::string &name) { return scratchDir() + "/" + name; }

TEST(XlsInterop, WrittenWorkbookReadByXlrd) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    if (!oracle::has("xlrd")) GTEST_SKIP() << "python3-xlrd is not installed";
    remove(pathOf("written.xls").c_str());
    Context ctx(scratchDir());
    List *shipments = ctx.newList(tout::shipmentType());
    shipments->append(tout::shipmentType(),
                      qdPtr(tout::shipment(ctx, "Seattle", "New York", 50, false)));
    shipments->append(tout::shipmentType(),
                      qdPtr(tout::shipment(ctx, "Z\xC3\xBCrich", "Austin, TX", 275, true)));
    qd_value freight = qdReal(90.125), title = qdStr("small \"model\"");
    std::vector<Item> items{
        {"skiph+;grow;[Plan$A1:D1](from,to,qty,express)", shipments->type(), shipments},
        {"[Scalars$B2]", QD_REAL, &freight},
        {"[Scalars$B3]", QD_STRING, &title},
    };
    ASSERT_EQ(host().write(ctx, "xls", "written.xls", items), 0) << ctx.allErrors();

    std::vector<std::string> cells = oracle::dump("xlrd", pathOf("written.xls"), true);
    const std::vector<std::string> expected{
        "SHEET Plan",    "0 0 s from",          "0 1 s to",         "0 2 s qty",
        "0 3 s express", "1 0 s Seattle",       "1 1 s New York",   "1 2 n 50",
        "1 3 b 0",       "2 0 s Z\xC3\xBCrich", "2 1 s Austin, TX", "2 2 n 275",
        "2 3 b 1",       "SHEET Scalars",       "1 1 n 90.125",     "2 1 s small \"model\"",
    };
    EXPECT_EQ(cells, expected);
}

// Dates that openpyxl writes with the number formats it gives dates, times
// and date-times, in a binary book LibreOffice converts them into.
TEST(XlsInterop, DatesOfALibreOfficeWorkbookAsTexts) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    if (!oracle::has("openpyxl") || !oracle::has("soffice"))
        GTEST_SKIP() << "python3-openpyxl or LibreOffice is not installed";
    const std::string converted = pathOf("dates.xls");
    remove(converted.c_str());
    oracle::Lines made = oracle::dump("make-lo-dates", converted);
    ASSERT_TRUE(made.empty()) << made[0];

    Context ctx(scratchDir());
    List *texts = ctx.newList(QD_STRING);
    ASSERT_EQ(host().readItem(ctx, "xls", "dates.xls", "[Dates$A1:D1]", texts->type(), texts), 0)
        << ctx.allErrors();
    // A number that is no date keeps the host's format for reals.
    EXPECT_EQ(texts->texts(), (std::vector<std::string>{"2024-03-01", "12:30:00",
                                                        "2024-03-01T12:30:00,500", "45352.5"}));
    qd_value serial{};
    ASSERT_EQ(host().readItem(ctx, "xls", "dates.xls", "[Dates$A1]", QD_REAL, &serial), 0)
        << ctx.allErrors();
    EXPECT_EQ(serial.r, 45352.0);
}

} // namespace
