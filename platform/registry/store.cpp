#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QRegularExpression>
#include <QStandardPaths>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <thread>
#include <utility>

#include "platform/base/detail/size_limit_signal.h"
#include "platform/registry/detail/store.h"

namespace platform::registry {
namespace {

// Settings are a few hundred bytes; what goes beyond this is something else.
constexpr qint64 kMostBytes = 1 << 20;
constexpr qsizetype kDeepest = 512;
constexpr int kMostSetAside = 1000;
constexpr int kLongestWait = 200;
constexpr int kRetryAfter = 1000;

QString ConfigurationFolder() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
}

QString Folder() {
  return ConfigurationFolder() + "/tessarel12";
}

bool MakeFolder() {
  QDir().mkpath(ConfigurationFolder());
  return ::mkdir(QFile::encodeName(Folder()).constData(), 0700) == 0 || errno == EEXIST;
}

bool Allows(const QString& path, int mode) {
  return ::access(QFile::encodeName(path).constData(), mode) == 0;
}

bool IsMissing(const QString& path) {
  return !Allows(path, F_OK) && (errno == ENOENT || errno == ENOTDIR);
}

bool IsUnderstood(const QSettings& settings, const QString& name) {
  return name.count('/') <= kDeepest && Decode(settings.value(name).toString());
}

bool IsAllUnderstood(const QSettings& settings) {
  const QStringList names = settings.allKeys();
  return settings.status() == QSettings::NoError &&
         std::all_of(names.begin(), names.end(),
                     [&](const QString& name) { return IsUnderstood(settings, name); });
}

// What is damaged or no file of settings may hold what its owner can still mend, so it is kept under another
// name.
bool SetAside(const QString& file, bool (*keep)(const QString& from, const QString& to)) {
  const QString target = QFileInfo(file).canonicalFilePath();
  for (int number = 1; number <= kMostSetAside; ++number) {
    const QString aside = target + ".damaged-" + QString::number(number);
    if (!QFileInfo::exists(aside)) return keep(target, aside);
  }
  return false;
}

// The file behind links, of which the first may lead to one that isn't there yet.
QFileInfo BehindLinks(const QString& file) {
  const QFileInfo info(file);
  const QString real = info.canonicalFilePath();
  return QFileInfo(!real.isEmpty() ? real : info.isSymLink() ? info.symLinkTarget() : file);
}

// With the lock held, a temporary file is one that a killed process left. Six letters by chance, which mostly
// aren't all small; what a user calls a copy, registry.backup say, is. Of such names only those go that came
// after a lock whose process didn't live to take it away.
void RemoveLeftOvers(const QString& file, const QDateTime& abandoned) {
  static const QRegularExpression ending("\\.[A-Za-z]{6}$");
  static const QRegularExpression capital("[A-Z]");
  const QFileInfo written = BehindLinks(file);
  QDir folder = written.dir();
  for (const QFileInfo& other : folder.entryInfoList({written.fileName() + ".??????"}, QDir::Files)) {
    const QString name = other.fileName();
    const auto from = written.fileName().size();
    if (!ending.match(name, from).hasMatch()) continue;
    if (capital.match(name, from).hasMatch() || (abandoned.isValid() && other.lastModified() >= abandoned))
      folder.remove(name);
  }
}

// QSettings tells the states of a file by size and time, and one tick of the clock has room for several.
void MakeTimeDiffer(const QString& file, const QDateTime& before) {
  if (!before.isValid() || QFileInfo(file).lastModified() > before) return;
  QFile written(file);
  if (written.open(QIODevice::ReadWrite | QIODevice::ExistingOnly))
    written.setFileTime(before.addMSecs(1), QFileDevice::FileModificationTime);
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

Store::Keeper::Keeper(const QString& file) : QSettings(file, IniFormat) {
  if (const QCoreApplication* app = QCoreApplication::instance()) moveToThread(app->thread());
}

bool Store::Keeper::event(QEvent* event) {
  if (event->type() != QEvent::UpdateRequest && event->type() != QEvent::Timer)
    return QSettings::event(event);
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
  const QString file = Folder() + "/registry";
  if (file == m_file) return;
  m_settings.reset();
  m_file = file;
  m_pending = m_damaged = false;
}

LSTATUS Store::Refresh() {
  UseCurrentFile();
  const QFileInfo state(m_file);
  if (!IsMissing(m_file) && (!state.isFile() || !Allows(m_file, R_OK))) return ERROR_ACCESS_DENIED;
  const auto move = [](const QString& from, const QString& to) { return QFile::rename(from, to); };
  if (state.size() > kMostBytes && !SetAside(m_file, move)) return ERROR_ACCESS_DENIED;
  if (m_settings && m_pending) return ERROR_SUCCESS;  // a fresh look would try to save as well
  // A fresh one reads what changed, and its status speaks of nothing else.
  const QSettings fresh(m_file, QSettings::IniFormat);
  const bool understood = IsAllUnderstood(fresh);
  if (!m_settings) {
    static const int atEnd = std::atexit([] {
      std::unique_lock lock(Mutex());
      Instance().SaveWithin(lock);
    });
    static_cast<void>(atEnd);
    m_settings = std::make_unique<Keeper>(m_file);
  }
  if (!understood && !TakeInOldFormat()) m_damaged = true;
  return ERROR_SUCCESS;
}

// Before it was an INI file, a first line told what it was, and lines like "Scale"=dword:00000064 held the
// numbers. To QSettings the quotation marks are part of the name.
bool Store::TakeInOldFormat() {
  QFile file(m_file);
  if (!file.open(QIODevice::ReadOnly) || file.readLine(100).trimmed() != "Tessarel12 registry 1")
    return false;
  for (const QString& name : m_settings->allKeys()) {
    const QString text = m_settings->value(name).toString();
    bool isNumber = false;
    const quint32 number = text.mid(6).toUInt(&isNumber, 16);
    m_settings->remove(name);
    if (text.startsWith("dword:") && isNumber) m_settings->setValue(QString(name).remove('"'), number);
  }
  m_pending = true;
  return true;
}

bool Store::IsWritable() const {
  // The file is replaced rather than written, yet its own protection counts: it tells what the user wants.
  return MakeFolder() && (Allows(m_file, W_OK) || errno == ENOENT) && Allows(Folder(), W_OK | X_OK);
}

bool Store::Holds(const QString& path) const {
  const QStringList names = m_settings->allKeys();
  return std::any_of(names.begin(), names.end(),
                     [&](const QString& name) { return name.startsWith(path + '/', Qt::CaseInsensitive); });
}

QString Store::Spelled(const QString& name) const {
  for (const QString& stored : m_settings->allKeys())
    if (stored.compare(name, Qt::CaseInsensitive) == 0) return stored;
  return name;
}

std::optional<Value> Store::Get(const QString& name) const {
  return Decode(m_settings->value(Spelled(name)).toString());
}

LSTATUS Store::Put(const QString& name, const Value& value, std::unique_lock<std::mutex>& lock) {
  const QString key = Spelled(name);
  const QVariant before = m_settings->value(key);
  const QString text = Encode(value);
  if (before.toString() == text) return ERROR_SUCCESS;
  if (QFileInfo(m_file).size() + 3 * name.size() + text.size() > kMostBytes) return ERROR_WRITE_FAULT;
  m_settings->setValue(key, text);
  m_pending = true;
  const LSTATUS error = SaveWithin(lock);
  if (error != ERROR_SUCCESS) before.isValid() ? m_settings->setValue(key, before) : m_settings->remove(key);
  return error;
}

LSTATUS Store::PutSoon(const QString& name, const Value& value) {
  m_settings->setValue(name, Encode(value));
  m_pending = true;
  const LSTATUS error = Save();
  return error == ERROR_LOCK_VIOLATION ? ERROR_SUCCESS : error;
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
  return error == ERROR_LOCK_VIOLATION ? ERROR_SUCCESS : error;
}

LSTATUS Store::Save() {
  if (!m_pending) return ERROR_SUCCESS;
  const SizeLimitSignalHeld held;
  const QDateTime abandoned = QFileInfo(m_file + ".guard").lastModified();
  QLockFile lock(m_file + ".guard");
  if (const LSTATUS error = TryLock(lock); error != ERROR_SUCCESS) return error;
  {
    // QSettings takes this one, and would wait for it.
    QLockFile inner(m_file + ".lock");
    if (const LSTATUS error = TryLock(inner); error != ERROR_SUCCESS) return error;
  }
  RemoveLeftOvers(m_file, abandoned);
  if (m_damaged && !Mend()) return ERROR_WRITE_FAULT;
  const QDateTime before = QFileInfo(m_file).lastModified();
  // All QSettings of a file share their changes: making one saves them, and its status tells how that went.
  if (QSettings(m_file, QSettings::IniFormat).status() == QSettings::AccessError) return ERROR_WRITE_FAULT;
  MakeTimeDiffer(m_file, before);
  m_pending = m_damaged = false;
  return ERROR_SUCCESS;
}

bool Store::Mend() {
  const auto copy = [](const QString& from, const QString& to) { return QFile::copy(from, to); };
  if (QFileInfo::exists(m_file) && !SetAside(m_file, copy)) return false;
  for (const QString& name : m_settings->allKeys())
    if (!IsUnderstood(*m_settings, name)) m_settings->remove(name);
  return true;
}

}  // namespace platform::registry
