// A print service of the test's own: its queues as the dialogs see them, and jobs all the way through it.

#include "tests/spooler/cups_fixture.h"

TEST_F(Cups, QueuesHaveTheirOwnPaperAndDots) {
  std::vector<BYTE> buffer;
  const PRINTER_INFO_2A* queue = FindQueue(buffer);
  ASSERT_NE(queue, nullptr);
  EXPECT_EQ(queue->Attributes & PRINTER_ATTRIBUTE_DEFAULT, PRINTER_ATTRIBUTE_DEFAULT);
  EXPECT_STREQ(queue->pLocation, "Primo piano");
  EXPECT_STREQ(queue->pComment, "Commento");
  EXPECT_STREQ(queue->pDriverName, "Prova PDF");
  const HDC dc = CreateDCA(nullptr, "Prova", nullptr, nullptr);
  EXPECT_EQ(GetDeviceCaps(dc, LOGPIXELSX), 600);
  EXPECT_EQ(GetDeviceCaps(dc, PHYSICALWIDTH), 3500);   // 420 points
  EXPECT_EQ(GetDeviceCaps(dc, PHYSICALOFFSETX), 150);  // 18 points
  EXPECT_EQ(GetDeviceCaps(dc, PHYSICALOFFSETY), 300);  // 36 points
  EXPECT_NEAR(GetDeviceCaps(dc, HORZRES), 3200, 1);    // 384 points
  EXPECT_NEAR(GetDeviceCaps(dc, VERTRES), 4358, 1);    // 523 points
  DeleteDC(dc);
}

TEST_F(Cups, AJobArrivesWhole) {
  const HDC dc = StartOnePage();
  EXPECT_GT(EndDoc(dc), 0);
  DeleteDC(dc);
  ASSERT_TRUE(WaitFor([this] { return Read(Printed()).ends_with("%%EOF\n"); }))
      << Read((m_folder / "log").string());
  EXPECT_TRUE(Read(Printed()).starts_with("%PDF-"));
}

TEST_F(Cups, WhatTheQueueRefusesFails) {
  HDC dc = StartOnePage();
  Output("cupsreject Prova");
  EXPECT_EQ(EndDoc(dc), SP_ERROR) << "takes no jobs any more";
  DeleteDC(dc);
  Output("cupsaccept Prova");
  dc = StartOnePage();
  Output("lpadmin -x Prova");
  EXPECT_EQ(EndDoc(dc), SP_ERROR) << "gone";
  DeleteDC(dc);
  EXPECT_FALSE(std::filesystem::exists(Printed()));
}

TEST_F(Cups, AnAbortedTransferLeavesNoJob) {
  const HDC dc = StartOnePage();
  static int calls = 0;
  // The first question stands before the first piece, the second before the end: the job exists by then.
  SetAbortProc(dc, [](HDC, int) -> BOOL { return ++calls < 2; });
  EXPECT_EQ(EndDoc(dc), SP_APPABORT);
  DeleteDC(dc);
  EXPECT_EQ(Output("lpstat -o Prova"), "");
  EXPECT_FALSE(std::filesystem::exists(Printed()));
}

TEST_F(Cups, AJobThatIsCancelledOnItsWayIsTold) {
  const HDC dc = StartOnePage();
  SetAbortProc(dc, [](HDC, int) -> BOOL {
    Output("cancel -a Prova");
    return TRUE;
  });
  EXPECT_LT(EndDoc(dc), 0);
  DeleteDC(dc);
  EXPECT_FALSE(std::filesystem::exists(Printed()));
}
