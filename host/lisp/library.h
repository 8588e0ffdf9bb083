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

}  // namespace vk::lisp
