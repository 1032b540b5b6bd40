#include "platform/spooler/detail/queues.h"

#ifdef TESSAREL_CUPS
#include <chrono>
#include <map>
#include <memory>

#include "platform/spooler/detail/beside.h"
#include "platform/spooler/detail/cups_destinations.h"
#include "platform/spooler/detail/hand_over.h"
#include "platform/spooler/detail/spool_file.h"
#include "platform/spooler/print_records.h"
#endif

namespace platform {

#ifdef TESSAREL_CUPS
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

struct Reason {
  const char* name;
  DWORD status;
};

constexpr Reason kReasons[] = {
    {"media-empty", PRINTER_STATUS_PAPER_OUT},        {"media-needed", PRINTER_STATUS_PAPER_OUT},
    {"media-jam", PRINTER_STATUS_PAPER_JAM},          {"offline", PRINTER_STATUS_OFFLINE},
    {"connecting-to-device", PRINTER_STATUS_OFFLINE}, {"toner-low", PRINTER_STATUS_TONER_LOW},
    {"marker-supply-low", PRINTER_STATUS_TONER_LOW},  {"door-open", PRINTER_STATUS_DOOR_OPEN},
    {"cover-open", PRINTER_STATUS_DOOR_OPEN},
};

DWORD StatusOf(const cups_dest_t& dest) {
  DWORD status = 0;
  const std::string state = cups::Option(dest, "printer-state");
  if (state == std::to_string(IPP_PSTATE_PROCESSING)) status |= PRINTER_STATUS_PRINTING;
  if (state == std::to_string(IPP_PSTATE_STOPPED)) status |= PRINTER_STATUS_PAUSED;
  if (cups::Option(dest, "printer-is-accepting-jobs") == "false") status |= PRINTER_STATUS_NOT_AVAILABLE;
  const std::string reasons = cups::Option(dest, "printer-state-reasons");
  for (const Reason& reason : kReasons)
    if (reasons.find(reason.name) != std::string::npos) status |= reason.status;
  return status;
}

PrintQueue QueueOf(const cups_dest_t& dest, const cups::Details& details) {
  PrintQueue queue;
  queue.name = cups::Destinations::NameOf(dest);
  queue.comment = cups::Option(dest, "printer-info");
  queue.location = cups::Option(dest, "printer-location");
  queue.model = cups::Option(dest, "printer-make-and-model");
  queue.port = cups::Option(dest, "device-uri");
  queue.status = StatusOf(dest);
  queue.accepting = (queue.status & PRINTER_STATUS_NOT_AVAILABLE) == 0;
  queue.dpiX = details.dpiX;
  queue.dpiY = details.dpiY;
  queue.papers = details.papers;
  return queue;
}

/// The default with its instance, which the destinations' own marks lose beside saved options.
std::string DefaultName() {
  cups_dest_t* const dest = ::cupsGetNamedDest(CUPS_HTTP_DEFAULT, nullptr, nullptr);
  if (dest == nullptr) return "";
  std::string name = cups::Destinations::NameOf(*dest);
  ::cupsFreeDests(1, dest);
  return name;
}

/// What the service has said, and when it said it of each queue: papers and dots are a request for each.
struct Answer {
  bool reached = false;
  std::vector<PrintQueue> queues;
  std::map<std::string, std::pair<Clock::time_point, cups::Details>> details;
};

Answer Ask(Answer known, std::chrono::seconds oldestDetails) {
  cups::Destinations destinations;
  const auto now = Clock::now();
  std::vector<PrintQueue> queues;
  for (cups_dest_t& dest : destinations.All()) {
    auto& [when, details] = known.details[cups::Destinations::NameOf(dest)];
    if (details.papers.empty() || now - when > oldestDetails) {
      details = cups::AskDetails(dest);
      when = now;
    }
    queues.push_back(QueueOf(dest, details));
  }
  const bool reached = !queues.empty() || ::cupsLastError() <= IPP_STATUS_OK_EVENTS_COMPLETE ||
                       ::cupsLastError() == IPP_STATUS_ERROR_NOT_FOUND;
  const std::string preferred = queues.empty() ? "" : DefaultName();
  for (PrintQueue& queue : queues) queue.isDefault = queue.name == preferred;
  known.reached = reached;
  known.queues = std::move(queues);
  return known;
}

class CupsService : public PrintService {
 public:
  std::optional<std::vector<PrintQueue>> Queues(ListAge age) override {
    // Programs ask several times in a row; asking takes up to a second where printers are searched for.
    const bool now = age == ListAge::New;
    if (!now && m_asked && Clock::now() - m_when < 2s) return Known();
    // A service that doesn't answer is asked once, however often programs ask.
    if (!m_asking) m_asking.emplace([known = m_known, now] { return Ask(known, now ? 2s : 30s); });
    constexpr auto kPatience = 3s;
    const auto answer = m_asking->WaitFor(m_silent ? 50ms : kPatience);
    m_silent = !answer;
    if (!answer) return Known();
    m_asking.reset();
    m_known = *answer;
    m_asked = true;
    m_when = Clock::now();
    return Known();
  }

  int Send(const std::string& queue, const PrintJob& job) override {
    m_asked = false;
    cups::Document document{job.title, job.paper, std::make_shared<FileDescriptor>(job.file.Duplicate()),
                            nullptr};
    if (!document.file->IsOpen()) return SP_ERROR;
    return HandOver(job.goOn, [queue, document](const std::function<bool()>& mayGoOn) mutable {
      document.mayGoOn = mayGoOn;
      return cups::Transfer(queue, document);
    });
  }

  std::function<JobState()> StateOf(const std::string& queue, int job) override {
    return [queue, job] { return cups::StateOfJob(queue, job); };
  }

 private:
  std::optional<std::vector<PrintQueue>> Known() const {
    return m_known.reached ? std::optional(m_known.queues) : std::nullopt;
  }

  bool m_asked = false;
  bool m_silent = false;
  Clock::time_point m_when;
  Answer m_known;
  std::optional<Beside<Answer>> m_asking;
};

}  // namespace

PrintService& SystemPrintService() {
  static CupsService service;
  return service;
}

#else
namespace {

class NoService : public PrintService {
 public:
  std::optional<std::vector<PrintQueue>> Queues(ListAge) override { return std::nullopt; }
  int Send(const std::string&, const PrintJob&) override { return -1; }
};

}  // namespace

PrintService& SystemPrintService() {
  static NoService service;
  return service;
}
#endif

}  // namespace platform
