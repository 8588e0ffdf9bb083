// The function tables, one for each kind of work.
#pragma once

namespace vk::lisp {

class Interpreter;

void defineForms(Interpreter& lisp);
void defineNumbers(Interpreter& lisp);
void defineComparisons(Interpreter& lisp);
void defineLists(Interpreter& lisp);
void defineMapping(Interpreter& lisp);
void defineTexts(Interpreter& lisp);
void defineSymbols(Interpreter& lisp);
void defineOutput(Interpreter& lisp);
void defineGeometry(Interpreter& lisp);

// All of the above: what needs no drawing.
void defineLanguage(Interpreter& lisp);

void defineEntities(Interpreter& lisp);
void defineSelections(Interpreter& lisp);
void defineQuestions(Interpreter& lisp);
void defineTables(Interpreter& lisp);
void defineEditor(Interpreter& lisp);
void defineUnits(Interpreter& lisp);
void defineProfile(Interpreter& lisp);
void defineFiles(Interpreter& lisp);
void defineCurves(Interpreter& lisp);
void defineViews(Interpreter& lisp);
void defineNames(Interpreter& lisp);
void defineRegistry(Interpreter& lisp);

// All that works on the current drawing through the editor.
void defineDrawing(Interpreter& lisp);

}  // namespace vk::lisp
