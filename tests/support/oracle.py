"""Dumps a workbook as text through an independent reader, so that the
interop tests compare lines.  usage: oracle.py READER PATH [utf8]

Readers: xlrd, openpyxl and libreoffice (LibreOffice's csv export, raw
values) dump the cells: "SHEET name", then "r c kind value" a cell, kind n
number (%.17g), s text, b boolean, e error (by its code: #NULL! 0, #DIV/0! 7,
#VALUE! 15, #REF! 23, #NAME? 29, #NUM! 36, #N/A 42, the codes our reader
gives); blanks and empty texts left out.  openpyxl begins with "DATE1904" for a
book counting dates from 1904.
xlrd-format gives "r c bold colour format" instead; olefile "path size
crc32" a stream; xlrd-formulas "sheet row col kind text" a formula as xlrd
decompiles it; openpyxl-formulas "r c text" under "SHEET name".  xlrd-structure adds sorted "merge r1 r2 c1
c2", "row|col i level L hidden H" and "note r c" lines to the cells;
openpyxl-dims gives the first sheet's merges, sized, hidden or grouped rows
and columns and "summary below right"; openpyxl-settings sheet states, print
setup, views and names; openpyxl-sheets "SHEET name state"; openpyxl-styles
numfmt, font, fill, border, align and protection lines of each "r c";
openpyxl-pictures "PIC row col row2 col2 dx dy dx2 dy2 size crc32" a picture
and "OTHER n"; drawings "PIC r c", "CHART r c" and "NOTE r c text" under
"SHEET name" (another kind of book through LibreOffice's conversion).  Each
libreoffice-X is openpyxl-X (libreoffice-structure: xlrd-structure's lines)
on the book as LibreOffice saves it again as Open XML.  make-xlwt writes a
small binary book with merges, sizes and groups at PATH, make-errors an
Open XML one with sheet "Errors" holding the seven error values in row 0,
make-lo-dates one
that LibreOffice converts from dates openpyxl wrote.  xml-copies takes a
folder: each X.copy under it is compared with X, both read by expat as
names in {URI}local form with sorted attributes and their texts: "DIFFERS
X" for each that differs, then "COMPARED n".

Texts are UTF-16LE hex ("-" when empty), or UTF-8 with backslash and newline
escaped under "utf8".  A reader that can't open the book prints "ERROR why".
"""
import atexit, csv, glob, os, re, shutil, subprocess, sys, tempfile

reader, path = sys.argv[1], sys.argv[2]
utf8 = len(sys.argv) > 3 and sys.argv[3] == 'utf8'


def text(s):
    if utf8:
        return s.replace('\\', '\\\\').replace('\n', '\\n')
    return s.encode('utf-16-le', 'surrogatepass').hex() or '-'


ERRORS = {'#NULL!': 0, '#DIV/0!': 7, '#VALUE!': 15, '#REF!': 23, '#NAME?': 29, '#NUM!': 36, '#N/A': 42}


def cell(r, c, kind, v):
    if kind == 's' and v == '':
        return
    print(r, c, kind, '%.17g' % v if kind == 'n' else text(v) if kind == 's' else
          ERRORS.get(v, v) if kind == 'e' else int(v))


def xlrd_book(formatting=False, on_demand=False):
    import xlrd
    return xlrd, xlrd.open_workbook(path, ragged_rows=True, formatting_info=formatting, on_demand=on_demand,
                                    logfile=open(os.devnull, 'w'))


def xlrd_cells(xlrd, sh):
    """(r, c, kind, value) of each cell of an xlrd sheet that has a kind."""
    kinds = {xlrd.XL_CELL_NUMBER: 'n', xlrd.XL_CELL_DATE: 'n', xlrd.XL_CELL_TEXT: 's',
             xlrd.XL_CELL_BOOLEAN: 'b', xlrd.XL_CELL_ERROR: 'e'}
    for r in range(sh.nrows):
        for c in range(sh.row_len(r)):
            if kinds.get(sh.cell_type(r, c)):
                yield r, c, kinds[sh.cell_type(r, c)], sh.cell_value(r, c)


