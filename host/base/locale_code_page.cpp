#include "sdk/classlib_files.h"

namespace {

struct LanguagePage {
    int language;  // the low ten bits of a locale's number
    int codePage;
};

constexpr LanguagePage kPages[] = {
    {0x01, 1256}, {0x02, 1251}, {0x04, 936},  {0x05, 1250}, {0x08, 1253}, {0x0D, 1255}, {0x0E, 1250}, {0x11, 932},
    {0x12, 949},  {0x15, 1250}, {0x18, 1250}, {0x19, 1251}, {0x1A, 1250}, {0x1B, 1250}, {0x1C, 1250}, {0x1E, 874},
    {0x1F, 1254}, {0x20, 1256}, {0x22, 1251}, {0x23, 1251}, {0x24, 1250}, {0x25, 1257}, {0x26, 1257}, {0x27, 1257},
    {0x29, 1256}, {0x2A, 1258}, {0x2C, 1254}, {0x2F, 1251}, {0x3F, 1251}, {0x40, 1251}, {0x44, 1251}, {0x50, 1251},
};

// Chinese in traditional letters, Serbian and Azeri in Cyrillic: the country decides, not the language.
constexpr LanguagePage kLocales[] = {
    {0x0404, 950}, {0x0C04, 950}, {0x1404, 950}, {0x0C1A, 1251}, {0x1C1A, 1251}, {0x281A, 1251}, {0x082C, 1251},
};

}  // namespace

int VcCodePage::LanguageToCodePage(int localeId)
{
    for (const auto& [locale, page] : kLocales)
        if (localeId == locale)
            return page;
    for (const auto& [language, page] : kPages)
        if ((localeId & 0x3FF) == language)
            return page;
    return 1252;
}
