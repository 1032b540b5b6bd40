#include <gtest/gtest.h>
#include <libheif/heif.h>

#include "tests/helper/damage.h"
#include "tests/imaging/codec_files.h"

namespace codec_test {
namespace {

constexpr int kWidth = 96;
constexpr int kHeight = 64;

/// A picture of one grey with a darker corner top left, so that a turn shows.
struct Picture {
  int level = 200;
  bool alpha = false;
  heif_orientation orientation = heif_orientation_normal;
};

heif_image* MakeImage(const Picture& picture) {
  heif_image* image = nullptr;
  const int samples = picture.alpha ? 4 : 3;
  heif_image_create(kWidth, kHeight, heif_colorspace_RGB,
                    picture.alpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB, &image);
  heif_image_add_plane(image, heif_channel_interleaved, kWidth, kHeight, 8);
  int pitch = 0;
  std::uint8_t* pixels = heif_image_get_plane(image, heif_channel_interleaved, &pitch);
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth; ++x)
      for (int i = 0; i < samples; ++i)
        pixels[y * pitch + x * samples + i] =
            static_cast<std::uint8_t>(i == 3 ? 128 : (x < 32 && y < 32 ? 20 : picture.level));
  return image;
}

/// The last picture is the main one, and has the block of Exif.
Bytes MakeHeic(const std::vector<Picture>& pictures, const Bytes& exif = {},
               heif_compression_format format = heif_compression_HEVC) {
  heif_context* context = heif_context_alloc();
  heif_encoder* encoder = nullptr;
  if (heif_context_get_encoder_for_format(context, format, &encoder).code != heif_error_Ok) return {};
  heif_encoder_set_lossy_quality(encoder, 95);
  for (const Picture& picture : pictures) {
    heif_image* image = MakeImage(picture);
    heif_encoding_options* options = heif_encoding_options_alloc();
    options->image_orientation = picture.orientation;
    heif_image_handle* handle = nullptr;
    heif_context_encode_image(context, image, encoder, options, &handle);
    if (!exif.empty())
      heif_context_add_exif_metadata(context, handle, exif.data(), static_cast<int>(exif.size()));
    heif_context_set_primary_image(context, handle);
    heif_image_handle_release(handle);
    heif_encoding_options_free(options);
    heif_image_release(image);
  }
  heif_encoder_release(encoder);
  Bytes file;
  heif_writer writer = {1, [](heif_context*, const void* data, std::size_t size, void* target) {
                          const auto* bytes = static_cast<const std::uint8_t*>(data);
                          static_cast<Bytes*>(target)->assign(bytes, bytes + size);
                          return heif_error{heif_error_Ok, heif_suberror_Unspecified, ""};
                        }};
  heif_context_write(context, &writer, &file);
  heif_context_free(context);
  return file;
}

/// 150 by 75 dots per centimetre, big endian.
Bytes MakeExif() {
  return {'M', 'M',  0, 42, 0, 0, 0, 8, 0, 3,   1, 0x1a, 0, 5,    0, 0, 0, 1,  0, 0, 0, 50,
          1,   0x1b, 0, 5,  0, 0, 0, 1, 0, 0,   0, 58,   1, 0x28, 0, 3, 0, 0,  0, 1, 0, 3,
          0,   0,    0, 0,  0, 0, 0, 0, 0, 150, 0, 0,    0, 1,    0, 0, 0, 75, 0, 0, 0, 1};
}

struct Case {
  const char* name;
  Picture picture;
  int cornerX;  ///< a place in the dark corner
  int cornerY;
};

// A worker thread of the decoder would end the helper.
TEST(Heic, DepthsAndTurns) {
  const Case cases[] = {
      {"plain", {}, 8, 8},
      {"alpha", {.alpha = true}, 8, 8},
      {"half turn", {.orientation = heif_orientation_rotate_180}, kWidth - 9, kHeight - 9},
      {"quarter turn", {.orientation = heif_orientation_rotate_90_cw}, kHeight - 9, 8},
      {"mirrored", {.orientation = heif_orientation_flip_horizontally}, kWidth - 9, 8},
  };
  for (int i = 0; i < 2 * static_cast<int>(std::size(cases)); ++i) {
    const Case& form = cases[i / 2];
    const bool avif = i % 2 != 0;
    SCOPED_TRACE(std::string(form.name) + (avif ? " AVIF" : ""));
    const Bytes file = MakeHeic({form.picture}, {}, avif ? heif_compression_AV1 : heif_compression_HEVC);
    if (file.empty()) GTEST_SKIP() << "this libheif has no encoder";
    const Loaded page = LoadMemory(file);
    EXPECT_EQ(page.error, "");
    if (!page.error.empty()) continue;
    const bool turned = form.picture.orientation == heif_orientation_rotate_90_cw;
    EXPECT_EQ(page.record.Width, turned ? kHeight : kWidth);
    EXPECT_EQ(page.info.BitsPerPixel, form.picture.alpha ? 32 : 24);
    EXPECT_STREQ(page.info.Compression, avif ? "AV1" : "HEVC");
    EXPECT_EQ(page.info.XResolution, 0);
    EXPECT_NEAR(ColorAt(page, form.cornerX, form.cornerY).red, 20, 12);
    EXPECT_NEAR(
        ColorAt(page, page.record.Width - 1 - form.cornerX, page.record.Height - 1 - form.cornerY).red, 200,
        12);
  }
}

TEST(Heic, PicturesArePagesTheMainOneFirst) {
  const Bytes file = MakeHeic({{.level = 90}, {.level = 160}, {.level = 240}}, MakeExif());
  if (file.empty()) GTEST_SKIP() << "this libheif has no encoder";
  EXPECT_EQ(InformMemory(file).record.TotalPages, 3);
  constexpr int kLevels[] = {240, 90, 160};
  for (const int number : {2, 1, 3}) {
    const Loaded page = LoadMemory(file, number);
    ASSERT_EQ(page.error, "");
    EXPECT_NEAR(ColorAt(page, kWidth - 8, kHeight - 8).red, kLevels[number - 1], 12);
    EXPECT_EQ(page.info.XResolution, 381);
    EXPECT_EQ(page.info.YResolution, 191);
  }
}

TEST(Heic, DamagedFiles) {
  for (const auto format : {heif_compression_HEVC, heif_compression_AV1}) {
    const Bytes whole = MakeHeic({{}}, MakeExif(), format);
    if (whole.empty()) GTEST_SKIP() << "this libheif has no encoder";
    ExpectPageOrError(whole, {41, 64, whole.size() * 8, 151});
  }
}

}  // namespace
}  // namespace codec_test
