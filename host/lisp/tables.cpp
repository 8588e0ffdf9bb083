// Symbol tables and dictionaries.

#include "host/lisp/arguments.h"
#include "host/lisp/chain.h"
#include "host/lisp/drawing.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"

#include "vcdb_chains.h"

namespace vk::lisp {

namespace {

Value listOfChain(resbuf* chain)
{
    const RbPtr owned(chain);
    return groupsToList(chain);
}

Value tblsearch(Interpreter&, Args args)
{
    return listOfChain(vcdbTblSearch(asWide(args[0]).c_str(), asWide(args[1]).c_str(), !argument(args, 2).isNil()));
}

Value tblnext(Interpreter&, Args args)
{
    return listOfChain(vcdbTblNext(asWide(args[0]).c_str(), !argument(args, 1).isNil()));
}

Value tblobjname(Interpreter&, Args args)
{
    Name found;
    return entityIf(vcdbTblObjName(asWide(args[0]).c_str(), asWide(args[1]).c_str(), found), found);
}

Value dictsearch(Interpreter&, Args args)
{
    return listOfChain(vcdbDictSearch(asEntity(args[0]), asWide(args[1]).c_str(), !argument(args, 2).isNil()));
}

Value dictnext(Interpreter&, Args args)
{
    return listOfChain(vcdbDictNext(asEntity(args[0]), !argument(args, 1).isNil()));
}

Value namedobjdict(Interpreter&, Args)
{
    Name root;
    return entityIf(vcdbNamedObjDict(root), root);
}

constexpr Builtin kTables[] = {
    {"TBLSEARCH", tblsearch, 2, 3},
    {"TBLNEXT", tblnext, 1, 2},
    {"TBLOBJNAME", tblobjname, 2, 2},
    {"DICTSEARCH", dictsearch, 2, 3},
    {"DICTNEXT", dictnext, 1, 2},
    {"NAMEDOBJDICT", namedobjdict, 0, 0},
};

}  // namespace

void defineTables(Interpreter& lisp)
{
    lisp.define(kTables);
}

}  // namespace vk::lisp
