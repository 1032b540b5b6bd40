// soak SECONDS SEED [EPISODE]: a user who does anything, over the four levels of use, with a look at the
// invariants after each step. A seed gives the same run again; with an episode's number that one alone is
// run.

#include <malloc.h>
#include <unistd.h>

#include <QApplication>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "library/resource_ids.h"
#include "platform/framework/dialog.h"
#include "tessarel12_testing.h"
#include "tests/frames/broken_pages.h"
#include "tests/soak/levels.h"

namespace fs = std::filesystem;
namespace ui = platform::testing;

namespace soak {
namespace {

constexpr int kSteps = 80;
constexpr unsigned kHang = 30;  // seconds
constexpr std::size_t kHeapGrowth = 24'000'000;
constexpr int kWarmUp = 4;  // episodes of a level before its state counts as the lasting one

/// The last deeds, for whoever has to find out.
std::deque<std::string>& Deeds() {
  static std::deque<std::string> deeds;
  return deeds;
}

unsigned g_seed = 0;
int g_episode = 0;

void PrintPlace() {
  std::printf("seed %u, episode %d; the last deeds:\n", g_seed, g_episode);
  for (const std::string& deed : Deeds()) std::printf("  %s\n", deed.c_str());
  std::fflush(stdout);
}

void OnSignal(int signal) {
  std::printf("FAILED: %s\n", signal == SIGALRM ? "a step hangs" : "a crash");
  PrintPlace();
  std::signal(signal, SIG_DFL);
  std::raise(signal == SIGALRM ? SIGABRT : signal);
}

class Folder {
 public:
  Folder() : m_path(fs::temp_directory_path() / ("tessarel-soak-" + std::to_string(getpid()))) {
    fs::create_directories(m_path);
    setenv("XDG_CONFIG_HOME", m_path.c_str(), 1);
    setenv("TMPDIR", m_path.c_str(), 1);
  }
  ~Folder() { fs::remove_all(m_path); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  void Clear() const {
    for (const auto& entry : fs::directory_iterator(m_path)) fs::remove_all(entry);
    fs::create_directories(m_path / "queue");
  }
  std::string Path(const std::string& name) const { return (m_path / name).string(); }

 private:
  fs::path m_path;
};

const Folder* g_folder = nullptr;

[[noreturn]] void Fail(const std::string& text) {
  std::printf("FAILED: %s\n", text.c_str());
  PrintPlace();
  if (g_folder != nullptr && std::getenv("SOAK_KEEP") == nullptr) fs::remove_all(g_folder->Path(""));
  std::_Exit(1);
}

class User {
 public:
  User(unsigned seed, const Folder& folder) : m_random(seed), m_folder(folder) {}

  void Run(int level) {
    m_level = MakeLevel(level);
    for (int step = 0; step < kSteps && m_level->Main() != nullptr; ++step) {
      alarm(kHang);
      Step();
      ui::PumpUntilIdle();
      alarm(0);
      Check();
    }
    ui::OnNextDialog(nullptr);
    m_level.reset();
    ui::PumpUntilIdle();
  }

 private:
  int Any(int low, int high) {
    return low + static_cast<int>(m_random() % static_cast<unsigned>(high - low + 1));
  }
  template <typename Range>
  auto AnyOf(const Range& range) {
    return range[static_cast<std::size_t>(Any(0, static_cast<int>(std::size(range)) - 1))];
  }
  void Note(const std::string& deed) {
    Deeds().push_back(std::string(m_level->Name()) + ": " + deed);
    if (Deeds().size() > 25) Deeds().pop_front();
  }

  std::string File() {
    const std::string name = "file-" + std::to_string(Any(0, 9)) + ".tif";
    const std::string path = m_folder.Path(name);
    if (!fs::exists(path) || Any(0, 5) == 0) WriteFile(path);
    return path;
  }
  /// Pages of all sizes, some damaged; now and then no picture, cut off, or gone.
  void WriteFile(const std::string& path) {
    static constexpr std::array kDepths = {1, 8, 24};
    const int pages = Any(1, 9);
    std::vector<test_pages::Page> made;
    for (int page = 0; page < pages; ++page) made.push_back({Any(1, 1200), Any(1, 1600), AnyOf(kDepths)});
    test_pages::Write(path, made);
    const int fate = Any(0, 9);
    if (fate == 0) test_pages::BreakPage(path, Any(1, pages));
    if (fate == 1) std::ofstream(path) << "no picture";
    if (fate == 2) fs::resize_file(path, fs::file_size(path) / 2);
    if (fate == 3) fs::remove(path);
  }

  POINT Point() { return {Any(-20, 900), Any(-20, 700)}; }

