// Questions to the person. A keyword answers in its global form, Enter with nil; Esc ends the program.

#include "host/lisp/arguments.h"
#include "host/lisp/chain.h"
#include "host/lisp/drawing.h"
#include "host/lisp/errors.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"

#include "vced.h"

namespace vk::lisp {

namespace {

constexpr std::size_t kInputLength = 512;

// A base point and a prompt, either of which may be left out.
class Question {
public:
    explicit Question(Args args)
    {
        for (const Value& arg : args)
            take(arg);
    }
    const double* base() const { return m_hasBase ? m_base : nullptr; }
    const wchar_t* prompt() const { return m_hasPrompt ? m_prompt.c_str() : nullptr; }

private:
    void take(const Value& arg)
    {
        if (arg.isText()) {
            m_prompt = asWide(arg);
            m_hasPrompt = true;
        } else if (arg) {
            toPoint(arg, m_base);
            m_hasBase = true;
        }
    }

    vds_point m_base = {};
    std::wstring m_prompt;
    bool m_hasBase = false;
    bool m_hasPrompt = false;
};

template <class Answered>
Value answer(int status, Answered answered)
{
    if (status == RTKWORD) {
        wchar_t keyword[kInputLength] = L"";
        return vcedGetInput(keyword) == RTNORM ? fromWide(keyword) : Value();
    }
    return succeeded(status) ? answered() : Value();
}

Value initget(Interpreter&, Args args)
{
    int bits = 0;
    std::wstring keywords;
    for (const Value& arg : args) {
        if (arg.isText())
            keywords = asWide(arg);
        else
            bits = asInteger(arg);
    }
    succeeded(vcedInitGet(bits, keywords.empty() ? nullptr : keywords.c_str()));
    return Value();
}

template <int (*ask)(const vds_point, const wchar_t*, vds_point)>
Value askPoint(Interpreter&, Args args)
{
    const Question question(args);
    vds_point point = {};
    return answer(ask(question.base(), question.prompt(), point), [&] { return pointValue(point); });
}

template <int (*ask)(const vds_point, const wchar_t*, double*)>
Value askMeasure(Interpreter&, Args args)
{
    const Question question(args);
    double measure = 0;
    return answer(ask(question.base(), question.prompt(), &measure), [&] { return Value::real(measure); });
}

const wchar_t* promptOf(Args args, std::wstring& prompt)
{
    if (args.empty() || args[0].isNil())
        return nullptr;
    prompt = asWide(args[0]);
    return prompt.c_str();
}

Value getreal(Interpreter&, Args args)
{
    std::wstring prompt;
    double number = 0;
    return answer(vcedGetReal(promptOf(args, prompt), &number), [&] { return Value::real(number); });
}

Value getint(Interpreter&, Args args)
{
    std::wstring prompt;
    int number = 0;
    return answer(vcedGetInt(promptOf(args, prompt), &number), [&] { return Value::integer(number); });
}

Value getkword(Interpreter&, Args args)
{
    std::wstring prompt;
    wchar_t keyword[kInputLength] = L"";
    return answer(vcedGetKword(promptOf(args, prompt), keyword), [&] { return fromWide(keyword); });
}

Value getstring(Interpreter&, Args args)
{
    const bool hasFlag = args.size() == 2 || (args.size() == 1 && !args[0].isText());
    const bool allowsSpaces = hasFlag && args[0];
    std::wstring prompt;
    wchar_t text[kInputLength] = L"";
    const int status = vcedGetString(allowsSpaces, promptOf(hasFlag ? args.subspan(1) : args, prompt), text);
    return status == RTNONE ? Value::text("") : answer(status, [&] { return fromWide(text); });
}

Value entsel(Interpreter&, Args args)
{
    std::wstring prompt;
    Name picked;
    vds_point at = {};
    return answer(vcedEntSel(promptOf(args, prompt), picked, at), [&] {
        const Value items[] = {entityValue(picked), pointValue(at)};
        return listOf(items);
    });
}

// As nentsel gives it: the three axes and the origin, each as a point of the world.
Value axesAndOrigin(const vds_matrix matrix)
{
    ListBuilder rows;
    for (int column = 0; column < 4; ++column)
        rows.add(pointValue(matrix[0][column], matrix[1][column], matrix[2][column]));
    return rows.take();
}

// As nentselp gives it: four rows of four.
Value matrixRows(const vds_matrix matrix)
{
    ListBuilder rows;
    for (int i = 0; i < 4; ++i) {
        ListBuilder row;
        for (int j = 0; j < 4; ++j)
            row.add(Value::real(matrix[i][j]));
        rows.add(row.take());
    }
    return rows.take();
}

template <Value (*showMatrix)(const vds_matrix)>
Value askNested(const wchar_t* prompt, bool isPointGiven, vds_point at)
{
    Name picked;
    vds_matrix matrix = {};
    resbuf* chain = nullptr;
    const int status = vcedNEntSelP(prompt, picked, at, isPointGiven, matrix, &chain);
    const RbPtr containers(chain);
    return answer(status, [&] {
        ListBuilder found;
        found.add(entityValue(picked));
        found.add(pointValue(at));
        if (chain) {
            ListBuilder names;
            for (const resbuf* node = chain; node; node = node->rbnext)
                names.add(entityValue(node->resval.rlname));
            found.add(showMatrix(matrix));
            found.add(names.take());
        }
        return found.take();
    });
}

Value nentsel(Interpreter&, Args args)
{
    std::wstring prompt;
    vds_point at = {};
    return askNested<axesAndOrigin>(promptOf(args, prompt), false, at);
}

Value nentselp(Interpreter&, Args args)
{
    const Question question(args);
    vds_point at = {};
    if (question.base())
        std::copy_n(question.base(), 3, at);
    return askNested<matrixRows>(question.prompt(), question.base() != nullptr, at);
}

constexpr Builtin kQuestions[] = {
    {"INITGET", initget, 0, 2},
    {"GETPOINT", askPoint<vcedGetPoint>, 0, 2},
    {"GETCORNER", askPoint<vcedGetCorner>, 1, 2},
    {"GETDIST", askMeasure<vcedGetDist>, 0, 2},
    {"GETANGLE", askMeasure<vcedGetAngle>, 0, 2},
    {"GETORIENT", askMeasure<vcedGetOrient>, 0, 2},
    {"GETREAL", getreal, 0, 1},
    {"GETINT", getint, 0, 1},
    {"GETKWORD", getkword, 0, 1},
    {"GETSTRING", getstring, 0, 2},
    {"ENTSEL", entsel, 0, 1},
    {"NENTSEL", nentsel, 0, 1},
    {"NENTSELP", nentselp, 0, 2},
};

}  // namespace

void defineQuestions(Interpreter& lisp) { lisp.define(kQuestions); }

}  // namespace vk::lisp
