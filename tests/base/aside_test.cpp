// Work that is done on another thread while its caller serves windows.

#include "platform/base/aside.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

#include "platform/base/exception.h"

namespace {

using platform::AsideScope;
using platform::RunAside;

void WaitUntilStopped() {
  while (!platform::IsWorkStopped()) std::this_thread::yield();
}

/// Noticed at its end.
class Counted : public CException {
 public:
  explicit Counted(int& ended) : m_ended(ended) {}
  ~Counted() override { ++m_ended; }

 private:
  int& m_ended;
};

TEST(Aside, WorksWhereItIsAskedForWithoutAScopeAndWithinServe) {
  const auto here = std::this_thread::get_id();
  std::thread::id outside;
  std::thread::id aside;
  std::thread::id nested;
  EXPECT_TRUE(RunAside([&] { outside = std::this_thread::get_id(); }));
  std::atomic<bool> served = false;
  {
    const AsideScope scope([&] {
      RunAside([&] { nested = std::this_thread::get_id(); });
      served = true;
      return true;
    });
    EXPECT_TRUE(RunAside([&] {
      aside = std::this_thread::get_id();
      while (!served) std::this_thread::yield();
    }));
  }
  EXPECT_EQ(outside, here);
  EXPECT_NE(aside, here);
  EXPECT_EQ(nested, here);
  EXPECT_FALSE(platform::HasAside());
}

TEST(Aside, HandsOnWhatIsThrown) {
  int ended = 0;
  bool goesOn = true;
  const AsideScope scope([&] { return std::exchange(goesOn, false); });
  EXPECT_THROW(RunAside([] { throw std::runtime_error("x"); }), std::runtime_error);
  goesOn = true;
  // Stopped, what it throws doesn't count, and its pointers end all the same.
  EXPECT_FALSE(RunAside([&] {
    WaitUntilStopped();
    throw new Counted(ended);
  }));
  EXPECT_EQ(ended, 1);
  goesOn = true;
  EXPECT_TRUE(RunAside([&] { WaitUntilStopped(); })) << "it came to its end";
  EXPECT_FALSE(RunAside([] { ADD_FAILURE() << "begun after the stop"; }));
}

TEST(Aside, WhatServeThrowsComesOnceTheWorkHasEnded) {
  std::atomic<bool> working = false;
  std::atomic<bool> worked = false;
  const AsideScope scope([&] { return !working || (throw std::runtime_error("serve"), false); });
  EXPECT_THROW(RunAside([&] {
                 working = true;
                 WaitUntilStopped();
                 worked = true;
               }),
               std::runtime_error);
  EXPECT_TRUE(worked);
}

TEST(Aside, WhoTakesAwayWhatTheWorkUsesWaitsForItsEnd) {
  std::atomic<bool> working = false;
  bool wasWorking = true;
  const AsideScope scope([&] {
    if (!working) return true;
    platform::AwaitAside();
    wasWorking = working;
    return true;
  });
  RunAside([&] {
    working = true;
    WaitUntilStopped();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    working = false;
  });
  EXPECT_FALSE(wasWorking);
}

}  // namespace
