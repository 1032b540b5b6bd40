// What the standard library throws inside an operation comes out as the interface's own exception.

#include "imaging/core/guard.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace {

int CodeOf(void (*work)()) {
  try {
    imaging::Guarded(work);
  } catch (CLeadtoolsException* exception) {
    const int code = exception->m_nError;
    exception->Delete();
    return code;
  }
  return 0;
}

TEST(Guard, OnlyTheInterfacesExceptionGetsOut) {
  EXPECT_EQ(CodeOf([] { throw std::bad_alloc(); }), imaging::kErrorNoMemory);
  EXPECT_EQ(CodeOf([] { (void)std::vector<int>().at(1); }), imaging::kErrorInternal);
  EXPECT_EQ(CodeOf([] { imaging::Fail(imaging::kErrorCorrupt, "x"); }), imaging::kErrorCorrupt);
  EXPECT_EQ(CodeOf([] {}), 0);
}

}  // namespace
