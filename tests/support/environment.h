// Variables of the environment as one test wants them. Main thread, while no other thread asks for one.
#pragma once

#include <optional>
#include <stdlib.h>
#include <string>
#include <time.h>

/// Sets a variable, or takes it away where `value` is null. The former value comes back at the end.
class Environment {
 public:
  Environment(const char* name, const char* value) : name_(name) {
    if (const char* former = getenv(name)) former_ = former;
    Set(value);
  }
  Environment(const char* name, const std::string& value) : Environment(name, value.c_str()) {}
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
  ~Environment() { Set(former_ ? former_->c_str() : nullptr); }

 private:
  void Set(const char* value) {
    value ? setenv(name_, value, 1) : unsetenv(name_);
    if (std::string(name_) == "TZ") tzset();
  }

  const char* const name_;
  std::optional<std::string> former_;
};

/// The zone of this computer.
class TimeZone : private Environment {
 public:
  explicit TimeZone(const char* zone) : Environment("TZ", zone) {}
};
