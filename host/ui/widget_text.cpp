#include "host/ui/widget_text.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QGroupBox>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTextEdit>

namespace vk::ui {

namespace {

QString withPlainLines(QString text) { return text.replace("\r\n", "\n"); }

QStringList selectedTexts(const QAbstractItemView& view)
{
    QStringList texts;
    if (view.selectionModel())
        for (const QModelIndex& index : view.selectionModel()->selectedRows())
            texts << index.data().toString();
    return texts;
}

}

QString textOf(const QWidget& widget)
{
    if (const auto* edit = qobject_cast<const QLineEdit*>(&widget))
        return edit->text();
    if (const auto* edit = qobject_cast<const QPlainTextEdit*>(&widget))
        return edit->toPlainText().replace("\n", "\r\n");
    if (const auto* edit = qobject_cast<const QTextEdit*>(&widget))
        return edit->toPlainText().replace("\n", "\r\n");
    if (const auto* label = qobject_cast<const QLabel*>(&widget))
        return label->text();
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        return button->text();
    if (const auto* box = qobject_cast<const QGroupBox*>(&widget))
        return box->title();
    if (const auto* combo = qobject_cast<const QComboBox*>(&widget))
        return combo->currentText();
    if (const auto* spin = qobject_cast<const QAbstractSpinBox*>(&widget))
        return spin->text();
    return widget.windowTitle();
}

void setTextOf(QWidget& widget, const QString& text)
{
    if (auto* edit = qobject_cast<QLineEdit*>(&widget))
        edit->setText(text);
    else if (auto* plain = qobject_cast<QPlainTextEdit*>(&widget))
        plain->setPlainText(withPlainLines(text));
    else if (auto* rich = qobject_cast<QTextEdit*>(&widget))
        rich->setPlainText(withPlainLines(text));
    else if (auto* label = qobject_cast<QLabel*>(&widget))
        label->setText(withPlainLines(text));
    else if (auto* button = qobject_cast<QAbstractButton*>(&widget))
        button->setText(text);
    else if (auto* box = qobject_cast<QGroupBox*>(&widget))
        box->setTitle(text);
    else if (auto* combo = qobject_cast<QComboBox*>(&widget))
        combo->isEditable() ? combo->setEditText(text) : combo->setCurrentText(text);
    else
        widget.setWindowTitle(text);
}

std::string stateOf(const QWidget& widget)
{
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    if (button && button->isCheckable())
        return button->isChecked() ? "on" : "off";
    if (const auto* view = qobject_cast<const QAbstractItemView*>(&widget))
        return selectedTexts(*view).join('|').toStdString();
    if (const auto* tabs = qobject_cast<const QTabWidget*>(&widget))
        return tabs->tabText(tabs->currentIndex()).remove('&').toStdString();
    return withPlainLines(textOf(widget)).toStdString();
}

}  // namespace vk::ui
