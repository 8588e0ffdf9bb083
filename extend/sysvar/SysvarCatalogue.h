// SYSVDLG.DAT, the catalogue of system variables, and the records that are made of its entries.
//
// An entry is two lines that end in CR LF: a mark, '#' for a read-only variable or '!' for another, then the name, the
// type and where the value is kept, each with '|' behind it, and the initial value; then the description, in which the
// two characters \n and \t stand for a line break and a tab. What stands between entries is passed over.
#pragma once

#include "classlib_string.h"

#include <string_view>

struct SysvarData {
    CStdStrW name;
    CStdStrW type;
    CStdStrW savedIn;
    CStdStrW initial;
    CStdStrW current;   // the live value, as it stood when the record was made
    CStdStrW newValue;  // the value to apply
    CStdStrW description;
    bool readOnly = false;
};

// The whole file from the host's code page; empty where it cannot be read.
std::wstring readCatalogue(const wchar_t* path);

// Goes through the entries of a catalogue. The text must outlive it.
class CatalogueReader {
public:
    explicit CatalogueReader(std::wstring_view text) : m_text(text) {}

    // The next entry, without values; false when there is none.
    bool next(SysvarData& record);

private:
    static constexpr std::size_t kNone = std::wstring_view::npos;

    // A mark is searched for anew only when reading has gone past it.
    struct Mark {
        wchar_t character;
        std::size_t at = 0;
        bool searched = false;
    };

    std::size_t find(Mark& mark);
    std::size_t nextMark();
    CStdStrW field();
    CStdStrW line();

    std::wstring_view m_text;
    std::size_t m_at = 0;
    bool m_isFirst = true;
    Mark m_readOnly = {L'#'};
    Mark m_writable = {L'!'};
};
