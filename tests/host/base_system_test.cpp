#include "host/base/code_page.h"
#include "host/base/console.h"
#include "host/base/files.h"
#include "host/base/message_service.h"
#include "host/base/modules.h"
#include "host/base/resources.h"
#include "sdk/classlib.h"
#include "sdk/system.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

std::string contentOf(const std::string& path) { return readWholeFile(path).value_or("(missing)"); }

class Folder : public testing::Test {
protected:
    const std::string folder = [] {
        std::string name = testing::TempDir() + "vekad-base-XXXXXX";
        return std::string(mkdtemp(name.data())) + "/";
    }();
    ~Folder() override { std::filesystem::remove_all(folder); }

    std::wstring wide(const char* name) const { return CStdStr((folder + name).c_str()).str(); }
    void put(const char* name, std::string_view content) const
    {
        std::ofstream(folder + name, std::ios::binary) << content;
    }
};

using Files = Folder;

TEST_F(Files, AtomicWriteReplacesAndKeepsPermissions)
{
    put("a", "old");
    std::filesystem::permissions(folder + "a",
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    std::string error;
    ASSERT_TRUE(writeFileAtomically(folder + "a", "new", error)) << error;
    EXPECT_EQ(contentOf(folder + "a"), "new");
    EXPECT_EQ(std::filesystem::status(folder + "a").permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_FALSE(writeFileAtomically(folder + "none/a", "x", error));
    EXPECT_NE(error.find("none/a"), error.npos);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);  // no temporary is left
}

TEST_F(Files, NamesAreFoundWithoutRegardToCaseWhenNoneIsExact)
{
    makeFolders(folder + "Support/Fonts");
    put("Support/Fonts/TXT.shx", "1");
    put("Support/Fonts/txt.SHX", "2");
    EXPECT_EQ(findFileNoCase(folder, "support\\FONTS/txt.SHX"), folder + "Support/Fonts/txt.SHX");
    EXPECT_EQ(findFileNoCase(folder, "support/fonts/txt.shx"), folder + "Support/Fonts/TXT.shx");
    EXPECT_EQ(findFileNoCase(folder, "support/none"), std::nullopt);
    EXPECT_EQ(findFileNoCase(folder, "support"), std::nullopt);
}

TEST_F(Files, BackslashesDivideFoldersUnlessTheyAreInAName)
{
    makeFolders(folder + "fcmp");
    EXPECT_EQ(nativePath(folder + "fcmp\\Old - a"), folder + "fcmp/Old - a");
    put("odd\\name", "x");
    EXPECT_EQ(nativePath(folder + "odd\\name"), folder + "odd\\name");
    EXPECT_EQ(fileNameOf("a/b\\c.d"), "c.d");
    EXPECT_EQ(folderOf("c.d"), "");
}

TEST_F(Files, SystemCalls)
{
    put("a", "abc");
    ASSERT_TRUE(CopyFileW(wide("a").c_str(), wide("b").c_str(), FALSE));
    EXPECT_TRUE(CopyFileW(wide("a").c_str(), wide("b").c_str(), FALSE));
    EXPECT_FALSE(CopyFileW(wide("a").c_str(), wide("b").c_str(), TRUE));
    EXPECT_FALSE(CopyFileW(wide("none").c_str(), wide("b").c_str(), FALSE));
    EXPECT_EQ(contentOf(folder + "b"), "abc");
    EXPECT_TRUE(GetFileAttributesW(wide("").c_str()) & FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_FALSE(GetFileAttributesW(wide("a").c_str()) & FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(GetFileAttributesW(wide("none").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_TRUE(DeleteFileW(wide("b").c_str()));
    EXPECT_FALSE(DeleteFileW(wide("b").c_str()));
}

TEST_F(Files, HandlesAreCheckedBeforeUse)
{
    put("a", "abc");
    EXPECT_EQ(CreateFileW(wide("none").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr),
              INVALID_HANDLE_VALUE);
    EXPECT_EQ(CreateFileW(wide("").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr), INVALID_HANDLE_VALUE);
    HANDLE file = CreateFileW(wide("a").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    char buffer[10] = {};
    DWORD got = 0;
    EXPECT_EQ(GetFileSize(file, nullptr), 3u);
    EXPECT_TRUE(ReadFile(file, buffer, sizeof buffer, &got, nullptr));
    EXPECT_EQ(std::string(buffer, got), "abc");
    EXPECT_FALSE(WriteFile(file, "x", 1, &got, nullptr));
    EXPECT_TRUE(CloseHandle(file));
    EXPECT_FALSE(CloseHandle(file));
    EXPECT_FALSE(ReadFile(file, buffer, 1, &got, nullptr));
    EXPECT_FALSE(CloseHandle(INVALID_HANDLE_VALUE));
}

TEST(SystemPaths, TemporaryFolderIsOursAndHasTheCompareFolder)
{
    wchar_t buffer[1024];
    const DWORD length = GetTempPathW(1024, buffer);
    ASSERT_GT(length, 0u);
    EXPECT_EQ(buffer[length - 1], L'/');
    EXPECT_TRUE(folderExists(temporaryFolder() + "fcmp"));
    EXPECT_EQ(GetTempPathW(2, buffer), length + 1);
    std::filesystem::remove_all(temporaryFolder());
}

TEST(SystemPaths, ProgramIsTheHost)
{
    wchar_t buffer[1024];
    ASSERT_GT(GetModuleFileNameW(GetModuleHandleW(L"vekad.exe"), buffer, 1024), 0u);
    EXPECT_EQ(CStdStr(buffer).Right(10), L"host_tests");
    EXPECT_EQ(GetModuleHandleW(L"none.vrx"), nullptr);
    EXPECT_TRUE(folderExists(hostFolder()));
    EXPECT_EQ(LoadLibraryW(L"none.dll"), nullptr);
    EXPECT_EQ(GetProcAddress(GetModuleHandleW(L"vekad.exe"), "no_such_symbol"), nullptr);
}

TEST(Resources, StaleAndForeignHandlesGiveNoText)
{
    wchar_t buffer[10] = L"x";
    int notALibrary = 0;
    EXPECT_EQ(LoadStringW(&notALibrary, 1, buffer, 10), 0);
    EXPECT_EQ(resourceText(nullptr, 1), nullptr);
    EXPECT_FALSE(FreeLibrary(&notALibrary));
    CStdStr text(L"old");
    EXPECT_FALSE(text.LoadString(&notALibrary, 1));
    EXPECT_TRUE(text.IsEmpty());
}

TEST(Resources, TextsComeFromALibraryWhileItIsLoaded)
{
    HMODULE library = LoadLibraryW(L"testresources.DLL");
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(LoadLibraryW(L"TestResources.dll"), library);
    EXPECT_EQ(GetModuleHandleW(L"TESTRESOURCES"), library);
    const auto* attachments = static_cast<const int*>(GetProcAddress(library, "attachments"));
    ASSERT_NE(attachments, nullptr);
    EXPECT_EQ(*attachments, 1);
    CStdStr text;
    EXPECT_TRUE(text.LoadString(library, 3000));
    EXPECT_EQ(text, L"Schl\u00fcssel");
    EXPECT_FALSE(text.LoadString(library, 8));
    pushResourceHandle(library);
    text.Format(7u, 5);
    EXPECT_EQ(text, L"seven 5");
    wchar_t buffer[6];
    EXPECT_EQ(LoadStringW(nullptr, 7, buffer, 6), 5);
    EXPECT_TRUE(FreeLibrary(library));
    EXPECT_TRUE(text.LoadString(7));
    EXPECT_TRUE(FreeLibrary(library));
    EXPECT_FALSE(text.LoadString(7));
    EXPECT_FALSE(FreeLibrary(library));
    EXPECT_EQ(GetModuleHandleW(L"TestResources.dll"), nullptr);
    popResourceHandle();
}

TEST(Resources, HandlesFormAStack)
{
    int a = 0, b = 0;
    pushResourceHandle(&a);
    pushResourceHandle(&b);
    EXPECT_EQ(AfxGetResourceHandle(), &b);
    AfxSetResourceHandle(nullptr);
    popResourceHandle();
    EXPECT_EQ(AfxGetResourceHandle(), &a);
    popResourceHandle();
    popResourceHandle();
    EXPECT_EQ(AfxGetResourceHandle(), nullptr);
}

struct BoxCase {
    unsigned style;
    int button;
};

TEST(MessageBoxes, WithoutAServiceTheDefaultButtonIsPressed)
{
    std::string printed;
    setConsoleSink([&](std::string_view text) { printed += text; });
    const BoxCase cases[] = {
        {MB_OK, IDOK},       {MB_YESNO | MB_ICONQUESTION, IDYES},        {MB_YESNO | MB_DEFBUTTON2, IDNO},
        {MB_OKCANCEL, IDOK}, {MB_YESNOCANCEL | MB_DEFBUTTON3, IDCANCEL}, {MB_OK | MB_DEFBUTTON3, IDOK},
        {0xF, IDOK},
    };
    for (const auto& [style, button] : cases)
        EXPECT_EQ(MessageBoxW(nullptr, L"Sure?", L"T", style), button) << style;
    setConsoleSink({});
    EXPECT_NE(printed.find("Sure?"), printed.npos);
}

TEST(MessageBoxes, TheServiceAnswers)
{
    struct : MessageService {
        int show(std::string_view text, std::string_view, unsigned) override { return text == "a" ? IDNO : IDYES; }
        short keyState(int key) override { return key == VK_SHIFT ? -1 : 0; }
    } service;
    setMessageService(&service);
    EXPECT_EQ(AfxMessageBox(L"a", MB_YESNO), IDNO);
    EXPECT_LT(GetKeyState(VK_SHIFT), 0);
    setMessageService(nullptr);
    EXPECT_EQ(GetKeyState(VK_SHIFT), 0);
}

TEST(SystemText, NumbersFromTheFront)
{
    EXPECT_EQ(_wtoi(L" 12abc"), 12);
    EXPECT_EQ(_wtoi(L"-99999999999"), -2147483647 - 1);
    EXPECT_EQ(_wtol(L"+7"), 7);
    EXPECT_EQ(_wtof(L"1.5,2"), 1.5);
    EXPECT_EQ(_wtof(L"x"), 0);
    EXPECT_EQ(_wtoi(nullptr), 0);
}

TEST(SystemText, CopiesThatDoNotFitLeaveAnEmptyText)
{
    wchar_t buffer[4] = L"abc";
    EXPECT_EQ(wcscpy_s(buffer, L"xyz"), 0);
    EXPECT_STREQ(buffer, L"xyz");
    EXPECT_NE(wcscpy_s(buffer, L"long text"), 0);
    EXPECT_STREQ(buffer, L"");
    EXPECT_EQ(wcsncpy_s(buffer, L"abcdef", 3), 0);
    EXPECT_STREQ(buffer, L"abc");
    EXPECT_EQ(wcsncpy_s(buffer, L"12345", _TRUNCATE), 0);
    EXPECT_STREQ(buffer, L"123");
    EXPECT_NE(wcsncpy_s(buffer, L"abcdef", 5), 0);
    EXPECT_EQ(_wcsupr_s(wcsncpy_s(buffer, L"\u00e9b", 2) == 0 ? buffer : nullptr, 4), 0);
    EXPECT_STREQ(buffer, L"\u00c9B");
    char from[4] = "abc", to[2];
    EXPECT_NE(memcpy_s(to, sizeof to, from, sizeof from), 0);
    EXPECT_EQ(memcpy_s(to, sizeof to, from, 2), 0);
}

TEST(SystemText, PathsAreSplit)
{
    wchar_t drive[8], folder[80], name[80], extension[80];
    _wsplitpath(L"/home/x\\a.b.dwg", drive, folder, name, extension);
    EXPECT_STREQ(folder, L"/home/x\\");
    EXPECT_STREQ(name, L"a.b");
    EXPECT_STREQ(extension, L".dwg");
    _wsplitpath(L"plain", nullptr, folder, name, extension);
    EXPECT_STREQ(folder, L"");
    EXPECT_STREQ(name, L"plain");
    EXPECT_STREQ(extension, L"");
}

TEST(SystemText, CodePageConversions)
{
    EXPECT_EQ(GetACP(), 1252u);
    wchar_t wide[8];
    EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "\x80x", -1, wide, 8), 3);
    EXPECT_STREQ(wide, L"\u20acx");
    EXPECT_EQ(MultiByteToWideChar(932, 0, "\x83\x5C", 2, nullptr, 0), 1);
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "\xC3\xA9\xC3\xA9", 4, wide, 1), 0);
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, "\xFF", 1, wide, 8), 0);
    char bytes[8];
    BOOL replaced = FALSE;
    EXPECT_EQ(WideCharToMultiByte(1252, 0, L"\u20ac\u4f60", -1, bytes, 8, "#", &replaced), 3);
    EXPECT_STREQ(bytes, "\x80#");
    EXPECT_TRUE(replaced);
    EXPECT_FALSE(IsDBCSLeadByte(0x83));
    ASSERT_TRUE(CodePage::setHost(932));
    EXPECT_TRUE(IsDBCSLeadByte(0x83));
    CodePage::setHost(1252);
    EXPECT_EQ(VcCodePage::LanguageToCodePage(0x409), 1252);
    EXPECT_EQ(VcCodePage::LanguageToCodePage(0x804), 936);
    EXPECT_EQ(VcCodePage::LanguageToCodePage(0x404), 950);
}

