// What a feature control frame looks like: rows of boxes with symbols, tolerances and datums.
#include "host/db/database.h"
#include "host/db/dim_picture.h"
#include "host/db/text_geometry.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_text.h"

namespace vk::dim {

namespace {

// Cut at a separator, in either case of its letters.
std::vector<std::string> split(const std::string& text, std::initializer_list<std::string_view> separators)
{
    std::vector<std::string> parts(1);
    for (std::size_t i = 0; i < text.size();) {
        const std::string_view rest = std::string_view(text).substr(i);
        std::size_t cut = 0;
        for (const std::string_view s : separators)
            if (rest.starts_with(s))
                cut = s.size();
        if (cut)
            parts.emplace_back();
        else
            parts.back() += text[i];
        i += cut ? cut : 1;
    }
    return parts;
}

// The location is the middle of the left side of the first row.
class FrameDraughtsman {
public:
    FrameDraughtsman(const VcDbFcf& frame, const DatabaseCore& db) : m_frame(frame), m_db(db), m_vars(frame.dimVars())
    {
        const double scale = overallScale(m_vars, db, isInPaperSpace(frame, db));
        m_height = m_vars.dimtxt * scale;
        m_gap = std::abs(m_vars.dimgap) * scale;
        m_x = frame.direction().normal();
        m_y = frame.normal().normal().crossProduct(m_x);
    }

    std::vector<std::unique_ptr<VcDbEntity>> draw()
    {
        const double row = m_height + 2 * m_gap;
        double top = row / 2;
        for (const std::string& line : split(m_frame.textUtf8(), {"^J", "\n"})) {
            double left = 0;
            for (const std::string& field : split(line, {"%%v", "%%V"}))
                if (!field.empty())
                    left += addField(field, left, top, row);
            top -= row;
        }
        return std::move(m_pieces);
    }

private:
    VcGePoint3d at(double x, double y) const { return m_frame.location() + m_x * x + m_y * y; }

    double addField(const std::string& field, double left, double top, double row)
    {
        vktext::MTextSpec spec;
        spec.contents = field;
        spec.style = textStyleSpec(m_vars.dimtxsty, &m_db);
        spec.height = m_height;
        const double width = std::max(vktext::layoutMText(spec).width + 2 * m_gap, row / 2);
        const VcGePoint3d corners[] = {at(left, top), at(left + width, top), at(left + width, top - row),
                                       at(left, top - row)};
        for (int i = 0; i < 4; ++i)
            add(std::make_unique<VcDbLine>(corners[i], corners[(i + 1) % 4]), m_vars.dimclrd);
        addText(field, at(left + m_gap, top - row / 2));
        return width;
    }

    void addText(const std::string& field, const VcGePoint3d& middleLeft)
    {
        auto text = std::make_unique<VcDbMText>();
        text->setNormal(m_frame.normal());
        text->setDirection(m_x);
        text->setContentsUtf8(field);
        text->setTextHeight(m_height);
        text->setAttachment(VcDbMText::kMiddleLeft);
        text->setLocation(middleLeft);
        text->setTextStyle(m_vars.dimtxsty.isNull() ? m_db.findRecord(NameTable::TextStyle, "Standard")
                                                    : m_vars.dimtxsty);
        add(std::move(text), m_vars.dimclrt);
    }

    void add(std::unique_ptr<VcDbEntity> piece, std::int16_t color)
    {
        EntityProps props = m_frame.props();
        if (color != 0)
            props.color = VcCmColor::fromIndex(color);
        piece->carryProps(props);
        m_pieces.push_back(std::move(piece));
    }

    const VcDbFcf& m_frame;
    const DatabaseCore& m_db;
    VcDbDimVars m_vars;
    VcGeVector3d m_x, m_y;
    double m_height = 1, m_gap = 0;
    std::vector<std::unique_ptr<VcDbEntity>> m_pieces;
};

}

std::vector<std::unique_ptr<VcDbEntity>> framePieces(const VcDbFcf& frame)
{
    const DatabaseCore* db = DatabaseCore::of(frame.objectId());
    if (!db)
        db = DatabaseCore::of(frame.dimensionStyle());
    return db ? FrameDraughtsman(frame, *db).draw() : std::vector<std::unique_ptr<VcDbEntity>>();
}

}  // namespace vk::dim
