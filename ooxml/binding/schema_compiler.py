#!/usr/bin/env python3
"""Compiles a folder of XML Schemas into the constant tables of the binding.

Usage: schema_compiler.py EDITION OUT.cpp DIR [DIR...]
       schema_compiler.py --enums OUT.h DIR [DIR...]

EDITION names the table set (transitional or strict).  Every .xsd of the
folders is read; the output is one C++ file of constant arrays: namespaces,
simple types (as validation specs), attributes, element declarations,
content-model particles, complex types and global elements.  With --enums
the output is a header of C++ enumerations for the enumerated simple types
that the typed facades expose (ENUM_TYPES), each with its schema texts in
order.  Output depends only on the input files, so regenerating gives the
same bytes.  The build runs it (see the top CMakeLists.txt).
"""
import os
import sys
import xml.etree.ElementTree as ET

XS = '{http://www.w3.org/2001/XMLSchema}'
UNBOUNDED = 0xFFFFFFFF

# Preferred prefixes of the writer, by namespace URI tail.
PREFIXES = [
    ('spreadsheetml/main', ''), ('spreadsheetml/2006/main', ''), ('officeDocument/relationships', 'r'),
    ('officeDocument/2006/relationships', 'r'), ('drawingml/main', 'a'),
    ('drawingml/2006/main', 'a'), ('spreadsheetDrawing', 'xdr'), ('drawingml/chartDrawing', 'cdr'),
    ('drawingml/2006/chartDrawing', 'cdr'), ('drawingml/chart', 'c'), ('drawingml/2006/chart', 'c'),
    ('drawingml/diagram', 'dgm'), ('drawingml/2006/diagram', 'dgm'), ('lockedCanvas', 'lc'),
    ('drawingml/picture', 'pic'), ('drawingml/2006/picture', 'pic'), ('sharedTypes', 's'),
    ('package/2006/content-types', ''), ('package/2006/relationships', ''),
]

BUILTIN = {
    'string': 'XSD_STRING', 'normalizedString': 'XSD_STRING', 'token': 'XSD_STRING', 'NCName': 'XSD_STRING',
    'anyURI': 'XSD_STRING', 'ID': 'XSD_STRING', 'QName': 'XSD_STRING', 'language': 'XSD_STRING',
    'boolean': 'XSD_BOOLEAN', 'decimal': 'XSD_DECIMAL', 'integer': 'XSD_INTEGER', 'long': 'XSD_LONG',
    'int': 'XSD_INT', 'short': 'XSD_SHORT', 'byte': 'XSD_BYTE', 'unsignedLong': 'XSD_UNSIGNED_LONG',
    'unsignedInt': 'XSD_UNSIGNED_INT', 'unsignedShort': 'XSD_UNSIGNED_SHORT',
    'unsignedByte': 'XSD_UNSIGNED_BYTE', 'nonNegativeInteger': 'XSD_NON_NEGATIVE_INTEGER',
    'positiveInteger': 'XSD_POSITIVE_INTEGER', 'negativeInteger': 'XSD_NEGATIVE_INTEGER',
    'nonPositiveInteger': 'XSD_NON_POSITIVE_INTEGER', 'float': 'XSD_FLOAT', 'double': 'XSD_DOUBLE',
    'dateTime': 'XSD_DATETIME', 'date': 'XSD_DATE', 'time': 'XSD_TIME', 'duration': 'XSD_DURATION',
    'hexBinary': 'XSD_HEX_BINARY', 'base64Binary': 'XSD_BASE64_BINARY', 'anyType': 'XSD_STRING',
    'anySimpleType': 'XSD_STRING',
}
WS = {'string': 'WS_PRESERVE', 'normalizedString': 'WS_REPLACE'}


# What real producers write beyond the published schemas, accepted by both
# editions so that their books load and print back unchanged: the ISO date
# cell type of the later edition, and phonetic runs holding rich runs
# (`<rPh><r><t>..</t></r></rPh>`) instead of bare text.
SML = 'http://schemas.openxmlformats.org/spreadsheetml/2006/main'
SML_STRICT = 'http://purl.oclc.org/ooxml/spreadsheetml/main'


