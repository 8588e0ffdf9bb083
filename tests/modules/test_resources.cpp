// A resource library for tests: two texts, and a count of how often it was told that it is in use.
#include "sdk/system.h"

static const VkResourceText kTexts[] = {{7, L"seven %d"}, {3000, L"Schl\u00fcssel"}};

extern "C" {
VK_SDK extern const VkResourceTable vkResourceTable = {2, kTexts};
VK_SDK int attachments = 0;
VK_SDK int DllMain(void*, DWORD reason, void*)
{
    attachments += reason == 1 ? 1 : -1;
    return 1;
}
}
