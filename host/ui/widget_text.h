// Texts between the host and Qt, and the text that a widget of any kind shows.
#pragma once

#include <QString>
#include <string>

class QWidget;

namespace vk::ui {

inline QString fromUtf8(std::string_view text) { return QString::fromUtf8(text.data(), int(text.size())); }
inline QString fromWide(const wchar_t* text) { return text ? QString::fromWCharArray(text) : QString(); }

// Lines of a text end in "\r\n" for modules, in "\n" for Qt; setting takes either.
QString textOf(const QWidget& widget);
void setTextOf(QWidget& widget, const QString& text);

// What a widget holds, as a step of answer would say it: its text, on or off, the selected items.
std::string stateOf(const QWidget& widget);

}  // namespace vk::ui
