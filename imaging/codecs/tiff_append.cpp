#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>

#include "imaging/codecs/tiff_directory.h"
#include "imaging/codecs/tiff_write.h"
#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

namespace imaging {
namespace {

constexpr std::int64_t kMostHeader = 16;

/// A file that shows libtiff a header without pages. It then writes the new page behind all that is there and
/// its directory's offset into the header; that one is kept back and goes, when everything else is on the
/// disk, into the last directory. Until then the file holds its old pages, whatever happens; and libtiff
/// needn't walk through a chain that may be long, or without an end.
class AppendedTiff final : public TiffTarget {
 public:
  /// chainEnd: offset of the field for the next directory in the last one.
  AppendedTiff(OutputFile& file, std::int64_t chainEnd) : m_file(file), m_chainEnd(chainEnd) {
    m_oldSize = file.Size();
    if (file.ReadAt(0, m_header) < 8) m_header = {};
    m_offsetAt = IsBig() ? 8 : 4;
    m_offsetSize = IsBig() ? 8 : 4;
    std::fill_n(m_header.begin() + m_offsetAt, m_offsetSize, std::uint8_t{0});
  }

  std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> target) override {
    const std::size_t got = m_file.ReadAt(offset, target);
    for (std::int64_t at = std::max<std::int64_t>(offset, 0);
         at < m_offsetAt + m_offsetSize && at < offset + static_cast<std::int64_t>(got); ++at)
      target[static_cast<std::size_t>(at - offset)] = m_header[static_cast<std::size_t>(at)];
    return got;
  }
  bool WriteAt(std::int64_t offset, std::span<const std::uint8_t> bytes) override {
    if (offset >= m_oldSize) return m_file.WriteAt(offset, bytes);
    // Of what was there before only the header's offset is touched.
    if (offset != m_offsetAt || static_cast<std::int64_t>(bytes.size()) != m_offsetSize) return false;
    std::copy(bytes.begin(), bytes.end(), m_header.begin() + m_offsetAt);
    m_linked = true;
    return true;
  }
  std::int64_t Size() override { return m_file.Size(); }

  /// Joins the new page to the others.
  bool Link() {
    return m_linked &&
           m_file.WriteAt(m_chainEnd, std::span(m_header).subspan(static_cast<std::size_t>(m_offsetAt),
                                                                  static_cast<std::size_t>(m_offsetSize)));
  }
  /// Takes away what was added, as far as the system still lets us.
  void Undo() { static_cast<void>(m_file.Truncate(m_oldSize)); }

 private:
  bool IsBig() const { return m_header[m_header[0] == 'M' ? 3 : 2] == 43; }

  OutputFile& m_file;
  std::int64_t m_chainEnd;
  std::int64_t m_oldSize = 0;
  std::array<std::uint8_t, kMostHeader> m_header{};
  std::int64_t m_offsetAt = 4;
  std::int64_t m_offsetSize = 4;
  bool m_linked = false;
};

/// Where the last directory of a file with so many pages ends its chain. Throws if the file isn't one to
/// which that page is the next.
std::int64_t FindChainEnd(const char* path, int number) {
  const auto source = OpenFileSource(path);
  std::array<std::uint8_t, 8> head{};
  const std::size_t size = source->ReadAt(0, head);
  if (!HasTiffSignature(std::span(head).first(size)))
    Fail(kErrorFileWrite, "%s can't be written: page %d can't be added, since it is not a TIFF file", path,
         number);
  TiffDirectories directories(*source);
  const int pages = directories.Count();
  if (pages != number - 1)
    Fail(kErrorFileWrite, "%s can't be written: page %d can't be added to %d pages", path, number, pages);
  if (number > Limit().pages)
    Fail(kErrorLimit, "%s can't be written: a file holds at most %d pages", path, Limit().pages);
  const auto chainEnd = static_cast<std::int64_t>(directories.NextField(pages));
  if (chainEnd == 0)
    Fail(kErrorFileWrite, "%s can't be written: page %d can't be added, since the file is damaged", path,
         number);
  return chainEnd;
}

/// Without the sync the system might write the link before the page.
enum class Sync { kBeforeLink, kLater };

void AppendAt(std::int64_t chainEnd, OutputFile& file, const char* path, const SavedPage& page,
              TiffCoding coding, int number, Sync sync) {
  AppendedTiff target(file, chainEnd);
  std::string text;
  if (WriteTiffPage(target, "a", page, coding, number, text) && (sync == Sync::kLater || file.SyncData()) &&
      target.Link())
    return;
  const int error = file.Error();
  target.Undo();
  FailWriting(path, error, text.c_str());
}

void Append(const char* path, const SavedPage& page, TiffCoding coding, int number) {
  const std::int64_t chainEnd = FindChainEnd(path, number);
  OutputFile file(open(path, O_RDWR | O_CLOEXEC));
  if (file.Descriptor() < 0) FailWriting(path, errno, "");
  AppendAt(chainEnd, file, path, page, coding, number, Sync::kBeforeLink);
  if (!file.Close()) FailWriting(path, file.Error(), "");
}

/// A number as the files that we make hold it, least significant byte first; 0 behind their end.
std::int64_t NumberAt(OutputFile& file, std::int64_t offset, std::size_t size) {
  std::array<std::uint8_t, 4> bytes{};
  file.ReadAt(offset, std::span(bytes).first(size));
  return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | std::int64_t{bytes[3]} << 24;
}

/// From the last page that is known the way to the end is one step for each page added since.
void AppendToNew(TargetFile& file, std::int64_t& chainEnd, const SavedPage& page, TiffCoding coding,
                 int number) {
  constexpr std::int64_t kFirstOffset = 4;
  constexpr std::int64_t kEntrySize = 12;
  if (number > Limit().pages)
    Fail(kErrorLimit, "%s can't be written: a file holds at most %d pages", file.Path(), Limit().pages);
  if (chainEnd == 0) chainEnd = kFirstOffset;
  while (const std::int64_t directory = NumberAt(file.File(), chainEnd, 4))
    chainEnd = directory + 2 + NumberAt(file.File(), directory, 2) * kEntrySize;
  AppendAt(chainEnd, file.File(), file.Path(), page, coding, number, Sync::kLater);
}

}  // namespace

void AppendTiffG3(const char* path, const SavedPage& page, int number) {
  Append(path, page, TiffCoding::kG3, number);
}

void AppendTiffPackBits(const char* path, const SavedPage& page, int number) {
  Append(path, page, TiffCoding::kPackBits, number);
}

void AppendTiffG3ToNew(TargetFile& file, std::int64_t& chainEnd, const SavedPage& page, int number) {
  AppendToNew(file, chainEnd, page, TiffCoding::kG3, number);
}

void AppendTiffPackBitsToNew(TargetFile& file, std::int64_t& chainEnd, const SavedPage& page, int number) {
  AppendToNew(file, chainEnd, page, TiffCoding::kPackBits, number);
}

}  // namespace imaging
