// A small book around one Open XML sheet, for tests, fuzz targets and
// benchmarks of the cell store before a real book owns it: shared strings
// made on first use, a stylesheet, R1C1 mode as asked.  The sheet comes
// framed, so its operations set the book's message as in a real book.
#ifndef TABRIX_TESTS_SUPPORT_XML_SHEET_FAKE_H
#define TABRIX_TESTS_SUPPORT_XML_SHEET_FAKE_H

#include <memory>
#include <string>

#include "book/operation_frame.h"
#include "book/text_result.h"
#include "ooxml/lmx/lmx_error.h"
#include "ooxml/sheet/xml_sheet_cells.h"

namespace xmlfake {

template <class C> class Book : public tabrix::SheetServicesT<C> {
public:
    explicit Book(binding::e_edition edition = binding::TRANSITIONAL)
        : edition(edition), _styles(edition, true) {}
    tabrix::SharedStrings &sharedStrings() override {
        if (!sst) sst = std::make_unique<tabrix::SharedStrings>(edition);
        return *sst;
    }
    tabrix::SharedStrings *sharedStringsIfAny() override { return sst.get(); }
    tabrix::Styles<C> &styles() override { return _styles; }
    bool r1c1Mode() override { return r1c1; }
    bool utf8Mode() override { return true; }

    binding::e_edition edition;
    std::unique_ptr<tabrix::SharedStrings> sst;
    bool r1c1 = false;
    tabrix::XString message;

private:
    tabrix::Styles<C> _styles;
};

template <class C> class SheetImpl : public tabrix::XMLSheetCellsT<C> {
public:
    SheetImpl(Book<C> &book) : tabrix::XMLSheetCellsT<C>(book, book.edition), _fake(&book) {}
    SheetImpl(Book<C> &book, const std::string &xml)
        : tabrix::XMLSheetCellsT<C>(book, book.edition, xml.data(), xml.size()), _fake(&book) {}
    tabrix::XString &frameMessage() { return _fake->message; }
    std::string save() {
        std::string out;
        if (this->document().marshal(out)) throw tabrix::tberror("the worksheet doesn't marshal");
        return out;
    }
    void structureEdited() { this->markDimensionsStale(); }

protected:
    void noteWarning(const char *text) override { _fake->message.assign(text); }

private:
    Book<C> *_fake;
};

template <class C> using Sheet = tabrix::FramedSheetT<SheetImpl<C>>;

// The message of the book as narrow text.
template <class C> std::string message(Book<C> &book) {
    return book.message.template c_str<char>(true);
}

} // namespace xmlfake

#endif
