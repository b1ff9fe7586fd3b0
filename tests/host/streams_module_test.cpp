// Streams, files, messages and parameters of the reference host, and the
// loading of the module.
#include "refhost.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <sys/stat.h>

using namespace qdhost;

namespace {

const qd_host &H = *hostTable();

std::string scratch(const std::string &name) {
    mkdir(TABRIX_TEST_TMP, 0777);
    std::string dir = std::string(TABRIX_TEST_TMP) + "/host";
    mkdir(dir.c_str(), 0777);
    return dir + "/" + name;
}

TEST(HostStream, WriteThenRead) {
    Context ctx;
    std::string path = scratch("stream.txt");
    ASSERT_EQ(H.openStream(&ctx, QD_STREAM_WRITE | QD_STREAM_BINARY, path.c_str()), 0);
    EXPECT_NE(H.openStream(&ctx, QD_STREAM_WRITE, path.c_str()), 0); // one at a time
    EXPECT_EQ(H.print(&ctx, "%s;%d;%.2f\n", "a", 12, 0.5), 10);
    ASSERT_EQ(H.closeStream(&ctx, 2), 0);
    EXPECT_NE(H.closeStream(&ctx, 2), 0);

    ASSERT_EQ(H.openStream(&ctx, QD_STREAM_EXISTING, path.c_str()), 0);
    char buf[64];
    long n = H.read(&ctx, buf, 4);
    ASSERT_EQ(n, 4);
    n += H.read(&ctx, buf + 4, sizeof buf - 4);
    EXPECT_EQ(std::string(buf, n), "a;12;0.50\n");
    EXPECT_EQ(H.read(&ctx, buf, sizeof buf), 0); // at the end
    ASSERT_EQ(H.closeStream(&ctx, 0), 0);
    EXPECT_LT(H.read(&ctx, buf, sizeof buf), 0); // no stream
    EXPECT_EQ(ctx.streamsOpened, 2);
    EXPECT_EQ(ctx.streamsClosed, 2);

    // Opening for writing truncates.
    ASSERT_EQ(H.openStream(&ctx, QD_STREAM_WRITE, path.c_str()), 0);
    ASSERT_EQ(H.closeStream(&ctx, 2), 0);
    ASSERT_EQ(H.openStream(&ctx, 0, path.c_str()), 0);
    EXPECT_EQ(H.read(&ctx, buf, sizeof buf), 0);
    ASSERT_EQ(H.closeStream(&ctx, 0), 0);
}

TEST(HostStream, Refusals) {
    Context ctx;
    std::string missing = scratch("no-such-file.txt");
    const struct {
        int flags;
        const char *path;
    } cases[] = {{QD_STREAM_EXISTING, missing.c_str()},
                 {QD_STREAM_EXISTING | QD_STREAM_BINARY, missing.c_str()},
                 {0, missing.c_str()},
                 {QD_STREAM_WRITE, "/nonexistent-dir/x.txt"},
                 {QD_STREAM_EXISTING, ""},
                 {QD_STREAM_EXISTING, nullptr}};
    for (const auto &c : cases)
        EXPECT_NE(H.openStream(&ctx, c.flags, c.path), 0) << c.flags << " " << (c.path ? c.path : "null");
    EXPECT_EQ(ctx.stream, nullptr);
}

TEST(HostStream, PrintWithoutStreamIsCaptured) {
    Context ctx;
    std::string longText(2000, 'z');
    EXPECT_EQ(H.print(&ctx, "%d-%s", 5, longText.c_str()), 2002);
    EXPECT_EQ(ctx.output, "5-" + longText);
}

TEST(HostFiles, FindFile) {
    struct Case {
        const char *dir;
        const char *name;
        int size;
        const char *want; // nullptr: refused
    };
    const Case cases[] = {
        {"/data", "a.xls", 64, "/data/a.xls"},
        {"/data/", "a.xls", 64, "/data/a.xls"},
        {"/data", "/abs/b.csv", 64, "/abs/b.csv"},
        {"", "c.csv", 64, "c.csv"},
        {"/data", "", 64, nullptr},
        {"/data", nullptr, 64, nullptr},
        {"/data", "a.xls", 12, "/data/a.xls"}, // exactly fits
        {"/data", "a.xls", 11, nullptr},
    };
    for (const Case &c : cases) {
        Context ctx(c.dir);
        char out[64];
        int rc = H.findFile(&ctx, c.name, out, c.size, 4);
        if (c.want) {
            ASSERT_EQ(rc, 0) << c.want;
            EXPECT_STREQ(out, c.want);
        } else {
            EXPECT_NE(rc, 0);
        }
    }
}

TEST(HostMessages, CapturedInOrder) {
    Context ctx;
    H.dispatchError(&ctx, "SHEET: Wrong result value at [R%dC%d].\n", 3, 14);
    H.dispatchError(&ctx, "plain %s", "text");
    H.reportError(&ctx, "access denied", 1);
    H.reportError(&ctx, "failed to load data", 5);
    EXPECT_EQ(ctx.errors,
              (std::vector<std::string>{"SHEET: Wrong result value at [R3C14].\n", "plain text"}));
    EXPECT_EQ(ctx.allErrors(), "SHEET: Wrong result value at [R3C14].\nplain text");
    ASSERT_EQ(ctx.reports.size(), 2u);
    EXPECT_EQ(ctx.reports[1], (std::pair<std::string, int>{"failed to load data", 5}));
    EXPECT_NE(H.messageDir(), nullptr);
}

TEST(HostContext, ParametersAndTextHandles) {
    Context ctx;
    const char *fmt = nullptr;
    int fin = -1;
    ASSERT_EQ(H.getParameter(&ctx, QD_PARAM_REALFMT, &fmt), 0);
    EXPECT_STREQ(fmt, "%.15g");
    ASSERT_EQ(H.getParameter(&ctx, QD_PARAM_FINALISE, &fin), 0);
    EXPECT_EQ(fin, 1);
    ctx.realFormat = "%g";
    ctx.finalise = false;
    H.getParameter(&ctx, QD_PARAM_REALFMT, &fmt);
    H.getParameter(&ctx, QD_PARAM_FINALISE, &fin);
    EXPECT_STREQ(fmt, "%g");
    EXPECT_EQ(fin, 0);
    EXPECT_NE(H.getParameter(&ctx, 2, &fin), 0);

    std::string text = "same";
    const char *a = H.textHandle(&ctx, text.c_str());
    text = "changed";
    const char *b = H.textHandle(&ctx, "same");
    EXPECT_EQ(a, b);
    EXPECT_STREQ(a, "same");
    EXPECT_NE(H.textHandle(&ctx, "other"), a);
}

TEST(HostModule, MissingModule) {
    Host host(scratch("missing-module.so"));
    EXPECT_FALSE(host.loaded());
    EXPECT_FALSE(host.loadError().empty());
    EXPECT_EQ(host.driver("csv"), nullptr);
    Context ctx;
    EXPECT_EQ(host.open(ctx, "csv", "x.csv", false), nullptr);
}

TEST(HostModule, InitAndServices) {
    Host host;
    // The entry may still be a stub that answers non-zero; a module that
    // cannot be loaded at all is a fault.
    if (host.loadError().rfind("qdsheet_init answered", 0) == 0)
        GTEST_SKIP() << "module entry not ready: " << host.loadError();
    ASSERT_TRUE(host.loaded()) << host.loadError();
    EXPECT_EQ(host.version(), 5013);
    EXPECT_EQ(host.interfaceVersion(), 1004000);

    const int tags[] = {QD_SRV_CHECK_VERSION, QD_SRV_FINISH, QD_SRV_DRIVERS, QD_SRV_SET_FLAGS,
                        QD_SRV_ADJUST_VERSION};
    for (int tag : tags)
        EXPECT_NE(host.service(tag), nullptr) << tag;

    const struct {
        int version;
        bool refused;
    } checks[] = {{999999, true}, {1000000, false}, {1004000, false}, {1004001, true}};
    for (const auto &c : checks)
        EXPECT_EQ(host.checkVersion(c.version) != 0, c.refused) << c.version;

    const struct {
        int flag, before, after;
    } adjusts[] = {{0, 999999, 1000000}, {0, 5, 1000000}, {0, 1000001, 1000001},
                   {1, 999999, 999999}};
    for (const auto &a : adjusts) {
        int v = a.before;
        host.adjustVersion(a.flag, &v);
        EXPECT_EQ(v, a.after) << a.flag << " " << a.before;
    }
    EXPECT_EQ(host.setFlags(4), 0);
    EXPECT_EQ(host.setFlags(0), 0);

    const char *book = "[noindex|partndx;][grow;][skiph[+];][bufsize=#;]filename";
    const char *text = "[noindex|partndx;][grow;][skiph[+];][bufsize=#;][fsep=c;][dsep=c;]"
                       "[true=s;][false=s;]filename";
    const struct {
        const char *name;
        const char *info;
    } drivers[] = {{"xls", book}, {"xlsx", book}, {"csv", text}};
    for (const auto &d : drivers) {
        SCOPED_TRACE(d.name);
        ASSERT_NE(host.driver(d.name), nullptr);
        for (int tag = QD_DRV_OPEN; tag <= QD_DRV_TRANSFER_OUT; ++tag)
            EXPECT_NE(host.driverOp(d.name, tag), nullptr) << tag;
        ASSERT_NE(host.driverInfo(d.name), nullptr);
        EXPECT_STREQ(host.driverInfo(d.name), d.info);
    }
    EXPECT_EQ(host.driver("ods"), nullptr);
}

} // namespace

