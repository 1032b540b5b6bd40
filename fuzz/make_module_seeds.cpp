// make_module_seeds FOLDER [CORPUS]: writes what the tests of the helper's modules load, and the small files
// of a corpus that a module reads, to a folder for each module. In place of a helper's process stands one
// that keeps the file and ends.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "imaging/codecs/codec.h"
#include "imaging/core/exception.h"
#include "imaging/core/source.h"
#include "imaging/helper/place.h"
#include "imaging/helper/process.h"

namespace {

namespace fs = std::filesystem;

fs::path g_folder;
std::string g_module;
int g_kept = 0;

/// Large ones make every run slow; tests that damage a file at each place tell nothing after the first.
void Keep(int descriptor, std::int64_t size) {
  constexpr std::int64_t kMostBytes = 64 << 10;
  constexpr int kMostOfATest = 16;
  if (size > kMostBytes || ++g_kept > kMostOfATest) return;
  std::string bytes(static_cast<std::size_t>(size), '\0');
  if (pread(descriptor, bytes.data(), bytes.size(), 0) != size) return;
  fs::create_directories(g_folder / g_module);
  std::ofstream(g_folder / g_module / std::to_string(std::hash<std::string>()(bytes)), std::ios::binary)
      << bytes;
}

/// Whatever the work does to its process, which expects a helper.
template <typename Work>
void Apart(const Work& work) {
  const pid_t child = fork();
  if (child == 0) {
    const bool quiet = std::freopen("/dev/null", "w", stdout) != nullptr &&
                       std::freopen("/dev/null", "w", stderr) != nullptr;
    work();
    _exit(quiet ? 0 : 1);
  }
  waitpid(child, nullptr, 0);
}

void RunTests() {
  const testing::UnitTest& all = *testing::UnitTest::GetInstance();
  for (int i = 0; i < all.total_test_suite_count(); ++i)
    for (int k = 0; k < all.GetTestSuite(i)->total_test_count(); ++k)
      Apart([&] {
        const testing::TestInfo& test = *all.GetTestSuite(i)->GetTestInfo(k);
        testing::GTEST_FLAG(filter) = std::string(test.test_suite_name()) + "." + test.name();
        return RUN_ALL_TESTS();
      });
}

void Open(const fs::path& path) {
  try {
    imaging::OpenReader(*imaging::OpenFileSource(path.c_str()))->CountPages();
  } catch (CLeadtoolsException* exception) {
    exception->Delete();
  }
}

}  // namespace

namespace imaging::helper_client {

Process::Process(const std::string&, const char* module) : m_process(1) {
  g_module = module;
}
bool Process::Alive() {
  return m_process > 0;
}
bool Process::IsWornOut() const {
  return false;
}
void Process::Kill() {
  m_process = -1;
}
bool Process::Send(const helper::Request& request, int descriptor) {
  if (request.kind == helper::RequestKind::kOpen) Keep(descriptor, request.bytes);
  return false;
}
/// That it is locked down; nothing of the file.
Silence Process::Receive(helper::Reply& reply, std::chrono::milliseconds) {
  reply = {};
  return Silence::kNone;
}

std::string ProgramPath() {
  return "none";
}
bool HasModule(const char*) {
  return true;
}

}  // namespace imaging::helper_client

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (argc < 2) return 2;
  g_folder = argv[1];
  RunTests();
  if (argc > 2)
    for (const auto& entry : fs::recursive_directory_iterator(argv[2]))
      if (entry.is_regular_file()) Apart([&] { Open(entry.path()); });
}