def widen_cell_type(node):
    rest = node.find(XS + 'restriction')
    if not any(e.get('value') == 'd' for e in rest):
        rest.insert(1, ET.Element(XS + 'enumeration', {'value': 'd'}))


def phonetic_rich_runs(node):
    seq = node.find(XS + 'sequence')
    t = seq.find(XS + 'element')
    choice = ET.Element(XS + 'choice')
    seq.remove(t)
    choice.append(t)
    choice.append(ET.Element(XS + 'element', {'name': 'r', 'type': 'CT_RElt', 'maxOccurs': 'unbounded'}))
    seq.append(choice)


# Enumerated simple types with typed accessors in the facades.
ENUM_TYPES = [
    'ST_BorderStyle', 'ST_HorizontalAlignment', 'ST_Orientation', 'ST_PatternType', 'ST_SheetState',
    'ST_TargetMode', 'ST_VerticalAlignment',
]

PATCHES = [
    ('simpleType', 'ST_CellType', widen_cell_type),
    ('complexType', 'CT_PhoneticRun', phonetic_rich_runs),
]


def cstr(s):
    if s is None:
        return 'nullptr'
    out = '"'
    for ch in s.encode('utf-8'):
        c = chr(ch)
        if c in '"\\':
            out += '\\' + c
        elif 32 <= ch < 127 and c != '?':
            out += c
        else:
            out += '\\%03o' % ch
    return out + '"'


class Schema:
    def __init__(self, path):
        self.nsmap = {}
        for ev, (p, uri) in ET.iterparse(path, events=['start-ns']):
            self.nsmap.setdefault(p, uri)
        self.root = ET.parse(path).getroot()
        self.tns = self.root.get('targetNamespace', '')
        self.qualified_elements = self.root.get('elementFormDefault') == 'qualified'

    def qname(self, q):
        p, _, local = q.rpartition(':')
        return (self.nsmap.get(p, ''), local)


