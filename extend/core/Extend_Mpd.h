// The module as the host sees it: start and stop, its resource library, its Lisp functions.
#pragma once

#include "classlib_resources.h"
#include "classlib_string.h"
#include "core/ModuleExport.h"
#include "resbuf.h"

#include <span>

// The library that every text and dialog of the module comes from; null until the module has started.
extern HINSTANCE hLibModule;
VK_MODULE_EXPORT extern HINSTANCE hCurrentModule;
extern CVcExtensionModule VkExtend;

// A text of hLibModule, whatever handle is current; empty when there is none.
VK_MODULE_EXPORT CStdStrW LoadLocalCmd(UINT id);

// Announces the service and registers the commands.
VK_MODULE_EXPORT void initApp();
VK_MODULE_EXPORT void unloadApp();

// Whether this edition of the product has the commands that not every edition has. All have them unless another check
// is put in place before the module starts.
using EditionCheck = bool (*)();
extern EditionCheck editionCheck;

// A function that Lisp can call; the chain of arguments stays with the caller.
struct LispFunctionRow {
    const wchar_t* name;
    unsigned localNameId;
    int (*handler)(const resbuf* arguments);
};
extern const LispFunctionRow func_table[3];

int cal2(const resbuf* arguments);
int ai_refedit_alert(const resbuf* arguments);
