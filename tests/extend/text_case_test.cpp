// What TCASE knows of characters.
#include "text/TcaseDlg.h"

#include <gtest/gtest.h>

namespace {

TEST(TextCase, SymbolsAreFoundAnywhereInAText)
{
    constexpr wchar_t kSymbols[] = {8776,  8736, 57600, 8452, 916,  632,  57601, 8801, 57856,
                                    57602, 8800, 8486,  937,  8522, 8322, 178,   179};
    for (const wchar_t symbol : kSymbols) {
        const wchar_t text[] = {L'a', symbol, L'b', 0};
        EXPECT_TRUE(TcaseDlg::includeSymbol(text)) << int(symbol);
        EXPECT_TRUE(TcaseDlg::includeSymbol(text + 1)) << int(symbol);
        EXPECT_FALSE(TcaseDlg::includeSymbol(text + 2)) << int(symbol);
    }
}

TEST(TextCase, OtherTextsHoldNone)
{
    for (const wchar_t* text : {L"", L"plain", L"\xB0\xB1\xB4", L"αω", L"%%d"})
        EXPECT_FALSE(TcaseDlg::includeSymbol(text));
    EXPECT_FALSE(TcaseDlg::includeSymbol(nullptr));
}

}  // namespace
