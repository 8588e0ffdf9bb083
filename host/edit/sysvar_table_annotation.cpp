// System variables of texts, fonts, fields, tables, annotation scales and layers.
#include "host/edit/sysvar_table_rows.h"

namespace vk::edit {

static constexpr SysVarDef kRows[] = {
    {"ANNOALLVISIBLE", Short, Dictionary, rw, "1", kFlag,
     "Shows annotative objects that lack the current annotation scale. 0 hidden, 1 shown. Each layout keeps its own "
     "value."},
    {"ANNOAUTOSCALE", Short, Profile, rw, "-4", between(-4, 4),
     "Gives annotative objects the new annotation scale when it changes: 1 not on layers that are off, frozen, locked "
     "or frozen in the viewport, 2 locked layers too, 3 but not locked ones, 4 on all layers; negative is switched "
     "off."},
    {"ANNOMONITOR", Short, Profile, rw, "-2", between(-2, 2),
     "Marks annotations that have lost what they belong to: 2 on, -2 switched off, 1 and 0 on and off by hand."},
    {"ANNOTATIVEDWG", Short, Dictionary, rw, "0", kFlag,
     "Whether the whole drawing behaves as an annotative block when it is inserted. 0 no, 1 yes."},
    {"CANNOSCALE", String, Dictionary, rw, "1:1", kName,
     "The name of the annotation scale of the current space or viewport."},
    {"CANNOSCALEVALUE", Real, NotSaved, ro, "1", kPositive,
     "The value of the current annotation scale: paper length divided by drawing length."},
    {"DBCSTATE", Short, NotSaved, ro, "0", kFlag, "Tells whether a palette of data links is open. 0 no, 1 yes."},
    {"DTEXTED", Short, Profile, rw, "2", between(0, 2),
     "How text is edited: 0 in place, 1 in a dialog, 2 in place and going on to pick the next text."},
    {"FIELDDISPLAY", Short, Profile, rw, "1", kFlag, "Shows fields in a text on a grey ground. 0 off, 1 on."},
    {"FIELDEVAL", Short, Dictionary, rw, "31", bits(31),
     "When fields are brought up to date, as a sum: 1 on opening, 2 on saving, 4 on plotting, 8 on sending, 16 on "
     "regenerating."},
    {"FONTALT", String, Profile, rw, "simplex.shx", kAny,
     "The font that takes the place of one that cannot be found. A full stop takes none, so that it is asked for."},
    {"FONTMAP", String, Profile, rw, "vekad.fmp", kAny,
     "The file that says which fonts take the place of which. A full stop takes none."},
    {"LAYEREVAL", Short, Dictionary, rw, "0", between(0, 2),
     "Whether layers that are new since the drawing was last looked through are marked: 0 never, 1 those of "
     "references, 2 all."},
    {"LAYEREVALCTL", Short, Profile, rw, "1", kFlag,
     "Switches the marking of new layers for all drawings. 0 off whatever LAYEREVAL says, 1 as LAYEREVAL says."},
    {"LAYERFILTERALERT", Short, Profile, rw, "2", between(0, 3),
     "What to do about a great number of layer filters: 0 nothing, 1 delete them in the layer list, 2 ask on opening "
     "the layer list, 3 ask on opening the drawing."},
    {"LAYERMANAGERSTATE", Short, NotSaved, ro, "0", kFlag, "Tells whether the layer list is open. 0 no, 1 yes."},
    {"LAYERNOTIFY", Short, Dictionary, rw, "0", bits(63),
     "When to tell of new layers, as a sum: 1 on plotting, 2 on opening, 4 on changing references, 8 on restoring "
     "layer states, 16 on saving, 32 on inserting. 0 never."},
    {"LAYLOCKFADECTL", Short, Profile, rw, "50", between(-90, 90),
     "How far objects on locked layers fade, in per cent from 0 to 90. A negative value keeps the number but shows "
     "them unfaded."},
    {"LAYOUTCREATEVIEWPORT", Short, Profile, rw, "1", kFlag,
     "Whether a new layout gets a viewport when it is first shown. 0 no, 1 yes."},
    {"MSLTSCALE", Short, Dictionary, rw, "1", kFlag,
     "Whether linetypes in the model grow with the annotation scale. 0 no, 1 yes."},
    {"MTEXTAUTOSTACK", Short, Profile, rw, "1", kFlag,
     "Whether the text editor stacks fractions as they are typed. 0 no, 1 yes."},
    {"MTEXTCOLUMN", Short, Dictionary, rw, "2", between(0, 2),
     "Columns of new paragraph texts: 0 none, 1 of varying number with automatic height, 2 of varying number with a "
     "height set by hand."},
    {"MTEXTED", String, Profile, rw, "Internal", kAny,
     "The editor for paragraph texts: Internal, OldEditor, or the name of a program."},
    {"MTEXTFIXED", Short, Profile, rw, "2", between(0, 2),
     "How small, large or turned text is edited in place: 0 as it lies in the drawing, 1 at a readable size in a "
     "fixed spot, 2 at a readable size and level."},
    {"MTJIGSTRING", String, Profile, rw, "abc", kAny,
     "The sample that hangs at the pointer while a paragraph text is placed. A full stop shows none."},
    {"QTEXTMODE", Short, Drawing, rw, "0", kFlag,
     "Shows texts as boxes to draw faster. 0 off, 1 on, from the next regeneration.", "$QTEXTMODE", 70},
    {"SAVEFIDELITY", Short, Profile, rw, "1", kFlag,
     "Saves a separate picture of annotative objects for each scale, for programs that do not know annotation scales. "
     "0 no, 1 yes."},
    {"SELECTIONANNODISPLAY", Short, Profile, rw, "1", kFlag,
     "Shows the other scales of an annotative object faintly while it is selected. 0 off, 1 on."},
    {"SHOWLAYERUSAGE", Short, Profile, rw, "0", kFlag,
     "Shows in the layer list which layers have objects on them. 0 off, 1 on."},
    {"SPELLCHECKSHORT", Short, Profile, rw, "3", between(1, 8),
     "The shortest word, in letters, that the spelling check looks at."},
    {"TABLEINDICATOR", Short, Profile, rw, "1", kFlag,
     "Shows row numbers and column letters while the cells of a table are edited. 0 off, 1 on."},
    {"TABLETOOLBAR", Short, Profile, rw, "2", between(0, 2),
     "What opens when a cell of a table is picked: 0 nothing, 1 a toolbar, 2 the tools in the ribbon or a toolbar."},
    {"TEXTALIGNMODE", Short, Profile, rw, "9", between(0, 14),
     "The way of lining up that TEXTALIGN offers as its default, numbered from left, centre and right to the nine "
     "corners and middles."},
    {"TEXTALIGNSPACING", Real, Profile, rw, "0", atLeast(0), "The spacing that TEXTALIGN offers as its default."},
    {"TEXTALLCAPS", Short, Profile, rw, "0", kFlag,
     "Turns new single-line texts into capitals as they are typed. 0 off, 1 on."},
    {"TEXTAUTOCORRECTCAPS", Short, Profile, rw, "1", kFlag,
     "Mends texts that were typed with the Caps Lock key on by mistake. 0 off, 1 on."},
    {"TEXTED", Short, Profile, rw, "2", between(0, 2),
     "How single-line texts are edited: 0 in place, 1 in a dialog, 2 in place and going on to pick the next text."},
    {"TEXTEDITMODE", Short, Profile, rw, "0", kFlag,
     "Whether TEXTEDIT goes on to the next text: 0 it goes on, 1 it edits one text."},
    {"TEXTEVAL", Short, NotSaved, rw, "0", kFlag,
     "What a line that begins with ( or ! means where a text is asked for: 0 just that text, 1 an expression whose "
     "value is the text."},
    {"TEXTFILL", Short, Profile, rw, "1", kFlag,
     "Fills the letters of outline fonts when they are plotted: 0 outlines only, 1 filled."},
    {"TEXTJUSTIFY", String, Dictionary, rw, "Left", kName, "The justification that TEXT offers as its default."},
    {"TEXTLAYER", String, Dictionary, rw, ".", kName,
     "The layer on which new texts are put. A full stop stands for the current layer."},
    {"TEXTOUTPUTFILEFORMAT", Short, Profile, rw, "0", between(0, 3),
     "Encoding of text files such as the log: 0 the system's code page, 1 UTF-8 with a byte order mark, 2 UTF-16 "
     "little endian, 3 UTF-16 big endian."},
    {"TEXTQLTY", Short, NotSaved, rw, "50", between(0, 100),
     "Smoothness of the letters of outline fonts when plotted, from 0 for coarse to 100 for fine."},
    {"TEXTSIZE", Real, Drawing, rw, "0.2", kPositive, "The height of new texts whose style has no fixed height.",
     "$TEXTSIZE", 40},
    {"TEXTSTYLE", String, Drawing, rw, "Standard", kName, "The current text style.", "$TEXTSTYLE", 7},
    {"TSPACEFAC", Real, NotSaved, rw, "1", between(0.25, 4),
     "Distance of the lines of paragraph texts as a share of the usual one."},
    {"TSPACETYPE", Short, NotSaved, rw, "1", between(1, 2),
     "How the distance of lines is kept: 1 at least, growing with tall letters, 2 exactly."},
    {"TSTACKALIGN", Short, Drawing, rw, "1", between(0, 2),
     "Place of stacked text over its line: 0 at the foot, 1 in the middle, 2 at the top.", "$TSTACKALIGN", 70},
    {"TSTACKSIZE", Short, Drawing, rw, "70", between(25, 125),
     "Height of stacked text, in per cent of the text around it.", "$TSTACKSIZE", 70},
};

std::span<const SysVarDef> annotationSysVars() { return kRows; }

}  // namespace vk::edit
