// What the sanitizers are told, in every program of a build that has them (see Sanitizers.cmake). The variables
// ASAN_OPTIONS, LSAN_OPTIONS, UBSAN_OPTIONS and TSAN_OPTIONS add to it.

extern "C" {

// NOLINTBEGIN: the runtime libraries choose these names

const char* __asan_default_options();
const char* __lsan_default_options();
const char* __lsan_default_suppressions();
const char* __ubsan_default_options();
const char* __tsan_default_options();

const char* __asan_default_options() {
    return "fast_unwind_on_malloc=0" // or no stack would lead through libraries without frame pointers
           ":detect_stack_use_after_return=1";
}

const char* __lsan_default_options() {
    return "print_suppressions=0";
}

/// Objects that the Debian desktop libraries allocate once and keep for the life of the process.
const char* __lsan_default_suppressions() {
    return "leak:libobjc.so\n"
           "leak:libfontconfig\n"
           "leak:libgnustep-gui\n"
           "leak:libgnustep-cairo\n"
           "leak:sharedApplication\n"
           "leak:objc_\n"
           "leak:load_selector\n"
           "leak:_dl_init\n"
           "leak:GNUstepConfig\n"
           // What GNUstep's reader leaves behind of a defaults file that it cannot read.
           "leak:anUnreadableFileHasNoValues\n";
}

const char* __ubsan_default_options() {
    return "print_stacktrace=1";
}

const char* __tsan_default_options() {
    return "detect_deadlocks=0"    // GNUstep takes its locks in either order
           ":atexit_sleep_ms=100"; // of each of the thousands of programs that the tests run; a second by default
}

// NOLINTEND

} // extern "C"
