// The questions of host commands, in their simple forms.
#include "host/base/numbers.h"
#include "host/edit/editor.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_chains.h"
#include "host/base/unicode.h"

namespace vk::edit {

namespace {

using Kind = Question::Kind;

Question questionOf(Kind kind, std::string_view prompt, const AskOptions& options)
{
    Question q;
    q.kind = kind;
    q.prompt = std::string(prompt);
    if (!q.prompt.ends_with(' '))
        q.prompt += q.prompt.ends_with(':') || q.prompt.ends_with('?') ? " " : ": ";
    q.init.bits = options.bits | (options.enterEnds ? 0 : InitGet::NoEnter);
    q.init.keywords = parseKeywords(options.keywords);
    q.base = options.from;
    q.hasDefault = options.enterEnds;
    q.endsWithArguments = options.endsWithArguments;
    return q;
}

std::string withDefault(std::string_view prompt, const std::string& value)
{
    return fmt::format("{} <{}>", prompt, value);
}

std::string lengthText(double value)
{
    wchar_t text[134];
    return vcdbRToS(value, -1, -1, text) == RTNORM ? wideToUtf8(text) : realText(value);
}

AskOptions enterTakesDefault(AskOptions options)
{
    options.enterEnds = true;
    return options;
}

}

Answer Editor::askPoint(std::string_view prompt, const Options& options)
{
    return ask(questionOf(Kind::Point, prompt, options));
}
Answer Editor::askDistance(std::string_view prompt, const Options& options)
{
    return ask(questionOf(Kind::Distance, prompt, options));
}
Answer Editor::askAngle(std::string_view prompt, const Options& options)
{
    return ask(questionOf(Kind::Angle, prompt, options));
}
Answer Editor::askReal(std::string_view prompt, const Options& options)
{
    return ask(questionOf(Kind::Real, prompt, options));
}

Answer Editor::askInteger(std::string_view prompt, const Options& options)
{
    Question q = questionOf(Kind::Integer, prompt, options);
    q.anyNumber = true;
    return ask(std::move(q));
}

// A pick that misses is told and asked again; Enter ends it.
Answer Editor::askEntity(std::string_view prompt, const Options& options)
{
    for (;;) {
        const Answer answer = ask(questionOf(Kind::Entity, prompt, enterTakesDefault(options)));
        if (answer.status != Answer::Status::Failed)
            return answer;
        printLine("No object was found there.");
    }
}

VcGePoint3d Editor::point(std::string_view prompt, const Options& options) { return askPoint(prompt, options).point; }

double Editor::distance(std::string_view prompt, std::optional<double> byDefault, const Options& options)
{
    if (!byDefault)
        return askDistance(prompt, options).real;
    const Answer a = askDistance(withDefault(prompt, lengthText(*byDefault)), enterTakesDefault(options));
    return a.status == Answer::Status::Enter ? *byDefault : a.real;
}

double Editor::real(std::string_view prompt, std::optional<double> byDefault, const Options& options)
{
    if (!byDefault)
        return askReal(prompt, options).real;
    const Answer a = askReal(withDefault(prompt, lengthText(*byDefault)), enterTakesDefault(options));
    return a.status == Answer::Status::Enter ? *byDefault : a.real;
}

std::int64_t Editor::integer(std::string_view prompt, std::optional<std::int64_t> byDefault, const Options& options)
{
    if (!byDefault)
        return askInteger(prompt, options).integer;
    const Answer a = askInteger(withDefault(prompt, std::to_string(*byDefault)), enterTakesDefault(options));
    return a.status == Answer::Status::Enter ? *byDefault : a.integer;
}

std::string Editor::keyword(std::string_view prompt, std::string_view keywords, std::string_view byDefault)
{
    AskOptions options;
    options.keywords = std::string(keywords);
    options.enterEnds = !byDefault.empty();
    const Answer a = ask(questionOf(Kind::Keyword, prompt, options));
    return a.status == Answer::Status::Enter ? std::string(byDefault) : a.text;
}

static std::string askText(Editor& ed, Kind kind, std::string_view prompt, const std::optional<std::string>& byDefault)
{
    AskOptions options;
    options.enterEnds = true;
    const std::string shown = byDefault && !byDefault->empty() ? withDefault(prompt, *byDefault) : std::string(prompt);
    const Answer a = ed.ask(questionOf(kind, shown, options));
    return a.status == Answer::Status::Enter ? byDefault.value_or("") : a.text;
}

std::string Editor::word(std::string_view prompt, std::optional<std::string> byDefault)
{
    return askText(*this, Kind::Word, prompt, byDefault);
}
std::string Editor::text(std::string_view prompt, std::optional<std::string> byDefault)
{
    return askText(*this, Kind::Text, prompt, byDefault);
}

}
