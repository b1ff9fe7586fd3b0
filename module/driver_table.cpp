// The module description: five services, and the driver table with the
// "xls", "xlsx" and "csv" drivers, seven operations each.
#include "qdnls.h"
#include "sheetfile.h"

namespace {

// Versions of the host interface this module works with.
const int kOldestInterface = 1000000;
const int kNewestInterface = 1004000;

// Non-zero refuses the host's interface version.
int checkVersion(int version) { return version < kOldestInterface || version > kNewestInterface; }

void finish() {
    pthread_mutex_destroy(&g_fileListMutex);
    QDNLSclosemsgdom(static_cast<qdnls_domain *>(g_msgdom));
    g_msgdom = nullptr;
}

// Only bit 2 of the host's flags concerns the module.
int setFlags(int flags) {
    g_moduleFlags = static_cast<unsigned>(flags) & 4u;
    return 0;
}

void adjustVersion(int flag, int *version) {
    if (flag == 0 && version && *version <= kOldestInterface - 1) *version = kOldestInterface;
}

const char kBookInfo[] = "[noindex|partndx;][grow;][skiph[+];][bufsize=#;]filename";
const char kTextInfo[] =
    "[noindex|partndx;][grow;][skiph[+];][bufsize=#;][fsep=c;][dsep=c;][true=s;][false=s;]filename";

#define QD_OP(f) reinterpret_cast<const void *>(f)

const qd_driver_op kXlsOps[] = {
    {QD_DRV_OPEN, QD_OP(openBook)},
    {QD_DRV_CLOSE, QD_OP(closeBook)},
    {QD_DRV_UNSUPPORTED1, QD_OP(notSupported)},
    {QD_DRV_UNSUPPORTED2, QD_OP(notSupported)},
    {QD_DRV_TRANSFER_IN, QD_OP(transferIn)},
    {QD_DRV_TRANSFER_OUT, QD_OP(transferOut)},
    {QD_DRV_INFO, kBookInfo},
    {0, nullptr},
};

const qd_driver_op kXlsxOps[] = {
    {QD_DRV_OPEN, QD_OP(openXmlBook)},
    {QD_DRV_CLOSE, QD_OP(closeBook)},
    {QD_DRV_UNSUPPORTED1, QD_OP(notSupported)},
    {QD_DRV_UNSUPPORTED2, QD_OP(notSupported)},
    {QD_DRV_TRANSFER_IN, QD_OP(transferIn)},
    {QD_DRV_TRANSFER_OUT, QD_OP(transferOut)},
    {QD_DRV_INFO, kBookInfo},
    {0, nullptr},
};

const qd_driver_op kCsvOps[] = {
    {QD_DRV_OPEN, QD_OP(openText)},
    {QD_DRV_CLOSE, QD_OP(closeText)},
    {QD_DRV_UNSUPPORTED1, QD_OP(notSupported)},
    {QD_DRV_UNSUPPORTED2, QD_OP(notSupported)},
    {QD_DRV_TRANSFER_IN, QD_OP(transferIn)},
    {QD_DRV_TRANSFER_OUT, QD_OP(transferOut)},
    {QD_DRV_INFO, kTextInfo},
    {0, nullptr},
};

const qd_driver kDrivers[] = {
    {"xls", kXlsOps},
    {"xlsx", kXlsxOps},
    {"csv", kCsvOps},
    {nullptr, nullptr},
};

const qd_service kServices[] = {
    {QD_SRV_DRIVERS, kDrivers},
    {QD_SRV_CHECK_VERSION, QD_OP(checkVersion)},
    {QD_SRV_FINISH, QD_OP(finish)},
    {QD_SRV_SET_FLAGS, QD_OP(setFlags)},
    {QD_SRV_ADJUST_VERSION, QD_OP(adjustVersion)},
};

#undef QD_OP

} // namespace

extern const qd_module_desc g_moduleDescription;
const qd_module_desc g_moduleDescription = {
    0,
    nullptr,
    0,
    nullptr,
    0,
    nullptr,
    static_cast<int>(sizeof kServices / sizeof kServices[0]),
    kServices,
};

int notSupported(qd_context *ctx, void *, ...) {
    g_host->reportError(ctx, tr("operation not supported"), 1);
    return -1;
}
