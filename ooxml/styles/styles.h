// Stand-in for the stylesheet part until the styles work lands: the
// interface the sheets code against, every operation "not supported yet".
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "book/failure_frame.h"
#include "book/tberror.h"
#include "ooxml/binding/engine/document.h"
#include "ooxml/package/xfile.h"
#include "tabrix/IFormatT.h"
#include "tabrix/enums.h"

namespace tabrix {

template <class C> class Styles : public XFile {
public:
    Styles(binding::e_edition edition, bool utf8);
    Styles(binding::e_edition edition, const char *bytes, size_t size, bool utf8);
    ~Styles() override;
    void save(std::string &out) override;
    IFormatT<C> *addFormat(IFormatT<C> *init);
    IFontT<C> *addFont(IFontT<C> *init);
    IFormatT<C> *format(int index);
    IFontT<C> *font(int index);
    int formatSize();
    int fontSize();
    const C *customNumFormat(int fmt);
    int addCustomNumFormat(const C *customNumFormat);
    const C *defaultFont(int *size);
    void setDefaultFont(const C *fontName, int size);
    bool rgbMode();
    void setRgbMode(bool rgbMode);
    Color colorPack(int red, int green, int blue);
    void colorUnpack(Color color, int *red, int *green, int *blue);
    void setUtf8Mode(bool utf8);
    uint32_t getStyleID(IFormatT<C> *format);
    IFormatT<C> *formatByIndex(uint32_t styleIndex);
    bool isDate(uint32_t styleIndex);
    int maxDigWidth();
};

extern template class Styles<char>;
extern template class Styles<wchar_t>;

} // namespace tabrix
