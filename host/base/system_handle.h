// What a HANDLE of the system layer stands for.
#pragma once

struct SystemHandle {
    int descriptor = -1;  // of a file, or -1
    int process = 0;      // of a program, or 0
};

// Handles that are not open are refused, never followed.
SystemHandle* addHandle(const SystemHandle& handle);
SystemHandle* findHandle(void* handle);
