#pragma once

#include <cups/cups.h>

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/base/detail/file_descriptor.h"
#include "platform/spooler/detail/queues.h"

namespace platform::cups {

/// The destinations of the service, with the options that the user has saved for each, instances included.
class Destinations {
 public:
  Destinations() : m_count(::cupsGetDests2(CUPS_HTTP_DEFAULT, &m_dests)) {}
  Destinations(const Destinations&) = delete;
  Destinations& operator=(const Destinations&) = delete;
  ~Destinations() { ::cupsFreeDests(m_count, m_dests); }

  std::span<cups_dest_t> All() { return {m_dests, static_cast<std::size_t>(m_count)}; }
  cups_dest_t* Find(const std::string& name) {
    for (cups_dest_t& dest : All())
      if (NameOf(dest) == name) return &dest;
    return nullptr;
  }
  /// The queue with its instance, where the user has set one up.
  static std::string NameOf(const cups_dest_t& dest) {
    return dest.instance == nullptr ? dest.name : std::string(dest.name) + "/" + dest.instance;
  }

 private:
  cups_dest_t* m_dests = nullptr;
  int m_count;
};

struct FreeInfo {
  void operator()(cups_dinfo_t* info) const { ::cupsFreeDestInfo(info); }
};
using DestInfo = std::unique_ptr<cups_dinfo_t, FreeInfo>;

inline std::string Option(const cups_dest_t& dest, const char* name) {
  const char* value = ::cupsGetOption(name, dest.num_options, dest.options);
  return value == nullptr ? "" : value;
}

/// Papers and dots of a queue.
struct Details {
  std::vector<Paper> papers;  ///< that of a job without wishes first
  int dpiX = 300;
  int dpiY = 300;
};

/// A request to the service, or several.
Details AskDetails(cups_dest_t& dest);

/// A finished document that the thread which sends it owns.
struct Document {
  std::string title;
  Paper paper;  ///< that was laid out
  std::shared_ptr<FileDescriptor> file;
  std::function<bool()> mayGoOn;  ///< asked before each piece; false: stop
};

/// Hands a document over. Above 0 the job's number, else SP_...
int Transfer(const std::string& queue, const Document& document);
/// What is known of a job that was handed over.
JobState StateOfJob(const std::string& queue, int job);

}  // namespace platform::cups
