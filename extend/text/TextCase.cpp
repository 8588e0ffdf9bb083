#include "text/TextCase.h"

#include "classlib_string.h"
#include "system.h"
#include "vcut.h"

namespace {

// A text in its three forms, character by character: case mapping keeps the length.
class CaseForms {
public:
    explicit CaseForms(const wchar_t* text) : m_text(text), m_upper(text), m_lower(text)
    {
        m_upper.MakeUpper();
        m_lower.MakeLower();
    }
    int length() const { return m_text.GetLength(); }
    wchar_t plain(int at) const { return m_text[at]; }
    wchar_t upper(int at) const { return m_upper[at]; }
    wchar_t lower(int at) const { return m_lower[at]; }
    wchar_t toggled(int at) const { return plain(at) == upper(at) ? lower(at) : upper(at); }

private:
    CStdStrW m_text, m_upper, m_lower;
};

void replaceString(wchar_t*& text, const CStdStrW& converted)
{
    vcutDelString(text);
    const std::size_t characters = std::size_t(converted.GetLength()) + 1;
    if (vcutNewString(text, characters * sizeof(wchar_t)) == RTNORM)
        wcscpy_s(text, characters, converted);
}

// Builds the new string: a backslash and its follower as they stand, told to `spared`; every other character as
// `convert` gives it.
template <class Convert, class Spared>
void convertAround(wchar_t*& text, Convert convert, Spared spared)
{
    const CaseForms forms(text);
    std::wstring result;
    result.reserve(std::size_t(forms.length()));
    for (int i = 0; i < forms.length(); ++i) {
        if (forms.plain(i) != L'\\') {
            result += convert(forms, i);
            continue;
        }
        result += L'\\';
        if (i + 1 < forms.length())
            result += forms.plain(++i);
        spared(result.back());
    }
    replaceString(text, result);
}

template <class Convert>
void convertAround(wchar_t*& text, Convert convert)
{
    convertAround(text, convert, [](wchar_t) {});
}

bool isBrace(wchar_t c) { return c == L'{' || c == L'}'; }

wchar_t capitalised(const CaseForms& forms, int at, bool& capitaliseNext)
{
    const wchar_t c = capitaliseNext ? forms.upper(at) : forms.lower(at);
    capitaliseNext = false;
    return c;
}

}  // namespace

void tcase_upper(wchar_t*& text, bool isMText)
{
    if (isMText)
        convertAround(text, [](const CaseForms& forms, int at) { return forms.upper(at); });
    else
        replaceString(text, CStdStrW(text).MakeUpper());
}

void tcase_lower(wchar_t*& text, bool isMText)
{
    if (isMText)
        convertAround(text, [](const CaseForms& forms, int at) { return forms.lower(at); });
    else
        replaceString(text, CStdStrW(text).MakeLower());
}

// A sentence begins right behind a full stop: a blank there takes the capital, and the word behind it stays small.
void tcase_sentence(wchar_t*& text, bool)
{
    bool capitaliseNext = true;
    convertAround(text, [&capitaliseNext](const CaseForms& forms, int at) {
        const wchar_t c = forms.plain(at);
        if (isBrace(c))
            return c;
        const bool isLastStop = c == L'.' && !(at + 1 < forms.length() && forms.plain(at + 1) == L'.');
        if (isLastStop) {
            capitaliseNext = true;
            return c;
        }
        return capitalised(forms, at, capitaliseNext);
    });
}

// A word ends at a blank or at the paragraph code of an MTEXT, nowhere else.
void tcase_title(wchar_t*& text, bool)
{
    bool capitaliseNext = true;
    const auto convert = [&capitaliseNext](const CaseForms& forms, int at) {
        const wchar_t c = forms.plain(at);
        if (c == L' ')
            capitaliseNext = true;
        return c == L' ' || isBrace(c) ? c : capitalised(forms, at, capitaliseNext);
    };
    convertAround(text, convert, [&capitaliseNext](wchar_t spared) { capitaliseNext |= spared == L'P'; });
}

void tcase_change(wchar_t*& text, bool)
{
    convertAround(text, [](const CaseForms& forms, int at) { return forms.toggled(at); });
}
