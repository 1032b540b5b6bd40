#include "platform/window/drop_files.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "platform/base/detail/handle_table.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

namespace {

struct Drop {
  std::vector<std::string> paths;
};

platform::HandleTable<Drop, HDROP>& Drops() {
  static auto* table = new platform::HandleTable<Drop, HDROP>;  // lives as long as any window
  return *table;
}

std::vector<std::string> LocalPaths(const QMimeData& data) {
  std::vector<std::string> paths;
  for (const QUrl& url : data.urls())
    if (url.isLocalFile()) paths.push_back(url.toLocalFile().toStdString());
  return paths;
}

}  // namespace

namespace platform {

bool CarriesFiles(const QMimeData* data) {
  return data != nullptr && !LocalPaths(*data).empty();
}

void QueueDrop(HWND window, const QDropEvent& event) {
  // Posted: the program that the files come from waits for the end of the event, and opening may take long.
  auto drop = std::make_unique<Drop>(Drop{LocalPaths(*event.mimeData())});
  PostMessage(window, WM_DROPFILES, reinterpret_cast<WPARAM>(Drops().Add(std::move(drop))));
}

}  // namespace platform

void DragAcceptFiles(HWND window, BOOL accept) {
  const auto style = static_cast<DWORD>(GetWindowLong(window, GWL_EXSTYLE));
  SetWindowLong(window, GWL_EXSTYLE,
                accept != 0 ? style | WS_EX_ACCEPTFILES : style & ~static_cast<DWORD>(WS_EX_ACCEPTFILES));
}

UINT DragQueryFileA(HDROP handle, UINT index, LPSTR buffer, UINT bufferSize) {
  const Drop* drop = Drops().Get(handle);
  if (drop == nullptr) return 0;
  if (index == 0xFFFFFFFF) return static_cast<UINT>(drop->paths.size());
  if (index >= drop->paths.size()) return 0;
  const std::string& path = drop->paths[index];
  if (buffer == nullptr) return static_cast<UINT>(path.size());
  if (bufferSize == 0) return 0;
  const std::size_t length = std::min(path.size(), static_cast<std::size_t>(bufferSize) - 1);
  std::memcpy(buffer, path.data(), length);
  buffer[length] = 0;
  return static_cast<UINT>(length);
}

void DragFinish(HDROP drop) {
  Drops().Remove(drop);
}
