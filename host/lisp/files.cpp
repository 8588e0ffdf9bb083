// Text files, and files by their names and folders.

#include "host/lisp/arguments.h"
#include "host/lisp/drawing.h"
#include "host/lisp/errors.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"
#include "host/lisp/text_file.h"

#include "host/base/unicode.h"
#include "host/base/wildcard.h"
#include "vced.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <algorithm>
#include <cerrno>
#include <filesystem>

namespace vk::lisp {

namespace {

namespace fs = std::filesystem;

constexpr char kMark[] = "\xEF\xBB\xBF";
constexpr std::size_t kInputLength = 512;

// Programs write folders either way.
fs::path pathOf(const Value& name)
{
    std::string path = asText(name);
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

const char* flagsOf(const std::string& mode)
{
    if (mode == "r")
        return "rb";
    if (mode == "w")
        return "wb";
    return mode == "a" ? "ab" : nullptr;
}

void skipMark(std::FILE* file)
{
    char start[3];
    if (std::fread(start, 1, 3, file) < 3 || std::string_view(start, 3) != kMark)
        std::rewind(file);
}

// The third argument, an encoding, has a meaning only where it asks for a mark at the start: all that is written is UTF-8.
Value open(Interpreter&, Args args)
{
    const fs::path path = pathOf(args[0]);
    const std::string mode = toLower(asText(args[1]));
    const char* const flags = flagsOf(mode);
    if (!flags)
        throw LispError("bad open mode: \"" + asText(args[1]) + "\"");
    if (fs::is_directory(path))
        return Value();
    std::FILE* const file = std::fopen(path.c_str(), flags);
    if (!file)
        return Value();
    Value opened = Value::cell(Kind::file, new FileCell(path.string(), file));
    if (mode == "r")
        skipMark(file);
    else if (mode == "w" && argument(args, 2).isText() && toLower(args[2].text()) == "utf8-bom")
        asFile(opened).write(kMark);
    return opened;
}

Value close(Interpreter&, Args args)
{
    asFile(args[0]).close();
    return Value();
}

Value typedLine()
{
    wchar_t line[kInputLength] = L"";
    const int status = vcedGetString(1, L"", line);
    return status == RTNONE || succeeded(status) ? fromWide(line) : Value();
}

Value readLine(Interpreter&, Args args)
{
    if (!argument(args, 0))
        return typedLine();
    auto line = asFile(args[0]).readLine();
    return line ? Value::text(std::move(*line)) : Value();
}

Value readCharacter(Interpreter&, Args args)
{
    const auto character = asFile(args[0]).readCharacter();
    return character ? Value::integer(static_cast<std::int32_t>(*character)) : Value();
}

void writeTo(Interpreter& lisp, const Value& file, std::string_view text)
{
    if (file)
        asFile(file).write(text);
    else
        lisp.write(text);
}

Value writeLine(Interpreter& lisp, Args args)
{
    writeTo(lisp, argument(args, 1), asText(args[0]) + "\n");
    return args[0];
}

Value writeCharacter(Interpreter& lisp, Args args)
{
    const std::int32_t code = asInteger(args[0]);
    if (code <= 0 || code > 0x10FFFF)
        badArgument("character code", args[0]);
    std::string text;
    appendUtf8(text, static_cast<char32_t>(code));
    writeTo(lisp, argument(args, 1), text);
    return args[0];
}

Value filenameBase(Interpreter&, Args args) { return Value::text(pathOf(args[0]).stem().string()); }

Value filenameFolder(Interpreter&, Args args) { return Value::text(pathOf(args[0]).parent_path().string()); }

Value filenameExtension(Interpreter&, Args args)
{
    std::string extension = pathOf(args[0]).extension().string();
    return extension.empty() ? Value() : Value::text(std::move(extension));
}

Value isFolder(Interpreter& lisp, Args args)
{
    std::error_code failed;
    return lisp.truth(fs::is_directory(pathOf(args[0]), failed));
}

Value makeFolder(Interpreter& lisp, Args args)
{
    std::error_code failed;
    return lisp.truth(fs::create_directory(pathOf(args[0]), failed));
}

// nil where there is no such file, 0 for a folder.
Value fileSize(Interpreter&, Args args)
{
    std::error_code failed;
    const fs::path path = pathOf(args[0]);
    if (fs::is_directory(path, failed))
        return Value::integer(0);
    const auto size = fs::file_size(path, failed);
    return failed ? Value() : Value::whole(static_cast<double>(size));
}

Value deleteFile(Interpreter& lisp, Args args)
{
    std::error_code failed;
    const fs::path path = pathOf(args[0]);
    return lisp.truth(!fs::is_directory(path, failed) && fs::remove(path, failed));
}

// Never over a file that is there.
Value renameFile(Interpreter& lisp, Args args)
{
    std::error_code failed;
    const fs::path from = pathOf(args[0]), to = pathOf(args[1]);
    if (fs::exists(to, failed))
        return Value();
    fs::rename(from, to, failed);
    return lisp.truth(!failed);
}

// The bytes copied; with a third argument they go to the end of a file that is there, otherwise there may be none.
Value copyFile(Interpreter&, Args args)
{
    std::error_code failed;
    const fs::path from = pathOf(args[0]), to = pathOf(args[1]);
    const bool appends = bool(argument(args, 2));
    if (!fs::is_regular_file(from, failed) || (!appends && fs::exists(to, failed)) || fs::equivalent(from, to, failed))
        return Value();
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> source(std::fopen(from.c_str(), "rb"), std::fclose);
    std::FILE* const opened = source ? std::fopen(to.c_str(), "ab") : nullptr;
    if (!opened)
        return Value();
    const Value target = Value::cell(Kind::file, new FileCell(to.string(), opened));
    char block[1 << 16];
    double bytes = 0;
    while (const std::size_t size = std::fread(block, 1, sizeof block, source.get())) {
        asFile(target).write({block, size});
        bytes += static_cast<double>(size);
    }
    asFile(target).close();
    return Value::whole(bytes);
}

// When a file was last changed, local time: year, month, day of the week from Sunday 0, day, hours, minutes, seconds.
Value fileTime(Interpreter&, Args args)
{
    struct stat found;
    tm local;
    if (stat(pathOf(args[0]).c_str(), &found) != 0 || !localtime_r(&found.st_mtime, &local))
        return Value();
    const int parts[] = {local.tm_year + 1900, local.tm_mon + 1, local.tm_wday, local.tm_mday,
                         local.tm_hour,        local.tm_min,     local.tm_sec};
    ListBuilder list;
    for (const int part : parts)
        list.add(Value::integer(part));
    return list.take();
}

// A name that no file has: a pattern with its ending, a folder, another ending; each may be left out.
Value temporaryName(Interpreter&, Args args)
{
    const fs::path pattern = argument(args, 0) ? pathOf(args[0]) : fs::path("lisp");
    const fs::path folder = argument(args, 1)           ? pathOf(args[1])
                            : pattern.has_parent_path() ? pattern.parent_path()
                                                        : fs::temp_directory_path();
    const std::string ending = argument(args, 2) ? asText(args[2]) : pattern.extension().string();
    std::error_code failed;
    for (int number = 1; number < 1000; ++number) {
        const fs::path path = folder / fmt::format("{}{:03}{}", pattern.stem().string(), number, ending);
        if (!fs::exists(path, failed))
            return Value::text(path.string());
    }
    return Value();
}

bool isWanted(const fs::directory_entry& entry, int kind)
{
    std::error_code failed;
    const bool folder = entry.is_directory(failed);
    return kind == 0 || (kind < 0) == folder;
}

// Names within a folder that match a pattern: all, files alone (1) or folders alone (-1), in the order of the alphabet.
Value folderFiles(Interpreter&, Args args)
{
    std::error_code failed;
    const fs::path folder = argument(args, 0) ? pathOf(args[0]) : fs::current_path();
    const Wildcard pattern(argument(args, 1) ? asText(args[1]) : "*", Wildcard::Case::DoesNotCount);
    const int kind = argument(args, 2) ? asInteger(args[2]) : 0;
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, failed))
        if (isWanted(entry, kind) && pattern.matches(entry.path().filename().string()))
            names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    ListBuilder list;
    for (std::string& name : names)
        list.add(Value::text(std::move(name)));
    return list.take();
}

constexpr Builtin kFiles[] = {
    {"OPEN", open, 2, 3},
    {"CLOSE", close, 1, 1},
    {"READ-LINE", readLine, 0, 1},
    {"READ-CHAR", readCharacter, 1, 1},
    {"WRITE-LINE", writeLine, 1, 2},
    {"WRITE-CHAR", writeCharacter, 1, 2},
    {"VL-FILENAME-BASE", filenameBase, 1, 1},
    {"VL-FILENAME-DIRECTORY", filenameFolder, 1, 1},
    {"VL-FILENAME-EXTENSION", filenameExtension, 1, 1},
    {"VL-FILE-DIRECTORY-P", isFolder, 1, 1},
    {"VL-FILE-SIZE", fileSize, 1, 1},
    {"VL-FILE-SYSTIME", fileTime, 1, 1},
    {"VL-FILENAME-MKTEMP", temporaryName, 0, 3},
    {"VL-FILE-DELETE", deleteFile, 1, 1},
    {"VL-FILE-RENAME", renameFile, 2, 2},
    {"VL-FILE-COPY", copyFile, 2, 3},
    {"VL-DIRECTORY-FILES", folderFiles, 0, 3},
    {"VL-MKDIR", makeFolder, 1, 1},
};

}  // namespace

void defineFiles(Interpreter& lisp) { lisp.define(kFiles); }

}  // namespace vk::lisp
