// Plays one scenario: a new drawing or one from a file, the program's own start, the lines as a person would type them, and what must then be
// true.
#pragma once

#include <string>
#include <vector>

struct Scenario {
    std::string name;
    std::string file;
    std::string drawing;  // path of the file to begin with; a new drawing where empty
    int firstLine = 1;
    std::vector<std::string> lines;
};

// What is not as expected, one sentence each; empty when all is well. Leaves the process as the scenario made it.
std::vector<std::string> playScenario(const Scenario& scenario);