class Compiler:
    def __init__(self, dirs):
        self.schemas = []
        for d in dirs:
            for f in sorted(os.listdir(d)):
                if f.endswith('.xsd'):
                    self.schemas.append(Schema(os.path.join(d, f)))
        self.globals = {}  # (kind, uri, name) -> (schema, node)
        for s in self.schemas:
            for n in s.root:
                kind = n.tag[len(XS):]
                if n.get('name'):
                    self.globals[(kind, s.tns, n.get('name'))] = (s, n)
        for kind, name, patch in PATCHES:
            for uri in (SML, SML_STRICT):
                found = self.globals.get((kind, uri, name))
                if found:
                    patch(found[1])
        uris = sorted({s.tns for s in self.schemas if s.tns})
        self.ns = {u: 1000 + i for i, u in enumerate(uris)}
        self.simple = []      # spec lines
        self.simple_ix = {}   # key -> index
        self.lists = []       # extra arrays (enumerations, patterns, members)
        self.complex = []
        self.complex_ix = {}
        self.attrs = []
        self.elems = []
        self.particles = []
        self.kids = []
        self.elem_refs = []
        self.patterns = []

    def nsid(self, uri):
        return self.ns.get(uri, 1) if uri else 1

    # Simple types: one validation spec each.
    def simple_type(self, schema, q=None, node=None, key=None):
        if q is not None:
            uri, name = schema.qname(q) if isinstance(q, str) else q
            if uri == 'http://www.w3.org/2001/XMLSchema':
                key = ('builtin', name)
                if key not in self.simple_ix:
                    self.simple_ix[key] = len(self.simple)
                    ws = WS.get(name, 'WS_PRESERVE' if BUILTIN.get(name) == 'XSD_STRING' else 'WS_COLLAPSE')
                    self.simple.append([name, BUILTIN.get(name, 'XSD_STRING'), ws, {}])
                return self.simple_ix[key]
            key = ('simple', uri, name)
            if key in self.simple_ix:
                return self.simple_ix[key]
            found = self.globals.get(('simpleType', uri, name))
            if not found:
                return self.simple_type(schema, ('http://www.w3.org/2001/XMLSchema', 'string'))
            schema, node = found
        if key in self.simple_ix:
            return self.simple_ix[key]
        ix = len(self.simple)
        self.simple_ix[key] = ix
        entry = [node.get('name') or '_'.join(str(k) for k in key[1:] if k), 'XSD_STRING', 'WS_PRESERVE', {}]
        self.simple.append(entry)
        restr = node.find(XS + 'restriction')
        lst = node.find(XS + 'list')
        uni = node.find(XS + 'union')
        facets = entry[3]
        if restr is not None:
            if restr.get('base'):
                base = self.simple_type(schema, restr.get('base'))
            else:
                base = self.simple_type(schema, node=restr.find(XS + 'simpleType'), key=key + ('base',))
            b = self.simple[base]
            entry[1], entry[2] = b[1], b[2]
            facets.update({k: v for k, v in b[3].items()})
            enums, pats = [], []
            for f in restr:
                t = f.tag[len(XS):]
                if t == 'enumeration':
                    enums.append(f.get('value'))
                elif t == 'pattern':
                    pats.append(f.get('value'))
                elif t == 'whiteSpace':
                    entry[2] = {'preserve': 'WS_PRESERVE', 'replace': 'WS_REPLACE'}.get(f.get('value'), 'WS_COLLAPSE')
                elif t != 'annotation' and t != 'simpleType':
                    facets[t] = f.get('value')
            if enums:
                facets['enumeration'] = enums
            if pats:
                facets['patterns'] = pats
        elif lst is not None:
            entry[1], entry[2] = 'XSD_LIST', 'WS_COLLAPSE'
            if lst.get('itemType'):
                facets['item'] = self.simple_type(schema, lst.get('itemType'))
            else:
                facets['item'] = self.simple_type(schema, node=lst.find(XS + 'simpleType'), key=key + ('item',))
        elif uni is not None:
            entry[1], entry[2] = 'XSD_UNION', 'WS_PRESERVE'
            members = [self.simple_type(schema, m) for m in (uni.get('memberTypes') or '').split()]
            for i, st in enumerate(uni.findall(XS + 'simpleType')):
                members.append(self.simple_type(schema, node=st, key=key + ('member', i)))
            facets['members'] = members
        return ix

    def attribute(self, schema, a, owner):
        if a.get('ref'):
            uri, name = schema.qname(a.get('ref'))
            s2, decl = self.globals[('attribute', uri, name)]
            st = self.simple_type(s2, decl.get('type')) if decl.get('type') else \
                self.simple_type(s2, node=decl.find(XS + 'simpleType'), key=('anon', uri, name))
            ns = self.nsid(uri)
        else:
            name = a.get('name')
            ns = 1 if a.get('form') != 'qualified' else self.nsid(schema.tns)
            if a.get('type'):
                st = self.simple_type(schema, a.get('type'))
            else:
                st = self.simple_type(schema, node=a.find(XS + 'simpleType'), key=('anon', owner, name))
        default = a.get('default', a.get('fixed'))
        return (ns, name, st, default, a.get('use') == 'required')

    def attributes(self, schema, node, owner, out, flags):
        for a in node:
            t = a.tag[len(XS):]
            if t == 'attribute':
                out.append(self.attribute(schema, a, owner))
            elif t == 'attributeGroup':
                s2, g = self.globals[('attributeGroup',) + schema.qname(a.get('ref'))]
                self.attributes(s2, g, owner, out, flags)
            elif t == 'anyAttribute':
                flags.add('ANY_ATTRIBUTE')

    def occurs(self, n):
        mx = n.get('maxOccurs', '1')
        return int(n.get('minOccurs', '1')), UNBOUNDED if mx == 'unbounded' else int(mx)

    # Particles: returns a particle index, appending element decls to `decls`.
    def particle(self, schema, n, owner, decls):
        t = n.tag[len(XS):]
        mn, mx = self.occurs(n)
        if t == 'group':
            s2, g = self.globals[('group',) + schema.qname(n.get('ref'))]
            inner = [c for c in g if c.tag[len(XS):] in ('sequence', 'choice', 'all')][0]
            p = self.particle(s2, inner, owner, decls)
            kind, _, _, a, b = self.particles[p]
            if (mn, mx) == (1, 1):
                return p
            self.particles.append(['P_SEQUENCE', 1, 1, len(self.kids), 1])
            self.kids.append(p)
            q = len(self.particles) - 1
            self.particles[q][1:3] = [mn, mx]
            return q
        if t == 'element':
            if n.get('ref'):
                uri, name = schema.qname(n.get('ref'))
                s2, decl = self.globals[('element', uri, name)]
                e = self.element_decl(s2, decl, uri, owner)
            else:
                uri = schema.tns if schema.qualified_elements or n.get('form') == 'qualified' else ''
                e = self.element_decl(schema, n, uri, owner)
            decls.append(e)
            self.particles.append(['P_ELEMENT', mn, mx, e, 0])
            return len(self.particles) - 1
        if t == 'any':
            self.particles.append(['P_ANY', mn, mx, 0, 0])
            return len(self.particles) - 1
        kids = [self.particle(schema, c, owner, decls) for c in n
                if c.tag[len(XS):] in ('element', 'group', 'sequence', 'choice', 'any', 'all')]
        self.particles.append(['P_' + t.upper(), mn, mx, len(self.kids), len(kids)])
        self.kids.extend(kids)
        return len(self.particles) - 1

    def element_decl(self, schema, n, uri, owner):
        name = n.get('name')
        ct, st = -1, -1
        if n.get('type'):
            tu, tn = schema.qname(n.get('type'))
            if ('complexType', tu, tn) in self.globals:
                ct = self.complex_type(tu, tn)
            else:
                st = self.simple_type(schema, (tu, tn))
        elif n.find(XS + 'complexType') is not None:
            ct = self.complex_type(schema.tns, owner + '_' + name, (schema, n.find(XS + 'complexType')))
        elif n.find(XS + 'simpleType') is not None:
            st = self.simple_type(schema, node=n.find(XS + 'simpleType'), key=('anon', owner, name))
        else:
            ct = self.complex_type('http://www.w3.org/2001/XMLSchema', 'anyType')
        self.elems.append((self.nsid(uri), name, ct, st, n.get('default')))
        return len(self.elems) - 1

    def complex_type(self, uri, name, found=None):
        key = (uri, name)
        if key in self.complex_ix:
            return self.complex_ix[key]
        ix = len(self.complex)
        self.complex_ix[key] = ix
        entry = {'name': name, 'attrs': [], 'particle': -1, 'decls': [], 'text': -1, 'flags': set()}
        self.complex.append(entry)
        if uri == 'http://www.w3.org/2001/XMLSchema':
            entry['flags'].update({'MIXED', 'ANY_ATTRIBUTE'})
            self.particles.append(['P_ANY', 0, UNBOUNDED, 0, 0])
            entry['particle'] = len(self.particles) - 1
            return ix
        schema, node = found or self.globals[('complexType', uri, name)]
        self.fill(schema, node, entry, name)
        return ix

    def fill(self, schema, node, entry, owner):
        if node.get('mixed') == 'true':
            entry['flags'].add('MIXED')
        for c in node:
            t = c.tag[len(XS):]
            if t in ('sequence', 'choice', 'all', 'group'):
                entry['particle'] = self.particle(schema, c, owner, entry['decls'])
            elif t == 'simpleContent':
                ext = c[0] if c[0].tag != XS + 'annotation' else c[1]
                bu, bn = schema.qname(ext.get('base'))
                if ('complexType', bu, bn) in self.globals:
                    base = self.complex[self.complex_type(bu, bn)]
                    entry['text'] = base['text']
                    entry['attrs'].extend(base['attrs'])
                else:
                    entry['text'] = self.simple_type(schema, (bu, bn))
                self.attributes(schema, ext, owner, entry['attrs'], entry['flags'])
            elif t == 'complexContent':
                ext = [e for e in c if e.tag != XS + 'annotation'][0]
                bu, bn = schema.qname(ext.get('base'))
                base = self.complex[self.complex_type(bu, bn)]
                entry['attrs'].extend(base['attrs'])
                entry['flags'] |= base['flags']
                own = -1
                for e in ext:
                    if e.tag[len(XS):] in ('sequence', 'choice', 'all', 'group'):
                        own = self.particle(schema, e, owner, entry['decls'])
                if ext.tag == XS + 'restriction':
                    entry['particle'] = own
                else:
                    entry['decls'][:0] = base['decls']
                    parts = [p for p in (base['particle'], own) if p >= 0]
                    if len(parts) == 2:
                        self.particles.append(['P_SEQUENCE', 1, 1, len(self.kids), 2])
                        self.kids.extend(parts)
                        entry['particle'] = len(self.particles) - 1
                    elif parts:
                        entry['particle'] = parts[0]
                self.attributes(schema, ext, owner, entry['attrs'], entry['flags'])
        self.attributes(schema, node, owner, entry['attrs'], entry['flags'])

    def run(self):
        roots = []
        for (kind, uri, name), (s, n) in sorted(self.globals.items(), key=lambda x: x[0]):
            if kind == 'complexType':
                self.complex_type(uri, name)
        for (kind, uri, name), (s, n) in sorted(self.globals.items(), key=lambda x: x[0]):
            if kind == 'element':
                roots.append((self.nsid(uri), name, self.element_decl(s, n, uri, name)))
        for (kind, uri, name), (s, n) in sorted(self.globals.items(), key=lambda x: x[0]):
            if kind == 'simpleType':
                self.simple_type(s, (uri, name))
        return roots

    def emit(self, edition, roots):
        L = ['// Generated by schema_compiler.py from the schemas in ooxml/binding/schemas; do not edit.',
             '#include "ooxml/binding/tables/schema_tables.h"', '', 'namespace binding {', 'namespace {', '']
        L.append('const lmx::s_ns_map k_ns[] = {')
        for uri, i in sorted(self.ns.items(), key=lambda x: x[1]):
            pre = next((p for tail, p in PREFIXES if uri.endswith(tail)), 'ns%d' % (i - 1000))
            L.append('    {%d, %s, %s},' % (i, cstr(pre), cstr(uri)))
        L.append('    {0, nullptr, nullptr}};')
        # Simple types: enumerations and patterns first, then specs.
        for i, (name, base, ws, f) in enumerate(self.simple):
            if 'enumeration' in f:
                L.append('const char *const k_enum%d[] = {%s, nullptr};' % (i, ', '.join(cstr(v) for v in f['enumeration'])))
            if 'patterns' in f:
                for j, p in enumerate(f['patterns']):
                    L.append('const lmx::c_regex k_re%d_%d(%s);' % (i, j, cstr(p)))
                L.append('const lmx::c_regex *const k_pat%d[] = {%s, nullptr};' %
                         (i, ', '.join('&k_re%d_%d' % (i, j) for j in range(len(f['patterns'])))))
        L.append('extern const lmx::s_validation_spec k_specs[];')
        for i, (name, base, ws, f) in enumerate(self.simple):
            if 'members' in f:
                L.append('const lmx::s_validation_spec *const k_members%d[] = {%s, nullptr};' %
                         (i, ', '.join('&k_specs[%d]' % m for m in f['members'])))
        L.append('const lmx::s_validation_spec k_specs[] = {')
        for i, (name, base, ws, f) in enumerate(self.simple):
            def num(k):
                return f.get(k, '-1')
            L.append('    {lmx::%s, lmx::%s, %s, %s, %s, %s, %sL, %sL, %sL, %sL, %sL, %s, %s, %s, %s, %s},' % (
                base, ws, cstr(f.get('minInclusive')), cstr(f.get('maxInclusive')), cstr(f.get('minExclusive')),
                cstr(f.get('maxExclusive')), num('length'), num('minLength'), num('maxLength'), num('totalDigits'),
                num('fractionDigits'), 'k_enum%d' % i if 'enumeration' in f else 'nullptr',
                'k_pat%d' % i if 'patterns' in f else 'nullptr', 'nullptr',
                '&k_specs[%d]' % f['item'] if 'item' in f else 'nullptr',
                'k_members%d' % i if 'members' in f else 'nullptr'))
        L.append('};')
        L.append('const s_simple_type k_simple[] = {')
        L.extend('    {%s, &k_specs[%d]},' % (cstr(s[0]), i) for i, s in enumerate(self.simple))
        L.append('};')
        attrs, refs = [], []
        L.append('const s_complex_type k_complex[] = {')
        for c in self.complex:
            seen, uniq = set(), []
            for d in c['decls']:
                k = self.elems[d][:2]
                if k not in seen:
                    seen.add(k)
                    uniq.append(d)
            seen_a, ua = set(), []
            for a in c['attrs']:
                if a[:2] not in seen_a:
                    seen_a.add(a[:2])
                    ua.append(a)
            flags = ' | '.join('F_' + f for f in sorted(c['flags'])) or '0'
            L.append('    {%s, %d, %d, %d, %d, %d, %d, %s},' % (cstr(c['name']), len(attrs), len(ua), c['particle'],
                                                             len(refs), len(uniq), c['text'], flags))
            attrs.extend(ua)
            refs.extend(uniq)
        L.append('};')
        L.append('const s_attribute_decl k_attrs[] = {')
        L.extend('    {%d, %s, %d, %s, %s},' % (a[0], cstr(a[1]), a[2], cstr(a[3]), 'true' if a[4] else 'false')
                 for a in attrs)
        L.append('};')
        L.append('const s_element_decl k_elems[] = {')
        L.extend('    {%d, %s, %d, %d, %s},' % (e[0], cstr(e[1]), e[2], e[3], cstr(e[4])) for e in self.elems)
        L.append('};')
        L.append('const uint32_t k_elem_refs[] = {%s};' % ', '.join(str(r) for r in refs))
        L.append('const s_particle k_particles[] = {')
        L.extend('    {%s, %d, %uu, %d, %d},' % tuple(p) for p in self.particles)
        L.append('};')
        L.append('const uint32_t k_kids[] = {%s};' % ', '.join(str(k) for k in self.kids))
        L.append('const s_global_element k_roots[] = {')
        L.extend('    {%d, %s, %d},' % (r[0], cstr(r[1]), r[2]) for r in roots)
        L.append('};')
        L.append('} // namespace')
        L.append('')
        L.append('extern const s_schema_set k_%s = {' % edition)
        L.append('    %s, k_ns, k_simple, %d, k_complex, %d, k_attrs, k_elems, k_elem_refs, k_particles, k_kids, k_roots, %d};'
                 % (cstr(edition), len(self.simple), len(self.complex), len(roots)))
        L.append('')
        L.append('} // namespace binding')
        return '\n'.join(L) + '\n'


