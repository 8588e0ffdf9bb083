// What a person does with a widget, done by the program. Each gives an empty text, or why it cannot be done.
#pragma once

#include <QString>
#include <string>

class QWidget;

namespace vk::ui {

std::string click(QWidget& widget);
std::string setValue(QWidget& widget, const QString& value);
bool canBeActedOn(const QWidget& widget);

}  // namespace vk::ui
