// A process interface that counts the questions, watches how far apart they are and stops at a chosen one.
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>

#include "core/process.h"

/// A stop may come at the n-th question, or from `onQuestion`, which runs at each one like an event in the
/// pump.
class Stoppable : public LProcessInterfaceVoid {
 public:
  explicit Stoppable(int stopAtQuestion = 0) : stop_at_(stopAtQuestion) {}

  bool IsToStop() override {
    const auto now = std::chrono::steady_clock::now();
    if (questions_++ > 0) widest_gap_ = std::max(widest_gap_, now - last_);
    if (onQuestion) onQuestion();
    last_ = std::chrono::steady_clock::now();
    return isStopped || (stop_at_ > 0 && questions_ >= stop_at_);
  }

  int Questions() const { return questions_; }
  /// The longest time without a question.
  int WidestGapMs() const {
    return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(widest_gap_).count());
  }

  bool isStopped = false;
  std::function<void()> onQuestion;

 private:
  int stop_at_;
  int questions_ = 0;
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
