#pragma once

#include <qpdf/InputSource.hh>

#include "helper/module.h"

namespace helper {

/// The file as libqpdf reads it.
class PdfInput final : public InputSource {
 public:
  explicit PdfInput(const Input& input) : m_input(input) {}

  qpdf_offset_t findAndSkipNextEOL() override;
  const std::string& getName() const override { return m_name; }
  qpdf_offset_t tell() override { return m_place; }
  void seek(qpdf_offset_t offset, int whence) override;
  void rewind() override { m_place = 0; }
  std::size_t read(char* target, std::size_t size) override;
  void unreadCh(char) override { --m_place; }

 private:
  const Input& m_input;
  std::string m_name = "the file";
  qpdf_offset_t m_place = 0;
};

}  // namespace helper
