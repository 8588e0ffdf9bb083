// The class library and the utilities of the sdk: against the standard containers, and where callers are careless.
#include "sdk/classlib.h"
#include "sdk/vcstring.h"
#include "tests/extend/sdk_support.h"

#include <list>
#include <random>

namespace {

class ClassLibrary : public SdkTest {
protected:
    std::mt19937 m_random{20240229};
    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(m_random); }
};

TEST_F(ClassLibrary, ListsBehaveAsListsWhateverIsDone)
{
    CList<CStdStrW> ours(3);
    std::list<std::wstring> theirs;
    for (int i = 0; i < 4000; ++i) {
        const std::wstring text = std::to_wstring(upTo(40));
        const int place = theirs.empty() ? 0 : upTo(int(theirs.size()) - 1);
        const auto at = std::next(theirs.begin(), place);
        switch (upTo(8)) {
        case 0:
            ours.AddHead(text);
            theirs.push_front(text);
            break;
        case 1:
        case 2:
            ours.AddTail(text);
            theirs.push_back(text);
            break;
        case 3:
            ours.InsertBefore(ours.FindIndex(place), text);
            theirs.insert(theirs.empty() ? theirs.begin() : at, text);
            break;
        case 4:
            ours.InsertAfter(ours.FindIndex(place), text);
            theirs.insert(theirs.empty() ? theirs.end() : std::next(at), text);
            break;
        case 5:
            ours.RemoveAt(ours.FindIndex(place));
            if (!theirs.empty())
                theirs.erase(at);
            break;
        case 6:
            if (!theirs.empty()) {
                EXPECT_EQ(ours.RemoveTail(), CStdStrW(theirs.back()));
                theirs.pop_back();
            }
            break;
        case 7:
            EXPECT_EQ(ours.Find(text) != nullptr, std::find(theirs.begin(), theirs.end(), text) != theirs.end());
            break;
        case 8:
            if (upTo(60) == 0) {
                ours.RemoveAll();
                theirs.clear();
            }
            break;
        }
        ASSERT_EQ(ours.GetCount(), int(theirs.size()));
    }
    POSITION forward = ours.GetHeadPosition();
    for (const std::wstring& text : theirs)
        ASSERT_EQ(ours.GetNext(forward), CStdStrW(text));
    EXPECT_EQ(forward, nullptr);
    POSITION back = ours.GetTailPosition();
    for (auto at = theirs.rbegin(); at != theirs.rend(); ++at)
        ASSERT_EQ(ours.GetPrev(back), CStdStrW(*at));
    EXPECT_EQ(back, nullptr);
}

TEST_F(ClassLibrary, ArraysBehaveAsVectorsWithinTheirBounds)
{
    CArray<double, double> ours;
    std::vector<double> theirs;
    for (int i = 0; i < 4000; ++i) {
        const int place = upTo(60) - 5, count = upTo(6) - 1;
        const bool within = place >= 0 && place < int(theirs.size());
        switch (upTo(5)) {
        case 0:
            EXPECT_EQ(ours.Add(i), int(theirs.size()));
            theirs.push_back(i);
            break;
        case 1:
            ours.InsertAt(place, i, count);
            if (place >= 0 && count > 0) {
                theirs.resize(std::max<std::size_t>(theirs.size(), std::size_t(place)));
                theirs.insert(theirs.begin() + place, std::size_t(count), i);
            }
            break;
        case 2:
            ours.RemoveAt(place, count);
            if (within && count > 0)
                theirs.erase(theirs.begin() + place, theirs.begin() + std::min(place + count, int(theirs.size())));
            break;
        case 3:
            ours.SetAt(place, i);
            if (within)
                theirs[std::size_t(place)] = i;
            break;
        case 4:
            EXPECT_EQ(ours[place], within ? theirs[std::size_t(place)] : 0.0);
            break;
        case 5:
            if (upTo(20) == 0) {
                ours.SetSize(place);
                theirs.resize(std::size_t(std::max(place, 0)));
            }
            break;
        }
        ASSERT_EQ(ours.GetSize(), int(theirs.size())) << i;
        ASSERT_TRUE(theirs.empty() || std::equal(theirs.begin(), theirs.end(), ours.GetData())) << i;
    }
}

TEST_F(ClassLibrary, TextsBehaveAsTextsWithinTheirBounds)
{
    const std::wstring letters = L"abcabc .\u00E9";
    CStdStrW ours;
    std::wstring theirs;
    const auto clamped = [&](int index) { return std::size_t(std::clamp(index, 0, int(theirs.size()))); };
    for (int i = 0; i < 6000; ++i) {
        const int at = upTo(20) - 4, count = upTo(10) - 2;
        const wchar_t letter = letters[std::size_t(upTo(int(letters.size()) - 1))];
        switch (upTo(6)) {
        case 0:
            ours += letter;
            theirs += letter;
            break;
        case 1:
            ours.Insert(at, letter);
            theirs.insert(clamped(at), 1, letter);
            break;
        case 2:
            ours.Delete(at, count);
            if (count > 0)
                theirs.erase(clamped(at), std::size_t(count));
            break;
        case 3:
            EXPECT_EQ(ours.Left(count), CStdStrW(theirs.substr(0, std::size_t(std::max(count, 0)))));
            break;
        case 4:
            EXPECT_EQ(
                ours.Right(count),
                CStdStrW(theirs.substr(theirs.size() - std::min(theirs.size(), std::size_t(std::max(count, 0))))));
            break;
        case 5: {
            const auto found = at < 0 ? theirs.npos : theirs.find(letter, clamped(at));
            EXPECT_EQ(ours.Find(letter, at), found == theirs.npos ? -1 : int(found)) << at;
            break;
        }
        case 6:
            EXPECT_EQ(ours.Mid(at, count), CStdStrW(count > 0 ? theirs.substr(clamped(at), std::size_t(count)) : L""));
            break;
        }
        ASSERT_EQ(ours.str(), theirs) << i;
    }
}

