// Selection sets and picks as modules call them. No exception crosses this line.
#include "host/base/unicode.h"
#include "host/db/chain.h"
#include "host/db/database.h"
#include "host/edit/display.h"
#include "host/edit/editor.h"
#include "host/edit/pick.h"
#include "host/edit/pick_service.h"
#include "host/edit/select_prompt.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vced.h"

using namespace vk::edit;

namespace {

using Ids = std::vector<VcDbObjectId>;
using SetPtr = std::shared_ptr<SelectionSet>;

bool isNull(const vds_name name) { return !name || (name[0] == 0 && name[1] == 0); }

SetPtr setOf(const vds_name name) { return SelectionSetTable::instance().find(name); }

VcGeMatrix3d ucsMatrix(const Editor& ed)
{
    VcGeMatrix3d m;
    vcdbUcsMatrix(m, &ed.drawing());
    return m;
}

VcDbEntity* entityOf(const vds_name name)
{
    VcDbObjectId id;
    if (isNull(name) || !nameToId(name, id))
        return nullptr;
    return DatabaseCore::of(id)->liveAs<VcDbEntity>(id);
}

VcEdSSCallback s_keywordCallback = nullptr, s_otherCallback = nullptr;

// Modes

struct Mode {
    std::string way;  // X, W, CP...; empty for asking
    bool prompts = false, keywords = false, help = false;
    bool leavesLocked = false, single = false, everything = false, nested = false, windowsOnMiss = true;
};

bool takeFlag(Mode& mode, char flag)
{
    switch (flag) {
    case '$':
        return mode.prompts = true;
    case 'K':
        return mode.keywords = true;
    case '?':
        return mode.help = true;
    case 'L':
        return mode.leavesLocked = true;
    case 'S':
        return mode.single = true;
    case 'E':
        return mode.everything = true;
    case 'N':
        return mode.nested = true;
    default:
        return false;
    }
}

// "+." picks without windows; "-M" is how a person selects anyway.
bool takeManner(Mode& mode, std::string_view manner)
{
    if (manner == "+.")
        mode.windowsOnMiss = false;
    return manner == "+." || manner == "-M" || manner == "+M";
}

bool isWay(std::string_view way)
{
    static constexpr std::string_view kWays[] = {"X", "I", "A", "ALL", "P", "L", "W", "C", "BOX", "WP", "CP", "F"};
    return std::find(std::begin(kWays), std::end(kWays), way) != std::end(kWays);
}

std::optional<Mode> parseMode(const wchar_t* text)
{
    Mode mode;
    if (!text || !*text)
        return mode;
    std::string rest = toUpper(wideToUtf8(text));
    if (rest.starts_with('_'))
        rest.erase(0, 1);
    const std::size_t flags = std::min(rest.find(':'), rest.size());
    const std::string head = rest.substr(0, flags);
    if (isWay(head))
        mode.way = head;
    else if (!head.empty() && !takeManner(mode, head))
        return std::nullopt;
    for (std::size_t at = flags; at < rest.size(); at += 2)
        if (rest[at] != ':' || at + 1 >= rest.size() || !takeFlag(mode, rest[at + 1]))
            return std::nullopt;
    return mode;
}

VcGePoint3d worldPoint(const VcGeMatrix3d& ucs, const double* p) { return ucs * VcGePoint3d(p[0], p[1], p[2]); }

std::vector<VcGePoint3d> worldPoints(const Editor& ed, const resbuf* chain)
{
    const VcGeMatrix3d ucs = ucsMatrix(ed);
    std::vector<VcGePoint3d> points;
    for (; chain; chain = chain->rbnext)
        if (chain->restype == RTPOINT || chain->restype == RT3DPOINT || chain->restype == 10)
            points.push_back(worldPoint(ucs, chain->resval.rpoint));
    return points;
}

// The entities that the points of the call speak of; nothing where the points are missing.
std::optional<Ids> takenByPoints(Editor& ed, const std::string& way, const void* first, const void* second)
{
    using Kind = SelectArea::Kind;
    const Picker picker = Picker::of(ed);
    if (way == "WP" || way == "CP" || way == "F") {
        const Kind kind = way == "WP" ? Kind::Window : way == "CP" ? Kind::Crossing : Kind::Fence;
        const auto points = worldPoints(ed, static_cast<const resbuf*>(first));
        if (points.size() < (kind == Kind::Fence ? 2 : 3))
            return std::nullopt;
        return picker.takenBy(SelectArea::polygon(picker.view(), points, kind));
    }
    if (!first || !second)
        return std::nullopt;
    const VcGeMatrix3d ucs = ucsMatrix(ed);
    const VcGePoint3d a = worldPoint(ucs, static_cast<const double*>(first)),
                      b = worldPoint(ucs, static_cast<const double*>(second));
    const bool toTheRight = picker.view().project(b).x >= picker.view().project(a).x;
    const bool isWindow = way == "W" || (way == "BOX" && toTheRight);
    return picker.takenBy(SelectArea::rectangle(picker.view(), a, b, isWindow ? Kind::Window : Kind::Crossing));
}

std::optional<Ids> livePrevious(const Editor& ed)
{
    if (!ed.previousSelection)
        return std::nullopt;
    Ids ids = ed.previousSelection->ids();
    std::erase_if(ids, [](VcDbObjectId id) { return id.isErased(); });
    return ids;
}

// What a mode that asks nothing finds, before the filter.
std::optional<Ids> found(Editor& ed, const std::string& way, const void* first, const void* second)
{
    if (way == "P")
        return livePrevious(ed);
    if (way == "L") {
        const VcDbObjectId last = lastSeen(ed);
        return last.isNull() ? std::nullopt : std::optional(Ids{last});
    }
    if (way == "I") {
        const bool offered = ed.pickFirst && ed.vars().integer("PICKFIRST") != 0;
        return offered ? std::optional(ed.pickFirst->ids()) : std::nullopt;
    }
    return takenByPoints(ed, way, first, second);
}

SetPtr wholeDrawing(const Editor& ed, const SelectRequest& request)
{
    auto set = std::make_shared<SelectionSet>();
    const DatabaseCore& db = ed.db();
    const SeenLayers layers(db, {});
    for (const std::uint32_t slot : db.mainOrder()) {
        auto* entity = VcDbEntity::cast(db.objectAt(slot));
        if (!entity || entity->isErased() || (request.leavesLocked && layers.isLocked(entity->layerId())))
            continue;
        if (!request.filter || request.filter->accepts(*entity))
            set->add(entity->objectId());
    }
    return set;
}

// A pick at a point that the call gives.
SetPtr pickedAt(Editor& ed, const SelectRequest& request, const void* point)
{
    const Picker picker = Picker::of(ed);
    const VcGePoint3d at = worldPoint(ucsMatrix(ed), static_cast<const double*>(point));
    Ids ids;
    if (request.everything)
        ids = picker.allAt(at);
    else if (const VcDbObjectId id = picker.entityAt(at); !id.isNull())
        ids = {id};
    return admitted(ed, request, ids, true);
}

std::function<RbPtr(const std::string&)> answering(VcEdSSCallback callback)
{
    if (!callback)
        return nullptr;
    return [callback](const std::string& text) { return RbPtr(callback(utf8ToWide(text).c_str())); };
}

SelectRequest requestOf(const Mode& mode, const void* first, const void* second)
{
    SelectRequest request;
    request.leavesLocked = mode.leavesLocked;
    request.single = mode.single;
    request.everything = mode.everything;
    request.nested = mode.nested;
    request.windowsOnMiss = mode.windowsOnMiss;
    if (mode.prompts && first) {
        const auto* prompts = static_cast<const wchar_t* const*>(first);
        request.addPrompt = prompts[0] ? wideToUtf8(prompts[0]) : request.addPrompt;
        request.removePrompt = prompts[1] ? wideToUtf8(prompts[1]) : request.removePrompt;
    }
    if (mode.keywords) {
        if (second)
            request.keywords = parseKeywords(wideToUtf8(static_cast<const wchar_t*>(second)));
        request.onKeyword = answering(s_keywordCallback);
    }
    if (mode.help)
        request.onOther = answering(s_otherCallback);
    return request;
}

int finished(Editor& ed, const SetPtr& set, bool becomesPrevious, vds_name setOut)
{
    if (!set || set->empty())
        return RTERROR;
    if (becomesPrevious)
        ed.previousSelection = std::make_shared<SelectionSet>(*set);
    SelectionSetTable::instance().nameOf(set, setOut);
    return RTNORM;
}

int askedFor(Editor& ed, const SelectRequest& request, vds_name setOut)
{
    if (!request.single)
        if (const SetPtr set = takePickFirst(ed, request))
            return finished(ed, set, true, setOut);
    const SelectResult result = selectByPrompt(ed, request);
    if (result.status == SelectResult::Cancelled)
        return RTCAN;
    if (result.status == SelectResult::Keyword) {
        ed.lastInput = result.keyword;
        return RTKWORD;
    }
    return finished(ed, result.set, true, setOut);
}

}

