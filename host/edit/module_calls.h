// Calls of Lisp functions that modules define: the code, the arguments and the result of the call under way.
#pragma once

#include "host/base/api.h"
#include "host/base/rb.h"

#include <string>
#include <vector>

namespace vk::edit {

class VKHOST_API ModuleCalls {
public:
    static ModuleCalls& instance();

    // By the module that is being called.
    bool define(const std::string& name, const std::string& localName, int code);
    bool undefine(const std::string& name);

    struct Result {
        bool failed = false;
        RbPtr value;  // null where the function gave nothing back
        std::string message;
    };
    // Calls a function of a module with arguments as a chain.
    Result call(void* module, int code, RbPtr arguments);

    int functionCode() const;
    RbPtr takeArguments();
    bool giveBack(RbPtr value);
    void fail(std::string message);
    bool inCall() const { return !m_calls.empty(); }

    // While Lisp runs a command, what it starts stays with the person.
    bool inLisp() const { return m_lispDepth > 0; }
    void enterLisp() { ++m_lispDepth; }
    void leaveLisp() { --m_lispDepth; }

private:
    struct Call {
        int code;
        RbPtr arguments;
        Result result;
    };
    std::vector<Call> m_calls;
    int m_lispDepth = 0;
};

}  // namespace vk::edit
