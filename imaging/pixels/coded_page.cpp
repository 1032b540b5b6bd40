#include "imaging/pixels/coded_page.h"

#include <utility>

#include "imaging/core/exception.h"

namespace imaging {

CodedPage::CodedPage(const Source& source, Compose compose) {
  if (source.Descriptor() < 0) {
    m_kept = compose(source);
    return;
  }
  m_compose = std::move(compose);
  m_path = source.Name();
  m_stamp = source.Stamp();
}

std::optional<CodedForm> CodedPage::Read() const {
  if (!m_compose) return m_kept;
  try {
    const auto source = OpenFileSource(m_path.c_str());
    return source->Stamp() == m_stamp ? m_compose(*source) : std::nullopt;
  } catch (CLeadtoolsException* exception) {
    exception->Delete();  // the pixels are there in any case
    return std::nullopt;
  }
}

}  // namespace imaging
