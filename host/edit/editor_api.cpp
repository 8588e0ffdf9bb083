// The editor as modules call it. No exception crosses this line: each function turns what happened into a result code.
#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/chain.h"
#include "host/db/database.h"
#include "host/edit/editor.h"
#include "host/edit/module_calls.h"
#include "host/edit/pick_service.h"
#include "host/edit/sysvars.h"
#include "sdk/system.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vced.h"
#include "sdk/vcut.h"

#include <cstdarg>
#include <cstring>

using namespace vk::edit;

namespace {

using Kind = Question::Kind;

Question questionOf(Kind kind, const wchar_t* prompt, const vds_point base = nullptr)
{
    Editor& ed = Editor::instance();
    Question q;
    q.kind = kind;
    q.prompt = prompt ? wideToUtf8(prompt) : std::string();
    q.init = ed.takeInitGet();
    if (base)
        q.base = VcGePoint3d(base[0], base[1], base[2]);
    return q;
}

void setErrno(int value) { Editor::instance().vars().force("ERRNO", std::int32_t(value)); }

constexpr int kErrnoPickMissed = 7, kErrnoKeyword = 35;

// The result code of anything but a value.
int codeOf(const Answer& a)
{
    Editor& ed = Editor::instance();
    switch (a.status) {
    case Answer::Status::Value:
        return RTNORM;
    case Answer::Status::Enter:
        return RTNONE;
    case Answer::Status::Keyword:
    case Answer::Status::Arbitrary:
        ed.lastInput = a.text;
        return RTKWORD;
    case Answer::Status::Cancel:
        return RTCAN;
    case Answer::Status::Failed:
        return RTERROR;
    }
    return RTERROR;
}

// Nothing is asked where there is no place for the answer.
template <class Take>
int asked(const Question& q, const void* place, Take&& take)
{
    Editor& ed = Editor::instance();
    if (!ed.hasDrawing() || !place)
        return RTERROR;
    const Answer a = ed.askFromModule(q);
    const int code = codeOf(a);
    if (code == RTNORM)
        take(a);
    return code;
}

void copyPoint(const VcGePoint3d& p, vds_point out)
{
    out[0] = p.x;
    out[1] = p.y;
    out[2] = p.z;
}

void copyText(const std::string& utf8, wchar_t* out, std::size_t size)
{
    const std::wstring text = utf8ToWide(utf8);
    const std::size_t n = std::min(text.size(), size - 1);
    std::wmemcpy(out, text.data(), n);
    out[n] = 0;
}

constexpr std::size_t kTextSize = 512;

}

int vcedInitGet(int bits, const wchar_t* keywords)
{
    Editor::instance().setInitGet({bits, keywords ? parseKeywords(wideToUtf8(keywords)) : std::vector<Keyword>()});
    return RTNORM;
}

int vcedGetPoint(const vds_point base, const wchar_t* prompt, vds_point pointOut)
{
    return asked(questionOf(Kind::Point, prompt, base), pointOut,
                 [&](const Answer& a) { copyPoint(a.point, pointOut); });
}

int vcedGetCorner(const vds_point base, const wchar_t* prompt, vds_point pointOut)
{
    return asked(questionOf(Kind::Corner, prompt, base), pointOut,
                 [&](const Answer& a) { copyPoint(a.point, pointOut); });
}

int vcedGetDist(const vds_point base, const wchar_t* prompt, double* distanceOut)
{
    return asked(questionOf(Kind::Distance, prompt, base), distanceOut,
                 [&](const Answer& a) { *distanceOut = a.real; });
}

int vcedGetAngle(const vds_point base, const wchar_t* prompt, double* radiansOut)
{
    return asked(questionOf(Kind::Angle, prompt, base), radiansOut, [&](const Answer& a) { *radiansOut = a.real; });
}

int vcedGetOrient(const vds_point base, const wchar_t* prompt, double* radiansOut)
{
    return asked(questionOf(Kind::Orientation, prompt, base), radiansOut,
                 [&](const Answer& a) { *radiansOut = a.real; });
}

int vcedGetReal(const wchar_t* prompt, double* valueOut)
{
    return asked(questionOf(Kind::Real, prompt), valueOut, [&](const Answer& a) { *valueOut = a.real; });
}

int vcedGetInt(const wchar_t* prompt, int* valueOut)
{
    Question q = questionOf(Kind::Integer, prompt);
    q.anyNumber = true;
    return asked(q, valueOut, [&](const Answer& a) { *valueOut = int(a.integer); });
}

// Keywords are this question's values: one comes back with RTNORM, and arbitrary text too.
int vcedGetKword(const wchar_t* prompt, wchar_t* keywordOut)
{
    Editor& ed = Editor::instance();
    const Question q = questionOf(Kind::Keyword, prompt);
    if (!ed.hasDrawing() || !keywordOut)
        return RTERROR;
    const Answer a = ed.askFromModule(q);
    const int code = codeOf(a);
    if (code != RTKWORD)
        return code;
    copyText(a.text, keywordOut, kTextSize);
    return RTNORM;
}

