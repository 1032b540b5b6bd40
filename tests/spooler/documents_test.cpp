#include <fcntl.h>
#include <sys/resource.h>

#include <csignal>
#include <functional>

#include "print_fixture.h"

namespace {

DOCINFOA Document(const char* name, const char* output = nullptr) {
  return {sizeof(DOCINFOA), name, output, nullptr, 0};
}

/// Noise, which takes as many bytes as it has pixels.
bool DrawGrey(HDC dc, int width, int height) {
  TestImage image(width, height, 8);
  std::uint32_t seed = 1;
  for (std::uint8_t& byte : image.bytes) {
    seed = seed * 1664525 + 1013904223;
    byte = static_cast<std::uint8_t>(seed >> 24);
  }
  return platform::DrawImageOnPrinter(dc, image.view, {0, 0, width, height}, {0, 0, width, height});
}

class Documents : public PrintTest {};

}  // namespace

TEST_F(Documents, AQueueGetsTheJobAtItsEndOnly) {
  const HDC dc = CreateDCA(nullptr, "Uno", nullptr, nullptr);
  ASSERT_NE(dc, nullptr);
  const DOCINFOA info = Document("Prova");
  EXPECT_GT(StartDocA(dc, &info), 0);
  EXPECT_EQ(StartDocA(dc, &info), SP_ERROR) << "one document at a time";
  EXPECT_GT(StartPage(dc), 0);
  EXPECT_TRUE(DrawGrey(dc, 100, 100));
  EXPECT_GT(EndPage(dc), 0);
  EXPECT_FALSE(DrawGrey(dc, 100, 100)) << "between pages";
  EXPECT_EQ(CountFiles(), 0);
  EXPECT_GT(EndDoc(dc), 0);
  EXPECT_EQ(CountFiles(), 1);
  EXPECT_TRUE(std::filesystem::exists(QueuedJob(1)));
  EXPECT_EQ(EndDoc(dc), SP_ERROR);
  EXPECT_TRUE(DeleteDC(dc));
  EXPECT_EQ(StartDocA(dc, &info), SP_ERROR) << "a dead device context";
}

TEST_F(Documents, CallsOutOfOrderFail) {
  const HDC dc = CreateDCA(nullptr, "Uno", nullptr, nullptr);
  EXPECT_EQ(StartPage(dc), SP_ERROR);
  EXPECT_EQ(EndPage(dc), SP_ERROR);
  EXPECT_EQ(AbortDoc(dc), SP_ERROR);
  const DOCINFOA info = Document("Prova");
  EXPECT_GT(StartDocA(dc, &info), 0);
  EXPECT_EQ(EndPage(dc), SP_ERROR);
  EXPECT_EQ(StartPage(dc), SP_ERROR) << "the failure has ended the document";
  EXPECT_GT(StartDocA(dc, &info), 0) << "and the next one begins";
  EXPECT_GT(EndDoc(dc), 0) << "a document without pages";
  EXPECT_EQ(CountFiles(), 0);
  DeleteDC(dc);
}

// Each row is a way to leave a job; none may leave a file.
TEST_F(Documents, WhatDoesNotEndWellLeavesNothing) {
  struct Case {
    const char* name;
    std::function<void(HDC)> leave;
  };
  const Case cases[] = {
      {"deleted within a page", [](HDC) {}},
      {"deleted between pages", [](HDC dc) { EndPage(dc); }},
      {"aborted within a page", [](HDC dc) { EXPECT_GT(AbortDoc(dc), 0); }},
      {"abort procedure at a page's end",
       [](HDC dc) {
         SetAbortProc(dc, [](HDC, int) -> BOOL { return FALSE; });
         EXPECT_EQ(EndPage(dc), SP_APPABORT);
         EXPECT_EQ(EndDoc(dc), SP_APPABORT);
       }},
      {"abort procedure while it is sent",
       [](HDC dc) {
         EXPECT_GT(EndPage(dc), 0);
         SetAbortProc(dc, [](HDC, int) -> BOOL { return FALSE; });
         EXPECT_EQ(EndDoc(dc), SP_APPABORT);
       }},
      {"device context deleted by the abort procedure",
       [](HDC dc) {
         SetAbortProc(dc, [](HDC context, int) -> BOOL { return DeleteDC(context); });
         EXPECT_EQ(EndPage(dc), SP_APPABORT);
       }},
  };
  for (const bool toFile : {false, true})
    for (const Case& row : cases) {
      SCOPED_TRACE(std::string(row.name) + (toFile ? ", to a file" : ""));
      const std::string target = Target();
      const HDC dc = CreateDCA(nullptr, "Uno", toFile ? target.c_str() : nullptr, nullptr);
      const DOCINFOA info = Document("Prova");
      ASSERT_GT(StartDocA(dc, &info), 0);
      ASSERT_GT(StartPage(dc), 0);
      ASSERT_TRUE(DrawGrey(dc, 500, 500));
      row.leave(dc);
      DeleteDC(dc);
      EXPECT_EQ(CountFiles(), 0);
    }
}

