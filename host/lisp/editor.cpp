// Commands, variables, coordinates and the screen.

#include "host/base/unicode.h"
#include "host/edit/editor.h"
#include "host/lisp/arguments.h"
#include "host/lisp/chain.h"
#include "host/lisp/drawing.h"
#include "host/lisp/errors.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"
#include "host/lisp/printer.h"

#include "vced.h"
#include "vcut.h"

namespace vk::lisp {

namespace {

constexpr std::size_t kPathLength = 4096;
constexpr std::size_t kInputLength = 512;

void feedCommand(RbBuilder& arguments)
{
    if (!arguments.empty())
        succeeded(edit::Editor::instance().command(arguments.take(), true));
}

void cancelCommand() { edit::Editor::instance().command(nullptr, true); }

// No arguments at all, and a nil among them, are Esc.
Value command(Interpreter&, Args args)
{
    RbBuilder arguments;
    for (const Value& arg : args) {
        if (arg) {
            addValue(arguments, arg, PointRule::AnyNumbers);
        } else {
            feedCommand(arguments);
            cancelCommand();
        }
    }
    if (args.empty())
        cancelCommand();
    feedCommand(arguments);
    return Value();
}

// A variable's value with the text that came with it, which is the caller's.
class Variable {
public:
    explicit Variable(const Value& name) : m_isKnown(vcedGetVar(asWide(name).c_str(), &m_value) == RTNORM) {}
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable()
    {
        if (m_isKnown && m_value.restype == RTSTR)
            vcad_free(m_value.resval.rstring);
    }
    bool isKnown() const { return m_isKnown; }
    const resbuf& value() const { return m_value; }

private:
    resbuf m_value = {};
    bool m_isKnown;
};

Value getvar(Interpreter& lisp, Args args)
{
    const Variable variable(args[0]);
    return variable.isKnown() ? chainToValues(lisp, &variable.value()).front() : Value();
}

// The value under the code that the variable keeps it by; null where it is of another type.
RbPtr valueForVariable(int code, const Value& value)
{
    RbBuilder chain;
    if (code == RTSTR && value.isText()) {
        chain.addUtf8(code, value.text());
    } else if ((code == RTPOINT || code == RT3DPOINT) && isPoint(value)) {
        const Point point = asPoint(value);
        chain.addPoint(code, point.x, point.y, point.z);
    } else if (code == RTREAL || code == RTANG || code == RTORINT) {
        if (value.isReal())
            chain.addReal(code, value.number());
        else if (value.isInteger())
            chain.addInteger(RTLONG, value.integer());  // variables say themselves what whole numbers mean to them
    } else if (value.isInteger()) {
        if (code == RTLONG || value.integer() == static_cast<std::int16_t>(value.integer()))
            chain.addInteger(code, value.integer());
    }
    return chain.take();
}

Value setvar(Interpreter&, Args args)
{
    const Variable variable(args[0]);
    const RbPtr value = variable.isKnown() ? valueForVariable(variable.value().restype, args[1]) : nullptr;
    if (!value || !succeeded(vcedSetVar(asWide(args[0]).c_str(), value.get())))
        throw LispError("variable setting rejected: " + print(args[0]) + " " + print(args[1]));
    return args[1];
}

Value getenv(Interpreter&, Args args)
{
    wchar_t value[kPathLength] = L"";
    return succeeded(vcedGetEnv(asWide(args[0]).c_str(), value)) ? fromWide(value) : Value();
}

Value setenv(Interpreter&, Args args)
{
    return succeeded(vcedSetEnv(asWide(args[0]).c_str(), asWide(args[1]).c_str())) ? args[1] : Value();
}

Value findfile(Interpreter&, Args args)
{
    wchar_t path[kPathLength] = L"";
    return succeeded(vcedFindFile(asWide(args[0]).c_str(), path, kPathLength)) ? fromWide(path) : Value();
}

// A coordinate system by its number, by an entity that lies in it, or by its Z axis.
RbPtr coordinateSystem(const Value& value)
{
    RbBuilder chain;
    if (value.kind() == Kind::entity) {
        chain.addName(RTENAME, asEntity(value));
    } else if (value.isCons()) {
        const Point axis = asPoint(value);
        chain.addPoint(RT3DPOINT, axis.x, axis.y, axis.z);
    } else {
        chain.addInteger(RTSHORT, asInteger(value));
    }
    return chain.take();
}

Value trans(Interpreter&, Args args)
{
    vds_point from, to = {};
    toPoint(args[0], from);
    const bool isDisplacement = !argument(args, 3).isNil();
    const int status =
        vcedTrans(from, coordinateSystem(args[1]).get(), coordinateSystem(args[2]).get(), isDisplacement, to);
    return succeeded(status) ? pointValue(to) : Value();
}

Value redraw(Interpreter&, Args args)
{
    const Name entity = asEntityOrNone(argument(args, 0));
    const int mode = argument(args, 1) ? asInteger(args[1]) : args.empty() ? 0 : 1;
    succeeded(vcedRedraw(argument(args, 0) ? entity.words : nullptr, mode));
    return Value();
}

Value grdraw(Interpreter&, Args args)
{
    vds_point from, to;
    toPoint(args[0], from);
    toPoint(args[1], to);
    const bool isHighlighted = argument(args, 3) && asInteger(args[3]) != 0;
    succeeded(vcedGrDraw(from, to, asInteger(args[2]), isHighlighted));
    return Value();
}

void toMatrix(const Value& rows, vds_matrix matrixOut)
{
    const std::vector<Value> items = itemsOf(rows);
    for (std::size_t i = 0; i < 4; ++i) {
        const std::vector<Value> row = i < items.size() ? itemsOf(items[i]) : std::vector<Value>();
        if (row.size() != 4)
            badArgument("matrix", rows);
        for (std::size_t j = 0; j < 4; ++j)
            matrixOut[i][j] = asNumber(row[j]);
    }
}

// Colours and points by turns, as they come.
Value grvecs(Interpreter&, Args args)
{
    vds_matrix matrix;
    const bool hasMatrix = !argument(args, 1).isNil();
    if (hasMatrix)
        toMatrix(args[1], matrix);
    RbBuilder vectors;
    for (const Value& item : itemsOf(args[0])) {
        if (item.isInteger()) {
            vectors.addInteger(RTSHORT, item.integer());
            continue;
        }
        const Point point = asPoint(item);
        vectors.addPoint(RT3DPOINT, point.x, point.y, point.z);
    }
    succeeded(vcedGrVecs(vectors.take().get(), hasMatrix ? matrix : nullptr));
    return Value();
}

Value alert(Interpreter&, Args args)
{
    vcedAlert(asWide(args[0]).c_str());
    return Value();
}

// What the next dialog of that name is told: its form, then the steps in it.
Value answer(Interpreter&, Args args)
{
    std::vector<std::string> steps;
    for (const Value& step : args.subspan(1))
        steps.push_back(asText(step));
    edit::DialogService* dialogs = edit::Editor::instance().dialogs();
    if (!dialogs)
        throw LispError("no dialogs to answer: " + print(args[0]));
    dialogs->addAnswer(asText(args[0]), std::move(steps));
    return args[0];
}

// Asks at the command line, whatever FILEDIA says. The path stands as it is typed, but for quotes around it.
Value getfiled(Interpreter&, Args args)
{
    const std::string& preset = asText(args[1]);
    const std::string prompt = asText(args[0]) + (preset.empty() ? ": " : " <" + preset + ">: ");
    wchar_t typed[kInputLength] = L"";
    const int status = vcedGetString(1, utf8ToWide(prompt).c_str(), typed);
    std::string path = status == RTNONE || !succeeded(status) ? "" : wideToUtf8(typed);
    if (path.size() >= 2 && path.front() == '"' && path.back() == '"')
        path = path.substr(1, path.size() - 2);
    if (path.empty())
        path = preset;
    return path.empty() ? Value() : Value::text(path);
}

Value cancel(Interpreter&, Args) { throw LispCancel(); }

constexpr Builtin kEditor[] = {
    {"COMMAND", command, 0, kAnyNumber},
    {"COMMAND-S", command, 0, kAnyNumber},
    {"VL-CMDF", command, 0, kAnyNumber},
    {"GETVAR", getvar, 1, 1},
    {"SETVAR", setvar, 2, 2},
    {"GETENV", getenv, 1, 1},
    {"SETENV", setenv, 2, 2},
    {"FINDFILE", findfile, 1, 1},
    {"FINDTRUSTEDFILE", findfile, 1, 1},
    {"TRANS", trans, 3, 4},
    {"REDRAW", redraw, 0, 2},
    {"GRDRAW", grdraw, 3, 4},
    {"GRVECS", grvecs, 1, 2},
    {"ALERT", alert, 1, 1},
    {"ANSWER", answer, 1, kAnyNumber},
    {"GETFILED", getfiled, 4, 4},
    {"CANCEL", cancel, 0, 0},
};

}  // namespace

void defineEditor(Interpreter& lisp) { lisp.define(kEditor); }

}  // namespace vk::lisp
