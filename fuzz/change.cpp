// A file that becomes another one while it is read, under the same identity: what was remembered of its
// directory is wrong then, at any read.

#include "fuzz/bytes.h"
#include "imaging/codecs/codec.h"
#include "imaging/pixels/storage.h"

namespace {

class Changing final : public imaging::Source {
 public:
  Changing(std::vector<std::uint8_t> first, std::vector<std::uint8_t> second, int reads, std::uint64_t number)
      : m_first(std::move(first)), m_second(std::move(second)), m_reads(reads), m_number(number) {}

  std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> target) const override {
    const auto& bytes = m_reads > 0 ? m_first : m_second;
    --m_reads;
    if (offset < 0 || offset >= std::ssize(bytes)) return 0;
    const std::size_t count = std::min(target.size(), bytes.size() - static_cast<std::size_t>(offset));
    std::copy_n(bytes.begin() + offset, count, target.begin());
    return count;
  }
  std::int64_t Size() const override { return std::ssize(m_first); }
  const std::string& Name() const override { return m_name; }
  std::optional<imaging::SourceIdentity> Identity() const override { return Stamp(); }
  imaging::SourceIdentity Stamp() const override { return {1, m_number, Size(), 1, 1}; }

 private:
  std::vector<std::uint8_t> m_first;
  std::vector<std::uint8_t> m_second;
  mutable int m_reads;
  std::uint64_t m_number;
  std::string m_name = "changing.tif";
};

}  // namespace

// Reads, a place in the file, and what stands there after so many reads; the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static std::uint64_t number = 0;
  fuzz::Bytes bytes(data, size);
  const int reads = bytes.TakeFrom(0, 60);
  const auto at = static_cast<std::size_t>(bytes.TakeFrom(0, 20000));
  std::vector<std::uint8_t> change(bytes.Take() % 32);
  for (auto& byte : change) byte = static_cast<std::uint8_t>(bytes.Take());
  const auto first = bytes.Copy();
  if (first.empty()) return 0;
  auto second = first;
  for (std::size_t i = 0; i < change.size(); ++i) second[(at + i) % second.size()] = change[i];
  if (change.empty()) second.resize(at % second.size());
  const Changing source(first, second, reads, ++number);
  for (int page = 3; page >= 1; --page)
    fuzz::Succeeds([&] {
      const auto reader = imaging::OpenReader(source);
      const imaging::PageInfo info = reader->Describe(page);
      reader->CountPages();
      if (std::int64_t{info.width} * info.height <= 1'000'000) reader->Decode(page, {});
    });
  return 0;
}
