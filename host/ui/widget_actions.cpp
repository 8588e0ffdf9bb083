#include "host/ui/widget_actions.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTabWidget>
#include <QTextEdit>
#include <fmt/format.h>

namespace vk::ui {

namespace {

constexpr qsizetype kMostListed = 20;

std::string quoted(const QString& text) { return "\"" + text.toStdString() + "\""; }

std::string listOf(const QStringList& items)
{
    if (items.isEmpty())
        return "it has none";
    QStringList shown = items.mid(0, kMostListed);
    if (items.size() > shown.size())
        shown << QString("... (%1 in all)").arg(items.size());
    return "it has " + shown.join(", ").toStdString();
}

void focus(QWidget& widget)
{
    if (widget.focusPolicy() & Qt::TabFocus || widget.focusPolicy() & Qt::ClickFocus)
        widget.setFocus(Qt::MouseFocusReason);
}

void pressKey(QWidget& widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString& text = {})
{
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(&widget, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QApplication::sendEvent(&widget, &release);
}

// Keys are numbered by the capital letters.
int keyOf(uint character)
{
    const bool isPlain = character >= ' ' && character < 0x7F;
    return isPlain ? QChar::toUpper(character) : 0;
}

void typeOver(QWidget& widget, const QString& text)
{
    focus(widget);
    pressKey(widget, Qt::Key_A, Qt::ControlModifier);
    pressKey(widget, Qt::Key_Delete);
    for (const uint character : text.toUcs4()) {
        const bool isLineEnd = character == '\n';
        const QString typed = isLineEnd ? QString("\r") : QString::fromUcs4(&character, 1);
        pressKey(widget, isLineEnd ? Qt::Key_Return : keyOf(character), Qt::NoModifier, typed);
    }
}

std::string setLine(QLineEdit& edit, const QString& text)
{
    if (edit.isReadOnly())
        return "it is read-only";
    if (text.size() > edit.maxLength())
        return fmt::format("it takes no more than {} characters", edit.maxLength());
    typeOver(edit, text);
    return {};
}

template <class Edit>
std::string setLines(Edit& edit, const QString& text)
{
    if (edit.isReadOnly())
        return "it is read-only";
    typeOver(edit, text);
    return {};
}

std::string setOnOff(QAbstractButton& button, const QString& value)
{
    const bool isOn = value.compare("on", Qt::CaseInsensitive) == 0;
    if (!isOn && value.compare("off", Qt::CaseInsensitive) != 0)
        return quoted(value) + " is neither on nor off";
    if (button.isChecked() == isOn)
        return {};
    focus(button);
    button.click();
    return button.isChecked() == isOn ? std::string() : "it cannot be switched " + value.toStdString();
}

QStringList itemsOf(const QComboBox& combo)
{
    QStringList items;
    for (int i = 0; i < combo.count(); ++i)
        items << combo.itemText(i);
    return items;
}

std::string choose(QComboBox& combo, const QString& text)
{
    const int index = combo.findText(text);
    if (index < 0 && !combo.isEditable())
        return "it has no item " + quoted(text) + "; " + listOf(itemsOf(combo));
    focus(combo);
    if (index < 0) {
        typeOver(*combo.lineEdit(), text);
        return {};
    }
    combo.setCurrentIndex(index);
    QMetaObject::invokeMethod(&combo, "activated", Q_ARG(int, index));
    return {};
}

std::string setNumber(QSpinBox& spin, const QString& text)
{
    bool isNumber = false;
    const int value = text.toInt(&isNumber);
    if (!isNumber || value < spin.minimum() || value > spin.maximum())
        return fmt::format("it takes whole numbers from {} to {}", spin.minimum(), spin.maximum());
    focus(spin);
    spin.setValue(value);
    return {};
}

std::string setNumber(QDoubleSpinBox& spin, const QString& text)
{
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (!isNumber || value < spin.minimum() || value > spin.maximum())
        return fmt::format("it takes numbers from {} to {}", spin.minimum(), spin.maximum());
    focus(spin);
    spin.setValue(value);
    return {};
}

std::string turnTo(QTabWidget& tabs, const QString& title)
{
    QStringList titles;
    for (int i = 0; i < tabs.count(); ++i)
        titles << tabs.tabText(i).remove('&');
    const int index = titles.indexOf(title);
    if (index < 0)
        return "it has no page " + quoted(title) + "; " + listOf(titles);
    tabs.setCurrentIndex(index);
    return {};
}

QModelIndex indexOf(const QAbstractItemView& view, const QString& text)
{
    const QAbstractItemModel& model = *view.model();
    for (int row = 0; row < model.rowCount(); ++row)
        for (int column = 0; column < model.columnCount(); ++column)
            if (model.index(row, column).data().toString() == text)
                return model.index(row, column);
    return {};
}

QStringList itemsOf(const QAbstractItemView& view)
{
    QStringList items;
    for (int row = 0; row < view.model()->rowCount(); ++row)
        items << view.model()->index(row, 0).data().toString();
    return items;
}

void clickAt(QAbstractItemView& view, const QModelIndex& index, Qt::KeyboardModifiers modifiers)
{
    view.scrollTo(index);
    const QPoint at = view.visualRect(index).center();
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const auto buttons = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        QMouseEvent event(type, at, view.viewport()->mapToGlobal(at), Qt::LeftButton, buttons, modifiers);
        QApplication::sendEvent(view.viewport(), &event);
    }
}

// A value that is an item itself is one item, also with a | in it.
std::string selectItems(QAbstractItemView& view, const QString& value)
{
    const QStringList texts = indexOf(view, value).isValid() ? QStringList(value) : value.split('|');
    const bool takesMany = view.selectionMode() != QAbstractItemView::SingleSelection;
    if (texts.size() > 1 && !takesMany)
        return "it takes one item";
    for (const QString& text : texts)
        if (!indexOf(view, text).isValid())
            return "it has no item " + quoted(text) + "; " + listOf(itemsOf(view));
    focus(view);
    if (takesMany)
        view.clearSelection();
    for (const QString& text : texts) {
        const QModelIndex index = indexOf(view, text);
        if (!(index.flags() & Qt::ItemIsEnabled))
            return "the item " + quoted(text) + " is disabled";
        clickAt(view, index, takesMany ? Qt::ControlModifier : Qt::NoModifier);
    }
    return {};
}

}

std::string click(QWidget& widget)
{
    auto* button = qobject_cast<QAbstractButton*>(&widget);
    if (!button)
        return "it is no button; it needs a value, as in " + widget.objectName().toStdString() + "=...";
    focus(widget);
    button->click();
    return {};
}

std::string setValue(QWidget& widget, const QString& value)
{
    if (auto* edit = qobject_cast<QLineEdit*>(&widget))
        return setLine(*edit, value);
    if (auto* edit = qobject_cast<QPlainTextEdit*>(&widget))
        return setLines(*edit, value);
    if (auto* edit = qobject_cast<QTextEdit*>(&widget))
        return setLines(*edit, value);
    if (auto* combo = qobject_cast<QComboBox*>(&widget))
        return choose(*combo, value);
    if (auto* view = qobject_cast<QAbstractItemView*>(&widget))
        return selectItems(*view, value);
    if (auto* spin = qobject_cast<QSpinBox*>(&widget))
        return setNumber(*spin, value);
    if (auto* spin = qobject_cast<QDoubleSpinBox*>(&widget))
        return setNumber(*spin, value);
    if (auto* tabs = qobject_cast<QTabWidget*>(&widget))
        return turnTo(*tabs, value);
    auto* button = qobject_cast<QAbstractButton*>(&widget);
    if (button && button->isCheckable())
        return setOnOff(*button, value);
    return "it takes no value";
}

bool canBeActedOn(const QWidget& widget)
{
    return qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QLineEdit*>(&widget) ||
           qobject_cast<const QPlainTextEdit*>(&widget) || qobject_cast<const QTextEdit*>(&widget) ||
           qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QAbstractItemView*>(&widget) ||
           qobject_cast<const QAbstractSpinBox*>(&widget) || qobject_cast<const QTabWidget*>(&widget);
}

}  // namespace vk::ui
