// What a person would find wrong with a form as it stands on the screen.
#pragma once

#include <string>
#include <vector>

class QDialog;

// Texts that are cut, widgets on top of each other, keys that two labels claim, widgets without a name, Tab that jumps
// about, a button that has the focus first, no button for Enter, a form that does not fit on a screen or cannot grow.
std::vector<std::string> faultsOf(QDialog& form);
