#pragma once

#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include "tests/imaging/codec_files.h"

namespace codec_test {

/// A page with a picture of these dictionary entries under the name /I.
struct PdfPage {
  std::string image = {};
  Bytes data = {};
  std::string contents = "q 72 0 0 36 0 0 cm /I Do Q";
  std::string entries = {};  ///< more of the page's
  std::string box = "[0 0 72 36]";
};

/// Counts its objects and writes down where they are, as a table at the end wants it.
class PdfWriter {
 public:
  int Add(const std::string& dictionary, const Bytes* stream = nullptr) {
    m_places.push_back(m_text.size());
    m_text += std::to_string(m_places.size()) + " 0 obj\n";
    if (stream == nullptr) {
      m_text += "<< " + dictionary + " >>\n";
    } else {
      m_text += "<< " + dictionary + " /Length " + std::to_string(stream->size()) + " >>\nstream\n";
      m_text.append(stream->begin(), stream->end());
      m_text += "\nendstream\n";
    }
    m_text += "endobj\n";
    return static_cast<int>(m_places.size());
  }
  Bytes Finish(int root) {
    const std::size_t table = m_text.size();
    m_text += "xref\n0 " + std::to_string(m_places.size() + 1) + "\n0000000000 65535 f \n";
    for (const std::size_t place : m_places) {
      std::array<char, 21> line{};
      std::snprintf(line.data(), line.size(), "%010zu 00000 n \n", place);
      m_text += line.data();
    }
    m_text += "trailer << /Size " + std::to_string(m_places.size() + 1) + " /Root " + std::to_string(root) +
              " 0 R >>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n";
    return {m_text.begin(), m_text.end()};
  }

 private:
  std::string m_text = "%PDF-1.5\n";
  std::vector<std::size_t> m_places;
};

inline Bytes MakePdf(const std::vector<PdfPage>& pages) {
  PdfWriter writer;
  const int tree = static_cast<int>(pages.size()) * 3 + 1;
  std::string kids;
  for (const PdfPage& page : pages) {
    const int image = writer.Add("/Type /XObject /Subtype /Image " + page.image, &page.data);
    const Bytes text(page.contents.begin(), page.contents.end());
    const int contents = writer.Add("", &text);
    const int number = writer.Add(
        "/Type /Page /Parent " + std::to_string(tree) + " 0 R /MediaBox " + page.box + " /Contents " +
        std::to_string(contents) + " 0 R /Resources << /XObject << /I " + std::to_string(image) +
        " 0 R >> /Font << /F << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >> >> >> " + page.entries);
    kids += std::to_string(number) + " 0 R ";
  }
  writer.Add("/Type /Pages /Kids [" + kids + "] /Count " + std::to_string(pages.size()));
  return writer.Finish(writer.Add("/Type /Catalog /Pages " + std::to_string(tree) + " 0 R"));
}

inline std::string ImageEntries(int width, int height, const std::string& more) {
  return "/Width " + std::to_string(width) + " /Height " + std::to_string(height) + " " + more;
}

}  // namespace codec_test
