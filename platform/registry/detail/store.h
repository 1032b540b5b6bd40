#pragma once

#include <QBasicTimer>
#include <QSettings>
#include <memory>
#include <mutex>
#include <optional>

#include "platform/registry/registry.h"

namespace platform::registry {

/// A value as the file holds it.
struct Value {
  DWORD type = REG_NONE;
  QByteArray data;
};
/// A plain number for REG_DWORD, "type:bytes" for all else.
QString Encode(const Value& value);
std::optional<Value> Decode(const QString& text);

/// The file of settings, an INI file. Names are paths parted by '/', found without regard to case. What can't
/// be saved at once, since another process holds the lock, stands in memory until it can.
/// Call everything with Mutex() held, and Refresh first.
class Store {
 public:
  /// Never destroyed: programs may still read settings while the process ends.
  static Store& Instance();
  static std::mutex& Mutex();

  /// Takes in what other processes wrote. Never waits for them.
  LSTATUS Refresh();
  bool IsWritable() const;
  /// Whether anything stands below the path.
  bool Holds(const QString& path) const;
  std::optional<Value> Get(const QString& name) const;
  /// A name keeps the case it was first written in. Waits 200 ms for another process that saves, with the
  /// mutex free; if that takes longer the value is saved later, which is no failure.
  LSTATUS Put(const QString& name, const Value& value, std::unique_lock<std::mutex>& lock);
  /// The same without waiting.
  LSTATUS PutSoon(const QString& name, const Value& value);

 private:
  // Keeps alive what all QSettings of a file share. QSettings saves once the event loop runs, and waits for
  // the lock as long as that takes; this one tries now and then instead.
  class Keeper : public QSettings {
   public:
    explicit Keeper(const QString& file);
    bool event(QEvent* event) override;

   private:
    QBasicTimer m_retry;
  };

  void UseCurrentFile();
  QString Spelled(const QString& name) const;
  bool TakeInOldFormat();
  bool Mend();
  LSTATUS Save();
  LSTATUS SaveWithin(std::unique_lock<std::mutex>& lock);

  QString m_file;
  std::unique_ptr<Keeper> m_settings;
  bool m_pending = false;
  bool m_damaged = false;
};

}  // namespace platform::registry
