// Files of the class library. Paths take '/'; a '\' counts as '/' where there is no file of that very name.
#pragma once

#include "classlib_string.h"

#include <cstdio>

class CFileException {
public:
    enum Cause { none, fileNotFound, accessDenied, badPath, diskFull, generic };
    int m_cause = none;
    CStdStrW m_strFileName;
};

// Writing that fails is remembered: Failed() tells, also after Close.
class VK_SDK CFile {
public:
    enum OpenFlags : UINT {
        modeRead = 0,
        modeWrite = 1,
        modeReadWrite = 2,
        shareExclusive = 0x10,
        shareDenyWrite = 0x20,
        shareDenyRead = 0x30,
        shareDenyNone = 0x40,
        modeCreate = 0x1000,
        modeNoTruncate = 0x2000,
        typeText = 0x4000,
        typeBinary = 0x8000,
    };
    enum SeekPosition { begin = 0, current = 1, end = 2 };

    CFile() = default;
    CFile(const wchar_t* path, UINT flags) { CFile::Open(path, flags); }
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;
    virtual ~CFile();

    virtual bool Open(const wchar_t* path, UINT flags, CFileException* error = nullptr);
    virtual void Close();
    virtual UINT Read(void* buffer, UINT count);
    virtual void Write(const void* buffer, UINT count);
    virtual void Flush();
    virtual long long Seek(long long offset, UINT from);  // the new place, -1 on failure
    void SeekToBegin() { Seek(0, begin); }
    long long SeekToEnd() { return Seek(0, end); }
    long long GetPosition() const;
    unsigned long long GetLength() const;
    CStdStrW GetFilePath() const { return m_path; }
    bool IsOpen() const { return m_file != nullptr; }
    bool Failed() const { return m_failed; }

    static bool Remove(const wchar_t* path);
    static bool Rename(const wchar_t* oldPath, const wchar_t* newPath);

protected:
    std::FILE* m_file = nullptr;

private:
    CStdStrW m_path;
    bool m_failed = false;
};

// Lines of text. Without a byte-order mark the text is in the host's code page; characters that it lacks are
// written as \U+XXXX and read back.
class VK_SDK CStdioFile : public CFile {
public:
    CStdioFile() = default;
    CStdioFile(const wchar_t* path, UINT flags) { CStdioFile::Open(path, flags); }

    bool Open(const wchar_t* path, UINT flags, CFileException* error = nullptr) override;
    void Close() override;
    long long Seek(long long offset, UINT from) override;

    // At most size - 1 characters, the newline with them; null at the end.
    wchar_t* ReadString(wchar_t* buffer, UINT size);
    // A whole line without its newline; false at the end.
    bool ReadString(CStdStrW& line);
    virtual void WriteString(const wchar_t* text);

    enum CharFormat { kUnknown, kAnsi, kUtf16LE, kUtf16BE, kUtf8 };

protected:
    bool takeMark();
    void forgetText();

    CharFormat m_format = kAnsi;
    bool m_escapes = true;
    bool m_expandNewlines = false;
    bool m_foldNewlines = true;

private:
    std::wstring m_text;  // what is left of the file from where reading began
    std::size_t m_next = 0;
    bool m_loaded = false;

    void load();
};

// The text file of the host: its marks, its character format and its escapes are in the caller's hand.
class VK_SDK VcCStdioFile : public CStdioFile {
public:
    VcCStdioFile();

    bool Open(const wchar_t* path, UINT flags, CFileException* error = nullptr) override;

    // Reads a byte-order mark if one stands at the beginning, and takes the format that it names.
    bool readBOM();
    // Writes the mark of the format; false for kAnsi, which has none.
    bool writeBOM();

    void setCharFormat(int format);
    int charFormat() const { return m_format; }
    void setUseCIF(bool use) { m_escapes = use; }
    bool getUseCIF() const { return m_escapes; }
    void setExpandNewlines(bool expand) { m_expandNewlines = expand; }
    bool getExpandNewlines() const { return m_expandNewlines; }
};

class VK_SDK VcCodePage {
public:
    // The number of the code page that a locale's programs use, 1252 for one that is not known.
    static int LanguageToCodePage(int localeId);
};
