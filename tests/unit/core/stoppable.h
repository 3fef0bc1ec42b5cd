// A process interface that also watches how far apart the questions are.
#pragma once

#include <algorithm>
#include <chrono>

#include "support/recording_interface.h"

class Stoppable : public RecordingInterface {
 public:
  using RecordingInterface::RecordingInterface;

  bool IsToStop() override {
    if (Questions() > 0) widest_gap_ = std::max(widest_gap_, std::chrono::steady_clock::now() - last_);
    const bool isToStop = RecordingInterface::IsToStop();
    last_ = std::chrono::steady_clock::now();
    return isToStop;
  }

  /// The longest time without a question.
  int WidestGapMs() const {
    return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(widest_gap_).count());
  }

 private:
  std::chrono::steady_clock::time_point last_;
  std::chrono::steady_clock::duration widest_gap_{};
};

/// The slice of a wait, and what a busy machine may add to it.
constexpr int kWidestSliceMs = 200 + 350;

/// Milliseconds since it was made.
class Stopwatch {
 public:
  int Ms() const {
    const auto passed = std::chrono::steady_clock::now() - start_;
    return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(passed).count());
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};
