#include "officeart/record_checks.h"

namespace tabrix {

namespace {

const unsigned kVer = 1, kType = 2, kInst = 4, kLen = 8;
const auto C = OfficeArtBody::Container;
const auto A = OfficeArtBody::Atom;
const auto P = OfficeArtBody::Properties;
const auto B = OfficeArtBody::Blip;

const OfficeArtRecordCheck kChecks[] = {
    {0xF000, "OfficeArtDggContainer", kVer | kType | kInst, 15, 0, 0, C},
    {0xF001, "OfficeArtBStoreContainer", kVer | kType, 15, 0, 0, OfficeArtBody::BStore},
    {0xF002, "OfficeArtDgContainer", kType | kInst, 15, 0, 0, C},
    {0xF003, "OfficeArtSpgrContainer", kVer | kType | kInst, 15, 0, 0, C},
    {0xF004, "OfficeArtSpContainer", kVer | kType | kInst, 15, 0, 0, C},
    {0xF005, "OfficeArtSolverContainer", kVer | kType, 15, 0, 0, C},
    {0xF006, "OfficeArtFDGGBlock", kVer | kType | kInst, 0, 0, 0, OfficeArtBody::FDGG},
    {0xF007, "OfficeArtFBSE", kVer | kType, 2, 0, 0, OfficeArtBody::FBSE},
    {0xF008, "OfficeArtFDG", kVer | kType | kLen, 0, 0, 8, A},
    {0xF009, "OfficeArtFSPGR", kVer | kType | kInst | kLen, 1, 0, 16, A},
    {0xF00A, "OfficeArtFSP", kVer | kType | kLen, 2, 0, 8, A},
    {0xF00B, "OfficeArtFOPT", kVer | kType, 3, 0, 0, P},
    {0xF00D, "OfficeArtClientTextbox", kVer | kType | kInst | kLen, 0, 0, 0, A},
    {0xF00F, "OfficeArtChildAnchor", kVer | kType | kInst | kLen, 0, 0, 16, A},
    {0xF010, "OfficeArtClientAnchorSheet", kVer | kType | kInst | kLen, 0, 0, 18, A},
    {0xF011, "OfficeArtClientData", kVer | kType | kInst | kLen, 0, 0, 0, A},
    {0xF012, "OfficeArtFConnectorRule", kVer | kType | kInst | kLen, 1, 0, 24, A},
    {0xF014, "OfficeArtFArcRule", kVer | kType | kInst | kLen, 0, 0, 8, A},
    {0xF017, "OfficeArtFCalloutRule", kVer | kType | kInst | kLen, 0, 0, 8, A},
    {0xF01A, "OfficeArtBlipEMF", kVer | kType, 0, 0, 0, B},
    {0xF01B, "OfficeArtBlipWMF", kVer | kType, 0, 0, 0, B},
    {0xF01C, "OfficeArtBlipPICT", kVer | kType, 0, 0, 0, B},
    {0xF01D, "OfficeArtBlipJPEG", kVer | kType, 0, 0, 0, B},
    {0xF01E, "OfficeArtBlipPNG", kVer | kType, 0, 0, 0, B},
    {0xF01F, "OfficeArtBlipDIB", kVer | kType, 0, 0, 0, B},
    {0xF020, "OfficeArtBlipTIFF", kVer | kType, 0, 0, 0, B},
    {0xF118, "OfficeArtFRITContainer", kVer | kType, 0, 0, 0, A},
    {0xF119, "OfficeArtFDGSL", kVer | kType | kInst, 0, 0, 0, A},
    {0xF11A, "OfficeArtColorMRUContainer", kVer | kType, 0, 0, 0, A},
    {0xF11D, "OfficeArtFPSPL", kVer | kType | kInst | kLen, 0, 0, 4, A},
    {0xF11E, "OfficeArtSplitMenuColorContainer", kVer | kType | kInst | kLen, 0, 4, 16, A},
    {0xF121, "OfficeArtFOPT", kVer | kType, 3, 0, 0, P},
    {0xF122, "OfficeArtFOPT", kVer | kType, 3, 0, 0, P},
};

} // namespace

const OfficeArtRecordCheck *findRecordCheck(uint16_t type) {
    for (const OfficeArtRecordCheck &c : kChecks)
        if (c.type == type) return &c;
    return nullptr;
}

bool passesCheck(const OfficeArtRecordCheck &c, const OfficeArtRecordHeader &h) {
    if ((c.mask & kVer) && h.ver() != c.ver) return false;
    if ((c.mask & kType) && h.type() != c.type) return false;
    if ((c.mask & kInst) && h.instance() != c.instance) return false;
    if ((c.mask & kLen) && h.len() != c.fixedLength) return false;
    return true;
}

} // namespace tabrix
