// A stand-in for somebody who sets the machine's clock: loaded into a program (LD_PRELOAD), it moves the time of day
// that the program is told by as many seconds as stand in the file that OSTREL_DEMO_CLOCK names. The file is written
// over in place, never shortened. Waiting is not moved. It calls nothing that a sanitizer would have to be ready for.

#include <cstdlib>
#include <ctime>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

constexpr std::size_t size = 32;
const char* told = nullptr; // the file's bytes; what follows them is zero

__attribute__((constructor)) void prepare() {
    const char* const path = std::getenv("OSTREL_DEMO_CLOCK");
    const int file = path == nullptr ? -1 : ::open(path, O_RDONLY | O_CLOEXEC);
    void* const bytes = file < 0 ? MAP_FAILED : ::mmap(nullptr, size, PROT_READ, MAP_SHARED, file, 0);
    if (file >= 0) {
        ::close(file);
    }
    told = bytes == MAP_FAILED ? nullptr : static_cast<const char*>(bytes);
}

} // namespace

extern "C" int movedTime(clockid_t clock, timespec* now) noexcept __asm__("clock_gettime");
extern "C" int movedTimeOfDay(timeval* now, void* timezone) noexcept __asm__("gettimeofday");

int movedTime(clockid_t clock, timespec* now) noexcept {
    const long result = ::syscall(SYS_clock_gettime, clock, now);
    if (result == 0 && clock == CLOCK_REALTIME && told != nullptr) {
        now->tv_sec += std::atol(told);
    }
    return static_cast<int>(result);
}

int movedTimeOfDay(timeval* now, void* /*timezone*/) noexcept {
    timespec time{};
    const int result = movedTime(CLOCK_REALTIME, &time);
    now->tv_sec = time.tv_sec;
    now->tv_usec = time.tv_nsec / 1000;
    return result;
}
