// A process interface for tests: records what a process shows and can stop it at a chosen moment.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "core/process.h"

/// Waits as the void interface does until the stop. Main thread.
class RecordingInterface : public LProcessInterfaceVoid {
 public:
  /// The `n`-th question and every later one is answered with a stop; 1 stops at once, 0 never.
  explicit RecordingInterface(int n = 0) : stop_at_(n) {}
  void StopAt(int n) { stop_at_ = n; }
  void StopNow() { stop_at_ = 1; }

  bool IsToStop() override {
    ++questions_;
    if (on_question_) on_question_();
    return IsStopping();
  }
  LProcessResult ProcessWait(unsigned int ms) override {
    return IsStopping() ? LProcessResultStopped : LProcessInterfaceVoid::ProcessWait(ms);
  }
  LProcessResult ProcessWaitSignal(LSignalObjectRef signal, unsigned int ms) override {
    return IsStopping() ? LProcessResultStopped : LProcessInterfaceVoid::ProcessWaitSignal(signal, ms);
  }
  LProcessResult ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned int ms) override {
    return IsStopping() ? LProcessResultStopped : LProcessInterfaceVoid::ProcessWaitSignalObjectGroup(group, ms);
  }

  void SetError(const char* text) override { errors_.emplace_back(text); }
  void SetStatus(const char* text, int level) override { statuses_.emplace_back(level, text); }
  void SetProgress(double fraction) override { progress_.push_back(fraction); }
  void SetProgressIndeterminateOn() override { indeterminate_.push_back(true); }
  void SetProgressIndeterminateOff() override { indeterminate_.push_back(false); }

  int Questions() const { return questions_; }
  const std::vector<std::string>& Errors() const { return errors_; }
  const std::vector<std::pair<int, std::string>>& Statuses() const { return statuses_; }  ///< Level and text.
  const std::vector<double>& Progress() const { return progress_; }
  const std::vector<bool>& Indeterminate() const { return indeterminate_; }
  /// Runs at each question, like an event that the pump lets in.
  void OnQuestion(std::function<void()> call) { on_question_ = std::move(call); }

 private:
  bool IsStopping() const { return stop_at_ > 0 && questions_ >= stop_at_; }

  int stop_at_;
  int questions_ = 0;
  std::function<void()> on_question_;
  std::vector<std::string> errors_;
  std::vector<std::pair<int, std::string>> statuses_;
  std::vector<double> progress_;
  std::vector<bool> indeterminate_;
};