  void Step() {
    ui::OnNextDialog([this](HWND dialog) {
      static_cast<CDialog*>(CWnd::FromHandlePermanent(dialog))->EndDialog(Any(1, 2));
    });
    switch (Any(0, 11)) {
      case 0:
      case 1:
      case 2:
        return Command();
      case 3:
      case 4:
        return Key();
      case 5:
      case 6:
        return Mouse();
      case 7:
        return Wheel();
      case 8:
        return Open();
      case 9:
        return Size();
      case 10:
        return Bars();
      default:
        return Rarely();
    }
  }

  void Command() {
    static constexpr std::array kCommands = {
        ID_ZP_ROTATE_LEFT,        ID_ZP_ROTATE_RIGHT,  ID_ZP_ROTATE_180,
        ID_ZP_FILE_EXPORT,        ID_ZP_ZOOM_IN_MODE,  ID_ZP_ZOOM_FIT_TO_WIDTH,
        ID_ZP_ZOOM_FIT_TO_HEIGHT, ID_ZP_ZOOM_BEST_FIT, ID_ZP_ZOOM_CUSTOM,
        ID_ZP_PAGE_PRINT,         ID_ZP_DRAG_MODE,     ID_ZP_ZOOM_OUT_MODE,
        ID_ZP_ZOOM_SELECTED,      ID_ZP_FIRST_PAGE,    ID_ZP_LAST_PAGE,
        ID_ZP_GOTO_PAGE,          ID_ZP_ZOOM_OUT,      ID_ZP_ZOOM_IN,
        ID_ZP_NEXT_PAGE,          ID_ZP_PREV_PAGE,     ID_ZP_PAGE_PROPERTIES,
        ID_ZP_VIEW_THUMBNAILS,    ID_FILE_PRINT};
    const auto id = static_cast<UINT>(AnyOf(kCommands));
    Note("command " + std::to_string(id));
    ::SendMessage(m_level->Main(), WM_COMMAND, id, 0);
  }

  void Key() {
    static constexpr std::array kKeys = {VK_NEXT,   VK_PRIOR, VK_HOME,   VK_END,  VK_LEFT,
                                         VK_RIGHT,  VK_UP,    VK_DOWN,   VK_ADD,  VK_SUBTRACT,
                                         VK_ESCAPE, VK_TAB,   VK_RETURN, VK_SHIFT};
    const int key = AnyOf(kKeys);
    const bool shift = Any(0, 3) == 0;
    const bool control = Any(0, 3) == 0;
    Note("key " + std::to_string(key) + (shift ? " shift" : "") + (control ? " control" : ""));
    const HWND target = ::GetFocus() != nullptr && Any(0, 1) == 0 ? ::GetFocus() : m_level->Page();
    if (target == nullptr) return;
    ui::PressKey(target, key, shift, control);
    if (Any(0, 4) != 0) ui::ReleaseKey(target, key, shift, control);
  }

  void Mouse() {
    const HWND page = m_level->Page();
    if (page == nullptr) return;
    const POINT from = Point();
    Note("mouse at " + std::to_string(from.x) + ", " + std::to_string(from.y));
    ui::PressMouse(page, from, ui::Button::Left, Any(0, 4) == 0);
    for (int moves = Any(0, 4); moves > 0; --moves) ui::MoveMouse(page, Point(), true);
    if (Any(0, 6) != 0) ui::ReleaseMouse(page, Point());
  }

  void Wheel() {
    const HWND page = m_level->Page();
    if (page == nullptr) return;
    const int delta = Any(-5, 5) * 40;
    Note("wheel by " + std::to_string(delta));
    ui::TurnWheel(page, Point(), delta, Any(0, 3) == 0, Any(0, 3) == 0);
  }

  void Open() {
    const std::string path = File();
    Note("open " + path);
    if (Any(0, 4) != 0) return m_level->Open(path);
    const char* const paths[] = {path.c_str()};
    if (m_level->Page() != nullptr) ui::DropFiles(m_level->Page(), {10, 10}, paths);
  }

  void Size() {
    static constexpr std::array kShows = {SW_SHOWMAXIMIZED, SW_RESTORE, SW_SHOWMINIMIZED, SW_SHOW};
    const int width = Any(1, 1600);
    const int height = Any(1, 1200);
    Note("size " + std::to_string(width) + " by " + std::to_string(height));
    if (Any(0, 4) == 0) ::ShowWindow(m_level->Main(), AnyOf(kShows));
    ::SetWindowPos(m_level->Main(), nullptr, Any(-50, 300), Any(-50, 300), width, height, SWP_NOZORDER);
  }

