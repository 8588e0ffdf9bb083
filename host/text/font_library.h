// Finds the fonts that drawings ask for, and keeps account of what was taken instead.
#pragma once

#include "host/text/font.h"
#include "host/text/text_style.h"

#include <memory>
#include <string>
#include <vector>

namespace vktext {

enum class FontMatch {
    Exact,       // the font itself, or the stroke set that goes by its name
    SameWidths,  // another font whose letters are as wide
    Substitute,  // texts may come out longer or shorter
};

struct FontUse {
    FontRequest asked;
    std::string taken;  // a typeface, or the name of a stroke set
    FontMatch match = FontMatch::Exact;
    std::size_t borrowedGlyphs = 0;  // characters that came from yet another font
    std::size_t missingGlyphs = 0;   // characters drawn as boxes
};

// One for the program, made when first used; font files are looked for when first asked for. A font that cannot be had
// is replaced, never refused. For one thread at a time.
class VKHOST_API FontLibrary {
public:
    static FontLibrary& instance();

    // Valid for the life of the program.
    const Font& font(const FontRequest& request);

    // What was asked for since the start, in order of asking.
    std::vector<FontUse> report() const;

    // Folders that hold stroke sets (*.jhf) and outline fonts, looked into before those of the system. Fonts that are
    // already in use stay as they are. At first: Support/fonts beside the program.
    void setFolders(std::vector<std::string> folders);

    FontLibrary(const FontLibrary&) = delete;
    FontLibrary& operator=(const FontLibrary&) = delete;

private:
    FontLibrary();
    ~FontLibrary() = delete;
    struct State;
    std::unique_ptr<State> m_state;
};

}  // namespace vktext
