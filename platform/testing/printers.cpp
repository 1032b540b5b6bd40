#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <memory>

#include "platform/spooler/detail/queues.h"
#include "platform/spooler/detail/spool_file.h"
#include "platform/spooler/print_records.h"
#include "tessarel12_testing.h"

namespace platform {
namespace {

/// Copies the document piece by piece, asking between the pieces.
int CopyDocument(const PrintJob& job, std::ofstream& target) {
  std::vector<std::uint8_t> piece(std::size_t{1} << 16);
  for (std::size_t position = 0;;) {
    if (!job.goOn()) return SP_APPABORT;
    const std::size_t got = job.file.Read(position, piece);
    if (got == 0) break;
    target.write(reinterpret_cast<const char*>(piece.data()), static_cast<std::streamsize>(got));
    position += got;
  }
  target.flush();
  if (job.file.Error() != 0) return job.file.Error();
  return target ? 1 : SP_OUTOFDISK;
}

/// Queues that write into folders.
class TestService : public PrintService {
 public:
  explicit TestService(std::span<const TestPrinter> printers)
      : m_printers(printers.begin(), printers.end()) {}

  std::optional<std::vector<PrintQueue>> Queues(ListAge /*age*/) override {
    std::vector<PrintQueue> queues;
    for (const auto& printer : m_printers) queues.push_back(QueueOf(printer));
    return queues;
  }

  int Send(const std::string& queue, const PrintJob& job) override {
    const auto printer = std::find_if(m_printers.begin(), m_printers.end(),
                                      [&](const auto& candidate) { return candidate.name == queue; });
    if (printer == m_printers.end() || printer->gone || !printer->accepting) return SP_ERROR;
    const std::string path = printer->folder + "/job-" + std::to_string(++m_jobs) + ".pdf";
    std::ofstream target(path, std::ios::binary);
    if (!target) return SP_ERROR;
    const int result = CopyDocument(job, target);
    if (result > 0) return result;
    target.close();
    ::unlink(path.c_str());
    return result;
  }

 private:
  static PrintQueue QueueOf(const TestPrinter& printer) {
    PrintQueue queue;
    queue.name = printer.name;
    queue.comment = printer.comment;
    queue.location = printer.location;
    queue.model = printer.model;
    queue.port = "file:" + printer.folder;
    queue.isDefault = printer.isDefault;
    queue.accepting = printer.accepting;
    queue.status = printer.status | (printer.accepting ? 0U : PRINTER_STATUS_NOT_AVAILABLE);
    queue.dpiX = queue.dpiY = printer.dpi;
    const int margin = printer.margin;
    queue.papers = {{"default", printer.paperWidth, printer.paperLength, margin, margin, margin, margin}};
    return queue;
  }

  std::vector<TestPrinter> m_printers;
  int m_jobs = 0;
};

}  // namespace

void testing::SetTestPrinters(std::span<const TestPrinter> printers) {
  static std::unique_ptr<PrintService> service;
  service = std::make_unique<TestService>(printers);
  TheSeams().printService = service.get();
}

}  // namespace platform
