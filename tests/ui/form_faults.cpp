#include "tests/ui/form_faults.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QPushButton>

namespace {

using Faults = std::vector<std::string>;

QList<QWidget*> ownWidgets(QDialog& form)
{
    QList<QWidget*> widgets;
    for (QWidget* widget : form.findChildren<QWidget*>())
        if (widget->isVisibleTo(&form) && !widget->objectName().isEmpty() && !widget->objectName().startsWith("qt_"))
            widgets << widget;
    return widgets;
}

std::string nameOf(const QWidget& widget) { return widget.objectName().toStdString(); }

bool carriesText(const QWidget& widget)
{
    return qobject_cast<const QLabel*>(&widget) || qobject_cast<const QAbstractButton*>(&widget) ||
           qobject_cast<const QGroupBox*>(&widget);
}

void findCutTexts(QDialog& form, Faults& faults)
{
    for (const QWidget* widget : ownWidgets(form)) {
        const QSize least = carriesText(*widget) ? widget->minimumSizeHint() : QSize(0, 0);
        if (widget->width() < least.width() || widget->height() < least.height())
            faults.push_back(nameOf(*widget) + " is cut");
    }
}

void findOverlaps(QDialog& form, Faults& faults)
{
    const QList<QWidget*> widgets = ownWidgets(form);
    for (int i = 0; i < widgets.size(); ++i)
        for (int j = i + 1; j < widgets.size(); ++j)
            if (widgets[i]->parentWidget() == widgets[j]->parentWidget() &&
                widgets[i]->geometry().intersects(widgets[j]->geometry()))
                faults.push_back(nameOf(*widgets[i]) + " lies on " + nameOf(*widgets[j]));
}

QString textWithKey(const QWidget& widget)
{
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        return button->text();
    const auto* label = qobject_cast<const QLabel*>(&widget);
    return label && label->buddy() ? label->text() : QString();
}

void findSharedKeys(QDialog& form, Faults& faults)
{
    QMap<QString, std::string> owners;
    for (const QWidget* widget : ownWidgets(form)) {
        const QString key = QKeySequence::mnemonic(textWithKey(*widget)).toString();
        if (key.isEmpty())
            continue;
        if (owners.contains(key))
            faults.push_back(nameOf(*widget) + " and " + owners[key] + " share " + key.toStdString());
        owners[key] = nameOf(*widget);
    }
}

// Items of groups and pages are named by their containers; what takes the focus must say what it is.
void findNameless(QDialog& form, Faults& faults)
{
    for (QWidget* widget : ownWidgets(form)) {
        const bool takesFocus = widget->focusPolicy() & Qt::TabFocus;
        QAccessibleInterface* spoken = takesFocus ? QAccessible::queryAccessibleInterface(widget) : nullptr;
        if (spoken && spoken->text(QAccessible::Name).isEmpty())
            faults.push_back(nameOf(*widget) + " has no accessible name");
    }
}

// What Tab stops at, in its order.
QList<QWidget*> tabStops(QDialog& form)
{
    QList<QWidget*> stops;
    for (QWidget* widget = form.nextInFocusChain(); widget != &form; widget = widget->nextInFocusChain())
        if (widget->focusPolicy() & Qt::TabFocus && widget->isVisibleTo(&form) && widget->isEnabled() &&
            !widget->objectName().isEmpty() && !widget->objectName().startsWith("qt_"))
            stops << widget;
    return stops;
}

QRect placeIn(const QDialog& form, const QWidget& widget) { return {widget.mapTo(&form, QPoint()), widget.size()}; }

// Lines are read from left to right and downwards, columns one after the other, pages after their tabs.
bool isReadAfter(const QRect& earlier, const QRect& later)
{
    return earlier.contains(later) || later.top() > earlier.bottom() || later.left() > earlier.right();
}

void findTabOrder(QDialog& form, Faults& faults)
{
    const QList<QWidget*> stops = tabStops(form);
    for (int i = 1; i < stops.size(); ++i)
        if (!isReadAfter(placeIn(form, *stops[i - 1]), placeIn(form, *stops[i])))
            faults.push_back("Tab goes back from " + nameOf(*stops[i - 1]) + " to " + nameOf(*stops[i]));
}

// Whoever opens a form begins at its top, not at its buttons.
void findFirstFocus(QDialog& form, Faults& faults)
{
    const QWidget* focus = form.focusWidget();
    if (!focus)
        faults.push_back("nothing has the focus");
    else if (qobject_cast<const QPushButton*>(focus))
        faults.push_back("the button " + nameOf(*focus) + " has the focus first");
}

// The smallest screens that people still have.
void findHugeness(QDialog& form, Faults& faults)
{
    const QSize screen(1366, 768), least = form.minimumSizeHint();
    if (least.width() > screen.width() || least.height() > screen.height())
        faults.push_back("the form does not fit on a small screen");
}

void findDefaults(QDialog& form, Faults& faults)
{
    int defaults = 0;
    for (const auto* button : form.findChildren<QPushButton*>())
        defaults += button->isDefault();
    if (defaults != 1)
        faults.push_back(std::to_string(defaults) + " buttons are for Enter");
}

// With twice the room no text may be cut, and the form must have taken it.
void findStiffness(QDialog& form, Faults& faults)
{
    const QSize wanted = form.size() * 2;
    form.resize(wanted);
    if (form.size() != wanted)
        faults.push_back("the form does not grow");
}

}

std::vector<std::string> faultsOf(QDialog& form)
{
    Faults faults;
    for (auto* find : {findCutTexts, findOverlaps, findSharedKeys, findNameless, findTabOrder, findFirstFocus,
                       findHugeness, findDefaults, findStiffness})
        find(form, faults);
    return faults;
}
