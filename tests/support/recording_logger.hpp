#pragma once
// An ILogger that keeps what it is told, as "<level> <text>" lines.

#include <string>
#include <vector>

#include "common/log4rig.hpp"

namespace vlttest {

class CRecordingLogger : public rig_common::log4rig::ILogger {
 public:
  void operator()(int level, const std::string& message) override {
    messages.push_back(std::to_string(level) + " " + message);
  }
  std::vector<std::string> messages;
};

}  // namespace vlttest
