// The order check of a node's children: a greedy walk of the content model
// over the sequence of child declarations.  The published schemas are
// deterministic (each child names its particle unambiguously), so no
// backtracking is needed.
#include <vector>

#include "ooxml/binding/engine/context.h"

namespace binding {

namespace {

enum e_match { NOMATCH, MATCHED, BROKEN };

// A child's declaration, or -1 for an element of an xs:any slot.
class c_matcher {
public:
    c_matcher(const s_schema_set &set, const std::vector<int32_t> &seq) : _set(set), _seq(seq) {}

    // Matches particle `p` with its occurrence bounds.
    e_match match(int32_t p) {
        const s_particle &q = _set.particles[p];
        uint32_t count = 0;
        while (count < q.max) {
            const size_t save = _pos;
            const e_match r = once(q);
            if (r == BROKEN) return BROKEN;
            if (r == NOMATCH) break;
            ++count;
            if (_pos == save) // matched empty: the remaining occurrences may be empty too
                return MATCHED;
        }
        if (count >= q.min) return MATCHED;
        return count == 0 ? NOMATCH : BROKEN;
    }

    size_t _pos = 0;

private:
    e_match once(const s_particle &q) {
        switch (q.kind) {
        case P_ELEMENT:
            if (_pos < _seq.size() && _seq[_pos] == q.a) {
                ++_pos;
                return MATCHED;
            }
            return NOMATCH;
        case P_ANY:
            if (_pos < _seq.size() && _seq[_pos] == -1) {
                ++_pos;
                return MATCHED;
            }
            return NOMATCH;
        case P_SEQUENCE: {
            const size_t start = _pos;
            for (int32_t i = 0; i < q.b; ++i) {
                const e_match r = match(_set.kids[q.a + i]);
                if (r == BROKEN) return BROKEN;
                if (r == NOMATCH) return _pos == start ? NOMATCH : BROKEN;
            }
            return MATCHED;
        }
        case P_CHOICE: {
            bool empty = false;
            for (int32_t i = 0; i < q.b; ++i) {
                const size_t save = _pos;
                const e_match r = match(_set.kids[q.a + i]);
                if (r == BROKEN) return BROKEN;
                if (r == MATCHED && _pos > save) return MATCHED;
                empty |= r == MATCHED;
            }
            return empty ? MATCHED : NOMATCH;
        }
        case P_ALL: {
            std::vector<bool> used(q.b, false);
            const size_t start = _pos;
            for (bool progress = true; progress;) {
                progress = false;
                for (int32_t i = 0; i < q.b; ++i) {
                    const size_t save = _pos;
                    if (used[i]) continue;
                    if (match(_set.kids[q.a + i]) == BROKEN) return BROKEN;
                    if (_pos > save) used[i] = progress = true;
                }
            }
            for (int32_t i = 0; i < q.b; ++i)
                if (!used[i] && _set.particles[_set.kids[q.a + i]].min > 0)
                    return _pos == start ? NOMATCH : BROKEN;
            return MATCHED;
        }
        }
        return NOMATCH;
    }

    const s_schema_set &_set;
    const std::vector<int32_t> &_seq;
};

} // namespace

lmx::elmx_error check_content_model(const c_node &node, std::string &bad) {
    if (node.type() < 0) return lmx::ELMX_OK;
    const s_schema_set &set = *node.set();
    const s_complex_type &t = node.complex();
    std::vector<int32_t> seq;
    for (const c_child &c : node._children)
        if (c.kind == K_NODE || c.kind == K_HAND) // kept extension lists stand where they were
            seq.push_back(c.decl);
        else if (c.kind == K_ANY)
            seq.push_back(-1);
    if (t.particle < 0) return seq.empty() ? lmx::ELMX_OK : lmx::ELMX_BAD_END_OF_ELEMENT;
    c_matcher m(set, seq);
    const e_match r = m.match(t.particle);
    if (r == BROKEN || (r == NOMATCH && m._pos == seq.size()))
        return lmx::ELMX_MANDATORY_ELEMENT_MISSING;
    if (m._pos < seq.size()) {
        bad = seq[m._pos] >= 0 ? set.elems[seq[m._pos]].name : "any";
        return lmx::ELMX_BAD_END_OF_ELEMENT;
    }
    return lmx::ELMX_OK;
}

} // namespace binding
