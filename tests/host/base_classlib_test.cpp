#include "sdk/classlib.h"
#include "sdk/vcstring.h"

#include <gtest/gtest.h>

namespace {

// Both ways of writing the type, as members, parameters and results.
struct Holder {
    CStdStr<wchar_t> a;
    CStdStr<> b;
};
CStdStr<wchar_t> twice(CStdStr<> text) { return text + text; }

TEST(StdStr, TypeIsWrittenEitherWay)
{
    CStdStr plain;
    CStdStr text = L"ab";
    CStdStr<wchar_t> copy = text;
    CStdStr from(copy, 1);
    EXPECT_TRUE(plain.IsEmpty());
    EXPECT_EQ(twice(copy), L"abab");
    EXPECT_EQ(from, L"a");
    EXPECT_EQ((Holder{L"x", text}.b), text);
}

TEST(StdStr, Pieces)
{
    const CStdStr s(L"drawing.dwg");
    EXPECT_EQ(s.Left(7), L"drawing");
    EXPECT_EQ(s.Right(4), L".dwg");
    EXPECT_EQ(s.Mid(3, 4), L"wing");
    EXPECT_EQ(s.Mid(8), L"dwg");
    EXPECT_EQ(s.Left(99), s);
    EXPECT_EQ(s.Left(-1), L"");
    EXPECT_EQ(s.Right(99), s);
    EXPECT_EQ(s.Mid(99), L"");
    EXPECT_EQ(s.Mid(-2, 2), L"dr");
    EXPECT_EQ(s[99], L'\0');
    EXPECT_EQ(s[0u], L'd');
    EXPECT_EQ(s.SpanIncluding(L"dwra"), L"draw");
    EXPECT_EQ(s.SpanExcluding(L"."), L"drawing");
}

TEST(StdStr, SearchAndCompare)
{
    const CStdStr s(L"a.b.c");
    EXPECT_EQ(s.Find(L'.'), 1);
    EXPECT_EQ(s.Find(L".c"), 3);
    EXPECT_EQ(s.Find(L'.', 2), 3);
    EXPECT_EQ(s.Find(L"x"), -1);
    EXPECT_EQ(s.Find(L"a", 9), -1);
    EXPECT_EQ(s.ReverseFind(L'.'), 3);
    EXPECT_EQ(s.FindOneOf(L"cb"), 2);
    EXPECT_EQ(s.CompareNoCase(L"A.B.C"), 0);
    EXPECT_GT(s.Compare(L"A.B.C"), 0);
    EXPECT_TRUE(s == L"a.b.c" && L"a.b.c" == s && s != L"x" && s < CStdStr(L"b"));
}

TEST(StdStr, Changes)
{
    CStdStr s(L"  one two one ");
    EXPECT_EQ(s.Replace(L"one", L"11"), 2);
    EXPECT_EQ(s.Trim(), L"11 two 11");
    EXPECT_EQ(s.Replace(L'1', L'x'), 4);
    EXPECT_EQ(s.Remove(L' '), 2);
    EXPECT_EQ(s, L"xxtwoxx");
    EXPECT_EQ(s.Insert(2, L"--"), 9);
    EXPECT_EQ(s.Delete(2, 2), 7);
    EXPECT_EQ(s.Delete(5, 100), 5);
    EXPECT_EQ(s.TrimLeft(L'x').MakeUpper(), L"TWO");
    EXPECT_EQ(s.Replace(L"", L"y"), 0);
    s += s;
    s = s.GetString() + 3;
    EXPECT_EQ(s + L'!' + L"?" + s, L"TWO!?TWO");
    EXPECT_EQ(CStdStr(L" \t\n").Trim(), L"");
}

TEST(StdStr, Tokens)
{
    const CStdStr s(L",a,,bc,");
    std::vector<std::wstring> tokens;
    int at = 0;
    for (CStdStr token = s.Tokenize(L",", at); at != -1; token = s.Tokenize(L",", at))
        tokens.push_back(token.str());
    EXPECT_EQ(tokens, (std::vector<std::wstring>{L"a", L"bc"}));
}

TEST(StdStr, BufferIsCutAtItsTerminator)
{
    CStdStr s(L"abc");
    std::wcscpy(s.GetBuffer(20), L"hello");
    s.ReleaseBuffer();
    EXPECT_EQ(s.GetLength(), 5);
    s.GetBuffer(3);
    s.ReleaseBuffer(2);
    EXPECT_EQ(s, L"he");
}

TEST(StdStr, FormatTakesStringsByValue)
{
    CStdStr s, name(L"100%s");
    s.Format(L"%s has %d", name, 3);
    s.AppendFormat(L" (%.1f)", 0.25);
    EXPECT_EQ(s, L"100%s has 3 (0.2)");
    s.Format(L"%s", s);
    EXPECT_EQ(s, L"100%s has 3 (0.2)");
}

TEST(VcStrings, Members)
{
    VcString s(L"A0:1");
    s.append(L" = ").append(VcString(L"x"));
    EXPECT_EQ(s.length(), 8u);
    EXPECT_EQ(s.find(L"="), 5);
    EXPECT_EQ(s.find(L"%"), -1);
    EXPECT_EQ(s.findOneOf(L"1:"), 2);
    EXPECT_EQ(s.substr(3, 1), L"1");
    EXPECT_EQ(s.substr(2), L"A0");
    EXPECT_EQ(s.substr(5, -1), L"= x");
    EXPECT_EQ(s.substr(50, 2), L"");
    EXPECT_EQ(s.substrRev(3), L"= x");
    EXPECT_EQ(s.substrRev(99), s);
    EXPECT_EQ(s.compareNoCase(L"a0:1 = X"), 0);
    EXPECT_STREQ(VcString(L"\u00e9").kszPtr(), "\xC3\xA9");
    EXPECT_STREQ(s.format(L"%d:%g", 1, 2.5).kwszPtr(), L"1:2.5");
    EXPECT_TRUE(s.setEmpty().isEmpty());
}

TEST(Arrays, VcArrayGrowsAndFinds)
{
    VcArray<int> a(0, 8);
    EXPECT_EQ(a.append(5), 0);
    a.append(7);
    a.insertAt(1, 6);
    a.append(a);
    EXPECT_EQ(a.length(), 6);
    EXPECT_EQ(a.find(7), 2);
    EXPECT_TRUE(a.contains(5, 1));
    a.removeAt(0).removeLast();
    EXPECT_EQ(a.first(), 6);
    EXPECT_EQ(a.last(), 6);
    a[99] = 3;
    EXPECT_EQ(a[-1], 0);
    EXPECT_EQ(a.length(), 4);
}

TEST(Arrays, CArrayKeepsItsPromises)
{
    CStringArray names;
    EXPECT_EQ(names.Add(L"a"), 0);
    names.Add(L"b");
    names.InsertAt(1, L"m", 2);
    names.Append(names);
    EXPECT_EQ(names.GetCount(), 8);
    names.RemoveAt(6, 99);
    EXPECT_EQ(names.GetUpperBound(), 5);
    EXPECT_EQ(names[1], L"m");
    EXPECT_EQ(names.GetAt(77), L"");
    names.RemoveAt(-1);
    CByteArray bytes;
    bytes.SetSize(3);
    bytes.GetData()[2] = 9;
    EXPECT_EQ(bytes[2], 9);
    CWordArray counts;
    counts.SetAtGrow(2, 65535);
    ++counts[2];  // a word wraps
    EXPECT_EQ(counts.GetAt(2), 0);
    CArray<CStdStr<>, CStdStr<>> marked;
    marked.Add(marked.Add(L"x") == 0 ? L"y" : L"z");
    EXPECT_EQ(marked[1], L"y");
}

TEST(Arrays, ListInsertsAndRemovesAnywhere)
{
    CList<CStdStr<>> list;
    POSITION b = list.AddTail(L"b");
    list.InsertBefore(b, L"a");
    list.InsertAfter(b, L"c");
    for (int i = 0; i < 30; ++i)
        list.AddTail(L"more");
    list.AddTail(list);
    EXPECT_EQ(list.GetCount(), 66);
    list.RemoveAt(b);
    std::wstring all;
    for (POSITION at = list.GetHeadPosition(); at;)
        all += list.GetNext(at).str()[0];
    EXPECT_EQ(all.substr(0, 4), L"acmm");
    EXPECT_EQ(list.GetAt(list.FindIndex(32)), L"a");
    EXPECT_EQ(list.FindIndex(65), nullptr);
    EXPECT_EQ(list.Find(L"b", list.FindIndex(1)), list.FindIndex(33));
    EXPECT_EQ(list.RemoveHead(), L"a");
    EXPECT_EQ(list.RemoveTail(), L"more");
    const CList<CStdStr<>> copy = list;
    list.RemoveAll();
    EXPECT_EQ(copy.GetCount(), 63);
    EXPECT_EQ(list.GetHeadPosition(), nullptr);
}

}  // namespace
