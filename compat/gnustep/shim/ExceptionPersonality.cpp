// Lets C++ exceptions be caught in Objective-C++ sources.
//
// For the GCC runtime clang gives every function of an Objective-C++ source the personality of Objective-C, which does
// not know C++ handlers and lets C++ exceptions pass them by. This definition is hidden, so that it serves the sources
// linked into the program and nothing else: it hands C++ exceptions to C++'s personality and leaves the rest to the
// runtime's. Still forbidden in an .mm is a C++ catch (...) that an Objective-C exception could reach.

#include <cstdint>

#include <dlfcn.h>
#include <unwind.h>

extern "C" {

// The names are the compiler's and the runtime's own.
// NOLINTBEGIN(readability-identifier-naming)
_Unwind_Reason_Code __gxx_personality_v0(int version, _Unwind_Action actions, std::uint64_t exceptionClass,
                                         _Unwind_Exception* exception, _Unwind_Context* context);

__attribute__((visibility("hidden"))) _Unwind_Reason_Code __gnu_objc_personality_v0(int version, _Unwind_Action actions,
                                                                                    std::uint64_t exceptionClass,
                                                                                    _Unwind_Exception* exception,
                                                                                    _Unwind_Context* context) {
    constexpr std::uint64_t cxxClass = 0x474e5543432b2b00; // "GNUCC++\0"
    if (exceptionClass == cxxClass) {
        return __gxx_personality_v0(version, actions, exceptionClass, exception, context);
    }
    using Personality = decltype(&__gxx_personality_v0);
    static const auto runtimes = reinterpret_cast<Personality>(::dlsym(RTLD_NEXT, "__gnu_objc_personality_v0"));
    return runtimes == nullptr ? _URC_FATAL_PHASE1_ERROR
                               : runtimes(version, actions, exceptionClass, exception, context);
}

// NOLINTEND(readability-identifier-naming)

} // extern "C"
