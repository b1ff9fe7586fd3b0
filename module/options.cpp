// parseOptions: the options at the front of a file name or a range label.
#include "sheetfile.h"

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <strings.h>

namespace {

struct FlagOption {
    const char *text;
    unsigned bits;
};

// Longer texts first where one is a prefix of another ("skiph+;" / "skiph;"
// differ at the '+', so order does not matter there, but keep it explicit).
const FlagOption kFlagOptions[] = {
    {"grow;", OPT_GROW},
    {"noindex;", OPT_NOINDEX},
    {"partndx;", OPT_PARTNDX},
    {"partindex;", OPT_PARTNDX},
    {"skiph+;", OPT_SKIPH | OPT_SKIPH_NEW},
    {"skiph;", OPT_SKIPH},
};

const int kDefaultBufferSize = 2048;
// A larger request is cut to 1 GiB so that the shift cannot overflow.
const long kMaxBufferKiB = 1L << 20;
const size_t kMaxBoolText = 31;

bool startsWith(const char *p, const char *word) { return strncasecmp(p, word, strlen(word)) == 0; }

// Skips one ';'; answers false when there is none (the parse stops).
bool skipSemicolon(const char **p) {
    if (**p != ';') return false;
    ++*p;
    return true;
}

} // namespace

unsigned parseOptions(unsigned flags, const char **text, int *bufferSize, int *fieldSeparator,
                      int *decimalSeparator, char *trueText, char *falseText) {
    if (!text || !*text) return flags;
    const char *p = *text;
    for (;;) {
        bool matched = false;
        for (const FlagOption &o : kFlagOptions) {
            if (startsWith(p, o.text)) {
                flags |= o.bits;
                p += strlen(o.text);
                matched = true;
                break;
            }
        }
        if (matched) continue;

        if (startsWith(p, "bufsize=") && isdigit(static_cast<unsigned char>(p[8]))) {
            char *end = nullptr;
            long n = strtol(p + 8, &end, 0);
            p = end;
            if (bufferSize) {
                if (n > kMaxBufferKiB) n = kMaxBufferKiB;
                *bufferSize = n > 0 ? static_cast<int>(n << 10) : kDefaultBufferSize;
            }
            if (!skipSemicolon(&p)) break;
            continue;
        }

        int *sep = nullptr;
        if (startsWith(p, "dsep="))
            sep = decimalSeparator;
        else if (startsWith(p, "fsep="))
            sep = fieldSeparator;
        if (sep && p[5] != '\0') {
            *sep = static_cast<unsigned char>(p[5]);
            p += 6;
            if (!skipSemicolon(&p)) break;
            continue;
        }

        char *boolText = nullptr;
        size_t skip = 0;
        if (startsWith(p, "true=")) {
            boolText = trueText;
            skip = 5;
        } else if (startsWith(p, "false=")) {
            boolText = falseText;
            skip = 6;
        }
        if (boolText) {
            p += skip;
            const char *semi = strchr(p, ';');
            size_t len = semi ? static_cast<size_t>(semi - p) : 0;
            if (!semi || len > kMaxBoolText) break; // the value becomes the file name
            memcpy(boolText, p, len);
            boolText[len] = '\0';
            p = semi + 1;
            continue;
        }
        break;
    }
    *text = p;
    return flags;
}
