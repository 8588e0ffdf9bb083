#pragma once

#include "host/edit/input.h"

#include <string>
#include <utility>

namespace vk::edit {

// The name of a variable, typed where a command was asked: it answers the first question of SETVAR unseen.
class TypedVariable : public InputSource {
public:
    explicit TypedVariable(std::string name) : m_name(std::move(name)) {}
    Input next(const Question&) override
    {
        if (std::exchange(m_used, true))
            return {Input::Exhausted{}};
        return {Input::Text{m_name, true}};
    }
    bool isExhausted() const override { return m_used; }
    bool echoes() const override { return false; }

private:
    std::string m_name;
    bool m_used = false;
};

}