  void Bars() {
    const HWND page = m_level->Page();
    if (page == nullptr) return;
    const int bar = Any(0, 1) == 0 ? SB_HORZ : SB_VERT;
    Note("scroll bar");
    if (Any(0, 1) == 0)
      ui::DragThumb(page, bar, Any(-10, 2000), Any(0, 3) != 0);
    else
      ui::ClickScrollBar(page, bar, Any(0, 1) == 0, Any(0, 1) == 0);
  }

  void Rarely() {
    switch (Any(0, 4)) {
      case 0:
        Note("close");
        return m_level->Close();
      case 1:
        Note("time passes");
        return ui::AdvanceTimers(static_cast<UINT>(Any(1, 3000)));
      case 2: {
        const std::string path = m_folder.Path("file-" + std::to_string(Any(0, 9)) + ".tif");
        Note("replaced: " + path);
        return WriteFile(path);
      }
      case 3:
        Note("painted anew");
        ::InvalidateRect(m_level->Main(), nullptr, TRUE);
        return ::UpdateWindow(m_level->Main()), void();
      default:
        Note("the pointer leaves");
        if (m_level->Page() != nullptr) ui::LeaveWindow(m_level->Page());
    }
  }

  void Check() {
    if (m_level->Main() == nullptr) return;
    const std::string broken = m_level->Broken();
    if (!broken.empty()) Fail(broken);
  }

  std::mt19937 m_random;
  const Folder& m_folder;
  std::unique_ptr<Level> m_level;
};

/// What must not grow from one use to the next.
struct State {
  long descriptors = 0;
  long widgets = 0;
  std::size_t heap = 0;
};

State Look() {
  malloc_trim(0);
  return {std::distance(fs::directory_iterator("/proc/self/fd"), {}), QApplication::allWidgets().size(),
          mallinfo2().uordblks + mallinfo2().hblkhd};
}

void CheckGrowth(const char* what, long before, long now, long allowed) {
  if (now > before + allowed)
    Fail(std::string(what) + " grew from " + std::to_string(before) + " to " + std::to_string(now));
}

bool AnswerFile(platform::FileDialogRequest& request) {
  request.path = g_folder->Path("out-" + std::to_string(g_episode % 5) + ".tif").c_str();
  return g_episode % 3 != 0;
}

void Prepare(const Folder& folder) {
  g_folder = &folder;
  for (const int signal : {SIGSEGV, SIGABRT, SIGFPE, SIGBUS, SIGALRM}) std::signal(signal, &OnSignal);
  ui::SetMessageBoxAnswer([](const CString&, UINT) { return g_episode % 2 == 0 ? 1 : 2; });
  ui::SetFileDialogAnswer(&AnswerFile);
  ui::SetPrintDialogAnswer([](platform::PrintDialogRequest&) { return g_episode % 4 == 0; });
  ui::SetMenuAnswer([](HMENU, HWND) { return 0; });
  static const std::string queue = folder.Path("queue");
  platform::TestPrinter printer;
  printer.name = "Uno";
  printer.folder = queue;
  printer.isDefault = printer.accepting = true;
  ui::SetTestPrinters({&printer, 1});
}

int Run(int seconds, int only) {
  const Folder folder;
  Prepare(folder);
  std::array<State, kLevels> lasting;
  std::array<int, kLevels> runs{};
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
  for (g_episode = std::max(only, 0); std::chrono::steady_clock::now() < end || g_episode == only;
       ++g_episode) {
    const auto level = static_cast<std::size_t>(g_episode % kLevels);
    folder.Clear();  // an episode that is run alone finds what it found among others
    User(g_seed * 1'000'003U + static_cast<unsigned>(g_episode), folder).Run(static_cast<int>(level));
    const State now = Look();
    if (++runs.at(level) <= kWarmUp) {
      lasting.at(level) = now;
      continue;
    }
    const State& before = lasting.at(level);
    CheckGrowth("descriptors", before.descriptors, now.descriptors, 2);
    CheckGrowth("windows", before.widgets, now.widgets, 2);
    CheckGrowth("memory", static_cast<long>(before.heap), static_cast<long>(now.heap), kHeapGrowth);
  }
  const State now = Look();
  std::printf("seed %u: %d episodes, %ld descriptors, %ld widgets, %zu KB of heap; nothing broken\n", g_seed,
              g_episode, now.descriptors, now.widgets, now.heap / 1024);
  return 0;
}

}  // namespace
}  // namespace soak

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  soak::g_seed = static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10));
  return soak::Run(std::atoi(argv[1]), argc > 3 ? std::atoi(argv[3]) : -1);
}
