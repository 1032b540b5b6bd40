#if __has_include(<dav1d/dav1d.h>)
#include <dav1d/dav1d.h>
#endif
#include <dlfcn.h>
#include <libheif/heif.h>

#include <algorithm>
#include <cstring>

#include "helper/module.h"
#include "helper/modules/exif_density.h"

// HEIC and AVIF: the pictures of a file as pages, the one that the file calls its main one first; turned,
// mirrored and cut as the file says, for which its own properties count and not the orientation of Exif.
namespace helper {
namespace {

struct Release {
  void operator()(heif_context* context) const { heif_context_free(context); }
  void operator()(heif_image_handle* handle) const { heif_image_handle_release(handle); }
  void operator()(heif_image* image) const { heif_image_release(image); }
  void operator()(heif_decoding_options* options) const { heif_decoding_options_free(options); }
};
template <typename T>
using Owned = std::unique_ptr<T, Release>;

void Check(const heif_error& error) {
  if (error.code == heif_error_Ok) return;
  const bool unknown =
      error.code == heif_error_Unsupported_feature || error.code == heif_error_Unsupported_filetype;
  throw Failure(unknown ? Status::kUnsupported : Status::kCorrupt, error.message);
}

class Heic final : public Document {
 public:
  explicit Heic(const Input& input) : m_bytes(input.ReadAll()), m_context(heif_context_alloc()) {
    heif_context_set_max_decoding_threads(m_context.get(), 0);
    Check(
        heif_context_read_from_memory_without_copy(m_context.get(), m_bytes.data(), m_bytes.size(), nullptr));
    const int count = heif_context_get_number_of_top_level_images(m_context.get());
    m_pictures.resize(static_cast<std::size_t>(std::max(count, 0)));
    heif_context_get_list_of_top_level_image_IDs(m_context.get(), m_pictures.data(), count);
    heif_item_id main = 0;
    if (heif_context_get_primary_image_ID(m_context.get(), &main).code != heif_error_Ok) return;
    const auto found = std::find(m_pictures.begin(), m_pictures.end(), main);
    if (found != m_pictures.end()) std::rotate(m_pictures.begin(), found, found + 1);
  }

  int CountPages() override { return static_cast<int>(m_pictures.size()); }

  PageRecord Describe(int page, int) override {
    const Owned<heif_image_handle> handle = Picture(page);
    const bool alpha = heif_image_handle_has_alpha_channel(handle.get()) != 0;
    PageRecord record;
    record.width = heif_image_handle_get_width(handle.get());
    record.height = heif_image_handle_get_height(handle.get());
    record.memoryBits = alpha ? 32 : 24;
    record.bits = heif_image_handle_get_luma_bits_per_pixel(handle.get()) * (alpha ? 4 : 3);
    SetCompression(record, IsAvif() ? "AV1" : "HEVC");
    ReadDensity(*handle, record);
    return record;
  }

  Decoded Decode(int page, int, const Canvas& canvas) override {
    const Owned<heif_image_handle> handle = Picture(page);
    const bool alpha = heif_image_handle_has_alpha_channel(handle.get()) != 0;
    const Owned<heif_decoding_options> options(heif_decoding_options_alloc());
    options->convert_hdr_to_8bit = 1;
    heif_image* decoded = nullptr;
    Check(heif_decode_image(handle.get(), &decoded, heif_colorspace_RGB,
                            alpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB,
                            options.get()));
    const Owned<heif_image> image(decoded);
    int pitch = 0;
    const std::uint8_t* pixels = heif_image_get_plane_readonly(image.get(), heif_channel_interleaved, &pitch);
    const int width = heif_image_get_width(image.get(), heif_channel_interleaved);
    const int height = heif_image_get_height(image.get(), heif_channel_interleaved);
    if (pixels == nullptr || width != heif_image_handle_get_width(handle.get()) ||
        height != heif_image_handle_get_height(handle.get()))
      throw Failure(Status::kCorrupt, "the picture has another size than its description");
    const std::size_t rowBytes = static_cast<std::size_t>(width) * (alpha ? 4 : 3);
    for (int y = 0; y < height; ++y)
      std::memcpy(canvas.Row(y), pixels + static_cast<std::ptrdiff_t>(y) * pitch, rowBytes);
    return {height, 0};
  }

 private:
  bool IsAvif() const {
    constexpr int kBrandBytes = 12;
    return std::ssize(m_bytes) >= kBrandBytes &&
           heif_has_compatible_brand(m_bytes.data(), static_cast<int>(m_bytes.size()), "avif") == 1;
  }

  Owned<heif_image_handle> Picture(int page) const {
    heif_image_handle* handle = nullptr;
    Check(heif_context_get_image_handle(m_context.get(), m_pictures[static_cast<std::size_t>(page) - 1],
                                        &handle));
    return Owned<heif_image_handle>(handle);
  }

  /// The block of Exif begins with the distance to its TIFF header.
  static void ReadDensity(const heif_image_handle& handle, PageRecord& record) {
    constexpr std::size_t kMostBytes = 1 << 20;
    heif_item_id id = 0;
    if (heif_image_handle_get_list_of_metadata_block_IDs(&handle, "Exif", &id, 1) != 1) return;
    const std::size_t size = heif_image_handle_get_metadata_size(&handle, id);
    std::vector<std::uint8_t> bytes(size);
    if (size < 4 || size > kMostBytes ||
        heif_image_handle_get_metadata(&handle, id, bytes.data()).code != heif_error_Ok)
      return;
    const std::size_t skip = 4 + (std::size_t{bytes[0]} << 24 | std::size_t{bytes[1]} << 16 |
                                  std::size_t{bytes[2]} << 8 | std::size_t{bytes[3]});
    if (skip < size) ReadExifDensity(std::span(bytes).subspan(skip), record);
  }

  std::vector<std::uint8_t> m_bytes;
  Owned<heif_context> m_context;
  std::vector<heif_item_id> m_pictures;
};

/// Its plug-ins are looked for on disk.
void Prepare() {
  heif_init(nullptr);
}

std::unique_ptr<Document> Open(const Input& input) {
  return std::make_unique<Heic>(input);
}

}  // namespace
}  // namespace helper

// libheif asks libde265 for a worker thread whatever it is told itself, and the sandbox allows none. A
// module's own symbols are found before those of the libraries that it loads: asked here, libde265 gets no
// worker, and without one it decodes in the caller's thread.
extern "C" __attribute__((visibility("default"))) int de265_start_worker_threads(void*, int);
int de265_start_worker_threads(void*, int) {
  return 0;
}

// libdav1d starts as many threads as there are processors, if libheif leaves its settings as they come.
#ifdef DAV1D_API_VERSION_MAJOR
extern "C" __attribute__((visibility("default"))) void dav1d_default_settings(Dav1dSettings* settings) {
  const auto usual = reinterpret_cast<void (*)(Dav1dSettings*)>(dlsym(RTLD_NEXT, "dav1d_default_settings"));
  usual(settings);
  settings->n_threads = 1;
  settings->max_frame_delay = 1;
}
#endif

TESSAREL_MODULE(helper::Policy::kCompute, helper::Prepare, helper::Open)
