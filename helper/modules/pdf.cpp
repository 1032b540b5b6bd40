#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>

#include "helper/module.h"
#include "helper/modules/pdf_image.h"
#include "helper/modules/pdf_input.h"
#include "helper/modules/pdf_picture.h"

// PDF. A page that is one picture comes out as that picture's own data.
namespace helper {
namespace {

class Pdf final : public Document {
 public:
  explicit Pdf(const Input& input) {
    m_pdf.setSuppressWarnings(true);
    try {
      m_pdf.processInputSource(std::make_shared<PdfInput>(input));
      m_pages = static_cast<int>(m_pdf.getAllPages().size());
    } catch (const QPDFExc& fault) {
      if (fault.getErrorCode() == qpdf_e_password)
        throw Failure(Status::kUnsupported, "the document is protected by a password");
      throw;
    }
    if (m_pages == 0) throw Failure(Status::kCorrupt, "the document has no pages");
  }

  int CountPages() override { return m_pages; }

  PageRecord Describe(int page, int) override { return ImageOf(page).Page(); }
  Decoded Decode(int page, int, const Canvas& canvas) override { return ImageOf(page).Decode(canvas); }

 private:
  /// The last one is kept, since a page is described before it is decoded.
  const PdfImage& ImageOf(int page) {
    if (page == m_known && m_image) return *m_image;
    m_image.reset();
    const auto picture =
        FindPagePicture(QPDFPageObjectHelper(m_pdf.getAllPages().at(static_cast<std::size_t>(page) - 1)));
    if (picture) m_image = PdfImage::Of(m_pdf, *picture);
    if (!m_image) throw Failure(Status::kUnsupported, "a page that isn't one picture can't be drawn");
    m_known = page;
    return *m_image;
  }

  QPDF m_pdf;
  int m_pages = 0;
  int m_known = 0;
  std::optional<PdfImage> m_image;
};

std::unique_ptr<Document> Open(const Input& input) {
  return std::make_unique<Pdf>(input);
}

}  // namespace
}  // namespace helper

TESSAREL_MODULE(helper::Policy::kCompute, nullptr, helper::Open)
