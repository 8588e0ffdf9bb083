// Keywords and texts: the questions of the sdk that are answered in words.
#include "tests/extend/sdk_support.h"

namespace {

class Words : public SdkTest {
protected:
    struct Asked {
        int result = 0;
        std::wstring text;
    };
    static Asked keyword()
    {
        wchar_t buffer[512] = L"";
        const int result = vcedGetKword(L"\nWord: ", buffer);
        return {result, buffer};
    }
    static Asked text(int spaces)
    {
        wchar_t buffer[512] = L"";
        const int result = vcedGetString(spaces, L"\nText: ", buffer);
        return {result, buffer};
    }
};

struct WordCase {
    const char* why;
    int bits;
    const wchar_t* keywords;
    const char* typed;
    int result;
    const wchar_t* word;
};
const WordCase kWords[] = {
    {"its capitals", 0, L"Yes No", "y", RTNORM, L"Yes"},
    {"the whole word", 0, L"Yes No", "no", RTNORM, L"No"},
    {"part of it beyond the capitals", 0, L"LAyer LType", "lay", RTNORM, L"LAyer"},
    {"less than the capitals is not enough", 0, L"LAyer LType", "l\nlt", RTNORM, L"LType"},
    {"capitals in the middle", 0, L"eXit Undo", "x", RTNORM, L"eXit"},
    {"from the front as well", 0, L"eXit Undo", "ex", RTNORM, L"eXit"},
    {"digits before the capitals", 0, L"2P 3P", "3p", RTNORM, L"3P"},
    {"Enter", 0, L"Yes No", "", RTNONE, L""},
    {"Enter refused", 1, L"Yes No", "\nn", RTNORM, L"No"},
    {"others are asked again", 0, L"Yes No", "maybe\nyes", RTNORM, L"Yes"},
    {"arbitrary input", 128, L"Yes No", "maybe", RTNORM, L"maybe"},
    {"the global form of a local word", 0, L"Oui Non _Yes No", "o", RTNORM, L"Yes"},
    {"the global word itself", 0, L"Oui Non _Yes No", "_n", RTNORM, L"No"},
    {"a local word is not a global one", 0, L"Oui Non _Yes No", "_oui\n_yes", RTNORM, L"Yes"},
    {"bits without effect are taken", 1024 | 2048, L"Yes No", "y", RTNORM, L"Yes"},
    {"Esc", 0, L"Yes No", "(cancel)", RTCAN, L""},
    {"nil leaves the question", 0, L"Yes No", "(car nil)\ny", RTNORM, L"Yes"},
};

TEST_F(Words, Keywords)
{
    for (const WordCase& c : kWords) {
        SCOPED_TRACE(c.why);
        ASSERT_EQ(vcedInitGet(c.bits, c.keywords), RTNORM);
        type(c.typed + std::string("\n"));
        const Asked asked = keyword();
        EXPECT_EQ(asked.result, c.result);
        EXPECT_EQ(asked.text, c.word);
    }
}

struct TextCase {
    const char* why;
    bool spaces;
    const char* typed;
    const wchar_t* text;
};
const TextCase kTexts[] = {
    {"a blank ends a word", false, "ab cd", L"ab"},
    {"what is left answers the next", false, "", L"cd"},
    {"a text keeps its blanks", true, "ab  cd", L"ab  cd"},
    {"Enter is an empty text", true, "\n", L""},
    {"a parenthesis is text", true, "(a) 1", L"(a) 1"},
    {"an unclosed one as well", true, "(setq a", L"(setq a"},
    {"beyond the first plane", true, "\xF0\x9F\x93\x90 \xC3\xA9", L"\U0001F4D0 \u00E9"},
    {"percent signs stay", true, "100%s%n%d", L"100%s%n%d"},
};

TEST_F(Words, TextsAreTakenAsTyped)
{
    for (const TextCase& c : kTexts) {
        SCOPED_TRACE(c.why);
        if (*c.typed)
            type(*c.typed == '\n' ? c.typed : c.typed + std::string("\n"));
        const Asked asked = text(c.spaces);
        EXPECT_EQ(asked.result, RTNORM);
        EXPECT_EQ(asked.text, c.text);
    }
}

TEST_F(Words, ExpressionsAreEvaluatedWithTextevalAndCancelAlwaysCancels)
{
    type("(+ 1 2)\n(cancel)\n");
    EXPECT_EQ(text(true).text, L"(+ 1 2)");
    EXPECT_EQ(text(true).result, RTCAN);
    setShort(L"TEXTEVAL", 1);
    type("(strcat \"a\" \" b\")\n");
    EXPECT_EQ(text(true).text, L"a b");
    setShort(L"TEXTEVAL", 0);
}

TEST_F(Words, LongOnesFitTheBuffer)
{
    std::vector<wchar_t> buffer(600, L'#');
    double number = 0;
    for (const std::size_t length : {511u, 512u, 4000u}) {
        type(std::string(length, 'x') + "\n");
        std::fill(buffer.begin(), buffer.end(), L'#');
        ASSERT_EQ(vcedGetString(1, nullptr, buffer.data()), RTNORM);
        EXPECT_EQ(std::wcslen(buffer.data()), 511u) << length;
        EXPECT_EQ(buffer[512], L'#') << "nothing beyond the buffer's end";
        vcedInitGet(128, nullptr);
        type(std::string(length, 'y') + "\n");
        std::fill(buffer.begin(), buffer.end(), L'#');
        EXPECT_EQ(vcedGetReal(nullptr, &number), RTKWORD);
        ASSERT_EQ(vcedGetInput(buffer.data()), RTNORM);
        EXPECT_LE(std::wcslen(buffer.data()), 511u);
        EXPECT_EQ(buffer[512], L'#');
    }
}

}  // namespace
