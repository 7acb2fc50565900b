#pragma once
#include <string>

#include "summary/summary.hpp"

namespace vltsummary {
std::string jsonString(const std::string& text);
// The facts as JSON; with `drawings` each symbol also carries its pictures.
std::string summaryJson(const TSummary& summary, bool drawings);
}  // namespace vltsummary
