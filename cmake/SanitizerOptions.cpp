// What the sanitizers are told, in every program of a build that has them (see Sanitizers.cmake). The variables
// ASAN_OPTIONS, LSAN_OPTIONS, UBSAN_OPTIONS and TSAN_OPTIONS add to it.

extern "C" {

// NOLINTBEGIN: the runtime libraries choose these names

const char* __asan_default_options();
const char* __lsan_default_options();
const char* __lsan_default_suppressions();
const char* __ubsan_default_options();
const char* __tsan_default_options();
const char* __tsan_default_suppressions();

const char* __asan_default_options() {
    return "fast_unwind_on_malloc=0" // or no stack would lead through libraries without frame pointers
           ":detect_stack_use_after_return=1";
}

const char* __lsan_default_options() {
    return "print_suppressions=0";
}

/// What libraries allocate once and keep for the life of the process. Not GNUstep's libraries themselves: everything
/// that the event loop calls has them in its stack.
const char* __lsan_default_suppressions() {
    return "leak:libobjc.so\n"      // the runtime's tables of classes and selectors
           "leak:libfontconfig\n"   // the fonts that it lists for GNUstep
           "leak:libcairo.so\n"     // what it still has to do on the display when the app ends
           "leak:GNUstepConfig\n"   // GNUstep's configuration, which it keeps to itself
           "leak:makeApplication\n" // the app's name for the root window, in a server object that is let go at the end
           // What GNUstep's reader leaves behind of a defaults file that it cannot read.
           "leak:hasNoValuesWhenItCannotBeRead\n";
}

const char* __ubsan_default_options() {
    return "print_stacktrace=1";
}

const char* __tsan_default_options() {
    return "atexit_sleep_ms=100"; // of each of the thousands of programs that the tests run; a second by default
}

/// Locks that libraries take in either order, on the main thread alone.
const char* __tsan_default_suppressions() {
    return "deadlock:libobjc.so\n" // the runtime's and GNUstep's, while classes are set up
           "deadlock:libgnustep-base.so\n"
           "deadlock:libcairo.so\n"; // a font's and the display's, at the end
}

// NOLINTEND

} // extern "C"
