// Helpers of the tests that go through the loaded module: scratch files, the
// module itself, shared record and external types and builders of index
// sets.
#ifndef TOUT_SUPPORT_H
#define TOUT_SUPPORT_H

#include "refhost.h"

#include <string>
#include <vector>

namespace tout {

// A scratch file path unique to this process and name.
std::string scratch(const std::string &name);
std::string slurp(const std::string &path);
void spit(const std::string &path, const std::string &text);

// The module loaded through the reference host, once per process.
qdhost::Host &host();

qdhost::Set *textSet(qdhost::Context &ctx, const std::vector<std::string> &items,
                     qdhost::SetOptions opt = {});
qdhost::Set *intSet(qdhost::Context &ctx, const std::vector<qd_int> &items,
                    qdhost::SetOptions opt = {});

// Record types "point" (x, y reals) and "shipment" (from, to, qty, express),
// and a shipment record filled in.
qd_type pointType();
qd_type shipmentType();
qdhost::Record *shipment(qdhost::Context &ctx, const char *from, const char *to, qd_int qty,
                         bool express);
// An external type without a text form.
qd_type opaqueType();

} // namespace tout

#endif
