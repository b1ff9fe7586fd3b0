// Loading the module through the reference host: its one export, versions,
// services and the report of an unsupported operation.
#include "refhost.h"
#include "support/tout_support.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <string>

using namespace qdhost;
using tout::host;

namespace {

TEST(ModuleEntry, ExportsOnlyTheEntry) {
    void *h = dlopen(QDSHEET_MODULE_PATH, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(h, nullptr) << dlerror();
    EXPECT_NE(dlsym(h, "qdsheet_init"), nullptr);
    for (const char *hidden : {"_Z12parseOptionsjPPKcPiS2_S2_PcS3_", "g_host", "openText",
                               "_Z8openTextP10qd_contextPiPKc"})
        EXPECT_EQ(dlsym(h, hidden), nullptr) << hidden;
    dlclose(h);
}

TEST(ModuleEntry, VersionServices) {
    const struct {
        int version;
        bool refused;
    } checks[] = {{999999, true},   {1000000, false}, {1002000, false},
                  {1004000, false}, {1004001, true},  {0, true}};
    for (const auto &c : checks)
        EXPECT_EQ(host().checkVersion(c.version) != 0, c.refused) << c.version;

    const struct {
        int flag, before, after;
    } adjusts[] = {{0, 999999, 1000000},  {0, 5, 1000000},     {0, 1000000, 1000000},
                   {0, 1004000, 1004000}, {1, 999999, 999999}, {2, 5, 5}};
    for (const auto &a : adjusts) {
        int v = a.before;
        host().adjustVersion(a.flag, &v);
        EXPECT_EQ(v, a.after) << a.flag << " " << a.before;
    }
    EXPECT_EQ(host().setFlags(0xFF), 0);
    EXPECT_NE(host().service(QD_SRV_FINISH), nullptr);
}

TEST(ModuleEntry, NotSupportedReportsCodeOne) {
    Context ctx;
    auto fn = reinterpret_cast<qd_unsupported_fn>(
        const_cast<void *>(host().driverOp("csv", QD_DRV_UNSUPPORTED1)));
    ASSERT_NE(fn, nullptr);
    EXPECT_EQ(fn(&ctx, nullptr, 1, 2), -1);
    ASSERT_EQ(ctx.reports.size(), 1u);
    EXPECT_EQ(ctx.reports[0], std::make_pair(std::string("operation not supported"), 1));
}

} // namespace
