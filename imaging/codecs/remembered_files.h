#pragma once

#include <algorithm>
#include <list>
#include <memory>
#include <utility>

#include "imaging/core/source.h"

namespace imaging {

/// What was learnt of some files, the newest in front, so that page n of one costs page n. A rewritten or
/// replaced file has another identity and isn't found.
template <typename Knowledge>
class RememberedFiles {
 public:
  /// What is known of the source's file; if nothing is, what make returns, which is kept if the file can be
  /// told from others.
  template <typename Make>
  static std::shared_ptr<Knowledge> Of(const Source& source, const Make& make) {
    constexpr std::size_t kFiles = 4;
    static std::list<std::pair<SourceIdentity, std::shared_ptr<Knowledge>>> files;
    const auto identity = source.Identity();
    if (!identity) return std::make_shared<Knowledge>(make());
    const auto known = std::find_if(files.begin(), files.end(),
                                    [&](const auto& candidate) { return candidate.first == *identity; });
    if (known != files.end()) {
      files.splice(files.begin(), files, known);
    } else {
      files.emplace_front(*identity, std::make_shared<Knowledge>(make()));
      if (files.size() > kFiles) files.pop_back();
    }
    return files.front().second;
  }
};

}  // namespace imaging
