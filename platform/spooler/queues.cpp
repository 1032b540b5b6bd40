#include "platform/spooler/detail/queues.h"

#include "platform/base/seams.h"

namespace platform {

PrintService& CurrentPrintService() {
  PrintService* other = TheSeams().printService;
  return other != nullptr ? *other : SystemPrintService();
}

std::optional<PrintQueue> FindQueue(const std::string& name) {
  const auto queues = CurrentPrintService().Queues();
  if (queues)
    for (const PrintQueue& queue : *queues)
      if (queue.name == name) return queue;
  return std::nullopt;
}

std::optional<PrintQueue> DefaultQueue() {
  const auto queues = CurrentPrintService().Queues();
  if (queues)
    for (const PrintQueue& queue : *queues)
      if (queue.isDefault) return queue;
  return std::nullopt;
}

}  // namespace platform
