#include <array>
#include <cstdlib>
#include <memory>

#include "platform/spooler/detail/cups_destinations.h"
#include "platform/spooler/detail/job_title.h"
#include "platform/spooler/print_records.h"

namespace platform::cups {
namespace {

struct FreeReply {
  void operator()(ipp_t* reply) const { ::ippDelete(reply); }
};
using Reply = std::unique_ptr<ipp_t, FreeReply>;

/// Saved options that the layout has settled already: the document's pages are the sheets.
bool IsSettled(const std::string& option) {
  for (const char* name :
       {"copies", "print-scaling", "media", "PageSize", "PageRegion", "page-ranges", "fit-to-page", "fitplot",
        "scaling", "natural-scaling", "landscape", "orientation-requested"})
    if (option == name) return true;
  return false;
}

/// The wish for the paper that was laid out, with the tray that the user has saved beside it.
std::string MediaOf(const cups_dest_t& dest, const Paper& laidOut, const Details& details) {
  std::string saved = Option(dest, "media");
  if (!saved.empty() && laidOut.name == details.papers.front().name) return saved;
  if (!laidOut.name.empty()) return laidOut.name;
  std::array<char, 128> name{};
  const auto fits =
      ::pwgFormatSizeName(name.data(), name.size(), "custom", "sheet", laidOut.width, laidOut.length, "mm");
  return fits != 0 ? name.data() : "";
}

/// A document on its way into a queue. Cancelled by the destructor unless it arrived whole.
class Sending {
 public:
  Sending(cups_dest_t& dest, cups_dinfo_t* info) : m_dest(dest), m_info(info) {}
  Sending(const Sending&) = delete;
  Sending& operator=(const Sending&) = delete;
  ~Sending() {
    ::cupsFreeOptions(m_optionCount, m_options);
    if (m_job > 0 && !m_whole) ::cupsCancelDestJob(CUPS_HTTP_DEFAULT, &m_dest, m_job);
  }

  int Run(const Document& document, const std::string& media) {
    AddSaved();
    // Copies and sizes come out of the document.
    Add("copies", "1");
    Add("print-scaling", "none");
    if (!media.empty()) Add("media", media.c_str());
    const std::string title = JobTitle(document.title);
    if (::cupsCreateDestJob(CUPS_HTTP_DEFAULT, &m_dest, m_info, &m_job, title.c_str(), m_optionCount,
                            m_options) > IPP_STATUS_OK_EVENTS_COMPLETE)
      return SP_ERROR;
    if (::cupsStartDestDocument(CUPS_HTTP_DEFAULT, &m_dest, m_info, m_job, title.c_str(), CUPS_FORMAT_PDF, 0,
                                nullptr, 1) != HTTP_STATUS_CONTINUE)
      return SP_ERROR;
    if (const int result = SendPieces(document); result < 0) return result;
    if (::cupsFinishDestDocument(CUPS_HTTP_DEFAULT, &m_dest, m_info) > IPP_STATUS_OK_EVENTS_COMPLETE)
      return SP_ERROR;
    const JobState state = StateOfJob(Destinations::NameOf(m_dest), m_job);
    m_whole = state != JobState::Cancelled && state != JobState::Refused;
    if (m_whole) return m_job;
    return state == JobState::Cancelled ? SP_USERABORT : SP_ERROR;
  }

 private:
  void Add(const char* name, const char* value) {
    m_optionCount = ::cupsAddOption(name, value, m_optionCount, &m_options);
  }
  void AddSaved() {
    for (const cups_option_t& option :
         std::span(m_dest.options, static_cast<std::size_t>(m_dest.num_options)))
      if (!IsSettled(option.name)) Add(option.name, option.value);
  }

  static int SendPieces(const Document& document) {
    std::array<std::uint8_t, std::size_t{1} << 16> piece{};
    for (std::size_t position = 0;;) {
      if (!document.mayGoOn()) return SP_APPABORT;
      const ssize_t got =
          ::pread(document.file->Get(), piece.data(), piece.size(), static_cast<off_t>(position));
      if (got < 0 && errno == EINTR) continue;
      if (got < 0) return SP_ERROR;
      if (got == 0) return 1;
      if (::cupsWriteRequestData(CUPS_HTTP_DEFAULT, reinterpret_cast<const char*>(piece.data()),
                                 static_cast<std::size_t>(got)) != HTTP_STATUS_CONTINUE)
        return SP_ERROR;
      position += static_cast<std::size_t>(got);
    }
  }

  cups_dest_t& m_dest;
  cups_dinfo_t* m_info;
  cups_option_t* m_options = nullptr;
  int m_optionCount = 0;
  int m_job = 0;
  bool m_whole = false;
};

JobState StateOf(ipp_t* job) {
  ipp_attribute_t* state = ::ippFindAttribute(job, "job-state", IPP_TAG_ENUM);
  switch (state == nullptr ? 0 : ::ippGetInteger(state, 0)) {
    case IPP_JSTATE_COMPLETED:
      return JobState::Done;
    case IPP_JSTATE_CANCELED:
      return JobState::Cancelled;
    case IPP_JSTATE_ABORTED:
      return JobState::Refused;
    case IPP_JSTATE_STOPPED:
      return JobState::Stopped;
    default:
      return JobState::Waiting;
  }
}

}  // namespace

int Transfer(const std::string& queue, const Document& document) {
  Destinations destinations;
  cups_dest_t* dest = destinations.Find(queue);
  if (dest == nullptr || Option(*dest, "printer-is-accepting-jobs") == "false") return SP_ERROR;
  const DestInfo info(::cupsCopyDestInfo(CUPS_HTTP_DEFAULT, dest));
  if (!info) return SP_ERROR;
  Sending sending(*dest, info.get());
  return sending.Run(document, MediaOf(*dest, document.paper, AskDetails(*dest)));
}

JobState StateOfJob(const std::string& queue, int job) {
  Destinations destinations;
  const cups_dest_t* dest = destinations.Find(queue);
  const std::string uri = dest == nullptr ? "" : Option(*dest, "printer-uri-supported");
  if (uri.empty()) return JobState::Unknown;
  ipp_t* request = ::ippNewRequest(IPP_OP_GET_JOB_ATTRIBUTES);
  ::ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, uri.c_str());
  ::ippAddInteger(request, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "job-id", job);
  ::ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, ::cupsUser());
  const Reply reply(::cupsDoRequest(CUPS_HTTP_DEFAULT, request, "/"));
  if (!reply || ::cupsLastError() > IPP_STATUS_OK_EVENTS_COMPLETE)
    return ::cupsLastError() == IPP_STATUS_ERROR_NOT_FOUND ? JobState::Refused : JobState::Unknown;
  const JobState state = StateOf(reply.get());
  const bool stopped = Option(*dest, "printer-state") == std::to_string(IPP_PSTATE_STOPPED);
  return state == JobState::Waiting && stopped ? JobState::Stopped : state;
}

}  // namespace platform::cups
