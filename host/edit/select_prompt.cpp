#include "host/edit/select_prompt.h"

#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/edit/editor.h"
#include "host/edit/interpret.h"
#include "host/edit/pick.h"
#include "host/edit/select_admission.h"
#include "host/edit/select_index.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"

#include <utility>

namespace vk::edit {

namespace {

using Ids = std::vector<VcDbObjectId>;

// Thrown through one selection when a question within it is answered with Esc.
struct SelectionCancelled {};

class Selector {
public:
    Selector(Editor& ed, const SelectRequest& request) : m_ed(ed), m_request(request), m_admission(ed, request) {}
    SelectResult run();

private:
    enum class Next { GoOn, End };

    Answer ask(Question question);
    std::optional<Answer> prepared(const Question& question);
    std::optional<VcGePoint3d> askPoint(Question::Kind kind, const char* prompt, std::optional<VcGePoint3d> base = {});
    Next line(const Answer& answer);
    void typed(const std::string& text);
    void other(const std::string& text);
    void listChoices();

    void take(const Ids& ids, bool withGroups);
    template <class ForEachFound>
    void add(ForEachFound&& forEachFound);
    void remove(const Ids& ids);
    void undo();

    void pickAt(const VcGePoint3d& point);
    void impliedWindow(const VcGePoint3d& first);
    void window();
    void crossing();
    void box();
    void all();
    void fence();
    void windowPolygon();
    void crossingPolygon();
    void last();
    void previous();
    void group();
    void adding() { m_removing = false; }
    void removing() { m_removing = true; }
    void multiple() { m_windowsOnMiss = false; }
    void automatic() { m_windowsOnMiss = true; }
    void onlyOne() { m_single = true; }

    void takeRectangle(const VcGePoint3d& a, const VcGePoint3d& b, SelectArea::Kind kind);
    void remember(std::vector<VcGePoint3d> corners, SelectArea::Kind kind);
    void takePolygon(SelectArea::Kind kind, const char* firstPrompt, const char* nextPrompt);
    std::vector<VcGePoint3d> askPolygon(const char* firstPrompt, const char* nextPrompt);
    bool isToTheRight(const VcGePoint3d& from, const VcGePoint3d& to) const;
    VcGePoint3d world(const VcGePoint3d& p) const;

    struct Way {
        const char* word;
        void (Selector::*go)();
    };
    static const Way kWays[];
    static const std::vector<Keyword>& wayWords();

