"""Reads a json dump of the tool with python's own json reader and prints
what a copy of each cell must keep: "kind value date numFormat", or
"formula text numFormat" (the cached value of a formula waits for a
recalculation).  Custom number formats are numbered by each book, so their
text stands for them.  With "errors-as-text" an error cell counts as a text
of its error text, the form a copy gives it when the target refuses the
error as a formula.  Besides the cells, "@sheet" names the sheet.
Entries are "key\\x1fvalue\\x1e";
a dump that is no json gives the one entry "error".

usage: json_cells.py DUMP_FILE [errors-as-text]
"""
import json, sys

out = {}
try:
    doc = json.load(open(sys.argv[1], encoding='utf-8'))
    as_text = 'errors-as-text' in sys.argv[2:]
    out['@sheet'] = doc['sheet']
    for c in doc['cells']:
        v, ref = c['value'], c['ref']
        shown = ('true' if v else 'false') if isinstance(v, bool) else \
            '%.17g' % v if isinstance(v, (int, float)) else v or ''
        fmt = c['numFormatText'] if 'numFormatText' in c else str(int(c['numFormat']))
        kind = 'string' if as_text and c['kind'] == 'error' else c['kind']
        f = c.get('formula')
        if isinstance(f, str) and as_text and f.startswith('#'):
            out[ref] = 'string %s  %s' % (f, fmt)
        elif isinstance(f, str):
            out[ref] = 'formula %s %s' % (f, fmt)
        else:
            out[ref] = '%s %s %s %s' % (kind, shown, c.get('date') or '', fmt)
except Exception as e:
    out = {'error': '%s: %s' % (type(e).__name__, e)}
sys.stdout.buffer.write(''.join(k + '\x1f' + v + '\x1e' for k, v in out.items()).encode('utf-8', 'surrogatepass'))
