// The one assertion routine: failed checks report through a replaceable handler.
#pragma once

namespace qv {

// Receives the message of a failed check. The default handler writes it to standard error
// (the Windows front end installs one that writes to the debugger output) and, in a debug
// build, stops the program. Tests install a handler that records the messages.
using AssertHandler = void (*)(const char* message, const char* file, int line);

// Installs a handler and returns the one it replaces; nullptr restores the default.
AssertHandler SetAssertHandler(AssertHandler handler);

// Reports a failed check. With a handler that returns, the caller goes on and fails the
// operation, leaving its object unchanged.
void AssertFailed(const char* message, const char* file, int line);

// The default handler, for handlers that want to chain to it.
void DefaultAssertHandler(const char* message, const char* file, int line);

}  // namespace qv

// Evaluates to true when the condition holds; otherwise reports the message and gives false,
// so that callers write: if (!QV_CHECK(x > 0, "mensaje")) return false;
#define QV_CHECK(cond, message) \
  ((cond) ? true : (::qv::AssertFailed((message), __FILE__, __LINE__), false))

#define QV_FAIL(message) ::qv::AssertFailed((message), __FILE__, __LINE__)