def dump_xlrd(formatting):
    xlrd, bk = xlrd_book(formatting)
    for sh in bk.sheets():
        print('SHEET', text(sh.name))
        for r, c, kind, v in xlrd_cells(xlrd, sh):
            if kind == 's' and v == '':
                continue
            if formatting:
                # Bold is a weight of 700 or more, as the format defines
                # it (xlrd's own flag reads a bit the format leaves unused).
                xf = bk.xf_list[sh.cell_xf_index(r, c)]
                f = bk.font_list[xf.font_index]
                print(r, c, int(f.weight >= 700), f.colour_index, text(bk.format_map[xf.format_key].format_str))
            else:
                cell(r, c, kind, v)


def dump_structure_xlrd():
    xlrd, bk = xlrd_book(True)
    for sh in bk.sheets():
        print('SHEET', text(sh.name))
        for r, c, kind, v in xlrd_cells(xlrd, sh):
            cell(r, c, kind, v)
        lines = ['merge %d %d %d %d' % (rlo, rhi - 1, clo, chi - 1) for rlo, rhi, clo, chi in sh.merged_cells]
        for what, infos in (('row', sh.rowinfo_map), ('col', sh.colinfo_map)):
            lines += ['%s %d level %d hidden %d' % (what, i, x.outline_level, x.hidden)
                      for i, x in infos.items() if x.outline_level or x.hidden]
        lines += ['note %d %d' % rc for rc in sh.cell_note_map]
        for line in sorted(lines):
            print(line)


