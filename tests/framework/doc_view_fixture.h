#pragma once

// A document with views in frames of three kinds, all of which tell what happens to them.

#include <gtest/gtest.h>

#include <string>

#include "platform/framework/app.h"
#include "platform/framework/doc_template.h"
#include "platform/framework/document.h"
#include "platform/framework/mdi_wnd.h"
#include "platform/framework/message_box.h"
#include "platform/framework/splitter_wnd.h"
#include "platform/framework/view.h"
#include "tessarel12_testing.h"

namespace doc_view_test {

enum : UINT {
  kTemplate = 430,
  kBare = 431,  // no resources at all
  kViewOnly = 40201,
  kViewAndDoc,
  kDocAndFrame,
  kFrameOnly,
  kNobody,
  kExit = 0xE141
};

extern std::string g_trace;
extern int g_alive;      // objects of all classes below
extern bool g_failPane;  // the second pane can't be made
extern bool g_hidePane;  // the first pane is put away at once
extern bool g_saves;     // documents can be saved
extern int g_answer;     // to message boxes
extern int g_questions;

struct Alive {
  explicit Alive(const char* tag) : tag(tag) {
    ++g_alive;
    g_trace += "+" + this->tag + " ";
  }
  Alive(const Alive&) = delete;
  Alive& operator=(const Alive&) = delete;
  ~Alive() {
    --g_alive;
    g_trace += "-" + tag + " ";
  }
  std::string tag;
};

class Doc : public CDocument {
  DECLARE_DYNCREATE(Doc)
 public:
  BOOL OnNewDocument() override {
    g_trace += "new ";
    return CDocument::OnNewDocument();
  }
  BOOL OnOpenDocument(LPCTSTR path) override {
    g_trace += "open ";
    UpdateAllViews(nullptr, 9);
    return CString(path).Find("bad") < 0;
  }
  BOOL OnSaveDocument(LPCTSTR) override { return g_saves; }
  void DeleteContents() override { g_trace += "empty "; }

 private:
  Alive m_alive{"D"};
  void OnDoc() { g_trace += "doc "; }
  DECLARE_MESSAGE_MAP()
};

/// One that can't begin.
class StubbornDoc : public Doc {
  DECLARE_DYNCREATE(StubbornDoc)
  BOOL OnNewDocument() override { return FALSE; }
};

class View : public CView {
  DECLARE_DYNCREATE(View)
 public:
  std::string name;
  void OnInitialUpdate() override { g_trace += "init "; }
  void OnDraw(CDC* dc) override { dc->SetPixel(m_origin.x, 0, RGB(255, 0, 0)); }
  void OnPrepareDC(CDC*) override { m_origin.x = 3; }
  void OnUpdate(CView* sender, LPARAM hint, CObject* object) override {
    g_trace += name + (sender == nullptr ? "" : "<") + std::to_string(hint) + "," +
               std::to_string(reinterpret_cast<std::intptr_t>(object)) + " ";
    CView::OnUpdate(sender, hint, object);
  }
  void OnActivateView(BOOL activate, CView* activated, CView* deactivated) override {
    active = activate != 0;
    CView::OnActivateView(activate, activated, deactivated);
  }
  bool active = false;

 private:
  Alive m_alive{"V"};
  CPoint m_origin{0, 0};
  void OnView() { g_trace += "view" + name + " "; }
  DECLARE_MESSAGE_MAP()
};

/// The frame of an SDI program or a document window, with one view by itself.
template <typename Base>
class FrameOf : public Base {
 private:
  Alive m_alive{"F"};
};
class Frame : public FrameOf<CFrameWnd> {
  DECLARE_DYNCREATE(Frame)
 private:
  void OnFrame() { g_trace += "frame "; }
  DECLARE_MESSAGE_MAP()
};
class Child : public FrameOf<CMDIChildWnd> {
  DECLARE_DYNCREATE(Child)
};

/// A frame that divides itself and makes two views, whatever the template says.
class SplitFrame : public FrameOf<CFrameWnd> {
  DECLARE_DYNCREATE(SplitFrame)
 public:
  CSplitterWnd splitter;
  View* Pane(int column) { return static_cast<View*>(splitter.GetPane(0, column)); }

 protected:
  BOOL OnCreateClient(LPCREATESTRUCT, CCreateContext* context) override {
    if (splitter.CreateStatic(this, 1, 2) == 0) return FALSE;
    if (splitter.CreateView(0, 0, RUNTIME_CLASS(View), CSize(140, 0), context) == 0) return FALSE;
    CRuntimeClass* second = g_failPane ? RUNTIME_CLASS(Doc) : RUNTIME_CLASS(View);
    if (g_hidePane) splitter.GetPane(0, 0)->ShowWindow(SW_HIDE);
    return splitter.CreateView(0, 1, second, CSize(140, 0), context);
  }
};

/// Templates that the application has; they end with it.
struct Templates {
  CMultiDocTemplate* multi;
  CSingleDocTemplate* single;
};

int Answer(const CString& text, UINT type);
const Templates& AppTemplates();
/// Puts the strings of kTemplate into the resources.
void RegisterOnce();

class DocView : public testing::Test {
 protected:
  DocView() {
    RegisterOnce();
    platform::testing::SetMessageBoxAnswer(&Answer);
    g_alive = g_questions = 0;
    g_answer = IDCANCEL;
    g_failPane = g_hidePane = g_saves = false;
    g_trace.clear();
  }
  ~DocView() override {
    AppTemplates().multi->CloseAllDocuments(FALSE);
    AppTemplates().single->CloseAllDocuments(FALSE);
    if (CWnd* main = AfxGetMainWnd()) main->DestroyWindow();
    EXPECT_EQ(g_alive, 0) << "something outlives its document";
    platform::testing::SetMessageBoxAnswer(nullptr);
    DrainQuit();
  }
  static void DrainQuit() {
    MSG message;
    while (PeekMessage(&message, nullptr, 0, 0, PM_REMOVE) != 0) continue;
  }
  static CMDIFrameWnd* ShowMain() {
    auto* main = new CMDIFrameWnd;  // NOLINT: ends with its window
    main->LoadFrame(kTemplate);
    AfxGetThread()->m_pMainWnd = main;
    main->ShowWindow(SW_SHOW);
    return main;
  }
  static View* FirstView(const CDocument* document) {
    POSITION first = document->GetFirstViewPosition();
    return static_cast<View*>(document->GetNextView(first));
  }
  static std::string TitleOf(const CWnd* window) {
    return static_cast<LPCTSTR>(GetWindowText(window->m_hWnd));
  }
};

}  // namespace doc_view_test
