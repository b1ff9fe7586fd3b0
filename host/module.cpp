// Host: loads the module with dlopen, keeps its description, and calls its
// services and drivers.
#include "refhost.h"

#include <cstring>
#include <dlfcn.h>

namespace qdhost {

Host::Host(const std::string &path) {
    _handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!_handle) {
        const char *e = dlerror();
        _loadError = e ? e : "dlopen failed";
        return;
    }
    auto init = reinterpret_cast<qdsheet_init_fn>(dlsym(_handle, "qdsheet_init"));
    if (!init) {
        _loadError = "qdsheet_init not found in " + path;
        return;
    }
    _interfaceVersion = 1004000;
    _initResult = init(hostTable(), &_version, &_interfaceVersion, &_desc);
    if (_initResult != 0) {
        _loadError = "qdsheet_init answered " + std::to_string(_initResult);
        _desc = nullptr;
    } else if (!_desc) {
        _loadError = "qdsheet_init gave no description";
    }
}

Host::~Host() {
    if (loaded()) {
        if (auto finish =
                reinterpret_cast<void (*)(void)>(const_cast<void *>(service(QD_SRV_FINISH))))
            finish();
    }
    if (_handle) dlclose(_handle);
}

const void *Host::service(int tag) const {
    if (!_desc || !_desc->services) return nullptr;
    for (int i = 0; i < _desc->nservices; ++i)
        if (_desc->services[i].tag == tag) return _desc->services[i].op;
    return nullptr;
}

int Host::checkVersion(int version) const {
    auto fn = reinterpret_cast<int (*)(int)>(const_cast<void *>(service(QD_SRV_CHECK_VERSION)));
    return fn ? fn(version) : -1;
}

int Host::setFlags(int flags) const {
    auto fn = reinterpret_cast<int (*)(int)>(const_cast<void *>(service(QD_SRV_SET_FLAGS)));
    return fn ? fn(flags) : -1;
}

void Host::adjustVersion(int flag, int *version) const {
    auto fn =
        reinterpret_cast<void (*)(int, int *)>(const_cast<void *>(service(QD_SRV_ADJUST_VERSION)));
    if (fn) fn(flag, version);
}

const qd_driver *Host::driver(const std::string &name) const {
    auto list = static_cast<const qd_driver *>(service(QD_SRV_DRIVERS));
    for (; list && list->name; ++list)
        if (name == list->name) return list;
    return nullptr;
}

const void *Host::driverOp(const std::string &name, int tag) const {
    const qd_driver *d = driver(name);
    for (const qd_driver_op *op = d ? d->ops : nullptr; op && op->tag; ++op)
        if (op->tag == tag) return op->op;
    return nullptr;
}

const char *Host::driverInfo(const std::string &name) const {
    return static_cast<const char *>(driverOp(name, QD_DRV_INFO));
}

template <class F> static F opOf(const Host &h, const std::string &drv, int tag) {
    return reinterpret_cast<F>(const_cast<void *>(h.driverOp(drv, tag)));
}

void *Host::open(Context &ctx, const std::string &drv, const std::string &name, bool write,
                 int *modeOut) const {
    int mode = QD_MODE_PENDING | (write ? QD_MODE_WRITE : 0);
    void *file = nullptr;
    if (auto fn = opOf<qd_open_fn>(*this, drv, QD_DRV_OPEN)) file = fn(&ctx, &mode, name.c_str());
    if (modeOut) *modeOut = mode;
    return file;
}

int Host::close(Context &ctx, const std::string &drv, void *file) const {
    auto fn = opOf<qd_close_fn>(*this, drv, QD_DRV_CLOSE);
    return fn ? fn(&ctx, file) : -1;
}

int Host::transferIn(Context &ctx, const std::string &drv, void *file, int count,
                     const char **labels, const qd_type *types, void **values,
                     int *counters) const {
    auto fn = opOf<qd_transfer_in_fn>(*this, drv, QD_DRV_TRANSFER_IN);
    return fn ? fn(&ctx, file, count, labels, types, values, counters) : -1;
}

int Host::transferOut(Context &ctx, const std::string &drv, void *file, int count,
                      const char **labels, const qd_type *types, void **values) const {
    auto fn = opOf<qd_transfer_out_fn>(*this, drv, QD_DRV_TRANSFER_OUT);
    return fn ? fn(&ctx, file, count, labels, types, values) : -1;
}

namespace {
struct Columns {
    std::vector<const char *> labels;
    std::vector<qd_type> types;
    std::vector<void *> values;
    std::vector<int> counters;
    explicit Columns(const std::vector<Item> &items) {
        for (const Item &it : items) {
            labels.push_back(it.label.c_str());
            types.push_back(it.type);
            values.push_back(it.value);
            counters.push_back(0);
        }
    }
};
} // namespace

int Host::transferIn(Context &ctx, const std::string &drv, void *file,
                     std::vector<Item> &items) const {
    Columns c(items);
    int rc = transferIn(ctx, drv, file, (int)items.size(), c.labels.data(), c.types.data(),
                        c.values.data(), c.counters.data());
    for (size_t i = 0; i < items.size(); ++i) items[i].counter = c.counters[i];
    return rc;
}

int Host::transferOut(Context &ctx, const std::string &drv, void *file,
                      std::vector<Item> &items) const {
    Columns c(items);
    return transferOut(ctx, drv, file, (int)items.size(), c.labels.data(), c.types.data(),
                       c.values.data());
}

int Host::read(Context &ctx, const std::string &drv, const std::string &name,
               std::vector<Item> &items) const {
    void *file = open(ctx, drv, name, false);
    if (!file) return -1;
    int rc = transferIn(ctx, drv, file, items);
    int rcClose = close(ctx, drv, file);
    return rc != 0 ? rc : rcClose;
}

int Host::write(Context &ctx, const std::string &drv, const std::string &name,
                std::vector<Item> &items) const {
    void *file = open(ctx, drv, name, true);
    if (!file) return -1;
    int rc = transferOut(ctx, drv, file, items);
    int rcClose = close(ctx, drv, file);
    return rc != 0 ? rc : rcClose;
}

int Host::readItem(Context &ctx, const std::string &drv, const std::string &name,
                   const std::string &label, qd_type type, void *value, int *counter) const {
    std::vector<Item> items{{label, type, value, 0}};
    int rc = read(ctx, drv, name, items);
    if (counter) *counter = items[0].counter;
    return rc;
}

int Host::writeItem(Context &ctx, const std::string &drv, const std::string &name,
                    const std::string &label, qd_type type, void *value) const {
    std::vector<Item> items{{label, type, value, 0}};
    return write(ctx, drv, name, items);
}

} // namespace qdhost
