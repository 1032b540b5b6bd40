#pragma once

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <thread>

#include "tests/spooler/print_fixture.h"

// A5 with four different margins is the default, at 600 dots per inch; documents pass through as they are.
inline constexpr const char* kCupsDriver = R"ppd(*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "TEST.PPD"
*Manufacturer: "Prova"
*Product: "(Prova)"
*ModelName: "Prova PDF"
*ShortNickName: "Prova PDF"
*NickName: "Prova PDF"
*PSVersion: "(3010) 0"
*cupsFilter2: "application/pdf application/pdf 0 FILTER"
*OpenUI *PageSize: PickOne
*DefaultPageSize: A5
*PageSize A4/A4: ""
*PageSize A5/A5: ""
*CloseUI: *PageSize
*OpenUI *PageRegion: PickOne
*DefaultPageRegion: A5
*PageRegion A4/A4: ""
*PageRegion A5/A5: ""
*CloseUI: *PageRegion
*DefaultImageableArea: A5
*ImageableArea A4: "18 36 577 824"
*ImageableArea A5: "18 36 402 559"
*DefaultPaperDimension: A5
*PaperDimension A4: "595 842"
*PaperDimension A5: "420 595"
*OpenUI *Resolution: PickOne
*DefaultResolution: 600dpi
*Resolution 600dpi/600 dpi: ""
*CloseUI: *Resolution
)ppd";

template <typename Condition>
inline bool WaitFor(Condition condition) {
  using namespace std::chrono_literals;
  for (int i = 0; i < 200; ++i) {
    if (condition()) return true;
    std::this_thread::sleep_for(50ms);
  }
  return false;
}

