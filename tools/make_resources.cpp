// Turns a table of texts, `id<TAB>text` a line, into the source of a resource library.
//
//     make_resources strings.txt output.cpp
#include <cstdint>
#include <fstream>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>

namespace {

using Texts = std::map<unsigned, std::string>;

unsigned idOf(const std::string& digits)
{
    std::size_t used = 0;
    const unsigned long id = digits.empty() ? 0 : std::stoul(digits, &used);
    if (used != digits.size() || id == 0 || id > 0xFFFF)
        throw std::runtime_error("expected a number from 1 to 65535 before the tab");
    return unsigned(id);
}

void addLine(Texts& texts, const std::string& line)
{
    const std::size_t tab = line.find('\t');
    if (tab == std::string::npos)
        throw std::runtime_error("expected a number, a tab and a text");
    if (!texts.emplace(idOf(line.substr(0, tab)), line.substr(tab + 1)).second)
        throw std::runtime_error("this number stands in the table already");
}

char32_t nextCharacter(const std::string& text, std::size_t& at)
{
    const unsigned char lead = static_cast<unsigned char>(text[at++]);
    if (lead < 0x80)
        return lead;
    const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC2 ? 1 : 0;
    if (more == 0 || at + std::size_t(more) > text.size())
        throw std::runtime_error("this is not UTF-8");
    char32_t character = lead & (0x3F >> more);
    for (int i = 0; i < more; ++i) {
        const unsigned char next = static_cast<unsigned char>(text[at++]);
        if ((next & 0xC0) != 0x80)
            throw std::runtime_error("this is not UTF-8");
        character = (character << 6) | (next & 0x3F);
    }
    return character;
}

std::string escape(char32_t character)
{
    if (character == '"')
        return "\\\"";
    if (character < 0x80)
        return std::string(1, char(character));
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "\\U%08X", unsigned(character));
    return buffer;
}

// The table's escapes are those of C++, so they pass as they stand.
std::string literal(const std::string& text)
{
    std::string out = "L\"";
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == '\\') {
            const char escaped = at + 1 < text.size() ? text[at + 1] : '\0';
            if (escaped != 'n' && escaped != 't' && escaped != '\\')
                throw std::runtime_error("only \\n, \\t and \\\\ are escapes");
            out += {'\\', escaped};
            at += 2;
        } else {
            out += escape(nextCharacter(text, at));
        }
    }
    return out + '"';
}

Texts readTable(const char* path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        throw std::runtime_error(std::string(path) + ": cannot be read");
    Texts texts;
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line.empty() || line[0] == '#')
            continue;
        try {
            addLine(texts, line);
            literal(line);
        } catch (const std::exception& error) {
            throw std::runtime_error(std::string(path) + ":" + std::to_string(number) + ": " + error.what());
        }
    }
    return texts;
}

void writeSource(const Texts& texts, std::ostream& out)
{
    out << "#include \"system.h\"\n\nstatic const VkResourceText kTexts[] = {\n";
    for (const auto& [id, text] : texts)
        out << "    {" << id << ", " << literal(text) << "},\n";
    out << "};\n\nextern \"C\" {\nVK_SDK extern const VkResourceTable vkResourceTable;\n"
           "const VkResourceTable vkResourceTable = {"
        << texts.size() << ", kTexts};\n}\n";
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: make_resources TABLE SOURCE\n";
        return 2;
    }
    try {
        const Texts texts = readTable(argv[1]);
        std::ofstream out(argv[2]);
        writeSource(texts, out);
        out.close();
        if (!out)
            throw std::runtime_error(std::string(argv[2]) + ": cannot be written");
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
