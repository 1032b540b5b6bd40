#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/base/types.h"

namespace platform {

class SpoolFile;

/// A kind of paper, lying upright. Hundredths of a millimetre.
struct Paper {
  std::string name;  ///< the print service's
  int width = 21000;
  int length = 29700;
  int left = 0;  ///< what of it can't be printed on
  int top = 0;
  int right = 0;
  int bottom = 0;
};

/// A queue of the print service.
struct PrintQueue {
  std::string name;
  std::string comment;
  std::string location;
  std::string model;
  std::string port;
  bool isDefault = false;
  bool accepting = true;
  DWORD status = 0;  ///< PRINTER_STATUS_...
  int dpiX = 300;
  int dpiY = 300;
  std::vector<Paper> papers;  ///< the queue's own first; never empty
};

/// A finished document for a queue.
struct PrintJob {
  SpoolFile& file;
  std::string title;
  Paper paper;
  /// Asked while the document is sent; false: stop.
  std::function<bool()> goOn;
};

/// What the service says of a job that it has taken.
enum class JobState { Unknown, Waiting, Done, Stopped, Cancelled, Refused };

/// How old a list of queues may be.
enum class ListAge { FewSeconds, New };

/// The desktop's print service, or what stands in for it.
class PrintService {
 public:
  PrintService() = default;
  PrintService(const PrintService&) = delete;
  PrintService& operator=(const PrintService&) = delete;
  virtual ~PrintService() = default;

  /// None if the service can't be reached. One that is slow to answer is waited for briefly only: then the
  /// list is that of the time before.
  virtual std::optional<std::vector<PrintQueue>> Queues(ListAge age) = 0;
  /// The job's number, above 0; or SP_... and the queue holds nothing of the job.
  virtual int Send(const std::string& queue, const PrintJob& job) = 0;
  /// A question that can be asked on any thread; none where there is nothing to follow.
  virtual std::function<JobState()> StateOf(const std::string& /*queue*/, int /*job*/) { return nullptr; }
};

PrintService& CurrentPrintService();
/// A queue by its exact name. Asks the service anew before it says that there is none.
std::optional<PrintQueue> FindQueue(const std::string& name);
/// The user's default queue at this moment.
std::optional<PrintQueue> DefaultQueue();

/// The print service of this system; without one, a service that can't be reached.
PrintService& SystemPrintService();

}  // namespace platform
