#include "text/Underline.h"

namespace {

constexpr int kCodeLength = 3;
constexpr const wchar_t* kCode = L"%%u";

}  // namespace

int countUnderlines(const CStdStrW& text)
{
    const auto isCodeAt = [&](int at) {
        return text[at] == L'%' && text[at + 1] == L'%' && (text[at + 2] == L'u' || text[at + 2] == L'U');
    };
    int count = 0;
    while (isCodeAt(count * kCodeLength))
        ++count;
    return count;
}

CStdStrW withoutUnderlines(const CStdStrW& text) { return text.Mid(countUnderlines(text) * kCodeLength); }

CStdStrW underlined(const CStdStrW& text) { return kCode + withoutUnderlines(text); }
