#include <gtest/gtest.h>

#include <clocale>

#include "platform/spooler/detail/pdf_writer.h"

TEST(PdfText, NumbersAndTextsDoNotDependOnTheLocale) {
  std::setlocale(LC_ALL, "it_IT.UTF-8");
  struct Case {
    double value;
    const char* text;
  };
  for (const Case& row : {Case{0, "0"}, {1.5, "1.5"}, {-0.00001, "0"}, {1e7, "10000000"}, {2.00004, "2"}})
    EXPECT_EQ(platform::PdfNumber(row.value), row.text);
  EXPECT_EQ(platform::PdfText("à€"), "<FEFF00E020AC>");
  EXPECT_EQ(platform::PdfText("(\\)"), "<FEFF0028005C0029>");
}