int vcedSSGet(const wchar_t* modeText, const void* first, const void* second, const resbuf* filterChain,
              vds_name setOut)
{
    Editor& ed = Editor::instance();
    const auto mode = parseMode(modeText);
    ed.takeInitGet();
    if (!ed.hasDrawing() || !mode || !setOut)
        return RTERROR;
    SelectRequest request = requestOf(*mode, first, second);
    const auto filter = filterChain ? EntityFilter::parse(ed.db(), filterChain) : nullptr;
    if (filterChain && !filter)
        return RTERROR;
    request.filter = filter.get();
    if (mode->way.empty())
        return first && !mode->prompts ? finished(ed, pickedAt(ed, request, first), true, setOut)
                                       : askedFor(ed, request, setOut);
    if (mode->way == "X" || mode->way == "A" || mode->way == "ALL")
        return finished(ed, wholeDrawing(ed, request), mode->way != "X", setOut);
    const auto ids = found(ed, mode->way, first, second);
    return ids ? finished(ed, admitted(ed, request, *ids, true), mode->way != "P", setOut) : RTERROR;
}

int vcedSSSetKwordCallbackPtr(VcEdSSCallback callback)
{
    s_keywordCallback = callback;
    return RTNORM;
}

int vcedSSSetOtherCallbackPtr(VcEdSSCallback callback)
{
    s_otherCallback = callback;
    return RTNORM;
}

