#include "support/tout_support.h"

#include <fstream>
#include <sstream>
#include <unistd.h>

namespace tout {

std::string scratch(const std::string &name) {
    return std::string(TABRIX_TEST_TMP) + "/tout_" + std::to_string(getpid()) + "_" + name;
}

std::string slurp(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

void spit(const std::string &path, const std::string &text) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << text;
}

qdhost::Host &host() {
    static qdhost::Host loaded;
    return loaded;
}

qdhost::Set *textSet(qdhost::Context &ctx, const std::vector<std::string> &items,
                     qdhost::SetOptions opt) {
    qdhost::Set *set = ctx.newSet(QD_STRING, opt);
    for (const std::string &item : items) set->add(qdhost::qdStr(item.c_str()));
    return set;
}

qdhost::Set *intSet(qdhost::Context &ctx, const std::vector<qd_int> &items,
                    qdhost::SetOptions opt) {
    qdhost::Set *set = ctx.newSet(QD_INT, opt);
    for (qd_int item : items) set->add(qdhost::qdInt(item));
    return set;
}

qd_type pointType() {
    return qdhost::registerRecordType("tout_point", {{"x", QD_REAL}, {"y", QD_REAL}});
}

qd_type shipmentType() {
    return qdhost::registerRecordType(
        "tout_shipment",
        {{"from", QD_STRING}, {"to", QD_STRING}, {"qty", QD_INT}, {"express", QD_BOOL}});
}

qdhost::Record *shipment(qdhost::Context &ctx, const char *from, const char *to, qd_int qty,
                         bool express) {
    qdhost::Record *r = ctx.newRecord(shipmentType());
    r->set("from", qdhost::qdStr(from));
    r->set("to", qdhost::qdStr(to));
    r->set("qty", qdhost::qdInt(qty));
    r->set("express", qdhost::qdBool(express));
    return r;
}

qd_type opaqueType() {
    qdhost::ExternalType t;
    t.textual = false;
    return qdhost::registerExternalType("tout_opaque", t);
}

} // namespace tout
