#include "imaging/pages/bitmap_list.h"

#include <unordered_set>
#include <utility>

#include "imaging/core/coding.h"
#include "imaging/core/exception.h"
#include "imaging/pages/page_record.h"

namespace imaging {
namespace {

constexpr std::size_t kMostPreparedBytes = std::size_t{12}
                                           << 20;  // about a thousand bilevel pages of a strip

// Both live until the process ends: a static object of the host may destroy its list last of all.
std::unordered_set<const void*>& LiveLists() {
  static auto& lists = *new std::unordered_set<const void*>;
  return lists;
}

std::unordered_set<std::uint64_t>& ListedSerials() {
  static auto& serials = *new std::unordered_set<std::uint64_t>;
  return serials;
}

/// The time of the last change of the directory entry doesn't count: a new link or other rights leave the
/// contents as they were.
bool IsSameContents(SourceIdentity a, const SourceIdentity& b) {
  a.changedNs = b.changedNs;
  return a == b;
}

}  // namespace

ListedPixels::ListedPixels(PixelStorage& storage) {
  if (!ListedSerials().insert(storage.Serial()).second)
    Fail(kErrorInvalidParameter, "The bitmap belongs to a list already");
  m_storage = &storage;
  m_serial = storage.Serial();
}

ListedPixels::ListedPixels(ListedPixels&& other) noexcept
    : m_storage(std::exchange(other.m_storage, nullptr)), m_serial(other.m_serial) {}

ListedPixels& ListedPixels::operator=(ListedPixels&& other) noexcept {
  std::swap(m_storage, other.m_storage);
  std::swap(m_serial, other.m_serial);
  return *this;
}

ListedPixels::~ListedPixels() {
  if (m_storage == nullptr) return;
  delete Get();
  ListedSerials().erase(m_serial);
}

PixelStorage* ListedPixels::Get() const {
  const bool isOwn = PixelStorage::IsLive(m_storage) && m_storage->Serial() == m_serial;
  return isOwn ? m_storage : nullptr;
}

BitmapList::BitmapList() {
  LiveLists().insert(this);
}

BitmapList::~BitmapList() {
  LiveLists().erase(this);
}

bool BitmapList::IsLive(void* handle) {
  return LiveLists().contains(handle);
}

BitmapList& BitmapList::Find(void* handle) {
  if (!IsLive(handle)) Fail(kErrorInvalidParameter, "There is no such list of bitmaps");
  return *static_cast<BitmapList*>(handle);
}

void BitmapList::OpenFile(const char* path, int bits, const DecodeWish& wish) {
  const auto source = OpenFileSource(path);
  int pages = 0;
  RunCoding([&] { pages = OpenReader(*source)->CountPages(); });
  m_items.resize(static_cast<std::size_t>(pages));
  for (int i = 0; i < pages; ++i) m_items[static_cast<std::size_t>(i)].page = i + 1;
  m_path = path;
  m_stamp = source->Stamp();
  m_bits = bits;
  m_wish = wish;
}

void BitmapList::Prepare(const leadtools12::PagePreparation& preparation) {
  m_wish.side = preparation.side;
  if (preparation.prepare != nullptr) m_preparation = preparation;
}

BitmapList::Item& BitmapList::At(std::size_t index) {
  if (index >= m_items.size())
    Fail(kErrorInvalidParameter, "A list of %zu bitmaps has no item %zu", m_items.size(), index);
  return m_items[index];
}

Bitmap BitmapList::Decode(int page) const {
  Bitmap record = EmptyBitmap(0, 0, 1);
  RunCoding([&] {
    const auto source = OpenFileSource(m_path.c_str());
    if (!IsSameContents(source->Stamp(), m_stamp))
      Fail(kErrorFileRead, "%s was changed while its pages were being read", m_path.c_str());
    record = RecordOf(DecodeAt(m_bits, *OpenReader(*source), page, m_wish));
  });
  return record;
}

Bitmap BitmapList::Prepared(int page) const {
  Bitmap record = EmptyBitmap(0, 0, 1);
  try {
    record = Decode(page);
    m_preparation->prepare(&record);
  } catch (CLeadtoolsException* exception) {
    exception->Delete();
    Release(record);
    record = EmptyBitmap(0, 0, 1);
    m_preparation->replace(&record);
  }
  return record;
}

void BitmapList::GiveUpOldest() {
  const HeldPage oldest = m_prepared.front();
  m_prepared.pop_front();
  m_preparedBytes -= oldest.bytes;
  const auto index = static_cast<std::size_t>(oldest.page - 1);
  if (index >= m_items.size() || m_items[index].page != oldest.page) return;  // a caller changed the list
  m_items[index].pixels = {};
  m_items[index].isHeld = false;
}

Bitmap BitmapList::Header(std::size_t index) {
  Item& item = At(index);
  if (!item.isHeld) {
    const Bitmap record = m_preparation ? Prepared(item.page) : Decode(item.page);
    item.pixels = ListedPixels(*record.pStorage);
    item.header = record;
    item.isHeld = true;
    if (m_preparation) {
      const std::size_t bytes =
          static_cast<std::size_t>(record.pStorage->HeldPitch()) * static_cast<std::size_t>(record.Height);
      m_prepared.push_back({item.page, bytes});
      m_preparedBytes += bytes;
      while (m_preparedBytes > kMostPreparedBytes && m_prepared.size() > 1) GiveUpOldest();
    }
  }
  const PixelStorage* pixels = item.pixels.Get();
  if (pixels == nullptr) Fail(kErrorNoBitmap, "The bitmap of item %zu has been freed already", index);
  // A caller may have changed the pixels and failed before the header came back.
  item.header.Width = pixels->Width();
  item.header.Height = pixels->Height();
  item.header.BitsPerPixel = pixels->Bits();
  return item.header;
}

void BitmapList::SetHeader(std::size_t index, const Bitmap& header, PixelStorage& pixels) {
  Item& item = At(index);
  if (item.pixels.Get() != &pixels) item.pixels = ListedPixels(pixels);
  item.header = header;
  item.isHeld = true;
  item.page = 0;
}

void BitmapList::Insert(std::size_t index, const Bitmap& header, PixelStorage& pixels) {
  if (index > m_items.size())
    Fail(kErrorInvalidParameter, "A list of %zu bitmaps has no place %zu", m_items.size(), index);
  // What follows the taking over must not fail.
  if (m_items.size() == m_items.capacity()) m_items.reserve(m_items.size() * 2 + 8);
  m_items.insert(m_items.begin() + static_cast<std::ptrdiff_t>(index),
                 Item{header, ListedPixels(pixels), 0, true});
}

}  // namespace imaging
