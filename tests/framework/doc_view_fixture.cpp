#include "tests/framework/doc_view_fixture.h"

#include "tests/framework/own_resources.h"

namespace doc_view_test {

std::string g_trace;
int g_alive = 0;
bool g_failPane = false;
bool g_hidePane = false;
bool g_saves = false;
int g_answer = IDCANCEL;
int g_questions = 0;

IMPLEMENT_DYNCREATE(Doc, CDocument)
BEGIN_MESSAGE_MAP(Doc, CDocument)
ON_COMMAND(kViewAndDoc, OnDoc)
ON_COMMAND(kDocAndFrame, OnDoc)
END_MESSAGE_MAP()
IMPLEMENT_DYNCREATE(StubbornDoc, Doc)
IMPLEMENT_DYNCREATE(View, CView)
BEGIN_MESSAGE_MAP(View, CView)
ON_COMMAND(kViewOnly, OnView)
ON_COMMAND(kViewAndDoc, OnView)
END_MESSAGE_MAP()
IMPLEMENT_DYNCREATE(Frame, CFrameWnd)
BEGIN_MESSAGE_MAP(Frame, CFrameWnd)
ON_COMMAND(kDocAndFrame, OnFrame)
ON_COMMAND(kFrameOnly, OnFrame)
END_MESSAGE_MAP()
IMPLEMENT_DYNCREATE(Child, CMDIChildWnd)
IMPLEMENT_DYNCREATE(SplitFrame, CFrameWnd)

int Answer(const CString&, UINT) {
  ++g_questions;
  return g_answer;
}

const Templates& AppTemplates() {
  static const Templates made = [] {
    const Templates all = {
        new CMultiDocTemplate(kTemplate, RUNTIME_CLASS(Doc), RUNTIME_CLASS(Child), RUNTIME_CLASS(View)),
        new CSingleDocTemplate(kBare, RUNTIME_CLASS(Doc), RUNTIME_CLASS(Frame), RUNTIME_CLASS(View))};
    AfxGetApp()->AddDocTemplate(all.multi);
    AfxGetApp()->AddDocTemplate(all.single);
    return all;
  }();
  return made;
}

void RegisterOnce() {
  static constexpr platform::StringResource kStrings[] = {{kTemplate, "Visore\nPagine\n\nImmagini\n.tif"}};
  struct Own {};
  platform::ResourceTables tables;
  tables.strings = kStrings;
  JoinResources<Own>(tables);
}

}  // namespace doc_view_test
