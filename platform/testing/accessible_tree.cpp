#include <QAccessible>
#include <QApplication>
#include <QMetaEnum>
#include <QWidget>

#include "platform/qt_bridge.h"
#include "tessarel12_testing.h"

namespace platform::testing {
namespace {

QString Quoted(const QString& text) {
  return QLatin1String(" '") + text + QLatin1Char('\'');
}

QString ValueOf(QAccessibleInterface& part) {
  if (QAccessibleValueInterface* value = part.valueInterface())
    return QStringLiteral(" = %1 (%2 to %3)")
        .arg(value->currentValue().toString(), value->minimumValue().toString(),
             value->maximumValue().toString());
  const QString text = part.text(QAccessible::Value);
  return text.isEmpty() ? text : QLatin1String(" =") + Quoted(text);
}

QString StatesOf(const QAccessible::State& state) {
  const struct {
    bool is;
    const char* word;
  } states[] = {{state.checked != 0, " checked"},      {state.disabled != 0, " disabled"},
                {state.readOnly != 0, " read-only"},   {state.defaultButton != 0, " default"},
                {state.selected != 0, " selected"},    {state.focused != 0, " focused"},
                {state.passwordEdit != 0, " password"}};
  QString words;
  for (const auto& [is, word] : states)
    if (is) words += QLatin1String(word);
  return words;
}

QString LabelsOf(const QAccessibleInterface& part) {
  QString labels;
  for (const auto& [label, relation] : part.relations(QAccessible::Label))
    if (label != nullptr) labels += QLatin1String(" by") + Quoted(label->text(QAccessible::Name));
  return labels;
}

/// Parts that only hold others have no line.
bool IsWrapper(const QAccessibleInterface& part) {
  return part.role() == QAccessible::Client && part.text(QAccessible::Name).isEmpty();
}

void Tell(QAccessibleInterface& part, int depth, QString& told) {
  const QAccessible::State state = part.state();
  if (state.invisible) return;
  if (!IsWrapper(part)) {
    const char* role = QMetaEnum::fromType<QAccessible::Role>().valueToKey(part.role());
    told += QString(depth * 2, QLatin1Char(' ')) + QLatin1String(role) +
            Quoted(part.text(QAccessible::Name)) + ValueOf(part) + LabelsOf(part) + StatesOf(state) +
            QLatin1Char('\n');
    ++depth;
  }
  for (int i = 0; i < part.childCount(); ++i)
    if (QAccessibleInterface* child = part.child(i)) Tell(*child, depth, told);
}

}  // namespace

std::string AccessibleTree(HWND window) {
  QWidget* widget = window == nullptr ? QApplication::activeModalWidget() : AfxGetQWidget(window);
  QAccessibleInterface* part = QAccessible::queryAccessibleInterface(widget);
  QString told;
  if (part != nullptr) Tell(*part, 0, told);
  return told.toStdString();
}

}  // namespace platform::testing
