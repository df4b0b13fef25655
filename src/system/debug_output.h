// The Windows assertion handler: failed checks go to the debugger output.
#pragma once

namespace qv {

// Installs the handler that writes each failed check to the debugger output and, in a debug
// build, breaks into the debugger.
void InstallDebuggerAssertHandler();

}  // namespace qv