// Sets

int vcedSSLength(const vds_name set, int* lengthOut)
{
    const SetPtr members = setOf(set);
    if (!lengthOut || (!members && !isNull(set)))
        return RTERROR;
    *lengthOut = members ? int(members->size()) : 0;
    return RTNORM;
}

// Who asks for a member mostly opens it, and asks for the next ones after it.
static void fetchAhead(const Ids& ids, std::size_t index)
{
    constexpr std::size_t kAhead = 8, kCacheLine = 64;
    if (index + kAhead >= ids.size())
        return;
    const VcDbObjectId id = ids[index + kAhead];
    const DatabaseCore* db = DatabaseCore::of(id);
    const auto* start = reinterpret_cast<const char*>(db ? db->object(id) : nullptr);
    for (int line = 0; start && line < 3; ++line)
        __builtin_prefetch(start + line * kCacheLine);
}

int vcedSSName(const vds_name set, int index, vds_name nameOut)
{
    const SetPtr members = setOf(set);
    if (!members || !nameOut || index < 0 || std::size_t(index) >= members->size())
        return RTERROR;
    const Ids& ids = members->ids();
    idToName(ids[std::size_t(index)], nameOut);
    fetchAhead(ids, std::size_t(index));
    return RTNORM;
}

int vcedSSAdd(const vds_name name, const vds_name set, vds_name setOut)
{
    const VcDbEntity* entity = entityOf(name);
    SetPtr members = setOf(set);
    if ((!entity && !isNull(name)) || (!members && (!isNull(set) || !setOut)))
        return RTERROR;
    vds_name result = {set ? set[0] : 0, set ? set[1] : 0};
    if (!members) {
        members = std::make_shared<SelectionSet>();
        SelectionSetTable::instance().nameOf(members, result);
    }
    if (entity)
        members->add(entity->objectId());
    if (setOut)
        std::copy_n(result, 2, setOut);
    return RTNORM;
}

