// VKHOST_API marks what the host's own programs (the runner, the dialog library, tests) use beyond the sdk.
#pragma once

#define VKHOST_API __attribute__((visibility("default")))
