#pragma once

#include <QAccessible>
#include <QString>

class QWidget;

namespace platform {

/// The interface of a standard control's widget where Qt's own tells too little; null for any other object.
QAccessibleInterface* MakeControlInterface(const QString& className, QObject* object);
/// The name of a control's widget, and of the field inside a combo.
void NameWidget(QWidget& widget, const QString& name);

}  // namespace platform
