#include "host/base/console.h"
#include "host/base/message_service.h"
#include "host/base/resources.h"
#include "host/base/unicode.h"
#include "sdk/system.h"

#include <string>

namespace {

constexpr int kButtons[][4] = {
    {IDOK, 0},        {IDOK, IDCANCEL, 0},    {IDABORT, IDRETRY, IDIGNORE, 0}, {IDYES, IDNO, IDCANCEL, 0},
    {IDYES, IDNO, 0}, {IDRETRY, IDCANCEL, 0},
};

class PrintingService : public MessageService {
public:
    int show(std::string_view text, std::string_view, unsigned style) override
    {
        consoleWrite("\n" + std::string(text) + "\n");
        return defaultMessageButton(style);
    }
};

MessageService*& service()
{
    static PrintingService printing;
    static MessageService* current = &printing;
    static MessageService* const fallback = current;
    if (!current)
        current = fallback;
    return current;
}

std::string utf8(const wchar_t* text) { return text ? wideToUtf8(text) : ""; }

}  // namespace

void setMessageService(MessageService* newService) { service() = newService; }

const int* messageButtons(unsigned style)
{
    const unsigned kind = style & 0xF;
    return kButtons[kind < std::size(kButtons) ? kind : 0];
}

int defaultMessageButton(unsigned style)
{
    const int* buttons = messageButtons(style);
    const unsigned wanted = style >> 8 & 0xF;
    for (unsigned i = 0; buttons[i]; ++i)
        if (i == wanted)
            return buttons[i];
    return buttons[0];
}

int MessageBoxW(HWND, const wchar_t* text, const wchar_t* title, UINT style)
{
    return service()->show(utf8(text), utf8(title), style);
}

int AfxMessageBox(const wchar_t* text, UINT style, UINT) { return service()->show(utf8(text), "vekad", style); }

int AfxMessageBox(UINT id, UINT style, UINT help)
{
    return AfxMessageBox(resourceText(currentResourceHandle(), id), style, help);
}

short GetKeyState(int key) { return service()->keyState(key); }
