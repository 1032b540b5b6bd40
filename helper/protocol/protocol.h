#pragma once

#include <array>
#include <cstdint>

// What the library and its helper program say to each other: records of a fixed size over a socket that keeps
// their bounds. The helper is never trusted; what it may claim is checked where the library reads it.
namespace helper {

inline constexpr std::uint32_t kProtocolVersion = 2;
/// The program's end of the socket.
inline constexpr int kSocket = 3;

enum class RequestKind : std::uint32_t {
  kOpen = 1,  ///< with a descriptor of the file; gives the count of pages
  kDescribe,  ///< gives the page's description
  kDecode,    ///< with a descriptor of the memory file that takes the page
};

struct Request {
  std::uint32_t version = kProtocolVersion;
  RequestKind kind = RequestKind::kOpen;
  std::int32_t page = 0;        ///< from 1
  std::int32_t resolution = 0;  ///< dots per inch for pages that are drawn; 0: the module's own choice
  std::int32_t width = 0;       ///< pixels of a page that is drawn; 0: as the resolution makes it
  std::int32_t height = 0;
  std::int64_t pitch = 0;  ///< bytes from row to row in the memory file
  std::int64_t bytes = 0;  ///< size of the file that comes along
};

enum class Status : std::uint32_t {
  kDone,
  kCorrupt,
  kUnsupported,
  kTooLarge,
  kNoSuchPage,
  kNoMemory,
  kUnknownKind,
  kNoSandbox,  ///< the program couldn't lock itself down and works for nobody
  kLast = kNoSandbox,
};

/// What comes in the memory file.
enum class Delivery : std::uint32_t {
  kPixels,
  kTiff,      ///< the page's own coded data as a TIFF file of one page
  kJpeg,      ///< or as a JPEG file
  kJpeg2000,  ///< or as one that another module reads
  kDrawn,     ///< nothing: the page is one picture, which a module that draws shows at its own resolution
  kLast = kDrawn,
};

struct PageRecord {
  std::int32_t format = 0;  ///< the code of the kind
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::int32_t bits = 0;            ///< of a pixel in the file
  std::int32_t memoryBits = 0;      ///< of a pixel in memory: 1, 4, 8, 24 (red first) or 32 (alpha last)
  std::int32_t perspective = 0;     ///< 0 normal, else 2 to 8
  std::int32_t xResolution = 0;     ///< dots per inch, 0 unknown
  std::int32_t yResolution = 0;     ///< dots per inch, 0 unknown
  std::int64_t deliveredBytes = 0;  ///< of a file that is delivered
  Delivery delivery = Delivery::kPixels;
  std::uint32_t colors = 0;  ///< entries in use; 0: grey from black to white
  std::array<char, 32> compression{};
  std::array<std::uint32_t, 256> palette{};  ///< 0xrrggbb
};

/// Also what the program says first, before any request: that it is locked down.
struct Reply {
  std::uint32_t version = kProtocolVersion;
  Status status = Status::kDone;
  std::int32_t pages = 0;
  std::int32_t rows = 0;         ///< of the page that are there, from the top
  std::int32_t damagedRows = 0;  ///< of these
  std::int32_t reserved = 0;
  PageRecord page;
  std::array<char, 200> text{};  ///< what failed
};

}  // namespace helper
