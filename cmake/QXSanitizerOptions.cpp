/// @file
/// Run-time options of the sanitizers, linked into every program of a sanitizer build, so that a test started
/// by hand, by ctest or by a debugger behaves the same. The environment's ASAN_OPTIONS and relatives still win.

#define QX_SANITIZER_HOOK extern "C" __attribute__((visibility("default"), used))

/// The library installs its crash handler at load. Value 2 keeps the sanitizer's own handlers in place: otherwise
/// a fault would print the library's stack trace instead of the report, and libFuzzer would hang on it.
QX_SANITIZER_HOOK char const* __asan_default_options() {
  return "handle_segv=2:handle_sigill=2:handle_sigfpe=2:handle_sigbus=2:handle_abort=2:"
         "detect_stack_use_after_return=1:strict_string_checks=1:check_initialization_order=1";
}

QX_SANITIZER_HOOK char const* __ubsan_default_options() {
  return "print_stacktrace=1";
}

QX_SANITIZER_HOOK char const* __tsan_default_options() {
  return "handle_segv=2:second_deadlock_stack=1";
}
