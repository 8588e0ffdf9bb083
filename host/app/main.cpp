// vekad: the command line program.

#include "host/app/audit.h"
#include "host/app/convert.h"
#include "host/app/info.h"
#include "host/app/render.h"
#include "host/app/run.h"
#include "host/base/files.h"
#include "host/io/drawing_file.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <string>
#include <vector>

namespace {

using namespace vk::app;

constexpr const char* kStatuses = R"(
Status: 0 done; 1 a command failed; 2 wrong usage; 3 a drawing could not be read;
4 it could not be saved, or saving would have dropped something.)";

constexpr const char* kRunNotes = R"(
A script is what a person would type, line by line: a blank line is Enter, ';' begins a
comment line, a parenthesis begins a Lisp expression. Without -c and -s commands are read
from the terminal. Several drawings are run one after the other, and -o names a folder.
)";

void addSaveOptions(CLI::App& app, SaveOptions& save)
{
    app.add_option("--as", save.versionName, "version to save as: R12, 2000, 2004, 2007, 2010, 2013, 2018")
        ->type_name("VERSION")
        ->check([&save](const std::string& name) {
            save.version = versionByName(name);
            return save.version && *save.version >= DxfVersion::R12 && *save.version != DxfVersion::R13 &&
                           *save.version != DxfVersion::R14
                       ? std::string()
                       : "there is no version " + name + " to save as";
        });
    app.add_flag("--binary", save.binary, "save in the binary form");
    app.add_flag("--allow-loss", save.allowLoss, "save even where something has to be dropped");
}

CLI::App* addRun(CLI::App& app, RunOptions& options)
{
    CLI::App* run = app.add_subcommand("run", "run commands on drawings");
    run->footer(std::string(kRunNotes) + kStatuses);
    run->add_option("drawings", options.drawings, "drawings to work on")->required()->type_name("DRAWING");
    run->add_option("-c,--command", options.typed, "a line as typed at the command line; may be repeated")
        ->type_name("TEXT")
        ->take_all();
    run->add_option("-s,--script", options.script, "a script to run; - is standard input")->type_name("SCRIPT");
    CLI::Option* out =
        run->add_option("-o,--output", options.out, "where to save; a folder for several drawings")->type_name("OUT");
    CLI::Option* inPlace =
        run->add_flag("--in-place", options.inPlace, "save where the drawing was; it is kept as NAME.bak");
    CLI::Option* dryRun = run->add_flag("--dry-run", options.dryRun, "say what would be saved; write no drawing");
    out->excludes(inPlace)->excludes(dryRun);
    inPlace->excludes(dryRun);
    addSaveOptions(*run, options.save);
    run->add_flag("--recover", options.recover, "read what there is of a broken drawing");
    run->add_flag("--json", options.json, "report each drawing as one line of JSON");
    run->add_option("--profile", options.profile, "folder of the settings to use")->type_name("DIR");
    run->add_option("--transcript", options.transcript, "file for the transcript")->type_name("FILE");
    run->add_flag("--append-transcript", options.appendTranscript)->group("");
    run->add_option("--timeout", options.timeout, "most seconds for each drawing")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.001, 1e9));
    return run;
}

CLI::App* addInfo(CLI::App& app, InfoOptions& options)
{
    CLI::App* info = app.add_subcommand("info", "say what is in a drawing");
    info->footer(kStatuses);
    info->add_option("drawing", options.drawing, "the drawing")->required()->type_name("DRAWING");
    info->add_flag("--json", options.json, "as one line of JSON");
    info->add_flag("--recover", options.recover, "read what there is of a broken drawing");
    return info;
}

CLI::App* addAudit(CLI::App& app, AuditOptions& options)
{
    CLI::App* audit = app.add_subcommand("audit", "say what is wrong with a drawing");
    audit->footer("\nStatus: 0 nothing is wrong; 1 something is; 2 wrong usage; 3 the drawing cannot be read;\n"
                  "4 the mended drawing could not be saved.");
    audit->add_option("drawing", options.drawing, "the drawing")->required()->type_name("DRAWING");
    CLI::Option* fix = audit->add_flag("--fix", options.fix, "mend what can be mended");
    CLI::Option* out =
        audit->add_option("-o,--output", options.out, "where to save the mended drawing")->type_name("OUT");
    fix->needs(out);
    out->needs(fix);
    addSaveOptions(*audit, options.save);
    return audit;
}

