#pragma once

#include <QBasicTimer>
#include <QObject>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "platform/registry/detail/settings_text.h"
#include "platform/registry/detail/value.h"

namespace platform::registry {

/// The file of settings. Names are paths parted by '/', found without regard to case. What can't be saved at
/// once, since another process holds the lock, stands in memory until it can.
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
  bool Holds(const std::string& path) const;
  std::optional<Value> Get(const std::string& name) const;
  /// A name keeps the case it was first written in. Waits 200 ms for another process that saves, with the
  /// mutex free; if that takes longer the value is saved later, which is no failure.
  LSTATUS Put(const std::string& name, const Value& value, std::unique_lock<std::mutex>& lock);
  /// The same without waiting.
  LSTATUS PutSoon(const std::string& name, const Value& value);

 private:
  /// Tries now and then, from the application's loop, to save what was held up.
  class Later : public QObject {
   public:
    Later();
    void Ask();

   protected:
    bool event(QEvent* event) override;

   private:
    QBasicTimer m_retry;
  };

  void UseCurrentFile();
  LSTATUS Read();
  const std::string* Find(const std::string& name) const;
  LSTATUS SaveWithin(std::unique_lock<std::mutex>& lock);
  LSTATUS Save();
  LSTATUS Write();

  std::string m_file;
  SettingsText m_saved;
  Texts m_changed;      ///< not saved yet
  std::string m_state;  ///< of the file when it was read; empty: to be read again
  std::unique_ptr<Later> m_later;
};

}  // namespace platform::registry
