// Symbol tables and dictionaries.

#include "host/lisp/arguments.h"
#include "host/lisp/chain.h"
#include "host/lisp/drawing.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"

#include "vcdb_chains.h"
#include "vcdb_objects.h"

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

VcDbObjectId idOf(const Value& value)
{
    VcDbObjectId id;
    vcdbGetObjectId(id, asEntity(value));
    return id;
}

// What `work` gives when the value is a dictionary that can be written, else nil.
template <class Work>
Value onDictionary(const Value& value, Work work)
{
    VcDbDictionary* dictionary = nullptr;
    if (vcdbOpenObject(dictionary, idOf(value), VcDb::kForWrite) != Vcad::eOk)
        return Value();
    Value result = work(*dictionary);
    dictionary->close();
    return result;
}

// Takes an object that has no owner yet, under a name that is free.
Value dictadd(Interpreter&, Args args)
{
    const std::wstring name = asWide(args[1]);
    const VcDbObjectId added = idOf(args[2]);
    return onDictionary(args[0], [&](VcDbDictionary& dictionary) {
        VcDbObject* object = nullptr;
        if (dictionary.has(name.c_str()) || vcdbOpenObject(object, added, VcDb::kForWrite) != Vcad::eOk)
            return Value();
        VcDbObjectId id;
        const bool done = dictionary.setAt(name.c_str(), object, id) == Vcad::eOk;
        object->close();
        return done ? args[2] : Value();
    });
}

Value dictremove(Interpreter&, Args args)
{
    const std::wstring name = asWide(args[1]);
    return onDictionary(args[0], [&](VcDbDictionary& dictionary) {
        VcDbObjectId removed;
        vds_name words = {};
        if (dictionary.remove(name.c_str(), removed) != Vcad::eOk || vcdbGetVdsName(words, removed) != Vcad::eOk)
            return Value();
        return entityValue(words);
    });
}

Value dictrename(Interpreter&, Args args)
{
    const std::wstring from = asWide(args[1]), to = asWide(args[2]);
    return onDictionary(args[0], [&](VcDbDictionary& dictionary) {
        return dictionary.setName(from.c_str(), to.c_str()) ? args[2] : Value();
    });
}

constexpr Builtin kTables[] = {
    {"TBLSEARCH", tblsearch, 2, 3},   {"TBLNEXT", tblnext, 1, 2},       {"TBLOBJNAME", tblobjname, 2, 2},
    {"DICTSEARCH", dictsearch, 2, 3}, {"DICTNEXT", dictnext, 1, 2},     {"DICTADD", dictadd, 3, 3},
    {"DICTREMOVE", dictremove, 2, 2}, {"DICTRENAME", dictrename, 3, 3}, {"NAMEDOBJDICT", namedobjdict, 0, 0},
};

}  // namespace

void defineTables(Interpreter& lisp) { lisp.define(kTables); }

}  // namespace vk::lisp
