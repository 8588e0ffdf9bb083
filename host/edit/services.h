// What higher floors do for the editor: Lisp, dialogs. They register themselves here.
#pragma once

#include "host/base/rb.h"

#include <string>
#include <string_view>
#include <vector>

namespace vk::edit {

class LispEvaluator {
public:
    virtual ~LispEvaluator() = default;
    struct Result {
        enum Status { Done, Failed, Cancelled } status = Done;
        RbPtr value;            // as a chain: a single value, or RTLB ... RTLE; null for nil
        std::string printed;    // as prin1 shows it
        std::string message;    // why it failed; empty where the program itself has told it
        bool isSilent = false;  // ended in (princ): nothing is shown
    };
    virtual Result evaluate(std::string_view text) = 0;
    // The C:NAME function, if one is defined.
    virtual bool hasCommand(std::string_view name) const = 0;
    virtual Result runCommand(std::string_view name) = 0;
    virtual std::vector<std::string> commandNames(std::string_view prefix) const = 0;
    // A function of a module by its Lisp name, called with the editor's module calls.
    virtual void defineModuleFunction(const std::string& name, const std::string& localName, void* module,
                                      int code) = 0;
    virtual void undefineModuleFunction(const std::string& name) = 0;
};

// Shows dialogs and message boxes, or answers them as a script has laid down.
class DialogService {
public:
    virtual ~DialogService() = default;
    // A step of answer: form name, then steps; used once, in order.
    virtual void addAnswer(std::string form, std::vector<std::string> steps) = 0;
    virtual std::vector<std::string> unusedAnswers() const = 0;
};

}  // namespace vk::edit
