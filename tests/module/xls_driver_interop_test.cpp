// The workbook driver against independent software: a workbook written
// through the driver is read by Debian's python3-xlrd, and a workbook that
// LibreOffice writes (converted from an Open XML file made with openpyxl)
// gives its date, time and date-time cells to the driver as texts.
#include "refhost.h"
#include "support/oracle.h"
#include "support/tout_support.h"
#include "tabrix.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
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

bool exists(const std::string &path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0;
}

// Runs a shell command; answers its exit status and fills `out` with the
// lines of its standard output.
int run(const std::string &command, std::vector<std::string> *out = nullptr) {
    FILE *pipe = popen(command.c_str(), "r");
    if (!pipe) return -1;
    char line[4096];
    std::string pending;
    while (fgets(line, sizeof line, pipe)) {
        pending += line;
        if (!pending.empty() && pending.back() == '\n') {
            pending.pop_back();
            if (out) out->push_back(pending);
            pending.clear();
        }
    }
    if (out && !pending.empty()) out->push_back(pending);
    int status = pclose(pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// The distribution's interpreter: the one first on PATH may lack its modules.
const char kPython[] = "/usr/bin/python3";

// Runs a python script saved under `name` with one argument.
std::vector<std::string> runPython(const std::string &name, const char *script,
                                   const std::string &argument) {
    tout::spit(pathOf(name), script);
    std::vector<std::string> lines;
    if (run(std::string(kPython) + " '" + pathOf(name) + "' '" + argument + "' 2>&1", &lines) != 0)
        lines.push_back("FAILED");
    return lines;
}

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

// Dates written by openpyxl into an Open XML file with the number formats
// it gives dates, times and date-times, the last with milliseconds shown.
const char kMakeDates[] = R"(import sys, datetime, openpyxl
book = openpyxl.Workbook()
sheet = book.active
sheet.title = 'Dates'
sheet['A1'] = datetime.date(2024, 3, 1)
sheet['B1'] = datetime.time(12, 30, 0)
sheet['C1'] = datetime.datetime(2024, 3, 1, 12, 30, 0, 500000)
sheet['C1'].number_format = 'yyyy-mm-dd hh:mm:ss.000'
sheet['D1'] = 45352.5
book.save(sys.argv[1])
)";

TEST(XlsInterop, DatesOfALibreOfficeWorkbookAsTexts) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    if (!oracle::has("openpyxl")) GTEST_SKIP() << "python3-openpyxl is not installed";
    if (run("command -v soffice >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "LibreOffice is not installed";

    const std::string source = pathOf("dates.xlsx"), converted = pathOf("dates.xls");
    remove(converted.c_str());
    std::vector<std::string> made = runPython("xls_make_dates.py", kMakeDates, source);
    ASSERT_TRUE(made.empty()) << made[0];
    const std::string profile = pathOf("lo_profile");
    std::vector<std::string> log;
    run("soffice --headless --norestore -env:UserInstallation=file://" + profile +
            " --convert-to xls --outdir '" + scratchDir() + "' '" + source + "' 2>&1",
        &log);
    ASSERT_TRUE(exists(converted)) << (log.empty() ? "no output" : log.back());

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
