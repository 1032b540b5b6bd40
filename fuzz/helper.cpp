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

/// What steers the conversation stands in the first bytes, the rest is the page's contents: in front of a
/// file that is a conversation on which it is delivered.
constexpr std::size_t kSteering = 64;
std::span<const std::uint8_t> g_steering;
std::span<const std::uint8_t> g_contents;
helper::PageRecord g_page;

/// Zeros once there is no more.
template <typename Value>
Value Take(std::span<const std::uint8_t>& bytes = g_steering) {
  Value value{};
  const std::size_t size = std::min(sizeof value, bytes.size());
  std::memcpy(&value, bytes.data(), size);
  bytes = bytes.subspan(size);
  return value;
}

/// A page that isn't refused at its first field; one of many pixels tells nothing but takes long.
helper::PageRecord LikelyPage() {
  constexpr std::array kDepths = {1, 4, 8, 24, 32};
  constexpr int kMostSide = 512;
  helper::PageRecord page;
  page.width = 1 + (Take<std::uint16_t>() & (kMostSide - 1));
  page.height = 1 + (Take<std::uint16_t>() & (kMostSide - 1));
  page.memoryBits = kDepths[Take<std::uint8_t>() % kDepths.size()];
  page.bits = 1 + (Take<std::uint8_t>() & 63);
  page.format = Take<std::uint8_t>();
  page.perspective = Take<std::uint8_t>() & 7;
  page.xResolution = Take<std::uint16_t>();
  page.yResolution = Take<std::uint16_t>();
  page.delivery = static_cast<helper::Delivery>(Take<std::uint8_t>() %
                                                (static_cast<std::uint32_t>(helper::Delivery::kLast) + 1));
  page.deliveredBytes = std::ssize(g_contents) + Take<std::int8_t>();
  page.colors = Take<std::uint16_t>() % (page.palette.size() + 1);
  page.compression.fill(Take<char>());
  for (std::uint32_t& color : page.palette)
    color = static_cast<std::uint32_t>(&color - page.palette.data()) * 0x8765u;
  return page;
}

/// The bits of an answer's first byte: in what it isn't the likely one.
enum : unsigned { kFails = 1, kOtherPage = 2, kOtherRows = 4, kDamage = 8, kManyPages = 16, kAnyBytes = 32 };

helper::Reply TakeReply(unsigned kind) {
  if ((kind & kAnyBytes) != 0) return Take<helper::Reply>(g_contents);
  helper::Reply reply;
  if ((kind & kFails) != 0) reply.status = static_cast<helper::Status>(Take<std::uint8_t>() % 9);
  if ((kind & kOtherPage) != 0) g_page = LikelyPage();
  reply.page = g_page;
  reply.pages = (kind & kManyPages) != 0 ? Take<std::int32_t>() : 1;
  reply.rows = (kind & kOtherRows) != 0 ? Take<std::int16_t>() : g_page.height;
  reply.damagedRows = (kind & kDamage) != 0 ? Take<std::int16_t>() : 0;
  reply.text.fill(static_cast<char>(kind));
  return reply;
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
  const std::size_t size = std::min(g_contents.size(), static_cast<std::size_t>(request.bytes));
  return pwrite(descriptor, g_contents.data(), size, 0) == static_cast<ssize_t>(size);
}

Silence Process::Receive(helper::Reply& reply, std::chrono::milliseconds) {
  const unsigned kind = Take<std::uint8_t>();
  if (kind == 0xff) {
    Kill();
    return static_cast<Silence>(Take<std::uint8_t>() % 6 + 1);
  }
  reply = TakeReply(kind);
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
  const std::size_t steering = std::min(size, kSteering);
  g_steering = {data, steering};
  g_contents = {data + steering, size - steering};
  g_page = LikelyPage();
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
