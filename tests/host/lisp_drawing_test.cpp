// The Lisp on a drawing: each case is a program in a new drawing, what is typed for its questions, and what it gives.

#include "host/base/settings.h"
#include "host/edit/command.h"
#include "host/edit/editor.h"
#include "host/edit/host_application.h"
#include "host/edit/selection_set.h"
#include "host/lisp/evaluator.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace vk::lisp {
namespace {

using edit::Editor;
using Result = edit::LispEvaluator::Result;

// A folder of its own that goes away with the test.
class Folder {
public:
    Folder()
    {
        std::string name = std::filesystem::temp_directory_path() / "lisp-XXXXXX";
        m_path = mkdtemp(name.data());
    }
    ~Folder() { std::filesystem::remove_all(m_path); }
    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

// The host as a program starts it, with settings that no person sees.
void startHostOnce()
{
    static const Folder settings;
    static const bool isStarted = [] {
        setSettingsFolder(settings.path().string());
        edit::startHostApplication();
        return true;
    }();
    ASSERT_TRUE(isStarted);
}

class LispDrawing : public testing::Test {
protected:
    LispDrawing()
    {
        startHostOnce();
        m_editor.openDrawing(std::make_unique<VcDbDatabase>());
        auto lisp = std::make_unique<EditorLisp>(m_editor);
        m_lisp = lisp.get();
        m_editor.setLisp(std::move(lisp));
    }

    ~LispDrawing() override
    {
        m_editor.setLisp(nullptr);
        m_editor.closeDrawing();
    }

    Result evaluate(std::string_view program, const char* typed = nullptr)
    {
        if (typed)
            m_editor.pushSource(std::make_unique<edit::ScriptSource>("typed", typed));
        return m_lisp->evaluate(program);
    }

    std::string answer(std::string_view program, const char* typed = nullptr)
    {
        const Result result = evaluate(program, typed);
        switch (result.status) {
        case Result::Done:
            return result.printed;
        case Result::Cancelled:
            return "cancelled";
        case Result::Failed:
            break;
        }
        return "error: " + result.message;
    }

