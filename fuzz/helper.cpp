#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

#include "imaging/codecs/codec.h"
#include "imaging/helper/place.h"
#include "imaging/helper/process.h"
#include "imaging/ltwrap.h"

// What a module of the helper says to the library, and what it writes as a page: any bytes. In place of a
// process the answers come from the fuzzer's input; all behind them is the library's own.
namespace {

std::span<const std::uint8_t> g_input;

/// Zeros once there is no more.
template <typename Value>
Value Take() {
  Value value{};
  const std::size_t size = std::min(sizeof value, g_input.size());
  std::memcpy(&value, g_input.data(), size);
  g_input = g_input.subspan(size);
  return value;
}

/// Most answers would be refused at their first field; a page of many pixels tells nothing but takes long.
void MakeLikely(helper::PageRecord& page) {
  constexpr std::array kDepths = {1, 4, 8, 24, 32};
  constexpr int kMostSide = 512;
  page.width = 1 + (page.width & (kMostSide - 1));
  page.height = 1 + (page.height & (kMostSide - 1));
  page.memoryBits = kDepths[static_cast<std::uint32_t>(page.memoryBits) % kDepths.size()];
  page.bits = 1 + (page.bits & 63);
  page.format &= 255;
  page.perspective &= 7;
  page.xResolution &= 1023;
  page.yResolution &= 1023;
  page.delivery = static_cast<helper::Delivery>(static_cast<std::uint32_t>(page.delivery) %
                                                (static_cast<std::uint32_t>(helper::Delivery::kLast) + 1));
  page.deliveredBytes = 1 + (page.deliveredBytes & 0xffff);
  page.colors %= page.palette.size() + 1;
}

}  // namespace

namespace imaging::helper_client {

Process::Process(const std::string&, const char*) : m_process(1) {}
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
  if (request.kind != helper::RequestKind::kDecode) return true;
  const std::size_t size = std::min(g_input.size() / 2, static_cast<std::size_t>(request.bytes));
  return pwrite(descriptor, g_input.data() + g_input.size() - size, size, 0) == static_cast<ssize_t>(size);
}

Silence Process::Receive(helper::Reply& reply, std::chrono::milliseconds) {
  const auto kind = Take<std::uint8_t>();
  if (kind == 0xff) {
    Kill();
    return static_cast<Silence>(Take<std::uint8_t>() % 6 + 1);
  }
  reply = Take<helper::Reply>();
  if ((kind & 1) == 0) reply.status = helper::Status::kDone;
  if ((kind & 2) == 0) reply.pages = 1 + (reply.pages & 3);
  if ((kind & 4) == 0) MakeLikely(reply.page);
  if ((kind & 8) == 0) reply.rows = std::min(reply.rows & 0xffff, reply.page.height);
  return Silence::kNone;
}

std::string ProgramPath() {
  return "none";
}
bool HasModule(const char*) {
  return true;
}

}  // namespace imaging::helper_client

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  g_input = {data, size};
  const std::array<char, 9> file = {'%', 'P', 'D', 'F', '-', '1', '.', '5', '\n'};
  try {
    const auto source = imaging::OpenMemorySource(file.data(), static_cast<long>(file.size()));
    const auto reader = imaging::OpenReaderOf(imaging::kHelperCodec, *source);
    const int pages = reader->CountPages();
    reader->Describe(pages);
    imaging::DecodeWish wish;
    wish.side = size % 2 == 0 ? 0 : 100;
    reader->Decode(pages, wish);
  } catch (CLeadtoolsException* exception) {
    exception->Delete();
  }
  return 0;
}
