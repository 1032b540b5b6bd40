// What a queue, and what its user has saved for it, say of the paper and the job's ticket; and what becomes
// of jobs.

#include <sys/socket.h>
#include <sys/un.h>

#include "platform/spooler/job_follower.h"
#include "tests/spooler/cups_fixture.h"

namespace {

class CupsOptions : public Cups {
 protected:
  /// Prints a page on the default queue and waits until it is on paper.
  void PrintOnDefault() const {
    char name[100];
    DWORD size = sizeof name;
    ASSERT_TRUE(GetDefaultPrinterA(name, &size));
    const HDC dc = StartOnePage(name);
    EXPECT_GT(EndDoc(dc), 0);
    DeleteDC(dc);
    ASSERT_TRUE(WaitFor([] { return Read(Printed()).ends_with("%%EOF\n"); }));
  }
};

TEST_F(CupsOptions, PaperAndTicketAreThoseThatTheUserHasSaved) {
  const struct {
    const char* name;
    const char* queue;  // its own options, for lpadmin
    const char* saved;  // ~/.cups/lpoptions
    int width;          // points
    const char* ticket;
    const char* notInTicket;
  } cases[] = {
      {"the queue's default", "-o PageSize=A4", "", 595, " media=iso_a4_210x297mm ", "sides="},
      {"the driver's default", "-o PageSize=A5", "", 420, " media=iso_a5_148x210mm ", "sides="},
      {"saved", "-o PageSize=A5", "Dest Prova media=A4 sides=two-sided-long-edge\n", 595, " media=A4 ",
       "nothing"},
      {"saved, with a tray", "-o PageSize=A5", "Dest Prova media=A4,Upper\n", 595, " media=A4,Upper ",
       "nothing"},
      {"saved as drivers say", "-o PageSize=A5", "Dest Prova PageSize=A4\n", 595, " media=iso_a4_210x297mm ",
       "nothing"},
      {"an instance", "-o PageSize=A5", "Dest Prova media=A5\nDefault Prova/bozza media=A4 sides=one-sided\n",
       595, " media=A4 ", "nothing"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    std::filesystem::remove(Printed());
    Output(std::string("lpadmin -p Prova ") + c.queue);
    SaveOptions(c.saved);
    std::this_thread::sleep_for(std::chrono::milliseconds(2100));  // papers are asked for again by then
    PrintOnDefault();
    if (HasFatalFailure()) return;
    const std::string info = Output("pdfinfo " + Printed());
    EXPECT_NEAR(std::atof(info.c_str() + info.find("Page size:") + 10), c.width, 1) << info;
    EXPECT_NE(Ticket().find(c.ticket), std::string::npos) << Ticket();
    EXPECT_EQ(Ticket().find(c.notInTicket), std::string::npos) << Ticket();
    EXPECT_EQ(std::string(c.saved).find("two-sided") == std::string::npos,
              Ticket().find("sides=two-sided-long-edge") == std::string::npos)
        << Ticket();
  }
}

TEST_F(CupsOptions, AQueueThatWasJustAddedIsFound) {
  Output("lpadmin -p Nuova -E -v file:" + Printed() + " -P " + (m_folder / "test.ppd").string());
  const HDC dc = CreateDCA(nullptr, "Nuova", nullptr, nullptr);
  EXPECT_NE(dc, nullptr);
  DeleteDC(dc);
  Output("lpadmin -d Nuova");
  char name[100];
  DWORD size = sizeof name;
  EXPECT_TRUE(GetDefaultPrinterA(name, &size));
  EXPECT_STREQ(name, "Nuova");
  Output("lpadmin -x Nuova");
}

TEST_F(CupsOptions, TroubleAfterTheHandOverIsToldOnce) {
  const struct {
    const char* before;
    const char* after;
    platform::JobTrouble trouble;
  } cases[] = {{"cupsdisable Prova", "true", platform::JobTrouble::Stopped},
               {"lpadmin -p Prova -o job-hold-until-default=indefinite", "cancel -a Prova",
                platform::JobTrouble::Cancelled}};
  platform::testing::PumpUntilIdle(1);  // there is a message loop
  for (const auto& c : cases) {
    std::vector<std::pair<platform::JobTrouble, std::string>> told;
    Output(c.before);
    {
      const platform::JobFollower follower([&](platform::JobTrouble trouble, const std::string& printer) {
        told.emplace_back(trouble, printer);
      });
      const HDC dc = StartOnePage();
      EXPECT_GT(EndDoc(dc), 0);
      DeleteDC(dc);
    }
    Output(c.after);
    for (int i = 0; i < 100 && told.empty(); ++i) {
      platform::testing::PumpUntilIdle(50);
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    for (int i = 0; i < 15; ++i) platform::testing::PumpUntilIdle(100);  // nothing more
    ASSERT_EQ(told.size(), 1U) << c.before;
    EXPECT_EQ(told.front().first, c.trouble) << c.before;
    EXPECT_EQ(told.front().second, "Prova");
    Output("cancel -a Prova; cupsenable Prova; lpadmin -p Prova -o job-hold-until-default=no-hold");
  }
}

// A service that takes the connection and says nothing: the program goes on within seconds.
TEST_F(CupsOptions, ASilentServiceHoldsNobodyUp) {
  const std::string path = (m_folder / "silent").string();
  const int silent = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(silent, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(listen(silent, 16), 0);
  const HDC dc = StartOnePage();
  setenv("CUPS_SERVER", path.c_str(), 1);
  static int asked = 0;
  asked = 0;
  SetAbortProc(dc, [](HDC, int) -> BOOL {
    ++asked;
    return TRUE;
  });
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(EndDoc(dc), SP_NOANSWER);
  EXPECT_GT(asked, 50) << "the abort button is alive meanwhile";
  DWORD size = 0;
  GetDefaultPrinterA(nullptr, &size);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(12));
  DeleteDC(dc);
  setenv("CUPS_SERVER", Socket().c_str(), 1);
  close(silent);
}

}  // namespace