    Editor& m_editor = Editor::instance();
    EditorLisp* m_lisp = nullptr;
};

struct Case {
    const char* program;
    const char* printed;
    const char* typed = nullptr;
};

class LispDrawingCases : public LispDrawing, public testing::WithParamInterface<Case> {};

TEST_P(LispDrawingCases, GiveWhatIsExpected)
{
    const char* const kSetup = "(defun line (layer x) (entmakex (list '(0 . \"LINE\") (cons 8 layer) (list 10 x 0.0 "
                               "0.0) (list 11 x 5.0 0.0))))"
                               "(defun group (code entity) (cdr (assoc code (entget entity))))";
    evaluate(kSetup);
    EXPECT_EQ(answer(GetParam().program, GetParam().typed), GetParam().printed) << GetParam().program;
}

#define CASES(name, ...)                                                                                               \
    const Case k##name[] = {__VA_ARGS__};                                                                              \
    INSTANTIATE_TEST_SUITE_P(name, LispDrawingCases, testing::ValuesIn(k##name))

CASES(Entities, {"(entlast)", "nil"},
      // Properties of every entity count wherever they stand, but what stands in its place counts first.
      {"(setq e (line \"0\" 0)) (entmod (append (entget e) '((62 . 1) (48 . 2.0)))) (list (group 62 e) (group 48 e))",
       "(1 2.0)"},
      {"(setq e (line \"0\" 0)) (entmod (append (entget e) '((62 . 1)))) (entmod (append (entget e) '((62 . 3)))) "
       "(group 62 e)",
       "1"},
      {"(entmake '((0 . \"LINE\") (100 . \"AcDbEntity\") (100 . \"AcDbLine\") (10 0 0 0) (11 9 0 0) (62 . 3)))"
       "(list (group 8 (entlast)) (group 62 (entlast)))",
       "(\"0\" 3)"},
      {"(entmake '((0 . \"LINE\") (10 1 2) (11 3 4 5)))", "((0 . \"LINE\") (10 1 2) (11 3 4 5))"},
      {"(line \"0\" 1.0) (assoc 10 (entget (entlast)))", "(10 1.0 0.0 0.0)"},
      {"(setq e (line \"0\" 1.0)) (list (car (car (entget e))) (eq e (cdr (assoc -1 (entget e)))))", "(-1 T)"},
      {"(setq e (line \"0\" 1.0)) (eq e (handent (group 5 e)))", "T"}, {"(handent \"FFFFFF\")", "nil"},
      {"(setq e (line \"0\" 1.0)) (entmod (subst '(10 9.0 8.0 7.0) (assoc 10 (entget e)) (entget e))) (group 10 e)",
       "(9.0 8.0 7.0)"},
      {"(setq e (line \"0\" 1.0)) (entdel e) (list (entget e) (entlast) (eq (entdel e) e) (group 0 e))",
       "(nil nil T \"LINE\")"},
      {"(setq a (line \"0\" 1.0) b (line \"0\" 2.0)) (list (eq (entnext) a) (eq (entnext a) b) (entnext b))",
       "(T T nil)"},
      {"(entmake '((0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbPolyline\") (90 . 2) (70 . 0) (10 1 2) (10 "
       "3 4)))"
       "(assoc 10 (entget (entlast)))",
       "(10 1.0 2.0)"},
      {"(entmake '((0 . \"NOSUCHTHING\")))", "nil"}, {"(entmake '((10 . 5)))", "error: bad DXF group: (10 . 5)"},
      {"(entget 5)", "error: bad argument type: lentityp: 5"},
      {"(regapp \"TOOLS\") (setq e (line \"0\" 1.0))"
       "(entmod (append (entget e) '((-3 (\"TOOLS\" (1000 . \"a\") (1070 . 7))))))"
       "(list (assoc -3 (entget e)) (assoc -3 (entget e '(\"TOOLS\"))))",
       "(nil (-3 (\"TOOLS\" (1000 . \"a\") (1070 . 7))))"});

CASES(Measures, {"(cvunit 1 \"inch\" \"cm\")", "2.54"}, {"(cvunit 1.0 \"Mile\" \"feet\")", "5280.0"},
      {"(cvunit '(0 100.0) \"celsius\" \"fahrenheit\")", "(32.0 212.0)"},
      {"(cvunit 1 \"sq ft\" \"square_inches\")", "144.0"}, {"(cvunit 1 \"cubic meter\" \"liters\")", "1000.0"},
      {"(cvunit 36 \"km/hour\" \"meter/second\")", "10.0"}, {"(cvunit 1 \"m^2\" \"cm^2\")", "10000.0"},
      {"(cvunit 180 \"degrees\" \"radian\")", "3.14159"}, {"(cvunit 1 \"kilogram\" \"kg\")", "1.0"},
      {"(cvunit 1 \"inch\" \"second\")", "nil"}, {"(cvunit 1 \"cubit\" \"cm\")", "nil"},
      {"(cvunit \"1\" \"inch\" \"cm\")", "error: bad argument type: numberp: \"1\""});

CASES(Curves,
      {"(setq e (line \"0\" 3.0)) (list (vlax-curve-getEndParam e) (vlax-curve-getPointAtDist e 2.0) "
       "(vlax-curve-getStartPoint e))",
       "(1.0 (3.0 2.0 0.0) (3.0 0.0 0.0))"},
      {"(setq e (line \"0\" 3.0)) (list (vlax-curve-getClosestPointTo e '(9 2 0)) (vlax-curve-getClosestPointTo e '(9 "
       "7 0))"
       " (vlax-curve-getClosestPointTo e '(9 7 0) t))",
       "((3.0 2.0 0.0) (3.0 5.0 0.0) (3.0 7.0 0.0))"},
      {"(entmake '((0 . \"CIRCLE\") (10 0 0 0) (40 . 2.0))) (list (vlax-curve-isClosed (entlast)) (rtos "
       "(vlax-curve-getArea (entlast)) 2 4))",
       "(T \"12.5664\")"},
      {"(setq e (line \"0\" 3.0)) (vlax-curve-getParamAtPoint e '(0 0 9))", "nil"},
      {"(entmake '((0 . \"TEXT\") (10 0 0 0) (40 . 1.0) (1 . \"a\"))) (vl-catch-all-error-p (vl-catch-all-apply "
       "'vlax-curve-getArea (list (entlast))))",
       "T"},
      {"(entmake '((0 . \"CIRCLE\") (10 0 0 0) (40 . 2.0))) (setq c (entlast) l (line \"0\" 3.0))"
       "(mapcar '(lambda (e) (list (vlax-curve-isPeriodic e) (vlax-curve-isPlanar e))) (list c l))",
       "((T T) (nil T))"},
      {"(vlax-curve-getArea 5)", "error: bad argument type: lentityp: 5"},
      {"(line \"0\" 3.0) (list (osnap '(3.0 4.9 0.0) \"end\") (osnap '(3.0 4.9 0.0) \"_mid,cen\") (osnap '(30.0 4.0 "
       "0.0) \"end\"))",
       "((3.0 5.0 0.0) (3.0 2.5 0.0) nil)"},
      {"(osnap '(0 0) \"nowhere\")", "error: unknown object snap: \"nowhere\""});

CASES(CustomaryNames, {"(mapcar 'snvalid '(\"WALL\" \"a/b\" \"\" \"x|y\" \"*U1\"))", "(T nil nil nil nil)"},
      {"(list (snvalid \"x|y\" 1) (snvalid \"|y\" 1))", "(T nil)"}, {"(getcname \"nosuch\")", "nil"},
      {"(setq e (line \"0\" 1.0) s (ssget \"X\")) (list (equal (ssnamex s) (list (list 0 e 0))) (length (ssnamex s 0)) "
       "(ssnamex s 1))",
       "(T 1 nil)"},
      {"(atoms-family 1 '(\"car\" \"nosuchthing\"))", "(\"CAR\" nil)"},
      {"(not (null (member 'CAR (atoms-family 0))))", "T"},
      {"(vl-catch-all-error-message (vl-catch-all-apply 'vl-exit-with-error '(\"no good\")))", "\"no good\""},
      {"(autoload \"nosuchfile\" '(\"tool\")) (vl-catch-all-error-message (vl-catch-all-apply 'c:tool nil))",
       "\"cannot find the program file: nosuchfile\""},
      {"(defun-q twice (x) (+ x x)) (defun-q-list-set 'twice (subst '(* 3 x) '(+ x x) (defun-q-list-ref 'twice))) "
       "(twice 2)",
       "6"},
      {"(vl-doc-export 'anything)", "nil"}, {"(vports)", "((2 (0.0 0.0) (1.0 1.0)))"},
      {"(setview '((10 5.0 6.0) (40 . 7.0))) (list (getvar \"VIEWSIZE\") (getvar \"VIEWCTR\"))", "(7.0 (5.0 6.0 0.0))"},
      {"(setview '((40 . 7.0)))", "error: bad argument type: view: ((40 . 7.0))"},
      {"(list (grread) (grread) (grread) (grread))", "((2 97) (2 98) (2 13) (3 (1.0 2.0 0.0)))", "ab\n1,2\n"},
      {"(list (vl-string-mismatch \"abcX\" \"abcY\") (vl-string-mismatch \"xab\" \"aB\" 1 0 t))", "(3 2)"},
      {"(list (vl-infp 1.0) (vl-nanp 2))", "(nil nil)"});

CASES(KeptSettings,
      {"(vl-registry-write \"HKEY_CURRENT_USER\\\\Tools\\\\A\" \"size\" 7) (vl-registry-write "
       "\"HKEY_CURRENT_USER\\\\Tools\\\\A\" \"name\" \"x\")"
       "(list (vl-registry-read \"HKEY_CURRENT_USER\\\\Tools\\\\A\" \"size\") (vl-registry-descendents "
       "\"HKEY_CURRENT_USER\\\\Tools\")"
       " (vl-registry-descendents \"HKEY_CURRENT_USER\\\\Tools\\\\A\" \"\"))",
       "(7 (\"A\") (\"name\" \"size\"))"},
      {"(vl-registry-write \"K\" \"n\" \"v\") (list (vl-registry-delete \"K\" \"n\") (vl-registry-read \"K\" \"n\") "
       "(vl-registry-delete \"K\"))",
       "(T nil T)"},
      {"(list (getcfg \"AppData/None/a\") (setcfg \"AppData/Tool/a\" \"5\") (getcfg \"AppData/Tool/a\") (getcfg "
       "\"AppData/Tool/b\"))",
       "(nil \"5\" \"5\" \"\")"},
      {"(vl-bb-set 'shared 5) (list (vl-bb-ref 'shared) (vl-bb-ref 'other))", "(5 nil)"});

CASES(Selections, {"(ssget \"X\")", "nil"}, {"(line \"0\" 1.0) (line \"0\" 2.0) (sslength (ssget \"X\"))", "2"},
      {"(line \"0\" 1.0) (line \"0\" 2.0) (sslength (ssget \"_X\" '((0 . \"LINE\") (10 2.0 0.0 0.0))))", "1"},
      {"(line \"0\" 1.0) (ssget \"X\" '((0 . \"CIRCLE\")))", "nil"},
      {"(setq e (line \"0\" 1.0) s (ssget \"X\")) (list (eq e (ssname s 0)) (ssname s 1) (ssname s -1) (eq e (ssname s "
       "0.5)))",
       "(T nil nil T)"},
      {"(setq a (line \"0\" 1.0) b (line \"0\" 2.0) s (ssadd)) (ssadd a s) (ssadd b s) (ssdel a s)"
       "(list (sslength s) (ssmemb a s) (eq (ssmemb b s) b))",
       "(1 nil T)"},
      {"(setq a (line \"0\" 1.0) s (ssadd a)) (eq s (ssadd a s))", "T"},
      {"(sslength 5)", "error: bad argument type: lselsetp: 5"},
      {"(ssget \"X\" '((8 . 0)))", "error: bad DXF group: (8 . 0)"},
      {"(ssget \"W\" '(0 0) '(9 9) nil 7)", "error: too many arguments: SSGET"},
      {"(ssget 5)", "error: bad argument type: selection argument: 5"});

CASES(Questions, {"(getpoint \"\\nFrom: \")", "(1.0 2.0 0.0)", "1,2\n"},
      {"(getpoint '(1 1) \"To: \")", "(4.0 6.0 0.0)", "4,6\n"}, {"(getpoint)", "nil", "\n"},
      {"(initget \"Left Right\") (getpoint \"Side [Left/Right]: \")", "\"Left\"", "l\n"},
      {"(initget 1 \"Left Right\") (getkword \"Side [Left/Right]: \")", "\"Right\"", "\nnonsense\nr\n"},
      {"(getint \"Count: \")", "12", "12\n"}, {"(getreal \"Size: \")", "2.5", "2.5\n"},
      {"(getdist '(0 0) \"Reach: \")", "5.0", "3,4\n"}, {"(getangle '(0 0))", "1.5708", "0,7\n"},
      {"(getstring T \"Name: \")", "\"two words\"", "two words\n"},
      {"(getstring \"Name: \")", "\"two\"", "two words\n\n"}, {"(getstring)", "\"\"", "\n"},
      {"(getpoint)", "cancelled", "(cancel)\n"}, {"(getint)", "3", "(+ 1 2)\n"}, {"(getint)", "4", "x\n4\n"},
      {"(setq e (line \"0\" 1.0) p (entsel)) (eq (car p) e)", "T", "(handent \"NOSUCH\")\n1,2\n"});

CASES(Variables, {"(getvar \"NOSUCHVARIABLE\")", "nil"}, {"(setvar \"LTSCALE\" 2) (getvar \"ltscale\")", "2.0"},
      {"(setvar \"FILEDIA\" 0)", "0"}, {"(getvar \"CLAYER\")", "\"0\""},
      {"(setvar \"LTSCALE\" \"x\")", "error: variable setting rejected: \"LTSCALE\" \"x\""},
      {"(setvar \"NOSUCHVARIABLE\" 1)", "error: variable setting rejected: \"NOSUCHVARIABLE\" 1"},
      {"(setvar \"FILEDIA\" 70000)", "error: variable setting rejected: \"FILEDIA\" 70000"},
      {"(setvar \"PDMODE\" 3.5)", "error: variable setting rejected: \"PDMODE\" 3.5"},
      {"(setenv \"LispTest\" \"kept\") (getenv \"LispTest\")", "\"kept\""},
      {"(setvar \"DIMZIN\" 0) (rtos 2.5 2 3)", "\"2.500\""}, {"(angtos pi 0 2)", "\"180.00\""},
      {"(distof \"1'-6\\\"\" 4)", "18.0"}, {"(angtof \"90\" 0)", "1.5708"}, {"(distof \"rubbish\")", "nil"},
      {"(list (wcmatch \"Wall-2\" \"Wall*,Door*\") (wcmatch \"wall\" \"Wall\"))", "(T nil)"},
      {"(trans '(1 2 3) 0 1)", "(1.0 2.0 3.0)"}, {"(findfile \"no such file\")", "nil"});

CASES(Tables, {"(cdr (assoc 2 (tblsearch \"LAYER\" \"0\")))", "\"0\""}, {"(tblsearch \"LAYER\" \"missing\")", "nil"},
      {"(cdr (assoc 0 (tblnext \"LAYER\" T)))", "\"LAYER\""}, {"(while (tblnext \"STYLE\"))", "nil"},
      {"(type (tblobjname \"LAYER\" \"0\"))", "ENAME"}, {"(tblobjname \"LAYER\" \"missing\")", "nil"},
      {"(cdr (assoc 0 (dictsearch (namedobjdict) \"ACAD_GROUP\")))", "\"DICTIONARY\""},
      {"(dictsearch (namedobjdict) \"missing\")", "nil"},
      {"(setq d (entmakex '((0 . \"DICTIONARY\") (100 . \"AcDbDictionary\")))"
       "      x (entmakex '((0 . \"XRECORD\") (100 . \"AcDbXrecord\") (1 . \"kept\"))))"
       "(dictadd (namedobjdict) \"OFFICE\" d) (dictadd d \"NOTE\" x) (dictrename d \"NOTE\" \"Memo\")"
       "(list (cdr (assoc 1 (dictsearch (cdr (assoc -1 (dictsearch (namedobjdict) \"office\"))) \"memo\")))"
       "      (dictadd d \"MEMO\" x) (eq (dictremove d \"Memo\") x) (dictremove d \"Memo\") (dictsearch d \"Memo\"))",
       "(\"kept\" nil T nil nil)"},
      {"(dictadd (entmakex '((0 . \"LINE\") (10 0 0) (11 1 1))) \"A\" (namedobjdict))", "nil"});

// A command that asks for two points and keeps them where the cases can look.
void pairCommand(Editor& editor)
{
    const VcGePoint3d from = editor.point("First point: ");
    const VcGePoint3d to = editor.point("Second point: ");
    editor.report("pair {:g},{:g} {:g},{:g}", from.x, from.y, to.x, to.y);
}

void addPairCommand()
{
    static const edit::HostCommand kCommands[] = {
        {"LISPPAIR", nullptr, edit::kPlain, "Asks for two points.", pairCommand}};
    static const bool isAdded = (edit::CommandTable::instance().addHostCommands(kCommands), true);
    ASSERT_TRUE(isAdded);
}

TEST_F(LispDrawing, CommandTakesArgumentsInOneOrMoreCalls)
{
    addPairCommand();
    EXPECT_EQ(answer("(command \"LISPPAIR\" '(1 2) \"3,4\")"), "nil");
    EXPECT_NE(m_editor.transcript().find("pair 1,2 3,4"), std::string::npos);
    evaluate("(command \"LISPPAIR\" '(5 6)) (setq x 7.5) (command (list x 8.5))");
    EXPECT_NE(m_editor.transcript().find("pair 5,6 7.5,8.5"), std::string::npos);
}

TEST_F(LispDrawing, CommandPausesForThePerson)
{
    addPairCommand();
    evaluate("(command \"LISPPAIR\" pause '(0 9))", "7,7\n");
    EXPECT_NE(m_editor.transcript().find("pair 7,7 0,9"), std::string::npos);
}

TEST_F(LispDrawing, CommandWithoutArgumentsCancels)
{
    addPairCommand();
    evaluate("(command \"LISPPAIR\" '(41 2)) (command)");
    EXPECT_TRUE(m_editor.runningCommands().empty());
    EXPECT_EQ(m_editor.transcript().find("pair 41"), std::string::npos);
}

TEST_F(LispDrawing, SetsAreFreedWithTheLastValue)
{
    const std::size_t before = edit::SelectionSetTable::instance().liveCount();
    evaluate("(entmake '((0 . \"POINT\") (10 0 0 0))) (setq s (ssget \"X\") copy (list s s))");
    EXPECT_EQ(edit::SelectionSetTable::instance().liveCount(), before + 1);
    evaluate("(repeat 100 (ssget \"X\")) (setq s nil)");
    EXPECT_EQ(edit::SelectionSetTable::instance().liveCount(), before + 1);
    evaluate("(setq copy nil)");
    EXPECT_EQ(edit::SelectionSetTable::instance().liveCount(), before);
}

TEST_F(LispDrawing, FunctionsBecomeCommands)
{
    evaluate("(defun c:spread () (prompt \"spread ran\") (princ)) (defun c:spin () (car 1))");
    EXPECT_TRUE(m_lisp->hasCommand("Spread"));
    EXPECT_FALSE(m_lisp->hasCommand("Missing"));
    EXPECT_EQ(m_lisp->commandNames("SP"), (std::vector<std::string>{"SPIN", "SPREAD"}));
    const Result ran = m_lisp->runCommand("spread");
    EXPECT_EQ(ran.status, Result::Done);
    EXPECT_TRUE(ran.isSilent);
    EXPECT_NE(m_editor.transcript().find("spread ran"), std::string::npos);
    EXPECT_EQ(m_lisp->runCommand("spin").message, "bad argument type: listp: 1");
}

TEST_F(LispDrawing, ResultsTravelAsChains)
{
    const struct {
        const char* program;
        int code;
    } cases[] = {{"5", RTSHORT},       {"2.5", RTREAL}, {"\"a\"", RTSTR}, {"'(1 2)", RTPOINT}, {"'(1 2 3)", RT3DPOINT},
                 {"'(1 2 3 4)", RTLB}, {"T", RTT},      {"'symbol", 0},   {"nil", 0}};
    for (const auto& example : cases) {
        const Result result = evaluate(example.program);
        EXPECT_EQ(result.value ? result.value->restype : 0, example.code) << example.program;
    }
}

class FakeDialogs : public edit::DialogService {
public:
    void addAnswer(std::string form, std::vector<std::string> steps) override
    {
        laidDown += form;
        for (const std::string& step : steps)
            laidDown += "|" + step;
    }
    std::vector<std::string> unusedAnswers() const override { return {}; }
    std::string laidDown;
};

TEST_F(LispDrawing, AnswersReachTheDialogs)
{
    FakeDialogs dialogs;
    edit::DialogService* const former = m_editor.dialogs();
    m_editor.setDialogs(&dialogs);
    evaluate("(answer \"TCaseDialog\" \"upperBtn\" \"okBtn\")");
    m_editor.setDialogs(nullptr);
    EXPECT_EQ(dialogs.laidDown, "TCaseDialog|upperBtn|okBtn");
    EXPECT_EQ(answer("(answer \"TCaseDialog\")"), "error: no dialogs to answer: \"TCaseDialog\"");
    m_editor.setDialogs(former);
}

TEST_F(LispDrawing, ProgramFilesMayBeInTheHostsCodePage)
{
    const Folder folder;
    std::ofstream(folder.path() / "plain.lsp") << "(setq word \"caf\xE9\")";
    std::ofstream(folder.path() / "marked.lsp") << "\xEF\xBB\xBF(setq word \"caf\xC3\xA9 2\")";
    const std::string path = folder.path().string();
    EXPECT_EQ(answer("(load \"" + path + "/plain\")"), "\"caf\u00e9\"");
    EXPECT_EQ(answer("(load \"" + path + "/marked.lsp\")"), "\"caf\u00e9 2\"");
    EXPECT_EQ(answer("(load \"" + path + "/missing\" 5)"), "5");
}

TEST_F(LispDrawing, TextFiles)
{
    const Folder folder;
    const auto in = [&](const char* name) { return "\"" + (folder.path() / name).string() + "\""; };
    evaluate("(setq f (open " + in("a.txt") +
             " \"w\")) (write-line \"caf\u00e9\" f) (princ '(1 \"b\") f) (prin1 \"b\" f)"
             "(write-char 10 f) (close f)");
    EXPECT_EQ(answer("(setq f (open " + in("a.txt") +
                     " \"r\")) (list (read-char f) (read-line f) (read-line f) (read-line f))"),
              "(99 \"af\u00e9\" \"(1 b)\\\"b\\\"\" nil)");
    EXPECT_EQ(answer("(close f) (type f)"), "FILE");
    EXPECT_EQ(answer("(read-line f)"), "error: the file is closed: " + (folder.path() / "a.txt").string());
    EXPECT_EQ(answer("(open " + in("missing.txt") + " \"r\")"), "nil");
    EXPECT_EQ(answer("(open " + in("") + " \"w\")"), "nil");
    EXPECT_EQ(answer("(open " + in("a.txt") + " \"q\")"), "error: bad open mode: \"q\"");
    // Lines of other systems, in another code page, after a mark.
    std::ofstream(folder.path() / "b.txt") << "\xEF\xBB\xBFone\r\ncaf\xE9\r\n\r\nlast";
    EXPECT_EQ(answer("(setq f (open " + in("b.txt") +
                     " \"R\") all nil) (while (setq l (read-line f)) (setq all (cons l all))) all"),
              "(\"last\" \"\" \"caf\u00e9\" \"one\")");
    evaluate("(setq f (open " + in("a.txt") + " \"a\")) (write-line \"more\" f) (setq f nil)");
    EXPECT_EQ(answer("(vl-file-size " + in("a.txt") + ")"), "20");
    EXPECT_EQ(answer("(vl-directory-files " + in("") + " \"*.TXT\" 1)"), "(\"a.txt\" \"b.txt\")");
    EXPECT_EQ(answer("(list (vl-file-rename " + in("a.txt") + in("b.txt") + ") (vl-file-copy " + in("a.txt") +
                     in("c.txt") + ") (vl-file-delete " + in("a.txt") + ") (vl-file-size " + in("a.txt") + "))"),
              "(nil 20 T nil)");
    EXPECT_EQ(answer("(list (vl-filename-base \"c:\\\\x\\\\y.dwg\") (vl-filename-extension \"y\"))"), "(\"y\" nil)");
}

TEST_F(LispDrawing, FullDisksAreTold)
{
    EXPECT_EQ(answer("(setq f (open \"/dev/full\" \"w\")) (write-line \"x\" f) (close f)"),
              "error: /dev/full cannot be written: No space left on device");
}

TEST_F(LispDrawing, SettingsOfTheProfile)
{
    EXPECT_EQ(answer("(profile-read \"TextTools\" \"Height\")"), "nil");
    EXPECT_EQ(answer("(profile-write \"TextTools\" \"Height\" -5) (profile-read \"texttools\" \"height\")"), "-5");
    EXPECT_EQ(answer("(profile-write \"TextTools\" \"Name\" \"\u00e9t\u00e9\") (profile-read \"TextTools\" \"Name\")"),
              "\"\u00e9t\u00e9\"");
    EXPECT_EQ(answer("(profile-write \"TextTools\" \"Name\" 1.5)"), "error: bad argument type: stringp: 1.5");
}

}  // namespace
}  // namespace vk::lisp