TEST_F(Documents, TheAbortProcedureIsAskedForEveryPage) {
  static int calls = 0;
  const HDC dc = CreateDCA(nullptr, "Uno", nullptr, nullptr);
  SetAbortProc(dc, [](HDC, int) -> BOOL { return ++calls; });
  const DOCINFOA info = Document("Prova");
  StartDocA(dc, &info);
  for (int page = 0; page < 5; ++page) {
    const int before = calls;
    StartPage(dc);
    DrawGrey(dc, 300, 300);
    EndPage(dc);
    EXPECT_GT(calls, before);
  }
  const int before = calls;
  EXPECT_GT(EndDoc(dc), 0);
  EXPECT_GE(calls, before + 4) << "90000 bytes a page go in pieces of 64 KiB";
  DeleteDC(dc);
}

TEST_F(Documents, AQueueThatIsGoneOrRefusesFails) {
  const HDC dc = CreateDCA(nullptr, "Uno", nullptr, nullptr);
  const DOCINFOA info = Document("Prova");
  SetPrinters(false);
  EXPECT_EQ(StartDocA(dc, &info), SP_ERROR) << "refuses from the start";
  SetPrinters(true);
  ASSERT_GT(StartDocA(dc, &info), 0);
  StartPage(dc);
  DrawGrey(dc, 10, 10);
  EndPage(dc);
  SetPrinters(true, true);
  EXPECT_EQ(EndDoc(dc), SP_ERROR) << "gone meanwhile";
  EXPECT_EQ(CountFiles(), 0);
  EXPECT_EQ(CreateDCA(nullptr, "uno", nullptr, nullptr), nullptr) << "names are exact";
  DeleteDC(dc);
}

TEST_F(Documents, AFullDiskIsTold) {
  // Within the limit nothing but the spool file may grow.
  const auto limit = [](rlim_t bytes) {
    rlimit now{};
    getrlimit(RLIMIT_FSIZE, &now);
    now.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &now);
  };
  std::signal(SIGXFSZ, SIG_IGN);
  for (const bool toFile : {false, true}) {
    const std::string target = Target();
    const HDC dc = CreateDCA(nullptr, "Uno", toFile ? target.c_str() : nullptr, nullptr);
    const DOCINFOA info = Document("Prova");
    ASSERT_GT(StartDocA(dc, &info), 0);
    limit(100000);
    EXPECT_GT(StartPage(dc), 0);
    EXPECT_TRUE(DrawGrey(dc, 800, 800));
    const int ended = EndPage(dc);
    const int finished = EndDoc(dc);
    limit(RLIM_INFINITY);
    EXPECT_EQ(ended, SP_OUTOFDISK);
    EXPECT_EQ(finished, SP_OUTOFDISK) << "told again";
    EXPECT_EQ(CountFiles(), 0);
    DeleteDC(dc);
  }
}

TEST_F(Documents, FilesThatCanNotBeWrittenAreRefused) {
  std::filesystem::create_directory(m_folder / "folder");
  for (const std::string& target : {(m_folder / "folder").string(), (m_folder / "none/out.pdf").string()}) {
    const HDC dc = CreateDCA(nullptr, nullptr, target.c_str(), nullptr);
    ASSERT_NE(dc, nullptr);
    const DOCINFOA info = Document("Prova");
    EXPECT_EQ(StartDocA(dc, &info), SP_ERROR) << target;
    DeleteDC(dc);
  }
}

TEST_F(Documents, AFailedJobKeepsTheFormerFile) {
  std::ofstream(Target()) << "former";
  const std::string target = Target();
  for (const bool finish : {false, true}) {
    const HDC dc = CreateDCA(nullptr, nullptr, target.c_str(), nullptr);
    const DOCINFOA info = Document("Prova");
    StartDocA(dc, &info);
    StartPage(dc);
    DrawGrey(dc, 10, 10);
    EndPage(dc);
    EXPECT_EQ(Read(target), "former");
    if (finish) {
      EXPECT_GT(EndDoc(dc), 0);
    }
    DeleteDC(dc);
  }
  EXPECT_EQ(Read(target).substr(0, 5), "%PDF-");
  EXPECT_EQ(CountFiles(), 1);
}

TEST_F(Documents, ThePaperTurnsBetweenPagesOnly) {
  const HDC dc = CreateDCA(nullptr, "Uno", nullptr, nullptr);
  DEVMODEA mode{};
  mode.dmFields = DM_ORIENTATION;
  mode.dmOrientation = DMORIENT_LANDSCAPE;
  const int width = GetDeviceCaps(dc, HORZRES);
  const int height = GetDeviceCaps(dc, VERTRES);
  const DOCINFOA info = Document("Prova");
  StartDocA(dc, &info);
  StartPage(dc);
  EXPECT_EQ(ResetDCA(dc, &mode), nullptr);
  EXPECT_EQ(GetDeviceCaps(dc, HORZRES), width);
  EndPage(dc);
  EXPECT_EQ(ResetDCA(dc, &mode), dc);
  EXPECT_EQ(GetDeviceCaps(dc, HORZRES), height);
  EXPECT_EQ(GetDeviceCaps(dc, VERTRES), width);
  StartPage(dc);
  EndPage(dc);
  EXPECT_GT(EndDoc(dc), 0);
  DeleteDC(dc);
  const std::string pdf = Read(QueuedJob(1));
  EXPECT_NE(pdf.find("/MediaBox [0 0 595.2 841.92]"), std::string::npos);
  EXPECT_NE(pdf.find("/MediaBox [0 0 841.92 595.2]"), std::string::npos);
}
