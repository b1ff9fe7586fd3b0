/*
 * qdnls.h - message catalogues and path encodings for I/O modules.
 *
 * A module opens one message domain at start-up and translates every message
 * text through it.  Untranslated texts come back unchanged, so a missing
 * catalogue is never an error.
 */
#ifndef QDNLS_H
#define QDNLS_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct qdnls_domain qdnls_domain;

/* Opens the catalogue `domain` found under `dir` (may be NULL: the system's
 * default place).  Never NULL except when out of memory. */
qdnls_domain *QDNLSopenmsgdom(const char *domain, const char *dir);
void QDNLSclosemsgdom(qdnls_domain *dom);
/* The translation of text in the domain, or text itself.  NULL domain or
 * NULL text pass through unchanged. */
const char *QDNLSgettext(qdnls_domain *dom, const char *text);

/* Encodings for QDNLSconvstrto. */
#define QDNLS_ENC_UTF8 -1
#define QDNLS_ENC_SYSTEM -3 /* the encoding of the current C locale */

/* Converts the UTF-8 text `in` to `encoding` into out (size bytes, always
 * zero-terminated).  Answers the length written, or -1 when the text cannot
 * be converted or does not fit; out then holds the text unchanged as far as
 * it fits. */
int QDNLSconvstrto(int encoding, const char *in, char *out, size_t size);

#ifdef __cplusplus
}
#endif
#endif
