// Editor: one engine asks every question and runs every command, for modules, host commands and Lisp alike.
//
// Host commands run on coroutines of their own, so that one which still asks stays active when the arguments that drove it
// run out. Dialogs, Lisp and handlers of modules run on the main stack only: a host command that needs them hands the work
// over with onMain. Errors in host commands unwind as CommandError, a cancel as CommandCancelled; both end in the runner.
#pragma once

#include "host/base/rb.h"
#include "host/edit/command.h"
#include "host/edit/input.h"
#include "host/edit/question.h"
#include "host/edit/selection_set.h"
#include "host/edit/services.h"
#include "host/edit/undo_control.h"
#include "sdk/vcdb_database.h"

#include <fmt/format.h>
#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace vk::edit {

class SysVars;
class ActiveCommand;
struct AskAgain;

// A host command refuses: what, where and what to do about it.
struct CommandError {
    std::string message;
};
struct CommandCancelled {};

// What became of one command, for the runner's report.
struct CommandRecord {
    std::string name;
    enum Status { Done, Cancelled, Failed } status = Done;
};

struct AskOptions {
    std::string keywords;             // initget form
    std::optional<VcGePoint3d> from;  // base point, in the UCS
    int bits = 0;                     // InitGet::Bits
    bool enterEnds = false;           // Enter is an answer (status Enter)
    bool endsWithArguments = false;   // Question::endsWithArguments
};

struct SelectOptions {
    std::string prompt = "Select objects: ";
    bool allowLocked = false;
    bool single = false;
    bool endsWithArguments = false;  // with something selected, the end of the driving arguments ends the selection
    const resbuf* filter = nullptr;
    std::string keywords;  // initget form; a keyword typed ends the selection with it
};

class VKHOST_API Editor {
public:
    // The editor of the process; there is one drawing session at a time.
    static Editor& instance();
    Editor();
    ~Editor();
    Editor(const Editor&) = delete;
    Editor& operator=(const Editor&) = delete;

    // The drawing that is worked on. Taking over a drawing resets selection, view and undo.
    void openDrawing(std::unique_ptr<VcDbDatabase> drawing);
    std::unique_ptr<VcDbDatabase> closeDrawing();
    VcDbDatabase& drawing() const { return *m_drawing; }
    bool hasDrawing() const { return m_drawing != nullptr; }
    DatabaseCore& db() const { return m_drawing->core(); }
    UndoControl& undo() const { return *m_undo; }
    SysVars& vars() const { return *m_vars; }

    // Questions of host commands. Each throws CommandCancelled on Esc; what the person typed wrong is asked again here.
    // The raw form, with every outcome:
    Answer ask(Question question);
    // A module's question: every outcome comes back, nothing is thrown.
    Answer askFromModule(const Question& question) { return askOnMain(question); }
    // A question that belongs to another one, asked from the main stack.
    Answer askNested(const Question& question);

    using Options = AskOptions;
    Answer askPoint(std::string_view prompt, const Options& options = {});
    Answer askDistance(std::string_view prompt, const Options& options = {});
    Answer askAngle(std::string_view prompt, const Options& options = {});
    Answer askReal(std::string_view prompt, const Options& options = {});
    Answer askInteger(std::string_view prompt, const Options& options = {});
    Answer askEntity(std::string_view prompt, const Options& options = {});
    // Simple forms: a value and nothing else. The default is shown in <> and taken on Enter.
    VcGePoint3d point(std::string_view prompt, const Options& options = {});
    double distance(std::string_view prompt, std::optional<double> byDefault = {}, const Options& options = {});
    double real(std::string_view prompt, std::optional<double> byDefault = {}, const Options& options = {});
    std::int64_t integer(std::string_view prompt, std::optional<std::int64_t> byDefault = {},
                         const Options& options = {});
    // The global keyword. byDefault, a global keyword, is taken on Enter; the prompt shows "[A/B] <default>" already.
    std::string keyword(std::string_view prompt, std::string_view keywords, std::string_view byDefault = {});
    std::string word(std::string_view prompt, std::optional<std::string> byDefault = {});
    std::string text(std::string_view prompt, std::optional<std::string> byDefault = {});

    // "Select objects:" until Enter; what is on locked layers is counted and left unless allowLocked. An empty set means that
    // nothing was selected. A pick-first set is taken when the command's flags say so.
    using SelectOptions = vk::edit::SelectOptions;
    std::shared_ptr<SelectionSet> select(const SelectOptions& options = {});
    // The keyword that ended the last select(), or empty.
    const std::string& selectKeyword() const { return m_selectKeyword; }

    // Output: to the transcript, as the person sees it.
    void print(std::string_view text);
    template <class... Args>
    void report(fmt::format_string<Args...> format, Args&&... args)
    {
        print("\n" + fmt::format(format, std::forward<Args>(args)...));
    }
    void printLine(std::string_view text);

    // Runs work of a host command on the main stack: dialogs, Lisp, other commands.
    void onMain(const std::function<void()>& work);
    bool isOnCoroutine() const;

    // True when another command or Lisp feeds this one.
    bool isDriven() const;
    // Esc or Ctrl-C since the command began; long work asks it now and then and throws CommandCancelled.
    bool isInterrupted() const;
    void interrupt();
    void throwIfInterrupted() const;
    // Progress of long work, 0 to 1; shown where someone looks.
    void progress(std::string_view what, double done);
    std::function<void(std::string_view, double)> onProgress;

