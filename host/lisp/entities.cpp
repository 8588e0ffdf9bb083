// Entities and their data.

#include "host/lisp/arguments.h"
#include "host/lisp/chain.h"
#include "host/lisp/drawing.h"
#include "host/lisp/errors.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"

#include "vcdb_chains.h"
#include "vced.h"

namespace vk::lisp {

namespace {

constexpr std::size_t kInputLength = 512;

Value entget(Interpreter&, Args args)
{
    const Name name = asEntity(args[0]);
    const RbPtr applications = valuesToChain(itemsOf(argument(args, 1)));
    const RbPtr chain(applications ? vcdbEntGetX(name, applications.get()) : vcdbEntGet(name));
    return groupsToList(chain.get());
}

Value entmod(Interpreter&, Args args) { return succeeded(vcdbEntMod(listToGroups(args[0]).get())) ? args[0] : Value(); }

// A block that is complete answers with its name, which the drawing may have chosen.
Value entmake(Interpreter&, Args args)
{
    const int status = vcdbEntMake(args.empty() ? nullptr : listToGroups(args[0]).get());
    if (status == RTKWORD) {
        wchar_t blockName[kInputLength] = L"";
        return vcedGetInput(blockName) == RTNORM ? fromWide(blockName) : args[0];
    }
    return succeeded(status) ? argument(args, 0) : Value();
}

Value entmakex(Interpreter&, Args args)
{
    Name made;
    return entityIf(vcdbEntMakeX(listToGroups(args[0]).get(), made), made);
}

Value entdel(Interpreter&, Args args) { return succeeded(vcdbEntDel(asEntity(args[0]))) ? args[0] : Value(); }

Value entupd(Interpreter&, Args args) { return succeeded(vcdbEntUpd(asEntity(args[0]))) ? args[0] : Value(); }

Value entlast(Interpreter&, Args)
{
    Name last;
    return entityIf(vcdbEntLast(last), last);
}

Value entnext(Interpreter&, Args args)
{
    const Name from = asEntityOrNone(argument(args, 0));
    Name next;
    return entityIf(vcdbEntNext(args.empty() ? nullptr : from.words, next), next);
}

Value handent(Interpreter&, Args args)
{
    Name found;
    return entityIf(vcdbHandEnt(asWide(args[0]).c_str(), found), found);
}

Value xdroom(Interpreter&, Args args)
{
    long bytes = 0;
    return succeeded(vcdbXdRoom(asEntity(args[0]), &bytes)) ? Value::whole(static_cast<double>(bytes)) : Value();
}

// Takes the data of applications with or without the -3 at its head.
Value xdsize(Interpreter&, Args args)
{
    const Value& data = asList(args[0]);
    const bool isMarked = data.car().isInteger();
    const Value marked = isMarked ? data : Value::cons(Value::integer(-3), data);
    long bytes = 0;
    const RbPtr chain = listToGroups(Value::cons(marked, Value()));
    return succeeded(vcdbXdSize(chain->rbnext, &bytes)) ? Value::whole(static_cast<double>(bytes)) : Value();
}

Value regapp(Interpreter&, Args args) { return succeeded(vcdbRegApp(asWide(args[0]).c_str())) ? args[0] : Value(); }

Value textbox(Interpreter&, Args args)
{
    vds_point lowerLeft, upperRight;
    if (!succeeded(vcedTextBox(listToGroups(args[0]).get(), lowerLeft, upperRight)))
        return Value();
    const Value corners[] = {pointValue(lowerLeft), pointValue(upperRight)};
    return listOf(corners);
}

constexpr Builtin kEntities[] = {
    {"ENTGET", entget, 1, 2},   {"ENTMOD", entmod, 1, 1}, {"ENTMAKE", entmake, 0, 1}, {"ENTMAKEX", entmakex, 1, 1},
    {"ENTDEL", entdel, 1, 1},   {"ENTUPD", entupd, 1, 1}, {"ENTLAST", entlast, 0, 0}, {"ENTNEXT", entnext, 0, 1},
    {"HANDENT", handent, 1, 1}, {"XDROOM", xdroom, 1, 1}, {"XDSIZE", xdsize, 1, 1},   {"REGAPP", regapp, 1, 1},
    {"TEXTBOX", textbox, 1, 1},
};

}  // namespace

void defineEntities(Interpreter& lisp) { lisp.define(kEntities); }

}  // namespace vk::lisp
