// Documents, views and templates: who is made and ends when, who is told, who is asked.

#include "tests/framework/doc_view_fixture.h"

#include <filesystem>
#include <fstream>

namespace doc_view_test {

TEST_F(DocView, StringsOfATemplate) {
  const struct {
    CDocTemplate* of;
    CDocTemplate::DocStringIndex index;
    BOOL found;
    std::string text;
  } cases[] = {
      {AppTemplates().multi, CDocTemplate::windowTitle, TRUE, "Visore"},
      {AppTemplates().multi, CDocTemplate::fileNewName, TRUE, ""},
      {AppTemplates().multi, CDocTemplate::filterExt, TRUE, ".tif"},
      {AppTemplates().multi, CDocTemplate::regFileTypeId, FALSE, ""},
      {AppTemplates().single, CDocTemplate::windowTitle, FALSE, ""},
  };
  for (const auto& c : cases) {
    CString text("former");
    EXPECT_EQ(c.of->GetDocString(text, c.index), c.found) << c.index;
    EXPECT_EQ(c.text, static_cast<LPCTSTR>(text)) << c.index;
  }
}

TEST_F(DocView, OrderOfCreationAndDestruction) {
  CDocument* document = AppTemplates().single->OpenDocumentFile("/tmp/uno.tif");
  ASSERT_NE(document, nullptr);
  EXPECT_EQ(g_trace, "+D +F +V open 9,0 init ") << "the views are there before the file is read";
  CFrameWnd* frame = FirstView(document)->GetParentFrame();
  EXPECT_EQ(frame, AfxGetMainWnd());
  EXPECT_EQ(frame->GetActiveDocument(), document);
  EXPECT_EQ(CWnd::GetFocus(), frame->GetActiveView());
  EXPECT_NE(FirstView(document)->GetExStyle() & WS_EX_CLIENTEDGE, 0U);
  platform::testing::PumpUntilIdle();
  CClientDC dc(FirstView(document));
  EXPECT_EQ(dc.GetPixel(3, 0), RGB(255, 0, 0)) << "OnPrepareDC comes before OnDraw";
  g_trace.clear();
  frame->SendMessage(WM_CLOSE);
  EXPECT_EQ(g_trace, "-V -F empty -D ");
  EXPECT_EQ(AfxGetMainWnd(), nullptr);
}

TEST_F(DocView, HintsReachViews) {
  CSingleDocTemplate split(kBare, RUNTIME_CLASS(Doc), RUNTIME_CLASS(SplitFrame), nullptr);
  CDocument* document = split.OpenDocumentFile(nullptr);
  ASSERT_NE(document, nullptr);
  auto* frame = static_cast<SplitFrame*>(FirstView(document)->GetParentFrame());
  View* panes[] = {frame->Pane(0), frame->Pane(1)};
  panes[0]->name = "a";
  panes[1]->name = "b";
  const struct {
    View* sender;
    LPARAM hint;
    std::intptr_t object;
    const char* trace;
  } cases[] = {{nullptr, 1, -1, "a1,-1 b1,-1 "}, {panes[0], 2, 0, "b<2,0 "}, {panes[1], 0, 5, "a<0,5 "}};
  for (const auto& c : cases) {
    g_trace.clear();
    document->UpdateAllViews(c.sender, c.hint, reinterpret_cast<CObject*>(c.object));
    EXPECT_EQ(g_trace, c.trace);
  }
  POSITION walk = document->GetFirstViewPosition();
  EXPECT_EQ(document->GetNextView(walk), panes[0]);
  frame->splitter.DeleteView(0, 0);
  EXPECT_EQ(document->GetNextView(walk), panes[1]) << "a place survives the end of the entry before it";
  EXPECT_EQ(walk, nullptr);
  // Without a context a new pane shows what the active view does.
  frame->SetActiveView(panes[1]);
  ASSERT_NE(frame->splitter.CreateView(0, 0, RUNTIME_CLASS(View), CSize(140, 0), nullptr), 0);
  EXPECT_EQ(frame->Pane(0)->GetDocument(), document);
  frame->DestroyWindow();
  EXPECT_EQ(split.GetFirstDocPosition(), nullptr);
}

TEST_F(DocView, FailingOpenLeavesNothing) {
  const struct {
    const char* what;
    CRuntimeClass* doc;
    CRuntimeClass* frame;
    CRuntimeClass* view;
    const char* path;
    bool failPane;
    int messages;
  } cases[] = {
      {"no document class", RUNTIME_CLASS(View), RUNTIME_CLASS(Frame), RUNTIME_CLASS(View), nullptr, false,
       1},
      {"no frame class", RUNTIME_CLASS(Doc), RUNTIME_CLASS(View), RUNTIME_CLASS(View), nullptr, false, 1},
      {"no view class", RUNTIME_CLASS(Doc), RUNTIME_CLASS(Frame), RUNTIME_CLASS(Doc), nullptr, false, 1},
      {"second pane", RUNTIME_CLASS(Doc), RUNTIME_CLASS(SplitFrame), nullptr, nullptr, true, 1},
      {"new refused", RUNTIME_CLASS(StubbornDoc), RUNTIME_CLASS(Frame), RUNTIME_CLASS(View), nullptr, false,
       0},
      {"open refused", RUNTIME_CLASS(Doc), RUNTIME_CLASS(SplitFrame), nullptr, "/tmp/bad", false, 0},
      {"without views", RUNTIME_CLASS(Doc), RUNTIME_CLASS(Frame), nullptr, "/tmp/bad", false, 0},
  };
  for (const auto& c : cases) {
    CMultiDocTemplate multi(kBare, c.doc, c.frame, c.view);
    CSingleDocTemplate single(kBare, c.doc, c.frame, c.view);
    for (CDocTemplate* tried : {static_cast<CDocTemplate*>(&multi), static_cast<CDocTemplate*>(&single)}) {
      g_questions = 0;
      g_failPane = c.failPane;
      EXPECT_EQ(tried->OpenDocumentFile(c.path), nullptr) << c.what;
      EXPECT_EQ(g_alive, 0) << c.what;
      EXPECT_EQ(tried->GetFirstDocPosition(), nullptr) << c.what;
      EXPECT_EQ(g_questions, c.messages) << c.what;
      EXPECT_EQ(AfxGetMainWnd(), nullptr) << c.what;
    }
  }
}

TEST_F(DocView, SdiUsesItsDocumentAgain) {
  CWinApp* app = AfxGetApp();
  CDocTemplate* single = AppTemplates().single;
  CDocument* document = single->OpenDocumentFile("/tmp/uno.tif");
  ASSERT_NE(document, nullptr);
  CFrameWnd* frame = FirstView(document)->GetParentFrame();
  EXPECT_EQ(TitleOf(frame), "uno.tif");
  const struct {
    const char* path;
    BOOL modified;
    int answer;
    bool opens;
    const char* title;
    BOOL modifiedAfter;
  } cases[] = {
      {"/tmp/due.tif", FALSE, IDCANCEL, true, "due.tif", FALSE},
      {"/tmp/tre.tif", TRUE, IDCANCEL, false, "due.tif", TRUE},
      {"/tmp/tre.tif", TRUE, IDYES, false, "due.tif", TRUE},  // it can't be saved
      {"/tmp/tre.tif", TRUE, IDNO, true, "tre.tif", FALSE},
      {"/tmp/bad.tif", TRUE, IDNO, false, "tre.tif", TRUE},
      {nullptr, FALSE, IDCANCEL, true, "Senza nome", FALSE},
  };
  for (const auto& c : cases) {
    g_answer = c.answer;
    document->SetModifiedFlag(c.modified);
    EXPECT_EQ(single->OpenDocumentFile(c.path), c.opens ? document : nullptr) << c.path << c.answer;
    EXPECT_EQ(TitleOf(frame), c.title);
    EXPECT_EQ(document->IsModified(), c.modifiedAfter) << c.path << c.answer;
    EXPECT_EQ(g_alive, 3) << "no second frame, view or document";
  }
  // After a failed open the file before it is no longer what the document holds.
  single->OpenDocumentFile("/tmp/uno.tif");
  CDocument* open = nullptr;
  EXPECT_EQ(single->MatchDocType("/tmp/../tmp/uno.tif", open), CDocTemplate::yesAlreadyOpen);
  EXPECT_EQ(single->OpenDocumentFile("/tmp/bad.tif"), nullptr);
  EXPECT_NE(single->MatchDocType("/tmp/uno.tif", open), CDocTemplate::yesAlreadyOpen);
  EXPECT_EQ(open, nullptr);
  EXPECT_EQ(app->m_pMainWnd, frame);
}

TEST_F(DocView, MdiChildrenHaveTheirOwn) {
  CMDIFrameWnd* main = ShowMain();
  CDocTemplate* multi = AppTemplates().multi;
  CWinApp* app = AfxGetApp();
  CDocument* first = app->OpenDocumentFile("/tmp/uno.tif");
  CDocument* second = multi->OpenDocumentFile(nullptr);
  ASSERT_TRUE(first != nullptr && second != nullptr && first != second);
  CFrameWnd* frames[] = {FirstView(first)->GetParentFrame(), FirstView(second)->GetParentFrame()};
  EXPECT_EQ(TitleOf(frames[0]), "uno.tif");
  EXPECT_EQ(TitleOf(frames[1]), "Pagine1");
  EXPECT_EQ(TitleOf(main), "Visore - Pagine1");
  EXPECT_EQ(main->GetActiveFrame(), frames[1]);
  // The same file again, under another spelling: nothing is opened.
  EXPECT_EQ(app->OpenDocumentFile("/tmp/./uno.tif"), first);
  EXPECT_EQ(main->GetActiveFrame(), frames[0]);
  EXPECT_EQ(CWnd::GetFocus(), FirstView(first));
  EXPECT_TRUE(FirstView(first)->active);
  EXPECT_FALSE(FirstView(second)->active);
  // A second window on a document is numbered, and holds it when the first goes.
  CFrameWnd* other = multi->CreateNewFrame(first, frames[0]);
  ASSERT_NE(other, nullptr);
  multi->InitialUpdateFrame(other, first);
  EXPECT_EQ(TitleOf(frames[0]), "uno.tif:1");
  EXPECT_EQ(TitleOf(other), "uno.tif:2");
  first->SetModifiedFlag();
  frames[0]->SendMessage(WM_CLOSE);
  EXPECT_EQ(g_questions, 0) << "the document stays, so there is nothing to ask";
  EXPECT_EQ(TitleOf(other), "uno.tif");
  other->SendMessage(WM_CLOSE);
  EXPECT_EQ(g_questions, 1);
  g_answer = IDNO;
  other->SendMessage(WM_CLOSE);
  POSITION walk = multi->GetFirstDocPosition();
  EXPECT_EQ(multi->GetNextDoc(walk), second);
  EXPECT_EQ(walk, nullptr);
}

TEST_F(DocView, ClosingTheMainWindowAsksAllFirst) {
  const struct {
    int answer;
    bool saves;
    int questions;
    bool closes;
  } cases[] = {
      {IDCANCEL, false, 1, false}, {IDYES, false, 1, false}, {IDYES, true, 2, true}, {IDNO, false, 2, true}};
  for (const auto& c : cases) {
    ShowMain();
    CDocument* documents[3];
    for (CDocument*& document : documents) document = AppTemplates().multi->OpenDocumentFile("/tmp/f.tif");
    documents[1]->SetModifiedFlag();
    documents[2]->SetModifiedFlag();
    g_questions = 0;
    g_answer = c.answer;
    g_saves = c.saves;
    g_trace.clear();
    // The exit command finds its way from the active view to the application.
    AfxGetMainWnd()->SendMessage(WM_COMMAND, kExit);
    EXPECT_EQ(g_questions, c.questions) << c.answer;
    const std::string one = "-V -F empty -D ";
    // The frame through which the command came is whole until it has been dealt with.
    const std::string closed = one + one + "-V empty -D -F ";
    EXPECT_EQ(g_trace, c.closes ? closed : "") << "one question too late has closed documents";
    EXPECT_EQ(AfxGetMainWnd() == nullptr, c.closes);
    AppTemplates().multi->CloseAllDocuments(FALSE);
    if (CWnd* main = AfxGetMainWnd()) main->DestroyWindow();
    DrainQuit();
  }
}

TEST_F(DocView, CommandsGoFromTheActiveViewOutwards) {
  CSingleDocTemplate plain(kBare, RUNTIME_CLASS(Doc), RUNTIME_CLASS(Frame), RUNTIME_CLASS(View));
  CDocument* document = plain.OpenDocumentFile(nullptr);
  ASSERT_NE(document, nullptr);
  CFrameWnd* frame = FirstView(document)->GetParentFrame();
  const struct {
    UINT id;
    bool viewActive;
    const char* trace;
  } cases[] = {
      {kViewOnly, true, "view "},   {kViewAndDoc, true, "view "},
      {kDocAndFrame, true, "doc "}, {kFrameOnly, true, "frame "},
      {kNobody, true, ""},          {kViewOnly, false, ""},
      {kViewAndDoc, false, ""},     {kDocAndFrame, false, "frame "},
  };
  for (const auto& c : cases) {
    frame->SetActiveView(c.viewActive ? FirstView(document) : nullptr);
    g_trace.clear();
    frame->SendMessage(WM_COMMAND, c.id);
    EXPECT_EQ(g_trace, c.trace) << c.id;
  }
  frame->DestroyWindow();
}

TEST_F(DocView, TheKeyboardMakesAViewActive) {
  CSingleDocTemplate split(kBare, RUNTIME_CLASS(Doc), RUNTIME_CLASS(SplitFrame), nullptr);
  CDocument* document = split.OpenDocumentFile(nullptr);
  ASSERT_NE(document, nullptr);
  auto* frame = static_cast<SplitFrame*>(FirstView(document)->GetParentFrame());
  View* panes[] = {frame->Pane(0), frame->Pane(1)};
  EXPECT_EQ(frame->GetActiveView(), panes[0]) << "the first pane, not the splitter of the same number";
  panes[1]->SetFocus();
  EXPECT_EQ(frame->GetActiveView(), panes[1]);
  EXPECT_FALSE(panes[0]->active);
  EXPECT_TRUE(panes[1]->active);
  frame->SetFocus();
  EXPECT_EQ(CWnd::GetFocus(), panes[1]) << "the frame hands the keyboard on to where it was";
  frame->splitter.DeleteView(0, 1);
  EXPECT_EQ(frame->GetActiveView(), nullptr) << "no pointer to a view that is gone";
  frame->DestroyWindow();
}

TEST_F(DocView, APaneThatIsPutAwayIsNotTheFirstToBeActive) {
  g_hidePane = true;
  CSingleDocTemplate split(kBare, RUNTIME_CLASS(Doc), RUNTIME_CLASS(SplitFrame), nullptr);
  CDocument* document = split.OpenDocumentFile(nullptr);
  ASSERT_NE(document, nullptr);
  auto* frame = static_cast<SplitFrame*>(FirstView(document)->GetParentFrame());
  EXPECT_EQ(frame->GetActiveView(), frame->Pane(1));
  frame->DestroyWindow();
}

TEST_F(DocView, TheBaseOpensWhatCanBeRead) {
  const std::string folder = testing::TempDir();
  const std::string file = folder + "doc_view_test.bin";
  std::ofstream(file) << "x";
  const struct {
    std::string path;
    BOOL opens;
  } cases[] = {{file, TRUE}, {folder, FALSE}, {file + ".missing", FALSE}};
  Doc document;
  for (const auto& c : cases) {
    g_questions = 0;
    document.SetModifiedFlag();
    EXPECT_EQ(document.CDocument::OnOpenDocument(c.path.c_str()), c.opens) << c.path;
    EXPECT_EQ(document.IsModified(), c.opens == 0) << c.path;
    EXPECT_EQ(g_questions, c.opens == 0 ? 1 : 0) << "a failure is told";
  }
  std::filesystem::remove(file);
}

TEST_F(DocView, ADocumentOfItsMakerOutlivesItsViews) {
  CSingleDocTemplate plain(kBare, RUNTIME_CLASS(Doc), RUNTIME_CLASS(Frame), RUNTIME_CLASS(View));
  CDocument* document = plain.OpenDocumentFile(nullptr);
  ASSERT_NE(document, nullptr);
  document->m_bAutoDelete = FALSE;
  FirstView(document)->GetParentFrame()->SendMessage(WM_CLOSE);
  EXPECT_EQ(g_alive, 1);
  EXPECT_EQ(document->GetFirstViewPosition(), nullptr);
  EXPECT_EQ(document->GetDocTemplate(), &plain);
  delete document;  // NOLINT: ours, as said
  EXPECT_EQ(plain.GetFirstDocPosition(), nullptr);
}

TEST_F(DocView, ExitWithoutAMainWindowIsNobodys) {
  EXPECT_EQ(AfxGetApp()->OnCmdMsg(kExit, CN_COMMAND, nullptr, nullptr), FALSE);
}

}  // namespace doc_view_test
