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
    for (auto* find : {findCutTexts, findOverlaps, findSharedKeys, findNameless, findDefaults, findStiffness})
        find(form, faults);
    return faults;
}