TEST_F(Files, ProgramsAreStartedWithTheirArguments)
{
    CStdStr line(("sh -c \"echo \\\"$0\\\" > " + folder + "out\" \"two words\"").c_str());
    PROCESS_INFORMATION information = {};
    ASSERT_TRUE(
        CreateProcessW(nullptr, line.GetBuffer(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, nullptr, &information));
    for (int i = 0; i < 500 && contentOf(folder + "out") != "two words\n"; ++i)
        usleep(10000);
    EXPECT_EQ(contentOf(folder + "out"), "two words\n");
    EXPECT_TRUE(CloseHandle(information.hProcess));
    EXPECT_TRUE(CloseHandle(information.hThread));
    line = L"no_such_program_at_all";
    EXPECT_FALSE(
        CreateProcessW(nullptr, line.GetBuffer(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, nullptr, &information));
}

using TextFiles = Folder;

TEST_F(TextFiles, EscapesCarryWhatThePageLacks)
{
    VcCStdioFile out;
    ASSERT_TRUE(out.Open(wide("a.dim").c_str(), CFile::modeCreate | CFile::modeWrite));
    out.WriteString(L"\u00e9 \u4f60\nsecond\n");
    out.Close();
    EXPECT_FALSE(out.Failed());
    EXPECT_EQ(contentOf(folder + "a.dim"), "\xE9 \\U+4F60\nsecond\n");
    VcCStdioFile in;
    ASSERT_TRUE(in.Open(wide("a.dim").c_str(), 0));
    EXPECT_FALSE(in.readBOM());
    wchar_t line[64];
    EXPECT_STREQ(in.ReadString(line, 64), L"\u00e9 \u4f60\n");
    EXPECT_STREQ(in.ReadString(line, 4), L"sec");
    EXPECT_STREQ(in.ReadString(line, 64), L"ond\n");
    EXPECT_EQ(in.ReadString(line, 64), nullptr);
}

struct MarkCase {
    std::string_view bytes;
    bool mark;
};

TEST_F(TextFiles, MarksNameTheFormat)
{
    const MarkCase cases[] = {
        {"\xEF\xBB\xBF\xC3\xA9\\U+4F60", true},
        {std::string_view("\xFF\xFE\xE9\0\\\0U\0+\0"
                          "4\0F\0"
                          "6\0"
                          "0\0",
                          18),
         true},
        {std::string_view("\xFE\xFF\0\xE9\0\\\0U\0+\0"
                          "4\0F\0"
                          "6\0"
                          "0",
                          18),
         true},
        {"\xE9\\U+4F60", false},
    };
    for (const auto& [bytes, mark] : cases) {
        put("x", bytes);
        VcCStdioFile file;
        ASSERT_TRUE(file.Open(wide("x").c_str(), 0));
        EXPECT_EQ(file.readBOM(), mark);
        if (mark)
            file.setUseCIF(false);
        CStdStr line;
        EXPECT_TRUE(file.ReadString(line));
        EXPECT_EQ(line, mark ? L"\u00e9\\U+4F60" : L"\u00e9\u4f60");
    }
}

TEST_F(TextFiles, Utf8WithAMarkIsWritten)
{
    VcCStdioFile file;
    ASSERT_TRUE(file.Open((wide("sub").substr(0, folder.size()) + L"e.err").c_str(), 4097));
    file.setUseCIF(false);
    EXPECT_FALSE(file.writeBOM());
    file.setCharFormat(4);
    EXPECT_TRUE(file.writeBOM());
    file.WriteString(L"\u4f60\r\n");
    file.Close();
    EXPECT_EQ(contentOf(folder + "e.err"), "\xEF\xBB\xBF\xE4\xBD\xA0\r\n");
}

TEST_F(TextFiles, PlainTextFilesFoldNewlinesAndLeaveReturnsAlone)
{
    CStdioFile out;
    ASSERT_TRUE(out.Open(wide("r.csv").c_str(), 4097));
    out.WriteString(L"a,b\r");
    out.WriteString(L"\u4f60\r");
    out.Close();
    EXPECT_EQ(contentOf(folder + "r.csv"), "a,b\r\\U+4F60\r");
    put("t.txt", "one\r\n\r\ntwo");
    CStdioFile in(wide("t.txt").c_str(), CFile::modeRead);
    CStdStr line;
    std::vector<std::wstring> lines;
    while (in.ReadString(line))
        lines.push_back(line.str());
    EXPECT_EQ(lines, (std::vector<std::wstring>{L"one", L"", L"two"}));
}

TEST_F(TextFiles, OpeningTellsWhatIsWrong)
{
    CFileException error;
    CFile file;
    EXPECT_FALSE(file.Open(wide("none").c_str(), CFile::modeRead, &error));
    EXPECT_EQ(error.m_cause, CFileException::fileNotFound);
    EXPECT_FALSE(file.Open(wide("").c_str(), CFile::modeRead, &error));
    EXPECT_EQ(error.m_cause, CFileException::badPath);
    file.Write("x", 1);
    EXPECT_TRUE(file.Failed());
}

TEST_F(TextFiles, BinaryFilesReadWriteAndSeek)
{
    CFile file;
    ASSERT_TRUE(file.Open(wide("b").c_str(), CFile::modeCreate | CFile::modeReadWrite));
    file.Write("abcdef", 6);
    EXPECT_EQ(file.GetLength(), 6u);
    file.Seek(2, CFile::begin);
    char two[2];
    EXPECT_EQ(file.Read(two, 2), 2u);
    EXPECT_EQ(std::string(two, 2), "cd");
    file.SeekToBegin();
    EXPECT_EQ(file.GetPosition(), 0);
    file.Close();
    EXPECT_TRUE(CFile::Remove(wide("b").c_str()));
    EXPECT_FALSE(CFile::Remove(wide("b").c_str()));
}

}  // namespace
