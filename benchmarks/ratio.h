#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

inline double MedianOf(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

/// Prints "RATIO name value target", smaller is better; the name ends with what the peer does. Both sides
/// take turns, so that what else the machine does falls on both, and the median over the pairs counts: what
/// happens now and then doesn't, for better or worse. prepare runs before each turn and isn't counted.
template <typename Ours, typename Peer, typename Prepare>
void Ratio(const char* name, double target, const Ours& ours, const Peer& peer, const Prepare& prepare,
           int repeats = 40) {
  const auto milliseconds = [](const auto& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
  };
  std::vector<double> ratios;
  std::vector<double> times;
  std::vector<double> peerTimes;
  for (int i = 0; i < repeats; ++i) {
    prepare();
    times.push_back(milliseconds(ours));
    peerTimes.push_back(milliseconds(peer));
    ratios.push_back(times.back() / peerTimes.back());
  }
  std::printf("RATIO %s %.3f %.2f\n", name, MedianOf(ratios), target);
  std::fprintf(stderr, "  %s: %.3f ms, peer %.3f ms\n", name, MedianOf(times), MedianOf(peerTimes));
}

template <typename Ours, typename Peer>
void Ratio(const char* name, double target, const Ours& ours, const Peer& peer) {
  Ratio(name, target, ours, peer, [] {});
}
