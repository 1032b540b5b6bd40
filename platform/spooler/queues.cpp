#include "platform/spooler/detail/queues.h"

#include "platform/base/seams.h"

namespace platform {

PrintService& CurrentPrintService() {
  PrintService* other = TheSeams().printService;
  return other != nullptr ? *other : SystemPrintService();
}

std::optional<PrintQueue> FindQueue(const std::string& name) {
  for (const ListAge age : {ListAge::FewSeconds, ListAge::New})
    if (const auto queues = CurrentPrintService().Queues(age))
      for (const PrintQueue& queue : *queues)
        if (queue.name == name) return queue;
  return std::nullopt;
}

std::optional<PrintQueue> DefaultQueue() {
  const auto queues = CurrentPrintService().Queues(ListAge::New);
  if (queues)
    for (const PrintQueue& queue : *queues)
      if (queue.isDefault) return queue;
  return std::nullopt;
}

}  // namespace platform
