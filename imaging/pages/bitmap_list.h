#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "imaging/codecs/codec.h"
#include "imaging/core/source.h"
#include "imaging/pixels/record.h"

namespace imaging {

/// The pixels of a list's item. No storage is owned twice, in this list or another, and none is freed that a
/// caller has freed already.
class ListedPixels {
 public:
  ListedPixels() = default;
  /// Throws if an item owns the storage already.
  explicit ListedPixels(PixelStorage& storage);
  ~ListedPixels();
  ListedPixels(ListedPixels&& other) noexcept;
  ListedPixels& operator=(ListedPixels&& other) noexcept;
  ListedPixels(const ListedPixels&) = delete;
  ListedPixels& operator=(const ListedPixels&) = delete;

  /// Null if there are none, or a caller has freed them.
  PixelStorage* Get() const;

 private:
  PixelStorage* m_storage = nullptr;
  std::uint64_t m_serial = 0;  ///< tells a later storage at the same address from the item's own
};

/// A row of bitmaps behind a list handle. The pages of a file are decoded one by one as they are asked for,
/// so that a caller who reduces each before the next needs the memory of one page, however many there are.
class BitmapList {
 public:
  BitmapList();
  ~BitmapList();
  BitmapList(const BitmapList&) = delete;
  BitmapList& operator=(const BitmapList&) = delete;
  /// The list behind a handle. Throws if there is none.
  static BitmapList& Find(void* handle);
  static bool IsLive(void* handle);

  /// Fills an empty list with the pages of a file. Throws if the file can't be shown.
  void OpenFile(const char* path, int bits, const DecodeWish& wish);
  std::size_t Count() const { return m_items.size(); }
  /// Pages that are decoded from now on are prepared, and given up again when many are held.
  void Prepare(const leadtools12::PagePreparation& preparation);
  /// Decodes the page if it isn't held. What throws leaves the item undecoded.
  Bitmap Header(std::size_t index);
  void SetHeader(std::size_t index, const Bitmap& header, PixelStorage& pixels);
  void Insert(std::size_t index, const Bitmap& header, PixelStorage& pixels);

 private:
  struct Item {
    Bitmap header;
    ListedPixels pixels;
    int page = 0;  ///< of the file, whose pixels these are or will be; 0 none
    bool isHeld = false;
  };

  Item& At(std::size_t index);
  struct HeldPage {
    int page;
    std::size_t bytes;
  };

  Bitmap Decode(int page) const;
  Bitmap Prepared(int page) const;
  void GiveUpOldest();

  std::vector<Item> m_items;
  std::optional<leadtools12::PagePreparation> m_preparation;
  std::deque<HeldPage> m_prepared;  ///< the one made first in front
  std::size_t m_preparedBytes = 0;
  std::string m_path;
  SourceIdentity m_stamp;  ///< of the file when its pages were counted
  int m_bits = 0;
  DecodeWish m_wish;
};

}  // namespace imaging
