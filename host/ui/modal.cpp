#include "host/ui/modal.h"

#include "host/edit/editor.h"
#include "host/ui/dialog_answers.h"
#include "host/ui/dialog_player.h"
#include "host/ui/qt_application.h"

#include <QCoreApplication>
#include <QDialog>
#include <QEvent>
#include <QEventLoop>
#include <QTimer>
#include <set>

namespace vk::ui {

namespace {

std::set<const QObject*>& shownDialogs()
{
    static std::set<const QObject*> dialogs;
    return dialogs;
}

class Shown {
public:
    explicit Shown(const QObject& dialog) : m_dialog(&dialog) { shownDialogs().insert(m_dialog); }
    ~Shown() { shownDialogs().erase(m_dialog); }
    Shown(const Shown&) = delete;
    Shown& operator=(const Shown&) = delete;

private:
    const QObject* m_dialog;
};

std::string nameOf(const QDialog& dialog) { return dialog.objectName().toStdString(); }

void failRun(const std::string& message)
{
    edit::Editor& editor = edit::Editor::instance();
    editor.printLine(message);
    editor.noteFailure();
}

// A box that Qt itself opens while a script drives a dialog would wait for ever where nobody looks: it is cancelled.
class BoxWatch : public QObject {
public:
    BoxWatch() { QCoreApplication::instance()->installEventFilter(this); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* dialog = qobject_cast<QDialog*>(watched);
        if (event->type() == QEvent::Show && dialog && !shownDialogs().contains(dialog) && !isPersonThere())
            QTimer::singleShot(0, dialog, [dialog] { cancel(*dialog); });
        return false;
    }

private:
    static void cancel(QDialog& dialog)
    {
        failRun("No answer can reach the box \"" + dialog.windowTitle().toStdString() + "\"; it is cancelled.");
        dialog.reject();
    }
};

void drive(QDialog& dialog, CWnd* logic, const Steps& steps, const bool& hasEnded)
{
    const BoxWatch watch;
    const std::string fault = DialogPlayer(dialog, logic, hasEnded).play(steps);
    if (!fault.empty())
        failRun(fault);
}

void answerOrShow(QDialog& dialog, CWnd* logic, QEventLoop& loop, const bool& hasEnded)
{
    if (const std::optional<Steps> steps = dialogAnswers().take(nameOf(dialog)))
        drive(dialog, logic, *steps, hasEnded);
    else if (isPersonThere())
        loop.exec();
    else
        failRun("The dialog " + nameOf(dialog) + " has no answer waiting and is cancelled.");
}

}

int runModal(QDialog& dialog, CWnd* logic)
{
    const Shown shown(dialog);
    bool hasEnded = false;
    QEventLoop loop;
    const auto ending = QObject::connect(&dialog, &QDialog::finished, [&] {
        hasEnded = true;
        loop.quit();
    });
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.show();
    answerOrShow(dialog, logic, loop, hasEnded);
    if (!hasEnded)
        dialog.reject();
    if (!hasEnded)
        dialog.done(QDialog::Rejected);
    QObject::disconnect(ending);
    return dialog.result();
}

}  // namespace vk::ui
