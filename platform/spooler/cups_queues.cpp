#include <chrono>

#include "platform/spooler/detail/queues.h"

#ifdef TESSAREL_CUPS
#include <cups/cups.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <span>

#include "platform/spooler/detail/spool_file.h"
#include "platform/spooler/print_records.h"
#endif

namespace platform {

#ifdef TESSAREL_CUPS
namespace {

using Clock = std::chrono::steady_clock;

/// The destinations of the service, with the options of each.
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

struct FreeReply {
  void operator()(ipp_t* reply) const { ::ippDelete(reply); }
};
using Reply = std::unique_ptr<ipp_t, FreeReply>;

std::string Option(const cups_dest_t& dest, const char* name) {
  const char* value = ::cupsGetOption(name, dest.num_options, dest.options);
  return value == nullptr ? "" : value;
}

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
  const std::string state = Option(dest, "printer-state");
  if (state == std::to_string(IPP_PSTATE_PROCESSING)) status |= PRINTER_STATUS_PRINTING;
  if (state == std::to_string(IPP_PSTATE_STOPPED)) status |= PRINTER_STATUS_PAUSED;
  if (Option(dest, "printer-is-accepting-jobs") == "false") status |= PRINTER_STATUS_NOT_AVAILABLE;
  const std::string reasons = Option(dest, "printer-state-reasons");
  for (const Reason& reason : kReasons)
    if (reasons.find(reason.name) != std::string::npos) status |= reason.status;
  return status;
}

Paper PaperOf(const cups_size_t& size) {
  return {size.media, size.width, size.length, size.left, size.top, size.right, size.bottom};
}

/// Papers and dots of a queue: a request to the service, so asked for once.
struct Details {
  std::vector<Paper> papers;
  int dpiX = 300;
  int dpiY = 300;
};

Details AskDetails(cups_dest_t& dest) {
  Details details;
  const DestInfo info(::cupsCopyDestInfo(CUPS_HTTP_DEFAULT, &dest));
  cups_size_t size{};
  if (info && ::cupsGetDestMediaDefault(CUPS_HTTP_DEFAULT, &dest, info.get(), 0, &size) != 0)
    details.papers.push_back(PaperOf(size));
  const int count = info ? ::cupsGetDestMediaCount(CUPS_HTTP_DEFAULT, &dest, info.get(), 0) : 0;
  for (int i = 0; i < count; ++i)
    if (::cupsGetDestMediaByIndex(CUPS_HTTP_DEFAULT, &dest, info.get(), i, 0, &size) != 0)
      details.papers.push_back(PaperOf(size));
  // A queue that tells nothing: A4 with the margins of most devices.
  if (details.papers.empty())
    details.papers.push_back({"iso_a4_210x297mm", 21000, 29700, 423, 423, 423, 423});
  ipp_attribute_t* resolution =
      info ? ::cupsFindDestDefault(CUPS_HTTP_DEFAULT, &dest, info.get(), "printer-resolution") : nullptr;
  if (resolution != nullptr) {
    ipp_res_t unit = IPP_RES_PER_INCH;
    int y = 0;
    const int x = ::ippGetResolution(resolution, 0, &y, &unit);
    const double factor = unit == IPP_RES_PER_CM ? 2.54 : 1;
    if (x > 0) details.dpiX = static_cast<int>(std::lround(x * factor));
    if (x > 0) details.dpiY = static_cast<int>(std::lround((y > 0 ? y : x) * factor));
  }
  return details;
}

/// A document on its way into a queue. Cancelled by the destructor unless it arrived whole.
class Transfer {
 public:
  Transfer(cups_dest_t& dest, cups_dinfo_t* info) : m_dest(dest), m_info(info) {}
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;
  ~Transfer() {
    ::cupsFreeOptions(m_optionCount, m_options);
    if (m_job > 0 && !m_whole) ::cupsCancelDestJob(CUPS_HTTP_DEFAULT, &m_dest, m_job);
  }

  int Run(const PrintJob& job, bool setPaper) {
    // Copies and sizes come out of the document.
    Add("copies", "1");
    Add("print-scaling", "none");
    if (setPaper) Add("media", job.paper.name.c_str());
    const char* title = job.title.c_str();
    if (::cupsCreateDestJob(CUPS_HTTP_DEFAULT, &m_dest, m_info, &m_job, title, m_optionCount, m_options) >
        IPP_STATUS_OK_EVENTS_COMPLETE)
      return SP_ERROR;
    if (::cupsStartDestDocument(CUPS_HTTP_DEFAULT, &m_dest, m_info, m_job, title, CUPS_FORMAT_PDF, 0, nullptr,
                                1) != HTTP_STATUS_CONTINUE)
      return SP_ERROR;
    if (const int result = SendPieces(job); result < 0) return result;
    if (::cupsFinishDestDocument(CUPS_HTTP_DEFAULT, &m_dest, m_info) > IPP_STATUS_OK_EVENTS_COMPLETE)
      return SP_ERROR;
    const int result = State();
    m_whole = result > 0;
    return result;
  }