    Editor& m_ed;
    const SelectRequest& m_request;
    Admission m_admission;
    std::shared_ptr<SelectionSet> m_set = std::make_shared<SelectionSet>();
    struct Change {
        Ids ids;
        bool added;
    };
    std::vector<Change> m_changes;
    std::vector<SelectedRegion> m_regions;
    std::string m_keyword;
    RbPtr m_prepared;  // answers that the caller has given
    bool m_removing = false, m_windowsOnMiss = true, m_single = false, m_tookSomething = false;
};

const Selector::Way Selector::kWays[] = {
    {"Window", &Selector::window},
    {"Last", &Selector::last},
    {"Crossing", &Selector::crossing},
    {"BOX", &Selector::box},
    {"ALL", &Selector::all},
    {"Fence", &Selector::fence},
    {"WPolygon", &Selector::windowPolygon},
    {"CPolygon", &Selector::crossingPolygon},
    {"Group", &Selector::group},
    {"Add", &Selector::adding},
    {"Remove", &Selector::removing},
    {"Multiple", &Selector::multiple},
    {"Previous", &Selector::previous},
    {"Undo", &Selector::undo},
    {"AUto", &Selector::automatic},
    {"SIngle", &Selector::onlyOne},
};

const std::vector<Keyword>& Selector::wayWords()
{
    static const std::vector<Keyword> words = [] {
        std::vector<Keyword> list;
        for (const Way& way : kWays)
            list.push_back({way.word, way.word});
        return list;
    }();
    return words;
}

// The next answer that the caller has given, if it is one.
std::optional<Answer> Selector::prepared(const Question& question)
{
    while (m_prepared) {
        RbPtr node = std::move(m_prepared);
        m_prepared.reset(std::exchange(node->rbnext, nullptr));
        Interpretation meaning = interpretValue(m_ed, question, *node);
        if (auto* answer = std::get_if<Answer>(&meaning))
            return std::move(*answer);
        m_ed.printLine(std::get<AskAgain>(meaning).message);
    }
    return std::nullopt;
}

Answer Selector::ask(Question question)
{
    if (auto answer = prepared(question))
        return std::move(*answer);
    Answer answer = m_ed.ask(std::move(question));
    if (answer.status == Answer::Status::Cancel)
        throw SelectionCancelled();
    return answer;
}

std::optional<VcGePoint3d> Selector::askPoint(Question::Kind kind, const char* prompt, std::optional<VcGePoint3d> base)
{
    Question q;
    q.kind = kind;
    q.prompt = prompt;
    q.base = base;
    const Answer a = ask(std::move(q));
    return a.status == Answer::Status::Value ? std::optional(a.point) : std::nullopt;
}

SelectResult Selector::run()
{
    m_single = m_request.single;
    m_windowsOnMiss = m_request.windowsOnMiss && (m_ed.vars().integer("PICKAUTO") & 1) != 0;
    try {
        for (;;) {
            Question q;
            q.kind = Question::Kind::Selection;
            q.prompt = m_removing ? m_request.removePrompt : m_request.addPrompt;
            q.init.keywords = m_request.keywords;
            q.hasDefault = true;
            q.endsWithArguments = m_request.endsWithArguments && !m_set->empty();
            m_tookSomething = false;
            const Answer answer = ask(std::move(q));
            if (answer.status == Answer::Status::Enter || line(answer) == Next::End || (m_single && m_tookSomething))
                break;
        }
    } catch (const SelectionCancelled&) {
        return {SelectResult::Cancelled, m_set, {}, {}};
    }
    return {m_keyword.empty() ? SelectResult::Done : SelectResult::Keyword, m_set, m_keyword, std::move(m_regions)};
}

Selector::Next Selector::line(const Answer& answer)
{
    if (answer.status == Answer::Status::Keyword) {
        if (!m_request.onKeyword) {
            m_keyword = answer.text;
            return Next::End;
        }
        m_prepared = m_request.onKeyword(answer.text);
        return Next::GoOn;
    }
    if (answer.selection)
        take(answer.selection->ids(), false);
    else if (!answer.entity.isNull())
        take({answer.entity}, false);
    else if (answer.hasPoint)
        pickAt(answer.point);
    else
        typed(answer.text);
    return Next::GoOn;
}

void Selector::typed(const std::string& text)
{
    const std::string word(trimBlanks(text));
    const KeywordMatch match = matchKeyword(wayWords(), word);
    if (match.result == KeywordMatch::One) {
        (this->*kWays[match.index].go)();
        return;
    }
    Question q;
    q.kind = Question::Kind::Selection;
    if (const auto point = parsePoint(m_ed, q, word)) {
        m_ed.lastPoint = *point;
        pickAt(*point);
        return;
    }
    other(word);
}

void Selector::other(const std::string& text)
{
    if (m_request.onOther)
        m_prepared = m_request.onOther(text);
    else
        listChoices();
}

void Selector::listChoices()
{
    std::string choices;
    for (const Keyword& k : m_request.keywords)
        choices += k.local.substr(0, k.local.find(',')) + "/";
    for (const Way& way : kWays)
        choices += std::string(way.word) + "/";
    choices.pop_back();
    m_ed.printLine("Expects a point, an object or one of\n" + choices);
}

// What one line found

void Selector::take(const Ids& ids, bool withGroups)
{
    const bool groups = withGroups && (m_ed.vars().integer("PICKSTYLE") & 1) != 0;
    const Ids found = groups ? GroupMembers(m_ed.db()).expanded(ids) : ids;
    if (m_removing)
        return remove(found);
    add([&](Admission::Pass& pass, auto&& take) {
        for (const VcDbObjectId id : found)
            if (pass.admits(id))
                take(id);
    });
}

// forEachFound(pass, take) has the pass judge what one line has found and takes what it admits.
template <class ForEachFound>
void Selector::add(ForEachFound&& forEachFound)
{
    Tally tally;
    Change change{{}, true};
    Admission::Pass pass(m_admission, tally);
    forEachFound(pass, [&](VcDbObjectId id) {
        if (m_set->add(id))
            change.ids.push_back(id);
        else
            ++tally.duplicate;
    });
    m_tookSomething = !change.ids.empty();
    const std::string leftOut = tally.leftOut();
    m_ed.printLine(
        fmt::format("{} found{}, {} total", tally.found, leftOut.empty() ? "" : " (" + leftOut + ")", m_set->size()));
    m_changes.push_back(std::move(change));
}

void Selector::remove(const Ids& ids)
{
    Change change{{}, false};
    for (const VcDbObjectId id : ids)
        if (m_set->remove(id))
            change.ids.push_back(id);
    m_tookSomething = !change.ids.empty();
    m_ed.printLine(fmt::format("{} found, {} removed, {} total", ids.size(), change.ids.size(), m_set->size()));
    m_changes.push_back(std::move(change));
}

void Selector::undo()
{
    if (m_changes.empty()) {
        m_ed.printLine("There is nothing to take back in this selection.");
        return;
    }
    const Change change = std::move(m_changes.back());
    m_changes.pop_back();
    for (const VcDbObjectId id : change.ids) {
        if (change.added)
            m_set->remove(id);
        else
            m_set->add(id);
    }
    m_ed.printLine(fmt::format("{} total", m_set->size()));
}

// Ways to select

VcGePoint3d Selector::world(const VcGePoint3d& p) const
{
    VcGeMatrix3d ucs;
    vcdbUcsMatrix(ucs, &m_ed.drawing());
    return ucs * p;
}

void Selector::pickAt(const VcGePoint3d& point)
{
    const Picker picker = Picker::of(m_ed);
    const VcGePoint3d at = world(point);
    if (m_request.nested) {
        if (const auto pick = picker.nestedAt(at))
            return take({pick->entity}, false);
    } else if (m_request.everything) {
        if (const Ids ids = picker.allAt(at); !ids.empty())
            return take(ids, true);
    } else if (const VcDbObjectId id = picker.entityAt(at); !id.isNull()) {
        return take({id}, true);
    }
    if (m_windowsOnMiss)
        impliedWindow(point);
    else
        take({}, false);
}

bool Selector::isToTheRight(const VcGePoint3d& from, const VcGePoint3d& to) const
{
    const PickView view = PickView::of(m_ed);
    return view.project(world(to)).x >= view.project(world(from)).x;
}

// To the right a window, to the left a crossing. Enter instead of the second corner drops it.
void Selector::impliedWindow(const VcGePoint3d& first)
{
    const auto second = askPoint(Question::Kind::Corner, "Specify opposite corner: ", first);
    if (!second)
        return m_ed.printLine("Nothing was found there.");
    takeRectangle(first, *second, isToTheRight(first, *second) ? SelectArea::Kind::Window : SelectArea::Kind::Crossing);
}

void Selector::takeRectangle(const VcGePoint3d& a, const VcGePoint3d& b, SelectArea::Kind kind)
{
    const Picker picker = Picker::of(m_ed);
    const SelectArea area = SelectArea::rectangle(picker.view(), world(a), world(b), kind);
    remember(area.corners(), kind);
    take(picker.takenBy(area), true);
}

void Selector::window()
{
    const auto first = askPoint(Question::Kind::Point, "Specify first corner: ");
    const auto second = first ? askPoint(Question::Kind::Corner, "Specify opposite corner: ", first) : std::nullopt;
    if (second)
        takeRectangle(*first, *second, SelectArea::Kind::Window);
}

void Selector::crossing()
{
    const auto first = askPoint(Question::Kind::Point, "Specify first corner: ");
    const auto second = first ? askPoint(Question::Kind::Corner, "Specify opposite corner: ", first) : std::nullopt;
    if (second)
        takeRectangle(*first, *second, SelectArea::Kind::Crossing);
}

void Selector::box()
{
    if (const auto first = askPoint(Question::Kind::Point, "Specify first corner: "))
        impliedWindow(*first);
}

// Points until Enter; in the world.
std::vector<VcGePoint3d> Selector::askPolygon(const char* firstPrompt, const char* nextPrompt)
{
    std::vector<VcGePoint3d> points;
    for (;;) {
        Question q;
        q.kind = Question::Kind::Point;
        q.prompt = points.empty() ? firstPrompt : nextPrompt;
        if (!points.empty()) {
            q.base = points.back();
            q.init.keywords = {{"Undo", "Undo"}};
        }
        const Answer a = ask(std::move(q));
        if (a.status == Answer::Status::Keyword)
            points.pop_back();
        else if (a.status == Answer::Status::Value)
            points.push_back(a.point);
        else
            break;
    }
    for (VcGePoint3d& p : points)
        p = world(p);
    return points;
}

void Selector::takePolygon(SelectArea::Kind kind, const char* firstPrompt, const char* nextPrompt)
{
    const auto points = askPolygon(firstPrompt, nextPrompt);
    const std::size_t least = kind == SelectArea::Kind::Fence ? 2 : 3;
    if (points.size() < least)
        return m_ed.printLine(fmt::format("At least {} points are needed.", least));
    const Picker picker = Picker::of(m_ed);
    remember(points, kind);
    take(picker.takenBy(SelectArea::polygon(picker.view(), points, kind)), true);
}

void Selector::remember(std::vector<VcGePoint3d> corners, SelectArea::Kind kind)
{
    if (!m_removing && kind != SelectArea::Kind::Fence)
        m_regions.push_back({std::move(corners), kind == SelectArea::Kind::Crossing});
}

void Selector::fence()
{
    takePolygon(SelectArea::Kind::Fence, "Specify first fence point: ", "Specify next fence point or [Undo]: ");
}

void Selector::windowPolygon()
{
    takePolygon(SelectArea::Kind::Window, "First polygon point: ", "Specify endpoint of line or [Undo]: ");
}

void Selector::crossingPolygon()
{
    takePolygon(SelectArea::Kind::Crossing, "First polygon point: ", "Specify endpoint of line or [Undo]: ");
}

// Frozen and locked layers are left out without a word: nobody meant them.
void Selector::all()
{
    constexpr std::size_t kAhead = 16;
    const DatabaseCore& db = m_ed.db();
    const SeenLayers layers = SeenLayers::of(m_ed);
    const auto* space = db.objectAs<VcDbBlockTableRecord>(db.currentSpace());
    const auto forEach = [&](auto&& found) {
        const auto& slots = space->memberSlots();
        for (std::size_t i = 0; i < slots.size(); ++i) {
            // The walk waits for memory more than for anything else.
            if (i + kAhead < slots.size())
                __builtin_prefetch(db.objectAt(slots[i + kAhead]));
            auto* entity = VcDbEntity::cast(db.objectAt(slots[i]));
            if (!entity || entity->isErased() || isSheetItself(*entity))
                continue;
            const VcDbObjectId layer = entity->layerId();
            if (!layers.isFrozen(layer) && !layers.isLocked(layer))
                found(*entity);
        }
    };
    if (m_removing) {
        Ids ids;
        forEach([&](const VcDbEntity& entity) { ids.push_back(entity.objectId()); });
        return remove(ids);
    }
    // A drawing may be large: it is walked once.
    add([&](Admission::Pass& pass, auto&& take) {
        forEach([&](VcDbEntity& entity) {
            if (pass.admits(entity))
                take(entity.objectId());
        });
    });
}

void Selector::last()
{
    const VcDbObjectId id = lastSeen(m_ed);
    take(id.isNull() ? Ids() : Ids{id}, false);
}

void Selector::previous()
{
    if (!m_ed.previousSelection || m_ed.previousSelection->empty())
        return m_ed.printLine("There is no previous selection set.");
    Ids ids = m_ed.previousSelection->ids();
    std::erase_if(ids, [](VcDbObjectId id) { return id.isErased(); });
    take(ids, false);
}

void Selector::group()
{
    Question q;
    q.kind = Question::Kind::Text;
    q.prompt = "Enter group name: ";
    const std::string name(trimBlanks(ask(std::move(q)).text));
    VcDbDictionary* groups = nullptr;
    VcDbObjectId id;
    if (m_ed.drawing().getGroupDictionary(groups) == Vcad::eOk) {
        groups->getAt(utf8ToWide(name).c_str(), id);
        groups->close();
    }
    const auto* group = m_ed.db().liveAs<VcDbGroup>(id);
    if (!group)
        return m_ed.printLine(fmt::format("There is no group named \"{}\".", name));
    Ids ids = group->members();
    std::erase_if(ids, [](VcDbObjectId member) { return member.isErased(); });
    take(ids, false);
}

}

SelectResult selectByPrompt(Editor& ed, const SelectRequest& request) { return Selector(ed, request).run(); }

VcDbObjectId lastSeen(Editor& ed)
{
    const DatabaseCore& db = ed.db();
    const SeenLayers layers = SeenLayers::of(ed);
    const auto* space = db.objectAs<VcDbBlockTableRecord>(db.currentSpace());
    const auto& slots = space->memberSlots();
    for (std::size_t i = slots.size(); i-- > 0;) {
        const auto* entity = VcDbEntity::cast(db.objectAt(slots[i]));
        if (entity && !entity->isErased() && !isSheetItself(*entity) && layers.shows(*entity))
            return entity->objectId();
    }
    return {};
}

}  // namespace vk::edit
