// Message catalogues through the C library's gettext, and UTF-8 path
// conversion through iconv.
#include "qdnls.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iconv.h>
#include <langinfo.h>
#include <libintl.h>
#include <string>

struct qdnls_domain {
    std::string name;
};

extern "C" qdnls_domain *QDNLSopenmsgdom(const char *domain, const char *dir) {
    if (!domain) return nullptr;
    auto *dom = new (std::nothrow) qdnls_domain{domain};
    if (!dom) return nullptr;
    if (dir && *dir) bindtextdomain(domain, dir);
    bind_textdomain_codeset(domain, "UTF-8");
    return dom;
}

extern "C" void QDNLSclosemsgdom(qdnls_domain *dom) { delete dom; }

extern "C" const char *QDNLSgettext(qdnls_domain *dom, const char *text) {
    if (!dom || !text || !*text) return text;
    return dgettext(dom->name.c_str(), text);
}

static int copyUnchanged(const char *in, char *out, size_t size, int result) {
    if (size == 0) return -1;
    size_t n = std::strlen(in);
    if (n >= size) {
        n = size - 1;
        result = -1;
    }
    std::memcpy(out, in, n);
    out[n] = 0;
    return result < 0 ? -1 : static_cast<int>(n);
}

extern "C" int QDNLSconvstrto(int encoding, const char *in, char *out, size_t size) {
    if (!in || !out) return -1;
    const char *target = nullptr;
    if (encoding == QDNLS_ENC_SYSTEM) target = nl_langinfo(CODESET);
    if (!target || !*target || encoding == QDNLS_ENC_UTF8 || std::strcmp(target, "UTF-8") == 0)
        return copyUnchanged(in, out, size, 0);
    iconv_t cd = iconv_open(target, "UTF-8");
    if (cd == reinterpret_cast<iconv_t>(-1)) return copyUnchanged(in, out, size, 0);
    char *src = const_cast<char *>(in);
    size_t srcLeft = std::strlen(in);
    char *dst = out;
    size_t dstLeft = size ? size - 1 : 0;
    size_t rc = iconv(cd, &src, &srcLeft, &dst, &dstLeft);
    iconv_close(cd);
    if (rc == static_cast<size_t>(-1) || size == 0) return copyUnchanged(in, out, size, -1);
    *dst = 0;
    return static_cast<int>(dst - out);
}
