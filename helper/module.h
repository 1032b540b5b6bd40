#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "helper/protocol/protocol.h"

// What a module is to the helper program: a shared object that reads one family of files with a library of
// its own. It is loaded before the lock-down and sees a file only after it.
namespace helper {

/// How a module fails. The text doesn't name the file, which only the library knows.
class __attribute__((visibility("default"))) Failure : public std::runtime_error {
 public:
  Failure(Status status, const std::string& text) : std::runtime_error(text), status(status) {}
  Status status;
};

/// The file: positioned reads, never mapped, since it may shrink.
class Input {
 public:
  explicit Input(int descriptor, std::int64_t size) : m_descriptor(descriptor), m_size(size) {}
  std::int64_t Size() const { return m_size; }
  /// How many bytes there were.
  std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> target) const;
  /// For libraries that want the whole file in memory. Throws if it is larger than most or can't be read.
  std::vector<std::uint8_t> ReadAll(std::int64_t most = 1'000'000'000) const;

 private:
  int m_descriptor;
  std::int64_t m_size;
};

/// Where a page goes: rows top down.
struct Canvas {
  std::uint8_t* bytes;
  std::ptrdiff_t pitch;
  std::size_t size;
  std::uint8_t* Row(int y) const { return bytes + y * pitch; }
};

struct Decoded {
  int rows = 0;
  int damagedRows = 0;
};

/// One open file. Pages count from 1, and only pages that exist are asked for.
class Document {
 public:
  virtual ~Document() = default;
  virtual int CountPages() = 0;
  /// The size that the next description or page of one that is drawn has; 0 by 0: by its resolution.
  virtual void WantSize(int /*width*/, int /*height*/) {}
  virtual PageRecord Describe(int page, int resolution) = 0;
  /// Fills the canvas, which has room for what Describe told with the same resolution.
  virtual Decoded Decode(int page, int resolution, const Canvas& canvas) = 0;
};

/// What a locked-down module may still reach.
enum class Policy {
  kCompute,  ///< nothing but memory and what it was given
  kFonts,  ///< reads below the folders of fonts as well; as kCompute where the kernel can't limit it to these
};

struct Module {
  std::uint32_t version;
  Policy policy;
  /// Before the lock-down: tables that the library reads from disk, threads that must not start. May be null.
  void (*prepare)();
  std::unique_ptr<Document> (*open)(const Input& input);
};

/// The one name that a module exports: const helper::Module* tessarel_module().
inline constexpr const char* kModuleSymbol = "tessarel_module";

#define TESSAREL_MODULE(policy, prepare, open)                                               \
  extern "C" __attribute__((visibility("default"))) const helper::Module* tessarel_module(); \
  const helper::Module* tessarel_module() {                                                  \
    static const helper::Module module = {helper::kProtocolVersion, policy, prepare, open};  \
    return &module;                                                                          \
  }

inline void SetCompression(PageRecord& page, std::string_view name) {
  name = name.substr(0, page.compression.size() - 1);
  page.compression = {};
  name.copy(page.compression.data(), name.size());
}

}  // namespace helper