/// One service for all tests of the process, since the client library keeps to the one it has found; the
/// queue is made anew for each.
class Cups : public PrintTest {
 protected:
  static void SetUpTestSuite() {
    std::string name = (std::filesystem::temp_directory_path() / "cups-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) return;
    s_folder = name;
    std::filesystem::permissions(s_folder, std::filesystem::perms(0755));
    for (const char* sub : {"etc", "spool", "cache", "state", "out"})
      std::filesystem::create_directory(s_folder / sub);
    std::ofstream(s_folder / "cupsd.conf")
        << "Listen " << Socket() << "\nLogLevel debug\nWebInterface No\nBrowsing No\n"
        << "DefaultAuthType None\n<Location />\nAllow all\n</Location>\n"
        << "<Policy default>\n<Limit All>\nOrder deny,allow\n</Limit>\n</Policy>\n";
    if (!WriteFiles()) return;
    // Own files, after those that go to the service's user: it runs no filter that others may change.
    const std::filesystem::path filter = s_folder / "filter";
    std::ofstream(filter) << "#!/bin/sh\necho \"$5\" > $(dirname \"$0\")/out/options\nif [ -n \"$6\" ]; then "
                             "cat \"$6\"; else cat; fi\n";
    std::filesystem::permissions(filter, std::filesystem::perms(0755));
    std::string driver = kCupsDriver;
    driver.replace(driver.find("FILTER"), 6, filter.string());
    std::ofstream(s_folder / "test.ppd") << driver;
    setenv("CUPS_SERVER", Socket().c_str(), 1);
    setenv("HOME", s_folder.c_str(), 1);  // whose saved options count
    Start();
  }
  static void TearDownTestSuite() {
    if (s_service > 0) {
      kill(s_service, SIGTERM);
      waitpid(s_service, nullptr, 0);
    }
    unsetenv("CUPS_SERVER");
    if (!s_folder.empty()) std::filesystem::remove_all(s_folder);
  }
  void SetUp() override {
    m_folder = s_folder;
    std::filesystem::remove(Printed());
    if (s_service <= 0 || !WaitFor([] { return std::filesystem::exists(Socket()); }))
      GTEST_SKIP() << "no print service: " << Read((s_folder / "log").string());
    const std::string added =
        Output("lpadmin -p Prova -E -v file:" + Printed() + " -P " + (s_folder / "test.ppd").string() +
               " -L 'Primo piano' -D 'Commento' && lpadmin -d Prova");
    if (Output("lpstat -p Prova").find("printer Prova") == std::string::npos)
      GTEST_SKIP() << "no queue: " << added;
    // The layer keeps what it has heard for a moment.
    const auto known = [] {
      std::vector<BYTE> buffer;
      const PRINTER_INFO_2A* queue = FindQueue(buffer);
      return queue != nullptr && (queue->Status & PRINTER_STATUS_NOT_AVAILABLE) == 0;
    };
    if (!WaitFor(known)) GTEST_SKIP() << "built without a print service";
  }
  void TearDown() override {
    Output("lpadmin -x Prova");
    std::filesystem::remove_all(s_folder / ".cups");
  }
  /// What the user has saved with lpoptions.
  static void SaveOptions(const std::string& lines) {
    std::filesystem::create_directory(s_folder / ".cups");
    std::ofstream(s_folder / ".cups" / "lpoptions") << lines;
  }
  /// The options that the job's filter was started with.
  static std::string Ticket() { return " " + Read((s_folder / "out" / "options").string()); }

  /// The queue's record, which lies in the buffer; null while there is none.
  static const PRINTER_INFO_2A* FindQueue(std::vector<BYTE>& buffer) {
    constexpr DWORD kFlags = PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS;
    DWORD needed = 0;
    DWORD count = 0;
    EnumPrintersA(kFlags, nullptr, 2, nullptr, 0, &needed, &count);
    buffer.resize(needed);
    if (EnumPrintersA(kFlags, nullptr, 2, buffer.data(), needed, &needed, &count) == FALSE) return nullptr;
    const auto* queues = reinterpret_cast<const PRINTER_INFO_2A*>(buffer.data());
    const auto* found = std::find_if(queues, queues + count, [](const PRINTER_INFO_2A& queue) {
      return std::strcmp(queue.pPrinterName, "Prova") == 0;
    });
    return found == queues + count ? nullptr : found;
  }

  static std::string Socket() { return (s_folder / "sock").string(); }
  static std::string Printed() { return (s_folder / "out" / "printed").string(); }

  HDC StartOnePage(const char* queue = "Prova") const {
    const HDC dc = CreateDCA(nullptr, queue, nullptr, nullptr);
    const DOCINFOA info{sizeof info, "Città", nullptr, nullptr, 0};
    EXPECT_GT(StartDocA(dc, &info), 0);
    EXPECT_GT(StartPage(dc), 0);
    const TestImage image(400, 300, 1);
    EXPECT_TRUE(platform::DrawImageOnPrinter(dc, image.view, {0, 0, 400, 300}, {0, 0, 400, 300}));
    EXPECT_GT(EndPage(dc), 0);
    return dc;
  }

 private:
  static bool WriteFiles() {
    std::string user = std::to_string(getuid());
    if (const passwd* own = getpwuid(getuid())) user = own->pw_name;
    std::string group = user;
    if (const struct group* own = getgrgid(getgid())) group = own->gr_name;
    const std::string system = group;
    if (getuid() == 0) {
      const passwd* printing = getpwnam("lp");
      if (printing == nullptr) return false;
      user = group = "lp";
      for (const auto& entry : std::filesystem::recursive_directory_iterator(s_folder))
        if (chown(entry.path().c_str(), printing->pw_uid, printing->pw_gid) != 0) return false;
    }
    const std::string folder = s_folder.string();
    std::ofstream(s_folder / "files.conf")
        << "ServerRoot " << folder << "/etc\nRequestRoot " << folder << "/spool\nCacheDir " << folder
        << "/cache\nStateDir " << folder << "/state\nTempDir " << folder
        << "/spool\nAccessLog stderr\nErrorLog stderr\nPageLog stderr\n"
        << "Printcap\nFileDevice Yes\nUser " << user << "\nGroup " << group << "\nSystemGroup " << system
        << "\n";
    return true;
  }

  static void Start() {
    s_service = fork();
    if (s_service != 0) return;
    const int log = open((s_folder / "log").c_str(), O_CREAT | O_WRONLY, 0644);
    dup2(log, STDOUT_FILENO);
    dup2(log, STDERR_FILENO);
    execl("/usr/sbin/cupsd", "cupsd", "-f", "-c", (s_folder / "cupsd.conf").c_str(), "-s",
          (s_folder / "files.conf").c_str(), nullptr);
    _exit(127);
  }

  inline static std::filesystem::path s_folder;
  inline static pid_t s_service = 0;
};
