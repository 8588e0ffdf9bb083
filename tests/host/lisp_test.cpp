// The Lisp without a drawing: what expressions print as, how mistakes read, and what hostile input does.

#include "host/lisp/interpreter.h"
#include "host/lisp/printer.h"
#include "host/lisp/reader.h"

#include <gtest/gtest.h>

#include <random>

namespace vk::lisp {
namespace {

std::string answer(Interpreter& lisp, std::string_view text)
{
    const Outcome outcome = lisp.evaluate(text);
    return outcome.status == Outcome::done ? print(outcome.value) : "error: " + outcome.message;
}

struct Example {
    const char* text;
    const char* printed;
};

class Examples : public testing::TestWithParam<Example> {};

TEST_P(Examples, PrintAsExpected)
{
    Interpreter lisp;
    EXPECT_EQ(answer(lisp, GetParam().text), GetParam().printed) << GetParam().text;
}

#define EXAMPLES(name, ...)                                                                                            \
    const Example k##name[] = {__VA_ARGS__};                                                                           \
    INSTANTIATE_TEST_SUITE_P(name, Examples, testing::ValuesIn(k##name))

EXAMPLES(Reading, {"", "nil"}, {"nil", "nil"}, {"()", "nil"}, {"T", "T"}, {"'foo", "FOO"}, {"42", "42"}, {"-7", "-7"},
         {"+7", "7"}, {"1.0", "1.0"}, {"1.", "1.0"}, {"-.5", "-0.5"}, {"1e3", "1000.0"}, {"2147483647", "2147483647"},
         {"2147483648", "2.14748e+09"}, {"-2147483648", "-2147483648"}, {"'1+", "1+"}, {"'-", "-"}, {"'inf", "INF"},
         {"'(a . b)", "(A . B)"}, {"'(a b . c)", "(A B . C)"}, {"'(a . (b c))", "(A B C)"}, {"'(a . nil)", "(A)"},
         {"'(1 .5)", "(1 0.5)"}, {"''a", "(QUOTE A)"}, {"'(a 'b)", "(A (QUOTE B))"}, {"'(a . 'b)", "(A QUOTE B)"},
         {"; nothing\n1 ; one", "1"}, {";| a ( b |; 2", "2"}, {"'(1;|x|;2)", "(1 2)"}, {"1 2 3", "3"},
         {R"("a\tb\n\"c\"\\")", R"("a\tb\n\"c\"\\")"}, {R"("\101\e")", R"("A\e")"}, {R"("\U+00e9")", "\"\u00e9\""},
         {R"("\U+12")", R"("\\U+12")"}, {R"("\q")", R"("q")"}, {R"("\001")", R"("\001")"},
         {"\"two\nlines\"", R"("two\nlines")"}, {"'\u00e9t\u00e9", "\u00c9T\u00c9"});

EXAMPLES(MalformedText, {"(", "error: malformed list on input"}, {"(1 (2)", "error: malformed list on input"},
         {")", "error: extra right paren on input"}, {"\"abc", "error: malformed string on input"},
         {"\"abc\\", "error: malformed string on input"}, {"'( . a)", "error: misplaced dot on input"},
         {".", "error: misplaced dot on input"}, {"'(a . b c)", "error: extra cdrs in dotted pair on input"},
         {"'(a . )", "error: malformed list on input"}, {"'(a . b . c)", "error: misplaced dot on input"},
         {"(')", "error: malformed list on input"}, {"'", "error: malformed list on input"},
         {";| never closed", "error: malformed comment on input"});

EXAMPLES(Numbers, {"(+)", "0"}, {"(+ 1 2 3)", "6"}, {"(+ 1 2.0)", "3.0"}, {"(- 5)", "-5"}, {"(- 5 2 1)", "2"},
         {"(*)", "0"}, {"(* 2 3.5)", "7.0"}, {"(/ 7 2)", "3"}, {"(/ -7 2)", "-3"}, {"(/ 7 2.0)", "3.5"},
         {"(/ 100 5 4)", "5"}, {"(+ 2147483647 1)", "2.14748e+09"}, {"(* 65536 65536)", "4.29497e+09"},
         {"(1+ 2147483647)", "2.14748e+09"}, {"(abs -2147483648)", "2.14748e+09"}, {"(- -2147483648)", "2.14748e+09"},
         {"(/ -2147483648 -1)", "2.14748e+09"}, {"(1- 3)", "2"}, {"(rem 42 12)", "6"}, {"(rem -5 3)", "-2"},
         {"(rem 5.5 2)", "1.5"}, {"(gcd 81 57)", "3"}, {"(gcd -2147483648 0)", "2.14748e+09"}, {"(max 1 2.5)", "2.5"},
         {"(max 3 2.5)", "3.0"}, {"(min 4 2 8)", "2"}, {"(fix 3.7)", "3"}, {"(fix -3.7)", "-3"},
         {"(fix 1e10)", "1.0e+10"}, {"(float 3)", "3.0"}, {"(sqrt 4)", "2.0"}, {"(expt 2 10)", "1024"},
         {"(expt 2 -1)", "0.5"}, {"(expt 2.0 3)", "8.0"}, {"(exp 0)", "1.0"}, {"(log 1)", "0.0"}, {"(sin 0)", "0.0"},
         {"(cos 0)", "1.0"}, {"(atan 1 -1)", "2.35619"}, {"(atan 1)", "0.785398"}, {"pi", "3.14159"},
         {"(logand 7 12)", "4"}, {"(logior 1 6)", "7"}, {"(lsh 1 4)", "16"}, {"(lsh -1 -31)", "1"}, {"(lsh 1 99)", "0"},
         {"(~ 3)", "-4"}, {"(boole 6 12 5)", "9"}, {"(boole 1 12 5)", "4"}, {"(boole 8 3 5)", "-8"},
         {"(minusp -1)", "T"}, {"(zerop 0.0)", "T"}, {"(numberp \"1\")", "nil"}, {"1234567.0", "1.23457e+06"},
         {"100000.0", "100000.0"}, {"1.5e-7", "1.5e-07"}, {"0.1", "0.1"}, {"1e20", "1.0e+20"},
         {"(/ 1 0)", "error: divide by zero"}, {"(rem 1 0.0)", "error: divide by zero"},
         {"(+ 1 nil)", "error: bad argument type: numberp: nil"},
         {"(+ \"1\")", "error: bad argument type: numberp: \"1\""},
         {"(logand 1.5)", "error: bad argument type: fixnump: 1.5"},
         {"(sqrt -1)", "error: function undefined for argument: -1"},
         {"(log 0)", "error: function undefined for argument: 0"}, {"(expt 0 -1)", "error: divide by zero"});

EXAMPLES(Comparing, {"(= 1 1.0 1)", "T"}, {"(= \"a\" \"a\")", "T"}, {"(= 1 \"1\")", "nil"}, {"(/= 1 2 1)", "T"},
         {"(/= 1 1)", "nil"}, {"(< 1 2 3)", "T"}, {"(< 1 3 2)", "nil"}, {"(< \"a\" \"b\")", "T"}, {"(>= 3 3 2)", "T"},
         {"(<= 1 1.0)", "T"}, {"(> 1 nil)", "error: bad argument type: comparable: nil"}, {"(eq 'a 'A)", "T"},
         {"(eq '(1) '(1))", "nil"}, {"(equal '(1 (2.0)) '(1.0 (2)))", "T"}, {"(equal 1.0 1.05 0.1)", "T"},
         {"(equal '(1 2) '(1 2.2) 0.1)", "nil"}, {"(equal '(a . b) '(a b))", "nil"}, {"(null nil)", "T"},
         {"(not 0)", "nil"});

EXAMPLES(Lists, {"(cons 1 2)", "(1 . 2)"}, {"(cons 1 '(2))", "(1 2)"}, {"(list 1 \"a\" nil)", "(1 \"a\" nil)"},
         {"(car nil)", "nil"}, {"(cadr '(1 2 3))", "2"}, {"(cddddr '(1 2 3 4 5))", "(5)"},
         {"(caadar '((a (b c))))", "B"}, {"(car 5)", "error: bad argument type: listp: 5"},
         {"(append '(1) nil '(2 3))", "(1 2 3)"}, {"(append)", "nil"},
         {"(append '(1 . 2) '(3))", "error: bad argument type: listp: 2"}, {"(reverse '(1 2 3))", "(3 2 1)"},
         {"(last '(1 2 3))", "3"}, {"(length '(1 2 3))", "3"}, {"(nth 1 '(a b c))", "B"}, {"(nth 9 '(a))", "nil"},
         {"(assoc 2 '((1 . a) (2 . b)))", "(2 . B)"}, {"(assoc \"k\" '((\"k\" 1)))", "(\"k\" 1)"},
         {"(assoc 9 nil)", "nil"}, {"(assoc 1 '(1 2))", "error: bad association list: (1 2)"},
         {"(member '(2) '((1) (2) 3))", "((2) 3)"}, {"(subst 'x 'b '(a b c b))", "(A X C X)"},
         {"(vl-position 'c '(a b c))", "2"}, {"(vl-remove 1 '(1 2 1))", "(2)"}, {"(atom '(1))", "nil"},
         {"(atom nil)", "T"}, {"(listp nil)", "T"}, {"(vl-list* 1 2 '(3))", "(1 2 3)"},
         {"(vl-list->string '(72 105))", "\"Hi\""});

EXAMPLES(Texts, {"(strcat \"a\" \"\" \"b\")", "\"ab\""}, {"(strcat 1)", "error: bad argument type: stringp: 1"},
         {"(strlen \"\u00e9t\u00e9\")", "3"}, {"(strlen)", "0"}, {"(substr \"abcde\" 2 3)", "\"bcd\""},
         {"(substr \"\u00e9t\u00e9\" 2)", "\"t\u00e9\""}, {"(substr \"ab\" 9)", "\"\""},
         {"(substr \"ab\" 1 99)", "\"ab\""}, {"(substr \"ab\" 0)", "error: bad argument value: positive: 0"},
         {"(substr \"ab\" -1)", "error: bad argument value: non-negative: -1"},
         {"(strcase \"\u00e9a\")", "\"\u00c9A\""}, {"(strcase \"AB\" T)", "\"ab\""}, {"(ascii \"A\")", "65"},
         {"(chr 65)", "\"A\""}, {"(chr 8364)", "\"\u20ac\""}, {"(atoi \" 12abc\")", "12"}, {"(atoi \"x\")", "0"},
         {"(atoi \"99999999999\")", "2147483647"}, {"(atof \"1.5x\")", "1.5"}, {"(atof \"inf\")", "0.0"},
         {"(itoa -3)", "\"-3\""}, {"(read \"(a \\\"b\\\")\")", "(A \"b\")"}, {"(read \"\")", "nil"},
         {"(vl-string-search \"t\" \"\u00e9t\u00e9\")", "1"}, {"(vl-string-search \"z\" \"abc\")", "nil"},
         {"(vl-string-search \"a\" \"aba\" 1)", "2"}, {"(vl-string-trim \" -\" \"- a b -\")", "\"a b\""},
         {"(vl-string-left-trim \"0\" \"0070\")", "\"70\""}, {"(vl-string-right-trim \"0\" \"0070\")", "\"007\""},
         {"(vl-string-trim \"a\" \"aaa\")", "\"\""}, {"(vl-string-translate \"abc\" \"AB\" \"cab\")", "\"cAB\""},
         {"(vl-string-subst \"X\" \"b\" \"abab\")", "\"aXab\""}, {"(vl-string-position 97 \"aba\" 0 T)", "2"},
         {"(vl-string->list \"AB\")", "(65 66)"}, {"(vl-princ-to-string '(\"a\" 1.0))", "\"(a 1.0)\""},
         {"(vl-prin1-to-string '(\"a\"))", R"x("(\"a\")")x"}, {"(vl-symbol-name 'abc)", "\"ABC\""});

EXAMPLES(Control, {"(if nil 1)", "nil"}, {"(if 0 1 2)", "1"}, {"(cond (nil 1) ((= 1 1) 2 3))", "3"},
         {"(cond (5))", "5"}, {"(cond)", "nil"}, {"(and 1 nil x)", "nil"}, {"(and)", "T"}, {"(or nil 2)", "T"},
         {"(or)", "nil"}, {"(progn 1 2)", "2"}, {"(setq a 1 b (+ a 1))", "2"}, {"(set 'z 4) z", "4"},
         {"(setq i 0) (while (< i 5) (setq i (1+ i)))", "5"}, {"(setq n 1) (repeat 10 (setq n (* n 2)))", "1024"},
         {"(setq x 9) (foreach x '(1 2) (setq y x)) (list x y)", "(9 2)"},
         {"(setq T 1)", "error: bad variable name: T"}, {"(setq a)", "error: too few arguments"},
         {"(setq 5 1)", "error: bad variable name: 5"}, {"undefined-thing", "nil"}, {"(boundp 'q)", "nil"},
         {"(type 1.5)", "REAL"}, {"(type 'a)", "SYM"}, {"(type nil)", "nil"}, {"(type car)", "SUBR"},
         {"(type '(1))", "LIST"});

EXAMPLES(Functions, {"(defun f (a b) (+ a b)) (f 1 2)", "3"}, {"(defun f (/ a) (setq a 5)) (f) a", "nil"},
         {"(defun f () 1)", "F"}, {"(setq a 1) (defun f (a / b) (g)) (defun g () (list a b)) (f 7)", "(7 nil)"},
         {"(defun f (a) a) (f)", "error: too few arguments: F"},
         {"(defun f () 1) (f 2)", "error: too many arguments: F"}, {"(car)", "error: too few arguments: CAR"},
         {"(car nil nil)", "error: too many arguments: CAR"}, {"(nothing 1)", "error: no function definition: NOTHING"},
         {"(1 2)", "error: bad function: 1"}, {"(\"a\")", "error: bad function: \"a\""},
         {"((lambda (x) (* x x)) 4)", "16"}, {"(mapcar '+ '(1 2) '(10 20 30))", "(11 22)"},
         {"(mapcar '(lambda (x) (1+ x)) '(1 2))", "(2 3)"}, {"(mapcar (function (lambda (x) x)) '(1))", "(1)"},
         {"(apply '+ '(1 2 3))", "6"}, {"(apply 'and '(1 a))", "T"}, {"(eval '(+ 1 2))", "3"},
         {"(eval (list 'quote 'a))", "A"}, {"(defun f (n) (if (< n 2) 1 (* n (f (1- n))))) (f 10)", "3628800"},
         {"(type f)", "nil"}, {"(defun f () (defun f () 2) 1) (list (f) (f))", "(1 2)"},
         {"(defun f (1) 1)", "error: bad formal argument list: (1)"},
         {"(defun-q f (x) (list x)) (list (f 1) (car f))", "((1) (X))"},
         {"(defun f (t) 1)", "error: bad formal argument list: (T)"}, {"(vl-sort '(3 1 2 1) '<)", "(1 1 2 3)"},
         {"(length (vl-sort '(3 1 2) '(lambda (a b) T)))", "3"}, {"(vl-sort-i '(\"b\" \"a\") '<)", "(1 0)"},
         {"(vl-remove-if 'minusp '(1 -1 2))", "(1 2)"}, {"(vl-remove-if-not 'minusp '(1 -1 2))", "(-1)"},
         {"(vl-member-if 'zerop '(1 0 2))", "(0 2)"}, {"(vl-some '> '(1 5) '(3 4))", "T"},
         {"(vl-every '< '(1 2) '(3 4))", "T"}, {"(vl-every '< '(1 9) '(3 4))", "nil"},
         {"(vl-catch-all-error-message (vl-catch-all-apply 'car '(5)))", "\"bad argument type: listp: 5\""},
         {"(vl-catch-all-error-p (vl-catch-all-apply '+ '(1 2)))", "nil"},
         {"(setq x 1) (defun f (x) (car x)) (vl-catch-all-apply 'f '(5)) x", "1"},
         {"(exit)", "error: quit / exit abort"});

EXAMPLES(Geometry, {"(distance '(0 0) '(3 4))", "5.0"}, {"(distance '(0 0 0) '(2 3 6))", "7.0"},
         {"(distance '(0 0) '(3 4 9))", "5.0"}, {"(angle '(0 0) '(0 -1))", "4.71239"},
         {"(polar '(1 1) 0 2)", "(3.0 1.0)"}, {"(polar '(1 1 5) 0.0 2)", "(3.0 1.0 5.0)"},
         {"(inters '(0 0) '(4 4) '(0 4) '(4 0))", "(2.0 2.0)"}, {"(inters '(0 0) '(1 1) '(0 4) '(4 0))", "nil"},
         {"(inters '(0 0) '(1 1) '(0 4) '(4 0) nil)", "(2.0 2.0)"}, {"(inters '(0 0) '(1 0) '(0 1) '(1 1) nil)", "nil"},
         {"(inters '(0 0 0) '(4 4 0) '(0 4 1) '(4 0 1))", "nil"},
         {"(inters '(0 0 2) '(4 4 2) '(0 4 2) '(4 0 2))", "(2.0 2.0 2.0)"},
         {"(distance '(0 a) '(1 1))", "error: bad argument type: 2D/3D point: (0 A)"});

struct Written {
    std::string text;
    Surroundings surroundings()
    {
        Surroundings around;
        around.write = [this](std::string_view part) { text += part; };
        return around;
    }
};

TEST(LispOutput, ShowsAsAsked)
{
    Written shown;
    Interpreter lisp(shown.surroundings());
    lisp.evaluate(R"((princ "a\"b") (prin1 "a\"b") (print '("c" 1.0)) (prompt "d") (terpri) (princ '("e")))");
    EXPECT_EQ(shown.text, "a\"b\"a\\\"b\"\n(\"c\" 1.0) d\n(e)");
    EXPECT_EQ(print(lisp.evaluate("(princ)").value), "");
}

TEST(LispErrors, HandlerSeesTheLocalsOfWhatFailed)
{
    Written shown;
    Interpreter lisp(shown.surroundings());
    const Outcome outcome = lisp.evaluate("(defun work (/ *error* old) (setq old 7)"
                                          " (defun *error* (message) (princ message) (princ old)) (car 1)) (work)");
    EXPECT_EQ(shown.text, "bad argument type: listp: 17");
    EXPECT_TRUE(outcome.isHandled);
    EXPECT_EQ(outcome.status, Outcome::failed);
    EXPECT_EQ(answer(lisp, "(list old *error*)"), "(nil nil)");
}

TEST(LispErrors, FailureInTheHandlerIsTold)
{
    Interpreter lisp;
    EXPECT_EQ(answer(lisp, "(defun *error* (m) (car 2)) (car 1)"),
              "error: bad argument type: listp: 1 (and in *error*: bad argument type: listp: 2)");
}

TEST(LispErrors, InnerEvaluationLeavesTheHandlerAlone)
{
    Written shown;
    Interpreter lisp(shown.surroundings());
    lisp.define("ASK", [](Interpreter& inner, Args) {
        EXPECT_EQ(inner.evaluate("(car 1)").status, Outcome::failed);
        return Value::integer(3);
    });
    EXPECT_EQ(answer(lisp, "(defun *error* (m) (princ m)) (ask)"), "3");
    EXPECT_EQ(shown.text, "");
}

TEST(LispErrors, FunctionsOfTheHostFailAsErrors)
{
    Interpreter lisp;
    lisp.define("BREAK", [](Interpreter&, Args) -> Value { throw std::runtime_error("broken"); });
    EXPECT_EQ(answer(lisp, "(break)"), "error: broken");
}

TEST(LispInterruption, EndsLoopsThatCatchEverything)
{
    Surroundings around;
    int looks = 0;
    around.isInterrupted = [&] { return ++looks > 3; };
    Interpreter lisp(around);
    EXPECT_EQ(lisp.evaluate("(while T (vl-catch-all-apply '(lambda () (while T))))").status, Outcome::cancelled);
}

TEST(LispPrograms, LoadAlongThePath)
{
    Surroundings around;
    around.readProgram = [](const std::string& name) -> std::optional<std::string> {
        if (name == "tool")
            return "(setq loaded 5) 'tool";
        if (name == "self")
            return "(load \"self\")";
        return std::nullopt;
    };
    Interpreter lisp(around);
    EXPECT_EQ(answer(lisp, "(load \"tool\")"), "TOOL");
    EXPECT_EQ(answer(lisp, "loaded"), "5");
    EXPECT_EQ(answer(lisp, "(load \"none\")"), "error: LOAD failed: \"none\"");
    EXPECT_EQ(answer(lisp, "(load \"none\" 'missing)"), "MISSING");
    EXPECT_EQ(answer(lisp, "(load \"self\")"), "error: too deep recursion");
}

TEST(LispFunctions, CallByNameAndListing)
{
    Interpreter lisp;
    lisp.evaluate("(defun c:spread () 5) (defun C:ALIGN () 6) (setq c:value 3)");
    EXPECT_EQ(lisp.functionNames("c:"), (std::vector<std::string>{"C:ALIGN", "C:SPREAD"}));
    EXPECT_TRUE(lisp.hasFunction("C:Spread"));
    EXPECT_FALSE(lisp.hasFunction("c:value"));
    EXPECT_EQ(print(lisp.callByName("c:align", {}).value), "6");
    EXPECT_EQ(lisp.callByName("c:none", {}).message, "no function definition: C:NONE");
}

TEST(LispScanner, KnowsWhenALineIsWhole)
{
    const Example cases[] = {
        {"(car", "open"},     {"(car)", "whole"}, {"(\")\"", "open"},     {"\"a\\\"", "open"}, {"(a) ; (", "whole"},
        {"(a ; )\n", "open"}, {";| (\n", "open"}, {";| |; (a)", "whole"}, {"(a))", "whole"},   {";|x||;", "whole"},
    };
    for (const Example& example : cases) {
        ExpressionScanner scanner;
        scanner.feed(example.text);
        EXPECT_EQ(scanner.isComplete() ? "whole" : "open", std::string(example.printed)) << example.text;
    }
}

TEST(LispLimits, RecursionEndsWithAnError)
{
    Interpreter lisp;
    EXPECT_EQ(answer(lisp, "(defun f (n) (+ 1 (f n))) (f 1)"), "error: too deep recursion");
    EXPECT_EQ(answer(lisp, "(defun g (l) (mapcar 'g (list l))) (g 1)"), "error: too deep recursion");
    EXPECT_EQ(answer(lisp, "(defun h (n) (if (= n 0) 0 (1+ (h (1- n))))) (h 1000)"), "1000");
}

std::string times(std::size_t count, const std::string& part)
{
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += part;
    return all;
}

TEST(LispLimits, DeepTextsAreReadPrintedComparedAndDropped)
{
    constexpr std::size_t kDeep = 1 << 20;
    Interpreter lisp;
    const std::string deep = times(kDeep, "(") + times(kDeep, ")");
    EXPECT_EQ(answer(lisp, times(kDeep, "(")), "error: malformed list on input");
    EXPECT_EQ(answer(lisp, times(kDeep, "'")), "error: malformed list on input");
    EXPECT_EQ(answer(lisp, "(setq a '" + deep + " b '" + deep + ") (equal a b)"), "T");
    EXPECT_EQ(answer(lisp, "a").size(), 2 * (kDeep - 1) + 3);
    EXPECT_EQ(answer(lisp, "(setq a nil b nil)"), "nil");
    EXPECT_EQ(answer(lisp, times(kDeep, "(car ")), "error: malformed list on input");
    EXPECT_EQ(answer(lisp, times(kDeep, "(car ") + times(kDeep, ")")), "error: too deep recursion");
}

TEST(LispLimits, LongListsAndTexts)
{
    Interpreter lisp;
    EXPECT_EQ(answer(lisp, "(setq l nil) (repeat 300000 (setq l (cons 1 l))) (apply '+ (mapcar '1+ l))"), "600000");
    EXPECT_EQ(answer(lisp, "(setq s \"ab\") (repeat 20 (setq s (strcat s s))) (strlen s)"), "2097152");
}

TEST(LispLimits, RunawaysEndWithAnError)
{
    Interpreter lisp;
    EXPECT_EQ(answer(lisp, "(setq s \"ab\") (while T (setq s (strcat s s)))"), "error: string too long");
    EXPECT_EQ(answer(lisp, "(setq l nil) (while T (setq l (cons (substr s 2) l)))"), "error: out of memory");
    EXPECT_EQ(answer(lisp, "(setq s nil x '(1)) (repeat 64 (setq x (cons x x))) (vl-prin1-to-string x)"),
              "error: too long to print");
}

TEST(LispRobustness, RandomTokensNeverCrash)
{
    const char* const kTokens[] = {"(",       "(",      "(",      ")",      ")",       ")",       "'",      ".",
                                   "\"",      "\\",     ";|",     "1",      "-2.5",    "nil",     "T",      "a",
                                   "car",     "cons",   "setq",   "lambda", "defun",   "foreach", "mapcar", "apply",
                                   "eval",    "list",   "'(1 2)", "\"s\"",  "/",       "quote",   "cond",   "if",
                                   "vl-sort", "strcat", "substr", "read",   "*error*", "append",  "assoc",  "subst",
                                   "\xff",    "\u20ac", "nth",    "repeat", "\n"};
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        Surroundings around;
        int looks = 0;
        around.isInterrupted = [&] { return ++looks > 20; };
        Interpreter lisp(around);
        std::string text;
        for (std::size_t length = random() % 40; length > 0; --length)
            text += std::string(kTokens[random() % std::size(kTokens)]) + " ";
        const Outcome outcome = lisp.evaluate(text);
        EXPECT_EQ(outcome.message.empty(), outcome.status == Outcome::done) << text;
        print(outcome.value);
    }
}

}  // namespace
}  // namespace vk::lisp
