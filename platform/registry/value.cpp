#include <QtEndian>

#include "platform/registry/detail/store.h"

namespace platform::registry {

QString Encode(const Value& value) {
  if (value.type == REG_DWORD && value.data.size() == sizeof(DWORD))
    return QString::number(qFromLittleEndian<quint32>(value.data.constData()));
  return QString::number(value.type) + ':' + QString::fromLatin1(value.data.toHex());
}

std::optional<Value> Decode(const QString& text) {
  const qsizetype colon = text.indexOf(':');
  bool understood = false;
  const quint32 number = text.left(colon).toUInt(&understood);
  if (!understood) return std::nullopt;
  if (colon < 0) {
    QByteArray data(sizeof number, 0);
    qToLittleEndian(number, data.data());
    return Value{REG_DWORD, data};
  }
  const QByteArray hex = text.mid(colon + 1).toLatin1();
  const QByteArray data = QByteArray::fromHex(hex);
  if (data.toHex() != hex) return std::nullopt;
  return Value{number, data};
}

}  // namespace platform::registry
