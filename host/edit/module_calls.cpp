#include "host/edit/module_calls.h"

#include "host/edit/editor.h"
#include "host/edit/module_loader.h"

namespace vk::edit {

ModuleCalls& ModuleCalls::instance()
{
    static ModuleCalls calls;
    return calls;
}

bool ModuleCalls::define(const std::string& name, const std::string& localName, int code)
{
    LispEvaluator* lisp = Editor::instance().lisp();
    void* module = ModuleLoader::instance().current();
    if (name.empty() || !lisp || !module)
        return false;
    lisp->defineModuleFunction(name, localName, module, code);
    return true;
}

bool ModuleCalls::undefine(const std::string& name)
{
    LispEvaluator* lisp = Editor::instance().lisp();
    if (lisp)
        lisp->undefineModuleFunction(name);
    return lisp != nullptr;
}

ModuleCalls::Result ModuleCalls::call(void* module, int code, RbPtr arguments)
{
    m_calls.push_back({code, std::move(arguments), {}});
    std::string thrown;
    try {
        ModuleLoader::instance().invoke(module, code);
    } catch (const std::exception& error) {
        thrown = error.what();
    } catch (...) {
        thrown = "unknown error";
    }
    Call call = std::move(m_calls.back());
    m_calls.pop_back();
    if (!thrown.empty()) {
        call.result.failed = true;
        call.result.message = thrown;
    }
    return std::move(call.result);
}

int ModuleCalls::functionCode() const { return m_calls.empty() ? -1 : m_calls.back().code; }
RbPtr ModuleCalls::takeArguments() { return m_calls.empty() ? nullptr : std::move(m_calls.back().arguments); }

bool ModuleCalls::giveBack(RbPtr value)
{
    if (m_calls.empty())
        return false;
    m_calls.back().result.value = std::move(value);
    return true;
}

void ModuleCalls::fail(std::string message)
{
    if (m_calls.empty())
        return;
    m_calls.back().result.failed = true;
    m_calls.back().result.message = std::move(message);
}

}