namespace {

// The helpers that open, transfer and close, over the "csv" driver.
TEST(HostModule, CsvRoundTripThroughHelpers) {
    Host host;
    if (host.loadError().rfind("qdsheet_init answered", 0) == 0)
        GTEST_SKIP() << "module entry not ready: " << host.loadError();
    ASSERT_TRUE(host.loaded()) << host.loadError();
    std::string path = scratch("roundtrip.csv");
    std::string dir = path.substr(0, path.rfind('/'));

    Context out(dir);
    Set *names = out.newSet(QD_STRING, {qdStr("north"), qdStr("south")});
    Array *values = out.newArray(QD_REAL, {names});
    values->set({0}, qdReal(1.25));
    values->set({1}, qdReal(-3));
    int mode = 0;
    void *file = host.open(out, "csv", "roundtrip.csv", true, &mode);
    ASSERT_NE(file, nullptr) << out.allErrors();
    EXPECT_EQ(mode & (QD_MODE_OPENED | QD_MODE_PENDING | QD_MODE_WRITE),
              QD_MODE_OPENED | QD_MODE_WRITE);
    std::vector<Item> items{{"[A1:B2]", values->type(), values}};
    EXPECT_EQ(host.transferOut(out, "csv", file, items), 0) << out.allErrors();
    EXPECT_EQ(host.close(out, "csv", file), 0);

    Context in(dir);
    Set *readNames = in.newSet(QD_STRING);
    Array *readValues = in.newArray(QD_REAL, {readNames});
    int counter = -1;
    ASSERT_EQ(host.readItem(in, "csv", "roundtrip.csv", "[A1:B2]", readValues->type(), readValues,
                            &counter),
              0)
        << in.allErrors();
    EXPECT_EQ(counter, 2);
    EXPECT_EQ(readNames->texts(), names->texts());
    EXPECT_EQ(readValues->entries(), values->entries());
    EXPECT_EQ(in.beginLoads(), in.endLoads());
    EXPECT_EQ(in.streamsOpened, in.streamsClosed);

    Context missing(dir);
    EXPECT_EQ(host.readItem(missing, "csv", "absent.csv", "[A1:B2]", readValues->type(),
                            readValues),
              -1);
}

} // namespace
