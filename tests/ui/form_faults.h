// What a person would find wrong with a form as it stands on the screen.
#pragma once

#include <string>
#include <vector>

class QDialog;

// Texts that are cut, widgets on top of each other, keys that two labels claim, widgets without a name, no button for
// Enter, a form that cannot grow.
std::vector<std::string> faultsOf(QDialog& form);
