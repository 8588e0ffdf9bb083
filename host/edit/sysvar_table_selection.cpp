// System variables of picking, selection, grips, object snap and tracking.
#include "host/edit/sysvar_table_rows.h"

namespace vk::edit {

static constexpr SysVarDef kRows[] = {
    {"APBOX", Short, Profile, rw, "0", kFlag,
     "Shows the box in which object snap looks about the pointer. 0 hidden, 1 shown."},
    {"APERTURE", Short, Profile, rw, "10", between(1, 50), "How far object snap reaches from the pointer, in pixels."},
    {"AUTOSNAP", Short, Profile, rw, "63", bits(63),
     "Help while snapping and tracking, as a sum: 1 marker, 2 tip, 4 magnet, 8 polar tracking, 16 object snap "
     "tracking, 32 tips for tracking."},
    {"BACTIONBARMODE", Short, Profile, rw, "1", kFlag,
     "How the block editor shows what a parameter does: 0 as objects, 1 as bars of icons."},
    {"BACTIONCOLOR", String, Profile, rw, "7", kName, "Colour of actions in the block editor."},
    {"BCONSTATUSMODE", Short, NotSaved, rw, "0", kFlag,
     "Colours objects in the block editor by how far constraints fix them. 0 off, 1 on."},
    {"BDEPENDENCYHIGHLIGHT", Short, Profile, rw, "1", kFlag,
     "Marks what belongs to a selected parameter or action in the block editor. 0 off, 1 on."},
    {"BGRIPOBJCOLOR", String, Profile, rw, "141", kName, "Colour of grips in the block editor."},
    {"BGRIPOBJSIZE", Short, Profile, rw, "8", between(1, 255), "Size of grips in the block editor, in pixels."},
    {"BPARAMETERCOLOR", String, Profile, rw, "170", kName, "Colour of parameters in the block editor."},
    {"BPARAMETERFONT", String, Profile, rw, "simplex.shx", kName, "Font of parameters in the block editor."},
    {"BPARAMETERSIZE", Short, Profile, rw, "12", between(1, 255),
     "Size of the texts of parameters in the block editor, in pixels."},
    {"BPTEXTHORIZONTAL", Short, Profile, rw, "1", kFlag,
     "Direction of the texts of parameters in the block editor: 0 along the parameter, 1 level."},
    {"BTMARKDISPLAY", Short, Profile, rw, "1", kFlag,
     "Shows in the block editor which parameters have a set of values. 0 off, 1 on."},
    {"BVMODE", Short, NotSaved, rw, "0", kFlag,
     "How the block editor shows what is invisible in the current state: 0 not at all, 1 faintly."},
    {"CROSSINGAREACOLOR", Short, Profile, rw, "100", between(1, 255),
     "Colour by number of the area of a crossing window."},
    {"CTRL3DMOUSE", Short, Profile, rw, "1", kFlag, "Whether a six-axis controller is listened to. 0 no, 1 yes."},
    {"GRIPBLOCK", Short, Profile, rw, "0", kFlag,
     "Grips of a selected block: 0 one at its insertion point, 1 those of all its parts."},
    {"GRIPCOLOR", Short, Profile, rw, "150", between(1, 255), "Colour by number of grips that are not picked."},
    {"GRIPCONTOUR", Short, Profile, rw, "251", between(1, 255), "Colour by number of the outline of grips."},
    {"GRIPDYNCOLOR", Short, Profile, rw, "140", between(1, 255),
     "Colour by number of the special grips of dynamic blocks."},
    {"GRIPHOT", Short, Profile, rw, "12", between(1, 255), "Colour by number of the grip that has been picked."},
    {"GRIPHOVER", Short, Profile, rw, "11", between(1, 255), "Colour by number of the grip under the pointer."},
    {"GRIPMULTIFUNCTIONAL", Short, Profile, rw, "3", bits(3),
     "Ways to the further uses of a grip, as a sum: 1 cycling with the Ctrl key, 2 a menu under the pointer."},
    {"GRIPOBJLIMIT", Short, Profile, rw, "100", between(0, kAllShorts),
     "The number of selected objects above which no grips are shown. 0 always shows them."},
    {"GRIPS", Short, Profile, rw, "2", between(0, 2),
     "Grips on selected objects: 0 none, 1 shown, 2 shown with more in the middle of polyline segments."},
    {"GRIPSIZE", Short, Profile, rw, "5", between(1, 255), "Half the size of a grip, in pixels."},
    {"GRIPSUBOBJMODE", Short, Profile, rw, "1", between(0, 3),
     "What becomes hot when faces, edges or segments are picked: 0 nothing, 1 the parts of solids, 2 the segments of "
     "polylines, 3 both."},
    {"GRIPTIPS", Short, Profile, rw, "1", kFlag, "Shows tips at the grips of objects that have any. 0 off, 1 on."},
    {"GROUPDISPLAYMODE", Short, Profile, rw, "2", between(0, 2),
     "Grips of a selected group: 0 those of all its members, 1 one in the middle, 2 one in the middle and a frame."},
    {"HIGHLIGHT", Short, NotSaved, rw, "1", kFlag, "Marks selected objects on the screen. 0 off, 1 on."},
    {"LASTANGLE", Real, NotSaved, ro, "0", kAny,
     "The direction at the end of the last arc drawn, in radians in the XY plane of the UCS."},
    {"LASTPOINT", Point3d, NotSaved, rw, "0,0,0", kAny,
     "The last point that was given, in the coordinates of the UCS. An entry that begins with @ starts from it."},
    {"LEGACYCTRLPICK", Short, Profile, rw, "0", kFlag,
     "What the Ctrl key does at a pick: 0 picks faces and edges of solids, 1 goes through what lies on top of each "
     "other."},
    {"OPMSTATE", Short, NotSaved, ro, "0", between(0, 2),
     "Tells whether the list of properties is open: 0 closed, 1 open, 2 rolled up."},
    {"OSMODE", Short, Profile, rw, "4133", bits(32767),
     "Running object snaps as a sum: 1 endpoint, 2 midpoint, 4 centre, 8 node, 16 quadrant, 32 intersection, 64 "
     "insertion, 128 perpendicular, 256 tangent, 512 nearest, 2048 apparent, 4096 extension, 8192 parallel; 16384 "
     "switches all off."},
    {"OSNAPCOORD", Short, Profile, rw, "2", between(0, 2),
     "What wins when a typed point meets a running snap: 0 the snap, 1 what was typed, 2 what was typed, but not in "
     "scripts."},
    {"OSNAPHATCH", Short, Profile, rw, "0", kFlag, "Whether object snap catches the lines of hatches. 0 no, 1 yes."},
    {"OSNAPNODELEGACY", Short, Profile, rw, "0", kFlag,
     "Whether the snap to nodes leaves out the definition points of paragraph texts. 0 takes them, 1 leaves them out."},
    {"OSNAPOVERRIDE", Short, Profile, rw, "0", kFlag,
     "Whether points typed in are kept from running snaps altogether. 0 no, 1 yes."},
    {"OSNAPZ", Short, Profile, rw, "0", kFlag,
     "The height of a snapped point: 0 that of the object, 1 the current ELEVATION."},
    {"OSOPTIONS", Short, Profile, rw, "3", bits(7),
     "What object snap leaves out, as a sum: 1 hatches, 2 points below the dynamic UCS, 4 definition lines of "
     "dimensions."},
    {"PICKADD", Short, Profile, rw, "2", between(0, 2),
     "What a new pick does to the selection: 0 takes its place unless Shift is held, 1 adds to it, 2 adds to it and "
     "keeps it after SELECT."},
    {"PICKAUTO", Short, Profile, rw, "5", bits(7),
     "Windows that a pick on nothing starts, as a sum: 1 at the prompt, 2 also on an object when dragged, 4 before a "
     "command."},
    {"PICKBOX", Short, Profile, rw, "3", between(0, 50), "Half the size of the box that picks objects, in pixels."},
    {"PICKDRAG", Short, Profile, rw, "2", between(0, 2),
     "How a window is drawn: 0 with two clicks, 1 by dragging, 2 either way."},
    {"PICKFIRST", Short, Profile, rw, "1", kFlag,
     "Whether objects may be selected before the command that works on them. 0 no, 1 yes."},
    {"PICKSTYLE", Short, Profile, rw, "1", between(0, 3),
     "What one pick takes with it: 0 the object alone, 1 its group, 2 the boundary of a hatch, 3 both."},
    {"POLARADDANG", String, Profile, rw, "", kAny, "Further polar angles in degrees, up to ten, parted by semicolons."},
    {"POLARANG", Real, Profile, rw, "1.5707963267948966", kPositive,
     "The step from one polar angle to the next, in radians."},
    {"POLARDIST", Real, Profile, rw, "0", atLeast(0),
     "The step along polar angles when SNAPTYPE is 1. 0 takes the X distance of the snap."},
    {"POLARMODE", Short, Profile, rw, "0", bits(15),
     "How polar angles are used, as a sum: 1 measured from the last segment, 2 also for object snap tracking, 4 also "
     "the additional ones, 8 tracking points are taken with Shift."},
    {"PREVIEWEFFECT", Short, Profile, rw, "2", between(0, 2),
     "How an object under the pointer is marked: 0 dashed, 1 thick, 2 dashed and thick."},
    {"PREVIEWFILTER", Short, Profile, rw, "7", bits(127),
     "What is not marked under the pointer, as a sum: 1 objects on locked layers, 2 references, 4 tables, 8 paragraph "
     "texts, 16 hatches, 32 groups, 64 dimensions."},
    {"QPLOCATION", Short, Profile, rw, "0", kFlag,
     "Where the short list of properties opens: 0 beside the pointer, 1 where it was put."},
    {"QPMODE", Short, Profile, rw, "0", between(-2, 2),
     "When the short list of properties opens: 0 never, 1 for everything selected, 2 for kinds that are set up; a "
     "negative value is switched off."},
    {"SELECTIONAREA", Short, Profile, rw, "1", kFlag, "Fills the area of selection windows. 0 off, 1 on."},
    {"SELECTIONAREAOPACITY", Short, Profile, rw, "25", between(0, 100),
     "How dense the fill of selection windows is, from 0 for clear to 100 for solid."},
    {"SELECTIONCYCLING", Short, Profile, rw, "0", between(-2, 2),
     "What happens at a pick where several objects lie: 0 nothing, 1 a sign is shown, 2 a sign and a list; a negative "
     "value is switched off."},
    {"SELECTIONEFFECT", Short, Profile, rw, "1", kFlag, "How selected objects are marked: 0 dashed, 1 with a glow."},
    {"SELECTIONEFFECTCOLOR", Short, Profile, rw, "0", between(0, 255),
     "Colour by number of the glow around selected objects. 0 takes the usual one."},
    {"SELECTIONPREVIEW", Short, Profile, rw, "3", bits(3),
     "When an object under the pointer is marked, as a sum: 1 while no command is active, 2 while objects are asked "
     "for."},
    {"SELECTIONPREVIEWLIMIT", Short, Profile, rw, "2000", between(0, kAllShorts),
     "How many objects a window may mark in advance."},
    {"SELECTSIMILARMODE", Short, Profile, rw, "130", bits(255),
     "What makes objects similar, as a sum: 1 colour, 2 layer, 4 linetype, 8 linetype scale, 16 lineweight, 32 plot "
     "style, 64 object style, 128 name."},
    {"SUBOBJSELECTIONMODE", Short, NotSaved, rw, "0", between(0, 5),
     "What the Ctrl key picks from a solid: 0 anything, 1 vertices, 2 edges, 3 faces, 4 the history of its making, 5 "
     "parts of drawing views."},
    {"TEMPOVERRIDES", Short, Profile, rw, "1", kFlag, "Whether keys can switch drafting aids while held. 0 no, 1 yes."},
    {"TRACKPATH", Short, Profile, rw, "0", between(0, 3),
     "How tracking lines are drawn: 0 across the screen, 1 object tracking only between the points, 2 without polar "
     "lines, 3 short ones alone."},
    {"WINDOWAREACOLOR", Short, Profile, rw, "150", between(1, 255),
     "Colour by number of the area of a selection window."},
};

std::span<const SysVarDef> selectionSysVars() { return kRows; }

}  // namespace vk::edit
