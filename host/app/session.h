// One editing session of the process: the editor with its commands, Lisp, dialogs and modules.
#pragma once

#include <memory>
#include <string>
#include <vector>

class VcDbDatabase;

namespace vk::app {

class Session {
public:
    // With a folder for the settings, or the person's own where it is empty.
    explicit Session(const std::string& profileFolder);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Gives the editor a drawing and loads the modules that lie beside the program. What could not be loaded is told.
    std::vector<std::string> open(std::unique_ptr<VcDbDatabase> drawing);
};

}  // namespace vk::app
