// qdsheet_init: the module's one exported entry.  It records the host table,
// answers the module's versions and description, and sets up the open-file
// mutex and the message domain.
#include "qdnls.h"
#include "sheetfile.h"

namespace {
const int kModuleVersion = 5013;
const int kInterfaceVersion = 1004000;
} // namespace

extern const qd_module_desc g_moduleDescription; // driver_table.cpp

extern "C" __attribute__((visibility("default"))) int qdsheet_init(const qd_host *host,
                                                                   int *version,
                                                                   int *interfaceVersion,
                                                                   const qd_module_desc **desc) {
    g_host = host;
    if (version) *version = kModuleVersion;
    if (interfaceVersion) *interfaceVersion = kInterfaceVersion;
    if (desc) *desc = &g_moduleDescription;
    pthread_mutex_init(&g_fileListMutex, nullptr);
    const char *dir = (host && host->messageDir) ? host->messageDir() : nullptr;
    g_msgdom = QDNLSopenmsgdom("qdsheet", dir);
    return 0;
}