def snake(name):
    """ST_PatternType -> pattern_type, lightGray -> LIGHT_GRAY (upper=True)."""
    out = ''
    for i, ch in enumerate(name):
        if ch.isupper() and i and (name[i - 1].islower() or name[i - 1].isdigit()):
            out += '_'
        out += ch.lower() if ch.isalnum() else '_'
    return out


def emit_enums(c):
    L = ['// Generated by schema_compiler.py from the schemas in ooxml/binding/schemas; do not edit.',
         '// Enumerations of the attributes that the typed facades expose: each enumerator',
         '// stands for the schema text at its position in the names array; OTHER is a value',
         '// outside the list (or an absent attribute without a default).',
         '#pragma once', '', '#include <cstddef>', '#include <cstdint>', '', 'namespace binding {', '',
         'template <class E> struct s_enum_names;', '']
    for name in ENUM_TYPES:
        # The spreadsheet's own type first (the chart schema has an ST_Orientation too).
        found = sorted((key[1] != SML, ix) for key, ix in c.simple_ix.items()
                       if key[0] == 'simple' and key[2] == name)
        found = [ix for _, ix in found]
        values = c.simple[found[0]][3].get('enumeration') if found else None
        if not values:
            raise SystemExit('no enumerated simple type ' + name)
        e = 'e_' + snake(name[3:])
        L.append('// %s' % name)
        L.append('enum class %s : uint8_t {' % e)
        L.extend('    %s,' % snake(v).upper() for v in values)
        L.append('    OTHER')
        L.append('};')
        L.append('template <> struct s_enum_names<%s> {' % e)
        L.append('    static constexpr size_t count = %d;' % len(values))
        L.append('    static constexpr const char *names[count] = {%s};' % ', '.join(cstr(v) for v in values))
        L.append('};')
        L.append('')
    L.append('} // namespace binding')
    return '\n'.join(L) + '\n'


def main():
    edition, out, dirs = sys.argv[1], sys.argv[2], sys.argv[3:]
    c = Compiler(dirs)
    roots = c.run()
    text = emit_enums(c) if edition == '--enums' else c.emit(edition, roots)
    with open(out, 'w') as f:
        f.write(text)


if __name__ == '__main__':
    main()
