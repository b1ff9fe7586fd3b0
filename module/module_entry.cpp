// qdsheet_init: the module's one exported entry.
#include "sheetfile.h"

extern "C" __attribute__((visibility("default"))) int qdsheet_init(const qd_host *host, int *version,
                                                                  int *interfaceVersion,
                                                                  const qd_module_desc **desc) {
    (void)host;
    (void)version;
    (void)interfaceVersion;
    (void)desc;
    return 1;
}
