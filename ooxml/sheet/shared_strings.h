// SharedStrings: the book's shared string table part.  A plain table (see
// plain_strings.h) is held as its texts; any other stays in the bound tree
// as read (rich runs included).  An open-addressing hash table
// from an item's stored (escaped) text to its index de-duplicates what is
// added, touching one slot and, on a hash match, one text per look-up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "ooxml/binding/engine/document.h"
#include "ooxml/package/xfile.h"
#include "ooxml/sheet/plain_strings.h"

namespace tabrix {

class SharedStrings : public XFile {
public:
    explicit SharedStrings(binding::e_edition edition);                        // an empty table
    SharedStrings(binding::e_edition edition, const char *bytes, size_t size); // throws tberror
    ~SharedStrings() override;
    void save(std::string &out) override;
    // Index of the item holding `text` (UTF-16 units); every call counts.
    uint32_t addString(const std::wstring &text);
    // The user's text of an item, rich runs flattened; throws "index is out
    // of range or no value".
    std::wstring stringByIndex(uint32_t index) const;
    size_t size() const { return _plain ? _table.texts.size() : _items.size(); }

    // The same for a text already in its stored form (UTF-8 with the
    // escapes made), which the caller has checked.
    uint32_t addStoredText(std::string_view stored);
    // The stored text of a plain item, followed by a NUL; false for a rich
    // one or an index out of range.  Lets a UTF-8 caller skip the wide
    // round trip.
    bool plainStoredText(uint32_t index, std::string_view &text) const;

private:
    void indexItems();
    void indexTexts();
    // The slot of `key` (hash `h`): its item, or the empty slot to take.
    size_t probe(std::string_view key, uint32_t h) const;
    void enter(std::string_view key, uint32_t h, uint32_t index);
    void grow();
    // The stored text of an item: its plain text, or its runs' texts joined.
    // Points into the tree, or into `joined` for runs.
    std::string_view storedText(const binding::c_node &item, std::string &joined) const;

    binding::e_edition _edition;
    bool _plain = false; // the table is held in _table, not in the tree
    PlainStrings _table;
    binding::c_document _doc;
    std::vector<binding::c_node *> _items; // the si elements, in order
    std::vector<std::string_view> _keys;   // stored text of each item of the tree
    std::string_view keyOf(uint32_t i) const { return _plain ? _table.texts[i] : _keys[i]; }
    // Slots: hash in the high half, item index + 1 in the low half, 0 when empty.
    std::vector<uint64_t> _slots;
    size_t _used = 0;                    // slots taken
    std::deque<std::string> _joinedKeys; // keys of rich items, which the tree doesn't hold whole
    uint64_t _count = 0;
    bool _counted = false;                          // whether the part has a count to write
    bool _grown = false;                            // whether items were added since the load
    int32_t _siDecl = -1, _tDecl = -1, _rDecl = -1; // declarations of si, its t and r
    bool _indexed = false;                          // whether _keys and _slots are made
    std::string _scratch;
};

} // namespace tabrix
