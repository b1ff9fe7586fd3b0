#include "ooxml/drawing/drawing.h"

#include <cstdlib>
#include <cstring>
#include <memory>

#include "book/tberror.h"

namespace tabrix {

namespace {

using binding::c_node;

const char *childName(const c_node &parent, const binding::c_child &c) {
    return c.kind == binding::K_NODE && c.decl >= 0 ? parent.set()->elems[c.decl].name : "";
}

// The picture of an anchor, or null when it holds something else.
const c_node *pictureOf(const c_node &parent, const binding::c_child &c) {
    const char *name = childName(parent, c);
    if (std::strcmp(name, "twoCellAnchor") != 0 && std::strcmp(name, "oneCellAnchor") != 0)
        return nullptr;
    return c.node->child("pic");
}

int64_t number(const c_node *n, const char *name) {
    const c_node *c = n ? n->child(name) : nullptr;
    return c ? std::strtoll(c->_text.c_str(), nullptr, 10) : 0;
}

DrawingMarker marker(const c_node *n) {
    DrawingMarker m;
    m.col = int(number(n, "col"));
    m.row = int(number(n, "row"));
    m.colOff = number(n, "colOff");
    m.rowOff = number(n, "rowOff");
    return m;
}

void setText(c_node *parent, const char *name, int64_t value) {
    if (c_node *c = parent->append(name)) c->_text = std::to_string(value);
}

void setMarker(c_node *m, int col, int row, int colOffPx, int rowOffPx) {
    setText(m, "col", col);
    setText(m, "colOff", int64_t(colOffPx) * kEmuPerPixel);
    setText(m, "row", row);
    setText(m, "rowOff", int64_t(rowOffPx) * kEmuPerPixel);
}

// The picture elements a placed image gets; the transform is a placeholder
// that readers replace by the anchor's cells.
void fillPicture(c_node *pic, int number, const std::string &relationId) {
    c_node *nv = pic->append("nvPicPr");
    c_node *cNvPr = nv->append("cNvPr");
    cNvPr->set_attribute("id", std::to_string(number + 1));
    cNvPr->set_attribute("name", "Picture " + std::to_string(number));
    nv->append("cNvPicPr")->append("picLocks")->set_attribute("noChangeAspect", "1");
    c_node *fill = pic->append("blipFill");
    fill->append("blip")->set_attribute("embed", relationId);
    fill->append("stretch")->append("fillRect");
    c_node *sp = pic->append("spPr");
    c_node *xfrm = sp->append("xfrm");
    c_node *off = xfrm->append("off");
    off->set_attribute("x", "685800");
    off->set_attribute("y", "904875");
    c_node *ext = xfrm->append("ext");
    ext->set_attribute("cx", "1219370");
    ext->set_attribute("cy", "1219370");
    sp->append("prstGeom")->set_attribute("prst", "rect");
}

} // namespace

Drawing::Drawing(binding::e_edition edition) : XmlFile(edition, binding::PART_DRAWING) {}

Drawing::Drawing(binding::e_edition edition, const char *bytes, size_t size)
    : XmlFile(edition, binding::PART_DRAWING, bytes, size) {}

int Drawing::pictureSize() const {
    const c_node &root = document().root();
    int n = 0;
    for (const binding::c_child &c : root._children) n += pictureOf(root, c) != nullptr;
    return n;
}

DrawingPicture Drawing::picture(int index) const {
    const c_node &root = document().root();
    if (index >= 0)
        for (const binding::c_child &c : root._children) {
            const c_node *pic = pictureOf(root, c);
            if (!pic || index-- > 0) continue;
            DrawingPicture p;
            const c_node &anchor = *c.node;
            p.from = marker(anchor.child("from"));
            if (std::strcmp(childName(root, c), "twoCellAnchor") == 0) {
                p.to = marker(anchor.child("to"));
            } else {
                p.kind = DrawingPicture::OneCell;
                if (const c_node *ext = anchor.child("ext")) {
                    p.cx = std::strtoll(std::string(ext->attribute_or_default("cx")).c_str(),
                                        nullptr, 10);
                    p.cy = std::strtoll(std::string(ext->attribute_or_default("cy")).c_str(),
                                        nullptr, 10);
                }
            }
            const c_node *fill = pic->child("blipFill");
            const c_node *blip = fill ? fill->child("blip") : nullptr;
            if (blip) p.embed = std::string(blip->attribute_or_default("embed"));
            return p;
        }
    throw tberror("picture index is out of range");
}

void Drawing::addAnchor(int rowTop, int colLeft, int rowBottom, int colRight, int colOffTop,
                        int rowOffTop, int colOffBottom, int rowOffBottom,
                        const std::string &relationId) {
    const int number = relationId.size() > 3 ? std::atoi(relationId.c_str() + 3) : 0;
    c_node &root = document().root();
    // Appended last whatever anchors the part holds, so that the new
    // picture is the last one counted.
    binding::c_child c;
    c.decl = root.decl_of("twoCellAnchor");
    if (c.decl < 0) throw tberror("drawing has no anchors");
    const binding::s_element_decl &d = root.set()->elems[c.decl];
    c.node = std::make_unique<c_node>(root.set(), d.complex, d.simple);
    c_node *anchor = c.node.get();
    setMarker(anchor->append("from"), colLeft, rowTop, colOffTop, rowOffTop);
    setMarker(anchor->append("to"), colRight, rowBottom, colOffBottom, rowOffBottom);
    fillPicture(anchor->append("pic"), number, relationId);
    anchor->append("clientData");
    root._children.push_back(std::move(c));
}

} // namespace tabrix
