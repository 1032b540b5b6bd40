// Inside the viewer's process: writes down, whenever it changes, what its windows show and where a text or a
// control is cut off. For the scripts that send real keys from outside; on Wayland nobody else is told what
// windows there are.

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QSaveFile>
#include <QtCore/QTimer>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QStyle>

namespace {

bool IsInScrolledPart(const QWidget* widget) {
  for (; widget != nullptr; widget = widget->parentWidget())
    if (widget->inherits("QAbstractScrollArea")) return true;
  return false;
}

/// What the text of a control needs; nothing for one that breaks its lines or has none.
int NeededWidth(const QWidget* widget) {
  if (const auto* label = qobject_cast<const QLabel*>(widget))
    return label->wordWrap() || label->text().contains(u'\n') ? 0 : label->sizeHint().width();
  const auto* button = qobject_cast<const QAbstractButton*>(widget);
  if (button == nullptr || button->text().isEmpty() || widget->inherits("QToolButton")) return 0;
  return button->fontMetrics().size(Qt::TextShowMnemonic, button->text()).width();
}

QString NameOf(const QWidget* widget) {
  const QString text = widget->property("text").toString();
  return QString::fromLatin1(widget->metaObject()->className()) + u' ' + text;
}

void AddFaults(const QWidget* widget, QStringList& lines) {
  if (!widget->isVisible() || widget->isWindow() || IsInScrolledPart(widget)) return;
  const int needed = NeededWidth(widget);
  if (widget->width() < needed)
    lines
        << QStringLiteral("fault %1 has %2 of %3 wide").arg(NameOf(widget)).arg(widget->width()).arg(needed);
  // Controls of a bar or dialog; a line that is there for the whole width may be cut.
  const bool control = needed > 0 || qobject_cast<const QComboBox*>(widget) != nullptr;
  const QWidget* parent = widget->parentWidget();
  if (control && parent != nullptr && !parent->rect().contains(widget->geometry()))
    lines << QStringLiteral("fault %1 is cut off").arg(NameOf(widget));
  const auto* bar = qobject_cast<const QMenuBar*>(widget);
  for (int i = 0; bar != nullptr && i < bar->actions().size(); ++i)
    if (!bar->rect().contains(bar->actionGeometry(bar->actions()[i])))
      lines << u"fault menu "_qs + bar->actions()[i]->text();
}

QStringList State() {
  QStringList lines;
  for (const QWidget* window : QApplication::topLevelWidgets()) {
    if (!window->isVisible()) continue;
    const QString kind = qobject_cast<const QMenu*>(window) != nullptr ? u"menu"_qs : u"window"_qs;
    lines << kind + u' ' + window->windowTitle() + (window->isActiveWindow() ? u" active"_qs : QString());
  }
  for (const QWidget* widget : QApplication::allWidgets()) {
    AddFaults(widget, lines);
    if (widget->isVisible() && !widget->accessibleName().isEmpty())
      lines << u"named "_qs + widget->accessibleName() + u' ' + widget->accessibleDescription();
  }
  lines.sort();
  return lines;
}

void Watch() {
  auto* timer = new QTimer(qApp);
  QObject::connect(timer, &QTimer::timeout, qApp, [last = QStringList()]() mutable {
    QStringList now = State();
    if (now == last) return;
    last = std::move(now);
    QSaveFile file(qEnvironmentVariable("PROBE"));
    if (!file.open(QIODevice::WriteOnly)) return;
    file.write(last.join(u'\n').toUtf8() + '\n');
    file.commit();
  });
  constexpr int kEvery = 20;
  timer->start(kEvery);
}
Q_COREAPP_STARTUP_FUNCTION(Watch)

}  // namespace
