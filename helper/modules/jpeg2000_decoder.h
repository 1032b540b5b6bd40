#pragma once

#include <openjpeg.h>

#include <functional>
#include <span>
#include <string>

#include "helper/module.h"
#include "helper/modules/jp2_boxes.h"

namespace helper {

/// Where a picture's bytes are: positioned reads, and how many there are. Told how many were read.
struct Jpeg2000Source {
  std::function<std::size_t(std::int64_t offset, std::span<std::uint8_t> target)> readAt;
  std::int64_t size;
};

/// OpenJPEG's reading state over a picture, up to its header.
class Jpeg2000Decoder {
 public:
  Jpeg2000Decoder(Jpeg2000Source source, bool container, Jp2Header::Space space);
  ~Jpeg2000Decoder();
  Jpeg2000Decoder(const Jpeg2000Decoder&) = delete;
  Jpeg2000Decoder& operator=(const Jpeg2000Decoder&) = delete;

  const opj_image_t& Image() const { return *m_image; }
  /// Replaces palette indices by colours and puts the components in order, too.
  void Decode();

 private:
  Jpeg2000Decoder(Jpeg2000Source source, Jp2Header::Space space, opj_codec_t* codec);
  static void OnError(const char* text, void* self);
  void SetStream();
  void TellSpace();
  void CheckHeader() const;
  [[noreturn]] void FailDecoding() const;

  Jpeg2000Source m_source;
  Jp2Header::Space m_space;
  std::int64_t m_offset = 0;
  opj_codec_t* m_codec;
  opj_stream_t* m_stream = nullptr;
  opj_image_t* m_image = nullptr;
  std::string m_text;
};

}  // namespace helper
