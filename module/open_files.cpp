// The module's globals and the shared list of open files.  The list and the
// reference counts are guarded by one mutex, held only for list work.
#include "qdnls.h"
#include "sheetfile.h"

#include <cstdlib>
#include <cstring>

const qd_host *g_host = nullptr;
void *g_msgdom = nullptr;
pthread_mutex_t g_fileListMutex = PTHREAD_MUTEX_INITIALIZER;
SheetFile *g_fileList = nullptr;
unsigned g_moduleFlags = 0;

const char *tr(const char *text) {
    return QDNLSgettext(static_cast<qdnls_domain *>(g_msgdom), text);
}

namespace {

// The caller holds the mutex.
SheetFile *findLocked(qd_context *ctx, const char *path, const SheetOps *ops) {
    for (SheetFile *f = g_fileList; f; f = f->next)
        if (f->context == ctx && f->ops == ops && strcmp(f->path, path) == 0) return f;
    return nullptr;
}

} // namespace

SheetFile *findOpenFile(qd_context *ctx, const char *path, const SheetOps *ops) {
    pthread_mutex_lock(&g_fileListMutex);
    SheetFile *f = findLocked(ctx, path, ops);
    pthread_mutex_unlock(&g_fileListMutex);
    return f;
}

int shareOpenFile(qd_context *ctx, const char *path, const SheetOps *ops, int *mode,
                  SheetFile **out) {
    *out = nullptr;
    pthread_mutex_lock(&g_fileListMutex);
    SheetFile *f = findLocked(ctx, path, ops);
    bool refused = false;
    if (f) {
        if ((*mode & QD_MODE_WRITE) && !(f->flags & OPT_WRITING))
            refused = true;
        else
            ++f->references;
    }
    pthread_mutex_unlock(&g_fileListMutex);
    if (!f) return 0;
    *mode &= ~QD_MODE_PENDING;
    if (refused)
        g_host->reportError(ctx, tr("file already open for reading only"), 2);
    else
        *out = f;
    return 1;
}

SheetFile *allocSheetFile(const char *path, int bufferSize) {
    if (bufferSize < 1) return nullptr;
    size_t pathLen = strlen(path) + 1;
    size_t total = sizeof(SheetFile) + static_cast<size_t>(bufferSize) + pathLen;
    SheetFile *f = static_cast<SheetFile *>(malloc(total));
    if (!f) return nullptr;
    memset(f, 0, sizeof(SheetFile));
    f->bufferSize = bufferSize;
    f->buffer = reinterpret_cast<char *>(f + 1);
    f->buffer[0] = '\0';
    f->path = f->buffer + bufferSize;
    memcpy(f->path, path, pathLen);
    f->references = 1;
    return f;
}

void linkOpenFile(SheetFile *file) {
    pthread_mutex_lock(&g_fileListMutex);
    file->previous = nullptr;
    file->next = g_fileList;
    if (g_fileList) g_fileList->previous = file;
    g_fileList = file;
    pthread_mutex_unlock(&g_fileListMutex);
}

bool releaseOpenFile(SheetFile *file) {
    pthread_mutex_lock(&g_fileListMutex);
    bool last = --file->references <= 0;
    if (last) {
        if (file->previous)
            file->previous->next = file->next;
        else if (g_fileList == file)
            g_fileList = file->next;
        if (file->next) file->next->previous = file->previous;
        file->next = file->previous = nullptr;
    }
    pthread_mutex_unlock(&g_fileListMutex);
    return last;
}

int findFilePath(qd_context *ctx, const char *name, int mode, char *path) {
    path[0] = '\0';
    if (!name || !*name ||
        g_host->findFile(ctx, name, path, QD_PATH_MAX, (mode & QD_MODE_WRITE) | 4) != 0) {
        g_host->reportError(ctx, tr("access denied"), 1);
        return 1;
    }
    path[QD_PATH_MAX - 1] = '\0';
    return 0;
}
