#include "platform/registry/detail/store.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QStandardPaths>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <thread>
#include <utility>

#include "platform/base/detail/size_limit_signal.h"
#include "platform/registry/detail/settings_file.h"

namespace platform::registry {
namespace {

constexpr int kLongestWait = 200;
constexpr int kRetryAfter = 1000;

QString ConfigurationFolder() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
}

std::string Folder() {
  return QFile::encodeName(ConfigurationFolder() + "/tessarel12").toStdString();
}

bool MakeFolder() {
  QDir().mkpath(ConfigurationFolder());
  return ::mkdir(Folder().c_str(), 0700) == 0 || errno == EEXIST;
}

bool Allows(const std::string& path, int mode) {
  return ::access(path.c_str(), mode) == 0;
}

// A lock file can be half written when its process is killed, and would hold others up for half a minute.
bool IsOld(const QLockFile& lock) {
  const QDateTime made = QFileInfo(lock.fileName()).lastModified();
  return made.isValid() && made.msecsTo(QDateTime::currentDateTime()) > kLongestWait / 2;
}

LSTATUS TryLock(QLockFile& lock) {
  if (lock.tryLock(0)) return ERROR_SUCCESS;
  // Whoever lives holds the file's system lock, and it isn't removed.
  if (lock.error() == QLockFile::LockFailedError && IsOld(lock) && lock.removeStaleLockFile() &&
      lock.tryLock(0))
    return ERROR_SUCCESS;
  return lock.error() == QLockFile::LockFailedError ? ERROR_LOCK_VIOLATION : ERROR_ACCESS_DENIED;
}

}  // namespace

Store::Later::Later() {
  if (const QCoreApplication* app = QCoreApplication::instance()) moveToThread(app->thread());
}

void Store::Later::Ask() {
  QCoreApplication::postEvent(this, new QEvent(QEvent::UpdateRequest));
}

bool Store::Later::event(QEvent* event) {
  if (event->type() != QEvent::UpdateRequest && event->type() != QEvent::Timer) return QObject::event(event);
  const std::lock_guard guard(Mutex());
  m_retry.stop();
  if (Instance().Save() == ERROR_LOCK_VIOLATION) m_retry.start(kRetryAfter, this);
  return true;
}

std::mutex& Store::Mutex() {
  static auto& mutex = *new std::mutex;
  return mutex;
}

Store& Store::Instance() {
  static auto& store = *new Store;
  return store;
}

void Store::UseCurrentFile() {
  std::string file = Folder() + "/registry";
  if (file == m_file) return;
  m_file = std::move(file);
  m_state.clear();
  m_changed.clear();
}

LSTATUS Store::Refresh() {
  UseCurrentFile();
  if (!m_later) {
    static const int atEnd = std::atexit([] {
      std::unique_lock lock(Mutex());
      Instance().SaveWithin(lock);
    });
    static_cast<void>(atEnd);
    m_later = std::make_unique<Later>();
  }
  return Read();
}

LSTATUS Store::Read() {
  std::string state = StateOf(m_file);  // before the look, since the file may change meanwhile
  if (!state.empty() && state == m_state) return ERROR_SUCCESS;
  const std::optional<std::string> text = ReadWhole(m_file);
  if (!text) return ERROR_ACCESS_DENIED;
  m_saved = ReadSettings(*text);
  m_state = std::move(state);
  return ERROR_SUCCESS;
}

bool Store::IsWritable() const {
  // The file is replaced rather than written, yet its own protection counts: it tells what the user wants.
  return MakeFolder() && (Allows(m_file, W_OK) || errno == ENOENT) && Allows(Folder(), W_OK | X_OK);
}

bool Store::Holds(const std::string& path) const {
  const std::string below = path + '/';
  const auto holds = [&](const Texts& texts) {
    const auto first = texts.lower_bound(below);
    return first != texts.end() && !NameLess()(below, first->first.substr(0, below.size()));
  };
  return holds(m_saved.texts) || holds(m_changed);
}

const std::string* Store::Find(const std::string& name) const {
  for (const Texts* texts : {&m_changed, &m_saved.texts})
    if (const auto found = texts->find(name); found != texts->end()) return &found->second;
  return nullptr;
}

std::optional<Value> Store::Get(const std::string& name) const {
  const std::string* text = Find(name);
  return text == nullptr ? std::nullopt : Decode(*text);
}

LSTATUS Store::Put(const std::string& name, const Value& value, std::unique_lock<std::mutex>& lock) {
  std::string text = Encode(value);
  const std::string* before = Find(name);
  if (before != nullptr && *before == text) return ERROR_SUCCESS;
  const Texts unchanged = m_changed;
  m_changed.insert_or_assign(name, std::move(text));
  const LSTATUS error = SaveWithin(lock);
  if (error != ERROR_SUCCESS) m_changed = unchanged;
  return error;
}

LSTATUS Store::PutSoon(const std::string& name, const Value& value) {
  m_changed.insert_or_assign(name, Encode(value));
  const LSTATUS error = Save();
  if (error != ERROR_LOCK_VIOLATION) {
    m_changed.erase(name);
    return error;
  }
  m_later->Ask();
  return ERROR_SUCCESS;
}

LSTATUS Store::SaveWithin(std::unique_lock<std::mutex>& lock) {
  QElapsedTimer waited;
  waited.start();
  LSTATUS error = Save();
  while (error == ERROR_LOCK_VIOLATION && waited.elapsed() < kLongestWait) {
    lock.unlock();
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    lock.lock();
    error = Save();
  }
  if (error != ERROR_LOCK_VIOLATION) return error;
  m_later->Ask();
  return ERROR_SUCCESS;
}

LSTATUS Store::Save() {
  if (m_changed.empty()) return ERROR_SUCCESS;
  const SizeLimitSignalHeld held;
  QLockFile lock(QFile::decodeName((m_file + ".guard").c_str()));
  if (const LSTATUS error = TryLock(lock); error != ERROR_SUCCESS) return error;
  return Write();
}

// The lock is held, so what is read here stays until it is replaced.
LSTATUS Store::Write() {
  if (const LSTATUS error = Read(); error != ERROR_SUCCESS) return error;
  Texts whole = m_saved.texts;
  for (const auto& [name, text] : m_changed) whole.insert_or_assign(name, text);
  if (m_saved.damaged && !CopyAside(m_file)) return ERROR_WRITE_FAULT;
  if (const LSTATUS error = WriteWhole(m_file, WriteSettings(whole)); error != ERROR_SUCCESS) return error;
  m_saved = {.texts = std::move(whole)};
  m_state.clear();
  m_changed.clear();
  return ERROR_SUCCESS;
}

}  // namespace platform::registry
