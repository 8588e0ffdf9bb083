// System variables of the session: commands, prompts, errors, Lisp, undo, and what runs.
#include "host/edit/sysvar_table_rows.h"

namespace vk::edit {

static constexpr SysVarDef kRows[] = {
    {"ACADVER", String, NotSaved, ro, "25.0", kName,
     "The version of the host that scripts and programs look at to tell what it can do."},
    {"ACTPATH", String, Profile, rw, "", kAny,
     "Further folders in which recorded actions are looked for, parted by semicolons."},
    {"ACTRECORDERSTATE", Short, NotSaved, ro, "0", between(0, 2),
     "Tells what the recorder of actions does: 0 nothing, 1 records, 2 plays."},
    {"ACTRECPATH", String, Profile, rw, "", kAny, "The folder in which new recordings of actions are kept."},
    {"ACTUI", Short, Profile, rw, "6", bits(7),
     "How the recorder of actions shows itself, as a sum: 1 no change, 2 opens while playing, 4 opens while "
     "recording."},
    {"AFLAGS", Short, NotSaved, rw, "16", bits(63),
     "Modes of new attribute definitions, as a sum: 1 invisible, 2 constant, 4 verified, 8 preset, 16 fixed in place, "
     "32 of several lines."},
    {"AUTOCOMPLETEDELAY", Real, Profile, rw, "0.3", between(0, 10),
     "Seconds of rest before the command line offers names that would complete what is typed."},
    {"AUTOCOMPLETEMODE", Short, Profile, rw, "15", bits(127),
     "What the command line offers while typing, as a sum: 1 at all, 2 appended, 4 as a list, 8 with icons, 16 "
     "without system variables, 32 within words, 64 with synonyms."},
    {"CLISTATE", Short, NotSaved, ro, "1", kFlag, "Tells whether the command line is shown. 0 hidden, 1 shown."},
    {"CMDACTIVE", Short, NotSaved, ro, "0", bits(127),
     "Tells what is active, as a sum: 1 a command, 2 one inside another, 4 a script, 8 a dialog, 16 data exchange, 32 "
     "Lisp, 64 a command of a module."},
    {"CMDDIA", Short, Profile, rw, "1", kFlag,
     "Whether commands that have both ask by a dialog (1) or at the command line (0)."},
    {"CMDECHO", Short, NotSaved, rw, "1", kFlag,
     "Shows the prompts and answers of commands that Lisp drives. 0 quiet, 1 shown."},
    {"CMDINPUTHISTORYMAX", Short, Profile, rw, "20", between(0, kAllShorts),
     "How many earlier answers each prompt remembers."},
    {"CMDLNTEXT", String, Profile, rw, "Command:", kAny, "The text of the prompt for a command."},
    {"CMDNAMES", String, NotSaved, ro, "", kAny,
     "The name of the active command, and of one that runs inside it behind an apostrophe."},
    {"CPROFILE", String, Profile, ro, "Default", kName, "The name of the current profile of settings."},
    {"CPUTICKS", Real, NotSaved, ro, "0", kAny, "Ticks of the processor's clock, to measure very short times."},
    {"CURSORTYPE", Short, Profile, rw, "0", kFlag, "The pointer in the drawing: 0 cross-hair, 1 the desktop's arrow."},
    {"DBMOD", Short, NotSaved, ro, "0", bits(31),
     "Tells what has changed since the drawing was saved, as a sum: 1 objects, 2 symbol tables, 4 variables, 8 "
     "windows, 16 views. 0 nothing."},
    {"DCTCUST", String, Profile, rw, "", kAny, "The file of the user's own words for the spelling check."},
    {"DCTMAIN", String, Profile, rw, "", kAny, "The main dictionary of the spelling check, by its short name."},
    {"DELAYCMD", Short, NotSaved, rw, "0", between(0, kAllShorts),
     "Milliseconds to wait between commands of a script, so that a person can follow."},
    {"DIASTAT", Short, NotSaved, ro, "1", kFlag, "Tells how the last dialog was left: 0 cancelled, 1 accepted."},
    {"ERRNO", Short, NotSaved, rw, "0", kAny,
     "The reason why the last call of a program failed, by number. It is not set back by calls that succeed."},
    {"EXPERT", Short, NotSaved, rw, "0", between(0, 5),
     "Which questions of the kind Are you sure are left out: 0 none, 1 regenerating and switching off the current "
     "layer, 2 overwriting blocks, 3 linetypes, 4 UCS and viewports, 5 dimension styles; each with those before."},
    {"EXPINSALIGN", Short, Profile, rw, "0", kFlag,
     "Turns a block from the explorer along what lies under the pointer. 0 off, 1 on."},
    {"EXPINSANGLE", Real, Profile, rw, "0", kAny, "The angle of blocks from the explorer, in radians."},
    {"EXPINSFIXANGLE", Short, Profile, rw, "1", kFlag,
     "Whether the angle of blocks from the explorer is fixed. 0 asked for, 1 fixed."},
    {"EXPINSFIXSCALE", Short, Profile, rw, "1", kFlag,
     "Whether the scale of blocks from the explorer is fixed. 0 asked for, 1 fixed."},
    {"EXPINSSCALE", Real, Profile, rw, "1", kNotZero, "The scale of blocks from the explorer."},
    {"HANDLES", Short, NotSaved, ro, "1", kFlag, "Tells that every object has a handle; always 1."},
    {"INPUTHISTORYMODE", Short, Profile, rw, "15", bits(15),
     "Where earlier answers are offered, as a sum: 1 at the command line and the pointer by arrow keys, 2 those of "
     "the current command, 4 those of all commands, 8 marks where points were given."},
    {"INPUTSEARCHDELAY", Short, Profile, rw, "300", between(100, 10000),
     "Milliseconds of rest before names that match what was typed are looked up."},
    {"INPUTSEARCHOPTIONS", Short, Profile, rw, "7", bits(15),
     "How names are looked up while typing, as a sum: 1 at all, 2 also within words, 4 also other content, 8 also "
     "variables."},
    {"LASTPROMPT", String, NotSaved, ro, "", kAny,
     "The last line that the command line showed, with what was typed to it."},
    {"LISPINIT", Short, Profile, rw, "1", kFlag,
     "Whether Lisp begins afresh with each drawing: 0 it goes on, 1 it begins afresh."},
    {"LISPSYS", Short, Profile, rw, "1", between(0, 2),
     "How Lisp treats text: 0 as bytes of the code page, 1 as characters, 2 as characters with files in the code "
     "page."},
    {"LOADCTX", Short, NotSaved, ro, "0", kFlag,
     "Tells whether modules may be loaded where the program now stands. 0 yes, 1 no."},
    {"LOCALE", String, NotSaved, ro, "enu", kName, "The language of the host as a code of three letters."},
    {"LOGINNAME", String, NotSaved, ro, "", kAny, "The name of the user as the system knows it."},
    {"MACROTRACE", Short, NotSaved, rw, "0", kFlag, "Shows how texts in the status line are worked out. 0 off, 1 on."},
    {"MAXSORT", Short, Profile, rw, "1000", between(0, kAllShorts),
     "The number of names up to which lists are shown sorted. 0 leaves them in their order."},
    {"MENUCTL", Short, Profile, rw, "1", kFlag,
     "Whether the screen menu follows the command that is typed. 0 no, 1 yes."},
    {"MENUECHO", Short, NotSaved, rw, "0", bits(15),
     "What is kept quiet of commands from menus, as a sum: 1 their echo, 2 prompts, 4 the switch for the echo, 8 "
     "texts that go to the command line."},
    {"MENUNAME", String, Profile, ro, "vekad", kAny, "The name of the menu in use."},
    {"MODEMACRO", String, NotSaved, rw, "", kAny,
     "A text for the status line, which may hold expressions that are worked out."},
    {"NFILELIST", Short, Profile, rw, "10", between(0, 50), "How many recent files the menu lists."},
    {"NOMUTT", Short, NotSaved, rw, "0", kFlag, "Silences messages that would otherwise be shown. 0 shown, 1 silent."},
    {"PFACEVMAX", Short, NotSaved, ro, "4", between(3, 4),
     "The largest number of vertices in one face of a polyface mesh."},
    {"PLATFORM", String, NotSaved, ro, "Linux", kName, "The operating system under which the host runs."},
    {"POPUPS", Short, NotSaved, ro, "1", kFlag, "Tells whether menus and dialogs can be shown. 0 no, 1 yes."},
    {"PRODUCT", String, NotSaved, ro, "vekad", kName, "The name of the host."},
    {"PROGRAM", String, NotSaved, ro, "vekad", kName, "The name of the program that runs."},
    {"QAFLAGS", Short, NotSaved, rw, "0", bits(7),
     "Switches for automatic trials, as a sum: 1 Esc in menus cancels, 2 long listings do not stop, 4 messages go to "
     "the command line."},
    {"REMEMBERFOLDERS", Short, Profile, rw, "1", kFlag,
     "Where file dialogs begin: 0 in the folder the host was started from, 1 where each was last used."},
    {"REPORTERROR", Short, Profile, rw, "0", kFlag, "Whether a report can be sent after a crash. 0 no, 1 yes."},
    {"SECURELOAD", Short, Profile, rw, "1", between(0, 2),
     "Programs from folders that are not in TRUSTEDPATHS: 0 loaded, 1 loaded after asking, 2 refused."},
    {"SRCHPATH", String, Profile, rw, "", kAny,
     "Folders searched for support files after the usual ones, parted by semicolons."},
    {"STARTUP", Short, Profile, rw, "0", between(0, 3),
     "What a start without a drawing shows: 0 an empty drawing, 1 a dialog, 2 a page with recent files, 3 that page "
     "with tools."},
    {"SYSCODEPAGE", String, NotSaved, ro, "ANSI_1252", kName, "The code page of text files that do not name one."},
    {"SYSMON", Short, Profile, rw, "1", between(0, 2),
     "Watches system variables for changes from the values wished for: 0 off, 1 on, 2 on and told by a message."},
    {"TBCUSTOMIZE", Short, Profile, rw, "1", kFlag, "Whether toolbars may be changed. 0 no, 1 yes."},
    {"TRUSTEDPATHS", String, Profile, rw, "", kAny,
     "Folders from which programs may be loaded without asking, parted by semicolons; three dots at the end take "
     "subfolders in."},
    {"UNDOCTL", Short, NotSaved, ro, "53", bits(127),
     "Tells how undo works, as a sum: 1 on, 2 only the last command, 4 groups are made, 8 a group is open, 16 zooms "
     "are joined, 32 layer changes are joined, 64 there is something to redo."},
    {"UNDOMARKS", Short, NotSaved, ro, "0", between(0, kAllShorts),
     "How many marks have been set with UNDO in this session."},
    {"UNDOONDISK", Short, Profile, rw, "0", kFlag, "Where undo is kept: 0 in memory, 1 in a temporary file."},
    {"VERNUM", String, NotSaved, ro, "0.1", kName, "The version and build of the program."},
};

std::span<const SysVarDef> sessionSysVars()
{
    return kRows;
}

}  // namespace vk::edit
