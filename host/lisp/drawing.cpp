#include "host/lisp/drawing.h"

#include "host/base/unicode.h"
#include "host/lisp/arguments.h"
#include "host/lisp/chain.h"
#include "host/lisp/errors.h"
#include "host/lisp/library.h"

namespace vk::lisp {

Name asEntity(const Value& value)
{
    if (value.kind() != Kind::entity)
        badArgument("lentityp", value);
    Name name;
    copyName(value, name);
    return name;
}

Name asEntityOrNone(const Value& value) { return value ? asEntity(value) : Name(); }

Name asSelection(const Value& value)
{
    if (value.kind() != Kind::selection)
        badArgument("lselsetp", value);
    Name name;
    copyName(value, name);
    return name;
}

std::wstring asWide(const Value& value) { return utf8ToWide(asText(value)); }

Value fromWide(const wchar_t* text) { return Value::text(text ? wideToUtf8(text) : std::string()); }

bool succeeded(int status)
{
    if (status == RTCAN)
        throw LispCancel();
    return status == RTNORM;
}

Value entityIf(int status, const Name& name) { return succeeded(status) ? entityValue(name) : Value(); }

void defineDrawing(Interpreter& lisp)
{
    defineEntities(lisp);
    defineSelections(lisp);
    defineQuestions(lisp);
    defineTables(lisp);
    defineEditor(lisp);
    defineUnits(lisp);
    defineProfile(lisp);
    defineFiles(lisp);
    defineCurves(lisp);
    defineViews(lisp);
    defineNames(lisp);
    defineRegistry(lisp);
}

}  // namespace vk::lisp