def lo_convert(target, ext, source=None):
    """The book (or `source`) converted by LibreOffice: (scratch folder, converted files).
    The folder goes when the oracle exits, whichever dump made it."""
    source = source or path
    out = tempfile.mkdtemp(prefix='oracle_lo_')
    atexit.register(shutil.rmtree, out, ignore_errors=True)
    subprocess.run(['soffice', '--headless', '--norestore', '-env:UserInstallation=file://' + out + '/profile',
                    '--convert-to', target, '--outdir', out, source],
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
    base = os.path.splitext(os.path.basename(source))[0]
    return out, sorted(glob.glob(os.path.join(glob.escape(out), glob.escape(base) + ext)))


def columns(ws, last=None):
    """(column from 1, its dimension) of each column an entry covers."""
    from openpyxl.utils import column_index_from_string
    for key, d in ws.column_dimensions.items():
        first = d.min or column_index_from_string(key)
        for c in range(first, min(d.max or first, last or 1 << 20) + 1):
            yield c, d


def dump_structure_libreoffice():
    import openpyxl
    out, files = lo_convert('xlsx', '.xlsx')
    if not files:
        raise RuntimeError('no xlsx')
    bk = openpyxl.load_workbook(files[0])
    for sh in bk.worksheets:
        print('SHEET', text(sh.title))
        lines = []
        for row in sh.iter_rows():
            for x in row:
                v = x.value
                if v is not None:
                    kind = 'b' if isinstance(v, bool) else 'n' if isinstance(v, (int, float)) else 's'
                    cell(x.row - 1, x.column - 1, kind, float(v) if kind == 'n' else v)
                if x.comment:
                    lines.append('note %d %d' % (x.row - 1, x.column - 1))
        lines += ['merge %d %d %d %d' % (m.min_row - 1, m.max_row - 1, m.min_col - 1, m.max_col - 1)
                  for m in sh.merged_cells.ranges]
        for r, d in sh.row_dimensions.items():
            if d.outlineLevel or d.hidden:
                lines.append('row %d level %d hidden %d' % (r - 1, d.outlineLevel, int(bool(d.hidden))))
        lines += ['col %d level %d hidden %d' % (c - 1, d.outlineLevel, int(bool(d.hidden)))
                  for c, d in columns(sh, 256) if d.outlineLevel or d.hidden]
        for line in sorted(lines):
            print(line)
    subprocess.run(['rm', '-rf', out])


def make_xlwt():
    # Numbers 100 r + c + 1 in rows 0-7 and columns 0-4, B3:C5 merged, row 3
    # 30 points high, column C 20 characters wide, rows 5-6 grouped.
    import xlwt
    wb = xlwt.Workbook()
    ws = wb.add_sheet('S')
    for r in range(8):
        for c in range(5):
            ws.write(r, c, 100 * r + c + 1)
    ws.merged_ranges.append((2, 4, 1, 2))
    ws.row(3).height_mismatch = True
    ws.row(3).height = 600
    ws.col(2).width = 20 * 256
    for r in (5, 6):
        ws.row(r).level = 1
    wb.save(path)


def make_lo_dates():
    # A date, a time and a date-time (milliseconds shown) as openpyxl formats
    # them, and a plain number, in sheet "Dates", saved by LibreOffice as the
    # binary book at `path`.
    import datetime, openpyxl
    folder = tempfile.mkdtemp(prefix='oracle_dates_')
    source = os.path.join(folder, 'dates.xlsx')
    book = openpyxl.Workbook()
    sheet = book.active
    sheet.title = 'Dates'
    sheet['A1'] = datetime.date(2024, 3, 1)
    sheet['B1'] = datetime.time(12, 30, 0)
    sheet['C1'] = datetime.datetime(2024, 3, 1, 12, 30, 0, 500000)
    sheet['C1'].number_format = 'yyyy-mm-dd hh:mm:ss.000'
    sheet['D1'] = 45352.5
    book.save(source)
    out, files = lo_convert('xls', '.xls', source)
    try:
        shutil.copyfile(files[0], path)
    finally:
        shutil.rmtree(out, ignore_errors=True)
        shutil.rmtree(folder, ignore_errors=True)


def make_errors():
    import openpyxl
    book = openpyxl.Workbook()
    book.active.title = 'Errors'
    book.active.append(list(ERRORS))
    book.save(path)


def dump_openpyxl(book_path):
    import datetime, openpyxl
    from openpyxl.utils.datetime import to_excel, CALENDAR_MAC_1904
    bk = openpyxl.load_workbook(book_path, data_only=True)
    if bk.epoch == CALENDAR_MAC_1904:
        print('DATE1904')
    for sh in bk.worksheets:
        print('SHEET', text(sh.title))
        # The stored cells only, in row order: a cell at XFD1048576 would
        # make iter_rows walk the whole grid.
        for _, x in sorted(sh._cells.items()):
            v = x.value
            if v is None:
                continue
            if isinstance(v, (datetime.datetime, datetime.date, datetime.time, datetime.timedelta)):
                v = to_excel(v, bk.epoch)
            kind = 'b' if isinstance(v, bool) else 'n' if isinstance(v, (int, float)) else \
                'e' if x.data_type == 'e' else 's'
            cell(x.row - 1, x.column - 1, kind, v if kind != 'n' else float(v))


NUMBER = re.compile(r'^[-+]?(\d+\.?\d*|\.\d+)([eE][-+]?\d+)?%?$')


def dump_formulas_openpyxl(book_path):
    import openpyxl
    for sh in openpyxl.load_workbook(book_path).worksheets:
        print('SHEET', text(sh.title))
        for _, x in sorted(sh._cells.items()):
            if x.data_type == 'f':
                print(x.row - 1, x.column - 1, text(str(x.value).lstrip('=')))


def dump_libreoffice():
    base = os.path.splitext(os.path.basename(path))[0]
    # Comma, quote, UTF-8, raw values rather than as shown, every sheet.
    out, files = lo_convert('csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,true,false,false,false,-1',
                            '-*.csv')
    if not files:
        raise RuntimeError('no csv')
    for name in files:
        print('SHEET', text(os.path.basename(name)[len(base) + 1:-4]))
        with open(name, newline='', encoding='utf-8') as f:
            for r, row in enumerate(csv.reader(f)):
                for c, v in enumerate(row):
                    if v in ERRORS:
                        cell(r, c, 'e', v)
                    elif NUMBER.match(v):
                        # A percentage keeps its sign even among raw values.
                        cell(r, c, 'n', float(v[:-1]) / 100 if v.endswith('%') else float(v))
                    else:
                        cell(r, c, 's', v)
    subprocess.run(['rm', '-rf', out])


def dump_streams():
    import zlib, olefile
    ole = olefile.OleFileIO(path, raise_defects=olefile.DEFECT_INCORRECT)
    for p in ole.listdir(streams=True, storages=False):
        data = ole.openstream(p).read()
        print('/'.join(p).encode('unicode_escape').decode(), len(data), zlib.crc32(data) & 0xffffffff)


def dump_formulas():
    import struct, olefile, xlrd
    import xlrd.formula as F
    # xlrd leaves out the base cell when it reads a relative 3-D area of a
    # cell formula; it is handed in here.
    base = [0, 0]
    adjust = F.adjust_cell_addr_biff8

    def adjust_with_base(rowval, colval, reldelta, browx=None, bcolx=None):
        if browx is None:
            browx, bcolx = base
        return adjust(rowval, colval, reldelta, browx, bcolx)
    F.adjust_cell_addr_biff8 = adjust_with_base
    bk = xlrd.open_workbook(path)
    data = olefile.OleFileIO(path).openstream('Workbook').read()
    pos, depth, sheet = 0, 0, -2
    while pos + 4 <= len(data):
        rid, size = struct.unpack('<HH', data[pos:pos + 4])
        body = data[pos + 4:pos + 4 + size]
        pos += 4 + size
        if rid == 0x0809:
            if depth == 0:
                sheet += 1
            depth += 1
        elif rid == 0x000A:
            depth -= 1
        elif rid == 0x0006 and sheet >= 0:
            row, col = struct.unpack('<HH', body[0:4])
            cce = struct.unpack('<H', body[20:22])[0]
            base[:] = [row, col]
            try:
                text = F.decompile_formula(bk, body[22:], cce, F.FMLA_TYPE_CELL, browx=row, bcolx=col)
            except Exception as e:
                text = 'ERROR ' + repr(e)
            print(sheet, row, col, bk.sheet_by_index(sheet).cell_type(row, col), text)


def dump_settings(book_path=None):
    import openpyxl
    wb = openpyxl.load_workbook(book_path or path)
    for ws in wb.worksheets:
        print(ws.title, 'state', ws.sheet_state)
    ws = wb.worksheets[0]
    ps, m, po, v = ws.page_setup, ws.page_margins, ws.print_options, ws.sheet_view
    print('orientation', ps.orientation, 'paper', ps.paperSize, 'scale', ps.scale)
    print('margins', m.left, m.right, m.top, m.bottom, m.header, m.footer)
    print('header', ws.oddHeader.center.text, '| footer', ws.oddFooter.right.text)
    print('centred', po.horizontalCentered, po.verticalCentered, 'grid', po.gridLines, 'headings', po.headings)
    print('view grid', v.showGridLines, 'zoom', v.zoomScale, 'freeze', ws.freeze_panes)
    print('protected', ws.protection.sheet)
    print('print area', ws.print_area, 'titles', ws.print_title_rows, ws.print_title_cols)
    print('breaks', [b.id for b in ws.row_breaks.brk], [b.id for b in ws.col_breaks.brk])
    fit = wb.worksheets[1]
    print('fit', fit.sheet_properties.pageSetUpPr.fitToPage, fit.page_setup.fitToWidth,
          fit.page_setup.fitToHeight, 'rtl', fit.sheet_view.rightToLeft, 'top left', fit.sheet_view.topLeftCell)
    names = ['%s %s %s' % (dn.name, dn.localSheetId, dn.attr_text) for dn in wb.defined_names.definedName
             if not dn.name.startswith('Excel_BuiltIn')]
    for n in sorted(names):
        print('name', n)


def dump_dims(book_path):
    import openpyxl
    ws = openpyxl.load_workbook(book_path).worksheets[0]
    for m in sorted(ws.merged_cells.ranges, key=lambda m: (m.min_row, m.min_col)):
        print('merge', m.min_row - 1, m.max_row - 1, m.min_col - 1, m.max_col - 1)
    for r, d in sorted(ws.row_dimensions.items()):
        if d.customHeight or d.hidden or d.outlineLevel:
            print('row', r - 1, 'height', d.height if d.customHeight else '-', 'hidden', int(bool(d.hidden)),
                  'level', d.outlineLevel)
    lines = [(c - 1, 'width %s hidden %d level %d' % ('%.2f' % d.width if d.customWidth else '-',
                                                      int(bool(d.hidden)), d.outlineLevel))
             for c, d in columns(ws) if d.customWidth or d.hidden or d.outlineLevel]
    for c, line in sorted(lines):
        print('col', c, line)
    o = ws.sheet_properties.outlinePr
    print('summary', o.summaryBelow if o else None, o.summaryRight if o else None)


def lo_resaved(reader):
    """`reader` run on the book as LibreOffice saves it again as Open XML."""
    out, files = lo_convert('xlsx:Calc MS Excel 2007 XML', '.xlsx')
    try:
        if not files:
            raise RuntimeError('no xlsx')
        reader(files[0])
    finally:
        shutil.rmtree(out, ignore_errors=True)


def dump_sheets(book_path):
    import openpyxl
    wb = openpyxl.load_workbook(book_path)
    for ws in wb.worksheets:
        print('SHEET', text(ws.title), ws.sheet_state)


def dump_pictures(book_path):
    """Pictures through openpyxl's own package and drawing readers; the
    image objects themselves need an imaging library, so the bytes are
    taken from the archive as the drawing's relationships name them."""
    import zipfile, zlib
    from openpyxl.drawing.spreadsheet_drawing import SpreadsheetDrawing
    from openpyxl.packaging.relationship import get_dependents, get_rels_path
    from openpyxl.reader.excel import _find_workbook_part
    from openpyxl.packaging.manifest import Manifest
    from openpyxl.reader.workbook import WorkbookParser
    from openpyxl.xml.functions import fromstring
    archive = zipfile.ZipFile(book_path)
    names = set(archive.namelist())
    package = Manifest.from_tree(fromstring(archive.read('[Content_Types].xml')))
    parser = WorkbookParser(archive, _find_workbook_part(package).PartName[1:])
    parser.parse()
    emu = 9525
    for sheet, rel in parser.find_sheets():
        print('SHEET', text(sheet.name))
        rels_path = get_rels_path(rel.target)
        if rels_path not in names:
            continue
        lines, other = [], 0
        for r in get_dependents(archive, rels_path).find(SpreadsheetDrawing._rel_type):
            drawing = SpreadsheetDrawing.from_tree(fromstring(archive.read(r.target)))
            drels = get_rels_path(r.target)
            deps = get_dependents(archive, drels) if drels in names else None
            for a in drawing.twoCellAnchor + drawing.oneCellAnchor + drawing.absoluteAnchor:
                if a.pic is None or a.pic.blipFill is None or a.pic.blipFill.blip is None:
                    other += 1
                    continue
                data = archive.read(deps[a.pic.blipFill.blip.embed].target)
                f = a._from
                if a.tagname == 'twoCellAnchor':
                    far = '%d %d %d %d %d %d' % (a.to.row, a.to.col, f.colOff // emu, f.rowOff // emu,
                                                  a.to.colOff // emu, a.to.rowOff // emu)
                elif a.tagname == 'oneCellAnchor':
                    far = '- - %d %d %d %d' % (f.colOff // emu, f.rowOff // emu, a.ext.width // emu,
                                               a.ext.height // emu)
                else:
                    other += 1
                    continue
                lines.append('PIC %d %d %s %d %08x' % (f.row, f.col, far, len(data),
                                                       zlib.crc32(data) & 0xffffffff))
        for line in sorted(lines):
            print(line)
        print('OTHER', other)


def dump_styles(book_path):
    import openpyxl
    ws = openpyxl.load_workbook(book_path).worksheets[0]

    def col(c):
        return '-' if c is None or c.value is None else '%s:%s' % (c.type, c.value)

    def side(s):
        return (None, None) if s is None else (s.style, col(s.color))

    for row in ws.iter_rows():
        for c in row:
            at = '%d %d' % (c.row - 1, c.column - 1)
            f, fl, b, a, p = c.font, c.fill, c.border, c.alignment, c.protection
            print(at, 'numfmt', c.number_format)
            print(at, 'font', f.name, f.sz, f.b, f.i, f.strike, f.u, f.vertAlign, col(f.color))
            print(at, 'fill', fl.patternType, col(fl.fgColor), col(fl.bgColor))
            l, r, t, bt, d = (side(x) for x in (b.left, b.right, b.top, b.bottom, b.diagonal))
            print(at, 'border', l[0], r[0], t[0], bt[0], d[0], b.diagonalUp, b.diagonalDown, l[1], bt[1])
            print(at, 'align', a.horizontal, a.vertical, a.wrap_text, a.textRotation, a.indent,
                  a.shrink_to_fit)
            print(at, 'protection', p.locked, p.hidden)
def dump_drawings():
    import openpyxl, zipfile, posixpath
    import xml.etree.ElementTree as ET
    global utf8
    utf8 = True
    book = path
    if not path.endswith('.xlsx'):
        book = lo_convert('xlsx', '.xlsx')[1][0]
    z = zipfile.ZipFile(book)
    R = '{http://schemas.openxmlformats.org/officeDocument/2006/relationships}'
    X = '{http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing}'

    def rels(part):
        name = posixpath.join(posixpath.dirname(part), '_rels', posixpath.basename(part) + '.rels')
        if name not in z.namelist():
            return {}
        return {r.get('Id'): (r.get('Type').rsplit('/', 1)[-1],
                              posixpath.normpath(posixpath.join(posixpath.dirname(part), r.get('Target'))))
                for r in ET.fromstring(z.read(name))}

    def cell(anchor, tag):
        m = anchor.find(X + tag)
        return '-' if m is None else '%s %s' % (m.find(X + 'row').text, m.find(X + 'col').text)

    wb_rels = rels('xl/workbook.xml')
    wb = openpyxl.load_workbook(book)
    sheets = ET.fromstring(z.read('xl/workbook.xml')).iter('{http://schemas.openxmlformats.org/spreadsheetml/2006/main}sheet')
    for sh in sheets:
        part = wb_rels[sh.get(R + 'id')][1]
        lines = []
        for kind, target in rels(part).values():
            if kind != 'drawing':
                continue
            for anchor in ET.fromstring(z.read(target)):
                if anchor.find(X + 'pic') is not None:
                    lines.append('PIC ' + cell(anchor, 'from'))
                elif anchor.find(X + 'graphicFrame') is not None:
                    lines.append('CHART ' + cell(anchor, 'from'))
        ws = wb[sh.get('name')]
        for row in ws.iter_rows():
            for x in row:
                if x.comment is not None:
                    lines.append('NOTE %d %d %s' % (x.row - 1, x.column - 1, text(x.comment.text.rstrip())))
        print('SHEET', text(sh.get('name')))
        for line in sorted(lines):
            print(line)


def dump_xml_copies():
    import pathlib
    import xml.etree.ElementTree as ET

    def form(e):
        attrs = ''.join(' %s="%s"' % a for a in sorted(e.attrib.items()))
        inner = (e.text or '') + ''.join(form(c) + (c.tail or '') for c in e)
        return '<%s%s>%s</>' % (e.tag, attrs, inner)

    compared = 0
    for copy in sorted(pathlib.Path(path).rglob('*.copy')):
        source = str(copy)[:-len('.copy')]
        try:
            want = form(ET.parse(source).getroot())
        except ET.ParseError:
            continue  # expat itself refuses the part
        compared += 1
        try:
            same = form(ET.parse(str(copy)).getroot()) == want
        except ET.ParseError:
            same = False
        if not same:
            print('DIFFERS', source)
    print('COMPARED', compared)


def on_path(f):
    return lambda: f(path)


READERS = {
    'xlrd': lambda: dump_xlrd(False), 'xlrd-format': lambda: dump_xlrd(True),
    'xlrd-formulas': dump_formulas, 'xlrd-structure': dump_structure_xlrd, 'olefile': dump_streams,
    'openpyxl': on_path(dump_openpyxl), 'openpyxl-settings': dump_settings, 'libreoffice': dump_libreoffice,
    'libreoffice-structure': dump_structure_libreoffice, 'make-xlwt': make_xlwt, 'make-lo-dates': make_lo_dates, 'make-errors': make_errors,
    'drawings': dump_drawings, 'xml-copies': dump_xml_copies}
for name, f in (('sheets', dump_sheets), ('dims', dump_dims), ('settings', dump_settings),
                ('styles', dump_styles), ('pictures', dump_pictures), ('formulas', dump_formulas_openpyxl),
                ('cells', dump_openpyxl)):
    READERS.setdefault('openpyxl-' + name, on_path(f))
    READERS['libreoffice-' + name] = lambda f=f: lo_resaved(f)
try:
    READERS[reader]()
except Exception as e:
    print('ERROR', type(e).__name__)
