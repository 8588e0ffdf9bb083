// What a command says that this build does not have.
#pragma once

// Prints one line that names the command; RTERROR.
int reportNotAvailable(const wchar_t* name);
