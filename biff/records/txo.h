// TxO (id 438): the text of a comment box.  The record gives the text's
// length and the size of its formatting runs; the text follows in CONTINUE
// records, each beginning with a byte that says whether its characters are
// one or two bytes wide, and the runs in a last CONTINUE record.
#ifndef TABRIX_BIFF_RECORDS_TXO_H
#define TABRIX_BIFF_RECORDS_TXO_H
#include "biff/biff_record.h"
#include <cstddef>
#include <string>
#include <vector>
namespace tabrix {
// The text of the TxO at run[at], as UTF-16 units; `next` gets the index
// behind the CONTINUE records that belong to it.  Throws "error in record
// TextObject" for a record too short for its fields.
std::wstring txoText(const std::vector<Biff> &run, size_t at, size_t *next);
// A TxO with its text records and one run in font 5 (UTF-16 units; a text
// longer than a cell may hold is cut).
std::vector<Biff> txoRecords(const std::wstring &units);
} // namespace tabrix
#endif
