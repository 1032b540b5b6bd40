#include "tests/helper/jpeg2000_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace codec_test {
namespace {

/// A stream for the library's writer that keeps what it is given.
struct Output {
  Bytes bytes;
  std::size_t place = 0;
};

opj_stream_t* OpenOutput(Output& output) {
  opj_stream_t* stream = opj_stream_create(1 << 16, OPJ_FALSE);
  opj_stream_set_user_data(stream, &output, nullptr);
  opj_stream_set_write_function(stream, [](void* data, OPJ_SIZE_T size, void* user) {
    auto& target = *static_cast<Output*>(user);
    target.bytes.resize(std::max(target.bytes.size(), target.place + size));
    std::memcpy(&target.bytes[target.place], data, size);
    target.place += size;
    return size;
  });
  opj_stream_set_seek_function(stream, [](OPJ_OFF_T place, void* user) -> OPJ_BOOL {
    static_cast<Output*>(user)->place = static_cast<std::size_t>(place);
    return OPJ_TRUE;
  });
  opj_stream_set_skip_function(stream, [](OPJ_OFF_T count, void* user) -> OPJ_OFF_T {
    static_cast<Output*>(user)->place += static_cast<std::size_t>(count);
    return count;
  });
  return stream;
}

}  // namespace

Bytes EncodeJpeg2000(opj_image_t* image, bool container, bool transform) {
  Output output;
  opj_cparameters_t parameters;
  opj_set_default_encoder_parameters(&parameters);
  parameters.numresolution = 2;
  parameters.tcp_numlayers = 1;
  parameters.cp_disto_alloc = 1;
  parameters.tcp_mct = transform ? 1 : 0;
  opj_codec_t* codec = opj_create_compress(container ? OPJ_CODEC_JP2 : OPJ_CODEC_J2K);
  opj_setup_encoder(codec, &parameters, image);
  opj_stream_t* stream = OpenOutput(output);
  EXPECT_TRUE(opj_start_compress(codec, image, stream) && opj_encode(codec, stream) &&
              opj_end_compress(codec, stream));
  opj_stream_destroy(stream);
  opj_destroy_codec(codec);
  opj_image_destroy(image);
  return output.bytes;
}

}  // namespace codec_test
