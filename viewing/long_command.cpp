#include "viewing/long_command.h"

#include "platform/framework/frame_wnd.h"

namespace {

// Before a command is told of, and between two texts.
constexpr std::chrono::milliseconds kPatience(300);
constexpr std::chrono::milliseconds kInterval(100);

HWND PaneOf(CWnd* window) {
  auto* frame = dynamic_cast<CFrameWnd*>(window);
  if (frame == nullptr && window != nullptr) frame = window->GetParentFrame();
  for (; frame != nullptr; frame = frame->GetParentFrame())
    if (const CWnd* const pane = frame->GetMessageBar()) return pane->m_hWnd;
  return nullptr;
}

}  // namespace

ProgressPane::ProgressPane(CWnd* window, UINT text)
    : m_pane(PaneOf(window)), m_text(text), m_next(Clock::now() + kPatience) {}

void ProgressPane::Show(int page, int pages) {
  if (Clock::now() < m_next || pages < 2 || ::IsWindow(m_pane) == FALSE) return;
  m_next = Clock::now() + kInterval;
  CWnd* const pane = CWnd::FromHandle(m_pane);
  if (!m_before) pane->GetWindowText(m_before.emplace());
  m_shown.FormatMessage(m_text, page, pages);
  pane->SetWindowText(m_shown);
}

ProgressPane::~ProgressPane() {
  if (!m_before || ::IsWindow(m_pane) == FALSE) return;
  CWnd* const pane = CWnd::FromHandle(m_pane);
  CString text;
  pane->GetWindowText(text);
  if (text == m_shown) pane->SetWindowText(*m_before);
}

LongCommand::LongCommand(CWnd* window, UINT progress) : m_pane(window, progress) {
  if (platform::RunsInLoop() && !platform::HasAside()) m_aside.emplace([this] { return m_busy.Serve(); });
}

bool LongCommand::Reach(int page, int pages) {
  if (platform::RunsInLoop()) m_pane.Show(page, pages);
  return m_busy.Serve();
}