TEST_F(ClassLibrary, TextsTakePiecesOfThemselves)
{
    CStdStrW s(L"abcab");
    EXPECT_EQ(s.Insert(2, s), 10);
    EXPECT_EQ(s, L"ababcabcab");
    EXPECT_EQ(s.Replace(s.GetString() + 8, s.GetString()), 4) << "ab by the whole";
    EXPECT_EQ(s.GetLength(), 42);
    s = s.GetString() + 30;
    s += s.GetString();
    EXPECT_EQ(s.GetLength(), 24);
    s.Format(L"%s/%s", s, s.GetString());
    EXPECT_EQ(s.GetLength(), 49);
    s = static_cast<const wchar_t*>(nullptr);
    EXPECT_EQ(s, L"");
    EXPECT_EQ(s.Compare(nullptr), 0);
    EXPECT_EQ(s.CompareNoCase(nullptr), 0);
    EXPECT_EQ(s.Replace(nullptr, L"x"), 0);
    s += static_cast<const wchar_t*>(nullptr);
    EXPECT_EQ(s.Insert(0, static_cast<const wchar_t*>(nullptr)), 0);
    EXPECT_EQ(s.FindOneOf(nullptr), -1);
    EXPECT_EQ(s.Trim(static_cast<const wchar_t*>(nullptr)), L"");
}

TEST_F(ClassLibrary, TextsOfTheObjectInterfaceAreCarelessProof)
{
    VcString s(L"ab");
    s.append(s).append(s.kwszPtr());
    EXPECT_EQ(s, L"abababab");
    s.assign(s.kwszPtr() + 6);
    EXPECT_EQ(s, L"ab");
    EXPECT_LE(s.substr(-3, 2).length(), 2u);
    EXPECT_LE(s.substrRev(-1).length(), s.length());
    EXPECT_LE(s.find(static_cast<const wchar_t*>(nullptr)), 0);
    EXPECT_EQ(s.findOneOf(nullptr), -1);
    EXPECT_GT(s.compare(static_cast<const wchar_t*>(nullptr)), 0);
    s.append(static_cast<const wchar_t*>(nullptr));
    s.assign(static_cast<const wchar_t*>(nullptr));
    EXPECT_TRUE(s.isEmpty());
    EXPECT_STREQ(s.kszPtr(), "");
    s.assign("\xC3\xA9\xFF");
    EXPECT_STREQ(s.kszPtr(), "\xC3\xA9\xFF") << "bytes that are no text survive";
    EXPECT_FALSE(s.loadString(999999));
}

TEST_F(ClassLibrary, StringsAndBuffersOfTheHeap)
{
    wchar_t* text = nullptr;
    EXPECT_EQ(vcutUpdString(L"one", text), RTNORM);
    EXPECT_EQ(vcutUpdString(L"a longer one", text), RTNORM);
    EXPECT_STREQ(text, L"a longer one");
    EXPECT_EQ(vcutUpdString(text, text), RTNORM);
    EXPECT_STREQ(text, L"a longer one");
    EXPECT_EQ(vcutUpdString(nullptr, text), RTERROR);
    EXPECT_EQ(vcutDelString(text), RTNORM);
    EXPECT_EQ(text, nullptr);
    EXPECT_NO_FATAL_FAILURE(vcutDelString(text));
    char* bytes = nullptr;
    EXPECT_EQ(vcutNewBuffer(bytes, 100), RTNORM);
    std::fill_n(bytes, 100, 'x');
    EXPECT_EQ(vcutDelBuffer(bytes), RTNORM);
    EXPECT_EQ(bytes, nullptr);
    EXPECT_NO_FATAL_FAILURE(vcutDelBuffer(bytes));
    EXPECT_EQ(vcutNewBuffer(bytes, std::size_t(-1)), RTERROR) << "more than there is";
    EXPECT_EQ(bytes, nullptr);
    vcdbFree(nullptr);
    vcad_free(nullptr);
    EXPECT_NO_FATAL_FAILURE(vcutRelRb(nullptr));
    wchar_t little[4] = L"###";
    EXPECT_EQ(vcutSPrintf(little, 4, L"%d", 123456), 3) << "cut";
    EXPECT_STREQ(little, L"123");
    EXPECT_EQ(vcutSPrintf(nullptr, 4, L"%d", 1), 0);
    EXPECT_EQ(vcutSPrintf(little, 0, L"%d", 1), 0);
    vcutPrintf(L"\n%s %d%% %.2f", L"100%s", 5, 1.5);
    EXPECT_TRUE(said("100%s 5% 1.50"));
}

TEST_F(ClassLibrary, Colours)
{
    EXPECT_EQ(vcedGetRGB(1) & 0xFFFFFF, vcedGetRGB(1));
    EXPECT_NE(vcedGetRGB(1), vcedGetRGB(5));
    for (const int index : {-1, 0, 256, 257, 1000000})
        EXPECT_LE(vcedGetRGB(index), 0xFFFFFFu) << index;
    VcCmColor a, b;
    EXPECT_EQ(a.setColorIndex(3), Vcad::eOk);
    EXPECT_EQ(b.setColorIndex(3), Vcad::eOk);
    EXPECT_FALSE(a != b);
    EXPECT_NE(a.setColorIndex(300), Vcad::eOk);
    EXPECT_EQ(a.colorIndex(), 3) << "what is refused changes nothing";
}

}  // namespace
