#pragma once

#include <string>

#include "imaging/core/source.h"

namespace imaging {

/// The tokens of pictures that are written as C source; comments and spaces between them are skipped.
class CTokens {
 public:
  enum class Kind {
    kEnd,
    kWord,    ///< a name or a number
    kString,  ///< what stands between quotes
    kOther    ///< one character
  };

  explicit CTokens(ByteReader& data) : m_data(data) {}

  Kind Next();
  const std::string& Text() const { return m_text; }
  /// The next string; false if there is none before the end of the array.
  bool NextString();

 private:
  void ReadString();
  void SkipComment();

  ByteReader& m_data;
  std::string m_text;
};

}  // namespace imaging
