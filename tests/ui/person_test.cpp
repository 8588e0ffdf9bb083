// Dialogs with somebody in front of them: a main window is there, so they stay until they are answered by hand.

#include "sdk/system.h"
#include "sdk/vced.h"
#include "tests/ui/dialog_support.h"
#include "tests/ui/probe_dialog.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <functional>

namespace {

class Person : public UiTest {
protected:
    Person()
    {
        probe::Logic first;  // a form makes Qt's application
        m_window = std::make_unique<QMainWindow>();
        m_window->show();
    }

    // As soon as nothing else is to be done. What does not end by itself ends the test.
    void soon(std::function<void()> action) { QTimer::singleShot(0, qApp, std::move(action)); }
    static QDialog& shown()
    {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            throw std::logic_error("no dialog is shown");
        return *dialog;
    }
    static void press(const char* button) { shown().findChild<QPushButton*>(button)->click(); }
    static void key(Qt::Key key)
    {
        QWidget* target = shown().focusWidget() ? shown().focusWidget() : &shown();
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(target, &event);
    }

    probe::Logic logic;
    std::unique_ptr<QMainWindow> m_window;
};

TEST_F(Person, AnswersByHand)
{
    soon([] {
        shown().findChild<QLineEdit*>("edit")->setText("by hand");
        press("ok");
    });
    EXPECT_EQ(logic.DoModal(), IDOK);
    EXPECT_EQ(logic.text, L"by hand");
    EXPECT_EQ(said, "");
}

TEST_F(Person, PressesEnterForTheDefaultButton)
{
    soon([] { key(Qt::Key_Return); });
    EXPECT_EQ(logic.DoModal(), IDOK);
}

TEST_F(Person, CancelsWithEsc)
{
    soon([] { key(Qt::Key_Escape); });
    EXPECT_EQ(logic.DoModal(), IDCANCEL);
    EXPECT_EQ(logic.events, std::vector<std::string>{"cancel"});
}

TEST_F(Person, ClosesTheWindow)
{
    soon([] { shown().close(); });
    EXPECT_EQ(logic.DoModal(), IDCANCEL);
    EXPECT_EQ(logic.events, std::vector<std::string>{"cancel"});
}

TEST_F(Person, PicksInTheDrawingAndComesBack)
{
    type("42,7\n");
    soon([&] {
        press("pick");
        EXPECT_TRUE(shown().isVisible());
        press("ok");
    });
    EXPECT_EQ(logic.DoModal(), IDOK);
    EXPECT_EQ(logic.text, L"42");
    EXPECT_EQ(logic.events.front(), "picked while hidden");
}

TEST_F(Person, AnswersMessageBoxes)
{
    soon([] {
        auto& box = dynamic_cast<QMessageBox&>(shown());
        EXPECT_EQ(box.text(), "Replace it?");
        EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::No));
        box.button(QMessageBox::Yes)->click();
    });
    EXPECT_EQ(MessageBoxW(nullptr, L"Replace it?", L"Files", MB_YESNO | MB_DEFBUTTON2), IDYES);
}

TEST_F(Person, ClosingAMessageBoxCancels)
{
    soon([] { key(Qt::Key_Escape); });
    EXPECT_EQ(MessageBoxW(nullptr, L"Go on?", L"Files", MB_OKCANCEL), IDCANCEL);
}

TEST_F(Person, WalksThroughThePaletteWithArrows)
{
    soon([] {
        shown().findChild<QWidget*>("paletteView")->setFocus();
        key(Qt::Key_Right);  // from 10 to 20
        key(Qt::Key_Down);   // one shade down
        press("pBtnOK");
    });
    int colour = 10;
    EXPECT_TRUE(vcedSetColorDialog(colour, true, 7));
    EXPECT_EQ(colour, 21);
}

TEST_F(Person, WatchesAScriptAnswer)
{
    answer("ProbeDialog", {"edit=by script", "ok"});
    EXPECT_EQ(logic.DoModal(), IDOK);
    EXPECT_EQ(logic.text, L"by script");
}

}
