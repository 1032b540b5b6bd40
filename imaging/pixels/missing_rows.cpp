#include "imaging/pixels/missing_rows.h"

#include <algorithm>

namespace imaging {

void PixelStorage::ReduceFrom(const PixelStorage& source, int divisor, bool invert) {
  source.Complete();
  if (source.m_reduced != nullptr) source.CompleteReduced();
  const auto bands = static_cast<std::size_t>((m_height + MissingRows::kBand - 1) / MissingRows::kBand);
  auto missing = std::make_unique<MissingRows>();
  missing->source = &source;
  missing->invert = invert;
  missing->blocks.target = m_pixels;
  missing->blocks.targetPitch = m_pitch;
  missing->blocks.width = m_width;
  missing->blocks.height = m_height;
  missing->blocks.divisor = divisor;
  missing->made.resize(bands);
  missing->left = bands;
  m_missing = std::move(missing);
  m_complete = [](const PixelStorage& storage) { storage.MakeRows(0, storage.m_height); };
  source.m_reduced = this;
  source.m_beforeChange = [](const PixelStorage& storage) { storage.CompleteReduced(); };
}

void PixelStorage::MakeRows(int first, int count) const {
  if (m_missing == nullptr) return;
  MissingRows& missing = *m_missing;
  if (missing.source != nullptr) missing.Look();
  const int end = std::min(first + count, m_height);
  for (int band = std::max(first, 0) / MissingRows::kBand; band * MissingRows::kBand < end; ++band)
    if (!missing.made[static_cast<std::size_t>(band)]) missing.Make(band);
  if (missing.left == 0) ForgetMissing();
}

void PixelStorage::CompleteReduced() const {
  m_reduced->Complete();
}

/// Before this ends, whose block goes to the image that is made of it.
void PixelStorage::LeaveToReduced() noexcept {
  MissingRows& missing = *m_reduced->m_missing;
  missing.Look();
  missing.source = nullptr;
  missing.keptPixels = std::exchange(m_pixels, nullptr);
  missing.keptCapacity = m_capacity;
}

/// Cuts the tie, from the reduced image's end.
void PixelStorage::ForgetMissing() const noexcept {
  if (const PixelStorage* source = m_missing->source) {
    source->m_reduced = nullptr;
    source->m_beforeChange = nullptr;
  }
  GiveBlock(m_missing->keptPixels, m_missing->keptCapacity);
  m_missing = nullptr;
  m_complete = nullptr;
}

/// The tie goes with the pixels that two storages have exchanged.
void PixelStorage::ExchangeTies(PixelStorage& other) noexcept {
  std::swap(m_missing, other.m_missing);
  std::swap(m_reduced, other.m_reduced);
  std::swap(m_complete, other.m_complete);
  std::swap(m_beforeChange, other.m_beforeChange);
  const auto isOneOfUs = [&](const PixelStorage* storage) { return storage == this || storage == &other; };
  for (const PixelStorage* storage : {this, &other}) {
    if (isOneOfUs(storage->m_reduced)) storage->m_reduced = storage == this ? &other : this;  // both ends
    if (storage->m_reduced != nullptr) storage->m_reduced->m_missing->source = storage;
    if (storage->m_missing == nullptr || storage->m_missing->source == nullptr) continue;
    if (!isOneOfUs(storage->m_missing->source)) storage->m_missing->source->m_reduced = storage;
  }
}

}  // namespace imaging
