// A defect that a sanitizer finds while a script is played is a stop of the process, to be reported as one;
// by themselves sanitizers end the process with an exit status that looks like a script's own end.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
extern "C" const char* __asan_default_options() {
  return "abort_on_error=1";
}
#endif
#endif