int vcedSSDel(const vds_name name, const vds_name set)
{
    const SetPtr members = setOf(set);
    VcDbObjectId id;
    return members && !isNull(name) && nameToId(name, id) && members->remove(id) ? RTNORM : RTERROR;
}

int vcedSSMemb(const vds_name name, const vds_name set)
{
    const SetPtr members = setOf(set);
    VcDbObjectId id;
    return members && !isNull(name) && nameToId(name, id) && members->has(id) ? RTNORM : RTERROR;
}

int vcedSSFree(const vds_name set) { return SelectionSetTable::instance().release(set) ? RTNORM : RTERROR; }

int vcedSSSetFirst(const vds_name set, const vds_name nested)
{
    Editor& ed = Editor::instance();
    const std::int64_t* chosen = isNull(set) ? nested : set;
    const SetPtr members = setOf(chosen);
    if (!members && !isNull(chosen))
        return RTERROR;
    ed.pickFirst = members ? std::make_shared<SelectionSet>(*members) : nullptr;
    return RTNORM;
}

int vcedSSGetFirst(resbuf** gripSet, resbuf** pickSet)
{
    const Editor& ed = Editor::instance();
    if (!ed.pickFirst || ed.pickFirst->empty())
        return RTERROR;
    for (resbuf** out : {gripSet, pickSet}) {
        if (!out)
            continue;
        *out = newRb(RTPICKS);
        SelectionSetTable::instance().nameOf(std::make_shared<SelectionSet>(*ed.pickFirst), (*out)->resval.rlname);
    }
    return RTNORM;
}

static bool transform(VcDbObjectId id, const VcGeMatrix3d& matrix)
{
    VcDbEntity* entity = nullptr;
    if (vcdbOpenVcDbEntity(entity, id, VcDb::kForWrite) != Vcad::eOk)
        return false;
    const bool done = entity->transformBy(matrix) == Vcad::eOk;
    entity->close();
    return done;
}

// What can be transformed is, even where another member cannot.
int vcedXformSS(const vds_name set, const vds_matrix matrix)
{
    const SetPtr members = setOf(set);
    if (!matrix || (!members && !isNull(set)))
        return RTERROR;
    if (!members)
        return RTNORM;
    VcGeMatrix3d inUcs;
    std::copy_n(&matrix[0][0], 16, &inUcs.entry[0][0]);
    const VcGeMatrix3d ucs = ucsMatrix(Editor::instance());
    const VcGeMatrix3d inWorld = ucs * inUcs * ucs.inverse();
    bool all = true;
    for (const VcDbObjectId id : Ids(members->ids()))
        all &= transform(id, inWorld);
    return all ? RTNORM : RTERROR;
}

// Picks

namespace {

constexpr int kErrnoPickMissed = 7, kErrnoKeyword = 35;

int failedPick(Editor& ed, int why)
{
    ed.vars().force("ERRNO", std::int32_t(why));
    return RTERROR;
}

RbPtr chainOfNames(const Ids& ids)
{
    RbBuilder chain;
    for (const VcDbObjectId id : ids) {
        vds_name name;
        idToName(id, name);
        chain.addName(RTENAME, name);
    }
    return chain.take();
}

void copyPoint(const VcGePoint3d& p, vds_point out)
{
    out[0] = p.x;
    out[1] = p.y;
    out[2] = p.z;
}

void giveNested(const NestedPick& pick, vds_name nameOut, vds_matrix matrixOut, resbuf** containersOut)
{
    idToName(pick.entity, nameOut);
    if (matrixOut)
        std::copy_n(&pick.toWorld.entry[0][0], 16, &matrixOut[0][0]);
    if (containersOut)
        *containersOut = chainOfNames(pick.containers).release();
}

std::optional<NestedPick> nestedOf(Editor& ed, const Answer& answer, VcGePoint3d& at)
{
    at = answer.hasPoint ? answer.point : pointOnEntity(ed, answer.entity);
    if (!answer.hasPoint)
        return NestedPick{answer.entity, {}, {}};
    const Picker picker = Picker::of(ed);
    const VcGePoint3d world = ucsMatrix(ed) * answer.point;
    const auto pick = picker.nestedAt(world);
    if (pick && pick->entity == answer.entity)
        return pick;
    return picker.nestedIn(answer.entity, world);
}

int askNested(Editor& ed, const wchar_t* prompt, Answer& answer)
{
    Question q;
    q.kind = Question::Kind::Entity;
    q.prompt = wideToUtf8(prompt ? prompt : L"\nSelect object: ");
    q.init = ed.takeInitGet();
    q.init.bits &= InitGet::NoEnter | InitGet::Arbitrary;
    q.isNested = true;
    const bool hasWords = !q.init.keywords.empty() || q.init.has(InitGet::Arbitrary);
    answer = ed.askFromModule(q);
    switch (answer.status) {
    case Answer::Status::Value:
        return RTNORM;
    case Answer::Status::Enter:
        return hasWords ? failedPick(ed, kErrnoKeyword) : RTNONE;
    case Answer::Status::Keyword:
    case Answer::Status::Arbitrary:
        ed.lastInput = answer.text;
        return RTKWORD;
    case Answer::Status::Failed:
        return failedPick(ed, kErrnoPickMissed);
    case Answer::Status::Cancel:
        break;
    }
    return RTCAN;
}

}

