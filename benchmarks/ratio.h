#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>

/// Prints "RATIO name value target", smaller is better. Both sides take turns and the shortest time of each
/// counts, so that what else the machine does falls on both; prepare runs before each turn and isn't counted.
template <typename Ours, typename Peer, typename Prepare>
void Ratio(const char* name, double target, const Ours& ours, const Peer& peer, const Prepare& prepare,
           int repeats = 40) {
  const auto milliseconds = [](const auto& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
  };
  double best = 1e9;
  double bestPeer = 1e9;
  for (int i = 0; i < repeats; ++i) {
    prepare();
    best = std::min(best, milliseconds(ours));
    bestPeer = std::min(bestPeer, milliseconds(peer));
  }
  std::printf("RATIO %s %.3f %.2f\n", name, best / bestPeer, target);
  std::fprintf(stderr, "  %s: %.3f ms, peer %.3f ms\n", name, best, bestPeer);
}

template <typename Ours, typename Peer>
void Ratio(const char* name, double target, const Ours& ours, const Peer& peer) {
  Ratio(name, target, ours, peer, [] {});
}
