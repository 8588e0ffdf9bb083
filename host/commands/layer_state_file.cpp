// Files of layer states: groups as in a drawing file, 0 LAYERSTATE and its name under 1, then those of a record with names
// in place of handles.
#include "host/commands/layer_states.h"

#include <fmt/format.h>

#include <charconv>

namespace vk::commands {

namespace {

bool isTextCode(int code) { return code == 1 || code == 2 || code == 6 || code == 8 || code == 301 || code == 302; }

// Takes one line off, without its end and the blanks before it.
std::string_view takeLine(std::string_view& file)
{
    const std::size_t end = std::min(file.find('\n'), file.size());
    std::string_view line = file.substr(0, end);
    file.remove_prefix(std::min(end + 1, file.size()));
    while (!line.empty() && (line.back() == '\r' || line.back() == ' '))
        line.remove_suffix(1);
    while (!line.empty() && (line.front() == ' ' || line.front() == '\t'))
        line.remove_prefix(1);
    return line;
}

std::optional<std::int64_t> wholeNumber(std::string_view text)
{
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

}

namespace {

class FileReader {
public:
    explicit FileReader(std::string_view file) : m_file(file)
    {
        if (m_file.starts_with("\xef\xbb\xbf"))
            m_file.remove_prefix(3);
    }

    std::vector<LayerState> read()
    {
        while (m_error.empty() && nextGroup())
            takeGroup();
        if (m_error.empty() && (m_states.empty() || m_needsName))
            fail("the file holds no layer state");
        return m_error.empty() ? std::move(m_states) : std::vector<LayerState>();
    }
    const std::string& error() const { return m_error; }

private:
    void fail(std::string_view what) { m_error = fmt::format("line {}: {}", m_line, what); }

    bool nextGroup()
    {
        if (m_file.find_first_not_of(" \t\r\n") == std::string_view::npos)
            return false;
        ++m_line;
        const auto code = wholeNumber(takeLine(m_file));
        if (!code)
            fail("a group code was expected");
        ++m_line;
        m_code = int(code.value_or(0));
        m_value = takeLine(m_file);
        return m_error.empty();
    }

    void takeGroup()
    {
        if (m_code == 0)
            return begin();
        if (m_states.empty())
            return fail("this is no file of layer states");
        LayerState& state = m_states.back();
        if (m_code == 1 && m_needsName) {
            state.name = m_value;
            m_needsName = false;
        } else if (isTextCode(m_code)) {
            state.take(Tag::ofChars(m_code, Tag::Form::Utf8, m_value));
        } else if (const auto number = wholeNumber(m_value)) {
            state.take(Tag::ofInteger(m_code, *number));
        } else {
            fail("a number was expected");
        }
    }

    void begin()
    {
        if (m_value == "LAYERSTATEDICTIONARY")
            m_begun = true;
        else if (m_value == "LAYERSTATE" && m_begun)
            m_states.emplace_back();
        else
            return fail("this is no file of layer states");
        m_needsName = true;
    }

    std::string_view m_file, m_value;
    int m_line = 0, m_code = 0;
    bool m_begun = false, m_needsName = true;
    std::vector<LayerState> m_states;
    std::string m_error;
};

}

std::vector<LayerState> parseLayerStates(std::string_view file, std::string& error)
{
    FileReader reader(file);
    std::vector<LayerState> states = reader.read();
    error = reader.error();
    return states;
}

std::string layerStateFile(const LayerState& state)
{
    std::string file;
    const auto add = [&](int code, const auto& value) { file += fmt::format("{:>3}\n{}\n", code, value); };
    add(0, "LAYERSTATEDICTIONARY");
    add(0, "LAYERSTATE");
    add(1, state.name);
    add(91, state.parts);
    add(301, state.description);
    add(290, int(state.ofSheet));
    add(302, state.current);
    for (const LayerState::Layer& layer : state.layers) {
        add(8, layer.name);
        add(90, layer.flags);
        add(62, layer.colour.colorIndex());
        add(370, layer.lineweight);
        add(6, layer.linetype);
        add(2, layer.plotStyle);
        add(440, layer.transparency);
        if (layer.colour.isByColor())
            add(92, layer.colour.rgb());
    }
    return file;
}

}  // namespace vk::commands
