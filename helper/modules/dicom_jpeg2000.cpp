#include "helper/modules/dicom_jpeg2000.h"

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dccodec.h>
#include <dcmtk/dcmdata/dcdeftag.h>
#include <dcmtk/dcmdata/dcitem.h>
#include <dcmtk/dcmdata/dcpixseq.h>
#include <dcmtk/dcmdata/dcpxitem.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "helper/modules/jpeg2000_decoder.h"

namespace helper {
namespace {

/// How the data set wants the samples of a frame.
struct FrameLayout {
  std::size_t width = 0;
  std::size_t height = 0;
  std::size_t samples = 0;
  std::size_t sampleBytes = 0;
  bool planes = false;

  std::size_t Bytes() const { return width * height * samples * sampleBytes; }
};

FrameLayout LayoutOf(DcmItem& data) {
  const auto number = [&data](const DcmTagKey& tag) {
    Uint16 value = 0;
    data.findAndGetUint16(tag, value);
    return static_cast<std::size_t>(value);
  };
  return {number(DCM_Columns), number(DCM_Rows), number(DCM_SamplesPerPixel),
          (number(DCM_BitsAllocated) + 7) / 8, number(DCM_PlanarConfiguration) == 1};
}

/// The codestream of a frame, which may come in several fragments behind the table of offsets. Moves the
/// fragment's number on to the next frame.
std::vector<std::uint8_t> JoinFragments(DcmPixelSequence& fragments, std::uint32_t frame, std::int32_t frames,
                                        std::uint32_t& fragment) {
  const auto count = static_cast<std::uint32_t>(fragments.card());
  if (fragment == 0 && DcmCodec::determineStartFragment(frame, frames, &fragments, fragment).bad())
    throw Failure(Status::kCorrupt, "a frame isn't where the table says");
  const bool single = count == static_cast<std::uint32_t>(frames) + 1;
  std::uint32_t end = single ? fragment + 1 : count;
  if (!single && static_cast<std::int64_t>(frame) + 1 < frames &&
      DcmCodec::determineStartFragment(frame + 1, frames, &fragments, end).bad())
    throw Failure(Status::kCorrupt, "a frame isn't where the table says");
  std::vector<std::uint8_t> stream;
  for (; fragment < std::min(end, count); ++fragment) {
    DcmPixelItem* item = nullptr;
    Uint8* bytes = nullptr;
    if (fragments.getItem(item, fragment).bad() || item->getUint8Array(bytes).bad() || bytes == nullptr)
      throw Failure(Status::kCorrupt, "a part of a frame is missing");
    stream.insert(stream.end(), bytes, bytes + item->getLength());
  }
  return stream;
}

void CheckImage(const opj_image_t& image, const FrameLayout& layout) {
  constexpr OPJ_UINT32 kMostBits = 31;
  if (image.numcomps < layout.samples)
    throw Failure(Status::kCorrupt, "a frame has fewer colours than the picture");
  for (const auto& component : std::span(image.comps, layout.samples)) {
    if (component.w != layout.width || component.h != layout.height)
      throw Failure(Status::kCorrupt, "a frame has another size than the picture");
    if (component.prec > kMostBits || component.prec > layout.sampleBytes * 8)
      throw Failure(Status::kUnsupported, "a frame has more bits than the picture");
  }
}

/// As many of the low bytes as the data set has, in the byte order of this machine, which is the smallest
/// first.
void WriteSamples(const opj_image_t& image, const FrameLayout& layout, std::uint8_t* target) {
  const std::size_t pixels = layout.width * layout.height;
  const std::size_t step = layout.planes ? 1 : layout.samples;
  for (std::size_t sample = 0; sample < layout.samples; ++sample) {
    const OPJ_INT32* values = image.comps[sample].data;
    if (values == nullptr) throw Failure(Status::kCorrupt, "a colour of a frame is missing");
    std::uint8_t* at = target + (layout.planes ? sample * pixels : sample) * layout.sampleBytes;
    for (std::size_t i = 0; i < pixels; ++i, at += step * layout.sampleBytes)
      std::memcpy(at, &values[i], layout.sampleBytes);
  }
}

void DecodeFrame(const std::vector<std::uint8_t>& stream, const FrameLayout& layout, std::uint8_t* target) {
  const auto readAt = [&stream](std::int64_t offset, std::span<std::uint8_t> part) {
    const std::size_t left = stream.size() - std::min(stream.size(), static_cast<std::size_t>(offset));
    const std::size_t count = std::min(left, part.size());
    std::copy_n(stream.end() - static_cast<std::ptrdiff_t>(left), count, part.begin());
    return count;
  };
  constexpr std::uint8_t kMarker = 0xff;
  const bool container = !stream.empty() && stream[0] != kMarker;
  Jpeg2000Decoder decoder({readAt, static_cast<std::int64_t>(stream.size())}, container, {});
  CheckImage(decoder.Image(), layout);
  decoder.Decode();
  CheckImage(decoder.Image(), layout);
  WriteSamples(decoder.Image(), layout, target);
}

/// There is nothing to choose, but the registry takes no codec without a choice.
class NoParameter final : public DcmCodecParameter {
 public:
  DcmCodecParameter* clone() const override { return new NoParameter(*this); }
  const char* className() const override { return "NoParameter"; }
};

class Jpeg2000Codec final : public DcmCodec {
 public:
  OFBool canChangeCoding(E_TransferSyntax from, E_TransferSyntax to) const override {
    return (from == EXS_JPEG2000 || from == EXS_JPEG2000LosslessOnly) && DcmXfer(to).isNotEncapsulated();
  }

