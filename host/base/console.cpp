#include "host/base/console.h"

#include "host/base/unicode.h"

#include <cstdio>

static ConsoleSink& sink()
{
    static ConsoleSink instance;
    return instance;
}

void setConsoleSink(ConsoleSink newSink) { sink() = std::move(newSink); }

void consoleWrite(std::string_view text)
{
    if (const ConsoleSink to = sink())  // a copy, since printing may set another
        to(text);
    else
        std::fwrite(text.data(), 1, text.size(), stdout);
}

void consoleWrite(std::wstring_view text) { consoleWrite(std::string_view(wideToUtf8(text))); }
