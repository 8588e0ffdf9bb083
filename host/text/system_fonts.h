// The outline fonts of the system, by Fontconfig.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vktext {

class GlyphSource;

struct FontFile {
    std::string path;
    int faceIndex = 0;
    std::string family;  // under the asked name when the font has several
};

class SystemFonts {
public:
    static SystemFonts& instance();

    void addFolder(const std::string& folder);
    // The font file of this name, in lower case ("arial.ttf").
    std::optional<FontFile> byFileName(std::string_view fileName) const;
    // The nearest font; the family says whether it is the one asked for. Nothing when the system has no fonts at all.
    std::optional<FontFile> nearest(const std::string& family, bool bold, bool italic) const;
    // A font that has the character, or null.
    GlyphSource* covering(char32_t c);

private:
    SystemFonts();
    struct State;
    std::unique_ptr<State> m_state;
};

}  // namespace vktext
