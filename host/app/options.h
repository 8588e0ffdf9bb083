// What was asked for on the command line.
#pragma once

#include "host/db/field_visitor.h"

#include <optional>
#include <string>
#include <vector>

namespace vk::app {

// The program's status, for the shell.
enum Status : int {
    kDone = 0,
    kCommandFailed = 1,  // also: the time limit struck, an answer was left over; of audit: something is wrong
    kWrongUsage = 2,
    kUnreadable = 3,
    kNotSaved = 4,
};

struct SaveOptions {
    std::string versionName;
    std::optional<DxfVersion> version;
    bool binary = false;
    bool allowLoss = false;
};

struct RunOptions {
    std::vector<std::string> drawings;
    std::vector<std::string> typed;  // the texts of -c
    std::string script;              // "-" is standard input; empty: none
    std::string out;
    bool inPlace = false;
    bool dryRun = false;
    bool recover = false;
    bool json = false;
    SaveOptions save;
    std::string profile;
    std::string transcript;
    bool appendTranscript = false;  // one of several runs that share a transcript
    double timeout = 0;             // seconds; 0: none

    bool hasInput() const { return !typed.empty() || !script.empty(); }
    bool saves() const { return inPlace || dryRun || !out.empty(); }
};

struct InfoOptions {
    std::string drawing;
    bool json = false;
    bool recover = false;
};

struct AuditOptions {
    std::string drawing;
    bool fix = false;
    std::string out;
    SaveOptions save;
};

struct ConvertOptions {
    std::string in, out;
    bool recover = false;
    SaveOptions save;
};

struct RenderOptions {
    std::string drawing, out;
    std::string layout, window, size, background;  // as typed; empty: the default
    bool recover = false;
};

}  // namespace vk::app
