#include "platform/spooler/detail/job_title.h"

#include <gtest/gtest.h>

TEST(JobTitle, IsWhatAServiceTakes) {
  const std::string longest(255, 'x');
  const struct {
    std::string name;
    std::string title;
  } cases[] = {
      {"Città di Fax", "Città di Fax"},
      {"a\tb\nc\x7f", "a b c "},
      {longest + "y", longest},
      {std::string(254, 'x') + "è", std::string(254, 'x')},       // not half of a character
      {"a\xe8z", "a?z"},                                          // Latin-1
      {"\xc0\xaf \xed\xa0\x80 \xf4\x90\x80\x80", "?? ??? ????"},  // overlong, surrogate, beyond Unicode
      {"\xe2\x82", "??"},                                         // cut off
      {"€ \xf0\x9f\x93\xa0", "€ \xf0\x9f\x93\xa0"},
  };
  for (const auto& c : cases) EXPECT_EQ(platform::JobTitle(c.name), c.title);
}