 private:
  void Add(const char* name, const char* value) {
    m_optionCount = ::cupsAddOption(name, value, m_optionCount, &m_options);
  }

  static int SendPieces(const PrintJob& job) {
    std::array<std::uint8_t, std::size_t{1} << 16> piece{};
    for (std::size_t position = 0;;) {
      const bool goOn = job.goOn();
      const std::size_t got = goOn ? job.file.Read(position, piece) : 0;
      if (!goOn) return SP_APPABORT;
      if (job.file.Error() != 0) return job.file.Error();
      if (got == 0) return 1;
      if (::cupsWriteRequestData(CUPS_HTTP_DEFAULT, reinterpret_cast<const char*>(piece.data()), got) !=
          HTTP_STATUS_CONTINUE)
        return SP_ERROR;
      position += got;
    }
  }

  /// A queue takes jobs for a printer that is gone; what became of this one is told by its state alone.
  int State() const {
    const std::string uri = Option(m_dest, "printer-uri-supported");
    if (uri.empty()) return 1;
    ipp_t* request = ::ippNewRequest(IPP_OP_GET_JOB_ATTRIBUTES);
    ::ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, uri.c_str());
    ::ippAddInteger(request, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "job-id", m_job);
    ::ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, ::cupsUser());
    const Reply reply(::cupsDoRequest(CUPS_HTTP_DEFAULT, request, "/"));
    ipp_attribute_t* state = reply ? ::ippFindAttribute(reply.get(), "job-state", IPP_TAG_ENUM) : nullptr;
    if (state == nullptr) return ::cupsLastError() == IPP_STATUS_ERROR_NOT_FOUND ? SP_ERROR : 1;
    const int value = ::ippGetInteger(state, 0);
    if (value == IPP_JSTATE_CANCELED) return SP_USERABORT;
    return value == IPP_JSTATE_ABORTED ? SP_ERROR : 1;
  }

  cups_dest_t& m_dest;
  cups_dinfo_t* m_info;
  cups_option_t* m_options = nullptr;
  int m_optionCount = 0;
  int m_job = 0;
  bool m_whole = false;
};

class CupsService : public PrintService {
 public:
  std::optional<std::vector<PrintQueue>> Queues() override {
    // Programs ask several times in a row; asking takes up to a second where printers are searched for.
    constexpr auto kFresh = std::chrono::seconds(2);
    if (m_asked && Clock::now() - m_when < kFresh) return m_queues;
    m_queues = Ask();
    m_asked = true;
    m_when = Clock::now();
    return m_queues;
  }

  int Send(const std::string& queue, const PrintJob& job) override {
    m_asked = false;
    Destinations destinations;
    cups_dest_t* dest = destinations.Find(queue);
    if (dest == nullptr || Option(*dest, "printer-is-accepting-jobs") == "false") return SP_ERROR;
    const DestInfo info(::cupsCopyDestInfo(CUPS_HTTP_DEFAULT, dest));
    if (!info) return SP_ERROR;
    const Details& details = DetailsOf(*dest);
    Transfer transfer(*dest, info.get());
    return transfer.Run(job, !job.paper.name.empty() && job.paper.name != details.papers.front().name);
  }

 private:
  std::optional<std::vector<PrintQueue>> Ask() {
    Destinations destinations;
    std::vector<PrintQueue> queues;
    for (cups_dest_t& dest : destinations.All()) {
      const Details& details = DetailsOf(dest);
      PrintQueue queue;
      queue.name = Destinations::NameOf(dest);
      queue.comment = Option(dest, "printer-info");
      queue.location = Option(dest, "printer-location");
      queue.model = Option(dest, "printer-make-and-model");
      queue.port = Option(dest, "device-uri");
      queue.isDefault = dest.is_default != 0;
      queue.status = StatusOf(dest);
      queue.accepting = (queue.status & PRINTER_STATUS_NOT_AVAILABLE) == 0;
      queue.dpiX = details.dpiX;
      queue.dpiY = details.dpiY;
      queue.papers = details.papers;
      queues.push_back(queue);
    }
    const bool reached = !queues.empty() || ::cupsLastError() <= IPP_STATUS_OK_EVENTS_COMPLETE ||
                         ::cupsLastError() == IPP_STATUS_ERROR_NOT_FOUND;
    return reached ? std::optional(queues) : std::nullopt;
  }

  const Details& DetailsOf(cups_dest_t& dest) {
    constexpr auto kFresh = std::chrono::seconds(30);
    const auto now = Clock::now();
    auto& [when, details] = m_details[Destinations::NameOf(dest)];
    if (details.papers.empty() || now - when > kFresh) {
      details = AskDetails(dest);
      when = now;
    }
    return details;
  }

  bool m_asked = false;
  Clock::time_point m_when;
  std::optional<std::vector<PrintQueue>> m_queues;
  std::map<std::string, std::pair<Clock::time_point, Details>> m_details;
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
  std::optional<std::vector<PrintQueue>> Queues() override { return std::nullopt; }
  int Send(const std::string&, const PrintJob&) override { return -1; }
};

}  // namespace

PrintService& SystemPrintService() {
  static NoService service;
  return service;
}
#endif

}  // namespace platform