int vcedGetString(int spacesAllowed, const wchar_t* prompt, wchar_t* textOut)
{
    Editor& ed = Editor::instance();
    const Question q = questionOf(spacesAllowed ? Kind::Text : Kind::Word, prompt);
    if (!ed.hasDrawing() || !textOut)
        return RTERROR;
    const Answer a = ed.askFromModule(q);
    if (a.status == Answer::Status::Cancel)
        return RTCAN;
    copyText(a.text, textOut, kTextSize);
    return RTNORM;
}

int vcedGetInput(wchar_t* textOut)
{
    if (!textOut)
        return RTERROR;
    const std::string block = takeNameOfMadeBlock();
    copyText(block.empty() ? Editor::instance().lastInput : block, textOut, kTextSize);
    return RTNORM;
}

int vcedEntSel(const wchar_t* prompt, vds_name nameOut, vds_point pointOut)
{
    Editor& ed = Editor::instance();
    Question q = questionOf(Kind::Entity, prompt ? prompt : L"\nSelect object: ");
    if (!ed.hasDrawing() || !nameOut || !pointOut)
        return RTERROR;
    q.init.bits &= InitGet::NoEnter | InitGet::Arbitrary;
    const bool hasWords = !q.init.keywords.empty() || q.init.has(InitGet::Arbitrary);
    const Answer a = ed.askFromModule(q);
    if (a.status == Answer::Status::Enter && hasWords) {
        setErrno(kErrnoKeyword);
        return RTERROR;
    }
    if (a.status == Answer::Status::Failed)
        setErrno(kErrnoPickMissed);
    const int code = codeOf(a);
    if (code != RTNORM)
        return code;
    vcdbGetVdsName(nameOut, a.entity);
    copyPoint(a.hasPoint ? a.point : pointOnEntity(ed, a.entity), pointOut);
    return RTNORM;
}

int vcedUsrBrk() { return Editor::instance().isInterrupted(); }

int vcedPrompt(const wchar_t* text)
{
    Editor::instance().print(wideToUtf8(text ? text : L""));
    return RTNORM;
}

// Commands

static int runChain(resbuf* chain)
{
    return Editor::instance().command(RbPtr(chain), ModuleCalls::instance().inLisp());
}

int vcedCommand(int firstCode, ...)
{
    if (firstCode == RTNONE || firstCode == 0)
        return runChain(nullptr);
    std::va_list arguments;
    va_start(arguments, firstCode);
    RbPtr chain = buildRbChain(firstCode, arguments);
    va_end(arguments);
    return chain ? runChain(chain.release()) : RTERROR;
}

int vcedCmd(const resbuf* chain) { return runChain(copyRbChain(chain).release()); }

// Lisp functions of modules

int vcedDefunEx(const wchar_t* name, const wchar_t* localName, int code)
{
    return ModuleCalls::instance().define(wideToUtf8(name ? name : L""), wideToUtf8(localName ? localName : L""), code)
               ? RTNORM
               : RTERROR;
}

int vcedUndef(const wchar_t* name, int)
{
    return name && ModuleCalls::instance().undefine(wideToUtf8(name)) ? RTNORM : RTERROR;
}

int vcedGetFunCode() { return ModuleCalls::instance().functionCode(); }
resbuf* vcedGetArgs() { return ModuleCalls::instance().takeArguments().release(); }

static int giveBack(RbPtr value) { return ModuleCalls::instance().giveBack(std::move(value)) ? RTNORM : RTERROR; }

int vcedRetInt(int value)
{
    RbBuilder b;
    b.addInteger(RTLONG, value);
    return giveBack(b.take());
}

int vcedRetReal(double value)
{
    RbBuilder b;
    b.addReal(RTREAL, value);
    return giveBack(b.take());
}

int vcedRetStr(const wchar_t* value)
{
    RbBuilder b;
    b.addString(RTSTR, value ? value : L"");
    return giveBack(b.take());
}

int vcedRetPoint(const vds_point value)
{
    if (!value)
        return RTERROR;
    RbBuilder b;
    b.addPoint(RT3DPOINT, value[0], value[1], value[2]);
    return giveBack(b.take());
}

int vcedRetName(const vds_name name, int type)
{
    if (!name)
        return RTERROR;
    RbBuilder b;
    b.addName(type, name);
    return giveBack(b.take());
}

int vcedRetList(const resbuf* chain)
{
    RbBuilder b;
    b.add(RTLB);
    b.append(copyRbChain(chain));
    b.add(RTLE);
    return giveBack(b.take());
}

int vcedRetVal(const resbuf* value) { return value ? giveBack(copyRbNode(*value)) : RTERROR; }
int vcedRetNil() { return giveBack(RbPtr(newRb(RTNIL))); }
int vcedRetT() { return giveBack(RbPtr(newRb(RTT))); }
int vcedRetVoid() { return giveBack(RbPtr(newRb(RTVOID))); }

int vcdbFail(const wchar_t* text)
{
    Editor::instance().failCurrent(wideToUtf8(text ? text : L""));
    ModuleCalls::instance().fail(wideToUtf8(text ? text : L""));
    return RTNORM;
}

void vcedAlert(const wchar_t* text) { AfxMessageBox(text ? text : L""); }