int vcedNEntSelP(const wchar_t* prompt, vds_name nameOut, vds_point pointOut, int pickFlag, vds_matrix matrixOut,
                 resbuf** containersOut)
{
    Editor& ed = Editor::instance();
    if (!ed.hasDrawing() || !nameOut || !pointOut)
        return RTERROR;
    std::optional<NestedPick> pick;
    VcGePoint3d at;
    if (pickFlag) {
        at.set(pointOut[0], pointOut[1], pointOut[2]);
        pick = Picker::of(ed).nestedAt(ucsMatrix(ed) * at);
    } else {
        Answer answer;
        if (const int code = askNested(ed, prompt, answer); code != RTNORM)
            return code;
        pick = nestedOf(ed, answer, at);
    }
    if (!pick)
        return failedPick(ed, kErrnoPickMissed);
    giveNested(*pick, nameOut, matrixOut, containersOut);
    copyPoint(at, pointOut);
    return RTNORM;
}

// Without a window nothing follows the cursor, but the sampler learns where it came to rest.
namespace {

// The members of a set as a sampler of a module moves them; the sampler takes points of the UCS.
Preview sampled(const SelectionSet* set, VcEdDragSampler sampler)
{
    Preview preview;
    if (set)
        preview.moved = set->ids();
    if (sampler)
        preview.move = [sampler](const VcGePoint3d& cursor) {
            vds_point point;
            copyPoint(cursor, point);
            vds_matrix matrix = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
            sampler(point, matrix);
            VcGeMatrix3d m;
            for (int r = 0; r < 4; ++r)
                for (int c = 0; c < 4; ++c)
                    m.entry[r][c] = matrix[r][c];
            return m;
        };
    return preview;
}

}

int vcedDragGen(const vds_name set, const wchar_t* prompt, int, VcEdDragSampler sampler, vds_point pointOut)
{
    Editor& ed = Editor::instance();
    if (!ed.hasDrawing() || !pointOut)
        return RTERROR;
    Question q;
    q.kind = Question::Kind::Point;
    q.prompt = wideToUtf8(prompt ? prompt : L"");
    q.init = ed.takeInitGet();
    q.init.bits |= InitGet::Arbitrary;
    // The record of what was dragged asks the sampler with the final point.
    Display::instance().follow(sampled(set ? setOf(set).get() : nullptr, sampler));
    const Answer answer = ed.askFromModule(q);
    switch (answer.status) {
    case Answer::Status::Value:
        break;
    case Answer::Status::Enter:
        return RTNONE;
    case Answer::Status::Keyword:
        ed.lastInput = answer.text;
        return RTKWORD;
    case Answer::Status::Arbitrary:
        ed.lastInput = answer.text;
        return RTSTR;
    case Answer::Status::Cancel:
    case Answer::Status::Failed:
        return RTCAN;
    }
    copyPoint(answer.point, pointOut);
    return RTNORM;
}
