// The shipped libraries export what they should and nothing else.
#include <gtest/gtest.h>

#include <dlfcn.h>

TEST(Layout, ModuleExportsOnlyItsEntry) {
    void *h = dlopen(QDSHEET_MODULE_PATH, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(h, nullptr) << dlerror();
    EXPECT_NE(dlsym(h, "qdsheet_init"), nullptr);
    EXPECT_EQ(dlsym(h, "parseOptions"), nullptr);
    EXPECT_EQ(dlsym(h, "_Z12parseOptionsjPPKcPiS2_S2_PcS3_"), nullptr);
    dlclose(h);
}