  OFCondition decodeFrame(const DcmRepresentationParameter*, DcmPixelSequence* fragments,
                          const DcmCodecParameter*, DcmItem* data, Uint32 frame, Uint32& fragment,
                          void* buffer, Uint32 size, OFString& colors) const override {
    Sint32 frames = 1;
    if (data->findAndGetSint32(DCM_NumberOfFrames, frames).bad() || frames < 1) frames = 1;
    const FrameLayout layout = LayoutOf(*data);
    if (layout.sampleBytes == 0 || layout.sampleBytes > sizeof(OPJ_INT32) || size < layout.Bytes())
      return EC_CannotChangeRepresentation;
    // The caller holds a lock, which no exception should pass.
    try {
      DecodeFrame(JoinFragments(*fragments, frame, frames, fragment), layout,
                  static_cast<std::uint8_t*>(buffer));
    } catch (const std::bad_alloc&) {
      return EC_MemoryExhausted;
    } catch (const Failure&) {
      return EC_CorruptedData;
    }
    return determineDecompressedColorModel(nullptr, fragments, nullptr, data, colors);
  }

  /// The two that only the coding has are undone by it.
  OFCondition determineDecompressedColorModel(const DcmRepresentationParameter*, DcmPixelSequence*,
                                              const DcmCodecParameter*, DcmItem* data,
                                              OFString& colors) const override {
    const OFCondition condition = data->findAndGetOFString(DCM_PhotometricInterpretation, colors);
    if (colors == "YBR_RCT" || colors == "YBR_ICT") colors = "RGB";
    return condition;
  }

  // Frames are asked for one at a time, and nothing is written.
  OFCondition decode(const DcmRepresentationParameter*, DcmPixelSequence*, DcmPolymorphOBOW&,
                     const DcmCodecParameter*, const DcmStack&, OFBool&) const override {
    return EC_IllegalCall;
  }
  OFCondition encode(const Uint16*, const Uint32, const DcmRepresentationParameter*, DcmPixelSequence*&,
                     const DcmCodecParameter*, DcmStack&, OFBool&) const override {
    return EC_IllegalCall;
  }
  OFCondition encode(const E_TransferSyntax, const DcmRepresentationParameter*, DcmPixelSequence*,
                     const DcmRepresentationParameter*, DcmPixelSequence*&, const DcmCodecParameter*,
                     DcmStack&, OFBool&) const override {
    return EC_IllegalCall;
  }
};

}  // namespace

void RegisterJpeg2000InDicom() {
  static const Jpeg2000Codec codec;
  static const NoParameter parameter;
  DcmCodecList::registerCodec(&codec, nullptr, &parameter);
}

}  // namespace helper
