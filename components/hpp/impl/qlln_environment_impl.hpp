#pragma once
// The environments the suites' tools run in: homes, libraries and search
// path of the source suite (and of the target suite for the full one), on
// top of a process starter's environment.

#include <log4cxx/logger.h>

#include <string>

#include "components/hpp/misc.hpp"
#include "core/hpp/impl/run_program.hpp"

namespace NComponent {

// Source suite and target suite (QRN_HOME, KVE_HOME and their directories,
// PATH, TONIC_PATH, QRN_IGNORE_BROKEN_REFS). False, with nothing changed,
// when the platform or an installation directory cannot be obtained.
bool setQllnEnvironment(NMisc::CRunProgram<std::string>& run, TPlatformServices& services, const TSinks& sinks);

// The source suite alone (QRN_HOME, QRN_HOMEQL, PATH, TONIC_PATH).
bool setQllnQrnEnvironment(NMisc::CRunProgram<std::string>& run, TPlatformServices& services, const TSinks& sinks);

}  // namespace NComponent
