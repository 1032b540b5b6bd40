#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dcdeftag.h>
#include <dcmtk/dcmdata/dcdict.h>
#include <dcmtk/dcmdata/dcfilefo.h>
#include <dcmtk/dcmdata/dcistrmb.h>
#include <dcmtk/dcmdata/dcrledrg.h>
#include <dcmtk/dcmimage/diregist.h>
#include <dcmtk/dcmimgle/dcmimage.h>
#include <dcmtk/dcmjpeg/djdecode.h>
#include <dcmtk/dcmjpls/djdecode.h>
#include <dcmtk/oflog/oflog.h>

#include <algorithm>

#include "helper/module.h"
#include "helper/modules/dicom_jpeg2000.h"

// DICOM: medical pictures, each frame a page, seen through the window of the file.
namespace helper {
namespace {

/// The codes of grey and of colour pictures.
struct Coding {
  const char* name;
  int gray;
  int color;
};

Coding CodingOf(E_TransferSyntax syntax) {
  constexpr int kJpegGray = 127;
  constexpr int kJpegColor = 128;
  switch (syntax) {
    case EXS_RLELossless:
      return {"RLE", 125, 126};
    case EXS_JPEGProcess1:
      return {"JPEG baseline", kJpegGray, kJpegColor};
    case EXS_JPEGProcess2_4:
      return {"JPEG extended", kJpegGray, kJpegColor};
    case EXS_JPEGProcess14:
    case EXS_JPEGProcess14SV1:
      return {"JPEG lossless", kJpegGray, kJpegColor};
    case EXS_JPEGLSLossless:
    case EXS_JPEGLSLossy:
      return {"JPEG-LS", kJpegGray, kJpegColor};
    case EXS_JPEG2000LosslessOnly:
    case EXS_JPEG2000:
      return {"JPEG 2000", kJpegGray, kJpegColor};
    case EXS_DeflatedLittleEndianExplicit:
      return {"Deflate", 89, 90};
    case EXS_LittleEndianImplicit:
    case EXS_LittleEndianExplicit:
    case EXS_BigEndianExplicit:
      return {"None", 89, 90};
    default:
      throw Failure(Status::kUnsupported, "the pixels of this picture are in a coding that isn't read");
  }
}

class Dicom final : public Document {
 public:
  explicit Dicom(const Input& input) : m_bytes(input.ReadAll()) {
    DcmInputBufferStream stream;
    stream.setBuffer(m_bytes.data(), static_cast<offile_off_t>(m_bytes.size()));
    stream.setEos();
    m_file.transferInit();
    const OFCondition condition = m_file.read(stream, EXS_Unknown, EGL_noChange);
    m_file.transferEnd();
    DcmDataset& data = *m_file.getDataset();
    if (!data.tagExists(DCM_PixelData))
      throw Failure(Status::kCorrupt, condition.bad() ? condition.text() : "the file holds no picture");
    Describe(data);
  }

  int CountPages() override { return m_frames; }
  PageRecord Describe(int, int) override { return m_page; }

  Decoded Decode(int page, int, const Canvas& canvas) override {
    DicomImage image(m_file.getDataset(), m_syntax, CIF_UsePartialAccessToPixelData,
                     static_cast<unsigned long>(page) - 1, 1);
    if (image.getStatus() != EIS_Normal)
      throw Failure(Status::kCorrupt, DicomImage::getString(image.getStatus()));
    if (image.getWidth() != static_cast<unsigned long>(m_page.width) ||
        image.getHeight() != static_cast<unsigned long>(m_page.height))
      throw Failure(Status::kCorrupt, "a frame has another size than the picture");
    SetWindow(image);
    constexpr int kBits = 8;
    const auto* rows = static_cast<const std::uint8_t*>(image.getOutputData(kBits));
    const std::size_t rowBytes = static_cast<std::size_t>(m_page.width) * (image.isMonochrome() ? 1 : 3);
    if (rows == nullptr ||
        rowBytes * 8 != static_cast<std::size_t>(m_page.width) * static_cast<std::size_t>(m_page.memoryBits))
      throw Failure(Status::kCorrupt, "the frame can't be shown");
    for (int y = 0; y < m_page.height; ++y)
      std::copy_n(rows + static_cast<std::size_t>(y) * rowBytes, rowBytes, canvas.Row(y));
    return {m_page.height, 0};
  }

 private:
  static int Number(DcmDataset& data, const DcmTagKey& tag, int other) {
    Uint16 value = 0;
    return data.findAndGetUint16(tag, value).good() ? value : other;
  }

  void Describe(DcmDataset& data) {
    m_syntax = data.getOriginalXfer();
    const Coding coding = CodingOf(m_syntax);
    const int samples = Number(data, DCM_SamplesPerPixel, 1);
    OFString colors;
    data.findAndGetOFString(DCM_PhotometricInterpretation, colors);
    const bool gray = colors == "MONOCHROME1" || colors == "MONOCHROME2";
    Sint32 frames = 1;
    if (data.findAndGetSint32(DCM_NumberOfFrames, frames).bad() || frames < 1) frames = 1;
    m_frames = frames;
    m_page.width = Number(data, DCM_Columns, 0);
    m_page.height = Number(data, DCM_Rows, 0);
    m_page.bits = Number(data, DCM_BitsAllocated, 8) * samples;
    m_page.memoryBits = gray ? 8 : 24;
    m_page.format = gray ? coding.gray : coding.color;
    SetCompression(m_page, coding.name);
  }

  /// The file's first, else from the smallest value to the largest.
  static void SetWindow(DicomImage& image) {
    if (!image.isMonochrome()) return;
    if (image.getWindowCount() == 0 || image.setWindow(0UL) == 0) image.setMinMaxWindow();
  }

  std::vector<std::uint8_t> m_bytes;
  DcmFileFormat m_file;
  E_TransferSyntax m_syntax = EXS_Unknown;
  int m_frames = 1;
  PageRecord m_page;
};

/// Its dictionary is read from disk, and its log tells nobody.
void Prepare() {
  OFLog::configure(OFLogger::OFF_LOG_LEVEL);
  dcmDataDict.isDictionaryLoaded();
  DcmRLEDecoderRegistration::registerCodecs();
  DJDecoderRegistration::registerCodecs();
  DJLSDecoderRegistration::registerCodecs();
  RegisterJpeg2000InDicom();
}

std::unique_ptr<Document> Open(const Input& input) {
  return std::make_unique<Dicom>(input);
}

}  // namespace
}  // namespace helper

TESSAREL_MODULE(helper::Policy::kCompute, helper::Prepare, helper::Open)