CLI::App* addConvert(CLI::App& app, ConvertOptions& options)
{
    CLI::App* convert = app.add_subcommand("convert", "save a drawing in another version or form");
    convert->footer(kStatuses);
    convert->add_option("in", options.in, "the drawing")->required()->type_name("IN");
    convert->add_option("out", options.out, "where to save it")->required()->type_name("OUT");
    addSaveOptions(*convert, options.save);
    convert->add_flag("--recover", options.recover, "read what there is of a broken drawing");
    return convert;
}

CLI::App* addRender(CLI::App& app, RenderOptions& options)
{
    CLI::App* render = app.add_subcommand("render", "make a picture of a drawing");
    render->footer(
        "\nThe picture is PNG, SVG or PDF by the ending of its name. Without --layout and --window it shows all of "
        "the\n"
        "model. Colour 7 is black on a light page and white on a dark one.\n"
        "\nStatus: 0 done; 2 wrong usage, also an unknown layout; 3 the drawing cannot be read; 4 the picture\n"
        "cannot be written.");
    render->add_option("drawing", options.drawing, "the drawing")->required()->type_name("DRAWING");
    render->add_option("out", options.out, "the picture: NAME.png, NAME.svg or NAME.pdf")->required()->type_name("OUT");
    render->add_option("--layout", options.layout, "the layout to show")->type_name("NAME");
    render->add_option("--window", options.window, "the part to show, in drawing units")->type_name("X1,Y1,X2,Y2");
    render->add_option("--size", options.size, "pixels of the picture; 1920x1080 by default")->type_name("WxH");
    render
        ->add_option("--background", options.background,
                     "colour of the page: #rrggbb, a name, transparent; white by default")
        ->type_name("COLOUR");
    render->add_flag("--recover", options.recover, "read what there is of a broken drawing");
    return render;
}

// What is typed may begin with a dash or be empty, so the texts of -c are taken before options are looked for.
void takeTyped(std::vector<std::string>& arguments, std::vector<std::string>& typed)
{
    for (std::size_t i = 0; i + 1 < arguments.size() && arguments[i] != "--";) {
        if (arguments[i] != "-c" && arguments[i] != "--command") {
            ++i;
            continue;
        }
        typed.push_back(arguments[i + 1]);
        arguments.erase(arguments.begin() + std::ptrdiff_t(i), arguments.begin() + std::ptrdiff_t(i) + 2);
    }
}

// Corners of a window may begin with a minus, which is no option.
void joinWindow(std::vector<std::string>& arguments)
{
    for (std::size_t i = 0; i + 1 < arguments.size() && arguments[i] != "--"; ++i)
        if (arguments[i] == "--window") {
            arguments[i] += "=" + arguments[i + 1];
            arguments.erase(arguments.begin() + std::ptrdiff_t(i) + 1);
        }
}

int refuse(const char* what)
{
    std::fprintf(stderr, "vekad: %s not part of this version\n", what);
    return kWrongUsage;
}

int start(std::vector<std::string> arguments)
{
    CLI::App app{"vekad - works on drawings, from a shell or a script", "vekad"};
    app.set_version_flag("--version", "vekad 0.1");
    app.require_subcommand(1);
    RunOptions runOptions;
    InfoOptions infoOptions;
    AuditOptions auditOptions;
    ConvertOptions convertOptions;
    RenderOptions renderOptions;
    const CLI::App* runCommand = addRun(app, runOptions);
    const CLI::App* infoCommand = addInfo(app, infoOptions);
    const CLI::App* auditCommand = addAudit(app, auditOptions);
    const CLI::App* renderCommand = addRender(app, renderOptions);
    addConvert(app, convertOptions);

    if (arguments.size() == 1 && fileExists(arguments.front()))
        return refuse("the window is");
    std::vector<std::string> typed;
    takeTyped(arguments, typed);
    joinWindow(arguments);
    try {
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kDone : kWrongUsage;
    }
    runOptions.typed.insert(runOptions.typed.begin(), typed.begin(), typed.end());

    if (runCommand->parsed())
        return run(std::move(runOptions));
    if (infoCommand->parsed())
        return info(infoOptions);
    if (auditCommand->parsed())
        return audit(auditOptions);
    if (renderCommand->parsed())
        return render(renderOptions);
    return convert(convertOptions);
}

}

int main(int argc, char** argv)
{
    try {
        return start(std::vector<std::string>(argv + 1, argv + argc));
    } catch (const std::bad_alloc&) {
        std::fputs("vekad: there is not enough memory\n", stderr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vekad: %s\n", error.what());
    }
    return kCommandFailed;
}