    // Running commands.
    void pushSource(std::unique_ptr<InputSource> source);
    // Takes commands from the sources until they are empty, or a command asks to quit.
    void run();
    // Runs the lines of a script now, until they are used up. From the main stack.
    void runScript(std::string name, std::string text);
    void quit() { m_quitting = true; }
    bool isQuitting() const { return m_quitting; }
    // One vcedCommand or Lisp command: RTNORM, RTCAN, RTERROR.
    int command(RbPtr arguments, bool fromLisp);
    // Called by name from the command line or by a module's export.
    int invokeModuleCommand(const std::string& name, VcEdCommandFunction handler, int flags);
    // Names of the running commands, outermost first, as CMDNAMES shows them.
    std::vector<std::string> runningCommands() const;
    const std::vector<CommandRecord>& records() const { return m_records; }
    void noteFailure() { m_failed = true; }  // the run's status is not 0
    bool hasFailed() const { return m_failed; }
    // vcdbFail and what modules throw.
    void failCurrent(std::string_view message);

    // State shared by the C-level interface.
    InitGet takeInitGet();
    void setInitGet(InitGet init) { m_init = std::move(init); }
    bool writesNothing = false;   // a dry run: commands that save say so and leave it
    bool asksBeforeQuit = false;  // someone is there to be asked
    std::string lastInput;        // keyword or arbitrary text of the last question
    std::shared_ptr<SelectionSet> previousSelection;
    std::shared_ptr<SelectionSet> pickFirst;
    VcGePoint3d lastPoint;  // in the UCS
    double lastAngle = 0;

    void setLisp(std::unique_ptr<LispEvaluator> lisp);
    LispEvaluator* lisp() const { return m_lisp.get(); }
    void setDialogs(DialogService* dialogs) { m_dialogs = dialogs; }
    DialogService* dialogs() const { return m_dialogs; }

    // Everything printed since the start; tests and LASTPROMPT read it. A sink gets it piece by piece.
    void setTranscriptSink(std::function<void(std::string_view)> sink) { m_sink = std::move(sink); }
    const std::string& transcript() const { return m_transcript; }

    // Changes that happen outside commands (tests, Lisp at the top) as one undo step.
    class Step {
    public:
        Step(Editor& editor, std::string name);
        ~Step();
        Step(const Step&) = delete;
        Step& operator=(const Step&) = delete;

    private:
        Editor& m_editor;
    };

private:
    friend class ActiveCommand;
    static constexpr std::size_t kTranscriptKept = 4 << 20;

    InputSource* currentSource(bool argumentsOnly);
    InputSource* personSource();
    Input nextInput(const Question& question, bool argumentsOnly, InputSource*& from);
    bool isQuiet(const InputSource* source) const;
    void printPrompt(std::string_view prompt);
    Answer askOnMain(const Question& question);
    std::optional<Answer> tryAnswer(const Question& question, bool argumentsOnly);
    std::optional<Answer> settle(std::variant<Answer, AskAgain> interpretation);
    std::optional<Answer> answerWithLisp(const Question& question, const Input::Expression& expression);
    Answer cancelled(bool byInterrupt);
    Answer endOfInput();
    LispEvaluator::Result evaluateLisp(const std::string& text);
    bool isTransparentCall(const Question& question, const std::string& text) const;
    void runTransparent(const std::string& typed);
    int startHost(const CommandEntry& entry, bool driven, bool fromLisp);
    void resumeTop();
    int drive(bool argumentsOnly);
    void driveToEnd();
    int finishTop();
    void settleWaiting(int level);
    int cancelWaiting();
    int feedCommands(ArgumentSource& source, bool fromLisp);
    bool isAsking(const ActiveCommand& active) const;
    bool isOpen(long questionNumber) const;
    int startNamed(const std::string& name, bool fromLisp);
    bool runNext();
    void runTyped(const std::string& typed);
    int runEntry(const CommandEntry& entry);
    void finishLeftOvers();
    void runLispAtTop(const std::string& text);
    void runLispCommand(const std::string& name);
    void showLispResult(const LispEvaluator::Result& result);
    void record(const std::string& name, CommandRecord::Status status);
    void dropFinishedSources();

    std::unique_ptr<VcDbDatabase> m_drawing;
    std::unique_ptr<UndoControl> m_undo;
    std::unique_ptr<SysVars> m_vars;
    std::vector<std::unique_ptr<InputSource>> m_sources;
    std::vector<std::unique_ptr<ActiveCommand>> m_active;
    ActiveCommand* m_current = nullptr;  // whose stack is running
    ActiveCommand* m_asking = nullptr;   // whose question is being answered
    std::unique_ptr<LispEvaluator> m_lisp;
    DialogService* m_dialogs = nullptr;
    std::function<void(std::string_view)> m_sink;
    std::string m_transcript;
    std::string m_lastCommand;
    std::string m_selectKeyword;
    std::vector<std::string> m_names;
    InitGet m_init;
    std::vector<CommandRecord> m_records;
    CommandRecord::Status m_lastOutcome = CommandRecord::Done;
    bool m_atLineStart = true;
    bool m_quitting = false;
    bool m_failed = false;
    bool m_currentFailed = false;
    bool m_currentCancelled = false;
    bool m_cancelledByInterrupt = false;
    bool m_stopOnInterrupt = true;
    bool m_toldEnd = false;
    volatile bool m_interrupted = false;
    bool m_feedsAsking = false;  // Lisp is evaluated at a command's question, and its arguments answer that
    int m_nesting = 0;
    int m_running = 0;
};

}  // namespace vk::edit
